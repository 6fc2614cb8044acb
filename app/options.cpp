#include "options.hpp"

#include <gio/gio.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <glib-ptr.hpp>
#include <memory>

#include "text.hpp"

namespace gallery {
namespace {

using ContextPtr = std::unique_ptr<GOptionContext, pb::FreeWith<g_option_context_free>>;

std::string full_path(const char *argument) {
  const pb::StringPtr path(g_canonicalize_filename(argument, nullptr));
  return path.get();
}

std::string cannot_read(const std::string &path, int error) {
  return fill(Text::kCannotRead, {{"folder", one_line(path)}, {"reason", g_strerror(error)}});
}

/// 0, or why the folder cannot be looked through.
int folder_error(const std::string &path) {
  return access(path.c_str(), R_OK | X_OK) == 0 ? 0 : errno;
}

void add_root(Options &options, const std::string &folder) {
  if (const int error = folder_error(folder); error != 0) {
    options.problems.push_back(cannot_read(folder, error));
    return;
  }
  const bool known =
      std::find(options.roots.begin(), options.roots.end(), folder) != options.roots.end();
  if (!known) options.roots.push_back(folder);
}

void add_argument(Options &options, const char *argument) {
  const std::string path = full_path(argument);
  struct stat info {};
  if (stat(path.c_str(), &info) != 0) {
    options.problems.push_back(cannot_read(path, errno));
    return;
  }
  if (S_ISDIR(info.st_mode)) {
    add_root(options, path);
    return;
  }
  const pb::StringPtr folder(g_path_get_dirname(path.c_str()));
  add_root(options, folder.get());
  if (options.file.empty()) options.file = path;
}

std::string pictures_folder() {
  if (const gchar *folder = g_get_user_special_dir(G_USER_DIRECTORY_PICTURES)) return folder;
  const pb::StringPtr folder(g_build_filename(g_get_home_dir(), "Pictures", nullptr));
  return folder.get();
}

/// A pictures folder that nobody has made yet is no mistake of the user's.
void add_pictures_folder(Options &options) {
  const std::string folder = pictures_folder();
  if (folder_error(folder) == ENOENT) {
    options.roots.push_back(folder);
  } else {
    add_root(options, folder);
  }
}

}  // namespace

Start read_arguments(int argc, char **argv) {
  gboolean version = FALSE;
  gchar **places_raw = nullptr;
  const GOptionEntry entries[] = {
      {"version", 0, 0, G_OPTION_ARG_NONE, &version, "Tell the version and end", nullptr},
      {G_OPTION_REMAINING, 0, 0, G_OPTION_ARG_FILENAME_ARRAY, &places_raw, nullptr,
       "[DIR|FILE...]"},
      {nullptr, 0, 0, G_OPTION_ARG_NONE, nullptr, nullptr, nullptr}};
  const ContextPtr context(g_option_context_new(nullptr));
  g_option_context_set_summary(
      context.get(),
      "Browses pictures and videos. Without a folder or file it opens your pictures folder.");
  g_option_context_set_description(
      context.get(),
      "Keys: arrows and Return to open, Escape to go back, Ctrl+1 all pictures, Ctrl+2 albums,\n"
      "Left and Right for the previous and next picture, F11 for the full screen, Delete for the\n"
      "trash, F1 for all keys, Ctrl+Q to end.\n"
      "Exit codes: 0 all is well, 1 a part of the program is missing, 2 wrong usage or no "
      "display.");
  g_option_context_add_main_entries(context.get(), entries, nullptr);

  Start start;
  pb::ErrorPtr error;
  const bool parsed = g_option_context_parse(context.get(), &argc, &argv, pb::out(error));
  const pb::StringsPtr places(places_raw);
  if (!parsed) {
    g_printerr("photobrowser: %s. Try photobrowser --help.\n", one_line(error->message).c_str());
    start.exit_code = kExitUsage;
    return start;
  }
  if (version) {
    g_print("photobrowser %s\n", PB_VERSION);
    start.exit_code = 0;
    return start;
  }
  for (gchar **place = places.get(); place != nullptr && *place != nullptr; ++place) {
    add_argument(start.options, *place);
  }
  if (!places) add_pictures_folder(start.options);
  return start;
}

}  // namespace gallery

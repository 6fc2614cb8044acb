#include "trash.hpp"

#include <fcntl.h>
#include <gio/gio.h>
#include <glib/gstdio.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <glib-ptr.hpp>
#include <memory>
#include <vector>

namespace gallery {
namespace {

using DirPtr = std::unique_ptr<GDir, pb::FreeWith<g_dir_close>>;
using KeyFilePtr = std::unique_ptr<GKeyFile, pb::FreeWith<g_key_file_free>>;

constexpr const char *kGroup = "Trash Info";
constexpr const char *kSuffix = ".trashinfo";

/// A trash, and what the paths in its notes are relative to.
struct Can {
  std::string folder;
  std::string top;
};

/// The uppermost folder of the disk that a file lies on.
std::string top_of_disk(const std::string &path) {
  struct stat info {};
  std::string top = path;
  if (lstat(path.c_str(), &info) != 0) return "/";
  while (top != "/") {
    const pb::StringPtr parent(g_path_get_dirname(top.c_str()));
    struct stat above {};
    if (stat(parent.get(), &above) != 0 || above.st_dev != info.st_dev) break;
    top = parent.get();
  }
  return top;
}

std::vector<Can> cans_for(const std::string &path) {
  const std::string uid = std::to_string(getuid());
  std::string top = top_of_disk(path);
  const std::string slash = top == "/" ? "" : "/";
  return {{std::string(g_get_user_data_dir()) + "/Trash", ""},
          {top + slash + ".Trash/" + uid, top},
          {top + slash + ".Trash-" + uid, top}};
}

std::string noted_path(const std::string &info, const Can &can) {
  const KeyFilePtr notes(g_key_file_new());
  if (!g_key_file_load_from_file(notes.get(), info.c_str(), G_KEY_FILE_NONE, nullptr)) return "";
  const pb::StringPtr escaped(g_key_file_get_string(notes.get(), kGroup, "Path", nullptr));
  const pb::StringPtr path(escaped ? g_uri_unescape_string(escaped.get(), nullptr) : nullptr);
  if (!path) return "";
  if (g_path_is_absolute(path.get())) return path.get();
  return (can.top == "/" ? "/" : can.top + "/") + path.get();
}

/// The note that was written last about a path.
std::optional<Trashed> find_in(const Can &can, const std::string &path, struct timespec &newest) {
  const std::string notes = can.folder + "/info";
  const DirPtr folder(g_dir_open(notes.c_str(), 0, nullptr));
  std::optional<Trashed> found;
  while (const gchar *name = folder ? g_dir_read_name(folder.get()) : nullptr) {
    if (!g_str_has_suffix(name, kSuffix)) continue;
    const std::string info = notes + "/" + name;
    struct stat state {};
    if (lstat(info.c_str(), &state) != 0 || !S_ISREG(state.st_mode)) continue;
    const struct timespec &time = state.st_mtim;
    const bool newer = time.tv_sec > newest.tv_sec ||
                       (time.tv_sec == newest.tv_sec && time.tv_nsec >= newest.tv_nsec);
    if (!newer || noted_path(info, can) != path) continue;
    newest = time;
    const std::string stem(name, std::string(name).size() - std::string(kSuffix).size());
    found = Trashed{path, can.folder + "/files/" + stem, info};
  }
  return found;
}

}  // namespace

std::optional<Trashed> move_to_trash(const std::string &path, std::string &problem) {
  const std::vector<Can> cans = cans_for(path);
  const auto file = pb::Ref<GFile>::adopt(g_file_new_for_path(path.c_str()));
  pb::ErrorPtr error;
  if (!g_file_trash(file.get(), nullptr, pb::out(error))) {
    problem = error->message;
    return std::nullopt;
  }
  std::optional<Trashed> trashed;
  struct timespec newest {};
  for (const Can &can : cans) {
    if (auto found = find_in(can, path, newest)) trashed = std::move(found);
  }
  return trashed ? trashed : Trashed{path, "", ""};
}

bool put_back(const Trashed &trashed, std::string &problem) {
  if (renameat2(AT_FDCWD, trashed.file.c_str(), AT_FDCWD, trashed.path.c_str(), RENAME_NOREPLACE) !=
      0) {
    problem = g_strerror(errno);
    return false;
  }
  g_unlink(trashed.info.c_str());
  return true;
}

}  // namespace gallery

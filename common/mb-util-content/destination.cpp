#include <dirent.h>
#include <file-explorer.h>
#include <mb-util-content.h>
#include <pb-debug.h>
#include <pb-util-dialog.h>
#include <pb-util-resource.h>
#include <sys/stat.h>

#include <cstring>
#include <memory>
#include <optional>
#include <string>

#include <glib-ptr.hpp>

#include "util/paths.hpp"

namespace {

constexpr gint64 kLeastFreeKb = 5120;
constexpr gint kNoMemoryTitle = 10239;
constexpr gint kErrorDialog = 1;
constexpr gint kNoMemoryMs = 2000;
constexpr gint kSmallType = 0;
constexpr gint kFewFiles = 30;
constexpr gint kManyFiles = 100;
constexpr gint kMostFolders = 10;
constexpr const char *kThumbFolders = "/mnt/data/.temp/com.velmora.photobrowser/thumb1";
constexpr gsize kPickSize = 256;

using DirectoryPtr = std::unique_ptr<DIR, pb::FreeWith<closedir>>;

struct Pick {
  time_t changed;
  std::string path;
};

/// A path as a word for the shell: as it is when no byte of it means anything there.
std::string shell_word(const char *path) {
  if (pb::is_usable_root(path)) return path;
  const pb::StringPtr quoted(g_shell_quote(path));
  return quoted.get();
}

/// Removes what was picked from a directory. A path that was cut names something else.
void remove_pick(const char *pick) {
  if (*pick == '\0' || std::strlen(pick) >= kPickSize - 1) return;
  pb_util_system(("rm -rf " + shell_word(pick)).c_str());
}

bool is_counted(mode_t mode, bool files) { return files ? !S_ISDIR(mode) : !S_ISREG(mode); }

}  // namespace

gint mb_util_get_oldest_content(const gchar *directory, gchar *buffer, gint files) {
  *buffer = '\0';
  const DirectoryPtr opened(directory != nullptr ? opendir(directory) : nullptr);
  if (opened == nullptr) {
    PB_LOG(PB_LOG_WARNING, "mb_util_get_oldest_content: opendir()=NULL, fails\n");
    return 0;
  }
  std::optional<Pick> pick;
  gint count = 0;
  while (const dirent *entry = readdir(opened.get())) {
    if (entry->d_name[0] == '.') continue;
    const std::string path = std::string(directory) + "/" + entry->d_name;
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) break;
    if (!is_counted(status.st_mode, files != 0)) continue;
    ++count;
    // The newest wins, and the later one of equals.
    if (!pick || status.st_mtime >= pick->changed) pick = Pick{status.st_mtime, path};
  }
  if (pick) g_strlcpy(buffer, pick->path.c_str(), kPickSize);
  PB_LOG(PB_LOG_INFO, "Oldest Date = %d File= %s Count = %d\n",
         static_cast<int>(pick ? pick->changed : 0), buffer, count);
  return count;
}

gint mb_util_check_dwndest_directory(const gchar *path, gint limit_type) {
  gint64 free_kb = 0;
  gint error = 0;
  if (!fexplorer_get_available_memory_space(0, &free_kb, &error)) {
    PB_LOG(PB_LOG_ERROR, "fexplorer_get_available_memory_space failed with err = %d\n", error);
    return 0;
  }
  if (free_kb < kLeastFreeKb) {
    pb_util_show_dialog(kErrorDialog, pb_get_res_string(kNoMemoryTitle), "Insufficient Memory",
                        PB_DIALOG_BUTTONS_NONE, kNoMemoryMs, nullptr);
    return 0;
  }
  gchar pick[kPickSize];
  if (const DirectoryPtr opened(opendir(path)); opened != nullptr) {
    PB_LOG(PB_LOG_INFO, "dir path is already exist\n");
  } else {
    PB_LOG(PB_LOG_INFO, "dir path is not  exist,need to create!\n");
    pb_util_system(("mkdir -p " + shell_word(path)).c_str());
    if (limit_type == kSmallType) {
      const gint folders =
          mb_util_get_oldest_content(pb::phone_path(kThumbFolders).c_str(), pick, 0);
      PB_LOG(PB_LOG_INFO, "Total Created folders = %d, %s\n", folders, pick);
      if (folders > kMostFolders) remove_pick(pick);
    }
  }
  const gint held = mb_util_get_oldest_content(path, pick, 1);
  PB_LOG(PB_LOG_INFO, "Total Created files = %d, %s\n", held, pick);
  if (held > (limit_type == kSmallType ? kFewFiles : kManyFiles)) remove_pick(pick);
  return 1;
}

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <mutex>
#include <set>
#include <string>

#include "file-explorer.h"
#include "file-explorer/private.hpp"
#include "pictures/header-reader.hpp"

namespace phone::files {

namespace {

struct InUse {
  std::mutex mutex;
  std::set<std::string, std::less<>> paths;  // guarded by mutex
};

InUse &in_use() {
  static InUse instance;
  return instance;
}

/// Whether the file system itself refuses changes to a file.
bool is_immutable(const char *path) {
  const int fd = pictures::open_regular_file(path);
  if (fd < 0) return false;
  int flags = 0;
  const bool known = ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
  close(fd);
  return known && (flags & (FS_IMMUTABLE_FL | FS_APPEND_FL)) != 0;
}

}  // namespace

bool is_in_use(const char *path) {
  const std::scoped_lock lock(in_use().mutex);
  return in_use().paths.contains(path);
}

int protection_of(const char *path) {
  struct stat info;
  if (lstat(path, &info) != 0) return -1;
  if (!S_ISREG(info.st_mode)) return 0;
  constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
  return (info.st_mode & kAnyWrite) == 0 || is_immutable(path) ? 1 : 0;
}

}  // namespace phone::files

gboolean fexplorer_get_exif_orientation(const gchar *path, gint *orientation) {
  if (path == nullptr || orientation == nullptr) return FALSE;
  const int fd = phone::pictures::open_regular_file(path);
  if (fd < 0) return FALSE;
  const auto header = phone::pictures::read_header_of_file(fd);
  close(fd);
  if (!header) return FALSE;
  *orientation = header->orientation;
  return TRUE;
}

gboolean fexplorer_set_file_open_status(const gchar *path, gint open) {
  if (path == nullptr) return FALSE;
  auto &[mutex, paths] = phone::files::in_use();
  const std::scoped_lock lock(mutex);
  if (open == 0) {
    paths.erase(path);
    return TRUE;
  }
  struct stat info;
  if (lstat(path, &info) != 0) return FALSE;
  paths.insert(path);
  return TRUE;
}

gboolean fexplorer_get_file_lock_status(const gchar *path, gboolean *locked, gint *error) {
  if (path == nullptr || locked == nullptr) return FALSE;
  const int protection = phone::files::protection_of(path);
  if (protection < 0) {
    if (error != nullptr) *error = phone::files::code_of(errno);
    return FALSE;
  }
  *locked = protection > 0 ? TRUE : FALSE;
  return TRUE;
}

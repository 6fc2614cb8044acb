#include "media-browser/folder-fd.hpp"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>

#include <algorithm>
#include <cerrno>

#include "media-browser/media-names.hpp"

namespace phone::media {

namespace {

constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
constexpr gint64 kNanoseconds = 1'000'000'000;

}  // namespace

Fd open_root(const std::string &path) { return Fd(open(path.c_str(), kFlags)); }

Fd open_folder_in(int folder, const char *name) {
  return Fd(openat(folder, name, kFlags | O_NOFOLLOW));
}

Fd open_shown_folder(const std::string &root, const std::string &path) {
  Fd folder = open_root(root);
  std::size_t at = root.size();
  while (folder && at < path.size()) {
    const std::size_t begin = path[at] == '/' ? at + 1 : at;
    const std::size_t end = std::min(path.find('/', begin), path.size());
    const std::string name = path.substr(begin, end - begin);
    at = end;
    if (name.empty()) continue;
    const bool hides = faccessat(folder.get(), kNoMedia, F_OK, AT_SYMLINK_NOFOLLOW) == 0;
    if (hides || is_hidden(name)) {
      errno = ENOENT;
      return {};
    }
    folder = open_folder_in(folder.get(), name.c_str());
  }
  return folder;
}

std::optional<Entry> look_at(int folder, const char *name, bool stable) {
  struct statx info;
  constexpr unsigned kWanted =
      STATX_TYPE | STATX_SIZE | STATX_MTIME | STATX_BTIME | STATX_INO | STATX_NLINK;
  if (statx(folder, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, kWanted, &info) != 0) {
    return std::nullopt;
  }
  Entry entry;
  entry.regular = S_ISREG(info.stx_mode);
  entry.folder = S_ISDIR(info.stx_mode);
  entry.links = info.stx_nlink;
  if (stable && (info.stx_mask & STATX_BTIME) != 0) {
    entry.born = info.stx_btime.tv_sec * kNanoseconds + info.stx_btime.tv_nsec;
  }
  entry.state.inode = stable ? info.stx_ino : 0;
  entry.state.size = static_cast<gint64>(info.stx_size);
  entry.state.mtime = info.stx_mtime.tv_sec * kNanoseconds + info.stx_mtime.tv_nsec;
  return entry;
}

bool has_stable_inodes(int folder) {
  constexpr guint32 kExfat = 0x2011bab0;
  struct statfs info;
  if (fstatfs(folder, &info) != 0) return true;
  switch (static_cast<guint32>(info.f_type)) {
    case MSDOS_SUPER_MAGIC:
    case FUSE_SUPER_MAGIC:
    case kExfat:
      return false;
    default:
      return true;
  }
}

DirPtr entries_of(int folder) {
  // A second descriptor, because closedir() closes the one that it was given.
  const int fd = openat(folder, ".", kFlags | O_NOFOLLOW);
  if (fd < 0) return nullptr;
  DIR *dir = fdopendir(fd);
  if (dir == nullptr) {
    const int code = errno;
    close(fd);
    errno = code;
  }
  return DirPtr(dir);
}

}  // namespace phone::media

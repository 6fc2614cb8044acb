#include "media-browser/covers.hpp"

#include "thumbnail/store.hpp"

namespace phone::media {

namespace {

constexpr gint64 kNanoseconds = 1'000'000'000;

}  // namespace

std::string cached_thumbnail(const std::string &path, guint64 device, const FileState &state) {
  struct stat info {};
  if (state.inode == 0) {
    const bool known = lstat(path.c_str(), &info) == 0 && thumbnail::is_stored(info);
    return known ? thumbnail::stored_path(info) : std::string();
  }
  info.st_dev = device;
  info.st_ino = state.inode;
  info.st_size = state.size;
  info.st_mtim.tv_sec = state.mtime / kNanoseconds;
  info.st_mtim.tv_nsec = state.mtime % kNanoseconds;
  if (info.st_mtim.tv_nsec < 0) {
    // A time before 1970: the fraction still counts upwards.
    --info.st_mtim.tv_sec;
    info.st_mtim.tv_nsec += kNanoseconds;
  }
  return thumbnail::is_stored(info) ? thumbnail::stored_path(info) : std::string();
}

void request_thumbnail(const std::string &path) { thumbnail::request(path); }

}  // namespace phone::media

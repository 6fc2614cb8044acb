#include "media-browser/covers.hpp"

#include <algorithm>

#include "thumbnail/store.hpp"

namespace phone::media {

namespace {

constexpr gint64 kNanoseconds = 1'000'000'000;

/// What a thumbnail is named by, of a file whose inode lasts.
struct stat stat_of(guint64 device, const FileState &state) {
  struct stat info {};
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
  return info;
}

/// Whether the device that a path lay on is still where it was: looked for in the folder nearest
/// to it that is there.
bool is_device_there(std::string path, guint64 device) {
  struct stat info;
  while (path.size() > 1 && lstat(path.c_str(), &info) != 0) {
    path.resize(std::max<std::size_t>(path.rfind('/'), 1));
  }
  return lstat(path.c_str(), &info) == 0 && info.st_dev == device;
}

}  // namespace

std::string cached_thumbnail(const std::string &path, guint64 device, const FileState &state) {
  struct stat info {};
  if (state.inode == 0) {
    const bool known = lstat(path.c_str(), &info) == 0 && thumbnail::is_stored(info);
    return known ? thumbnail::stored_path(info) : std::string();
  }
  info = stat_of(device, state);
  return thumbnail::is_stored(info) ? thumbnail::stored_path(info) : std::string();
}

void forget_thumbnail(const std::string &path, guint64 device, const FileState &state) {
  // A card that was pulled out comes back with its pictures.
  if (state.inode == 0 || path.empty() || !is_device_there(path, device)) return;
  thumbnail::forget(stat_of(device, state));
}

void request_thumbnail(const std::string &path) { thumbnail::request(path); }

}  // namespace phone::media

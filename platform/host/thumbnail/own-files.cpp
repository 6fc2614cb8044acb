#include "thumbnail/own-files.hpp"

#include <glib.h>
#include <sys/stat.h>

#include <atomic>
#include <cstdlib>
#include <memory>

#include "thumbnail/disk.hpp"

namespace phone::thumbnail {
namespace {

struct FreeMemory {
  void operator()(char *text) const { std::free(text); }
};

std::atomic<bool (*)(const std::string &)> g_picture_check = nullptr;

/// The path without links, "." and ".."; empty when nothing is there.
std::string resolved(const std::string &path) {
  const std::unique_ptr<char, FreeMemory> real(realpath(path.c_str(), nullptr));
  return real ? real.get() : std::string();
}

/// Whether a resolved path lies below a folder; the cache itself may be kept behind a link.
bool is_below(const std::string &path, const std::string &folder) {
  const std::string real = resolved(folder);
  return real.size() > 1 && path.starts_with(real + "/");
}

bool is_a_picture(const std::string &path) {
  const auto check = g_picture_check.load();
  return check != nullptr && check(path);
}

}  // namespace

bool is_replaceable(const std::string &path) {
  struct stat info;
  // A file with a second name may be somebody's picture under that one.
  if (lstat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode) || info.st_nlink > 1) return false;
  const std::string real = resolved(path);
  const std::string shared = std::string(g_get_user_cache_dir()) + "/thumbnails";
  if (!is_below(real, store_folder()) && !is_below(real, shared)) return false;
  return !is_a_picture(path) && !is_a_picture(real);
}

void set_picture_check(bool (*check)(const std::string &path)) { g_picture_check = check; }

}  // namespace phone::thumbnail

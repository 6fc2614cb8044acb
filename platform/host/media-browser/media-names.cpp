#include "media-browser/media-names.hpp"

#include <glib.h>

#include <algorithm>
#include <array>

#include "media-browser/query.hpp"

namespace phone::media {

namespace {

constexpr std::array<std::string_view, 26> kPictures{
    "jpg",  "jpeg", "jpe",  "jfif", "png",  "gif", "bmp", "webp", "tif",
    "tiff", "heic", "heif", "hif",  "avif", "svg", "dng", "cr2",  "cr3",
    "nef",  "nrw",  "arw",  "orf",  "rw2",  "raf", "pef", "srw"};
constexpr std::array<std::string_view, 14> kVideos{"mp4", "m4v",  "mov", "3gp", "3g2",
                                                   "mkv", "webm", "avi", "mpg", "mpeg",
                                                   "mts", "m2ts", "wmv", "ogv"};

constexpr std::size_t kLongestExtension = 4;

template <std::size_t N>
bool contains(const std::array<std::string_view, N> &extensions, std::string_view extension) {
  return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

}  // namespace

std::string extension_of(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {};
  std::string extension(name.substr(dot + 1));
  std::transform(extension.begin(), extension.end(), extension.begin(), g_ascii_tolower);
  return extension;
}

int kind_by_name(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || name.size() - dot - 1 > kLongestExtension) return 0;
  const std::string extension = extension_of(name);
  if (contains(kPictures, extension)) return kPicture;
  return contains(kVideos, extension) ? kVideo : 0;
}

bool is_hidden(std::string_view name) { return name.starts_with('.'); }

bool is_camera_folder(std::string_view path) {
  constexpr std::string_view kCamera = "DCIM";
  while (!path.empty()) {
    const std::size_t slash = path.find('/');
    const std::string_view part = path.substr(0, slash);
    if (part.size() == kCamera.size() &&
        g_ascii_strncasecmp(part.data(), kCamera.data(), kCamera.size()) == 0) {
      return true;
    }
    path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
  }
  return false;
}

}  // namespace phone::media

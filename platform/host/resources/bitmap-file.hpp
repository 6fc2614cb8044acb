/// One open bitmap file: a bundle of small PNG pictures named by their numbers.
#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "glib-ptr.hpp"

namespace phone::resources {

class BitmapFile {
 public:
  static constexpr std::size_t kMaxFile = 8U << 20U;
  static constexpr std::size_t kMaxPicture = 256U << 10U;  ///< bytes of one PNG
  static constexpr int kMaxSide = 512;                     ///< pixels

  /// @return NULL for a file that is missing, too large or no bundle
  static std::unique_ptr<BitmapFile> open(const char *path);

  /// @return (transfer full) (nullable) a copy of the caller's own; NULL for an unknown number
  ///         and for a picture that is not a PNG within the limits
  GdkPixbuf *copy(int id);

 private:
  explicit BitmapFile(std::string bytes) : bytes_(std::move(bytes)) {}
  pb::Ref<GdkPixbuf> decode(int id) const;

  std::string bytes_;
  std::map<std::string, std::string_view> pictures_;  // point into bytes_
  /// Decoded once: a screen full of placeholders asks for the same bitmap for every cell. Only
  /// numbers of the bundle are kept; a refused picture is kept as an empty entry.
  std::map<int, pb::Ref<GdkPixbuf>> decoded_;
};

}  // namespace phone::resources

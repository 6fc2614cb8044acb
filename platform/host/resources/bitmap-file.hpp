/// One open bitmap file: a bundle of small PNG pictures named by their numbers.
#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gio/gio.h>

#include <map>
#include <memory>

#include "glib-ptr.hpp"

namespace phone::resources {

using ResourcePtr = std::unique_ptr<GResource, pb::FreeWith<g_resource_unref>>;

class BitmapFile {
 public:
  static constexpr std::size_t kMaxFile = 8U << 20U;
  static constexpr gsize kMaxPicture = 256U << 10U;  ///< bytes of one PNG
  static constexpr int kMaxSide = 512;               ///< pixels

  /// @return NULL for a file that is missing, too large or no bundle
  static std::unique_ptr<BitmapFile> open(const char *path);

  /// @return (transfer full) (nullable) a copy of the caller's own; NULL for an unknown number
  ///         and for a picture that is not a PNG within the limits
  GdkPixbuf *copy(int id);

 private:
  explicit BitmapFile(ResourcePtr bundle) : bundle_(std::move(bundle)) {}
  pb::Ref<GdkPixbuf> decode(int id) const;

  ResourcePtr bundle_;
  /// Decoded once: a screen full of placeholders asks for the same bitmap for every cell. A
  /// picture that is missing or refused is remembered too, as an empty entry.
  std::map<int, pb::Ref<GdkPixbuf>> decoded_;
};

}  // namespace phone::resources

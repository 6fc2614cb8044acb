#include "resources/bitmap-file.hpp"

#include <array>
#include <cstring>
#include <string>
#include <string_view>

#include "resources/file.hpp"

namespace phone::resources {
namespace {

using BytesPtr = std::unique_ptr<GBytes, pb::FreeWith<g_bytes_unref>>;

constexpr std::size_t kMaxRemembered = 256;

/// True for a PNG whose first chunk claims a size within the limits: the decoder allocates by
/// what is claimed there.
bool is_small_png(const void *data, gsize size) {
  constexpr std::string_view kStart("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
  if (size < 33 || memcmp(data, kStart.data(), kStart.size()) != 0) return false;
  std::array<guint32, 2> sides{};
  memcpy(sides.data(), static_cast<const char *>(data) + kStart.size(), sizeof sides);
  for (const guint32 side : sides) {
    const guint32 pixels = GUINT32_FROM_BE(side);
    if (pixels == 0 || pixels > BitmapFile::kMaxSide) return false;
  }
  return true;
}

}  // namespace

std::unique_ptr<BitmapFile> BitmapFile::open(const char *path) {
  const auto bytes = read_whole(path, kMaxFile);
  if (!bytes) return nullptr;
  const BytesPtr shared(g_bytes_new(bytes->data(), bytes->size()));
  ResourcePtr bundle(g_resource_new_from_data(shared.get(), nullptr));
  if (!bundle) return nullptr;
  return std::unique_ptr<BitmapFile>(new BitmapFile(std::move(bundle)));
}

pb::Ref<GdkPixbuf> BitmapFile::decode(int id) const {
  const std::string name = "/bitmaps/" + std::to_string(id) + ".png";
  gsize size = 0;
  guint32 flags = 0;
  // A compressed entry would be unpacked to whatever size it claims.
  if (!g_resource_get_info(bundle_.get(), name.c_str(), G_RESOURCE_LOOKUP_FLAGS_NONE, &size, &flags,
                           nullptr) ||
      size > kMaxPicture || (flags & G_RESOURCE_FLAGS_COMPRESSED) != 0) {
    return nullptr;
  }
  const BytesPtr bytes(
      g_resource_lookup_data(bundle_.get(), name.c_str(), G_RESOURCE_LOOKUP_FLAGS_NONE, nullptr));
  if (!bytes) return nullptr;
  gsize length = 0;
  const void *data = g_bytes_get_data(bytes.get(), &length);
  if (length > kMaxPicture || !is_small_png(data, length)) return nullptr;

  const auto loader =
      pb::Ref<GdkPixbufLoader>::adopt(gdk_pixbuf_loader_new_with_type("png", nullptr));
  if (!loader) return nullptr;
  const gboolean written =
      gdk_pixbuf_loader_write(loader.get(), static_cast<const guchar *>(data), length, nullptr);
  const gboolean closed = gdk_pixbuf_loader_close(loader.get(), nullptr);
  if (!written || !closed) return nullptr;
  return pb::Ref<GdkPixbuf>::share(gdk_pixbuf_loader_get_pixbuf(loader.get()));
}

GdkPixbuf *BitmapFile::copy(int id) {
  auto found = decoded_.find(id);
  if (found == decoded_.end()) {
    if (decoded_.size() >= kMaxRemembered) decoded_.clear();
    found = decoded_.emplace(id, decode(id)).first;
  }
  return found->second ? gdk_pixbuf_copy(found->second.get()) : nullptr;
}

}  // namespace phone::resources

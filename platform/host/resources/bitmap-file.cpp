#include "resources/bitmap-file.hpp"

#include <array>
#include <cstdint>
#include <cstring>

#include "resources/bundle.hpp"
#include "resources/file.hpp"

namespace phone::resources {
namespace {

std::string name_of(int id) { return std::to_string(id) + ".png"; }

/// True for a PNG whose first chunk claims a size within the limits: the decoder allocates by
/// what is claimed there.
bool is_small_png(std::string_view picture) {
  constexpr std::string_view kStart("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
  if (picture.size() < 33 || picture.size() > BitmapFile::kMaxPicture) return false;
  if (!picture.starts_with(kStart)) return false;
  std::array<std::uint32_t, 2> sides{};
  memcpy(sides.data(), picture.data() + kStart.size(), sizeof sides);
  for (const std::uint32_t side : sides) {
    const std::uint32_t pixels = GUINT32_FROM_BE(side);
    if (pixels == 0 || pixels > BitmapFile::kMaxSide) return false;
  }
  return true;
}

}  // namespace

std::unique_ptr<BitmapFile> BitmapFile::open(const char *path) {
  auto bytes = read_whole(path, kMaxFile);
  if (!bytes) return nullptr;
  std::unique_ptr<BitmapFile> file(new BitmapFile(std::move(*bytes)));
  auto pictures = read_bundle(file->bytes_);
  if (!pictures) return nullptr;
  file->pictures_ = std::move(*pictures);
  return file;
}

pb::Ref<GdkPixbuf> BitmapFile::decode(int id) const {
  const auto picture = pictures_.find(name_of(id));
  if (picture == pictures_.end() || !is_small_png(picture->second)) return nullptr;

  const auto loader =
      pb::Ref<GdkPixbufLoader>::adopt(gdk_pixbuf_loader_new_with_type("png", nullptr));
  if (!loader) return nullptr;
  const gboolean written = gdk_pixbuf_loader_write(
      loader.get(), reinterpret_cast<const guchar *>(picture->second.data()),
      picture->second.size(), nullptr);
  const gboolean closed = gdk_pixbuf_loader_close(loader.get(), nullptr);
  if (!written || !closed) return nullptr;
  return pb::Ref<GdkPixbuf>::share(gdk_pixbuf_loader_get_pixbuf(loader.get()));
}

GdkPixbuf *BitmapFile::copy(int id) {
  auto found = decoded_.find(id);
  if (found == decoded_.end()) {
    if (!pictures_.contains(name_of(id))) return nullptr;
    found = decoded_.emplace(id, decode(id)).first;
  }
  return found->second ? gdk_pixbuf_copy(found->second.get()) : nullptr;
}

}  // namespace phone::resources

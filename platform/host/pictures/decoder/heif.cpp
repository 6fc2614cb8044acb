#include <libheif/heif.h>

#include <cstring>
#include <vector>

#include "pictures/decoder/decode.hpp"
#include "pictures/decoder/whole-file.hpp"

namespace phone::pictures {
namespace {

using ContextPtr = std::unique_ptr<heif_context, pb::FreeWith<heif_context_free>>;
using HandlePtr = std::unique_ptr<const heif_image_handle, pb::FreeWith<heif_image_handle_release>>;
using ImagePtr = std::unique_ptr<heif_image, pb::FreeWith<heif_image_release>>;

/// A thumbnail inside the file that is large enough, else the picture itself.
HandlePtr smallest_sufficient(HandlePtr main, Size wanted) {
  heif_item_id id = 0;
  if (heif_image_handle_get_list_of_thumbnail_IDs(main.get(), &id, 1) < 1) return main;
  heif_image_handle *raw = nullptr;
  if (heif_image_handle_get_thumbnail(main.get(), id, &raw).code != heif_error_Ok) return main;
  HandlePtr thumbnail(raw);
  const bool enough = heif_image_handle_get_width(raw) >= wanted.width &&
                      heif_image_handle_get_height(raw) >= wanted.height;
  return enough ? std::move(thumbnail) : std::move(main);
}

PixbufRef to_pixbuf(const heif_image *image, bool alpha) {
  int stride = 0;
  const uint8_t *pixels = heif_image_get_plane_readonly(image, heif_channel_interleaved, &stride);
  const int width = heif_image_get_width(image, heif_channel_interleaved);
  const int height = heif_image_get_height(image, heif_channel_interleaved);
  if (pixels == nullptr || width <= 0 || height <= 0) return {};
  PixbufRef pixbuf = PixbufRef::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, alpha, 8, width, height));
  if (!pixbuf) return {};
  const size_t line = static_cast<size_t>(width) * (alpha ? 4 : 3);
  for (int y = 0; y < height; ++y) {
    std::memcpy(
        gdk_pixbuf_get_pixels(pixbuf.get()) +
            static_cast<size_t>(y) * static_cast<size_t>(gdk_pixbuf_get_rowstride(pixbuf.get())),
        pixels + static_cast<size_t>(y) * static_cast<size_t>(stride), line);
  }
  return pixbuf;
}

wire::Status status_of(const heif_error &error) {
  return error.code == heif_error_Unsupported_feature ||
                 error.code == heif_error_Unsupported_filetype
             ? wire::Status::kUnknown
             : wire::Status::kDamaged;
}

}  // namespace

Decoded decode_heif(int fd, Size wanted) {
  const std::vector<std::byte> data = read_whole_file(fd);
  const ContextPtr context(heif_context_alloc());
  heif_error error =
      heif_context_read_from_memory_without_copy(context.get(), data.data(), data.size(), nullptr);
  if (error.code != heif_error_Ok) return {status_of(error), {}};
  heif_image_handle *raw = nullptr;
  error = heif_context_get_primary_image_handle(context.get(), &raw);
  if (error.code != heif_error_Ok) return {status_of(error), {}};
  const HandlePtr handle = smallest_sufficient(HandlePtr(raw), wanted);

  const bool alpha = heif_image_handle_has_alpha_channel(handle.get()) != 0;
  heif_image *decoded = nullptr;
  error = heif_decode_image(handle.get(), &decoded, heif_colorspace_RGB,
                            alpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB,
                            nullptr);
  if (error.code != heif_error_Ok) return {status_of(error), {}};
  const ImagePtr image(decoded);
  PixbufRef pixbuf = to_pixbuf(decoded, alpha);
  return {pixbuf ? wire::Status::kOk : wire::Status::kTooLarge, pixbuf};
}

}  // namespace phone::pictures

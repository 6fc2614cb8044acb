#include <libheif/heif.h>
#include <webp/encode.h>
#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

#include <cstring>
#include <memory>

#include "file-bytes.hpp"
#include "glib-ptr.hpp"

namespace test {

Bytes webp_of(GdkPixbuf *pixbuf, bool lossless) {
  const auto encode = [pixbuf, lossless](std::uint8_t **out) {
    const std::uint8_t *pixels = gdk_pixbuf_read_pixels(pixbuf);
    const int width = gdk_pixbuf_get_width(pixbuf);
    const int height = gdk_pixbuf_get_height(pixbuf);
    const int stride = gdk_pixbuf_get_rowstride(pixbuf);
    return lossless ? WebPEncodeLosslessRGB(pixels, width, height, stride, out)
                    : WebPEncodeRGB(pixels, width, height, stride, 95, out);
  };
  std::uint8_t *bytes = nullptr;
  const size_t size = encode(&bytes);
  Bytes out(reinterpret_cast<char *>(bytes), size);
  WebPFree(bytes);
  return out;
}

Bytes webp_with_exif(GdkPixbuf *pixbuf, const Bytes &block) {
  constexpr size_t kBeforeChunks = 12;
  const auto chunk = [](const char *type, const Bytes &contents) {
    return type + little(contents.size(), 4) + contents + Bytes(contents.size() % 2, '\0');
  };
  const auto side = [](int pixels) { return little(static_cast<unsigned>(pixels) - 1, 3); };
  const Bytes canvas = Bytes("\x08\0\0\0", 4) + side(gdk_pixbuf_get_width(pixbuf)) +
                       side(gdk_pixbuf_get_height(pixbuf));
  const Bytes chunks =
      chunk("VP8X", canvas) + webp_of(pixbuf).substr(kBeforeChunks) + chunk("EXIF", block);
  return "RIFF" + little(chunks.size() + 4, 4) + "WEBP" + chunks;
}

Bytes box(const char *type, const Bytes &contents) {
  return big(contents.size() + 8, 4) + type + contents;
}

namespace {

using ContextPtr = std::unique_ptr<heif_context, pb::FreeWith<heif_context_free>>;
using EncoderPtr = std::unique_ptr<heif_encoder, pb::FreeWith<heif_encoder_release>>;
using OptionsPtr = std::unique_ptr<heif_encoding_options, pb::FreeWith<heif_encoding_options_free>>;
using ImagePtr = std::unique_ptr<heif_image, pb::FreeWith<heif_image_release>>;
using HandlePtr = std::unique_ptr<heif_image_handle, pb::FreeWith<heif_image_handle_release>>;

ImagePtr heif_image_of(const GdkPixbuf *pixbuf) {
  const int width = gdk_pixbuf_get_width(pixbuf);
  const int height = gdk_pixbuf_get_height(pixbuf);
  heif_image *image = nullptr;
  heif_image_create(width, height, heif_colorspace_RGB, heif_chroma_interleaved_RGB, &image);
  heif_image_add_plane(image, heif_channel_interleaved, width, height, 24);
  int stride = 0;
  std::uint8_t *plane = heif_image_get_plane(image, heif_channel_interleaved, &stride);
  for (int y = 0; y < height; ++y) {
    std::memcpy(plane + y * stride,
                gdk_pixbuf_read_pixels(pixbuf) + y * gdk_pixbuf_get_rowstride(pixbuf),
                static_cast<size_t>(width) * 3);
  }
  return ImagePtr(image);
}

heif_error append(heif_context *, const void *data, size_t size, void *out) {
  static_cast<Bytes *>(out)->append(static_cast<const char *>(data), size);
  return {heif_error_Ok, heif_suberror_Unspecified, ""};
}

/// The encoder's library keeps some memory for every picture.
class WithoutLeakChecks {
#if defined(__SANITIZE_ADDRESS__)
  __lsan::ScopedDisabler disabler_;
#endif
};

}  // namespace

Bytes heif_of(const GdkPixbuf *pixbuf, const char *kind, int orientation, const Bytes &exif) {
  [[maybe_unused]] const WithoutLeakChecks unchecked;
  const bool heif = std::strcmp(kind, "heif") == 0;
  const ContextPtr context(heif_context_alloc());
  heif_encoder *raw = nullptr;
  const auto format = heif ? heif_compression_HEVC : heif_compression_AV1;
  if (heif_context_get_encoder_for_format(context.get(), format, &raw).code != heif_error_Ok) {
    return {};
  }
  const EncoderPtr encoder(raw);
  heif_encoder_set_lossy_quality(encoder.get(), 90);
  if (!heif) heif_encoder_set_parameter_integer(encoder.get(), "speed", 9);
  const ImagePtr image = heif_image_of(pixbuf);
  heif_image_handle *handle = nullptr;
  const OptionsPtr options(heif_encoding_options_alloc());
  options->image_orientation = static_cast<heif_orientation>(orientation);
  heif_context_encode_image(context.get(), image.get(), encoder.get(), options.get(), &handle);
  const HandlePtr owner(handle);
  if (!exif.empty()) {
    heif_context_add_exif_metadata(context.get(), handle, exif.data(),
                                   static_cast<int>(exif.size()));
  }
  Bytes out;
  heif_writer writer{1, append};
  heif_context_write(context.get(), &writer, &out);
  return out;
}

namespace {

Bytes movie_header(const Film &film) {
  const int size = film.wide ? 8 : 4;
  return box("mvhd", big(film.wide ? 1u << 24 : 0, 4) + big(film.created_1904, size) +
                         big(0, size) + big(film.scale, 4) + big(film.length, size) +
                         Bytes(80, '\0'));
}

Bytes turn_matrix(int turn) {
  constexpr std::uint32_t kOne = 0x10000, kMinusOne = 0xffff0000;
  std::uint32_t a = kOne, b = 0, c = 0, d = kOne;
  if (turn == 90) a = 0, b = kOne, c = kMinusOne, d = 0;
  if (turn == 180) a = kMinusOne, d = kMinusOne;
  if (turn == 270) a = 0, b = kMinusOne, c = kOne, d = 0;
  return big(a, 4) + big(b, 4) + big(0, 4) + big(c, 4) + big(d, 4) + big(0, 4) + big(0, 4) +
         big(0, 4) + big(0x40000000, 4);
}

Bytes track(const Film &film, const char *kind, bool sized) {
  const unsigned width = sized ? static_cast<unsigned>(film.width) : 0;
  const unsigned height = sized ? static_cast<unsigned>(film.height) : 0;
  const Bytes head = box("tkhd", Bytes(40, '\0') + turn_matrix(film.turn) + big(width << 16, 4) +
                                     big(height << 16, 4));
  return box("trak", head + box("mdia", box("hdlr", Bytes(8, '\0') + kind + Bytes(12, '\0'))));
}

}  // namespace

Bytes mp4_of(const Film &film) {
  Bytes movie = movie_header(film) + track(film, "soun", false);
  if (!film.only_sound) movie += track(film, "vide", true);
  if (film.position) movie += box("udta", box("\xa9xyz", Bytes("\0\x12\x15\xc7+27.5+086.9/", 16)));
  const Bytes first = box("ftyp", film.brand + Bytes(4, '\0') + film.brand);
  const Bytes data = box("mdat", Bytes(5000, '\x55'));
  const Bytes index = box("moov", movie);
  return first + (film.index_last ? data + index : index + data);
}

}  // namespace test

#include "pictures/decoder/decode.hpp"

#include <algorithm>

#include "pictures/decoder/coarse-jpeg.hpp"
#include "pictures/decoder/whole-file.hpp"

namespace phone::pictures {
namespace {

Size size_of(const PixbufRef &pixbuf) {
  return {gdk_pixbuf_get_width(pixbuf.get()), gdk_pixbuf_get_height(pixbuf.get())};
}

wire::Status why_refused(const Header &header) {
  if (header.width == 0 || header.height == 0) return wire::Status::kDamaged;
  const gint64 pixels = static_cast<gint64>(header.width) * header.height;
  const bool large = header.width > kMaxSide || header.height > kMaxSide || pixels > kMaxPixels;
  return large ? wire::Status::kTooLarge : wire::Status::kUnknown;
}

/// Where a pixel for each block of 8 by 8 is enough, large photographs have a quicker decoder.
PixbufRef decode_large_jpeg(int fd, const Header &header, Size wanted) {
  constexpr gint64 kLarge = 1'000'000;
  const gint64 pixels = static_cast<gint64>(header.width) * header.height;
  const bool coarse = wanted.width <= header.width / 8 && wanted.height <= header.height / 8;
  return pixels >= kLarge && coarse ? decode_coarse_jpeg(read_whole_file(fd)) : PixbufRef();
}

Decoded decode_format(int fd, const Header &header, Size wanted, bool preview) {
  if (header.format == Format::kHeif || header.format == Format::kAvif) {
    return decode_heif(fd, wanted);
  }
  if (header.format == Format::kRaw) return decode_raw(fd, header, wanted);
  if (header.format == Format::kDrawing) return decode_drawing(fd, wanted);
  if (header.format != Format::kJpeg) return decode_with_loader(fd, header);
  PixbufRef pixbuf;
  if (preview) pixbuf = decode_preview(fd, header, wanted);
  if (!pixbuf) pixbuf = decode_large_jpeg(fd, header, wanted);
  if (!pixbuf) pixbuf = decode_jpeg(fd, wanted);
  return {pixbuf ? wire::Status::kOk : wire::Status::kDamaged, pixbuf};
}

/// One row of RGBA onto white, as RGB.
void blend_row(const guchar *from, guchar *to, int width) {
  constexpr int kWhite = 255;
  for (int x = 0; x < width; ++x, from += 4, to += 3) {
    const int alpha = from[3];
    for (int channel = 0; channel < 3; ++channel) {
      to[channel] =
          static_cast<guchar>((from[channel] * alpha + kWhite * (255 - alpha) + 127) / 255);
    }
  }
}

PixbufRef on_white(const PixbufRef &pixbuf) {
  if (!gdk_pixbuf_get_has_alpha(pixbuf.get())) return pixbuf;
  const Size size = size_of(pixbuf);
  PixbufRef result =
      PixbufRef::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, size.width, size.height));
  if (!result) return {};
  const std::ptrdiff_t from_stride = gdk_pixbuf_get_rowstride(pixbuf.get());
  const std::ptrdiff_t to_stride = gdk_pixbuf_get_rowstride(result.get());
  for (int y = 0; y < size.height; ++y) {
    blend_row(gdk_pixbuf_read_pixels(pixbuf.get()) + y * from_stride,
              gdk_pixbuf_get_pixels(result.get()) + y * to_stride, size.width);
  }
  return result;
}

}  // namespace

Decoded decode(int fd, const Order &order) {
  const auto header = read_header_of_file(fd);
  if (!header) return {wire::Status::kUnknown, {}};
  if (header->refused) return {why_refused(*header), {}};
  if (header->format == Format::kVideo) return {wire::Status::kVideo, {}};
  if (header->format == Format::kDrawing && !order.drawings) return {wire::Status::kDrawing, {}};

  int orientation = order.upright ? header->orientation : 1;
  Size box = order.box;
  if (orientation > 4) std::swap(box.width, box.height);
  const Size promised{header->width, header->height};
  const Size wanted = fit(promised, box, order.enlarge);
  if (static_cast<gint64>(wanted.width) * wanted.height > kMaxPixels) {
    return {wire::Status::kTooLarge, {}};
  }
  Decoded result = decode_format(fd, *header, wanted, order.preview);
  if (result.status != wire::Status::kOk) return result;
  if (order.upright && result.orientation > 4) std::swap(box.width, box.height);
  if (order.upright && result.orientation != 0) orientation = result.orientation;

  // What came out decides from here on. A preview or a reduced decode stands for the whole
  // picture; any other size is what the file really holds.
  const bool reduced = header->format == Format::kJpeg || header->format == Format::kHeif ||
                       header->format == Format::kAvif || header->format == Format::kDrawing;
  const Size stored = reduced ? promised : size_of(result.pixbuf);
  PixbufRef pixbuf = scaled(result.pixbuf, fit(stored, box, order.enlarge));
  if (pixbuf) pixbuf = turned(pixbuf, orientation);
  if (pixbuf && order.opaque) pixbuf = on_white(pixbuf);
  if (!pixbuf) return {wire::Status::kTooLarge, {}};
  return {wire::Status::kOk, pixbuf, result.thumbnail_mtime};
}

}  // namespace phone::pictures

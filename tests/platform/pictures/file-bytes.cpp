#include "file-bytes.hpp"

#include <array>

#include "glib-ptr.hpp"
#include "support/glib-test.hpp"
#include "tools/samples/writers.hpp"

namespace test {

Bytes big(std::uint64_t value, int bytes) {
  Bytes out;
  for (int shift = (bytes - 1) * 8; shift >= 0; shift -= 8) {
    out.push_back(static_cast<char>(value >> shift));
  }
  return out;
}

Bytes little(std::uint64_t value, int bytes) {
  Bytes out;
  for (int i = 0; i < bytes; ++i) out.push_back(static_cast<char>(value >> (8 * i)));
  return out;
}

Bytes saved_as(const GdkPixbuf *pixbuf, const char *type) {
  pb::StringPtr data;
  gsize size = 0;
  pb::ErrorPtr error;
  gdk_pixbuf_save_to_buffer(const_cast<GdkPixbuf *>(pixbuf), pb::out(data), &size, type,
                            pb::out(error), nullptr);
  EXPECT_FALSE(error) << error->message;
  return {data.get(), size};
}

namespace {

std::uint32_t checksum(const Bytes &bytes) {
  std::uint32_t sum = 0xffffffff;
  for (const char byte : bytes) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xedb88320u : 0);
  }
  return ~sum;
}

Bytes text_of(const samples::Bytes &bytes) { return {bytes.begin(), bytes.end()}; }

}  // namespace

Bytes png_chunk(const char *type, const Bytes &contents) {
  const Bytes body = type + contents;
  return big(contents.size(), 4) + body + big(checksum(body), 4);
}

Bytes with_png_chunk(const Bytes &png, const char *type, const Bytes &contents) {
  constexpr size_t kHeaderEnd = 33;
  return png.substr(0, kHeaderEnd) + png_chunk(type, contents) + png.substr(kHeaderEnd);
}

Bytes png_start(std::uint32_t width, std::uint32_t height) {
  const Bytes header = big(width, 4) + big(height, 4) + Bytes("\x08\x02\0\0\0", 5);
  // A stream that begins like any other and then ends.
  return Bytes("\x89PNG\r\n\x1a\n") + png_chunk("IHDR", header) +
         png_chunk("IDAT", Bytes("\x78\x9c\xed\xc1", 4));
}

Bytes gif_of(GdkPixbuf *pixbuf) { return text_of(samples::gif({pixbuf})); }

Bytes gif_start(int width, int height) {
  const Bytes size =
      little(static_cast<unsigned>(width), 2) + little(static_cast<unsigned>(height), 2);
  return "GIF89a" + size + Bytes("\x80\0\0\0\0\0\xff\xff\xff", 9) + "," + Bytes(4, '\0') + size +
         Bytes("\0\x02\x02\x44\x01\0;", 7);
}

Bytes tiff_of(const GdkPixbuf *pixbuf, int orientation, bool big_endian) {
  const auto number = [big_endian](std::uint64_t value, int bytes) {
    return big_endian ? big(value, bytes) : little(value, bytes);
  };
  const int width = gdk_pixbuf_get_width(pixbuf);
  const int height = gdk_pixbuf_get_height(pixbuf);
  Bytes pixels;
  for (int y = 0; y < height; ++y) {
    const guchar *row = gdk_pixbuf_read_pixels(pixbuf) + y * gdk_pixbuf_get_rowstride(pixbuf);
    pixels.append(reinterpret_cast<const char *>(row), static_cast<size_t>(width) * 3);
  }
  const auto entry = [&](unsigned tag, unsigned type, std::uint64_t count, std::uint64_t value) {
    const Bytes field =
        type == 3 && count == 1 ? number(value, 2) + Bytes(2, '\0') : number(value, 4);
    return number(tag, 2) + number(type, 2) + number(count, 4) + field;
  };
  constexpr int kEntries = 11;
  constexpr unsigned kBits = 8 + 2 + kEntries * 12 + 4;
  constexpr unsigned kPixels = kBits + 6;
  return (big_endian ? Bytes("MM\0*", 4) : Bytes("II*\0", 4)) + number(8, 4) + number(kEntries, 2) +
         entry(256, 3, 1, static_cast<unsigned>(width)) +
         entry(257, 3, 1, static_cast<unsigned>(height)) + entry(258, 3, 3, kBits) +
         entry(259, 3, 1, 1) + entry(262, 3, 1, 2) + entry(273, 4, 1, kPixels) +
         entry(274, 3, 1, static_cast<unsigned>(orientation)) + entry(277, 3, 1, 3) +
         entry(278, 3, 1, static_cast<unsigned>(height)) + entry(279, 4, 1, pixels.size()) +
         entry(284, 3, 1, 1) + number(0, 4) + number(8, 2) + number(8, 2) + number(8, 2) + pixels;
}

Bytes film_of(GdkPixbuf *frame, int frames) {
  const samples::Bytes jpeg = samples::jpeg(frame, 0, "");
  return text_of(samples::film(std::vector<samples::Bytes>(static_cast<size_t>(frames), jpeg),
                               gdk_pixbuf_get_width(frame), gdk_pixbuf_get_height(frame)));
}

}  // namespace test

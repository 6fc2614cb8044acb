#include <cstdlib>

#include "pictures/headers/private.hpp"

namespace phone::pictures {
namespace {

constexpr int kMostChunks = 64;

}  // namespace

void read_png(Source &source, Header &header) {
  const Bytes start = source.at(8, 16);
  if (start.empty() || big32(start, 0) != 13 || !has_text(start, 4, "IHDR")) return;
  set_size(header, big32(start, 8), big32(start, 12));
  std::uint64_t at = 8 + 25;
  for (int chunk = 0; chunk < kMostChunks; ++chunk) {
    const Bytes head = source.at(at, 8);
    if (head.empty() || has_text(head, 4, "IDAT") || has_text(head, 4, "IEND")) return;
    const std::uint32_t length = big32(head, 0);
    if (has_text(head, 4, "eXIf")) return read_exif(source, at + 8, length, false, header);
    at += 12ull + length;
  }
}

void read_gif(Source &source, Header &header) {
  const Bytes screen = source.at(6, 4);
  if (!screen.empty()) set_size(header, little16(screen, 0), little16(screen, 2));
}

void read_bmp(Source &source, Header &header) {
  const Bytes start = source.at(14, 12);
  if (start.empty()) return;
  if (little32(start, 0) == 12) return set_size(header, little16(start, 4), little16(start, 6));
  // A negative height means that the first row is the top one.
  const auto width = static_cast<std::int32_t>(little32(start, 4));
  const auto height = static_cast<std::int32_t>(little32(start, 8));
  set_size(header, width, std::abs(static_cast<std::int64_t>(height)));
}

namespace {

void read_webp_exif(Source &source, Header &header) {
  std::uint64_t at = 12;
  for (int chunk = 0; chunk < kMostChunks; ++chunk) {
    const Bytes head = source.at(at, 8);
    if (head.empty()) return;
    const std::uint32_t length = little32(head, 4);
    if (has_text(head, 0, "EXIF")) {
      // Some writers repeat the prefix that JPEG uses.
      const bool prefixed =
          length > 6 && has_text(source.at(at + 8, 6), 0, std::string_view("Exif\0\0", 6));
      const unsigned skip = prefixed ? 6 : 0;
      return read_exif(source, at + 8 + skip, length - skip, false, header);
    }
    at += 8ull + length + length % 2;
  }
}

}  // namespace

void read_webp(Source &source, Header &header) {
  // The smallest files are shorter than the longest of the three headers.
  const Bytes kind = source.at(12, 4);
  if (has_text(kind, 0, "VP8 ")) {
    const Bytes frame = source.at(20, 10);
    if (!has_text(frame, 3, "\x9d\x01\x2a")) return;
    set_size(header, little16(frame, 6) & 0x3fff, little16(frame, 8) & 0x3fff);
  } else if (has_text(kind, 0, "VP8L")) {
    const Bytes frame = source.at(20, 5);
    if (frame.empty() || byte_at(frame, 0) != 0x2f) return;
    const std::uint32_t bits = little32(frame, 1);
    set_size(header, (bits & 0x3fff) + 1, (bits >> 14 & 0x3fff) + 1);
  } else if (has_text(kind, 0, "VP8X")) {
    constexpr unsigned kHasExif = 8;
    const Bytes canvas = source.at(20, 10);
    if (canvas.empty()) return;
    const bool has_exif = (byte_at(canvas, 0) & kHasExif) != 0;
    set_size(header, little24(canvas, 4) + 1, little24(canvas, 7) + 1);
    if (has_exif) read_webp_exif(source, header);
  }
}

}  // namespace phone::pictures

#include "pictures/headers/private.hpp"

namespace phone::pictures {
namespace {

constexpr int kMostSegments = 1024;
constexpr int kMostGarbage = 1 << 16;

/// Steps to the next marker as decoders do, over fill bytes and over garbage between segments,
/// so that this reader and the decoder always find the same frame. Returns 0 at the end.
int next_marker(Source &source, std::uint64_t &at) {
  for (int skipped = 0; skipped < kMostGarbage; ++skipped) {
    const Bytes pair = source.at(at, 2);
    if (pair.empty()) return 0;
    const int code = byte_at(pair, 1);
    if (byte_at(pair, 0) == 0xff && code != 0 && code != 0xff) {
      at += 2;
      return code;
    }
    ++at;
  }
  return 0;
}

bool is_frame(int marker) {
  return marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
}

void read_frame(Source &source, std::uint64_t at, int marker, Header &header) {
  const Bytes frame = source.at(at, 8);
  if (frame.empty()) return;
  set_size(header, big16(frame, 5), big16(frame, 3));
  // Baseline, extended and progressive Huffman only: some truncated arithmetic-coded files keep
  // the stock decoder busy for ever, and it knows no other coding at all.
  if (marker > 0xc2) header.refused = true;
}

}  // namespace

void read_jpeg(Source &source, Header &header) {
  std::uint64_t at = 2;
  bool exif_seen = false;
  for (int segment = 0; segment < kMostSegments; ++segment) {
    const int marker = next_marker(source, at);
    if (marker == 0x01 || (marker >= 0xd0 && marker <= 0xd7)) continue;
    // The picture ends or its data begins before a frame, or the marker is none that decoders
    // accept: no size.
    if (marker == 0 || marker == 0xd8 || marker == 0xd9 || marker == 0xda) return;
    if (is_frame(marker)) return read_frame(source, at, marker, header);
    const Bytes length_field = source.at(at, 2);
    if (length_field.empty()) return;
    const std::uint32_t length = big16(length_field, 0);
    if (length < 2) return;
    if (marker == 0xe1 && !exif_seen && length > 16 &&
        has_text(source.at(at + 2, 6), 0, std::string_view("Exif\0\0", 6))) {
      exif_seen = true;
      read_exif(source, at + 8, length - 8, true, header);
    }
    at += length;
  }
}

}  // namespace phone::pictures

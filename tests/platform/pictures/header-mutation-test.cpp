#include <random>

#include "file-bytes.hpp"
#include "pictures/descriptor.hpp"
#include "pictures/header-reader.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"

namespace phone::pictures {
namespace {

using test::Bytes;

std::vector<Bytes> seeds() {
  const auto pixbuf = support::quartered_pixbuf(16, 12);
  const Bytes jpeg = test::jpeg_of(pixbuf.get());
  const Bytes exif =
      test::exif_block({.orientation = 6, .taken = "2024:05:17 18:30:01", .position = true});
  return {test::with_exif(jpeg, {.orientation = 6,
                                 .changed = "2024:05:17 18:30:01",
                                 .taken = "2024:05:17 18:30:01",
                                 .taken_offset = "+02:00",
                                 .position = true,
                                 .preview = jpeg}),
          test::with_png_chunk(test::saved_as(pixbuf.get(), "png"), "eXIf", exif),
          test::gif_of(pixbuf.get()),
          test::saved_as(pixbuf.get(), "bmp"),
          test::webp_with_exif(pixbuf.get(), exif),
          test::tiff_of(pixbuf.get(), 5),
          test::heif_of(pixbuf.get(), "heif", 6, exif),
          test::dng_of(test::jpeg_start(0xc0, 16, 12), 16, 12, 8, 8, 6),
          "<?xml version='1.0'?><svg width='30' height='20' viewBox='0 0 3 2'/>",
          test::mp4_of({.created_1904 = 3000000000,
                        .length = 1000,
                        .width = 64,
                        .height = 48,
                        .position = true}),
          test::film_of(pixbuf.get(), 2)};
}

/// A file with a few bytes of it changed, doubled or cut off.
Bytes mutated(Bytes bytes, std::mt19937 &random) {
  const auto below = [&random](size_t end) { return static_cast<size_t>(random()) % end; };
  constexpr size_t kHeaders = 600;
  for (size_t changes = 1 + below(6); changes > 0 && !bytes.empty(); --changes) {
    const size_t place = below(std::min(bytes.size(), kHeaders));
    switch (below(5)) {
      case 0:
        bytes[place] = static_cast<char>(random());
        break;
      case 1:
        bytes[place] = static_cast<char>(below(2) == 0 ? 0xff : 0);
        break;
      case 2:
        bytes.insert(place, bytes.substr(below(bytes.size()), below(40)));
        break;
      case 3:
        bytes.erase(place, below(20));
        break;
      default:
        bytes.resize(bytes.size() - below(std::min<size_t>(bytes.size(), 100)));
        break;
    }
  }
  return bytes;
}

/// What must hold for whatever bytes.
void expect_sound(const std::optional<Header> &header, size_t size) {
  if (!header) return;
  EXPECT_NE(header->format, Format::kUnknown);
  EXPECT_TRUE(header->orientation >= 1 && header->orientation <= 8);
  EXPECT_GE(header->duration_ms, 0);
  const gint64 pixels = static_cast<gint64>(header->width) * header->height;
  const bool within =
      header->width <= kMaxSide && header->height <= kMaxSide && pixels <= kMaxPixels;
  EXPECT_TRUE(within || header->refused);
  EXPECT_TRUE(pixels > 0 || header->refused || header->format == Format::kVideo);
  EXPECT_TRUE(header->preview_length == 0 || header->preview_offset + header->preview_length <=
                                                 static_cast<gint64>(size) + (1 << 16));
}

TEST(HeaderMutation, GivesSoundHeadersForDamagedFiles) {
  std::mt19937 random(20240517);
  for (const Bytes &seed : seeds()) {
    for (int i = 0; i < 3000; ++i) {
      const Bytes bytes = mutated(seed, random);
      expect_sound(read_header(test::span_of(bytes)), bytes.size());
    }
  }
}

TEST(HeaderMutation, ReadsTheSameFromAFileAsFromMemory) {
  std::mt19937 random(1);
  const support::TempDir dir;
  for (const Bytes &seed : seeds()) {
    for (int i = 0; i < 20; ++i) {
      const Bytes bytes = mutated(seed, random);
      const auto from_memory = read_header(test::span_of(bytes));
      const Descriptor file(open_regular_file(dir.write("file", bytes).c_str()));

      const auto from_file = read_header_of_file(file.get());

      ASSERT_EQ(from_file.has_value(), from_memory.has_value());
      if (!from_file) continue;
      EXPECT_EQ(from_file->width, from_memory->width);
      EXPECT_EQ(from_file->height, from_memory->height);
      EXPECT_EQ(from_file->refused, from_memory->refused);
      EXPECT_EQ(from_file->date_taken, from_memory->date_taken);
    }
  }
}

}  // namespace
}  // namespace phone::pictures

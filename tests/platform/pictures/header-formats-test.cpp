#include "file-bytes.hpp"
#include "pictures/header-reader.hpp"
#include "support/glib-test.hpp"

namespace phone::pictures {
namespace {

using support::solid_pixbuf;
using test::Bytes;

std::optional<Header> read(const Bytes &bytes) { return read_header(test::span_of(bytes)); }

/// Fails the test when a header is not of this format and size, or is refused.
void expect_picture(const Bytes &bytes, Format format, int width, int height) {
  const auto header = read(bytes);
  ASSERT_TRUE(header.has_value());
  EXPECT_EQ(header->format, format);
  EXPECT_EQ(header->width, width);
  EXPECT_EQ(header->height, height);
  EXPECT_FALSE(header->refused);
}

bool is_refused(const Bytes &bytes) {
  const auto header = read(bytes);
  EXPECT_TRUE(header.has_value());
  return header && header->refused;
}

TEST(PngHeader, TellsSize) {
  expect_picture(test::saved_as(solid_pixbuf(31, 17, support::kRed).get(), "png"), Format::kPng, 31,
                 17);
}

TEST(PngHeader, ReadsExif) {
  const Bytes png = test::saved_as(solid_pixbuf(31, 17, support::kRed).get(), "png");

  const auto header = read(test::with_png_chunk(png, "eXIf", test::exif_block({.orientation = 8})));

  EXPECT_EQ(header->orientation, 8);
}

TEST(PngHeader, RefusesHugeSizes) {
  EXPECT_TRUE(is_refused(test::png_start(100000, 100000)));
  EXPECT_TRUE(is_refused(test::png_start(65536, 1)));
  EXPECT_TRUE(is_refused(test::png_start(0xffffffff, 0xffffffff)));
  EXPECT_FALSE(is_refused(test::png_start(65535, 1)));
}

TEST(PngHeader, RefusesSizesOfNothing) {
  EXPECT_TRUE(is_refused(test::png_start(0, 10)));
  EXPECT_TRUE(is_refused(test::png_start(10, 0)));
}

TEST(GifHeader, TellsSize) {
  expect_picture(test::gif_of(solid_pixbuf(31, 17, support::kRed).get()), Format::kGif, 31, 17);
}

TEST(GifHeader, RefusesScreenOfFourThousandMegapixels) {
  EXPECT_TRUE(is_refused(test::gif_start(65535, 65535)));
}

TEST(BmpHeader, TellsSize) {
  expect_picture(test::saved_as(solid_pixbuf(31, 17, support::kRed).get(), "bmp"), Format::kBmp, 31,
                 17);
}

TEST(BmpHeader, TakesNegativeHeightForRowsFromAbove) {
  Bytes bmp = test::saved_as(solid_pixbuf(31, 17, support::kRed).get(), "bmp");
  bmp.replace(22, 4, test::little(static_cast<std::uint32_t>(-17), 4));

  expect_picture(bmp, Format::kBmp, 31, 17);
}

TEST(BmpHeader, RefusesSmallestHeightThereIs) {
  Bytes bmp = test::saved_as(solid_pixbuf(31, 17, support::kRed).get(), "bmp");
  bmp.replace(22, 4, test::little(0x80000000, 4));

  EXPECT_TRUE(is_refused(bmp));
}

TEST(BmpHeader, ReadsOldestKind) {
  expect_picture("BM" + Bytes(12, '\0') + test::little(12, 4) + test::little(31, 2) +
                     test::little(17, 2) + Bytes(4, '\0'),
                 Format::kBmp, 31, 17);
}

TEST(BmpHeader, IsNotAnyTextThatBeginsSo) {
  EXPECT_FALSE(read("BMW is a maker of cars in the south").has_value());
}

TEST(WebpHeader, TellsSize) {
  expect_picture(test::webp_of(solid_pixbuf(31, 17, support::kRed).get()), Format::kWebp, 31, 17);
}

TEST(WebpHeader, TellsSizeOfLosslessFile) {
  expect_picture(test::webp_of(solid_pixbuf(1, 1, support::kRed).get(), true), Format::kWebp, 1, 1);
}

TEST(WebpHeader, ReadsExif) {
  const auto pixbuf = solid_pixbuf(31, 17, support::kRed);
  const Bytes file = test::webp_with_exif(pixbuf.get(), test::exif_block({.orientation = 5}));

  expect_picture(file, Format::kWebp, 31, 17);
  EXPECT_EQ(read(file)->orientation, 5);
}

TEST(WebpHeader, ReadsExifWithThePrefixOfJpeg) {
  const auto pixbuf = solid_pixbuf(31, 17, support::kRed);
  const Bytes block = Bytes("Exif\0\0", 6) + test::exif_block({.orientation = 5});

  EXPECT_EQ(read(test::webp_with_exif(pixbuf.get(), block))->orientation, 5);
}

TEST(WebpHeader, RefusesHugeCanvas) {
  const Bytes file = "RIFF" + test::little(22, 4) + "WEBPVP8X" + test::little(10, 4) +
                     Bytes(4, '\0') + test::little(0xffffff, 3) + test::little(0xffffff, 3);

  EXPECT_TRUE(is_refused(file));
}

TEST(TiffHeader, TellsSizeInEitherByteOrder) {
  const auto pixbuf = solid_pixbuf(31, 17, support::kRed);

  expect_picture(test::tiff_of(pixbuf.get(), 1, false), Format::kTiff, 31, 17);
  expect_picture(test::tiff_of(pixbuf.get(), 1, true), Format::kTiff, 31, 17);
}

TEST(TiffHeader, ReadsOrientation) {
  const auto pixbuf = solid_pixbuf(31, 17, support::kRed);

  EXPECT_EQ(read(test::tiff_of(pixbuf.get(), 7))->orientation, 7);
}

TEST(HeifHeader, TellsSize) {
  const Bytes file = test::heif_of(solid_pixbuf(64, 48, support::kRed).get(), "heif");
  if (file.empty()) GTEST_SKIP() << "no encoder for HEIF";

  expect_picture(file, Format::kHeif, 64, 48);
}

TEST(HeifHeader, TellsSizeAfterTheTurn) {
  const Bytes file = test::heif_of(solid_pixbuf(64, 48, support::kRed).get(), "heif", 6);
  if (file.empty()) GTEST_SKIP() << "no encoder for HEIF";

  expect_picture(file, Format::kHeif, 48, 64);
  EXPECT_EQ(read(file)->orientation, 1);
}

TEST(HeifHeader, KeepsOrientationOfExifOut) {
  const Bytes exif = test::exif_block({.orientation = 6, .taken = "2024:05:17 18:30:01"});
  const Bytes file = test::heif_of(solid_pixbuf(64, 48, support::kRed).get(), "heif", 1, exif);
  if (file.empty()) GTEST_SKIP() << "no encoder for HEIF";

  const auto header = read(file);

  EXPECT_EQ(header->orientation, 1);
  EXPECT_NE(header->date_taken, 0);
}

TEST(AvifHeader, TellsSize) {
  const Bytes file = test::heif_of(solid_pixbuf(64, 48, support::kRed).get(), "avif");
  if (file.empty()) GTEST_SKIP() << "no encoder for AVIF";

  expect_picture(file, Format::kAvif, 64, 48);
}

TEST(UnknownHeader, IsWhatHasNoFormatOfTheList) {
  for (const char *bytes :
       {"", "x", "\xff\xd8", "%PDF-1.4", "<html><body width='10' height='10'/></html>",
        "P6 100000 100000 255 ", "GIF88a"}) {
    EXPECT_FALSE(read(bytes).has_value()) << bytes;
  }
}

TEST(UnknownHeader, IsSoundInAnMp4Box) {
  EXPECT_FALSE(read(test::mp4_of({.brand = "M4A "})).has_value());
}

TEST(TruncatedHeader, IsRefusedAtEveryLength) {
  const auto pixbuf = solid_pixbuf(8, 8, support::kRed);
  for (const Bytes &whole :
       {test::saved_as(pixbuf.get(), "png").substr(0, 23), test::gif_of(pixbuf.get()).substr(0, 9),
        test::saved_as(pixbuf.get(), "bmp").substr(0, 25),
        test::webp_of(pixbuf.get()).substr(0, 29),
        test::webp_of(pixbuf.get(), true).substr(0, 24)}) {
    for (size_t length = 0; length <= whole.size(); ++length) {
      const auto header = read(whole.substr(0, length));
      EXPECT_TRUE(!header || header->refused) << length << " of " << whole.substr(0, 4);
    }
  }
}

}  // namespace
}  // namespace phone::pictures

#include <gmock/gmock.h>

#include "file-bytes.hpp"
#include "pictures/header-reader.hpp"

namespace phone::pictures {
namespace {

using test::big;
using test::box;
using test::Bytes;
using test::little;

std::optional<Header> header_of(const Bytes &bytes) { return read_header(test::span_of(bytes)); }

Bytes dng(int orientation = 1) {
  return test::dng_of(test::jpeg_start(0xc0, 160, 120), 160, 120, 640, 480, orientation);
}

TEST(RawHeader, TellsADigitalNegativeFromATiff) {
  EXPECT_EQ(header_of(dng())->format, Format::kRaw);
}

TEST(RawHeader, HasTheSizeOfTheSensorsPicture) {
  const auto header = header_of(dng());

  EXPECT_EQ(header->width, 640);
  EXPECT_EQ(header->height, 480);
}

TEST(RawHeader, HasTheOrientation) { EXPECT_EQ(header_of(dng(6))->orientation, 6); }

TEST(RawHeader, LeavesAPlainTiffAlone) {
  const auto pixbuf = support::solid_pixbuf(8, 8, support::kRed);

  EXPECT_EQ(header_of(test::tiff_of(pixbuf.get(), 1))->format, Format::kTiff);
}

/// A TIFF structure of one directory of whole numbers.
Bytes structure(const Bytes &start, const std::vector<std::pair<unsigned, unsigned>> &entries) {
  Bytes bytes = start + little(8 + (start.size() > 4 ? 8 : 0), 4);
  if (start.size() > 4) bytes = start.substr(0, 4) + little(16, 4) + start.substr(4);
  bytes += little(entries.size(), 2);
  for (const auto &[tag, value] : entries) {
    bytes += little(tag, 2) + little(4, 2) + little(1, 4) + little(value, 4);
  }
  return bytes + little(0, 4);
}

class RawStart : public testing::TestWithParam<Bytes> {};

TEST_P(RawStart, IsKnown) {
  const auto header = header_of(structure(
      GetParam(), {{0x0002, 4000}, {0x0003, 3000}, {0x0100, 4000}, {0x0101, 3000}, {0x0112, 8}}));

  ASSERT_TRUE(header);
  EXPECT_EQ(header->format, Format::kRaw);
  EXPECT_EQ(header->width, 4000);
  EXPECT_EQ(header->height, 3000);
  EXPECT_EQ(header->orientation, 8);
}

INSTANTIATE_TEST_SUITE_P(OfEachMaker, RawStart,
                         testing::Values(Bytes("IIRO"), Bytes("IIRS"), Bytes("IIU\0", 4),
                                         Bytes("II*\0CR\2\0\0\0\0\0", 12)));

TEST(RawHeader, IsKnownByACodingOfCamerasOnly) {
  const auto header = header_of(
      structure(Bytes("II*\0", 4), {{0x0100, 4000}, {0x0101, 3000}, {0x0103, 65535}, {0x010f, 0}}));

  EXPECT_EQ(header->format, Format::kRaw);
}

TEST(RawHeader, ReadsFujifilmsList) {
  Bytes bytes = Bytes("FUJIFILMCCD-RAW ") + Bytes(68, '\0') + big(200, 4) + big(0, 4) + big(120, 4);
  bytes.resize(120, '\0');
  bytes += big(2, 4) + big(0x0110, 2) + big(4, 2) + big(0, 4) + big(0x0100, 2) + big(4, 2) +
           big(3000, 2) + big(4000, 2);
  bytes.resize(200, '\0');
  bytes += test::with_exif(test::jpeg_start(0xc0, 160, 120), {.orientation = 8});

  const auto header = header_of(bytes);

  EXPECT_EQ(header->format, Format::kRaw);
  EXPECT_EQ(header->width, 4000);
  EXPECT_EQ(header->height, 3000);
  EXPECT_EQ(header->orientation, 8);
}

TEST(RawHeader, ReadsCanonsBoxes) {
  const Bytes own =
      "\x85\xc0\xb6\x87\x82\x0f\x11\xe0\x81\x11\xf4\xce\x46\x2b\x6a\x48" + box("CNCV", "CanonCR3") +
      box("CMT1", structure(Bytes("II*\0", 4), {{0x0100, 4000}, {0x0101, 3000}, {0x0112, 6}}));

  const auto header =
      header_of(box("ftyp", "crx " + big(1, 4) + "crx isom") + box("moov", box("uuid", own)));

  EXPECT_EQ(header->format, Format::kRaw);
  EXPECT_EQ(header->width, 4000);
  EXPECT_EQ(header->orientation, 6);
}

TEST(RawHeader, IsRefusedWithoutASize) {
  EXPECT_TRUE(header_of(box("ftyp", "crx " + big(1, 4) + "crx isom"))->refused);
}

}  // namespace
}  // namespace phone::pictures

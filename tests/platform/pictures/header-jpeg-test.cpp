#include <cstdlib>
#include <ctime>

#include "file-bytes.hpp"
#include "pictures/header-reader.hpp"
#include "support/glib-test.hpp"

namespace phone::pictures {
namespace {

using test::Bytes;
using test::Exif;

class JpegHeader : public testing::Test {
 protected:
  JpegHeader() {
    // Dates without an offset are local: in a place two hours before Greenwich.
    setenv("TZ", "TST-2", 1);
    tzset();
  }

  static Header read(const Bytes &bytes) {
    const auto header = read_header(test::span_of(bytes));
    EXPECT_TRUE(header.has_value());
    return header.value_or(Header{});
  }
  static Header read_exif(const Exif &exif) { return read(test::with_exif(small_jpeg(), exif)); }
  static Bytes small_jpeg() {
    return test::jpeg_of(support::solid_pixbuf(40, 30, support::kRed).get());
  }
};

TEST_F(JpegHeader, TellsFormat) { EXPECT_EQ(read(small_jpeg()).format, Format::kJpeg); }

TEST_F(JpegHeader, TellsSize) {
  const Header header = read(small_jpeg());

  EXPECT_EQ(header.width, 40);
  EXPECT_EQ(header.height, 30);
  EXPECT_FALSE(header.refused);
}

TEST_F(JpegHeader, TellsSizeOfProgressiveFile) {
  const auto pixbuf = support::solid_pixbuf(123, 45, support::kRed);

  const Header header = read(test::jpeg_of(pixbuf.get(), true));

  EXPECT_EQ(header.width, 123);
  EXPECT_EQ(header.height, 45);
}

TEST_F(JpegHeader, HasNoOrientationWithoutExif) {
  const Header header = read(small_jpeg());

  EXPECT_EQ(header.orientation, 1);
  EXPECT_FALSE(header.has_exif);
  EXPECT_FALSE(header.has_orientation);
}

TEST_F(JpegHeader, ReadsEachOrientation) {
  for (int orientation = 1; orientation <= 8; ++orientation) {
    EXPECT_EQ(read_exif({.orientation = orientation}).orientation, orientation);
  }
}

TEST_F(JpegHeader, ReadsOrientationInEitherByteOrder) {
  EXPECT_EQ(read_exif({.big_endian = false, .orientation = 6}).orientation, 6);
}

TEST_F(JpegHeader, TakesOrientationsThatDoNotExistForUpright) {
  const Header header = read_exif({.orientation = 9});

  EXPECT_EQ(header.orientation, 1);
  EXPECT_TRUE(header.has_exif);
  EXPECT_FALSE(header.has_orientation);
}

TEST_F(JpegHeader, KeepsStoredSizeOfTurnedPicture) {
  const Header header = read_exif({.orientation = 6});

  EXPECT_EQ(header.width, 40);
  EXPECT_EQ(header.height, 30);
}

TEST_F(JpegHeader, ReadsDateWithOffset) {
  const Header header = read_exif({.taken = "2024:05:17 18:30:01", .taken_offset = "+09:00"});

  EXPECT_EQ(header.date_taken, 1715938201);
  EXPECT_EQ(header.utc_offset_known, 1);
}

TEST_F(JpegHeader, ReadsDateWithOffsetToTheWest) {
  EXPECT_EQ(read_exif({.taken = "2024:05:17 18:30:01", .taken_offset = "-03:30"}).date_taken,
            1715983201);
}

TEST_F(JpegHeader, TakesDateWithoutOffsetForLocal) {
  const Header header = read_exif({.taken = "2024:05:17 18:30:01"});

  EXPECT_EQ(header.date_taken, 1715963401);
  EXPECT_EQ(header.utc_offset_known, 0);
}

TEST_F(JpegHeader, ReadsDateInLittleEndianFile) {
  EXPECT_EQ(read_exif({.big_endian = false, .taken = "2024:05:17 18:30:01"}).date_taken,
            1715963401);
}

TEST_F(JpegHeader, PrefersDateTakenToOtherDates) {
  const Header header = read_exif({.changed = "2025:01:01 00:00:00",
                                   .taken = "2024:05:17 18:30:01",
                                   .digitized = "2025:02:02 00:00:00"});

  EXPECT_EQ(header.date_taken, 1715963401);
}

TEST_F(JpegHeader, FallsBackToDateOfDigitizing) {
  const Header header = read_exif({.changed = "2025:01:01 00:00:00",
                                   .taken = "    :  :     :  :  ",
                                   .digitized = "2024:05:17 18:30:01",
                                   .digitized_offset = "+00:00"});

  EXPECT_EQ(header.date_taken, 1715970601);
  EXPECT_EQ(header.utc_offset_known, 1);
}

TEST_F(JpegHeader, FallsBackToDateOfChange) {
  EXPECT_EQ(read_exif({.changed = "2024:05:17 18:30:01"}).date_taken, 1715963401);
}

TEST_F(JpegHeader, KnowsNoDateWhereNoneIsPossible) {
  for (const char *date : {"0000:00:00 00:00:00", "2024:13:01 00:00:00", "2023:02:29 12:00:00",
                           "2024:05:17 24:00:00", "2024:05:17 18:60:00", "abcd:05:17 18:30:01"}) {
    EXPECT_EQ(read_exif({.taken = date}).date_taken, 0) << date;
  }
}

TEST_F(JpegHeader, IgnoresOffsetThatIsNone) {
  const Header header = read_exif({.taken = "2024:05:17 18:30:01", .taken_offset = "Z     "});

  EXPECT_EQ(header.date_taken, 1715963401);
  EXPECT_EQ(header.utc_offset_known, 0);
}

TEST_F(JpegHeader, KnowsThatThereIsAPosition) {
  EXPECT_TRUE(read_exif({.position = true}).has_gps);
}

TEST_F(JpegHeader, TakesGpsDirectoryWithoutPositionForNone) {
  EXPECT_FALSE(read_exif({.empty_gps_directory = true}).has_gps);
}

TEST_F(JpegHeader, FindsPreview) {
  const Bytes preview = test::jpeg_of(support::solid_pixbuf(16, 12, support::kBlue).get());
  const Bytes file = test::with_exif(small_jpeg(), {.orientation = 1, .preview = preview});

  const Header header = read(file);

  ASSERT_EQ(header.preview_length, static_cast<gint64>(preview.size()));
  EXPECT_EQ(file.substr(static_cast<size_t>(header.preview_offset), preview.size()), preview);
}

TEST_F(JpegHeader, HasNoPreviewWithoutOne) {
  EXPECT_EQ(read_exif({.orientation = 1}).preview_length, 0);
}

TEST_F(JpegHeader, ReadsSizeBehindSegmentsOfManyKinds) {
  Bytes file = test::with_segment(small_jpeg(), 0xe2, Bytes(65000, 'x'));
  file = test::with_segment(file, 0xfe, "a comment");
  file = test::with_segment(file, 0xed, Bytes(30000, '\xff'));

  EXPECT_EQ(read(file).width, 40);
}

TEST_F(JpegHeader, StepsOverFillBytesAndGarbage) {
  Bytes file = small_jpeg();
  file.insert(2, Bytes("\xff\xff\xff", 3));
  file = test::with_segment(file, 0xfe, "x");
  file.insert(2 + 2 + 2 + 1, "garbage");

  EXPECT_EQ(read(file).width, 40);
}

TEST_F(JpegHeader, ReadsFirstOfSeveralExifBlocks) {
  const Bytes file =
      test::with_exif(test::with_exif(small_jpeg(), {.orientation = 3}), {.orientation = 8});

  EXPECT_EQ(read(file).orientation, 8);
}

TEST_F(JpegHeader, RefusesArithmeticCoding) {
  for (const int marker : {0xc9, 0xca, 0xcb}) {
    EXPECT_TRUE(read(test::jpeg_start(marker, 32, 32)).refused) << marker;
  }
}

TEST_F(JpegHeader, RefusesCodingsThatNobodyDecodes) {
  for (const int marker : {0xc3, 0xc5, 0xc6, 0xc7, 0xcd, 0xce, 0xcf}) {
    EXPECT_TRUE(read(test::jpeg_start(marker, 32, 32)).refused) << marker;
  }
}

TEST_F(JpegHeader, AcceptsUsualCodings) {
  for (const int marker : {0xc0, 0xc1, 0xc2}) {
    EXPECT_FALSE(read(test::jpeg_start(marker, 32, 32)).refused) << marker;
  }
}

TEST_F(JpegHeader, RefusesSizesOfNothing) {
  EXPECT_TRUE(read(test::jpeg_start(0xc0, 0, 100)).refused);
  EXPECT_TRUE(read(test::jpeg_start(0xc0, 100, 0)).refused);
}

TEST_F(JpegHeader, RefusesMoreThan178Megapixels) {
  EXPECT_FALSE(read(test::jpeg_start(0xc0, 17800, 10000)).refused);
  EXPECT_TRUE(read(test::jpeg_start(0xc0, 17800, 10001)).refused);
}

TEST_F(JpegHeader, RefusesFileThatEndsBeforeItsSize) {
  const Header header = read(small_jpeg().substr(0, 100));

  EXPECT_EQ(header.format, Format::kJpeg);
  EXPECT_EQ(header.width, 0);
  EXPECT_TRUE(header.refused);
}

TEST_F(JpegHeader, RefusesFileWhoseDataBeginsBeforeItsSize) {
  const Bytes scan = Bytes("\xff\xd8\xff\xda\0\x08\x01\x01\0\0\x3f\0", 12);

  EXPECT_TRUE(read(scan + small_jpeg().substr(2)).refused);
}

TEST_F(JpegHeader, EndsOnDirectoriesThatPointAtThemselves) {
  // The details of this block are its first directory again, and so is the next one.
  const Bytes block =
      Bytes("MM\0*\0\0\0\x08\0\x01\x87\x69\0\x04\0\0\0\x01\0\0\0\x08\0\0\0\x08", 26);

  const Header header = read(test::with_segment(small_jpeg(), 0xe1, Bytes("Exif\0\0", 6) + block));

  EXPECT_EQ(header.width, 40);
}

TEST_F(JpegHeader, IgnoresPlacesOutsideTheBlock) {
  // A text whose place is far outside, and a preview that begins inside and ends outside.
  Bytes block =
      Bytes("MM\0*\0\0\0\x08\0\x01\x01\x32\0\x02\0\0\0\x14\xff\xff\xff\xf0\0\0\0\x1a", 26);
  block += Bytes(
      "\0\x02\x02\x01\0\x04\0\0\0\x01\0\0\0\x08\x02\x02\0\x04\0\0\0\x01\x7f\xff\xff\xff\0\0\0\0",
      30);

  const Header header = read(test::with_segment(small_jpeg(), 0xe1, Bytes("Exif\0\0", 6) + block));

  EXPECT_EQ(header.date_taken, 0);
  EXPECT_EQ(header.preview_length, 0);
  EXPECT_EQ(header.width, 40);
}

}  // namespace
}  // namespace phone::pictures

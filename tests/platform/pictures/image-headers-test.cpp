#include <image-headers.h>
#include <unistd.h>

#include "file-bytes.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"

namespace {

using test::Bytes;
using testing::ElementsAre;

class ParseFromFile : public support::GlibTest {
 protected:
  gboolean parse(const Bytes &bytes) {
    return wink_parse_from_file(dir_.write("file", bytes).c_str(), &width_, &height_);
  }

  support::TempDir dir_;
  gint width_ = -7;
  gint height_ = -7;
};

TEST_F(ParseFromFile, GivesStoredSize) {
  const Bytes jpeg = test::jpeg_of(support::solid_pixbuf(40, 30, support::kRed).get());

  EXPECT_TRUE(parse(test::with_exif(jpeg, {.orientation = 6})));

  EXPECT_EQ(width_, 40);
  EXPECT_EQ(height_, 30);
}

TEST_F(ParseFromFile, LeavesSizeAloneOnFailure) {
  EXPECT_FALSE(parse("text"));

  EXPECT_EQ(width_, -7);
  EXPECT_EQ(height_, -7);
}

TEST_F(ParseFromFile, RefusesWhatIsNotSafeToDecode) {
  EXPECT_FALSE(parse(test::jpeg_start(0xc9, 32, 32)));
  EXPECT_FALSE(parse(test::png_start(100000, 100000)));
  EXPECT_FALSE(parse(test::gif_start(65535, 65535)));
  EXPECT_FALSE(parse(test::gif_start(0, 5)));
}

TEST_F(ParseFromFile, RefusesDrawings) {
  EXPECT_FALSE(parse("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"));
}

TEST_F(ParseFromFile, RefusesRawFiles) {
  EXPECT_FALSE(parse(test::dng_of(test::jpeg_start(0xc0, 160, 120), 160, 120, 640, 480)));
}

TEST_F(ParseFromFile, RefusesVideos) {
  EXPECT_FALSE(parse(test::mp4_of({.width = 64, .height = 48})));
}

TEST_F(ParseFromFile, FailsWithoutAFile) {
  EXPECT_FALSE(wink_parse_from_file(dir_.path("none").c_str(), &width_, &height_));
}

TEST_F(ParseFromFile, FollowsNoLink) {
  parse(test::png_start(5, 5));
  ASSERT_EQ(symlink("file", dir_.path("link").c_str()), 0);

  EXPECT_FALSE(wink_parse_from_file(dir_.path("link").c_str(), &width_, &height_));
}

TEST_F(ParseFromFile, NeedsAPathAndPlacesForTheSize) {
  EXPECT_FALSE(wink_parse_from_file(nullptr, &width_, &height_));
  EXPECT_FALSE(wink_parse_from_file("/", nullptr, &height_));

  EXPECT_THAT(
      take_glib_warnings(),
      ElementsAre("wink_parse_from_file: assertion 'path != NULL' failed",
                  "wink_parse_from_file: assertion 'width != NULL && height != NULL' failed"));
}

class ExifInfoFromFile : public ParseFromFile {
 protected:
  WinkExifInfo *info_of(const Bytes &bytes) {
    return wink_create_jpeg_exifinfo_from_file(dir_.write("file", bytes).c_str());
  }
  Bytes jpeg_ = test::jpeg_of(support::solid_pixbuf(40, 30, support::kRed).get());
};

TEST_F(ExifInfoFromFile, GivesSizeAndOrientation) {
  WinkExifInfo *info = info_of(test::with_exif(jpeg_, {.orientation = 7}));

  ASSERT_NE(info, nullptr);
  EXPECT_EQ(info->width, 40);
  EXPECT_EQ(info->height, 30);
  EXPECT_EQ(info->orientation, 7);
  wink_free_exifinfo(info);
}

TEST_F(ExifInfoFromFile, GivesNoOrientationThatIsNotThere) {
  WinkExifInfo *info = info_of(test::with_exif(jpeg_, {.changed = "2024:05:17 18:30:01"}));

  ASSERT_NE(info, nullptr);
  EXPECT_EQ(info->orientation, 0);
  wink_free_exifinfo(info);
}

TEST_F(ExifInfoFromFile, IsNothingWithoutExif) { EXPECT_EQ(info_of(jpeg_), nullptr); }

TEST_F(ExifInfoFromFile, IsNothingForOtherFormats) {
  const Bytes png = test::saved_as(support::solid_pixbuf(4, 4, support::kRed).get(), "png");

  EXPECT_EQ(info_of(test::with_png_chunk(png, "eXIf", test::exif_block({.orientation = 7}))),
            nullptr);
}

TEST_F(ExifInfoFromFile, FreesNothing) { wink_free_exifinfo(nullptr); }

TEST_F(ExifInfoFromFile, NeedsAPath) {
  EXPECT_EQ(wink_create_jpeg_exifinfo_from_file(nullptr), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("wink_create_jpeg_exifinfo_from_file: assertion 'path != NULL' failed"));
}

}  // namespace

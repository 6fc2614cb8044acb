#include <gdk-pixbuf/gdk-pixbuf.h>

#include <string>
#include <vector>

#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "pb-util-image.h"
#include "support/fake-platform.hpp"
#include "support/pixbufs.hpp"
#include "support/temp-dir.hpp"
#include "util/pb-util/image.hpp"

namespace {

/// What was decoded at a size, as "640x480". The function below stands in front of the real one,
/// by --wrap.
std::vector<std::string> g_decoded;
/// When set, nothing is decoded and this is what comes back, with the error.
bool g_decoding_fails = false;
GdkPixbuf *g_partial_pixbuf = nullptr;

}  // namespace

extern "C" {

GdkPixbuf *__real_gdk_pixbuf_new_from_file_at_size(const char *path, int width, int height,
                                                   GError **error);
GdkPixbuf *__wrap_gdk_pixbuf_new_from_file_at_size(const char *path, int width, int height,
                                                   GError **error);

GdkPixbuf *__wrap_gdk_pixbuf_new_from_file_at_size(const char *path, int width, int height,
                                                   GError **error) {
  g_decoded.push_back(std::to_string(width) + "x" + std::to_string(height));
  if (!g_decoding_fails) {
    return __real_gdk_pixbuf_new_from_file_at_size(path, width, height, error);
  }
  g_set_error_literal(error, GDK_PIXBUF_ERROR, GDK_PIXBUF_ERROR_CORRUPT_IMAGE, "half a picture");
  return g_partial_pixbuf;
}

}  // extern "C"

namespace {

using fake::Logged;
using fake::platform;
using support::kBlue;
using support::kGreen;
using support::kRed;
using support::kWhite;
using support::PixbufPtr;
using support::pixel_at;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

class PictureAtSize : public support::GlibTest {
 protected:
  /// A picture file with four coloured quarters, and what its header says.
  std::string picture(int width, int height, int orientation = 1) {
    claim(width, height, orientation);
    return support::save_pixbuf(support::quartered_pixbuf(width, height).get(),
                                directory_.path("picture.png"));
  }

  /// Lets the header say something else than the small picture in the file.
  static void claim(int width, int height, int orientation) {
    platform().wink_parse_from_file = [=](const gchar *, gint *w, gint *h) {
      *w = width;
      *h = height;
      return TRUE;
    };
    platform().fexplorer_get_exif_orientation = [=](const gchar *, gint *answer) {
      *answer = orientation;
      return TRUE;
    };
  }

  static void expect_size(const PixbufPtr &pixbuf, int width, int height) {
    ASSERT_TRUE(pixbuf);
    EXPECT_EQ(gdk_pixbuf_get_width(pixbuf.get()), width);
    EXPECT_EQ(gdk_pixbuf_get_height(pixbuf.get()), height);
  }

  static PixbufPtr load(const std::string &path, int width = 480, int height = 800) {
    return PixbufPtr::adopt(pb_get_pixbuf_at_size_with_adjustment(path.c_str(), width, height));
  }

  support::TempDir directory_;
};

TEST_F(PictureAtSize, ReadsTheHeaderAndTheOrientation) {
  const std::string path = picture(20, 10);

  load(path);

  EXPECT_THAT(platform().calls, ElementsAre("wink_parse_from_file(\"" + path + "\")",
                                            "fexplorer_get_exif_orientation(\"" + path + "\")"));
}

TEST_F(PictureAtSize, KeepsTheSizeOfASmallPicture) {
  expect_size(load(picture(40, 70), 20, 20), 40, 70);
}

TEST_F(PictureAtSize, KeepsTheSizeBelowTheScreensSize) {
  const std::string path = picture(4, 7);
  claim(479, 799, 1);

  load(path, 100, 100);

  EXPECT_THAT(g_decoded, ElementsAre("479x799"));
}

TEST_F(PictureAtSize, FitsAPictureAsWideAsTheScreen) {
  const std::string path = picture(4, 2);
  claim(480, 240, 1);

  load(path, 100, 100);

  EXPECT_THAT(g_decoded, ElementsAre("100x50"));
}

TEST_F(PictureAtSize, FitsAPictureAsHighAsTheScreen) {
  const std::string path = picture(2, 4);
  claim(400, 800, 1);

  load(path, 100, 100);

  EXPECT_THAT(g_decoded, ElementsAre("50x100"));
}

TEST_F(PictureAtSize, DoesNotEnlargeToTheBox) {
  const std::string path = picture(4, 2);
  claim(480, 240, 1);

  load(path, 1000, 1000);

  EXPECT_THAT(g_decoded, ElementsAre("480x240"));
}

TEST_F(PictureAtSize, DecodesASidewaysPhotographSideways) {
  const std::string path = picture(64, 48);
  claim(2048, 1536, 6);

  const PixbufPtr pixbuf = load(path);

  EXPECT_THAT(g_decoded, ElementsAre("640x480"));
  expect_size(pixbuf, 480, 640);
}

TEST_F(PictureAtSize, DecodesTheOtherSidewaysPhotographSideways) {
  const std::string path = picture(64, 48);
  claim(2048, 1536, 8);

  expect_size(load(path), 480, 640);
}

TEST_F(PictureAtSize, DecodesASmallSidewaysPictureAtItsStoredSize) {
  const PixbufPtr pixbuf = load(picture(40, 20, 6));

  EXPECT_THAT(g_decoded, ElementsAre("40x20"));
  expect_size(pixbuf, 20, 40);
}

TEST_F(PictureAtSize, JudgesTheSizeAsShown) {
  const std::string path = picture(4, 7);
  claim(700, 400, 6);  // shown as 400 by 700, which the screen holds

  load(path, 100, 100);

  EXPECT_THAT(g_decoded, ElementsAre("700x400"));
}

TEST_F(PictureAtSize, TurnsOrientation6) {
  const PixbufPtr pixbuf = load(picture(20, 10, 6));

  // Red was above to the left, blue below it: turned to the right, blue is above to the left.
  EXPECT_EQ(pixel_at(pixbuf.get(), 0, 0), kBlue);
  EXPECT_EQ(pixel_at(pixbuf.get(), 9, 0), kRed);
  EXPECT_EQ(pixel_at(pixbuf.get(), 9, 19), kGreen);
}

TEST_F(PictureAtSize, TurnsOrientation8) {
  const PixbufPtr pixbuf = load(picture(20, 10, 8));

  EXPECT_EQ(pixel_at(pixbuf.get(), 0, 0), kGreen);
  EXPECT_EQ(pixel_at(pixbuf.get(), 0, 19), kRed);
  EXPECT_EQ(pixel_at(pixbuf.get(), 9, 19), kBlue);
}

TEST_F(PictureAtSize, TurnsOrientation3) {
  const PixbufPtr pixbuf = load(picture(20, 10, 3));

  expect_size(pixbuf, 20, 10);
  EXPECT_EQ(pixel_at(pixbuf.get(), 0, 0), kWhite);
  EXPECT_EQ(pixel_at(pixbuf.get(), 19, 9), kRed);
  EXPECT_EQ(pixel_at(pixbuf.get(), 0, 9), kGreen);
}

TEST_F(PictureAtSize, TakesEveryOtherOrientationAsUpright) {
  for (const int orientation : {0, 1, 2, 4, 5, 7, 9, -1}) {
    const PixbufPtr pixbuf = load(picture(20, 10, orientation));

    expect_size(pixbuf, 20, 10);
    EXPECT_EQ(pixel_at(pixbuf.get(), 0, 0), kRed) << orientation;
  }
}

TEST_F(PictureAtSize, IsUprightWhenTheOrientationCannotBeRead) {
  const std::string path = picture(20, 10);
  platform().fexplorer_get_exif_orientation = [](const gchar *, gint *answer) {
    *answer = 6;
    return FALSE;
  };

  expect_size(load(path), 20, 10);
}

TEST_F(PictureAtSize, IsNullForAHeaderThatCannotBeRead) {
  const std::string path = directory_.write("text.png", "no picture");

  EXPECT_FALSE(load(path));

  EXPECT_THAT(g_decoded, IsEmpty());
  EXPECT_EQ(platform().log.size(), 1u);
  EXPECT_EQ(platform().log[0].level, PB_LOG_ERROR);
}

TEST_F(PictureAtSize, IsNullForNoPath) {
  EXPECT_EQ(pb_get_pixbuf_at_size_with_adjustment(nullptr, 10, 10), nullptr);
}

TEST_F(PictureAtSize, LogsTheFinalSize) {
  load(picture(20, 10, 6));

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_INFO,
                                 "[pb_get_pixbuf_at_size_with_adjustment]Final width "
                                 "= 10*******\n\n\n\n"),
                          Logged(PB_LOG_INFO,
                                 "[pb_get_pixbuf_at_size_with_adjustment]Final Height "
                                 "= 20*******\n\n\n\n")));
}

TEST_F(PictureAtSize, WarnsAboutADecodingError) {
  const std::string path = picture(20, 10);
  g_decoding_fails = true;

  EXPECT_FALSE(load(path));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre(MatchesRegex("\\[pb_get_pixbuf_at_size_with_adjustment:[0-9]+\\] "
                                       "\\(.*picture.png\\), half a picture\n?")));
}

TEST_F(PictureAtSize, UsesAPictureThatCameWithAnError) {
  const std::string path = picture(20, 10);
  g_decoding_fails = true;
  g_partial_pixbuf = support::solid_pixbuf(20, 10, kRed).release();

  const PixbufPtr pixbuf = load(path);

  expect_size(pixbuf, 20, 10);
  EXPECT_EQ(take_glib_warnings().size(), 1u);
}

TEST_F(PictureAtSize, ReleasesTheUnturnedPicture) {
  const std::string path = picture(20, 10, 6);
  g_decoding_fails = true;
  g_partial_pixbuf = support::solid_pixbuf(20, 10, kRed).release();
  const support::ExpectFinalized watch(g_partial_pixbuf);

  load(path);

  take_glib_warnings();
}

TEST_F(PictureAtSize, KeepsItsSizeWithAWarningForABoxThatIsNone) {
  const std::string path = picture(4, 2);
  claim(480, 240, 1);

  load(path, 0, 100);

  EXPECT_THAT(g_decoded, ElementsAre("480x240"));
  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_calc_scaled_size: assertion 'canvas_w > 0 && canvas_h > 0' failed"));
}

TEST_F(PictureAtSize, KeepsAPixelOfALongStrip) {
  const std::string path = picture(600, 1);

  expect_size(load(path, 100, 100), 100, 1);
}

using DecodingStep = PictureAtSize;

TEST_F(DecodingStep, DecodesAFile) {
  const std::string path = picture(40, 20);
  pb::ErrorPtr error;

  const auto pixbuf = PixbufPtr::adopt(
      __pb_get_pixbuf_at_size_with_adjustment(path.c_str(), nullptr, 0, 20, 20, pb::out(error)));

  expect_size(pixbuf, 20, 10);
  EXPECT_EQ(error, nullptr);
}

TEST_F(DecodingStep, DecodesMemory) {
  const std::string bytes = support::read_file(picture(40, 20));
  pb::ErrorPtr error;

  const auto pixbuf = PixbufPtr::adopt(__pb_get_pixbuf_at_size_with_adjustment(
      "/no/such/file", reinterpret_cast<const guchar *>(bytes.data()),
      static_cast<gssize>(bytes.size()), 20, 20, pb::out(error)));

  expect_size(pixbuf, 20, 10);
  EXPECT_THAT(g_decoded, IsEmpty());
}

TEST_F(DecodingStep, DecodesTheFileForNoLength) {
  const std::string path = picture(40, 20);
  const guchar byte = 0;
  pb::ErrorPtr error;

  const auto pixbuf = PixbufPtr::adopt(
      __pb_get_pixbuf_at_size_with_adjustment(path.c_str(), &byte, 0, 40, 20, pb::out(error)));

  expect_size(pixbuf, 40, 20);
}

TEST_F(DecodingStep, ReportsAnErrorOfAFile) {
  pb::ErrorPtr error;

  EXPECT_EQ(
      __pb_get_pixbuf_at_size_with_adjustment("/no/such/file", nullptr, 0, 20, 20, pb::out(error)),
      nullptr);

  EXPECT_NE(error, nullptr);
}

TEST_F(DecodingStep, ReportsAnErrorOfMemory) {
  const guchar bytes[] = "no picture at all";
  pb::ErrorPtr error;

  EXPECT_EQ(
      __pb_get_pixbuf_at_size_with_adjustment("x", bytes, sizeof bytes, 20, 20, pb::out(error)),
      nullptr);

  EXPECT_NE(error, nullptr);
}

}  // namespace

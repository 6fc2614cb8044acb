#include <gdk/gdk.h>

#include <cmath>
#include <ostream>
#include <vector>

#include "glib-ptr.hpp"
#include "pb-view-manager.h"
#include "support/glib-test.hpp"
#include "support/pixbufs.hpp"

namespace {

using support::GlibTest;
using support::PixbufPtr;
using support::pixel_at;
using support::quartered_pixbuf;
using support::solid_pixbuf;
using testing::ElementsAre;

constexpr int kUntouched = -77;

struct Scaled {
  bool differs;
  int width;
  int height;

  bool operator==(const Scaled &) const = default;
};

void PrintTo(const Scaled &scaled, std::ostream *out) {
  *out << scaled.width << "x" << scaled.height << (scaled.differs ? " TRUE" : " FALSE");
}

Scaled calc(int img_w, int img_h, int canvas_w, int canvas_h, guint flags) {
  Scaled scaled{false, kUntouched, kUntouched};
  scaled.differs =
      pb_calc_scaled_size(img_w, img_h, canvas_w, canvas_h, flags, &scaled.width, &scaled.height);
  return scaled;
}

// The same rule, computed on another way: a quotient or product of two floats, rounded to
// double and then to float, is the one of single precision.
float divided(double a, double b) { return static_cast<float>(a / b); }
float times(double a, double b) { return static_cast<float>(a * b); }

Scaled expected(int w, int h, int cw, int ch, unsigned flags) {
  const float ratio = divided(h, w);
  const int high = static_cast<int>(std::trunc(times(ratio, cw)));
  const int wide = static_cast<int>(std::trunc(divided(ch, ratio)));
  const bool fit_w = (flags & 1u) != 0;
  const bool fit_h = (flags & 2u) != 0;
  const bool too_wide = w > cw;
  const bool too_high = h > ch;
  Scaled result{false, w, h};
  if (fit_w && fit_h) {
    if (too_wide || too_high || (flags & 4u) != 0) {
      const bool width_governs = ratio < divided(ch, cw);
      result.width = width_governs ? cw : wide;
      result.height = width_governs ? high : ch;
    }
  } else if (fit_w && too_wide) {
    result.width = cw;
    result.height = high;
  } else if (fit_h && too_high) {
    result.width = wide;
    result.height = ch;
  }
  result.differs = result.width != w || result.height != h;
  return result;
}

TEST(CalcScaledSize, FitsAWidePhotographByItsWidth) {
  EXPECT_EQ(calc(1600, 1200, 480, 800, 3), (Scaled{true, 480, 360}));
}

TEST(CalcScaledSize, FitsAHighPhotographByItsHeight) {
  EXPECT_EQ(calc(300, 1600, 480, 800, 3), (Scaled{true, 150, 800}));
}

TEST(CalcScaledSize, LetsTheHeightGovernForEqualRatios) {
  EXPECT_EQ(calc(960, 1600, 480, 800, 3), (Scaled{true, 480, 800}));
}

TEST(CalcScaledSize, LeavesASmallPictureAlone) {
  EXPECT_EQ(calc(300, 200, 480, 800, 3), (Scaled{false, 300, 200}));
}

TEST(CalcScaledSize, EnlargesASmallPictureWhenAsked) {
  EXPECT_EQ(calc(300, 200, 480, 800, 7), (Scaled{true, 480, 320}));
}

TEST(CalcScaledSize, IsFalseForAnEnlargementToTheSameSize) {
  EXPECT_EQ(calc(480, 800, 480, 800, 7), (Scaled{false, 480, 800}));
}

TEST(CalcScaledSize, IgnoresTheWidthWhenOnlyTheHeightIsFitted) {
  EXPECT_EQ(calc(600, 300, 480, 800, 2), (Scaled{false, 600, 300}));
}

TEST(CalcScaledSize, FitsTheHeightAlone) {
  EXPECT_EQ(calc(600, 1600, 480, 800, 2), (Scaled{true, 300, 800}));
}

TEST(CalcScaledSize, FitsTheWidthAlone) {
  EXPECT_EQ(calc(960, 1920, 480, 800, 1), (Scaled{true, 480, 960}));
}

TEST(CalcScaledSize, MultipliesTheRoundedRatio) {
  // 2000 / 960 is a little less in single precision, and so is its product with 480.
  EXPECT_EQ(calc(960, 2000, 480, 800, 1), (Scaled{true, 480, 999}));
}

TEST(CalcScaledSize, IgnoresTheHeightWhenOnlyTheWidthIsFitted) {
  EXPECT_EQ(calc(300, 2000, 480, 800, 1), (Scaled{false, 300, 2000}));
}

TEST(CalcScaledSize, DoesNotEnlargeWhenOneSideIsFitted) {
  EXPECT_EQ(calc(300, 200, 480, 800, 5), (Scaled{false, 300, 200}));
  EXPECT_EQ(calc(300, 200, 480, 800, 6), (Scaled{false, 300, 200}));
}

TEST(CalcScaledSize, ChangesNothingWithoutFitFlags) {
  EXPECT_EQ(calc(3000, 2000, 480, 800, 0), (Scaled{false, 3000, 2000}));
  EXPECT_EQ(calc(3000, 2000, 480, 800, 4), (Scaled{false, 3000, 2000}));
}

TEST(CalcScaledSize, CutsTowardsZero) {
  EXPECT_EQ(calc(1000, 333, 480, 800, 3), (Scaled{true, 480, 159}));  // 159.84
}

TEST(CalcScaledSize, DoesWithoutOutputs) {
  EXPECT_TRUE(pb_calc_scaled_size(1600, 1200, 480, 800, 3, nullptr, nullptr));
}

TEST(CalcScaledSize, LimitsWhatNoIntCanHold) {
  EXPECT_EQ(calc(0, 900, 480, 800, 1), (Scaled{false, 0, 900}));
  EXPECT_EQ(calc(1000, 0, 480, 800, 2), (Scaled{false, 1000, 0}));
  EXPECT_EQ(calc(1, 2'000'000'000, 1'000'000, 800, 7).height, 800);
}

class CalcScaledSizeBox : public GlibTest {};

TEST_F(CalcScaledSizeBox, WarnsAboutABoxWithoutWidth) {
  EXPECT_EQ(calc(300, 200, 0, 100, 3), (Scaled{false, kUntouched, kUntouched}));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_calc_scaled_size: assertion 'canvas_w > 0 && canvas_h > 0' failed"));
}

TEST_F(CalcScaledSizeBox, WarnsAboutABoxWithoutHeight) {
  EXPECT_EQ(calc(300, 200, 100, -1, 3), (Scaled{false, kUntouched, kUntouched}));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_calc_scaled_size: assertion 'canvas_w > 0 && canvas_h > 0' failed"));
}

TEST(CalcScaledSize, IsExactInSinglePrecisionForManySizes) {
  const std::vector<int> sides{1,   2,   3,   7,   49,   100,  148,  299,  333,  479,  480,  481,
                               600, 799, 800, 801, 1000, 1536, 2048, 3001, 4000, 6007, 9999, 65535};
  const std::vector<int> boxes{1, 33, 50, 108, 148, 480, 608, 800, 1919};
  int pairs = 0;
  for (const int w : sides) {
    for (const int h : sides) {
      for (const int cw : boxes) {
        for (const int ch : boxes) {
          ++pairs;
          for (guint flags = 0; flags < 8; ++flags) {
            ASSERT_EQ(calc(w, h, cw, ch, flags), expected(w, h, cw, ch, flags))
                << w << "x" << h << " into " << cw << "x" << ch << " flags " << flags;
          }
        }
      }
    }
  }
  EXPECT_GT(pairs, 10'000);
}

class PixbufScale : public GlibTest {};

TEST_F(PixbufScale, GivesTheComputedSize) {
  const PixbufPtr src = solid_pixbuf(160, 120, support::kRed);

  const PixbufPtr scaled = PixbufPtr::adopt(pb_pixbuf_scale(src.get(), 48, 80, 3));

  EXPECT_EQ(gdk_pixbuf_get_width(scaled.get()), 48);
  EXPECT_EQ(gdk_pixbuf_get_height(scaled.get()), 36);
}

TEST_F(PixbufScale, ScalesBilinear) {
  const PixbufPtr src = quartered_pixbuf(64, 48);
  const PixbufPtr wanted =
      PixbufPtr::adopt(gdk_pixbuf_scale_simple(src.get(), 20, 15, GDK_INTERP_BILINEAR));

  const PixbufPtr scaled = PixbufPtr::adopt(pb_pixbuf_scale(src.get(), 20, 20, 3));

  ASSERT_EQ(gdk_pixbuf_get_height(scaled.get()), 15);
  for (int x = 0; x < 20; ++x)
    EXPECT_EQ(pixel_at(scaled.get(), x, 7), pixel_at(wanted.get(), x, 7));
}

TEST_F(PixbufScale, ReturnsTheSameReferencedPixbufWhenNothingIsToScale) {
  const PixbufPtr src = solid_pixbuf(30, 20, support::kRed);

  const PixbufPtr scaled = PixbufPtr::adopt(pb_pixbuf_scale(src.get(), 48, 80, 3));

  EXPECT_EQ(scaled.get(), src.get());
  EXPECT_EQ(G_OBJECT(src.get())->ref_count, 2u);
}

TEST_F(PixbufScale, KeepsAPixelOfALongStrip) {
  const PixbufPtr src = solid_pixbuf(5000, 1, support::kRed);

  const PixbufPtr scaled = PixbufPtr::adopt(pb_pixbuf_scale(src.get(), 480, 800, 3));

  EXPECT_EQ(gdk_pixbuf_get_width(scaled.get()), 480);
  EXPECT_EQ(gdk_pixbuf_get_height(scaled.get()), 1);
}

TEST_F(PixbufScale, WarnsAboutWhatIsNoPixbuf) {
  EXPECT_EQ(pb_pixbuf_scale(nullptr, 48, 80, 3), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_pixbuf_scale: assertion 'GDK_IS_PIXBUF(src)' failed"));
}

TEST_F(PixbufScale, WarnsAboutABoxThatIsNotPositive) {
  const PixbufPtr src = solid_pixbuf(30, 20, support::kRed);

  EXPECT_EQ(pb_pixbuf_scale(src.get(), 48, 0, 3), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_pixbuf_scale: assertion 'canvas_w > 0 && canvas_h > 0' failed"));
}

class PixbufBestFit : public GlibTest {};

/// Rows of one colour, then rows of another: shows which part was cut out.
PixbufPtr striped(int width, int height, int from_x, int from_y, int part_w, int part_h) {
  PixbufPtr pixbuf = solid_pixbuf(width, height, support::kBlack);
  const PixbufPtr part =
      PixbufPtr::adopt(gdk_pixbuf_new_subpixbuf(pixbuf.get(), from_x, from_y, part_w, part_h));
  gdk_pixbuf_fill(part.get(), 0xff0000ff);
  return pixbuf;
}

void expect_all_red(const PixbufPtr &pixbuf, int width, int height) {
  ASSERT_TRUE(pixbuf);
  ASSERT_EQ(gdk_pixbuf_get_width(pixbuf.get()), width);
  ASSERT_EQ(gdk_pixbuf_get_height(pixbuf.get()), height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) ASSERT_EQ(pixel_at(pixbuf.get(), x, y), support::kRed);
  }
}

TEST_F(PixbufBestFit, CutsTheMiddleOfAHighPicture) {
  const PixbufPtr src = striped(100, 300, 0, 100, 100, 100);

  expect_all_red(PixbufPtr::adopt(pb_pixbuf_best_fit(src.get(), 50, 50)), 50, 50);
}

TEST_F(PixbufBestFit, CutsTheLeftOfAWidePicture) {
  const PixbufPtr src = striped(300, 100, 0, 0, 100, 100);

  expect_all_red(PixbufPtr::adopt(pb_pixbuf_best_fit(src.get(), 50, 50)), 50, 50);
}

TEST_F(PixbufBestFit, TakesTheHorizontalPlaceFromTheHeight) {
  // Ratios 0 and 1: the part is 100 * 99 / 149 = 66 wide and begins at (99 - 66) / 2 = 16.
  const PixbufPtr src = striped(300, 99, 16, 0, 66, 99);

  expect_all_red(PixbufPtr::adopt(pb_pixbuf_best_fit(src.get(), 100, 149)), 100, 149);
}

TEST_F(PixbufBestFit, ComparesWholeRatios) {
  // 199/100 and 100/100 are both 1: nothing is cut although the shapes differ.
  const PixbufPtr src = quartered_pixbuf(100, 199);
  const PixbufPtr wanted =
      PixbufPtr::adopt(gdk_pixbuf_scale_simple(src.get(), 50, 50, GDK_INTERP_BILINEAR));

  const PixbufPtr fitted = PixbufPtr::adopt(pb_pixbuf_best_fit(src.get(), 50, 50));

  for (int y = 0; y < 50; ++y) {
    EXPECT_EQ(pixel_at(fitted.get(), 10, y), pixel_at(wanted.get(), 10, y));
  }
}

TEST_F(PixbufBestFit, ReferencesAPictureThatHasTheSize) {
  const PixbufPtr src = solid_pixbuf(50, 40, support::kRed);

  const PixbufPtr fitted = PixbufPtr::adopt(pb_pixbuf_best_fit(src.get(), 50, 40));

  EXPECT_EQ(fitted.get(), src.get());
  EXPECT_EQ(G_OBJECT(src.get())->ref_count, 2u);
}

TEST_F(PixbufBestFit, ReleasesTheUnscaledPart) {
  PixbufPtr src = solid_pixbuf(100, 300, support::kRed);
  const support::ExpectFinalized watch(src.get());

  const PixbufPtr fitted = PixbufPtr::adopt(pb_pixbuf_best_fit(src.get(), 50, 50));

  src.reset();
}

TEST_F(PixbufBestFit, GivesNothingForAPartThatDoesNotExist) {
  const PixbufPtr src = solid_pixbuf(200, 300, support::kRed);

  EXPECT_EQ(pb_pixbuf_best_fit(src.get(), 50, 100), nullptr);

  EXPECT_EQ(take_glib_warnings().size(), 1u);
}

TEST_F(PixbufBestFit, WarnsWithoutAPicture) {
  EXPECT_EQ(pb_pixbuf_best_fit(nullptr, 50, 50), nullptr);

  EXPECT_THAT(take_glib_warnings(), ElementsAre("pb_pixbuf_best_fit: assertion 'src' failed"));
}

TEST_F(PixbufBestFit, WarnsAboutASizeThatIsNotPositive) {
  const PixbufPtr src = solid_pixbuf(20, 30, support::kRed);

  EXPECT_EQ(pb_pixbuf_best_fit(src.get(), 0, 50), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_pixbuf_best_fit: assertion 'width > 0 && height > 0' failed"));
}

}  // namespace

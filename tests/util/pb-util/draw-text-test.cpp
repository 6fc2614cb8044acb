#include <gdk/gdk.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "glib-ptr.hpp"
#include "pb-util-image.h"
#include "support/fake-platform.hpp"
#include "support/pixbufs.hpp"

namespace {

using support::PixbufPtr;
using testing::ElementsAre;

constexpr int kWidth = 300;
constexpr int kHeight = 300;

/// Where something was drawn.
struct Box {
  int left;
  int top;
  int right;   // behind the last
  int bottom;  // behind the last

  [[nodiscard]] int width() const { return right - left; }
  [[nodiscard]] int height() const { return bottom - top; }
};

/// A white pixmap.
class DrawText : public support::DisplayTest {
 protected:
  void SetUp() override {
    DisplayTest::SetUp();
    pixmap_ = pb::Ref<GdkPixmap>::adopt(
        gdk_pixmap_new(gdk_get_default_root_window(), kWidth, kHeight, -1));
    const auto pen = pb::Ref<GdkGC>::adopt(gdk_gc_new(pixmap_.get()));
    const GdkColor white{0, 0xffff, 0xffff, 0xffff};
    gdk_gc_set_rgb_fg_color(pen.get(), &white);
    gdk_draw_rectangle(pixmap_.get(), pen.get(), TRUE, 0, 0, kWidth, kHeight);

    info_.drawable = pixmap_.get();
    info_.text = "Holiday";
    info_.x = 20;
    info_.y = 10;
    info_.width = 148;
    info_.height = 20;
    info_.color = &black_;
    info_.font_size = 13;
    info_.weight = 400;
    info_.align_x = 0.5F;
    info_.align_y = 1.1F;
  }

  [[nodiscard]] PixbufPtr drawn() const {
    return PixbufPtr::adopt(gdk_pixbuf_get_from_drawable(
        nullptr, pixmap_.get(), gdk_colormap_get_system(), 0, 0, 0, 0, kWidth, kHeight));
  }

  [[nodiscard]] std::optional<Box> box() const {
    const PixbufPtr picture = drawn();
    std::optional<Box> found;
    for (int y = 0; y < kHeight; ++y) {
      for (int x = 0; x < kWidth; ++x) {
        if (support::pixel_at(picture.get(), x, y) == support::kWhite) continue;
        if (!found) found = Box{x, y, x + 1, y + 1};
        found->left = std::min(found->left, x);
        found->right = std::max(found->right, x + 1);
        found->bottom = y + 1;
      }
    }
    return found;
  }

  /// The extents that the same text has by itself.
  [[nodiscard]] std::pair<PangoRectangle, PangoRectangle> measure() const {
    const auto context =
        pb::Ref<PangoContext>::adopt(gdk_pango_context_get_for_screen(gdk_screen_get_default()));
    const auto layout = pb::Ref<PangoLayout>::adopt(pango_layout_new(context.get()));
    pango_layout_set_text(layout.get(), info_.text, -1);
    PangoFontDescription *font = pango_font_description_new();
    pango_font_description_set_family(font, "Quillon Rg");
    pango_font_description_set_size(font, info_.font_size * 1024);
    pango_font_description_set_weight(font, static_cast<PangoWeight>(info_.weight));
    pango_layout_set_font_description(layout.get(), font);
    pango_font_description_free(font);
    pango_layout_set_width(layout.get(), info_.width * 1024 - 30720);
    pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    PangoRectangle ink{};
    PangoRectangle logical{};
    pango_layout_get_pixel_extents(layout.get(), &ink, &logical);
    return {ink, logical};
  }

  pb::Ref<GdkPixmap> pixmap_;
  PbDrawTextInfo info_{};
  GdkColor black_{};
};

TEST_F(DrawText, DrawsNothingWithoutText) {
  info_.text = nullptr;

  pb_draw_text(&info_);

  EXPECT_FALSE(box());
}

TEST_F(DrawText, DrawsNothingWithoutADrawable) {
  info_.drawable = nullptr;

  pb_draw_text(&info_);

  EXPECT_FALSE(box());
}

TEST_F(DrawText, CentresTheInkBelowThePicture) {
  const auto [ink, logical] = measure();

  pb_draw_text(&info_);

  const std::optional<Box> at = box();
  ASSERT_TRUE(at);
  EXPECT_NEAR(at->left, 20 + (148 - ink.width) / 2 + ink.x, 1);
  EXPECT_NEAR(at->width(), ink.width, 2);
}

TEST_F(DrawText, LiesAtItsDistanceBelowTheTopOfTheCell) {
  const auto [ink, logical] = measure();

  pb_draw_text(&info_);

  EXPECT_NEAR(box()->top, 10 + 118 + ink.y, 1);
}

TEST_F(DrawText, DoesNotDependOnTheCellsHeightOrAlignmentWhenUpright) {
  pb_draw_text(&info_);
  const std::optional<Box> before = box();
  info_.height = 200;
  info_.align_x = 0.9F;
  info_.align_y = 7.0F;

  pb_draw_text(&info_);

  EXPECT_EQ(box()->left, before->left);
  EXPECT_EQ(box()->bottom, before->bottom);
}

TEST_F(DrawText, IsUprightForEveryRotationButOne) {
  info_.rotate = 2;

  pb_draw_text(&info_);

  EXPECT_GT(box()->width(), box()->height());
}

TEST_F(DrawText, UsesTheColour) {
  const GdkColor red{0, 0xffff, 0, 0};
  info_.color = &red;
  info_.text = "MMMMM";
  info_.weight = 700;

  pb_draw_text(&info_);

  const PixbufPtr picture = drawn();
  const std::optional<Box> at = box();
  int red_pixels = 0;
  for (int y = at->top; y < at->bottom; ++y) {
    for (int x = at->left; x < at->right; ++x) {
      const support::Rgba colour = support::pixel_at(picture.get(), x, y);
      EXPECT_EQ(colour.red, 255);
      if (colour == support::kRed) ++red_pixels;
    }
  }
  EXPECT_GT(red_pixels, 50);
}

TEST_F(DrawText, EllipsizesWhatDoesNotFit) {
  info_.text = "A very long name of an album that nobody can read in a cell";

  pb_draw_text(&info_);

  EXPECT_LE(box()->width(), 148 - 30);
  EXPECT_GT(box()->width(), 80);
}

TEST_F(DrawText, IsLargerInALargerSize) {
  pb_draw_text(&info_);
  const int height = box()->height();
  info_.font_size = 26;

  pb_draw_text(&info_);

  EXPECT_GT(box()->height(), height * 3 / 2);
}

TEST_F(DrawText, IsBoldWithAHeavyWeight) {
  const auto ink_of = [this](int weight) {
    info_.weight = weight;
    return measure().first.width;
  };
  const int normal = ink_of(400);
  const int bold = ink_of(700);
  ASSERT_NE(normal, bold);

  pb_draw_text(&info_);

  EXPECT_NEAR(box()->width(), bold, 2);
}

TEST_F(DrawText, TurnsTextBy270Degrees) {
  info_.rotate = 1;
  info_.y = 60;
  info_.height = 148;
  const auto [ink, logical] = measure();

  pb_draw_text(&info_);

  const std::optional<Box> at = box();
  ASSERT_TRUE(at);
  EXPECT_GT(at->height(), at->width());
  // The text runs downwards; its origin lies at the right of its lines.
  const int origin_x =
      static_cast<int>(20.0F + 148.0F - 148.0F * 0.5F + static_cast<float>(logical.height) * 1.1F);
  const int origin_y = static_cast<int>(60.0F + static_cast<float>(148 - ink.width) * 0.5F);
  EXPECT_NEAR(at->top, origin_y + ink.x, 2);
  EXPECT_NEAR(at->bottom, origin_y + ink.x + ink.width, 2);
  EXPECT_NEAR(at->right, origin_x - ink.y, 2);
}

TEST_F(DrawText, UsesTheHorizontalFactorForBothDirections) {
  info_.rotate = 1;
  info_.y = 0;
  info_.height = 250;
  info_.align_x = 0.0F;
  info_.align_y = 2.0F;
  const auto [ink, logical] = measure();

  pb_draw_text(&info_);

  EXPECT_NEAR(box()->top, ink.x, 2);
  EXPECT_NEAR(box()->right, 20 + 148 + 2 * logical.height - ink.y, 2);
}

TEST_F(DrawText, ReturnsTheSharedRenderer) {
  const support::ExpectFinalized watch(pixmap_.get());

  pb_draw_text(&info_);

  pixmap_.reset();
}

TEST_F(DrawText, LeavesNoColourInTheSharedRenderer) {
  const GdkColor red{0, 0xffff, 0, 0};
  info_.color = &red;
  pb_draw_text(&info_);
  info_.color = nullptr;
  info_.y = 100;

  pb_draw_text(&info_);

  const PixbufPtr picture = drawn();
  for (int y = 218; y < 240; ++y) {
    for (int x = 20; x < 168; ++x) {
      EXPECT_NE(support::pixel_at(picture.get(), x, y), support::kRed);
    }
  }
}

TEST_F(DrawText, ShowsANameThatIsNoText) {
  info_.text = "IMG\xff\xfe.jpg";

  pb_draw_text(&info_);

  EXPECT_TRUE(box());
}

TEST_F(DrawText, ShowsALongNameInOneLine) {
  const std::string name(4096, 'n');
  info_.text = name.c_str();

  pb_draw_text(&info_);

  EXPECT_LE(box()->width(), 148 - 30);
}

TEST_F(DrawText, WarnsWithoutParameters) {
  pb_draw_text(nullptr);

  EXPECT_THAT(take_glib_warnings(), ElementsAre("pb_draw_text: assertion 'info' failed"));
}

}  // namespace

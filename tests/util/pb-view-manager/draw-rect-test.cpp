#include <gdk/gdk.h>

#include "pb-view-manager.h"
#include "support/glib-test.hpp"
#include "support/pixbufs.hpp"

namespace {

using support::PixbufPtr;
using support::pixel_at;
using testing::ElementsAre;

/// A black pixmap of 20 by 20 pixels and a red pen.
class DrawRect : public support::DisplayTest {
 protected:
  void SetUp() override {
    DisplayTest::SetUp();
    GdkWindow *root = gdk_get_default_root_window();
    pixmap_ = pb::Ref<GdkPixmap>::adopt(gdk_pixmap_new(root, 20, 20, -1));
    pen_ = pb::Ref<GdkGC>::adopt(gdk_gc_new(pixmap_.get()));
    const GdkColor black{};
    gdk_gc_set_rgb_fg_color(pen_.get(), &black);
    gdk_draw_rectangle(pixmap_.get(), pen_.get(), TRUE, 0, 0, 20, 20);
    const GdkColor red{0, 0xffff, 0, 0};
    gdk_gc_set_rgb_fg_color(pen_.get(), &red);
  }

  PixbufPtr drawn() {
    return PixbufPtr::adopt(gdk_pixbuf_get_from_drawable(
        nullptr, pixmap_.get(), gdk_colormap_get_system(), 0, 0, 0, 0, 20, 20));
  }

  pb::Ref<GdkPixmap> pixmap_;
  pb::Ref<GdkGC> pen_;
};

TEST_F(DrawRect, FillsTheRectangle) {
  const PbRect rect{3, 5, 7, 9};

  pb_draw_rect(pixmap_.get(), pen_.get(), TRUE, &rect);

  const PixbufPtr picture = drawn();
  EXPECT_EQ(pixel_at(picture.get(), 3, 5), support::kRed);
  EXPECT_EQ(pixel_at(picture.get(), 9, 13), support::kRed);
  EXPECT_EQ(pixel_at(picture.get(), 10, 13), support::kBlack);
  EXPECT_EQ(pixel_at(picture.get(), 9, 14), support::kBlack);
  EXPECT_EQ(pixel_at(picture.get(), 2, 5), support::kBlack);
}

TEST_F(DrawRect, DrawsTheOutline) {
  const PbRect rect{3, 5, 7, 9};

  pb_draw_rect(pixmap_.get(), pen_.get(), FALSE, &rect);

  const PixbufPtr picture = drawn();
  EXPECT_EQ(pixel_at(picture.get(), 10, 14), support::kRed);
  EXPECT_EQ(pixel_at(picture.get(), 5, 8), support::kBlack);
}

TEST_F(DrawRect, WarnsWithoutARectangle) {
  pb_draw_rect(pixmap_.get(), pen_.get(), TRUE, nullptr);

  EXPECT_THAT(take_glib_warnings(), ElementsAre("pb_draw_rect: assertion 'rect' failed"));
}

}  // namespace

#include "pb-debug.h"
#include "pb-util-image.h"
#include "support/fake-platform.hpp"
#include "support/pixbufs.hpp"
#include "util/pb-util/image.hpp"

namespace {

using fake::Logged;
using fake::platform;
using support::kBlue;
using support::kRed;
using support::kWhite;
using support::PixbufPtr;
using support::pixel_at;
using support::solid_pixbuf;
using testing::ElementsAre;
using testing::IsEmpty;

class ThumbnailMask : public support::GlibTest {};

TEST_F(ThumbnailMask, FramesTheThumbnail) {
  const PixbufPtr thumbnail = solid_pixbuf(50, 20, kRed);
  const PixbufPtr mask = solid_pixbuf(148, 130, kBlue);

  const PixbufPtr framed =
      PixbufPtr::adopt(pb_get_pixbuf_with_thumbnail_mask(thumbnail.get(), mask.get()));

  ASSERT_TRUE(framed);
  EXPECT_EQ(gdk_pixbuf_get_width(framed.get()), 148);
  EXPECT_EQ(gdk_pixbuf_get_height(framed.get()), 130);
  EXPECT_EQ(pixel_at(framed.get(), 19, 9), kRed);
  EXPECT_EQ(pixel_at(framed.get(), 126, 116), kRed);
  EXPECT_EQ(pixel_at(framed.get(), 18, 9), kBlue);
  EXPECT_EQ(pixel_at(framed.get(), 19, 8), kBlue);
  EXPECT_EQ(pixel_at(framed.get(), 127, 116), kBlue);
  EXPECT_EQ(pixel_at(framed.get(), 126, 117), kBlue);
}

TEST_F(ThumbnailMask, ScalesWithoutKeepingTheAspect) {
  const PixbufPtr thumbnail = support::quartered_pixbuf(50, 20);
  const PixbufPtr mask = solid_pixbuf(148, 130, support::kBlack);

  const PixbufPtr framed =
      PixbufPtr::adopt(pb_get_pixbuf_with_thumbnail_mask(thumbnail.get(), mask.get()));

  EXPECT_EQ(pixel_at(framed.get(), 20, 115), kBlue);
  EXPECT_EQ(pixel_at(framed.get(), 125, 115), kWhite);
}

TEST_F(ThumbnailMask, ScalesBilinear) {
  const PixbufPtr thumbnail = support::quartered_pixbuf(5, 5);
  const PixbufPtr mask = solid_pixbuf(148, 130, support::kBlack);
  const PixbufPtr wanted =
      PixbufPtr::adopt(gdk_pixbuf_scale_simple(thumbnail.get(), 108, 108, GDK_INTERP_BILINEAR));

  const PixbufPtr framed =
      PixbufPtr::adopt(pb_get_pixbuf_with_thumbnail_mask(thumbnail.get(), mask.get()));

  for (int x = 0; x < 108; ++x) {
    EXPECT_EQ(pixel_at(framed.get(), 19 + x, 9 + 54), pixel_at(wanted.get(), x, 54));
  }
}

TEST_F(ThumbnailMask, LeavesItsArgumentsAlone) {
  const PixbufPtr thumbnail = solid_pixbuf(50, 20, kRed);
  const PixbufPtr mask = solid_pixbuf(148, 130, kBlue);

  const PixbufPtr framed =
      PixbufPtr::adopt(pb_get_pixbuf_with_thumbnail_mask(thumbnail.get(), mask.get()));

  EXPECT_NE(framed.get(), mask.get());
  EXPECT_EQ(pixel_at(mask.get(), 30, 30), kBlue);
  EXPECT_EQ(G_OBJECT(mask.get())->ref_count, 1u);
  EXPECT_EQ(G_OBJECT(thumbnail.get())->ref_count, 1u);
}

TEST_F(ThumbnailMask, CopiesTheTransparencyOfTheThumbnail) {
  const PixbufPtr thumbnail = solid_pixbuf(50, 20, support::Rgba{255, 0, 0, 100});
  const PixbufPtr mask = solid_pixbuf(148, 130, kBlue, true);

  const PixbufPtr framed =
      PixbufPtr::adopt(pb_get_pixbuf_with_thumbnail_mask(thumbnail.get(), mask.get()));

  EXPECT_EQ(pixel_at(framed.get(), 30, 30), (support::Rgba{255, 0, 0, 100}));
}

TEST_F(ThumbnailMask, LaysATransparentThumbnailOverAnOpaqueFrame) {
  const PixbufPtr thumbnail = solid_pixbuf(50, 20, support::Rgba{255, 0, 0, 0});
  const PixbufPtr mask = solid_pixbuf(148, 130, kBlue);

  const PixbufPtr framed =
      PixbufPtr::adopt(pb_get_pixbuf_with_thumbnail_mask(thumbnail.get(), mask.get()));

  EXPECT_EQ(pixel_at(framed.get(), 30, 30), kBlue);
}

TEST_F(ThumbnailMask, NeedsAThumbnail) {
  const PixbufPtr mask = solid_pixbuf(148, 130, kBlue);

  EXPECT_EQ(pb_get_pixbuf_with_thumbnail_mask(nullptr, mask.get()), nullptr);

  EXPECT_THAT(take_glib_warnings(), ElementsAre("pb_get_pixbuf_with_thumbnail_mask: assertion "
                                                "'GDK_IS_PIXBUF(thumbnail)' failed"));
}

TEST_F(ThumbnailMask, NeedsAFrame) {
  const PixbufPtr thumbnail = solid_pixbuf(50, 20, kRed);

  EXPECT_EQ(pb_get_pixbuf_with_thumbnail_mask(thumbnail.get(), nullptr), nullptr);

  EXPECT_THAT(take_glib_warnings(), ElementsAre("pb_get_pixbuf_with_thumbnail_mask: assertion "
                                                "'GDK_IS_PIXBUF(mask)' failed"));
}

TEST_F(ThumbnailMask, NeedsAFrameThatHoldsIt) {
  const PixbufPtr thumbnail = solid_pixbuf(50, 20, kRed);
  const PixbufPtr mask = solid_pixbuf(126, 130, kBlue);

  EXPECT_EQ(pb_get_pixbuf_with_thumbnail_mask(thumbnail.get(), mask.get()), nullptr);

  EXPECT_THAT(take_glib_warnings(), ElementsAre("pb_get_pixbuf_with_thumbnail_mask: assertion "
                                                "'holds_thumbnail(mask)' failed"));
}

TEST(CachedPixbuf, IsBitmap83) { EXPECT_EQ(fake::image_id(pb_get_cached_pixbuf(0)), 83); }

TEST(CachedPixbuf, IsLoadedOnce) {
  GdkPixbuf *first = pb_get_cached_pixbuf(0);
  fake::take_calls();

  EXPECT_EQ(pb_get_cached_pixbuf(0), first);

  EXPECT_THAT(platform().calls, IsEmpty());
}

TEST(CachedPixbuf, IsTriedAgainWhenItCannotBeLoaded) {
  auto make = platform().rsrc_get_image;
  platform().rsrc_get_image = [](gint, gint) -> GdkPixbuf * { return nullptr; };
  EXPECT_EQ(pb_get_cached_pixbuf(0), nullptr);
  platform().rsrc_get_image = make;

  EXPECT_NE(pb_get_cached_pixbuf(0), nullptr);
}

TEST(CachedPixbuf, IsRefusedForANegativeIndex) {
  EXPECT_EQ(pb_get_cached_pixbuf(-1), nullptr);

  EXPECT_THAT(platform().calls, IsEmpty());
  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[pb_get_cached_pixbuf]bitmap id -> (-1)\n")));
}

TEST(CachedPixbuf, IsNullBehindTheTable) {
  EXPECT_EQ(pb_get_cached_pixbuf(1), nullptr);

  EXPECT_THAT(platform().calls, IsEmpty());
}

TEST(FilterThemePixbuf, IsTheBitmapOfItsId) {
  const PixbufPtr pixbuf = PixbufPtr::adopt(__mb_get_filter_theme_pixbuf(55));

  EXPECT_EQ(fake::image_id(pixbuf.get()), 55);
}

TEST(FilterThemePixbuf, IsLogged) {
  const PixbufPtr pixbuf = PixbufPtr::adopt(__mb_get_filter_theme_pixbuf(55));

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_INFO,
                                 "[__mb_get_filter_theme_pixbuf]"
                                 "__mb_get_filter_theme_pixbuf : icon_id = 55 \n")));
}

}  // namespace

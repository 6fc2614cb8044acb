#include <gdk-pixbuf/gdk-pixbuf.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "glib-ptr.hpp"

namespace {

constexpr const char *kAnimation =
    PB_PACKAGE_DIR "/usr/apps/com.velmora.photobrowser/res/bitmap/WVGA_Pb/download_indicator.gif";

constexpr int kStepMs = 80;

class Animation : public testing::Test {
 protected:
  void SetUp() override {
    pb::ErrorPtr error;
    animation_ = pb::Ref<GdkPixbufAnimation>::adopt(
        gdk_pixbuf_animation_new_from_file(kAnimation, pb::out(error)));
    ASSERT_TRUE(animation_) << error->message;
  }

  /// What is shown so long after the start.
  [[nodiscard]] std::string shown_after(int ms) const {
    G_GNUC_BEGIN_IGNORE_DEPRECATIONS
    const GTimeVal start{1000, 0};
    GTimeVal now = start;
    const auto iterator = pb::Ref<GdkPixbufAnimationIter>::adopt(
        gdk_pixbuf_animation_get_iter(animation_.get(), &start));
    g_time_val_add(&now, ms * 1000L);
    gdk_pixbuf_animation_iter_advance(iterator.get(), &now);
    G_GNUC_END_IGNORE_DEPRECATIONS
    GdkPixbuf *frame = gdk_pixbuf_animation_iter_get_pixbuf(iterator.get());
    return {reinterpret_cast<const char *>(gdk_pixbuf_read_pixels(frame)),
            gdk_pixbuf_get_byte_length(frame)};
  }

  pb::Ref<GdkPixbufAnimation> animation_;
};

}  // namespace

TEST_F(Animation, Moves) { EXPECT_FALSE(gdk_pixbuf_animation_is_static_image(animation_.get())); }

TEST_F(Animation, ShowsTwelveDifferentPictures) {
  std::set<std::string> frames;
  for (int step = 0; step < 12; ++step) frames.insert(shown_after(step * kStepMs + kStepMs / 2));

  EXPECT_EQ(frames.size(), 12U);
}

TEST_F(Animation, GoesRoundForEver) {
  EXPECT_EQ(shown_after(kStepMs / 2), shown_after(12 * kStepMs + kStepMs / 2));
  EXPECT_EQ(shown_after(kStepMs / 2), shown_after(120 * kStepMs + kStepMs / 2));
}

TEST_F(Animation, LetsTheDialogShowThroughItsMiddle) {
  GdkPixbuf *frame = gdk_pixbuf_animation_get_static_image(animation_.get());
  ASSERT_TRUE(gdk_pixbuf_get_has_alpha(frame));

  const guchar *middle =
      gdk_pixbuf_read_pixels(frame) + 22 * gdk_pixbuf_get_rowstride(frame) + 22 * 4;
  EXPECT_EQ(middle[3], 0);
}

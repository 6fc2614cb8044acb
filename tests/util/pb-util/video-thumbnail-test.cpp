#include <ostream>
#include <string>

#include "pb-debug.h"
#include "pb-util-image.h"
#include "pb-view-manager.h"
#include "support/fake-platform.hpp"
#include "support/pixbufs.hpp"

namespace {

using fake::Logged;
using fake::platform;
using support::PixbufPtr;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char *kPath = "/mnt/ums/v.mp4";

/// Lets the video have a frame of one colour.
void serve_frame(int width, int height, guchar red = 200, guchar green = 100, guchar blue = 50) {
  std::vector<guchar> pixels;
  for (int i = 0; i < width * height; ++i) {
    pixels.insert(pixels.end(), {red, green, blue});
  }
  platform().MMFileGetContentAttr = [=](const gchar *, MMAttrs **attrs) {
    *attrs = fake::make_attributes(width, height, pixels);
    return 0;
  };
}

void turn_screen(int degrees) {
  platform().gtk_window_get_rotate = [degrees](GtkWindow *) { return degrees; };
}

struct Shown {
  int rotation;
  int width;
  int height;
  int shown_width;
  int shown_height;
};

void PrintTo(const Shown &row, std::ostream *out) {
  *out << row.width << "x" << row.height << " on a screen turned by " << row.rotation;
}

class VideoThumbnailSize : public testing::TestWithParam<Shown> {};

TEST_P(VideoThumbnailSize, FollowsFrameAndScreen) {
  serve_frame(GetParam().width, GetParam().height);
  turn_screen(GetParam().rotation);

  const PixbufPtr pixbuf = PixbufPtr::adopt(pb_get_video_thumnail_by_path(kPath));

  ASSERT_TRUE(pixbuf);
  EXPECT_EQ(gdk_pixbuf_get_width(pixbuf.get()), GetParam().shown_width);
  EXPECT_EQ(gdk_pixbuf_get_height(pixbuf.get()), GetParam().shown_height);
}

INSTANTIATE_TEST_SUITE_P(Table, VideoThumbnailSize,
                         testing::Values(Shown{0, 160, 120, 320, 240},    // small: doubled
                                         Shown{90, 160, 120, 320, 240},   // on any screen
                                         Shown{0, 176, 144, 352, 288},    // still small
                                         Shown{0, 100, 140, 200, 280},    // small and high
                                         Shown{0, 177, 144, 480, 390},    // too wide
                                         Shown{0, 120, 145, 291, 352},    // too high
                                         Shown{0, 352, 288, 480, 392},    // landscape, portrait
                                         Shown{180, 352, 288, 480, 392},  // upside down
                                         Shown{90, 352, 288, 800, 654},   // landscape screen
                                         Shown{270, 352, 288, 800, 654},
                                         Shown{0, 288, 352, 288, 352},  // portrait frames
                                         Shown{90, 288, 352, 392, 480},
                                         Shown{0, 300, 300, 480, 480},  // square: as landscape
                                         Shown{90, 200, 200, 800, 800},
                                         Shown{0, 2000, 1, 480, 1}),  // at least a pixel
                         [](const auto &row) { return "Row" + std::to_string(row.index); });

TEST(VideoThumbnail, AsksForTheFramesAttributes) {
  serve_frame(160, 120);

  const PixbufPtr pixbuf = PixbufPtr::adopt(pb_get_video_thumnail_by_path(kPath));

  EXPECT_THAT(platform().calls,
              ElementsAre("MMFileGetContentAttr(\"/mnt/ums/v.mp4\")", "MMAttrsGetInt(4)",
                          "MMAttrsGetInt(5)", "MMAttrsGetData(6)", "gtk_window_get_rotate(NULL)",
                          "MMAttrsFree()"));
}

TEST(VideoThumbnail, ReadsThePixelsAsRgb) {
  serve_frame(10, 10, 200, 100, 50);

  const PixbufPtr pixbuf = PixbufPtr::adopt(pb_get_video_thumnail_by_path(kPath));

  EXPECT_EQ(support::pixel_at(pixbuf.get(), 7, 13), (support::Rgba{200, 100, 50}));
  EXPECT_FALSE(gdk_pixbuf_get_has_alpha(pixbuf.get()));
}

TEST(VideoThumbnail, ReadsRowsWithoutPadding) {
  std::vector<guchar> pixels(3 * 3 * 3);
  for (int x = 0; x < 3; ++x) pixels[static_cast<std::size_t>(9 + 3 * x)] = 255;  // second row red
  platform().MMFileGetContentAttr = [&pixels](const gchar *, MMAttrs **attrs) {
    *attrs = fake::make_attributes(3, 3, pixels);
    return 0;
  };

  const PixbufPtr pixbuf = PixbufPtr::adopt(pb_get_video_thumnail_by_path(kPath));

  EXPECT_GT(support::pixel_at(pixbuf.get(), 0, 2).red, 150);
  EXPECT_GT(support::pixel_at(pixbuf.get(), 5, 3).red, 150);
  EXPECT_LT(support::pixel_at(pixbuf.get(), 0, 0).red, 100);
}

TEST(VideoThumbnail, DoesNotNeedTheAttributesAfterwards) {
  serve_frame(160, 120);

  const PixbufPtr pixbuf = PixbufPtr::adopt(pb_get_video_thumnail_by_path(kPath));

  EXPECT_EQ(fake::live_header_objects(), 0);
  EXPECT_EQ(support::pixel_at(pixbuf.get(), 319, 239), (support::Rgba{200, 100, 50}));
}

TEST(VideoThumbnail, IsNullWithoutPixels) {
  platform().MMFileGetContentAttr = [](const gchar *, MMAttrs **attrs) {
    *attrs = fake::make_attributes(160, 120, {});
    return 0;
  };

  EXPECT_EQ(pb_get_video_thumnail_by_path(kPath), nullptr);

  EXPECT_EQ(fake::live_header_objects(), 0);
  EXPECT_THAT(platform().log, IsEmpty());
}

TEST(VideoThumbnail, IsNullForASizeThatIsNone) {
  platform().MMFileGetContentAttr = [](const gchar *, MMAttrs **attrs) {
    *attrs = fake::make_attributes(0, 120, {1, 2, 3});
    return 0;
  };

  EXPECT_EQ(pb_get_video_thumnail_by_path(kPath), nullptr);
}

TEST(VideoThumbnail, IsNullForASizeThatNoPixelsCanHave) {
  platform().MMFileGetContentAttr = [](const gchar *, MMAttrs **attrs) {
    *attrs = fake::make_attributes(100000, 100000, {1, 2, 3});
    return 0;
  };

  EXPECT_EQ(pb_get_video_thumnail_by_path(kPath), nullptr);
}

TEST(VideoThumbnail, LogsAFailure) {
  platform().MMFileGetContentAttr = [](const gchar *, MMAttrs **attrs) {
    *attrs = nullptr;
    return -5;
  };

  EXPECT_EQ(pb_get_video_thumnail_by_path(kPath), nullptr);

  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_ERROR,
                                                 "[pb_get_video_thumnail_by_path]"
                                                 "pb_get_video_thumnail_by_path : ret = -5, "
                                                 "buffer=(nil) \n\n")));
}

TEST(VideoThumbnail, LogsMissingAttributes) {
  platform().MMFileGetContentAttr = [](const gchar *, MMAttrs **attrs) {
    *attrs = nullptr;
    return 0;
  };

  EXPECT_EQ(pb_get_video_thumnail_by_path(kPath), nullptr);

  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_ERROR,
                                                 "[pb_get_video_thumnail_by_path]"
                                                 "pb_get_video_thumnail_by_path : ret = 0, "
                                                 "buffer=(nil) \n\n")));
}

class VideoThumbnailScreen : public support::DisplayTest {};

TEST_F(VideoThumbnailScreen, IsTheMainWindows) {
  pb_view_manager_create_window(0);
  fake::take_calls();
  serve_frame(160, 120);

  const PixbufPtr pixbuf = PixbufPtr::adopt(pb_get_video_thumnail_by_path(kPath));

  EXPECT_THAT(fake::calls_of("gtk_window_get_rotate"),
              ElementsAre("gtk_window_get_rotate(GtkMainWindow)"));
  pb_view_manager_destroy_window();
}

}  // namespace

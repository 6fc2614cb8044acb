#include <gmock/gmock.h>
#include <gtk/gtk.h>

// X11 names a macro None, which the test framework does not bear.
#include <gdk/gdkx.h>

#include <X11/extensions/XTest.h>

#include "app/browsing.hpp"

using gallery_test::eventually;
using gallery_test::kRed;

namespace {

/// Where the picture is looked at: between the bars.
constexpr GdkRectangle kCanvas{0, 68, 480, 680};

/// Opens on a picture of 600 by 400, which fits with 480 by 320.
class ZoomedView : public gallery_test::Browsing {
 protected:
  void open_red() {
    add_picture("red.png", kRed);
    add_picture("yellow.png", gallery_test::kYellow);
    start();
    ASSERT_TRUE(find(kRed));
    press("Return");
    ASSERT_TRUE(has_title("red.png"));
    ASSERT_TRUE(has_height(320));
  }

  /// A pixel of the picture is black or white, like a board for chess.
  void open_board() {
    const auto board = support::solid_pixbuf(1200, 1200, {255, 255, 255});
    guchar *pixels = gdk_pixbuf_get_pixels(board.get());
    const int stride = gdk_pixbuf_get_rowstride(board.get());
    for (int y = 0; y < 1200; ++y) {
      for (int x = y % 2; x < 1200; x += 2) {
        for (int i = 0; i < 3; ++i) pixels[y * stride + x * 3 + i] = 0;
      }
    }
    ASSERT_TRUE(
        gdk_pixbuf_save(board.get(), library_.path("board.png").c_str(), "png", nullptr, nullptr));
    start({library_.path("board.png")});
    ASSERT_TRUE(has_title("board.png"));
    settle();
  }

  [[nodiscard]] int height() const {
    const auto red = look_within(kCanvas, kRed);
    return red.bottom - red.top + 1;
  }

  /// Waits for the picture's height, give or take a pixel.
  [[nodiscard]] bool has_height(int pixels) const {
    const bool has = eventually([&] { return std::abs(height() - pixels) <= 2; });
    if (!has) ADD_FAILURE() << "the height is " << height();
    return has;
  }

  static void turn_wheel(bool up, int x, int y) {
    Display *display = gdk_x11_get_default_xdisplay();
    XTestFakeMotionEvent(display, -1, x, y, 0);
    XTestFakeButtonEvent(display, up ? 4 : 5, True, 0);
    XTestFakeButtonEvent(display, up ? 4 : 5, False, 0);
    XFlush(display);
  }

  static void tap_twice(int x, int y) {
    Display *display = gdk_x11_get_default_xdisplay();
    XTestFakeMotionEvent(display, -1, x, y, 0);
    for (int i = 0; i < 2; ++i) {
      XTestFakeButtonEvent(display, 1, True, 0);
      XTestFakeButtonEvent(display, 1, False, 20);
    }
    XFlush(display);
  }
};

}  // namespace

TEST_F(ZoomedView, GrowsWithPlus) {
  open_red();

  press("plus");

  EXPECT_TRUE(has_height(480));
}

TEST_F(ZoomedView, GrowsAfterASwipeToo) {
  open_red();
  swipe(400, 80);
  ASSERT_TRUE(has_title("yellow.png"));
  swipe(80, 400);
  ASSERT_TRUE(has_title("red.png"));
  ASSERT_TRUE(has_height(320));

  press("plus");

  EXPECT_TRUE(has_height(480));
}

TEST_F(ZoomedView, ShrinksWithMinus) {
  open_red();
  press("plus");
  ASSERT_TRUE(has_height(480));

  press("minus");

  EXPECT_TRUE(has_height(320));
}

TEST_F(ZoomedView, FitsAgainWithZero) {
  open_red();
  press("plus");
  press("plus");
  ASSERT_TRUE(eventually([this] { return height() > 500; }));

  press("0");

  EXPECT_TRUE(has_height(320));
}

TEST_F(ZoomedView, ShowsPixelForPixelWithOne) {
  open_red();

  press("1");

  EXPECT_TRUE(has_height(400));
}

TEST_F(ZoomedView, GrowsWithTheWheel) {
  open_red();

  turn_wheel(true, 240, 400);

  EXPECT_TRUE(has_height(400));
}

TEST_F(ZoomedView, GrowsWithTwoTaps) {
  open_red();

  tap_twice(240, 400);

  EXPECT_TRUE(eventually([this] { return height() >= 678; }));
  EXPECT_EQ(title(), "red.png");
}

TEST_F(ZoomedView, FitsAgainWithTwoTaps) {
  open_red();
  tap_twice(240, 400);
  ASSERT_TRUE(eventually([this] { return height() >= 678; }));
  // Sooner, GDK would take the next tap for the third of a triple click.
  g_usleep(600 * G_TIME_SPAN_MILLISECOND);

  tap_twice(240, 400);

  EXPECT_TRUE(has_height(320));
}

TEST_F(ZoomedView, FitsAgainWithEscape) {
  open_red();
  press("plus");
  ASSERT_TRUE(has_height(480));

  press("Escape");

  EXPECT_TRUE(has_height(320));
  EXPECT_EQ(title(), "red.png");
}

TEST_F(ZoomedView, StaysOnThePictureWhenTheArrowsLookAround) {
  open_red();
  press("plus");
  ASSERT_TRUE(has_height(480));

  press("Right");
  settle();

  EXPECT_EQ(title(), "red.png");
}

TEST_F(ZoomedView, IsFittedForTheNextPicture) {
  open_red();
  press("plus");
  ASSERT_TRUE(has_height(480));

  press("Page_Down");

  ASSERT_TRUE(has_title("yellow.png"));
  EXPECT_TRUE(eventually([this] {
    const auto yellow = look_within(kCanvas, gallery_test::kYellow);
    return std::abs(yellow.bottom - yellow.top - 319) <= 2;
  }));
}

TEST_F(ZoomedView, MovesUnderAFinger) {
  open_red();
  for (int i = 0; i < 3; ++i) press("plus");
  ASSERT_TRUE(eventually([this] { return height() >= 678; }));

  screen_.drag(240, 300, 240, 740);

  // The upper edge of the picture stops at the upper edge of the window.
  settle();
  EXPECT_GE(height(), 678);
  EXPECT_EQ(title(), "red.png");
}

TEST_F(ZoomedView, ShowsAllThatThePictureHas) {
  open_board();
  ASSERT_LT(look_within(kCanvas, {255, 255, 255}).pixels, 1000);

  press("1");

  EXPECT_TRUE(eventually([this] {
    return look_within(kCanvas, {255, 255, 255}).pixels > 100000 &&
           look_within(kCanvas, {0, 0, 0}).pixels > 100000;
  }));
}

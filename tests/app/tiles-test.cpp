#include <gmock/gmock.h>
#include <gtk/gtk.h>

// X11 names a macro None, which the test framework does not bear.
#include <gdk/gdkx.h>

#include <X11/extensions/XTest.h>

#include "app/browsing.hpp"

using gallery_test::eventually;
using gallery_test::kGreen;
using gallery_test::kRed;

namespace {

constexpr GdkRectangle kScreen{0, 0, 480, 800};

/// Two pictures of three to two.
class Tiles : public gallery_test::Browsing {
 protected:
  void start_with_two() {
    add_picture("Beach/red.png", kRed);
    add_picture("Beach/green.png", kGreen);
    start();
    ASSERT_TRUE(has_width(kRed, 148));
  }

  [[nodiscard]] bool has_width(support::Rgba colour, int pixels) const {
    int width = 0;
    const bool has = eventually([&] {
      const auto patch = look_within(kScreen, colour);
      width = patch.right - patch.left + 1;
      // The frame around the cursor covers the edges.
      return width <= pixels && width >= pixels - 14;
    });
    if (!has) ADD_FAILURE() << "the width is " << width;
    return has;
  }

  static void turn_wheel_with_control(unsigned button) {
    Display *display = gdk_x11_get_default_xdisplay();
    const KeyCode control = XKeysymToKeycode(display, XStringToKeysym("Control_L"));
    XTestFakeMotionEvent(display, -1, 240, 400, 0);
    XTestFakeKeyEvent(display, control, True, 0);
    XTestFakeButtonEvent(display, button, True, 0);
    XTestFakeButtonEvent(display, button, False, 0);
    XTestFakeKeyEvent(display, control, False, 0);
    XFlush(display);
  }
};

}  // namespace

TEST_F(Tiles, BecomeSmallWithControlAndMinus) {
  start_with_two();

  press("ctrl+minus");

  EXPECT_TRUE(has_width(kGreen, 64));
}

TEST_F(Tiles, KeepTheProportionsOfTheirPictures) {
  start_with_two();

  press("ctrl+minus");

  ASSERT_TRUE(has_width(kGreen, 64));
  const auto green = look_within(kScreen, kGreen);
  EXPECT_NEAR(green.bottom - green.top + 1, 64 * 2 / 3, 3);
}

TEST_F(Tiles, BecomeLargeAgainWithControlAndPlus) {
  start_with_two();
  press("ctrl+minus");
  ASSERT_TRUE(has_width(kGreen, 64));

  press("ctrl+plus");

  EXPECT_TRUE(has_width(kGreen, 148));
}

TEST_F(Tiles, ChangeWithControlAndTheWheel) {
  start_with_two();

  turn_wheel_with_control(5);
  ASSERT_TRUE(has_width(kGreen, 64));
  turn_wheel_with_control(4);

  EXPECT_TRUE(has_width(kGreen, 148));
}

TEST_F(Tiles, AreTheSameInAnAlbum) {
  start_with_two();
  press("ctrl+minus");
  ASSERT_TRUE(has_width(kGreen, 64));
  press("ctrl+2");
  ASSERT_TRUE(has_title("Albums"));
  settle();

  press("Return");

  ASSERT_TRUE(has_title("Beach"));
  EXPECT_TRUE(has_width(kGreen, 64));
}

TEST_F(Tiles, LeaveTheCursorOnItsPicture) {
  start_with_two();
  press("Right");

  press("ctrl+minus");
  press("Return");

  EXPECT_TRUE(has_title("green.png"));
}

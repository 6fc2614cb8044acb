#include <gmock/gmock.h>

#include "app/browsing.hpp"

using gallery_test::kRed;

namespace {

constexpr GdkRectangle kPage{0, 68, 480, 732};
constexpr support::Rgba kText{242, 242, 242};

class Info : public gallery_test::Browsing {
 protected:
  void open_red() {
    add_picture("red.png", kRed);
    start();
    ASSERT_TRUE(find(kRed));
    press("Return");
    ASSERT_TRUE(has_title("red.png"));
  }
};

}  // namespace

TEST_F(Info, OfAPictureOpensWithAltAndReturn) {
  open_red();

  press("alt+Return");

  EXPECT_TRUE(has_title("Details"));
  EXPECT_TRUE(is_gone(kRed));
  EXPECT_GT(look_within(kPage, kText).pixels, 300);
}

TEST_F(Info, GoesBackToThePicture) {
  open_red();
  press("alt+Return");
  ASSERT_TRUE(has_title("Details"));

  press("Escape");

  EXPECT_TRUE(has_title("red.png"));
  EXPECT_TRUE(find(kRed, 100000));
}

TEST_F(Info, LeadsBackToThePictureWhenOthersCome) {
  open_red();
  press("alt+Return");
  ASSERT_TRUE(has_title("Details"));
  const std::string pink = library_.path("pink.png");
  support::save_picture(pink, 600, 400, gallery_test::kPink);
  settle();
  press("Escape");

  // By then the list has been built again under both.
  EXPECT_TRUE(has_title("red.png"));
}

TEST_F(Info, AboutTheKeysOpensWithF1) {
  add_picture("red.png", kRed);
  start();
  ASSERT_TRUE(find(kRed));

  press("F1");

  EXPECT_TRUE(has_title("Help"));
  EXPECT_GT(look_within(kPage, kText).pixels, 1000);
}

TEST_F(Info, AboutTheKeysOpensOnce) {
  add_picture("red.png", kRed);
  start();
  ASSERT_TRUE(find(kRed));
  press("F1");
  ASSERT_TRUE(has_title("Help"));
  press("F1");
  settle();

  press("Escape");

  EXPECT_TRUE(has_title("All pictures"));
}

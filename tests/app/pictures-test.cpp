#include <gmock/gmock.h>
#include <unistd.h>

#include "app/browsing.hpp"

using gallery_test::kGreen;
using gallery_test::kPink;
using gallery_test::kRed;
using gallery_test::kYellow;
using testing::IsEmpty;

namespace {

class Pictures : public gallery_test::Browsing {
 protected:
  /// Three pictures, the newest red, then green, then yellow.
  void start_with_three() {
    add_picture("red.png", kRed);
    add_picture("green.png", kGreen);
    add_picture("yellow.png", kYellow);
    start();
    ASSERT_TRUE(find(kYellow));
  }
};

}  // namespace

TEST_F(Pictures, LieThreeInARowTheNewestFirst) {
  start_with_three();

  const auto red = find(kRed);
  const auto green = find(kGreen);
  const auto yellow = find(kYellow);

  ASSERT_TRUE(red && green && yellow);
  EXPECT_LT(red->right, green->left);
  EXPECT_LT(green->right, yellow->left);
  EXPECT_EQ(red->top, yellow->top);
}

TEST_F(Pictures, AreCalledAllPictures) {
  start_with_three();

  EXPECT_TRUE(has_title("All pictures"));
}

TEST_F(Pictures, OpenWithReturn) {
  start_with_three();

  press("Return");

  EXPECT_TRUE(has_title("red.png"));
  const auto red = find(kRed, 100000);
  ASSERT_TRUE(red);
  EXPECT_EQ(red->right - red->left, 479);
}

TEST_F(Pictures, OpenWhereTheArrowKeysLead) {
  start_with_three();

  press("Right");
  press("Return");

  EXPECT_TRUE(has_title("green.png"));
}

TEST_F(Pictures, OpenByAClick) {
  start_with_three();
  const auto yellow = find(kYellow);
  ASSERT_TRUE(yellow);

  click((yellow->left + yellow->right) / 2, (yellow->top + yellow->bottom) / 2);

  EXPECT_TRUE(has_title("yellow.png"));
}

TEST_F(Pictures, ThatAreNewJoinWithoutARestart) {
  start_with_three();

  support::save_picture(library_.path("pink.png"), 600, 400, kPink);

  EXPECT_TRUE(find(kPink));
}

TEST_F(Pictures, ThatAreDeletedGo) {
  start_with_three();

  unlink(library_.path("green.png").c_str());

  EXPECT_TRUE(is_gone(kGreen));
}

TEST_F(Pictures, KeepTheCursorWhenOthersJoin) {
  start_with_three();
  press("Right");
  press("Right");

  support::save_picture(library_.path("pink.png"), 600, 400, kPink);
  ASSERT_TRUE(find(kPink));
  press("Return");

  EXPECT_TRUE(has_title("yellow.png"));
}

TEST_F(Pictures, LeaveTheTerminalAlone) {
  start_with_three();
  press("Return");
  ASSERT_TRUE(has_title("red.png"));
  press("Right");
  ASSERT_TRUE(has_title("green.png"));
  press("Escape");
  ASSERT_TRUE(has_title("All pictures"));
  press("ctrl+2");
  ASSERT_TRUE(has_title("Albums"));

  EXPECT_THAT(stop(), IsEmpty());
}

TEST_F(Pictures, EndWithControlAndQ) {
  start_with_three();

  press("ctrl+q");

  EXPECT_TRUE(gallery_test::eventually([this] { return title().empty(); }));
}

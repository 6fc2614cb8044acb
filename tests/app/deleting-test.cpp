#include <gmock/gmock.h>

#include "app/browsing.hpp"

using gallery_test::eventually;
using gallery_test::kGreen;
using gallery_test::kRed;
using gallery_test::kYellow;
using testing::IsEmpty;

namespace {

/// Three pictures, the newest red, then green, then yellow.
class Deleting : public gallery_test::Browsing {
 protected:
  void start_with_three() {
    red_ = add_picture("red.png", kRed);
    green_ = add_picture("green.png", kGreen);
    add_picture("yellow.png", kYellow);
    start();
    ASSERT_TRUE(find(kYellow));
  }

  void delete_green_in_the_viewer() {
    start_with_three();
    press("Right");
    press("Return");
    ASSERT_TRUE(has_title("green.png"));
    press("Delete");
    ASSERT_TRUE(has_title("yellow.png"));
  }

  std::string red_;
  std::string green_;
};

}  // namespace

TEST_F(Deleting, TakesThePictureWithTheCursor) {
  start_with_three();
  press("Right");

  press("Delete");

  EXPECT_TRUE(eventually([this] { return !support::exists(green_); }));
  EXPECT_TRUE(is_gone(kGreen));
  EXPECT_TRUE(support::exists(red_));
}

TEST_F(Deleting, IsTakenBackWithCtrlZ) {
  start_with_three();
  press("Right");
  press("Delete");
  ASSERT_TRUE(is_gone(kGreen));

  press("ctrl+z");

  EXPECT_TRUE(find(kGreen));
  EXPECT_TRUE(support::exists(green_));
}

TEST_F(Deleting, IsTakenBackByTheButtonInTheBar) {
  start_with_three();
  press("Right");
  press("Delete");
  ASSERT_TRUE(is_gone(kGreen));
  settle();

  click(420, 770);

  EXPECT_TRUE(find(kGreen));
}

TEST_F(Deleting, GoesOnToTheNextPictureInTheViewer) {
  delete_green_in_the_viewer();

  EXPECT_TRUE(find(kYellow, 100000));
  EXPECT_FALSE(support::exists(green_));
}

TEST_F(Deleting, LeavesTheViewerWithTheLastPicture) {
  add_picture("red.png", kRed);
  start();
  ASSERT_TRUE(find(kRed));
  press("Return");
  ASSERT_TRUE(has_title("red.png"));

  press("Delete");

  EXPECT_TRUE(has_title("All pictures"));
  EXPECT_THAT(stop(), IsEmpty());
}

TEST_F(Deleting, TakesOneFileForAKeyThatIsPressedTwice) {
  start_with_three();
  press("Right");

  press("Delete");
  press("Delete");

  ASSERT_TRUE(is_gone(kGreen));
  settle();
  EXPECT_TRUE(find(kRed));
  EXPECT_TRUE(find(kYellow));
}

TEST_F(Deleting, LeavesAlbumsAlone) {
  red_ = add_picture("Beach/red.png", kRed);
  start();
  ASSERT_TRUE(find(kRed));
  press("ctrl+2");
  ASSERT_TRUE(has_title("Albums"));

  press("Delete");
  settle();

  EXPECT_TRUE(support::exists(red_));
}

TEST_F(Deleting, WorksInsideAnAlbum) {
  red_ = add_picture("Beach/red.png", kRed);
  add_picture("Beach/green.png", kGreen);
  start();
  ASSERT_TRUE(find(kRed));
  press("ctrl+2");
  ASSERT_TRUE(has_title("Albums"));
  settle();
  press("Return");
  ASSERT_TRUE(has_title("Beach"));
  settle();
  press("Home");

  press("Delete");

  EXPECT_TRUE(eventually([this] {
    return !support::exists(red_) || !support::exists(library_.path("Beach/green.png"));
  }));
}

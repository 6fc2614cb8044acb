#include <gmock/gmock.h>

#include "app/browsing.hpp"

using gallery_test::kGreen;
using gallery_test::kPink;
using gallery_test::kRed;
using gallery_test::kYellow;

namespace {

/// An album "Beach" with the newest pictures, red before green, and an older album "Town" with a
/// yellow and a pink one.
class Albums : public gallery_test::Browsing {
 protected:
  void open_albums() {
    add_picture("Beach/red.png", kRed);
    add_picture("Beach/green.png", kGreen);
    add_picture("Town/yellow.png", kYellow);
    add_picture("Town/pink.png", kPink);
    start();
    ASSERT_TRUE(find(kPink));
    press("ctrl+2");
    ASSERT_TRUE(has_title("Albums"));
    // The title comes before the covers.
    settle();
    ASSERT_TRUE(find(kYellow));
  }
};

}  // namespace

TEST_F(Albums, ShowACoverEach) {
  open_albums();

  const auto red = find(kRed);
  const auto yellow = find(kYellow);

  ASSERT_TRUE(red && yellow);
  EXPECT_LT(red->right, yellow->left);
  EXPECT_EQ(red->right - red->left, 107);
  EXPECT_EQ(red->bottom - red->top, 107);
}

TEST_F(Albums, ShowAsMuchOfALongNameAsTheirCellHolds) {
  add_picture("A walk along the river/red.png", kRed);
  start();
  ASSERT_TRUE(find(kRed));
  press("ctrl+2");
  ASSERT_TRUE(has_title("Albums"));
  settle();

  const auto cover = find(kRed);

  ASSERT_TRUE(cover);
  const GdkRectangle caption{0, cover->bottom + 8, 160, 40};
  const auto white = look_within(caption, {255, 255, 255});
  EXPECT_GT(white.right - white.left, 125);
  EXPECT_LT(white.right, 154);
}

TEST_F(Albums, OpenWithReturn) {
  open_albums();

  press("Return");

  EXPECT_TRUE(has_title("Beach"));
  EXPECT_TRUE(find(kRed));
  EXPECT_TRUE(find(kGreen));
  EXPECT_TRUE(is_gone(kYellow));
}

TEST_F(Albums, OpenByAClick) {
  open_albums();
  const auto yellow = find(kYellow);
  ASSERT_TRUE(yellow);

  click(yellow->left + 50, yellow->top + 50);

  EXPECT_TRUE(has_title("Town"));
}

TEST_F(Albums, KeepTheViewerInside) {
  open_albums();
  press("Return");
  ASSERT_TRUE(has_title("Beach"));
  press("Return");
  ASSERT_TRUE(title() != "Beach" ||
              gallery_test::eventually([this] { return title() != "Beach"; }));
  const std::string first = title();

  press("Right");
  ASSERT_TRUE(gallery_test::eventually([&] { return title() != first; }));
  const std::string second = title();
  press("Right");
  settle();

  EXPECT_EQ(title(), second);
  EXPECT_THAT((std::vector<std::string>{first, second}),
              testing::UnorderedElementsAre("red.png", "green.png"));
}

TEST_F(Albums, ComeBackWithEscape) {
  open_albums();
  press("Return");
  ASSERT_TRUE(has_title("Beach"));

  press("Escape");

  EXPECT_TRUE(has_title("Albums"));
  EXPECT_TRUE(find(kYellow));
}

TEST_F(Albums, ComeBackWithTheCursorWhereItWas) {
  open_albums();
  press("Right");
  press("Return");
  ASSERT_TRUE(has_title("Town"));
  press("Escape");
  ASSERT_TRUE(has_title("Albums"));

  press("Return");

  EXPECT_TRUE(has_title("Town"));
}

TEST_F(Albums, ComeBackFromTheViewerStepByStep) {
  open_albums();
  press("Return");
  ASSERT_TRUE(has_title("Beach"));
  press("Return");
  ASSERT_TRUE(gallery_test::eventually([this] { return title() != "Beach"; }));

  press("Escape");
  EXPECT_TRUE(has_title("Beach"));

  press("Escape");
  EXPECT_TRUE(has_title("Albums"));
}

TEST_F(Albums, GiveWayToAllPictures) {
  open_albums();

  press("ctrl+1");

  EXPECT_TRUE(has_title("All pictures"));
  EXPECT_TRUE(find(kGreen));
}

TEST_F(Albums, OpenByTheTab) {
  add_picture("Beach/red.png", kRed);
  start();
  ASSERT_TRUE(find(kRed));

  click(360, 86);

  EXPECT_TRUE(has_title("Albums"));
}

TEST_F(Albums, GetNewOnesWithoutARestart) {
  open_albums();

  library_.make_dir("Zoo");
  support::save_picture(library_.path("Zoo/blue.png"), 600, 400, support::kBlue);

  EXPECT_TRUE(find(support::kBlue));
}

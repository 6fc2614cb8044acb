#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "app/browsing.hpp"

using gallery_test::eventually;
using gallery_test::kGreen;
using gallery_test::kPink;
using gallery_test::kRed;
using gallery_test::kYellow;

namespace {

/// Opens on the second of three pictures.
class Viewer : public gallery_test::Browsing {
 protected:
  void open_green() {
    add_picture("red.png", kRed);
    add_picture("green.png", kGreen);
    add_picture("yellow.png", kYellow);
    start();
    ASSERT_TRUE(find(kYellow));
    press("Right");
    press("Return");
    ASSERT_TRUE(has_title("green.png"));
    ASSERT_TRUE(find(kGreen, 100000));
  }

  /// Rows of pixels before the ground at the right edge changes.
  [[nodiscard]] int title_height() const {
    const auto photograph = screen_.photograph();
    const int stride = gdk_pixbuf_get_rowstride(photograph.get());
    const guchar *edge = gdk_pixbuf_read_pixels(photograph.get()) + 476 * 3;
    int row = 0;
    while (row < 799 && edge[row * stride] == edge[0]) ++row;
    return row;
  }
};

}  // namespace

TEST_F(Viewer, GoesOnWithTheRightArrow) {
  open_green();

  press("Right");

  EXPECT_TRUE(has_title("yellow.png"));
  EXPECT_TRUE(find(kYellow, 100000));
}

TEST_F(Viewer, GoesBackwardsWithTheLeftArrow) {
  open_green();

  press("Left");

  EXPECT_TRUE(has_title("red.png"));
  EXPECT_TRUE(find(kRed, 100000));
}

TEST_F(Viewer, StopsAtTheLastPicture) {
  open_green();
  press("Right");
  ASSERT_TRUE(has_title("yellow.png"));

  press("Right");
  settle();

  EXPECT_EQ(title(), "yellow.png");
}

TEST_F(Viewer, StopsAtTheFirstPicture) {
  open_green();
  press("Left");
  ASSERT_TRUE(has_title("red.png"));

  press("Left");
  settle();

  EXPECT_EQ(title(), "red.png");
}

TEST_F(Viewer, GoesToTheEndsWithHomeAndEnd) {
  open_green();

  press("End");
  EXPECT_TRUE(has_title("yellow.png"));

  press("Home");
  EXPECT_TRUE(has_title("red.png"));
}

TEST_F(Viewer, GoesOnByAClickOnTheRight) {
  open_green();

  click(420, 400);

  EXPECT_TRUE(has_title("yellow.png"));
}

TEST_F(Viewer, GoesBackwardsByAClickOnTheLeft) {
  open_green();

  click(60, 400);

  EXPECT_TRUE(has_title("red.png"));
}

TEST_F(Viewer, GoesOnByASwipeToTheLeft) {
  open_green();

  swipe(400, 80);

  EXPECT_TRUE(has_title("yellow.png"));
}

TEST_F(Viewer, GoesBackwardsByASwipeToTheRight) {
  open_green();

  swipe(80, 400);

  EXPECT_TRUE(has_title("red.png"));
}

TEST_F(Viewer, ShowsBothPicturesWhileAFingerMovesThem) {
  open_green();

  hold(400, 200);

  EXPECT_TRUE(find(kGreen, 20000));
  EXPECT_TRUE(find(kYellow, 20000));
}

TEST_F(Viewer, ClosesWithEscape) {
  open_green();

  press("Escape");

  EXPECT_TRUE(has_title("All pictures"));
  EXPECT_TRUE(find(kRed));
}

TEST_F(Viewer, ClosesWithAltAndTheLeftArrow) {
  open_green();

  press("alt+Left");

  EXPECT_TRUE(has_title("All pictures"));
}

TEST_F(Viewer, ClosesWithBackspace) {
  open_green();

  press("BackSpace");

  EXPECT_TRUE(has_title("All pictures"));
}

TEST_F(Viewer, ClosesWithTheButtonInTheTitle) {
  open_green();

  click(28, 30);

  EXPECT_TRUE(has_title("All pictures"));
}

TEST_F(Viewer, LeavesTheCursorOnTheLastPictureThatWasLookedAt) {
  open_green();
  press("Right");
  ASSERT_TRUE(has_title("yellow.png"));
  press("Escape");
  ASSERT_TRUE(has_title("All pictures"));

  press("Return");

  EXPECT_TRUE(has_title("yellow.png"));
}

TEST_F(Viewer, LeavesTheTitleBarAsHighAsItWas) {
  add_picture("red.png", kRed);
  start();
  ASSERT_TRUE(find(kRed));
  settle();
  const int before = title_height();

  press("Return");
  ASSERT_TRUE(find(kRed, 100000));
  settle();

  EXPECT_EQ(title_height(), before);
}

TEST_F(Viewer, TakesTheWholeScreenWithF11) {
  open_green();
  const auto before = find(kGreen, 100000);
  ASSERT_TRUE(before);

  press("F11");

  // Without the bars the picture moves to the middle of the screen.
  EXPECT_TRUE(eventually([&] {
    const auto now = find(kGreen, 100000);
    return now && now->top + now->bottom >= 798 && now->top + now->bottom <= 800;
  }));
}

TEST_F(Viewer, GivesTheScreenBackWithEscape) {
  open_green();
  const auto before = find(kGreen, 100000);
  press("f");
  settle();

  press("Escape");

  EXPECT_TRUE(eventually([&] {
    const auto now = find(kGreen, 100000);
    // A preview may be a pixel larger than its picture.
    return before && now && std::abs(now->top - before->top) <= 2;
  }));
  EXPECT_EQ(title(), "green.png");
}

TEST_F(Viewer, ShowsOnePictureAfterAnotherFromSpaceOn) {
  open_green();

  press("space");

  EXPECT_TRUE(has_title("yellow.png"));
  EXPECT_TRUE(has_title("red.png"));
}

TEST_F(Viewer, EndsTheSlideshowWithEscape) {
  open_green();
  press("space");
  settle();

  press("Escape");
  settle();

  EXPECT_EQ(title(), "green.png");
  press("Escape");
  EXPECT_TRUE(has_title("All pictures"));
}

TEST_F(Viewer, SaysThatThePictureIsNoLongerThere) {
  open_green();

  unlink(library_.path("green.png").c_str());

  EXPECT_TRUE(is_gone(kGreen));
  EXPECT_EQ(title(), "green.png");
}

TEST_F(Viewer, GoesOnFromAPictureThatIsNoLongerThere) {
  open_green();
  unlink(library_.path("green.png").c_str());
  ASSERT_TRUE(is_gone(kGreen));

  press("Right");

  EXPECT_TRUE(has_title("yellow.png"));
}

TEST_F(Viewer, GoesBackwardsFromAPictureThatIsNoLongerThere) {
  open_green();
  unlink(library_.path("green.png").c_str());
  ASSERT_TRUE(is_gone(kGreen));

  press("Left");

  EXPECT_TRUE(has_title("red.png"));
}

TEST_F(Viewer, OpensTheFileOfTheCommandLine) {
  add_picture("red.png", kRed);
  const std::string green = add_picture("green.png", kGreen);

  start({green});

  EXPECT_TRUE(has_title("green.png"));
  EXPECT_TRUE(find(kGreen, 100000));
}

TEST_F(Viewer, DoesNotEnlargeASmallPicture) {
  add_picture("small.png", kRed, 40, 30);
  start();
  ASSERT_TRUE(find(kRed, 1000));

  press("Return");

  ASSERT_TRUE(has_title("small.png"));
  EXPECT_TRUE(eventually([this] {
    const auto red = find(kRed, 1000);
    return red && red->right - red->left == 39 && red->bottom - red->top == 29;
  }));
}

TEST_F(Viewer, ShowsThePictureThatTookThePlaceOfTheOneInView) {
  open_green();

  support::save_picture(library_.path("green.png"), 600, 400, kPink);

  EXPECT_TRUE(find(kPink, 100000));
  EXPECT_EQ(title(), "green.png");
}

namespace {

struct Name {
  const char *what;
  std::string bytes;
  std::string title;
};

class Named : public gallery_test::Browsing, public testing::WithParamInterface<Name> {};

}  // namespace

TEST_P(Named, APictureIsListedAndShown) {
  add_picture(GetParam().bytes, kRed);
  start();
  ASSERT_TRUE(find(kRed));

  press("Return");

  EXPECT_TRUE(has_title(GetParam().title));
  EXPECT_TRUE(find(kRed, 100000));
}

INSTANTIATE_TEST_SUITE_P(
    Viewer, Named,
    testing::Values(Name{"Spaces", " two  words .png", " two  words .png"},
                    Name{"Quotes", "it's \"so\" `far`.png", "it's \"so\" `far`.png"},
                    Name{"Shell", "$(touch x);&|*?.png", "$(touch x);&|*?.png"},
                    Name{"Markup", "<b>&amp;%s.png", "<b>&amp;%s.png"},
                    Name{"Newline", "two\nlines.png", "two\xef\xbf\xbdlines.png"},
                    Name{"Bytes", "a\xff.png", "a\xef\xbf\xbd.png"},
                    Name{"Longest", std::string(251, 'n') + ".png",
                         std::string(251, 'n') + ".png"}),
    [](const auto &named) { return std::string(named.param.what); });

TEST_F(Viewer, HandsAVideoToTheSystemsPlayer) {
  const support::TempDir tools;
  const std::string player =
      tools.write("xdg-open", "#!/bin/sh\nprintf '%s' \"$1\" > '" + tools.path("played") + "'\n");
  chmod(player.c_str(), 0700);
  g_setenv("PATH", (tools.path() + ":" + g_getenv("PATH")).c_str(), TRUE);
  const std::string film = add_file("film.mp4", std::string("\0\0\0\x18"
                                                            "ftypmp42\0\0\0\0mp42isom",
                                                            24));
  start();
  ASSERT_TRUE(eventually([this] {
    press("Return");
    return title() == "film.mp4";
  }));

  press("Return");

  EXPECT_TRUE(eventually([&] { return support::exists(tools.path("played")); }));
  EXPECT_TRUE(eventually([&] { return support::read_file(tools.path("played")) == film; }));
}

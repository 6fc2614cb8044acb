#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "app/browsing.hpp"

using gallery_test::eventually;
using gallery_test::kGreen;
using gallery_test::kRed;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// The grey of the drawing on a page that has nothing to list.
constexpr support::Rgba kDrawingGrey{106, 112, 124};

class Trouble : public gallery_test::Browsing {
 protected:
  /// Starts the gallery and opens the newest picture, a red one.
  void open_red() {
    start();
    ASSERT_TRUE(find(kGreen));
    press("Return");
    ASSERT_TRUE(has_title("red.png"));
  }
};

}  // namespace

TEST_F(Trouble, AnEmptyFolderGivesAPageThatSaysSo) {
  start();

  EXPECT_TRUE(find(kDrawingGrey, 300));
  EXPECT_TRUE(has_title("All pictures"));
  EXPECT_THAT(stop(), IsEmpty());
}

TEST_F(Trouble, AnEmptyFolderFillsWhenAPictureComes) {
  start();
  ASSERT_TRUE(find(kDrawingGrey, 300));

  support::save_picture(library_.path("red.png"), 600, 400, kRed);

  EXPECT_TRUE(find(kRed));
  // Letters have edges of about that grey.
  constexpr GdkRectangle kDrawing{150, 300, 180, 100};
  EXPECT_TRUE(eventually([&] { return look_within(kDrawing, kDrawingGrey).pixels == 0; }));
}

TEST_F(Trouble, AFolderThatIsNotThereGivesAPageAndASentence) {
  start({"/nonexistent/pictures"});

  EXPECT_TRUE(find(kDrawingGrey, 300));
  EXPECT_EQ(stop(),
            "photobrowser: /nonexistent/pictures cannot be read: No such file or directory.\n");
}

TEST_F(Trouble, OneFolderOfTwoIsEnough) {
  add_picture("red.png", kRed);

  start({"/nonexistent/pictures", library_.path()});

  EXPECT_TRUE(find(kRed));
}

TEST_F(Trouble, AFileThatIsNoPictureIsNamed) {
  add_picture("red.png", kRed);
  const std::string text = add_file("notes.txt", "nothing to see");

  start({text});

  EXPECT_TRUE(find(kRed));
  EXPECT_TRUE(eventually([this] { return title() == "All pictures"; }));
  settle();
  EXPECT_EQ(stop(), "photobrowser: notes.txt is neither a picture nor a video.\n");
}

TEST_F(Trouble, ABrokenPictureIsPassedLikeAnyOther) {
  add_picture("red.png", kRed);
  add_file("broken.jpg", "\xff\xd8\xff\xe0 this is no picture");
  add_picture("green.png", kGreen);
  ASSERT_NO_FATAL_FAILURE(open_red());

  press("Right");
  ASSERT_TRUE(has_title("broken.jpg"));
  ASSERT_TRUE(find(kDrawingGrey, 100));
  press("Right");

  EXPECT_TRUE(has_title("green.png"));
  EXPECT_TRUE(find(kGreen, 100000));
  EXPECT_THAT(stop(), IsEmpty());
}

TEST_F(Trouble, APictureThatClaimsAHugeSizeIsPassedLikeAnyOther) {
  add_picture("red.png", kRed);
  std::string bytes = support::read_file(library_.path("red.png"));
  bytes.replace(16, 8, std::string("\0\1\x86\xa0\0\1\x86\xa0", 8));  // 100000 x 100000
  add_file("huge.png", bytes);
  add_picture("green.png", kGreen);
  ASSERT_NO_FATAL_FAILURE(open_red());

  press("Right");
  ASSERT_TRUE(has_title("huge.png"));
  press("Right");

  EXPECT_TRUE(has_title("green.png"));
}

TEST_F(Trouble, AnEmptyFileIsPassedLikeAnyOther) {
  add_picture("red.png", kRed);
  add_file("empty.jpg", "");
  add_picture("green.png", kGreen);
  ASSERT_NO_FATAL_FAILURE(open_red());

  press("Right");
  ASSERT_TRUE(has_title("empty.jpg"));
  ASSERT_TRUE(find(kDrawingGrey, 100));
  press("Right");

  EXPECT_TRUE(has_title("green.png"));
}

TEST_F(Trouble, APictureThatIsCutOffIsPassedLikeAnyOther) {
  const std::string whole = add_picture("red.png", kRed);
  const std::string bytes = support::read_file(whole);
  add_file("cut.png", bytes.substr(0, bytes.size() / 2));
  add_picture("green.png", kGreen);
  ASSERT_NO_FATAL_FAILURE(open_red());

  press("Right");
  ASSERT_TRUE(has_title("cut.png"));
  settle();
  press("Right");

  EXPECT_TRUE(has_title("green.png"));
  EXPECT_THAT(stop(), IsEmpty());
}

TEST_F(Trouble, FilesThatCannotBeShownStayAsTheyAre) {
  const std::string whole = add_picture("red.png", kRed);
  const std::string bytes = support::read_file(whole);
  const std::string cut = add_file("cut.png", bytes.substr(0, bytes.size() / 2));
  const std::string empty = add_file("empty.jpg", "");
  start();
  ASSERT_TRUE(find(kRed));
  press("Return");
  ASSERT_TRUE(has_title("red.png"));

  press("Right");
  ASSERT_TRUE(has_title("cut.png"));
  settle();
  press("Right");
  ASSERT_TRUE(has_title("empty.jpg"));
  settle();
  stop();

  EXPECT_EQ(support::read_file(whole), bytes);
  EXPECT_EQ(support::read_file(cut), bytes.substr(0, bytes.size() / 2));
  EXPECT_EQ(support::read_file(empty), "");
}

TEST_F(Trouble, ALinkThatLeadsInACircleDoesNoHarm) {
  add_picture("red.png", kRed);
  ASSERT_EQ(symlink(library_.path().c_str(), library_.path("again").c_str()), 0);

  start();

  EXPECT_TRUE(find(kRed));
  settle();
  EXPECT_THAT(stop(), IsEmpty());
}

TEST_F(Trouble, AFolderThatGoesAwayLeavesThePage) {
  add_picture("Beach/red.png", kRed);
  start();
  ASSERT_TRUE(find(kRed));

  unlink(library_.path("Beach/red.png").c_str());
  rmdir(library_.path("Beach").c_str());

  EXPECT_TRUE(find(kDrawingGrey, 300));
}

/// What the scanner finds, and what it leaves alone.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>

#include "file-bytes.hpp"
#include "library.hpp"

namespace {

using test::Library;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class Scan : public support::GlibTest {
 protected:
  Library library_;
};

TEST_F(Scan, FindsPicturesAndVideosInAllFolders) {
  library_.add("a.jpg");
  library_.add("trip/b.JPG");
  library_.add("trip/day/c.jpeg");
  library_.write("film.mp4", test::mp4_of({.width = 640, .height = 480}));

  library_.start();

  EXPECT_THAT(library_.list(0), ElementsAre("a.jpg", "trip/b.JPG", "trip/day/c.jpeg", "film.mp4"));
}

TEST_F(Scan, LeavesOtherFilesAlone) {
  library_.add("a.jpg");
  library_.write("notes.txt", "text");
  library_.write("noextension", test::camera_jpeg());

  library_.start();

  EXPECT_THAT(library_.list(), ElementsAre("a.jpg"));
}

TEST_F(Scan, SkipsHiddenFilesAndFolders) {
  library_.add("a.jpg");
  library_.add(".b.jpg");
  library_.add(".thumbnails/c.jpg");

  library_.start();

  EXPECT_THAT(library_.list(), ElementsAre("a.jpg"));
}

TEST_F(Scan, SkipsFoldersWithNomediaAndAllBelow) {
  library_.add("a.jpg");
  library_.add("app/b.jpg");
  library_.add("app/deep/c.jpg");
  library_.write("app/.nomedia", "");

  library_.start();

  EXPECT_THAT(library_.list(), ElementsAre("a.jpg"));
}

TEST_F(Scan, ListsARootThatIsHiddenItself) {
  library_.add(".mine/a.jpg");
  const std::string root = library_.path(".mine");
  const gchar *roots[] = {root.c_str()};

  ASSERT_TRUE(media_index_start(roots, 1, nullptr));

  EXPECT_TRUE(test::run_until([] { return Library::count() == 1; }));
}

TEST_F(Scan, NeverFollowsLinks) {
  library_.add("real/a.jpg");
  const support::TempDir outside;
  outside.write("b.jpg", test::camera_jpeg());
  ASSERT_EQ(symlink(outside.path().c_str(), library_.path("linked").c_str()), 0);
  ASSERT_EQ(symlink(outside.path("b.jpg").c_str(), library_.path("b.jpg").c_str()), 0);
  ASSERT_EQ(symlink("nowhere", library_.path("dangling.jpg").c_str()), 0);
  ASSERT_EQ(symlink("dangling.jpg", library_.path("dangling.jpg2").c_str()), 0);

  library_.start();

  EXPECT_THAT(library_.list(), ElementsAre("real/a.jpg"));
  EXPECT_EQ(Library::progress().problems, 0u);
}

TEST_F(Scan, SurvivesLinksThatLoop) {
  library_.add("real/a.jpg");
  ASSERT_EQ(symlink("..", library_.path("real/up").c_str()), 0);
  ASSERT_EQ(symlink("self", library_.path("self").c_str()), 0);
  ASSERT_EQ(symlink(library_.path("").c_str(), library_.path("real/top").c_str()), 0);

  library_.start();

  EXPECT_THAT(library_.list(), ElementsAre("real/a.jpg"));
}

TEST_F(Scan, FollowsALinkThatIsTheRootItself) {
  library_.add("real/a.jpg");
  ASSERT_EQ(symlink("real", library_.path("root").c_str()), 0);
  const std::string root = library_.path("root");
  const gchar *roots[] = {root.c_str()};

  ASSERT_TRUE(media_index_start(roots, 1, nullptr));

  EXPECT_TRUE(test::run_until(
      [this] { return library_.list() == std::vector<std::string>{"root/a.jpg"}; }));
}

TEST_F(Scan, ListsAFileOnceUnderNestedRoots) {
  library_.add("sub/a.jpg");
  const std::string outer = library_.path("");
  const std::string inner = library_.path("sub");
  const gchar *roots[] = {inner.c_str(), outer.c_str(), outer.c_str()};

  ASSERT_TRUE(media_index_start(roots, 3, nullptr));
  ASSERT_TRUE(test::run_until(
      [this] { return (library_.take_changes() & MEDIA_INDEX_SCAN_FINISHED) != 0; }));

  EXPECT_THAT(library_.list(), ElementsAre("sub/a.jpg"));
}

TEST_F(Scan, IsNotHeldUpByPipes) {
  library_.add("a.jpg");
  ASSERT_EQ(mkfifo(library_.path("pipe.jpg").c_str(), 0600), 0);

  library_.start();

  EXPECT_THAT(library_.list(), ElementsAre("a.jpg"));
}

TEST_F(Scan, TakesNamesAsBytes) {
  const std::vector<std::string> names{"with space.jpg", "quote\".jpg",  "single'.jpg",
                                       "new\nline.jpg",  "\xff\xfe.jpg", "percent%s.jpg",
                                       "-rf.jpg",        "*.jpg",        "\u00e9.jpg",
                                       "a;b.jpg",        "$(x).jpg"};
  for (const std::string &name : names) library_.add(name);

  library_.start();

  EXPECT_THAT(library_.list(), testing::UnorderedElementsAreArray(names));
  for (const std::string &name : names) EXPECT_NE(library_.id_of(name), 0) << name;
}

TEST_F(Scan, TakesANameOf255Bytes) {
  const support::TempDir dir;
  // The folder's path and the name together must fit a record, so the folder is a short one.
  const std::string name = std::string(251, 'n') + ".jpg";
  char folder[] = "/tmp/pXXXXXX";
  ASSERT_NE(mkdtemp(folder), nullptr);
  const std::string path = std::string(folder) + "/" + name;
  const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  ASSERT_GE(fd, 0);
  close(fd);
  const gchar *roots[] = {folder};

  ASSERT_TRUE(media_index_start(roots, 1, nullptr));
  const bool found = test::run_until([] { return Library::count() == 1; });
  const gint id = media_index_get_id_by_path(path.c_str());

  EXPECT_TRUE(found);
  EXPECT_NE(id, 0);
  unlink(path.c_str());
  rmdir(folder);
}

TEST_F(Scan, ReportsAPathThatDoesNotFitARecord) {
  library_.add("a.jpg");
  const std::string folder(150, 'f');
  library_.add(folder + "/" + std::string(200, 'n') + ".jpg");
  library_.add(folder + "/b.jpg");

  library_.start();

  EXPECT_THAT(library_.list(0), ElementsAre("a.jpg", folder + "/b.jpg"));
  EXPECT_EQ(Library::progress().problems, 1u);
  EXPECT_THAT(Library::progress().problem, HasSubstr("is too long for the list of pictures."));
}

TEST_F(Scan, ReportsAFolderThatDoesNotFitARecord) {
  library_.add("a.jpg");
  library_.add(std::string(140, 'f') + "/" + std::string(140, 'g') + "/b.jpg");

  library_.start();

  EXPECT_THAT(library_.list(0), ElementsAre("a.jpg"));
  EXPECT_EQ(Library::progress().problems, 1u);
}

TEST_F(Scan, ReportsARootThatIsNotThere) {
  const std::string root = library_.path("missing");
  const gchar *roots[] = {root.c_str()};

  ASSERT_TRUE(media_index_start(roots, 1, nullptr));
  ASSERT_TRUE(test::run_until(
      [this] { return (library_.take_changes() & MEDIA_INDEX_SCAN_FINISHED) != 0; }));

  EXPECT_STREQ(
      Library::progress().problem,
      ("The folder \u201c" + root + "\u201d cannot be read: No such file or directory.").c_str());
}

TEST_F(Scan, ListsBrokenPicturesForTheirPlaceholders) {
  library_.write("empty.jpg", "");
  library_.write("text.png", "no picture");
  library_.write("bomb.png", test::png_start(100'000, 100'000));

  library_.start();

  EXPECT_THAT(library_.list(0), ElementsAre("bomb.png", "empty.jpg", "text.png"));
}

TEST_F(Scan, TellsTheKindByTheContent) {
  library_.write("film.jpg", test::mp4_of({.width = 640, .height = 480}));
  library_.write("picture.mp4", test::camera_jpeg());
  library_.write("unknown.mkv", "");

  library_.start();

  EXPECT_THAT(library_.list(0, 1), ElementsAre("picture.mp4"));
  EXPECT_THAT(library_.list(0, 2), ElementsAre("film.jpg", "unknown.mkv"));
}

TEST_F(Scan, CountsWhatItHasSeen) {
  library_.add("a.jpg");
  library_.add("b.jpg");
  library_.write("c.txt", "");

  library_.start();

  EXPECT_EQ(Library::progress().media_files, 2u);
  EXPECT_EQ(Library::progress().files_seen, 3u);
  EXPECT_FALSE(Library::progress().running);
}

TEST_F(Scan, FinishesWithoutAnyRoot) {
  ASSERT_TRUE(media_index_start(nullptr, 0, nullptr));

  EXPECT_TRUE(test::run_until(
      [this] { return (library_.take_changes() & MEDIA_INDEX_SCAN_FINISHED) != 0; }));
  EXPECT_EQ(Library::count(), 0);
}

// Dates. The chain is: in the picture, in the film, in the name, of the file.

constexpr gint64 kMtime = 1'600'000'000;

TEST_F(Scan, PrefersTheDateInThePicture) {
  test::set_mtime(
      library_.write("IMG_20200101_000000.jpg", test::camera_jpeg("2024:05:17 18:30:01", "+02:00")),
      kMtime);
  library_.add("before.jpg", 1715963400);
  library_.add("after.jpg", 1715963402);

  library_.start();

  EXPECT_THAT(library_.list(2), ElementsAre("before.jpg", "IMG_20200101_000000.jpg", "after.jpg"));
}

TEST_F(Scan, ReadsTheDateInAFilm) {
  constexpr guint64 k1904 = 2'082'844'800;
  test::set_mtime(
      library_.write(
          "a.mp4",
          test::mp4_of({.created_1904 = k1904 + 1'500'000'000, .width = 640, .height = 480})),
      kMtime);
  library_.add("before.jpg", 1'499'999'999);
  library_.add("after.jpg", 1'500'000'001);

  library_.start();

  EXPECT_THAT(library_.list(2), ElementsAre("before.jpg", "a.mp4", "after.jpg"));
}

TEST_F(Scan, FallsBackToTheDateInTheName) {
  std::tm parts{.tm_sec = 12,
                .tm_min = 11,
                .tm_hour = 10,
                .tm_mday = 2,
                .tm_mon = 0,
                .tm_year = 123,
                .tm_isdst = -1};
  const gint64 named = mktime(&parts);
  library_.add("IMG_20230102_101112.jpg", kMtime);
  library_.add("before.jpg", named - 1);
  library_.add("after.jpg", named + 1);

  library_.start();

  EXPECT_THAT(library_.list(2), ElementsAre("before.jpg", "IMG_20230102_101112.jpg", "after.jpg"));
}

TEST_F(Scan, FallsBackToTheTimeOfChange) {
  library_.add("b.jpg", 2);
  library_.add("a.jpg", 3);
  library_.add("c.jpg", 1);

  library_.start();

  EXPECT_THAT(library_.list(2), ElementsAre("c.jpg", "b.jpg", "a.jpg"));
}

}  // namespace

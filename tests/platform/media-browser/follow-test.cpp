/// What happens to ids and lists when files change, while the index is open and while it is not.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "file-bytes.hpp"
#include "library.hpp"

namespace {

using test::Library;
using testing::ElementsAre;

/// Each change is followed in three ways: noticed while the index is open, found by a scan of
/// everything, and found at the next start.
enum class Way { kNoticed, kScanned, kAtStart };

class Follow : public support::GlibTest, public testing::WithParamInterface<Way> {
 protected:
  void before() {
    library_.start();
    if (GetParam() == Way::kAtStart) library_.stop();
  }
  /// Lets the index see what has changed; the list by name is then this.
  void after(const std::vector<std::string> &names) {
    if (GetParam() == Way::kScanned) library_.rescan();
    if (GetParam() == Way::kAtStart) library_.start();
    EXPECT_TRUE(library_.becomes(names));
  }
  void move(const char *from, const char *to) {
    ASSERT_EQ(rename(library_.path(from).c_str(), library_.path(to).c_str()), 0);
  }

  Library library_;
};

std::string name_of(const testing::TestParamInfo<Way> &way) {
  constexpr const char *kNames[] = {"Noticed", "Scanned", "AtStart"};
  return kNames[static_cast<int>(way.param)];
}

INSTANTIATE_TEST_SUITE_P(Ways, Follow, testing::Values(Way::kNoticed, Way::kScanned, Way::kAtStart),
                         name_of);

TEST_P(Follow, AddsANewFile) {
  library_.add("a.jpg");
  before();

  library_.add("b.jpg");

  after({"a.jpg", "b.jpg"});
}

TEST_P(Follow, AddsANewFolder) {
  library_.add("a.jpg");
  before();

  library_.add("new/deep/b.jpg");

  after({"a.jpg", "new/deep/b.jpg"});
}

TEST_P(Follow, DropsARemovedFile) {
  library_.add("a.jpg");
  library_.add("b.jpg");
  before();

  unlink(library_.path("a.jpg").c_str());

  after({"b.jpg"});
}

TEST_P(Follow, DropsARemovedFolder) {
  library_.add("a.jpg");
  library_.add("x/y/b.jpg");
  before();

  unlink(library_.path("x/y/b.jpg").c_str());
  rmdir(library_.path("x/y").c_str());
  rmdir(library_.path("x").c_str());

  after({"a.jpg"});
}

TEST_P(Follow, KeepsTheIdOfARenamedFile) {
  library_.add("a.jpg");
  library_.start();
  const gint id = library_.id_of("a.jpg");
  before();

  move("a.jpg", "b.jpg");

  after({"b.jpg"});
  EXPECT_EQ(library_.id_of("b.jpg"), id);
}

TEST_P(Follow, KeepsTheIdOfAFileMovedToAnotherFolder) {
  library_.add("z/a.jpg");
  library_.add("b/other.jpg");
  library_.start();
  const gint id = library_.id_of("z/a.jpg");
  before();

  move("z/a.jpg", "b/a.jpg");

  after({"b/a.jpg", "b/other.jpg"});
  EXPECT_EQ(library_.id_of("b/a.jpg"), id);
}

TEST_P(Follow, KeepsTheIdOfAFileMovedToALaterFolder) {
  library_.add("b/a.jpg");
  library_.add("z/other.jpg");
  library_.start();
  const gint id = library_.id_of("b/a.jpg");
  before();

  move("b/a.jpg", "z/a.jpg");

  after({"z/a.jpg", "z/other.jpg"});
  EXPECT_EQ(library_.id_of("z/a.jpg"), id);
}

TEST_P(Follow, KeepsIdsAndAlbumOfARenamedFolder) {
  library_.add("old/a.jpg");
  library_.add("old/deep/b.jpg");
  library_.start();
  const gint a = library_.id_of("old/a.jpg");
  const gint b = library_.id_of("old/deep/b.jpg");
  const gint album = Library::album_id("old");
  before();

  move("old", "new");

  after({"new/a.jpg", "new/deep/b.jpg"});
  EXPECT_EQ(library_.id_of("new/a.jpg"), a);
  EXPECT_EQ(library_.id_of("new/deep/b.jpg"), b);
  EXPECT_EQ(Library::album_id("new"), album);
}

TEST_P(Follow, ChangesTheClassWithTheFolder) {
  library_.add("camera/a.jpg");
  before();

  move("camera", "DCIM");

  after({"DCIM/a.jpg"});
  EXPECT_EQ(Library::count(0x13), 1);
  EXPECT_THAT(library_.list(3, 0x13), ElementsAre("DCIM/a.jpg"));
}

TEST_P(Follow, KeepsIdsWhenTwoFilesSwapNames) {
  library_.write("a.jpg", test::camera_jpeg() + "1");
  library_.write("b.jpg", test::camera_jpeg() + "22");
  library_.start();
  const gint a = library_.id_of("a.jpg");
  const gint b = library_.id_of("b.jpg");
  before();

  move("a.jpg", "t.jpg");
  move("b.jpg", "a.jpg");
  move("t.jpg", "b.jpg");

  after({"a.jpg", "b.jpg"});
  EXPECT_TRUE(test::run_until([&] { return library_.id_of("a.jpg") == b; }));
  EXPECT_EQ(library_.id_of("b.jpg"), a);
}

TEST_P(Follow, KeepsIdsWhenTwoFoldersSwapNames) {
  library_.add("x/a.jpg");
  library_.add("y/b.jpg");
  library_.start();
  const gint x = Library::album_id("x");
  const gint y = Library::album_id("y");
  const gint a = library_.id_of("x/a.jpg");
  before();

  move("x", "t");
  move("y", "x");
  move("t", "y");

  after({"y/a.jpg", "x/b.jpg"});
  EXPECT_EQ(library_.id_of("y/a.jpg"), a);
  EXPECT_EQ(Library::album_id("y"), x);
  EXPECT_EQ(Library::album_id("x"), y);
}

TEST_P(Follow, KeepsTheIdOfAFileThatAProgramSaved) {
  library_.add("a.jpg", 100);
  library_.add("b.jpg", 200);
  library_.start();
  const gint id = library_.id_of("a.jpg");
  before();

  // A new file takes the old one's name.
  library_.write("saved.tmp", test::camera_jpeg("2030:01:01 00:00:00"));
  move("saved.tmp", "a.jpg");

  after({"a.jpg", "b.jpg"});
  EXPECT_TRUE(test::run_until([&] { return library_.list(3).front() == "a.jpg"; }));
  EXPECT_EQ(library_.id_of("a.jpg"), id);
}

TEST_P(Follow, GivesAMovedFileItsIdOverTheOneItReplaces) {
  library_.write("a.jpg", test::camera_jpeg() + "1");
  library_.write("b.jpg", test::camera_jpeg() + "22");
  library_.start();
  const gint a = library_.id_of("a.jpg");
  const gint b = library_.id_of("b.jpg");
  before();

  move("a.jpg", "b.jpg");

  after({"b.jpg"});
  EXPECT_EQ(library_.id_of("b.jpg"), a);
  FmFileRecord gone;
  EXPECT_TRUE(fm_svc_mb_get_item_by_database_index(b, &gone, nullptr));
  EXPECT_EQ(gone.item.id, 0);
}

TEST_P(Follow, ReordersATouchedFile) {
  library_.add("a.jpg", 100);
  library_.add("b.jpg", 200);
  library_.start();
  const gint id = library_.id_of("a.jpg");
  before();

  test::set_mtime(library_.path("a.jpg"), 300);

  after({"a.jpg", "b.jpg"});
  EXPECT_TRUE(test::run_until([&] { return library_.list(3).front() == "a.jpg"; }));
  EXPECT_EQ(library_.id_of("a.jpg"), id);
}

TEST_P(Follow, ListsAHardLinkAsAnotherPicture) {
  library_.add("a.jpg");
  library_.start();
  const gint id = library_.id_of("a.jpg");
  before();

  ASSERT_EQ(link(library_.path("a.jpg").c_str(), library_.path("b.jpg").c_str()), 0);

  after({"a.jpg", "b.jpg"});
  EXPECT_EQ(library_.id_of("a.jpg"), id);
  EXPECT_NE(library_.id_of("b.jpg"), id);
}

TEST_P(Follow, DropsAFileThatBecomesALink) {
  library_.add("a.jpg");
  library_.add("b.jpg");
  before();

  unlink(library_.path("a.jpg").c_str());
  ASSERT_EQ(symlink("b.jpg", library_.path("a.jpg").c_str()), 0);

  after({"b.jpg"});
}

TEST_P(Follow, DropsAFolderThatIsHiddenNow) {
  library_.add("a.jpg");
  library_.add("x/b.jpg");
  library_.add("x/deep/c.jpg");
  before();

  library_.write("x/.nomedia", "");

  after({"a.jpg"});
}

TEST_P(Follow, ListsAFolderThatIsNotHiddenAnyMore) {
  library_.add("a.jpg");
  library_.add("x/b.jpg");
  library_.write("x/.nomedia", "");
  before();

  unlink(library_.path("x/.nomedia").c_str());

  after({"a.jpg", "x/b.jpg"});
}

TEST_P(Follow, GivesAFileOfAnOldNameAnIdOfItsOwn) {
  library_.write("a.jpg", test::camera_jpeg() + "1");
  library_.start();
  const gint id = library_.id_of("a.jpg");
  unlink(library_.path("a.jpg").c_str());
  library_.rescan();
  before();

  library_.write("a.jpg", test::camera_jpeg() + "another");

  after({"a.jpg"});
  EXPECT_NE(library_.id_of("a.jpg"), id);
}

TEST_P(Follow, FindsAFileThatIsWrittenSlowly) {
  library_.add("a.jpg", 5);
  before();

  const std::string bytes = test::camera_jpeg("2030:01:01 00:00:00");
  const int fd = open(library_.path("b.jpg").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  ASSERT_EQ(write(fd, bytes.data(), 10), 10);
  if (GetParam() != Way::kNoticed) close(dup(fd));
  ASSERT_GT(write(fd, bytes.data() + 10, bytes.size() - 10), 0);
  close(fd);

  after({"a.jpg", "b.jpg"});
  EXPECT_TRUE(test::run_until([&] { return library_.list(3).front() == "b.jpg"; }));
}

class Restart : public support::GlibTest {
 protected:
  Library library_;
};

TEST_F(Restart, KeepsIds) {
  library_.add("a.jpg");
  library_.add("b.jpg");
  library_.start();
  const gint a = library_.id_of("a.jpg");
  library_.stop();

  library_.begin();

  EXPECT_EQ(library_.id_of("a.jpg"), a);
}

TEST_F(Restart, NeverGivesAnIdTwice) {
  library_.add("a.jpg");
  library_.start();
  const gint id = library_.id_of("a.jpg");
  unlink(library_.path("a.jpg").c_str());
  library_.rescan();
  library_.stop();
  library_.write("b.jpg", test::camera_jpeg() + "b");

  library_.start();

  EXPECT_GT(library_.id_of("b.jpg"), id);
}

TEST_F(Restart, OverAnotherFolderNeitherShowsNorDisturbsThisOne) {
  library_.add("a.jpg");
  library_.start();
  const gint id = library_.id_of("a.jpg");
  Library other;
  other.write("o.jpg", test::camera_jpeg() + "o");

  other.start();
  const std::vector<std::string> others = other.list();
  library_.start();

  EXPECT_THAT(others, ElementsAre("o.jpg"));
  EXPECT_THAT(library_.list(), ElementsAre("a.jpg"));
  EXPECT_EQ(library_.id_of("a.jpg"), id);
}

TEST_F(Restart, OpensTheSameIndexForTheSameRootsInAnyOrder) {
  library_.add("x/a.jpg");
  library_.add("y/b.jpg");
  const std::string x = library_.path("x");
  const std::string y = library_.path("y") + "/";
  const gchar *roots[] = {x.c_str(), y.c_str()};
  const gchar *swapped[] = {y.c_str(), x.c_str()};
  ASSERT_TRUE(media_index_start(roots, 2, nullptr));
  ASSERT_TRUE(test::run_until([] { return Library::count() == 2; }));

  ASSERT_TRUE(media_index_start(swapped, 2, nullptr));

  EXPECT_EQ(Library::count(), 2);
}

TEST_F(Restart, StopsTwice) {
  library_.start();

  media_index_stop();
  media_index_stop();

  MediaIndexProgress progress;
  media_index_get_progress(&progress);
  EXPECT_FALSE(progress.running);
  EXPECT_EQ(progress.media_files, 0u);
}

TEST_F(Restart, StopsInTheMiddleOfAScan) {
  for (int at = 0; at < 500; ++at) library_.write(std::to_string(at) + ".jpg", "");

  for (int round = 0; round < 5; ++round) {
    library_.begin();
    g_main_context_iteration(nullptr, FALSE);
    library_.stop();
  }
  library_.start();

  EXPECT_EQ(Library::count(), 500);
}

class Listener : public support::GlibTest {
 protected:
  Library library_;
};

TEST_F(Listener, HearsOfRowsAndOfTheEndOfTheScan) {
  library_.add("a.jpg");
  library_.begin();
  guint heard = 0;

  EXPECT_TRUE(test::run_until([&] {
    heard |= library_.take_changes();
    return (heard & MEDIA_INDEX_SCAN_FINISHED) != 0;
  }));

  EXPECT_NE(heard & MEDIA_INDEX_ROWS_CHANGED, 0u);
  EXPECT_NE(heard & MEDIA_INDEX_PROGRESS, 0u);
}

TEST_F(Listener, HearsNothingMoreOnceItIsRemoved) {
  guint calls = 0;
  const guint id =
      media_index_add_listener([](guint, gpointer data) { ++*static_cast<guint *>(data); }, &calls);

  media_index_remove_listener(id);
  media_index_remove_listener(id);
  media_index_remove_listener(0);
  library_.start();

  EXPECT_NE(id, 0u);
  EXPECT_EQ(calls, 0u);
}

TEST_F(Listener, MayRemoveItselfAndAddAnother) {
  struct Pair {
    guint id = 0;
    guint first = 0;
    guint second = 0;
  } pair;
  pair.id = media_index_add_listener(
      [](guint, gpointer data) {
        auto *self = static_cast<Pair *>(data);
        ++self->first;
        media_index_remove_listener(self->id);
        self->id = media_index_add_listener(
            [](guint, gpointer inner) { ++static_cast<Pair *>(inner)->second; }, self);
      },
      &pair);

  library_.start();
  library_.rescan();

  EXPECT_EQ(pair.first, 1u);
  EXPECT_GT(pair.second, 0u);
  media_index_remove_listener(pair.id);
}

TEST_F(Listener, RefusesNull) {
  EXPECT_EQ(media_index_add_listener(nullptr, nullptr), 0u);
  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("media_index_add_listener: assertion 'callback != nullptr' failed"));
}

}  // namespace

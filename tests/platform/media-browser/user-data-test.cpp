/// What people have said about their files: favourites, marks and web ids.
#include "media-browser/user-data.hpp"

#include <gmock/gmock.h>
#include <media-mirror.h>
#include <unistd.h>

#include "file-bytes.hpp"
#include "library.hpp"
#include "media-browser/index.hpp"

namespace {

using namespace phone::media;
using test::Library;

class UserFiles : public support::GlibTest {
 protected:
  static bool favourite(gint id) {
    FmFileRecord record;
    EXPECT_TRUE(fm_svc_mb_get_item_by_database_index(id, &record, nullptr));
    return (record.item.flags & 1) != 0;
  }
  bool favourite(const char *name) const { return favourite(library_.id_of(name)); }
  void make_favourite(const char *name) {
    ASSERT_TRUE(Index::current()->set_flag(library_.id_of(name), kFavourite, true));
  }
  /// Throws the index away, as after damage: all ids are made anew.
  void lose_index() {
    library_.stop();
    for (const std::string &file : Library::index_files()) unlink(file.c_str());
  }
  void move(const char *from, const char *to) {
    ASSERT_EQ(rename(library_.path(from).c_str(), library_.path(to).c_str()), 0);
  }

  Library library_;
};

TEST_F(UserFiles, ShowAFavouriteAtOnce) {
  library_.add("a.jpg");
  library_.add("b.jpg");
  library_.start();

  make_favourite("b.jpg");

  EXPECT_FALSE(favourite("a.jpg"));
  EXPECT_TRUE(favourite("b.jpg"));
}

TEST_F(UserFiles, ShowAFavouriteInLists) {
  library_.add("a.jpg", 1);
  library_.start();
  for (int at = 0; at < 20; ++at) library_.add("x/" + std::to_string(at) + ".jpg", 100 + at);
  library_.rescan();
  make_favourite("a.jpg");
  Library::count();
  GList *items = nullptr;

  ASSERT_TRUE(fm_svc_mb_get_list("/", 2, 2, 0, 0, &items, 0, 99, nullptr));

  EXPECT_EQ(static_cast<MbItem *>(items->data)->flags, 1u);
  EXPECT_EQ(static_cast<MbItem *>(items->next->data)->flags, 0u);
  fm_svc_mb_glist_free(&items, TRUE);
}

TEST_F(UserFiles, ForgetAFavourite) {
  library_.add("a.jpg");
  library_.start();
  make_favourite("a.jpg");

  ASSERT_TRUE(Index::current()->set_flag(library_.id_of("a.jpg"), kFavourite, false));

  EXPECT_FALSE(favourite("a.jpg"));
}

TEST_F(UserFiles, KeepFavouritesOverARestart) {
  library_.add("a.jpg");
  library_.start();
  make_favourite("a.jpg");

  library_.start();

  EXPECT_TRUE(favourite("a.jpg"));
}

TEST_F(UserFiles, KeepFavouritesWhenTheIndexIsLost) {
  library_.add("a.jpg");
  library_.add("b.jpg");
  library_.start();
  make_favourite("b.jpg");
  lose_index();

  library_.start();

  EXPECT_FALSE(favourite("a.jpg"));
  EXPECT_TRUE(favourite("b.jpg"));
}

TEST_F(UserFiles, KeepFavouritesOfRenamedFilesWhenTheIndexIsLost) {
  library_.add("a.jpg");
  library_.start();
  make_favourite("a.jpg");
  move("a.jpg", "b.jpg");
  library_.rescan();
  lose_index();

  library_.start();

  EXPECT_TRUE(favourite("b.jpg"));
}

TEST_F(UserFiles, KeepFavouritesOfFilesRenamedWithoutAnIndex) {
  library_.add("a.jpg");
  library_.start();
  make_favourite("a.jpg");
  lose_index();
  move("a.jpg", "b.jpg");

  library_.start();

  EXPECT_TRUE(favourite("b.jpg"));
}

TEST_F(UserFiles, KeepFavouritesOfChangedFilesWhenTheIndexIsLost) {
  library_.add("a.jpg");
  library_.start();
  make_favourite("a.jpg");
  library_.write("a.jpg", test::camera_jpeg() + "edited");
  library_.rescan();
  EXPECT_TRUE(favourite("a.jpg"));
  lose_index();

  library_.start();

  EXPECT_TRUE(favourite("a.jpg"));
}

TEST_F(UserFiles, KeepFavouritesOfFilesMovedFromAnotherFileSystem) {
  const std::string old = library_.add("x/a.jpg", 1'600'000'000);
  library_.start();
  make_favourite("x/a.jpg");
  library_.stop();
  // The copy has another inode, but the name, size and time of the file.
  library_.add("y/a.jpg", 1'600'000'000);
  ASSERT_EQ(unlink(old.c_str()), 0);

  library_.start();
  EXPECT_TRUE(favourite("y/a.jpg"));
  lose_index();
  library_.start();

  EXPECT_TRUE(favourite("y/a.jpg"));
}

TEST_F(UserFiles, DoNotPassAFavouriteToACopy) {
  library_.add("x/a.jpg", 1'600'000'000);
  library_.start();
  make_favourite("x/a.jpg");

  library_.add("y/a.jpg", 1'600'000'000);
  library_.rescan();

  EXPECT_TRUE(favourite("x/a.jpg"));
  EXPECT_FALSE(favourite("y/a.jpg"));
}

TEST_F(UserFiles, KeepFavouritesOfFilesRenamedWithoutAnIndexAndChangedLater) {
  library_.add("a.jpg");
  library_.start();
  make_favourite("a.jpg");
  lose_index();
  move("a.jpg", "b.jpg");
  library_.start();
  library_.add("b.jpg", 1'800'000'000);
  library_.rescan();
  lose_index();

  library_.start();

  EXPECT_TRUE(favourite("b.jpg"));
}

TEST_F(UserFiles, KeepFavouritesOfARenamedFolder) {
  library_.add("x/a.jpg");
  library_.start();
  make_favourite("x/a.jpg");
  move("x", "y");
  library_.rescan();
  EXPECT_TRUE(favourite("y/a.jpg"));
  lose_index();

  library_.start();

  EXPECT_TRUE(favourite("y/a.jpg"));
}

TEST_F(UserFiles, KeepFavouritesApartWhenTwoFilesSwapNames) {
  library_.write("a.jpg", test::camera_jpeg() + "1");
  library_.write("b.jpg", test::camera_jpeg() + "22");
  library_.start();
  make_favourite("a.jpg");
  move("a.jpg", "t.jpg");
  move("b.jpg", "a.jpg");
  move("t.jpg", "b.jpg");
  library_.rescan();
  EXPECT_TRUE(favourite("b.jpg"));
  EXPECT_FALSE(favourite("a.jpg"));
  lose_index();

  library_.start();

  EXPECT_TRUE(favourite("b.jpg"));
  EXPECT_FALSE(favourite("a.jpg"));
}

TEST_F(UserFiles, DoNotPassAFavouriteToAnotherPictureOfTheSameName) {
  library_.write("a.jpg", test::camera_jpeg() + "1");
  library_.start();
  make_favourite("a.jpg");
  unlink(library_.path("a.jpg").c_str());
  library_.rescan();
  library_.write("a.jpg", test::camera_jpeg() + "another");
  library_.rescan();
  EXPECT_FALSE(favourite("a.jpg"));
  lose_index();

  library_.start();

  EXPECT_FALSE(favourite("a.jpg"));
}

TEST_F(UserFiles, KnowAFavouriteThatComesBack) {
  library_.add("a.jpg");
  library_.start();
  make_favourite("a.jpg");
  const support::TempDir trash;
  ASSERT_EQ(rename(library_.path("a.jpg").c_str(), trash.path("a.jpg").c_str()), 0);
  library_.rescan();

  ASSERT_EQ(rename(trash.path("a.jpg").c_str(), library_.path("a.jpg").c_str()), 0);
  library_.rescan();

  EXPECT_TRUE(favourite("a.jpg"));
}

TEST_F(UserFiles, AreKnownInTheIndexOfAnotherSetOfRoots) {
  library_.add("x/a.jpg");
  library_.start();
  make_favourite("x/a.jpg");
  const std::string root = library_.path("x");
  const gchar *roots[] = {root.c_str()};

  ASSERT_TRUE(media_index_start(roots, 1, nullptr));
  ASSERT_TRUE(test::run_until([] { return Library::count() == 1; }));

  EXPECT_TRUE(favourite("x/a.jpg"));
}

TEST_F(UserFiles, ThatWereSaidToAnotherIndexMeanwhileAreShown) {
  library_.add("x/a.jpg");
  library_.start();
  const std::string root = library_.path("x");
  const gchar *roots[] = {root.c_str()};
  ASSERT_TRUE(media_index_start(roots, 1, nullptr));
  ASSERT_TRUE(test::run_until([] { return Library::count() == 1; }));
  make_favourite("x/a.jpg");

  library_.start();

  EXPECT_TRUE(favourite("x/a.jpg"));
}

TEST_F(UserFiles, CarryTheMark) {
  library_.add("a.jpg");
  library_.start();
  const gint id = library_.id_of("a.jpg");

  ASSERT_TRUE(Index::current()->set_flag(id, kMarked, true));
  FmFileRecord record;
  fm_svc_mb_get_item_by_database_index(id, &record, nullptr);

  EXPECT_EQ(record.item.unmarked, 0u);
  EXPECT_EQ(record.item.flags, 0u);
}

TEST_F(UserFiles, CarryTheWebId) {
  library_.add("a.jpg");
  library_.start();
  const gint id = library_.id_of("a.jpg");

  ASSERT_TRUE(fm_svc_vesk_update_nfid_of_file(id, 0x500000007, nullptr));
  FmMediaRecord record;
  fm_svc_mb_get_record_by_index(id, &record, nullptr);
  const gint64 nfid = record.nfid;

  EXPECT_EQ(nfid, 0x500000007);
}

TEST_F(UserFiles, KeepAWebIdThatIsPending) {
  library_.add("a.jpg");
  library_.start();
  ASSERT_TRUE(fm_svc_vesk_update_nfid_of_file(library_.id_of("a.jpg"), -2, nullptr));
  lose_index();

  library_.start();
  FmMediaRecord record;
  fm_svc_mb_get_record_by_index(library_.id_of("a.jpg"), &record, nullptr);
  const gint64 nfid = record.nfid;

  EXPECT_EQ(nfid, -2);
}

TEST_F(UserFiles, RefuseAFileThatIsNotThere) {
  library_.start();
  gint error = 0;

  EXPECT_FALSE(Index::current()->set_flag(4711, kFavourite, true));
  EXPECT_FALSE(fm_svc_vesk_update_nfid_of_file(4711, 5, &error));

  EXPECT_NE(error, 0);
}

TEST_F(UserFiles, FollowManyMarksInARow) {
  library_.add("a.jpg");
  library_.start();
  const gint id = library_.id_of("a.jpg");

  for (int round = 0; round < 20; ++round) {
    ASSERT_TRUE(Index::current()->set_flag(id, kFavourite, round % 2 == 0));
    EXPECT_EQ(favourite(id), round % 2 == 0);
  }
  library_.start();

  EXPECT_FALSE(favourite("a.jpg"));
}

}  // namespace

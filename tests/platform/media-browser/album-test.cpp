/// Albums: their lists, records, files and covers.
#include <gmock/gmock.h>
#include <media-mirror.h>
#include <sys/stat.h>
#include <thumbnail-manager.h>
#include <unistd.h>

#include <cstring>

#include "file-bytes.hpp"
#include "library.hpp"
#include "media-browser/removed.hpp"
#include "thumbnail/store.hpp"

namespace {

using test::Library;
using testing::ElementsAre;
using testing::IsEmpty;

class Album : public support::GlibTest {
 protected:
  ~Album() override { thumbnail_manager_shutdown(); }

  /// Albums whose names, dates and numbers of files all differ.
  void add_three() {
    library_.add("trip 10/a.jpg", 100);
    library_.add("trip 10/b.jpg", 500);
    library_.add("Trip 9/a.jpg", 200);
    library_.add("Trip 9/b.jpg", 300);
    library_.add("Trip 9/c.jpg", 250);
    library_.add("alps/a.jpg", 400);
  }
  static gint files_of(gint album) {
    gint count = -1;
    EXPECT_TRUE(fm_svc_mb_album_get_files_count(album, &count, nullptr));
    return count;
  }
  /// Puts a thumbnail of a file into the cache and returns its path.
  static std::string store_thumbnail(const std::string &path) {
    struct stat info;
    EXPECT_EQ(stat(path.c_str(), &info), 0);
    const std::string stored = phone::thumbnail::stored_path(info);
    g_mkdir_with_parents(stored.substr(0, stored.rfind('/')).c_str(), 0700);
    EXPECT_TRUE(g_file_set_contents(stored.c_str(), "thumbnail", -1, nullptr));
    return stored;
  }

  Library library_;
};

TEST_F(Album, IsAFolderWithPictures) {
  library_.add("x/y/a.jpg");
  library_.add("b.jpg");
  library_.write("empty/notes.txt", "");
  library_.start();

  EXPECT_THAT(Library::albums(), ElementsAre("pictures", "y"));
}

TEST_F(Album, ListSortsByName) {
  add_three();
  library_.start();

  EXPECT_THAT(Library::albums(0), ElementsAre("alps", "Trip 9", "trip 10"));
  EXPECT_THAT(Library::albums(1), ElementsAre("trip 10", "Trip 9", "alps"));
}

TEST_F(Album, ListSortsByContent) {
  add_three();
  library_.start();

  EXPECT_THAT(Library::albums(2), ElementsAre("trip 10", "alps", "Trip 9"));
  EXPECT_THAT(Library::albums(3), ElementsAre("trip 10", "Trip 9", "alps"));
  EXPECT_THAT(Library::albums(4), ElementsAre("Trip 9", "trip 10", "alps"));
}

TEST_F(Album, ListIsEmptyWithoutPictures) {
  library_.start();
  GList *albums = reinterpret_cast<GList *>(1);
  gint count = -1;

  EXPECT_TRUE(fm_svc_mb_get_all_albums_ex(2, 0, &albums, nullptr));
  EXPECT_TRUE(fm_svc_mb_get_albums_count(&count, -1, nullptr));

  EXPECT_EQ(albums, nullptr);
  EXPECT_EQ(count, 0);
}

TEST_F(Album, CountsFollowTheFiles) {
  add_three();
  library_.start();
  const gint trip = Library::album_id("Trip 9");
  EXPECT_EQ(files_of(trip), 3);

  library_.add("Trip 9/d.jpg", 600);
  unlink(library_.path("Trip 9/b.jpg").c_str());
  unlink(library_.path("Trip 9/a.jpg").c_str());
  library_.rescan();

  EXPECT_EQ(files_of(trip), 2);
  EXPECT_THAT(Library::albums(2), ElementsAre("Trip 9", "trip 10", "alps"));
}

TEST_F(Album, LeavesTheListWithItsLastFile) {
  add_three();
  library_.start();
  const gint alps = Library::album_id("alps");

  unlink(library_.path("alps/a.jpg").c_str());
  library_.rescan();

  gint count = -1;
  EXPECT_THAT(Library::albums(0), ElementsAre("Trip 9", "trip 10"));
  EXPECT_TRUE(fm_svc_mb_get_albums_count(&count, 0, nullptr));
  EXPECT_EQ(count, 2);
  EXPECT_EQ(files_of(alps), 0);
}

TEST_F(Album, SortsItsFiles) {
  add_three();
  library_.start();
  const gint album = Library::album_id("Trip 9");
  const gint a = library_.id_of("Trip 9/a.jpg");
  const gint b = library_.id_of("Trip 9/b.jpg");
  const gint c = library_.id_of("Trip 9/c.jpg");

  EXPECT_THAT(Library::album_files(album, 0), ElementsAre(a, b, c));
  EXPECT_THAT(Library::album_files(album, 1), ElementsAre(c, b, a));
  EXPECT_THAT(Library::album_files(album, 2), ElementsAre(a, c, b));
  EXPECT_THAT(Library::album_files(album, 3), ElementsAre(b, c, a));
}

TEST_F(Album, SortsItsFilesBySizeAndComing) {
  library_.write("x/a.jpg", std::string(10, 'x'));
  library_.start();
  library_.write("x/b.jpg", std::string(30, 'x'));
  library_.rescan();
  library_.write("x/c.jpg", std::string(20, 'x'));
  library_.rescan();
  const gint album = Library::album_id("x");
  const gint a = library_.id_of("x/a.jpg");
  const gint b = library_.id_of("x/b.jpg");
  const gint c = library_.id_of("x/c.jpg");

  EXPECT_THAT(Library::album_files(album, 4), ElementsAre(c, b, a));
  EXPECT_THAT(Library::album_files(album, 5), ElementsAre(b, c, a));
}

TEST_F(Album, FiltersItsFiles) {
  library_.add("DCIM/a.jpg");
  library_.write("DCIM/b.mp4", test::mp4_of({.width = 640, .height = 480}));
  library_.start();
  const gint album = Library::album_id("DCIM");
  const gint a = library_.id_of("DCIM/a.jpg");
  const gint b = library_.id_of("DCIM/b.mp4");

  EXPECT_THAT(Library::album_files(album, 0, 1), ElementsAre(a));
  EXPECT_THAT(Library::album_files(album, 0, 2), ElementsAre(b));
  EXPECT_THAT(Library::album_files(album, 0, 0x13), ElementsAre(a, b));
}

TEST_F(Album, ListsItsFilesByNameWithoutAnOrder) {
  library_.add("x/10.jpg");
  library_.add("x/9.jpg");
  library_.start();
  FmFileList files{};

  ASSERT_TRUE(fm_svc_mb_album_get_all_files(Library::album_id("x"), &files, nullptr));

  ASSERT_EQ(files.count, 2);
  EXPECT_EQ(files.ids[0], library_.id_of("x/9.jpg"));
  EXPECT_EQ(files.types[0], FM_FILE_LOCAL);
  fm_svc_sync_list_free(&files);
  EXPECT_EQ(files.ids, nullptr);
  EXPECT_EQ(files.count, 0);
}

TEST_F(Album, ThatIsUnknownFails) {
  library_.start();
  FmAlbumRecord record;
  FmFileList files{};
  gint error = 0;
  gint count = 7;

  EXPECT_FALSE(fm_svc_mb_get_album(99, &record, &error));
  EXPECT_FALSE(fm_svc_mb_album_get_all_files_ex(99, 0, 0, &files, nullptr));
  EXPECT_FALSE(fm_svc_mb_album_get_files_count(99, &count, nullptr));

  EXPECT_EQ(record.album_id, 0);
  EXPECT_NE(error, 0);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(files.count, 0);
}

TEST_F(Album, RecordNamesTheFolder) {
  library_.add("caf\xff\n/a.jpg");
  library_.start();
  const std::string shown = Library::albums().front();
  FmAlbumRecord record;

  ASSERT_TRUE(fm_svc_mb_get_album(Library::album_id(shown), &record, nullptr));

  EXPECT_EQ(shown, "caf\ufffd ");
  EXPECT_EQ(record.name, shown);
  EXPECT_EQ(record.kind, 0);
  EXPECT_EQ(record.naid, 0);
  EXPECT_STREQ(record.cover_path, "");
}

TEST_F(Album, CoverIsTheFileThatCameLast) {
  library_.add("x/new.jpg", 900);
  library_.add("x/old.jpg", 100);
  library_.start();
  const gint album = Library::album_id("x");
  FmVeskFileRecord record;

  ASSERT_TRUE(fm_svc_mb_album_get_last_added_file(album, &record, nullptr));
  EXPECT_EQ(record.database_index, library_.id_of("x/new.jpg"));

  library_.add("x/later.jpg", 50);
  library_.rescan();
  ASSERT_TRUE(fm_svc_mb_album_get_last_added_file(album, &record, nullptr));
  EXPECT_EQ(record.database_index, library_.id_of("x/later.jpg"));
}

TEST_F(Album, CoverIsNeverAnOriginal) {
  library_.add("x/a.jpg");
  library_.start();
  FmVeskFileRecord record;
  std::memset(&record, 0xaa, sizeof record);

  ASSERT_TRUE(fm_svc_mb_album_get_last_added_file(Library::album_id("x"), &record, nullptr));

  EXPECT_STREQ(record.name, "");
  EXPECT_STREQ(record.thumbnail_path, "");
}

TEST_F(Album, CoverIsTheCachedThumbnail) {
  const std::string stored = store_thumbnail(library_.add("x/a.jpg"));
  library_.start();
  FmVeskFileRecord record;
  FmAlbumRecord album;

  ASSERT_TRUE(fm_svc_mb_album_get_last_added_file(Library::album_id("x"), &record, nullptr));
  ASSERT_TRUE(fm_svc_mb_get_album(Library::album_id("x"), &album, nullptr));

  EXPECT_EQ(record.name, stored);
  EXPECT_EQ(album.cover_path, stored);
  EXPECT_TRUE(stored.starts_with(g_get_user_cache_dir()));
}

TEST_F(Album, CoverFollowsARemovedFileAtOnce) {
  library_.add("x/a.jpg", 1);
  library_.add("x/b.jpg", 2);
  library_.start();
  const gint album = Library::album_id("x");
  const gint a = library_.id_of("x/a.jpg");
  unlink(library_.path("x/b.jpg").c_str());

  phone::media::note_removed(library_.path("x/b.jpg"));
  FmVeskFileRecord record;

  ASSERT_TRUE(fm_svc_mb_album_get_last_added_file(album, &record, nullptr));
  EXPECT_EQ(record.database_index, a);
}

TEST_F(Album, WithoutFilesHasNoLastOne) {
  library_.add("x/a.jpg");
  library_.start();
  const gint album = Library::album_id("x");
  unlink(library_.path("x/a.jpg").c_str());
  library_.rescan();
  FmVeskFileRecord record;
  gint error = 0;

  EXPECT_FALSE(fm_svc_mb_album_get_last_added_file(album, &record, &error));

  EXPECT_NE(error, 0);
}

TEST_F(Album, FunctionsFailWhileNoIndexIsOpen) {
  GList *albums = nullptr;
  gint count = 7;
  gint error = 0;
  FmAlbumRecord album;

  EXPECT_FALSE(fm_svc_mb_get_all_albums_ex(2, 0, &albums, &error));
  EXPECT_NE(error, 0);
  EXPECT_FALSE(fm_svc_mb_get_albums_count(&count, 0, nullptr));
  EXPECT_FALSE(fm_svc_mb_get_album(1, &album, nullptr));
  EXPECT_EQ(count, 0);
}

}  // namespace

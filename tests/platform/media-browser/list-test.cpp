/// Lists, pages, counts and records, as the library reads them.
#include <gmock/gmock.h>
#include <phone-status.h>
#include <sys/stat.h>
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

class List : public support::GlibTest {
 protected:
  /// Three files whose names, dates, sizes and order of coming all differ.
  void add_three() {
    library_.write("IMG_10.jpg", test::camera_jpeg() + std::string(100, 'x'));
    test::set_mtime(library_.path("IMG_10.jpg"), 100);
    library_.write("img_9.jpg", test::camera_jpeg() + std::string(300, 'x'));
    test::set_mtime(library_.path("img_9.jpg"), 300);
    library_.write("IMG_11.jpg", test::camera_jpeg() + std::string(200, 'x'));
    test::set_mtime(library_.path("IMG_11.jpg"), 200);
  }

  /// Ids of some rows.
  static std::vector<gint> page(gint sort, gint first, gint last) {
    GList *items = nullptr;
    EXPECT_TRUE(fm_svc_mb_get_list("/", 2, sort, 0, 0, &items, first, last, nullptr));
    std::vector<gint> ids;
    for (GList *link = items; link != nullptr; link = link->next) {
      ids.push_back(static_cast<MbItem *>(link->data)->id);
    }
    fm_svc_mb_glist_free(&items, TRUE);
    return ids;
  }

  Library library_;
};

TEST_F(List, SortsByName) {
  add_three();
  library_.start();

  EXPECT_THAT(library_.list(0), ElementsAre("img_9.jpg", "IMG_10.jpg", "IMG_11.jpg"));
  EXPECT_THAT(library_.list(1), ElementsAre("IMG_11.jpg", "IMG_10.jpg", "img_9.jpg"));
}

TEST_F(List, SortsByDate) {
  add_three();
  library_.start();

  EXPECT_THAT(library_.list(2), ElementsAre("IMG_10.jpg", "IMG_11.jpg", "img_9.jpg"));
  EXPECT_THAT(library_.list(3), ElementsAre("img_9.jpg", "IMG_11.jpg", "IMG_10.jpg"));
}

TEST_F(List, SortsBySizeLargestFirst) {
  add_three();
  library_.start();

  EXPECT_THAT(library_.list(5), ElementsAre("img_9.jpg", "IMG_11.jpg", "IMG_10.jpg"));
}

TEST_F(List, SortsWhatWasAddedLastFirst) {
  library_.add("z.jpg", 300);
  library_.start();
  library_.add("a.jpg", 100);
  library_.rescan();

  EXPECT_THAT(library_.list(4), ElementsAre("a.jpg", "z.jpg"));
}

TEST_F(List, EndsEveryOrderInTheId) {
  for (int at = 0; at < 40; ++at) library_.add("f" + std::to_string(at % 4) + "/same.jpg", 5);
  for (int at = 0; at < 40; ++at) library_.add("f" + std::to_string(at) + "/same.jpg", 5);
  library_.start();

  for (const gint sort : {2, 3, 4, 5}) {
    std::vector<gint> ids = page(sort, 0, 100);
    EXPECT_EQ(ids.size(), 40u);
    if (sort != 2) std::reverse(ids.begin(), ids.end());
    EXPECT_TRUE(std::is_sorted(ids.begin(), ids.end())) << sort;
  }
}

TEST_F(List, IsTheSameBeforeAndAfterItsOrderIsMade) {
  for (int at = 0; at < 50; ++at) {
    library_.add((at % 3 == 0 ? "DCIM/" : "x/") + std::to_string(at * 7 % 50) + ".jpg",
                 at * 13 % 50);
  }
  library_.write("film.mp4", test::mp4_of({.width = 64, .height = 48}));
  library_.start();

  for (const gint sort : {0, 1, 2, 3, 4, 5}) {
    for (const gint64 filter : {0, 1, 2, 0x10, 0x11}) {
      // The first reading finds no order and walks the index; media_index_get_position() waits.
      const std::vector<std::string> first = library_.list(sort, filter);
      media_index_get_position(sort, filter, 1);
      EXPECT_EQ(library_.list(sort, filter), first) << sort << " " << filter;
    }
  }
}

TEST_F(List, FiltersByKind) {
  library_.add("a.jpg");
  library_.write("b.mp4", test::mp4_of({.width = 640, .height = 480}));
  library_.start();

  EXPECT_THAT(library_.list(0, 1), ElementsAre("a.jpg"));
  EXPECT_THAT(library_.list(0, 2), ElementsAre("b.mp4"));
  EXPECT_THAT(library_.list(0, 3), ElementsAre("a.jpg", "b.mp4"));
  EXPECT_THAT(library_.list(0, 0), ElementsAre("a.jpg", "b.mp4"));
  EXPECT_THAT(library_.list(0, -1), ElementsAre("a.jpg", "b.mp4"));
}

TEST_F(List, FiltersByCameraFolder) {
  library_.add("a.jpg");
  library_.add("DCIM/100ABC/b.jpg");
  library_.write("DCIM/100ABC/c.mp4", test::mp4_of({.width = 640, .height = 480}));
  library_.start();

  EXPECT_THAT(library_.list(0, 0x13), ElementsAre("DCIM/100ABC/b.jpg", "DCIM/100ABC/c.mp4"));
  EXPECT_THAT(library_.list(0, 0x11), ElementsAre("DCIM/100ABC/b.jpg"));
  EXPECT_THAT(library_.list(0, -2), ElementsAre("DCIM/100ABC/b.jpg", "DCIM/100ABC/c.mp4"));
}

TEST_F(List, CountsWhatItLists) {
  library_.add("a.jpg");
  library_.add("DCIM/b.jpg");
  library_.start();

  EXPECT_EQ(Library::count(0), 2);
  EXPECT_EQ(Library::count(0x13), 1);
  EXPECT_EQ(Library::count(2), 0);
}

TEST_F(List, GivesInclusivePages) {
  for (int at = 0; at < 5; ++at) library_.add(std::to_string(at) + ".jpg", at);
  library_.start();
  const std::vector<gint> all = page(2, 0, 4);

  EXPECT_EQ(all.size(), 5u);
  EXPECT_THAT(page(2, 1, 1), ElementsAre(all[1]));
  EXPECT_THAT(page(2, 3, 3), ElementsAre(all[3]));
  EXPECT_THAT(page(2, 3, 99), ElementsAre(all[3], all[4]));
  EXPECT_THAT(page(2, 5, 99), IsEmpty());
  EXPECT_THAT(page(2, 2, 1), IsEmpty());
  EXPECT_THAT(page(2, -5, 0), ElementsAre(all[0]));
  EXPECT_THAT(page(2, 4, G_MAXINT), ElementsAre(all[4]));
}

TEST_F(List, NumbersItsRows) {
  for (int at = 0; at < 3; ++at) library_.add(std::to_string(at) + ".jpg", at);
  library_.start();
  GList *items = nullptr;

  ASSERT_TRUE(fm_svc_mb_get_list("/", 2, 3, 0, 0, &items, 1, 2, nullptr));

  EXPECT_EQ(static_cast<MbItem *>(items->data)->db_idx, 1);
  EXPECT_EQ(static_cast<MbItem *>(items->next->data)->db_idx, 2);
  fm_svc_mb_glist_free(&items, TRUE);
  EXPECT_EQ(items, nullptr);
}

TEST_F(List, FailsForAnotherPathThanTheWholeTree) {
  library_.start();
  gint count = 7;
  gint error = 0;
  GList *items = nullptr;

  EXPECT_FALSE(fm_svc_mb_get_all_sub_file_count("/home", 2, 0, &count, &error));
  EXPECT_FALSE(fm_svc_mb_get_list("/home", 2, 3, 0, 0, &items, 0, 9, nullptr));

  EXPECT_EQ(count, 0);
  EXPECT_NE(error, 0);
}

TEST_F(List, FailsWhileNoIndexIsOpen) {
  gint count = 7;
  gint error = 0;
  GList *items = nullptr;

  EXPECT_FALSE(fm_svc_mb_get_all_sub_file_count("/", 2, 0, &count, &error));
  EXPECT_FALSE(fm_svc_mb_get_list("/", 2, 3, 0, 0, &items, 0, 9, &error));

  EXPECT_EQ(count, 0);
  EXPECT_EQ(items, nullptr);
  EXPECT_NE(error, 0);
}

TEST_F(List, KeepsItsRowsUntilItIsCountedAnew) {
  for (int at = 0; at < 10; ++at) library_.add(std::to_string(at) + ".jpg", at);
  library_.start();
  media_index_get_position(3, 0, 1);
  Library::count();
  const std::vector<gint> before = page(3, 0, 9);

  library_.add("new.jpg", 100);
  library_.rescan();

  EXPECT_EQ(page(3, 0, 9), before);
  EXPECT_EQ(Library::count(), 11);
  EXPECT_EQ(page(3, 0, 99).size(), 11u);
}

TEST_F(List, ReadsARowWhoseFileHasGone) {
  library_.add("a.jpg", 1);
  library_.add("b.jpg", 2);
  library_.start();
  media_index_get_position(3, 0, 1);
  Library::count();
  const std::vector<gint> before = page(3, 0, 1);
  unlink(library_.path("b.jpg").c_str());
  library_.rescan();

  const std::vector<gint> after = page(3, 0, 1);

  EXPECT_EQ(after, before);
}

TEST_F(List, FindsPositionsInBothDirections) {
  for (int at = 0; at < 5; ++at) library_.add(std::to_string(at) + ".jpg", at);
  library_.start();
  const gint id = library_.id_of("1.jpg");

  EXPECT_EQ(media_index_get_position(2, 0, id), 1);
  EXPECT_EQ(media_index_get_position(3, 0, id), 3);
  EXPECT_EQ(media_index_get_position(2, 2, id), -1);
  EXPECT_EQ(media_index_get_position(2, 0, 999), -1);
}

TEST_F(List, KnowsIdsByPath) {
  library_.add("a.jpg");
  library_.start();

  EXPECT_NE(library_.id_of("a.jpg"), 0);
  EXPECT_EQ(library_.id_of("b.jpg"), 0);
  EXPECT_EQ(media_index_get_id_by_path("a.jpg"), 0);
  EXPECT_EQ(media_index_get_id_by_path(nullptr), 0);
}

using Record = List;

TEST_F(Record, TellsAFileById) {
  library_.write("x/IMG_1.JPG", test::camera_jpeg());
  library_.start();
  const gint id = library_.id_of("x/IMG_1.JPG");
  FmMediaRecord media;
  FmFileRecord file;

  ASSERT_TRUE(fm_svc_mb_get_record_by_index(id, &media, nullptr));
  ASSERT_TRUE(fm_svc_mb_get_item_by_database_index(id, &file, nullptr));

  EXPECT_EQ(media.id, id);
  EXPECT_EQ(media.media_type, 1);
  EXPECT_STREQ(media.folder, library_.path("x").c_str());
  EXPECT_STREQ(media.name, "IMG_1.JPG");
  EXPECT_STREQ(media.extension, "jpg");
  EXPECT_STREQ(file.item.path, library_.path("x/IMG_1.JPG").c_str());
  EXPECT_EQ(file.item.unmarked, 1u);
  EXPECT_EQ(file.item.flags, 0u);
}

TEST_F(Record, IsClearedForAFileThatHasGone) {
  library_.add("a.jpg");
  library_.start();
  const gint id = library_.id_of("a.jpg");
  unlink(library_.path("a.jpg").c_str());
  library_.rescan();
  FmMediaRecord media;
  FmFileRecord file;
  std::memset(&media, 0xaa, sizeof media);
  std::memset(&file, 0xaa, sizeof file);

  EXPECT_TRUE(fm_svc_mb_get_record_by_index(id, &media, nullptr));
  EXPECT_TRUE(fm_svc_mb_get_item_by_database_index(id, &file, nullptr));

  static const FmMediaRecord kNoMedia{};
  static const FmFileRecord kNoFile{};
  EXPECT_EQ(std::memcmp(&media, &kNoMedia, sizeof media), 0);
  EXPECT_EQ(std::memcmp(&file, &kNoFile, sizeof file), 0);
}

TEST_F(Record, IsClearedForAnIdThatNeverWas) {
  library_.start();
  FmMediaRecord media;
  std::memset(&media, 0xaa, sizeof media);

  EXPECT_TRUE(fm_svc_mb_get_record_by_index(4711, &media, nullptr));
  EXPECT_TRUE(fm_svc_mb_get_record_by_index(0, &media, nullptr));
  EXPECT_TRUE(fm_svc_mb_get_record_by_index(-1, &media, nullptr));

  EXPECT_EQ(media.id, 0);
}

TEST_F(Record, SucceedsWhenTheIndexIsClosedMeanwhile) {
  FmMediaRecord media;

  EXPECT_TRUE(fm_svc_mb_get_record_by_index(1, &media, nullptr));
}

TEST_F(Record, NamesAThumbnailOnlyWhenItIsInTheCache) {
  const std::string path = library_.add("a.jpg");
  library_.start();
  const gint id = library_.id_of("a.jpg");
  FmMediaRecord before;
  FmMediaRecord after;
  fm_svc_mb_get_record_by_index(id, &before, nullptr);
  struct stat info;
  ASSERT_EQ(stat(path.c_str(), &info), 0);
  const std::string stored = phone::thumbnail::stored_path(info);
  g_mkdir_with_parents(stored.substr(0, stored.rfind('/')).c_str(), 0700);
  ASSERT_TRUE(g_file_set_contents(stored.c_str(), "thumbnail", -1, nullptr));

  fm_svc_mb_get_record_by_index(id, &after, nullptr);

  EXPECT_STREQ(before.thumbnail_path, "");
  EXPECT_EQ(after.thumbnail_path, stored);
}

class Removed : public List {};

TEST_F(Removed, LeavesTheListsAtOnce) {
  for (int at = 0; at < 5; ++at) library_.add(std::to_string(at) + ".jpg", at);
  library_.start();
  media_index_get_position(3, 0, 1);
  const std::string path = library_.path("2.jpg");
  ASSERT_EQ(unlink(path.c_str()), 0);

  phone::media::note_removed(path);

  EXPECT_THAT(library_.list(2), ElementsAre("0.jpg", "1.jpg", "3.jpg", "4.jpg"));
  EXPECT_EQ(library_.id_of("2.jpg"), 0);
}

TEST_F(Removed, LeavesListsWithoutAnOrderAtOnce) {
  for (int at = 0; at < 5; ++at) library_.add(std::to_string(at) + ".jpg", at);
  library_.start();
  const std::string path = library_.path("2.jpg");
  ASSERT_EQ(unlink(path.c_str()), 0);

  phone::media::note_removed(path);

  EXPECT_THAT(library_.list(5, 1), testing::SizeIs(4));
  EXPECT_EQ(Library::count(1), 4);
}

TEST_F(Removed, LeavesTheAlbumAtOnce) {
  library_.add("x/a.jpg", 1);
  library_.add("x/b.jpg", 2);
  library_.start();
  const gint album = Library::album_id("x");
  const gint kept = library_.id_of("x/a.jpg");
  ASSERT_EQ(unlink(library_.path("x/b.jpg").c_str()), 0);

  phone::media::note_removed(library_.path("x/b.jpg"));
  gint count = 0;
  fm_svc_mb_album_get_files_count(album, &count, nullptr);

  EXPECT_THAT(Library::album_files(album), ElementsAre(kept));
  EXPECT_EQ(count, 1);
}

TEST_F(Removed, ComesBackWithItsIdWhenItIsRestored) {
  library_.add("a.jpg");
  library_.start();
  const gint id = library_.id_of("a.jpg");
  const support::TempDir trash;
  const std::string path = library_.path("a.jpg");
  ASSERT_EQ(rename(path.c_str(), trash.path("a.jpg").c_str()), 0);
  phone::media::note_removed(path);
  ASSERT_TRUE(library_.becomes({}));

  ASSERT_EQ(rename(trash.path("a.jpg").c_str(), path.c_str()), 0);

  EXPECT_TRUE(library_.becomes({"a.jpg"}));
  EXPECT_EQ(library_.id_of("a.jpg"), id);
}

gint ready() {
  GConfValue *value = gconf_value_new(GCONF_VALUE_INT);
  gconf_value_set_int(value, -1);
  phonestatus_get("/PhoneStatus/Application/FileManager/PhoneInit", value);
  const gint result = gconf_value_get_int(value);
  gconf_value_free(value);
  return result;
}

class Status : public List {};

TEST_F(Status, IsNotReadyBeforeTheFirstRows) {
  library_.add("a.jpg");
  library_.begin();

  // The scan may already be through; what must not be is readiness without rows.
  const gint state = ready();
  const gint rows = Library::count();

  EXPECT_TRUE(state == 0 || rows > 0);
  EXPECT_TRUE(test::run_until([] { return ready() == 1; }));
}

TEST_F(Status, IsReadyWithTheFirstRows) {
  library_.add("a.jpg");
  library_.start();

  EXPECT_EQ(ready(), 1);
}

TEST_F(Status, IsReadyAtOnceWithAWarmIndex) {
  library_.add("a.jpg");
  library_.start();
  library_.stop();

  library_.begin();

  EXPECT_EQ(ready(), 1);
  EXPECT_THAT(library_.list(), ElementsAre("a.jpg"));
}

TEST_F(Status, IsReadyWhenThereIsNothing) {
  library_.start();

  EXPECT_EQ(ready(), 1);
}

}  // namespace

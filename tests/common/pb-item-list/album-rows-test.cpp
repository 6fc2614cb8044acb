#include <cstring>

#include "fixture.hpp"

namespace {

using item_list_test::fill;
using item_list_test::ItemListTest;
using item_list_test::ListPtr;
using item_list_test::log_of;
using item_list_test::new_list;
using item_list_test::private_of;
using item_list_test::read_row;
using item_list_test::Row;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char *kName = "pb_item_list_insert_data";

void serve_albums(const std::vector<FmAlbumRecord> &albums) {
  fake::platform().fm_svc_mb_get_all_albums_ex = [albums](gint, guint32, GList **list, gint *) {
    *list = fake::record_list(albums);
    return TRUE;
  };
}

FmAlbumRecord album(gint id, const char *name) {
  FmAlbumRecord record = fake::make_album(id, name);
  fake::set_text(record.cover_path, "/covers/own.jpg");
  return record;
}

void serve_last_added(const std::string &path) {
  fake::platform().fm_svc_mb_album_get_last_added_file = [path](gint, FmVeskFileRecord *record,
                                                                gint *) {
    fake::set_text(record->name, path);
    return TRUE;
  };
}

ListPtr built_list(gint category, gint album_id = 77) {
  ListPtr list = new_list();
  pb_item_list_build(list.get(), category, album_id);
  fake::take_calls();
  fake::take_log();
  return list;
}

/// A list of album files whose service changes between the build and the rows.
ListPtr album_list(const std::vector<gint64> &ids, const std::vector<gint32> &types = {}) {
  item_list_test::serve_album(ids, types);
  return built_list(3);
}

using InsertAlbum = ItemListTest;

TEST_F(InsertAlbum, LogsTheRequest) {
  serve_albums({album(1, "a"), album(2, "b")});
  const ListPtr list = built_list(0);

  fill(list, pb_item_list_insert_data, 0, 1, 1);

  EXPECT_THAT(log_of(kName), Contains("pb_item_list(0): (0,1), row=1\n"));
}

TEST_F(InsertAlbum, MakesAnItemOfTheAlbum) {
  FmAlbumRecord record = album(7, "Holiday");
  record.naid = G_GINT64_CONSTANT(0x500000001);
  record.attribute = 21;
  serve_albums({record});
  const ListPtr list = built_list(0);

  const Row row = read_row(list, 0);

  ASSERT_TRUE(row.item);
  EXPECT_EQ(row.item->is_cluster, 1);
  EXPECT_EQ(row.item->album_id, 7);
  EXPECT_STREQ(row.item->name, "Holiday");
  EXPECT_STREQ(row.item->thumb_path, "/covers/own.jpg");
  EXPECT_EQ(row.item->naid, G_GINT64_CONSTANT(0x500000001));
  EXPECT_EQ(row.item->attr, 21);
}

TEST_F(InsertAlbum, SetsTheColumns) {
  serve_albums({album(1, "a"), album(2, "b")});
  const ListPtr list = built_list(0);

  const Row row = read_row(list, 1);

  EXPECT_FALSE(row.has_title);
  EXPECT_EQ(row.index, 1);
  EXPECT_EQ(item_list_test::source_of(row.pixbuf), "/covers/own.jpg");
}

TEST_F(InsertAlbum, CountsALocalAlbum) {
  serve_albums({album(7, "a")});
  fake::platform().fm_svc_mb_album_get_files_count = [](gint, gint *count, gint *) {
    *count = 12;
    return TRUE;
  };
  const ListPtr list = built_list(0);

  EXPECT_EQ(read_row(list, 0).item->count, 12);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_files_count"),
              ElementsAre("fm_svc_mb_album_get_files_count(7)"));
}

TEST_F(InsertAlbum, CountsNothingWhenTheCountFails) {
  serve_albums({album(7, "a")});
  fake::platform().fm_svc_mb_album_get_files_count = [](gint, gint *count, gint *) {
    *count = 12;
    return FALSE;
  };
  const ListPtr list = built_list(0);

  EXPECT_EQ(read_row(list, 0).item->count, 0);

  EXPECT_THAT(log_of(kName), Contains("fm_svc_mb_album_get_files_count failed  \n"));
}

TEST_F(InsertAlbum, CoversALocalAlbumWithTheFileThatCameLast) {
  serve_albums({album(7, "a")});
  serve_last_added("/covers/last.jpg");
  const ListPtr list = built_list(0);

  EXPECT_STREQ(read_row(list, 0).item->thumb_path, "/covers/last.jpg");

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_last_added_file"),
              ElementsAre("fm_svc_mb_album_get_last_added_file(7)"));
}

TEST_F(InsertAlbum, ReadsTheLastFileIntoAClearedRecord) {
  serve_albums({album(7, "a")});
  static bool cleared;
  fake::platform().fm_svc_mb_album_get_last_added_file = [](gint, FmVeskFileRecord *record,
                                                            gint *) {
    const FmVeskFileRecord zero{};
    cleared = std::memcmp(record, &zero, sizeof zero) == 0;
    return FALSE;
  };
  const ListPtr list = built_list(0);

  read_row(list, 0);

  EXPECT_TRUE(cleared);
}

TEST_F(InsertAlbum, KeepsTheCoverWhenTheLastFileCannotBeRead) {
  serve_albums({album(7, "a")});
  fake::platform().fm_svc_mb_album_get_last_added_file = [](gint, FmVeskFileRecord *record,
                                                            gint *) {
    fake::set_text(record->name, "/covers/broken.jpg");
    return FALSE;
  };
  const ListPtr list = built_list(0);

  EXPECT_STREQ(read_row(list, 0).item->thumb_path, "/covers/own.jpg");
}

TEST_F(InsertAlbum, KeepsTheCoverWhenTheLastFileHasNoPath) {
  serve_albums({album(7, "a")});
  serve_last_added("");
  const ListPtr list = built_list(0);

  EXPECT_STREQ(read_row(list, 0).item->thumb_path, "/covers/own.jpg");
}

TEST_F(InsertAlbum, TakesAnUnterminatedCoverPath) {
  serve_albums({album(7, "a")});
  fake::platform().fm_svc_mb_album_get_last_added_file = [](gint, FmVeskFileRecord *record,
                                                            gint *) {
    std::memset(record->name, 'c', sizeof record->name);
    return TRUE;
  };
  const ListPtr list = built_list(0);

  EXPECT_EQ(std::string(read_row(list, 0).item->thumb_path), std::string(256, 'c'));
}

TEST_F(InsertAlbum, TakesTheCountOfAWebAlbumFromItsRecord) {
  FmAlbumRecord record = album(7, "a");
  record.kind = 1;
  record.web_file_count = 31;
  serve_albums({record});
  const ListPtr list = built_list(0);

  EXPECT_EQ(read_row(list, 0).item->count, 31);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_files_count"), IsEmpty());
}

TEST_F(InsertAlbum, LeavesTheCoverOfAWebAlbum) {
  FmAlbumRecord record = album(7, "a");
  record.kind = 1;
  serve_albums({record});
  serve_last_added("/covers/last.jpg");
  const ListPtr list = built_list(0);

  EXPECT_STREQ(read_row(list, 0).item->thumb_path, "/covers/own.jpg");
}

TEST_F(InsertAlbum, DoesNotReadPastAnUnterminatedName) {
  FmAlbumRecord record = album(7, "");
  std::memset(record.name, 'n', sizeof record.name);
  record.kind = 1;
  serve_albums({record});
  const ListPtr list = built_list(0);

  EXPECT_EQ(std::string(read_row(list, 0).item->name), std::string(303, 'n'));
}

TEST_F(InsertAlbum, LogsARowWithoutAnAlbum) {
  serve_albums({album(7, "a")});
  const ListPtr list = built_list(0);

  fill(list, pb_item_list_insert_data, 0, 0, 1);

  EXPECT_THAT(log_of(kName), Contains("album_record is null when row=1\n"));
}

TEST_F(InsertAlbum, FetchesAlbumsThatAreNotHeld) {
  serve_albums({album(7, "a"), album(8, "b")});
  const ListPtr list = new_list();
  list->category = 0;
  pb::item_list::connect_store(list.get(), G_CALLBACK(pb_item_list_insert_data), 2);
  fake::take_calls();

  EXPECT_EQ(read_row(list, 1).item->album_id, 8);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_albums_ex"),
              ElementsAre("fm_svc_mb_get_all_albums_ex(2, 0)"));
  EXPECT_THAT(log_of(kName), Contains("g_list_length:2\n"));
  EXPECT_THAT(log_of(kName), Contains("album list record count = 2\n"));
}

TEST_F(InsertAlbum, KeepsTheAlbumsThatItFetched) {
  serve_albums({album(7, "a")});
  const ListPtr list = new_list();
  list->category = 0;

  fill(list, pb_item_list_insert_data, 0, 0, 0);
  fill(list, pb_item_list_insert_data, 0, 0, 0);

  EXPECT_EQ(fake::calls_of("fm_svc_mb_get_all_albums_ex").size(), 1U);
}

TEST_F(InsertAlbum, LogsThatItCannotFetchThem) {
  fake::platform().fm_svc_mb_get_all_albums_ex = [](gint, guint32, GList **, gint *) {
    return FALSE;
  };
  const ListPtr list = new_list();
  list->category = 0;

  fill(list, pb_item_list_insert_data, 0, 0, 0);

  EXPECT_THAT(log_of(kName),
              ElementsAre("pb_item_list(0): (0,0), row=0\n",
                          "  [Media Manager - TestApp] : fm_svc_mb_get_all_albums failed  \n",
                          "album_list == NULL\n"));
}

TEST_F(InsertAlbum, LogsThatThereAreNone) {
  const ListPtr list = new_list();
  list->category = 0;

  fill(list, pb_item_list_insert_data, 0, 0, 0);

  EXPECT_THAT(log_of(kName), ElementsAre("pb_item_list(0): (0,0), row=0\n",
                                         "  [Media Manager - TestApp] : album_list == NULL  \n",
                                         "album_list == NULL\n"));
}

using InsertAlbumFile = ItemListTest;

TEST_F(InsertAlbumFile, MakesAnItemOfALocalFile) {
  item_list_test::serve(10);
  item_list_test::serve_web_id(44);
  const ListPtr list = album_list({5});

  const Row row = read_row(list, 0);

  ASSERT_TRUE(row.item);
  EXPECT_EQ(row.item->id, 5);
  EXPECT_STREQ(row.item->filename, "/pictures/5.jpg");
  EXPECT_STREQ(row.item->thumb_path, "/thumbnails/5.jpg");
  EXPECT_STREQ(row.item->extension, "jpg");
  EXPECT_EQ(row.item->nfid, 44);
}

TEST_F(InsertAlbumFile, TakesTheFavouriteAndTheMark) {
  item_list_test::serve(10);
  fake::platform().fm_svc_mb_get_item_by_database_index = [](gint, FmFileRecord *record, gint *) {
    *record = {};
    record->item = item_list_test::file(5);
    record->item.flags = 1;
    return TRUE;
  };
  const ListPtr list = album_list({5});

  const Row row = read_row(list, 0);

  EXPECT_EQ(row.item->favourite, 1);
  EXPECT_EQ(row.item->mark, 1);
}

TEST_F(InsertAlbumFile, GivesTheItemItsAlbum) {
  item_list_test::serve(10);
  const ListPtr list = album_list({5});

  EXPECT_EQ(read_row(list, 0).item->album_id, 77);
}

TEST_F(InsertAlbumFile, ReadsBothRecordsByTheLowWordOfTheId) {
  item_list_test::serve(10);
  const ListPtr list = album_list({G_GINT64_CONSTANT(0x900000005)});

  read_row(list, 0);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_record_by_index"),
              ElementsAre("fm_svc_mb_get_record_by_index(5)"));
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_item_by_database_index"),
              ElementsAre("fm_svc_mb_get_item_by_database_index(5)"));
}

TEST_F(InsertAlbumFile, SetsTheColumns) {
  item_list_test::serve(10);
  const ListPtr list = album_list({5, 6});

  const Row row = read_row(list, 1);

  EXPECT_FALSE(row.has_title);
  EXPECT_EQ(row.index, 1);
  EXPECT_EQ(item_list_test::source_of(row.pixbuf), "/thumbnails/6.jpg");
}

TEST_F(InsertAlbumFile, TakesOnlyAThumbnailThatLiesReady) {
  item_list_test::serve(10);
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [](const gchar *, gint, gint) {
    return static_cast<GdkPixbuf *>(nullptr);
  };
  const ListPtr list = album_list({5});

  EXPECT_EQ(read_row(list, 0).pixbuf.get(), nullptr);

  EXPECT_THAT(fake::calls_of("fm_svc_thumb_mgr_get_thumbnail"), IsEmpty());
  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_cache_get_thumbnail: assertion 'GDK_IS_PIXBUF(pixbuf)' failed"));
}

TEST_F(InsertAlbumFile, LogsTheTypeOfTheFile) {
  item_list_test::serve(10);
  const ListPtr list = album_list({5});

  fill(list, pb_item_list_insert_data, 0, 0, 0);

  EXPECT_THAT(log_of(kName),
              ElementsAre("pb_item_list(3): (0,0), row=0\n", "file_list.types  = 0\n"));
}

TEST_F(InsertAlbumFile, IgnoresARowBehindTheLastFile) {
  const ListPtr list = album_list({5});

  fill(list, pb_item_list_insert_data, 0, 1, 1);

  EXPECT_THAT(log_of(kName), ElementsAre("pb_item_list(3): (0,1), row=1\n"));
}

TEST_F(InsertAlbumFile, IgnoresATypeThatItDoesNotKnow) {
  const ListPtr list = album_list({5}, {2});

  fill(list, pb_item_list_insert_data, 0, 0, 0);

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(InsertAlbumFile, StopsWhenTheMediaRecordCannotBeRead) {
  fake::platform().fm_svc_mb_get_record_by_index = [](gint, FmMediaRecord *, gint *) {
    return FALSE;
  };
  const ListPtr list = album_list({5});

  EXPECT_EQ(read_row(list, 0).item.get(), nullptr);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_item_by_database_index"), IsEmpty());
}

TEST_F(InsertAlbumFile, LogsTheErrorWhenTheFileCannotBeRead) {
  fake::platform().fm_svc_mb_get_item_by_database_index = [](gint, FmFileRecord *, gint *error) {
    *error = 17;
    return FALSE;
  };
  const ListPtr list = album_list({5});

  EXPECT_EQ(read_row(list, 0).item.get(), nullptr);

  EXPECT_THAT(log_of(kName),
              Contains("\n fm_svc_mb_get_item_by_database_index failed with err = 17 \n\n"));
}

TEST_F(InsertAlbumFile, FetchesFilesThatAreNotHeld) {
  item_list_test::serve(10);
  item_list_test::serve_album({5, 6});
  pb_app_common_set_album_filter_sort_type(1, -1);
  const ListPtr list = new_list();
  list->category = 3;
  private_of(list).album_id = 77;

  fill(list, pb_item_list_insert_data, 0, 1, 1);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"),
              ElementsAre("fm_svc_mb_album_get_all_files_ex(77, 1, 3)"));
  EXPECT_THAT(log_of(kName), Contains("album store list file count = 2\n"));
}

TEST_F(InsertAlbumFile, LogsThatItCannotFetchThem) {
  fake::platform().fm_svc_mb_album_get_all_files_ex = [](gint, gint, gint, FmFileList *, gint *) {
    return FALSE;
  };
  const ListPtr list = new_list();
  list->category = 3;

  fill(list, pb_item_list_insert_data, 0, 1, 1);

  EXPECT_THAT(log_of(kName),
              Contains("  [Media Manager - TestApp] : fm_svc_mb_album_get_all_files failed  \n"));
}

void serve_web_file(gint database_index) {
  fake::platform().fm_svc_vesk_get_vesk_file = [database_index](gint64 nfid,
                                                                FmVeskFileRecord *record, gint *) {
    record->nfid = nfid;
    record->database_index = database_index;
    record->storage_kind = 2;
    fake::set_text(record->name, "party.jpg");
    fake::set_text(record->thumbnail_path, "/web/9.jpg");
    fake::set_text(record->bytes_url, "http://server/9");
    return TRUE;
  };
}

using InsertWebFileOfAlbum = ItemListTest;

TEST_F(InsertWebFileOfAlbum, ReadsTheFileByItsWholeId) {
  serve_web_file(0);
  const ListPtr list = album_list({G_GINT64_CONSTANT(0x900000005)}, {FM_FILE_WEB_ONLY});

  read_row(list, 0);

  EXPECT_THAT(fake::calls_of("fm_svc_vesk_get_vesk_file"),
              ElementsAre("fm_svc_vesk_get_vesk_file(38654705669)"));
}

TEST_F(InsertWebFileOfAlbum, MakesTheItemFromTheWebRecord) {
  serve_web_file(0);
  const ListPtr list = album_list({9}, {FM_FILE_WEB_ONLY});

  const Row row = read_row(list, 0);

  ASSERT_TRUE(row.item);
  EXPECT_EQ(row.item->id, 0);
  EXPECT_EQ(row.item->nfid, 9);
  EXPECT_STREQ(row.item->filename, "party.jpg");
  EXPECT_STREQ(row.item->aux_text, "http://server/9");
  EXPECT_EQ(row.item->album_id, 77);
  EXPECT_EQ(item_list_test::source_of(row.pixbuf), "/web/9.jpg");
}

TEST_F(InsertWebFileOfAlbum, MakesTheItemFromTheLocalCopy) {
  item_list_test::serve(10);
  serve_web_file(5);
  const ListPtr list = album_list({9}, {FM_FILE_WEB_ONLY});

  const Row row = read_row(list, 0);

  ASSERT_TRUE(row.item);
  EXPECT_EQ(row.item->id, 5);
  EXPECT_STREQ(row.item->filename, "/pictures/5.jpg");
}

TEST_F(InsertWebFileOfAlbum, TakesANegativeIndexForNoLocalCopy) {
  serve_web_file(-1);
  const ListPtr list = album_list({9}, {FM_FILE_WEB_ONLY});

  EXPECT_STREQ(read_row(list, 0).item->filename, "party.jpg");
}

TEST_F(InsertWebFileOfAlbum, LogsTheWebRecord) {
  serve_web_file(0);
  const ListPtr list = album_list({G_GINT64_CONSTANT(0x900000005)}, {FM_FILE_WEB_ONLY});

  fill(list, pb_item_list_insert_data, 0, 0, 0);

  EXPECT_THAT(
      log_of(kName),
      ElementsAre("pb_item_list(3): (0,0), row=0\n", "file_list.types  = 1\n",
                  "**** NFID =  38654705669 *** FILENAME = party.jpg ** THUMBPATH = /web/9.jpg ** "
                  "URL = http://server/9, ARCHIVE = 2\n"));
}

TEST_F(InsertWebFileOfAlbum, LogsNothingBehindAFieldWithoutItsEnd) {
  fake::platform().fm_svc_vesk_get_vesk_file = [](gint64, FmVeskFileRecord *record, gint *) {
    std::memset(record->name, 'n', sizeof record->name);
    std::memset(record->thumbnail_path, 't', sizeof record->thumbnail_path);
    std::memset(record->bytes_url, 'u', sizeof record->bytes_url);
    return TRUE;
  };
  const ListPtr list = album_list({9}, {FM_FILE_WEB_ONLY});

  fill(list, pb_item_list_insert_data, 0, 0, 0);

  EXPECT_THAT(log_of(kName), Contains("**** NFID =  0 *** FILENAME = " + std::string(256, 'n') +
                                      " ** THUMBPATH = " + std::string(256, 't') +
                                      " ** URL = " + std::string(256, 'u') + ", ARCHIVE = 0\n"));
}

TEST_F(InsertWebFileOfAlbum, LeavesTheRowWhenTheFileCannotBeRead) {
  fake::platform().fm_svc_vesk_get_vesk_file = [](gint64, FmVeskFileRecord *, gint *) {
    return FALSE;
  };
  const ListPtr list = album_list({9}, {FM_FILE_WEB_ONLY});

  EXPECT_EQ(read_row(list, 0).item.get(), nullptr);
}

}  // namespace

#include "fixture.hpp"

namespace {

using item_list_test::fill;
using item_list_test::FillHandler;
using item_list_test::ItemListTest;
using item_list_test::ListPtr;
using item_list_test::log_of;
using item_list_test::new_list;
using item_list_test::private_of;
using item_list_test::read_row;
using item_list_test::Row;
using item_list_test::serve;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// An empty list of a handler, with rows but without records.
ListPtr bare_list(FillHandler handler, gint rows, gint category = 0) {
  ListPtr list = new_list();
  list->category = category;
  pb::item_list::connect_store(list.get(), G_CALLBACK(handler), rows);
  fake::take_calls();
  fake::take_log();
  return list;
}

ListPtr list_with_records(FillHandler handler, gint rows, gint category = 0) {
  ListPtr list = bare_list(handler, rows, category);
  private_of(list).records =
      pb::item_list::RecordList(fake::record_list(item_list_test::files(rows)));
  return list;
}

ListPtr list_with_files(FillHandler handler, const std::vector<gint64> &ids, gint category = 0) {
  ListPtr list = bare_list(handler, static_cast<gint>(ids.size()), category);
  FmFileList files{};
  fake::fill_file_list(&files, ids);
  private_of(list).files = pb::item_list::FileList(files);
  private_of(list).album_id = 77;
  return list;
}

struct Handler {
  const char *name;
  FillHandler handler;
};
void PrintTo(const Handler &handler, std::ostream *out) { *out << handler.name; }

class OtherFillHandler : public ItemListTest, public testing::WithParamInterface<Handler> {};

TEST_P(OtherFillHandler, WarnsAboutANullStore) {
  GetParam().handler(nullptr, 0, 99, 0);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre(std::string(GetParam().name) +
                          ": assertion 'PB_IS_ITEM_LIST(PB_ITEM_LIST(store))' failed"));
}

INSTANTIATE_TEST_SUITE_P(
    Handlers, OtherFillHandler,
    testing::Values(Handler{"pb_item_list_sub_insert_data", pb_item_list_sub_insert_data},
                    Handler{"pb_item_list_album_insert_data", pb_item_list_album_insert_data},
                    Handler{"pb_item_list_share_insert_data", pb_item_list_share_insert_data}));

using InsertSubRow = ItemListTest;
constexpr const char *kSubName = "pb_item_list_sub_insert_data";

TEST_F(InsertSubRow, LogsTheRequest) {
  const ListPtr list = list_with_records(pb_item_list_sub_insert_data, 5);

  fill(list, pb_item_list_sub_insert_data, 1, 4, 2);

  EXPECT_THAT(log_of(kSubName), ElementsAre(" sub list:  (1,4) row=2\n"));
}

TEST_F(InsertSubRow, SetsTheColumns) {
  const ListPtr list = list_with_records(pb_item_list_sub_insert_data, 5);

  const Row row = read_row(list, 2);

  ASSERT_TRUE(row.item);
  EXPECT_EQ(row.item->id, 3);
  EXPECT_FALSE(row.has_title);
  EXPECT_EQ(row.index, 2);
  EXPECT_EQ(item_list_test::source_of(row.pixbuf), "/thumbnails/3.jpg");
}

TEST_F(InsertSubRow, LoadsAThumbnailThatDoesNotLieReady) {
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [](const gchar *, gint, gint) {
    return static_cast<GdkPixbuf *>(nullptr);
  };
  const ListPtr list = list_with_records(pb_item_list_sub_insert_data, 5);

  EXPECT_EQ(item_list_test::source_of(read_row(list, 2).pixbuf), "/pictures/3.jpg");
}

TEST_F(InsertSubRow, FetchesEveryFileOfTheFilterWhenNothingIsHeld) {
  serve(5);
  pb_app_common_set_filter_sort_type(2, 1);
  const ListPtr list = bare_list(pb_item_list_sub_insert_data, 5);

  fill(list, pb_item_list_sub_insert_data, 0, 4, 4);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_sub_file_count"),
              ElementsAre("fm_svc_mb_get_all_sub_file_count(\"/\", 2, 1)"));
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"),
              ElementsAre("fm_svc_mb_get_list(\"/\", 2, 2, 1, 0, 0, 5)"));
}

struct SubFilter {
  gint64 setting;
  const char *used;
};

class InsertSubFilter : public ItemListTest, public testing::WithParamInterface<SubFilter> {};

TEST_P(InsertSubFilter, ChangesMinusOneOnly) {
  serve(5);
  pb_app_common_set_filter_sort_type(2, GetParam().setting);
  const ListPtr list = bare_list(pb_item_list_sub_insert_data, 5);

  fill(list, pb_item_list_sub_insert_data, 0, 4, 4);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_sub_file_count"),
              ElementsAre("fm_svc_mb_get_all_sub_file_count(\"/\", 2, " +
                          std::string(GetParam().used) + ")"));
}

INSTANTIATE_TEST_SUITE_P(Filters, InsertSubFilter,
                         testing::Values(SubFilter{-1, "3"}, SubFilter{-2, "-2"}));

TEST_F(InsertSubRow, TakesTheirNumberAsItsLength) {
  serve(5);
  const ListPtr list = bare_list(pb_item_list_sub_insert_data, 9);

  fill(list, pb_item_list_sub_insert_data, 0, 4, 4);

  EXPECT_EQ(pb_item_list_get_length(list.get()), 5);
  EXPECT_THAT(log_of(kSubName), Contains("sub list record count=5\n"));
}

TEST_F(InsertSubRow, KeepsWhatItFetched) {
  serve(5);
  const ListPtr list = bare_list(pb_item_list_sub_insert_data, 5);

  fill(list, pb_item_list_sub_insert_data, 0, 4, 3);
  fill(list, pb_item_list_sub_insert_data, 0, 4, 4);

  EXPECT_EQ(fake::calls_of("fm_svc_mb_get_list").size(), 1U);
}

TEST_F(InsertSubRow, LeavesARowWithoutARecord) {
  const ListPtr list = list_with_records(pb_item_list_sub_insert_data, 5);

  fill(list, pb_item_list_sub_insert_data, 0, 9, 7);

  EXPECT_THAT(fake::calls_of("gtk_virtual_list_store_set"), IsEmpty());
}

using InsertAlbumListRow = ItemListTest;
constexpr const char *kAlbumName = "pb_item_list_album_insert_data";

TEST_F(InsertAlbumListRow, LogsTheRequestAndThePath) {
  serve(10);
  const ListPtr list = list_with_files(pb_item_list_album_insert_data, {5, 6});

  fill(list, pb_item_list_album_insert_data, 0, 1, 1);

  EXPECT_THAT(log_of(kAlbumName),
              ElementsAre(" album list:  (0,1) row=1\n", "**** /pictures/6.jpg\n"));
}

TEST_F(InsertAlbumListRow, TakesTheFieldsOfTheFileRecord) {
  serve(10);
  item_list_test::serve_web_id(G_GINT64_CONSTANT(0x30000002C));
  fake::platform().fm_svc_mb_get_item_by_database_index = [](gint id, FmFileRecord *record,
                                                             gint *) {
    *record = {};
    record->item = item_list_test::file(id);
    record->item.attribute = 8;
    record->item.media_type = 2;
    return TRUE;
  };
  const ListPtr list = list_with_files(pb_item_list_album_insert_data, {5});

  const Row row = read_row(list, 0);

  ASSERT_TRUE(row.item);
  EXPECT_EQ(row.item->id, 5);
  EXPECT_STREQ(row.item->filename, "/pictures/5.jpg");
  EXPECT_STREQ(row.item->thumb_path, "/thumbnails/5.jpg");
  EXPECT_EQ(row.item->attr, 8);
  EXPECT_STREQ(row.item->extension, "jpg");
  EXPECT_EQ(row.item->media_type, 2);
  EXPECT_EQ(row.item->nfid, 0x2C);
  EXPECT_EQ(row.item->album_id, 77);
}

TEST_F(InsertAlbumListRow, SetsTheColumns) {
  serve(10);
  const ListPtr list = list_with_files(pb_item_list_album_insert_data, {5, 6});

  const Row row = read_row(list, 1);

  EXPECT_FALSE(row.has_title);
  EXPECT_EQ(row.index, 1);
  EXPECT_EQ(item_list_test::source_of(row.pixbuf), "/thumbnails/6.jpg");
}

TEST_F(InsertAlbumListRow, LoadsAThumbnailThatDoesNotLieReady) {
  serve(10);
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [](const gchar *, gint, gint) {
    return static_cast<GdkPixbuf *>(nullptr);
  };
  const ListPtr list = list_with_files(pb_item_list_album_insert_data, {5});

  EXPECT_EQ(item_list_test::source_of(read_row(list, 0).pixbuf), "/pictures/5.jpg");
}

TEST_F(InsertAlbumListRow, LeavesTheRowWhenTheMediaRecordCannotBeRead) {
  serve(10);
  fake::platform().fm_svc_mb_get_record_by_index = [](gint, FmMediaRecord *, gint *) {
    return FALSE;
  };
  const ListPtr list = list_with_files(pb_item_list_album_insert_data, {5});

  EXPECT_EQ(read_row(list, 0).item.get(), nullptr);
}

TEST_F(InsertAlbumListRow, LeavesTheRowWhenTheFileRecordCannotBeRead) {
  serve(10);
  fake::platform().fm_svc_mb_get_item_by_database_index = [](gint, FmFileRecord *, gint *) {
    return FALSE;
  };
  const ListPtr list = list_with_files(pb_item_list_album_insert_data, {5});

  EXPECT_EQ(read_row(list, 0).item.get(), nullptr);
}

TEST_F(InsertAlbumListRow, IgnoresARowBehindTheLastFile) {
  serve(10);
  const ListPtr list = list_with_files(pb_item_list_album_insert_data, {5});

  fill(list, pb_item_list_album_insert_data, 0, 1, 1);

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(InsertAlbumListRow, FetchesTheFilesOfTheAlbumWhenNoneAreHeld) {
  serve(10);
  item_list_test::serve_album({5, 6});
  pb_app_common_set_album_filter_sort_type(4, -1);
  const ListPtr list = bare_list(pb_item_list_album_insert_data, 2);
  private_of(list).album_id = 77;

  fill(list, pb_item_list_album_insert_data, 0, 1, 1);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"),
              ElementsAre("fm_svc_mb_album_get_all_files_ex(77, 4, 3)"));
  EXPECT_THAT(log_of(kAlbumName), Contains("album list file count = 2\n"));
  EXPECT_EQ(pb_item_list_get_length(list.get()), 2);
}

TEST_F(InsertAlbumListRow, LogsThatItCannotFetchThem) {
  fake::platform().fm_svc_mb_album_get_all_files_ex = [](gint, gint, gint, FmFileList *, gint *) {
    return FALSE;
  };
  const ListPtr list = bare_list(pb_item_list_album_insert_data, 2);

  fill(list, pb_item_list_album_insert_data, 0, 1, 1);

  EXPECT_THAT(log_of(kAlbumName),
              Contains("  [Media Manager - TestApp] : fm_svc_mb_album_get_all_files failed  \n"));
}

using InsertShareRow = ItemListTest;
constexpr const char *kShareName = "pb_item_list_share_insert_data";

TEST_F(InsertShareRow, ShowsAnAlbumInCategoryZero) {
  const ListPtr list = bare_list(pb_item_list_share_insert_data, 1, 0);
  FmAlbumRecord album = fake::make_album(7, "Holiday", 5);
  fake::set_text(album.cover_path, "/covers/7.jpg");
  private_of(list).records = pb::item_list::RecordList(fake::record_list<FmAlbumRecord>({album}),
                                                       pb::item_list::RecordKind::kAlbums);

  const Row row = read_row(list, 0);

  ASSERT_TRUE(row.item);
  EXPECT_EQ(row.item->is_cluster, 1);
  EXPECT_STREQ(row.item->name, "Holiday");
  EXPECT_EQ(item_list_test::source_of(row.pixbuf), "/covers/7.jpg");
}

TEST_F(InsertShareRow, FetchesTheAlbumsWithAWebAlbumWhenNoneAreHeld) {
  fake::platform().fm_svc_mb_get_all_albums_ex = [](gint, guint32, GList **albums, gint *) {
    *albums = fake::record_list<FmAlbumRecord>(
        {fake::make_album(1, "local", 0), fake::make_album(2, "web", 5)});
    return TRUE;
  };
  const ListPtr list = bare_list(pb_item_list_share_insert_data, 1, 0);

  EXPECT_STREQ(read_row(list, 0).item->name, "web");

  take_glib_warnings();  // of a cover that is not there
  EXPECT_THAT(log_of(kShareName), Contains("album list record count = 1\n"));
}

TEST_F(InsertShareRow, ShowsAnAlbumFileInCategoryThree) {
  serve(10);
  const ListPtr list = list_with_files(pb_item_list_share_insert_data, {5}, 3);

  const Row row = read_row(list, 0);

  ASSERT_TRUE(row.item);
  EXPECT_EQ(row.item->id, 5);
  EXPECT_EQ(row.item->album_id, 77);
}

TEST_F(InsertShareRow, LoadsTheThumbnailOfAnAlbumFile) {
  serve(10);
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [](const gchar *, gint, gint) {
    return static_cast<GdkPixbuf *>(nullptr);
  };
  const ListPtr list = list_with_files(pb_item_list_share_insert_data, {5}, 3);

  EXPECT_EQ(item_list_test::source_of(read_row(list, 0).pixbuf), "/pictures/5.jpg");
}

TEST_F(InsertShareRow, FetchesTheFilesThatCanBeSharedWhenNoneAreHeld) {
  serve(10);
  item_list_test::serve_album({5, 6});
  fake::platform().fm_svc_mb_get_record_by_index = [](gint id, FmMediaRecord *record, gint *) {
    *record = {};
    record->nfid = id == 6 ? 60 : 0;
    return TRUE;
  };
  const ListPtr list = bare_list(pb_item_list_share_insert_data, 1, 3);
  private_of(list).album_id = 77;

  EXPECT_EQ(read_row(list, 0).item->id, 6);

  EXPECT_THAT(log_of(kShareName), Contains("album store share list file count = 1\n"));
}

TEST_F(InsertShareRow, ShowsAFileInAnyOtherCategory) {
  const ListPtr list = list_with_records(pb_item_list_share_insert_data, 5, 1);

  const Row row = read_row(list, 2);

  ASSERT_TRUE(row.item);
  EXPECT_EQ(row.item->id, 3);
  EXPECT_EQ(item_list_test::source_of(row.pixbuf), "/thumbnails/3.jpg");
}

TEST_F(InsertShareRow, FetchesTheFilesWithAWebCopyWhenNoneAreHeld) {
  serve(10);
  fake::platform().fm_svc_mb_get_record_by_index = [](gint id, FmMediaRecord *record, gint *) {
    *record = {};
    record->nfid = id == 4 ? 40 : 0;
    return TRUE;
  };
  const ListPtr list = bare_list(pb_item_list_share_insert_data, 1, 2);

  EXPECT_EQ(read_row(list, 0).item->id, 4);

  EXPECT_THAT(log_of(kShareName), Contains("All/Camera share list record count=1\n"));
}

}  // namespace

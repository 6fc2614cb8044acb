#include "fixture.hpp"

namespace {

using split_list_test::ids_of;
using split_list_test::log_of;
using split_list_test::numbers_of;
using split_list_test::pending_of;
using split_list_test::private_of;
using split_list_test::read_row;
using split_list_test::record;
using split_list_test::rows_of;
using split_list_test::SplitListTest;
using split_list_test::SplitPtr;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

SplitPtr get_list(const SplitPtr &previous = nullptr) {
  return SplitPtr::adopt(pb_split_get_list(previous.get()));
}
SplitPtr get_filter_list() { return SplitPtr::adopt(pb_split_get_filter_list(nullptr)); }
SplitPtr get_share_list(gint category, gint album = 0, gint sorted = 0) {
  return SplitPtr::adopt(pb_split_get_share_list(category, album, sorted));
}
SplitPtr get_contents(gint album) {
  return SplitPtr::adopt(pb_split_get_album_contents_list(album));
}
SplitPtr get_web_only() { return SplitPtr::adopt(pb_split_get_server_only_share_list()); }

FmVeskFileRecord web_file(gint64 nfid, gint database_index = 0) {
  FmVeskFileRecord web{};
  web.nfid = nfid;
  web.database_index = database_index;
  web.attribute = 6;
  fake::set_text(web.name, "web-" + std::to_string(nfid));
  fake::set_text(web.thumbnail_path, "/covers/" + std::to_string(nfid));
  fake::set_text(web.bytes_url, "http://bytes/" + std::to_string(nfid));
  return web;
}

/// Lets the server have every file; odd web ids above 1000 have the local copy of the id less
/// 1000.
void serve_web_files() {
  fake::platform().fm_svc_vesk_get_vesk_file = [](gint64 nfid, FmVeskFileRecord *web, gint *) {
    const bool local = nfid > 1000 && nfid % 2 == 1;
    *web = web_file(nfid, local ? static_cast<gint>(nfid) - 1000 : 0);
    return TRUE;
  };
}

using SplitGetList = SplitListTest;

TEST_F(SplitGetList, HasARowForEachFile) {
  split_list_test::serve(3);

  const SplitPtr list = get_list();

  EXPECT_EQ(pb_split_list_get_length(list.get()), 3);
  EXPECT_THAT(ids_of(list), ElementsAre(1, 2, 3));
  EXPECT_THAT(numbers_of(list), ElementsAre(0, 1, 2));
  EXPECT_FALSE(read_row(list, 0).has_title);
}

TEST_F(SplitGetList, GivesOneReference) {
  split_list_test::serve(1);

  const SplitPtr list = get_list();

  EXPECT_EQ(item_list_test::references(list.get()), 1U);
}

TEST_F(SplitGetList, AsksInTheSortAndFilterOfTheSettings) {
  split_list_test::serve(3);
  pb_app_common_set_filter_sort_type(5, 16);
  fake::take_calls();

  const SplitPtr list = get_list();

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_sub_file_count"),
              ElementsAre("fm_svc_mb_get_all_sub_file_count(\"/\", 2, 19)"));
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"),
              ElementsAre("fm_svc_mb_get_list(\"/\", 2, 5, 19, 0, 0, 2)"));
}

TEST_F(SplitGetList, IgnoresTheFilterType) {
  split_list_test::serve(1);
  pb_split_set_filter_type(1);

  const SplitPtr list = get_list();

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_sub_file_count"),
              ElementsAre("fm_svc_mb_get_all_sub_file_count(\"/\", 2, 3)"));
}

TEST_F(SplitGetList, AsksForNoRecordsWhenThereAreNone) {
  split_list_test::serve(0);

  const SplitPtr list = get_list();

  EXPECT_EQ(pb_split_list_get_length(list.get()), 0);
  EXPECT_EQ(rows_of(list), 0);
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), IsEmpty());
  EXPECT_THAT(fake::pending_idles(), IsEmpty());
}

TEST_F(SplitGetList, HoldsTheFirstPageAtOnce) {
  split_list_test::serve(250);

  const SplitPtr list = get_list();

  EXPECT_EQ(pb_split_list_get_length(list.get()), 250);
  EXPECT_EQ(private_of(list).record_first, 0);
  EXPECT_EQ(private_of(list).record_last, 99);
  EXPECT_GE(rows_of(list), 27);
  EXPECT_LE(rows_of(list), 100);
  EXPECT_EQ(pending_of(split_list_test::kFill), 1);
}

TEST_F(SplitGetList, FetchesTheOtherPagesFromTheIdle) {
  split_list_test::serve(250);
  const SplitPtr list = get_list();

  fake::run_idles();

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"),
              ElementsAre("fm_svc_mb_get_list(\"/\", 2, 4, 3, 0, 0, 99)",
                          "fm_svc_mb_get_list(\"/\", 2, 4, 3, 0, 100, 199)",
                          "fm_svc_mb_get_list(\"/\", 2, 4, 3, 0, 200, 249)"));
  ASSERT_EQ(rows_of(list), 250);
  EXPECT_EQ(read_row(list, 249).item->id, 250);
  EXPECT_EQ(read_row(list, 249).index, 249);
  EXPECT_EQ(private_of(list).record_last, 249);
}

TEST_F(SplitGetList, MakesAHundredRowsAnIdleAtMost) {
  split_list_test::serve(1000);
  const SplitPtr list = get_list();

  for (gint rows = rows_of(list); fake::run_next_idle(); rows = rows_of(list)) {
    ASSERT_LE(rows_of(list) - rows, 100);
  }

  EXPECT_EQ(rows_of(list), 1000);
}

TEST_F(SplitGetList, SettlesOnTheFilesThatAreThere) {
  split_list_test::serve(120);
  fake::platform().fm_svc_mb_get_all_sub_file_count = [](const gchar *, gint, gint64, gint *count,
                                                         gint *) {
    *count = 500;
    return TRUE;
  };
  const SplitPtr list = get_list();

  fake::run_idles();

  EXPECT_EQ(pb_split_list_get_length(list.get()), 120);
  EXPECT_EQ(rows_of(list), 120);
}

TEST_F(SplitGetList, TakesNoMoreFilesThanItAskedFor) {
  split_list_test::serve(2);
  fake::platform().fm_svc_mb_get_list = [](const gchar *, gint, gint, gint64, gint, GList **list,
                                           gint, gint, gint *) {
    *list = fake::record_list<MbItem>({record(1, 0), record(2, 1), record(3, 2)});
    return TRUE;
  };

  const SplitPtr list = get_list();

  EXPECT_THAT(ids_of(list), ElementsAre(1, 2));
  EXPECT_EQ(pb_split_list_get_length(list.get()), 2);
}

TEST_F(SplitGetList, IsEmptyWhenTheServiceFails) {
  split_list_test::serve(2);
  fake::platform().fm_svc_mb_get_list = [](const gchar *, gint, gint, gint64, gint, GList **, gint,
                                           gint, gint *) { return FALSE; };

  const SplitPtr list = get_list();

  EXPECT_EQ(pb_split_list_get_length(list.get()), 0);
  EXPECT_EQ(rows_of(list), 0);
}

TEST_F(SplitGetList, TakesTheFieldsOfTheRecord) {
  split_list_test::serve(1);
  fake::platform().fm_svc_mb_get_list = [](const gchar *, gint, gint, gint64, gint, GList **list,
                                           gint, gint, gint *) {
    MbItem made = record(8, 0, 44, 2);
    made.attribute = 5;
    made.flags = 1;
    made.unmarked = 0;
    *list = fake::record_list<MbItem>({made});
    return TRUE;
  };

  const SplitPtr list = get_list();

  const PbItem *item = read_row(list, 0).item.get();
  EXPECT_EQ(item->id, 8);
  EXPECT_STREQ(item->filename, "/pictures/8.jpg");
  EXPECT_STREQ(item->thumb_path, "/thumbnails/8.jpg");
  EXPECT_STREQ(item->extension, "jpg");
  EXPECT_EQ(item->attr, 5);
  EXPECT_EQ(item->media_type, 2);
  EXPECT_EQ(item->nfid, 44);
  EXPECT_EQ(item->favourite, 1);
  EXPECT_EQ(item->mark, 1);
}

TEST_F(SplitGetList, AsksTheServiceForNoSingleFile) {
  split_list_test::serve(30);

  const SplitPtr list = get_list();

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_record_by_index"), IsEmpty());
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_item_by_database_index"), IsEmpty());
}

TEST_F(SplitGetList, ReadsFilesByTheirWebIdWhenThatIsTheIdType) {
  serve_web_files();
  pb_split_set_id_type(PB_SPLIT_ID_WEB);
  split_list_test::serve(1);
  fake::platform().fm_svc_mb_get_list = [](const gchar *, gint, gint, gint64, gint, GList **list,
                                           gint, gint, gint *) {
    *list = fake::record_list<MbItem>({record(8, 0, 44)});
    return TRUE;
  };

  const SplitPtr list = get_list();

  EXPECT_STREQ(read_row(list, 0).item->aux_text, "http://bytes/44");
}

TEST_F(SplitGetList, MakesTheItemOfItsRecordWhenTheServerIsSilent) {
  pb_split_set_id_type(PB_SPLIT_ID_WEB);
  split_list_test::serve(1);
  fake::platform().fm_svc_vesk_get_vesk_file = [](gint64, FmVeskFileRecord *, gint *) {
    return FALSE;
  };
  fake::platform().fm_svc_mb_get_list = [](const gchar *, gint, gint, gint64, gint, GList **list,
                                           gint, gint, gint *) {
    *list = fake::record_list<MbItem>({record(8, 0, 44)});
    return TRUE;
  };

  const SplitPtr list = get_list();

  EXPECT_THAT(ids_of(list), ElementsAre(8));
}

TEST_F(SplitGetList, HasThePlaceholderInEveryRow) {
  split_list_test::serve(3);

  const SplitPtr list = get_list();

  EXPECT_THAT(split_list_test::rows_with_thumbnails(list), IsEmpty());
}

TEST_F(SplitGetList, ListsAlbumsForTheAlbumView) {
  split_list_test::serve_albums({fake::make_album(5, "Sea"), fake::make_album(6, "Sky", 77)});
  pb_split_set_view_type(PB_SPLIT_VIEW_ALBUMS);

  const SplitPtr list = get_list();

  EXPECT_EQ(pb_split_list_get_length(list.get()), 2);
  ASSERT_EQ(rows_of(list), 2);
  EXPECT_STREQ(read_row(list, 0).item->name, "Sea");
  EXPECT_EQ(read_row(list, 1).item->album_id, 6);
  EXPECT_EQ(read_row(list, 1).index, 1);
  EXPECT_EQ(private_of(list).record_list, nullptr);
  EXPECT_EQ(pb_split_list_get_records(list.get()), nullptr);
}

TEST_F(SplitGetList, FreesTheAlbumsAtTheEnd) {
  split_list_test::serve_albums({fake::make_album(5, "Sea")});
  pb_split_set_view_type(PB_SPLIT_VIEW_ALBUMS);
  SplitPtr list = get_list();
  fake::take_calls();

  list.reset();

  EXPECT_THAT(fake::calls_of("fm_svc_mb_glist_free"), ElementsAre("fm_svc_mb_glist_free(1)"));
}

TEST_F(SplitGetList, HasManyAlbumsInTheEnd) {
  std::vector<FmAlbumRecord> albums;
  for (int id = 1; id <= 230; ++id) albums.push_back(fake::make_album(id, "album"));
  split_list_test::serve_albums(albums);
  pb_split_set_view_type(PB_SPLIT_VIEW_ALBUMS);
  const SplitPtr list = get_list();

  fake::run_idles();

  ASSERT_EQ(rows_of(list), 230);
  EXPECT_EQ(read_row(list, 229).item->album_id, 230);
}

TEST_F(SplitGetList, HasNoAlbumsWhenTheServiceFails) {
  fake::platform().fm_svc_mb_get_all_albums_ex = [](gint, guint32, GList **, gint *) {
    return FALSE;
  };
  pb_split_set_view_type(PB_SPLIT_VIEW_ALBUMS);

  const SplitPtr list = get_list();

  EXPECT_EQ(pb_split_list_get_length(list.get()), 0);
  EXPECT_THAT(log_of("pb_split_get_list"), Contains(HasSubstr("get_all_albums failed")));
}

TEST_F(SplitGetList, EndsTheWorkOfThePreviousList) {
  const split_list_test::View view;
  split_list_test::serve(500);
  const SplitPtr previous = get_list();

  split_list_test::serve(0);
  const SplitPtr list = get_list(previous);
  fake::run_idles();

  EXPECT_LE(rows_of(previous), 100);
  EXPECT_EQ(private_of(previous).vadjustment.get(), nullptr);
  EXPECT_EQ(private_of(previous).hpaned.get(), nullptr);
  view.scroll(700);
  EXPECT_EQ(pending_of(split_list_test::kRefresh), 1);
}

TEST_F(SplitGetList, RefusesAPreviousListOfAnotherType) {
  const auto foreign = pb::Ref<PbItem>::adopt(pb_item_new());

  EXPECT_EQ(pb_split_get_list(reinterpret_cast<PbSplitList *>(foreign.get())), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_split_get_list: assertion "
                          "'previous == nullptr || PB_IS_SPLIT_LIST(previous)' failed"));
}

TEST_F(SplitGetList, GivesAllItsRecords) {
  split_list_test::serve(250);
  const SplitPtr list = get_list();

  GList *records = pb_split_list_get_records(list.get());

  EXPECT_EQ(g_list_length(records), 250U);
  EXPECT_EQ(private_of(list).record_last, 249);
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"),
              ElementsAre(HasSubstr("0, 0, 99)"), HasSubstr("0, 100, 249)")));
}

TEST_F(SplitGetList, MakesTheRowsOfRecordsThatWereGivenOut) {
  split_list_test::serve(250);
  const SplitPtr list = get_list();
  pb_split_list_get_records(list.get());

  fake::run_idles();

  EXPECT_EQ(rows_of(list), 250);
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), testing::SizeIs(2));
}

TEST_F(SplitGetList, FetchesNothingForRecordsThatWereHandedOver) {
  split_list_test::serve(250);
  const SplitPtr list = get_list();
  split_list_test::Records records;
  records.head = pb_split_list_get_records(list.get());
  pb_split_clear_record_list(list.get());
  const gint rows = rows_of(list);
  fake::take_calls();

  fake::run_idles();

  EXPECT_EQ(rows_of(list), rows);
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), IsEmpty());
}

TEST_F(SplitGetList, GoesOnWithAFullRecordList) {
  split_list_test::serve(250);
  const SplitPtr list = get_list();

  EXPECT_TRUE(pb_split_get_full_record_list(list.get()));
  fake::run_idles();

  ASSERT_EQ(rows_of(list), 250);
  EXPECT_EQ(read_row(list, 249).item->id, 250);
  EXPECT_EQ(g_list_length(private_of(list).record_list), 250U);
}

class SplitFilterList : public SplitListTest,
                        public testing::WithParamInterface<std::tuple<gint, gint64, gint64>> {};

TEST_P(SplitFilterList, AsksForTheKindOfTheFilterType) {
  const auto [type, setting, asked] = GetParam();
  split_list_test::serve(1);
  pb_split_set_filter_type(type);
  pb_app_common_set_filter_sort_type(4, setting);
  fake::take_calls();

  const SplitPtr list = get_filter_list();

  EXPECT_THAT(
      fake::calls_of("fm_svc_mb_get_list"),
      ElementsAre("fm_svc_mb_get_list(\"/\", 2, 4, " + std::to_string(asked) + ", 0, 0, 0)"));
}

INSTANTIATE_TEST_SUITE_P(Types, SplitFilterList,
                         testing::Values(std::tuple{0, -1, 3}, std::tuple{1, -1, 1},
                                         std::tuple{2, -1, 2}, std::tuple{1, -2, 17},
                                         std::tuple{2, -2, 18}, std::tuple{3, -2, 19},
                                         std::tuple{1, 2, 1}, std::tuple{2, 0x20, 0x22}));

using SplitAlbumContents = SplitListTest;

TEST_F(SplitAlbumContents, ListsTheFilesInTheirOrder) {
  split_list_test::serve(9);
  item_list_test::serve_album({7, 3, 5});

  const SplitPtr list = get_contents(12);

  EXPECT_EQ(pb_split_list_get_length(list.get()), 3);
  EXPECT_THAT(ids_of(list), ElementsAre(7, 3, 5));
  EXPECT_EQ(read_row(list, 0).item->album_id, 12);
}

TEST_F(SplitAlbumContents, OrdersTheRecordsAsTheAlbum) {
  split_list_test::serve(9);
  item_list_test::serve_album({7, 3, 5});

  const SplitPtr list = get_contents(12);

  std::vector<gint> order;
  for (const auto *file : pb::each<MbItem>(pb_split_list_get_records(list.get()))) {
    order.push_back(file->db_idx);
  }
  EXPECT_THAT(order, ElementsAre(0, 1, 2));
}

TEST_F(SplitAlbumContents, AsksInTheSortAndFilterOfAlbums) {
  pb_app_common_set_album_filter_sort_type(5, -1);

  const SplitPtr list = get_contents(12);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"),
              ElementsAre("fm_svc_mb_album_get_all_files_ex(12, 5, 3)"));
}

TEST_F(SplitAlbumContents, AsksForTheKindOfTheFilterType) {
  pb_app_common_set_album_filter_sort_type(5, 0);
  pb_split_set_filter_type(2);

  const SplitPtr list = get_contents(12);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"),
              ElementsAre("fm_svc_mb_album_get_all_files_ex(12, 5, 2)"));
}

TEST_F(SplitAlbumContents, LeavesOutFilesThatAreGone) {
  split_list_test::serve(9);
  item_list_test::serve_album({7, 30, 5});

  const SplitPtr list = get_contents(12);

  EXPECT_THAT(ids_of(list), ElementsAre(7, 5));
  EXPECT_EQ(pb_split_list_get_length(list.get()), 2);
}

TEST_F(SplitAlbumContents, LeavesOutFilesThatCannotBeRead) {
  split_list_test::serve(9);
  item_list_test::serve_album({7});
  fake::platform().fm_svc_mb_get_item_by_database_index = [](gint, FmFileRecord *, gint *) {
    return FALSE;
  };

  const SplitPtr list = get_contents(12);

  EXPECT_EQ(pb_split_list_get_length(list.get()), 0);
}

TEST_F(SplitAlbumContents, HasFilesOfTheServer) {
  split_list_test::serve(9);
  serve_web_files();
  item_list_test::serve_album({7, 44}, {0, 1});

  const SplitPtr list = get_contents(12);

  const PbItem *item = read_row(list, 1).item.get();
  EXPECT_EQ(item->nfid, 44);
  EXPECT_EQ(item->id, 0);
  EXPECT_STREQ(item->filename, "web-44");
  EXPECT_STREQ(item->aux_text, "http://bytes/44");
  EXPECT_EQ(item->album_id, 12);
}

TEST_F(SplitAlbumContents, TakesTheLocalCopyOfAFileOfTheServer) {
  split_list_test::serve(9);
  serve_web_files();
  item_list_test::serve_album({1005}, {1});

  const SplitPtr list = get_contents(12);

  EXPECT_THAT(ids_of(list), ElementsAre(5));
  EXPECT_EQ(static_cast<MbItem *>(pb_split_list_get_records(list.get())->data)->nfid, 1005);
}

TEST_F(SplitAlbumContents, ReadsTheRestFromTheIdle) {
  split_list_test::serve(250);
  std::vector<gint64> ids;
  for (gint64 id = 250; id > 0; --id) ids.push_back(id);
  item_list_test::serve_album(ids);
  const SplitPtr list = get_contents(12);
  EXPECT_EQ(private_of(list).record_last, 99);

  fake::run_idles();

  ASSERT_EQ(rows_of(list), 250);
  EXPECT_EQ(read_row(list, 249).item->id, 1);
}

TEST_F(SplitAlbumContents, IsEmptyWhenTheServiceFails) {
  fake::platform().fm_svc_mb_album_get_all_files_ex = [](gint, gint, gint, FmFileList *, gint *) {
    return FALSE;
  };

  const SplitPtr list = get_contents(12);

  EXPECT_EQ(pb_split_list_get_length(list.get()), 0);
  EXPECT_THAT(log_of("pb_split_get_album_contents_list"),
              Contains("fm_svc_mb_album_get_all_files fail\n"));
}

using SplitServerOnly = SplitListTest;

void serve_web_only(const std::vector<gint64> &ids) {
  fake::platform().fm_svc_vesk_get_server_only_vesk_files_without_delete =
      [ids](gint64, FmFileList *list, gint *) {
        fake::fill_file_list(list, ids, std::vector<gint32>(ids.size(), FM_FILE_WEB_ONLY));
        return TRUE;
      };
}

TEST_F(SplitServerOnly, ListsTheFilesOfTheServer) {
  serve_web_files();
  serve_web_only({44, 46});

  const SplitPtr list = get_web_only();

  EXPECT_EQ(pb_split_list_get_length(list.get()), 2);
  EXPECT_EQ(read_row(list, 0).item->nfid, 44);
  EXPECT_STREQ(read_row(list, 1).item->thumb_path, "/covers/46");
  EXPECT_STREQ(read_row(list, 1).item->aux_text, "http://bytes/46");
}

TEST_F(SplitServerOnly, HasRecordsThatAreFoundByTheirWebId) {
  serve_web_files();
  serve_web_only({44, 46});
  pb_split_set_id_type(PB_SPLIT_ID_WEB);
  const SplitPtr list = get_web_only();
  split_list_test::Records unselected;
  split_list_test::Records selected;
  unselected.head = pb_split_list_get_records(list.get());
  pb_split_list_select_item(list.get(), &unselected.head, &selected.head, 1);

  EXPECT_EQ(pb_split_list_unselect_item(list.get(), &unselected.head, &selected.head, nullptr, 46),
            1);

  pb_split_clear_record_list(list.get());
}

TEST_F(SplitServerOnly, FillsItsRecords) {
  serve_web_files();
  serve_web_only({44});

  const SplitPtr list = get_web_only();

  const auto *file = static_cast<const MbItem *>(pb_split_list_get_records(list.get())->data);
  EXPECT_EQ(file->id, 0);
  EXPECT_EQ(file->nfid, 44);
  EXPECT_STREQ(file->path, "web-44");
  EXPECT_STREQ(file->thumbnail_path, "/covers/44");
  EXPECT_STREQ(file->extension, "jpg");
  EXPECT_EQ(file->attribute, 6);
}

TEST_F(SplitServerOnly, BearsTextsWithoutAnEnd) {
  serve_web_only({44});
  fake::platform().fm_svc_vesk_get_vesk_file = [](gint64 nfid, FmVeskFileRecord *web, gint *) {
    *web = web_file(nfid);
    std::fill(std::begin(web->name), std::end(web->name), 'x');
    return TRUE;
  };

  const SplitPtr list = get_web_only();

  const auto *file = static_cast<const MbItem *>(pb_split_list_get_records(list.get())->data);
  EXPECT_EQ(std::string(file->path), std::string(256, 'x'));
}

TEST_F(SplitServerOnly, IsEmptyWhenTheServiceFails) {
  fake::platform().fm_svc_vesk_get_server_only_vesk_files_without_delete =
      [](gint64, FmFileList *, gint *) { return FALSE; };

  const SplitPtr list = get_web_only();

  EXPECT_EQ(pb_split_list_get_length(list.get()), 0);
  EXPECT_THAT(log_of("pb_split_get_server_only_share_list"), Contains(HasSubstr("failed err")));
}

using SplitShareList = SplitListTest;

TEST_F(SplitShareList, ListsAlbumsThatTheServerHas) {
  split_list_test::serve_albums(
      {fake::make_album(5, "Sea"), fake::make_album(6, "Sky", 77), fake::make_album(7, "Sun", -1)});

  const SplitPtr list = get_share_list(0);

  EXPECT_EQ(pb_split_list_get_length(list.get()), 1);
  EXPECT_STREQ(read_row(list, 0).item->name, "Sky");
}

TEST_F(SplitShareList, ListsNoAlbumsWhenTheServiceFails) {
  fake::platform().fm_svc_mb_get_all_albums_ex = [](gint, guint32, GList **, gint *) {
    return FALSE;
  };

  const SplitPtr list = get_share_list(0);

  EXPECT_EQ(pb_split_list_get_length(list.get()), 0);
  EXPECT_THAT(log_of("pb_split_get_share_list"), Contains("fm_svc_mb_get_all_albums fail!\n"));
}

TEST_F(SplitShareList, ListsFilesOfAnAlbumThatTheServerHas) {
  split_list_test::serve(9);
  serve_web_files();
  item_list_test::serve_album({7, 44, 5}, {0, 1, 0});
  fake::platform().fm_svc_mb_get_record_by_index = [](gint id, FmMediaRecord *media, gint *) {
    *media = {};
    media->nfid = id == 5 ? 500 : 0;
    return TRUE;
  };

  const SplitPtr list = get_share_list(3, 12);

  ASSERT_EQ(pb_split_list_get_length(list.get()), 2);
  EXPECT_EQ(read_row(list, 0).item->nfid, 44);
  EXPECT_EQ(read_row(list, 1).item->id, 5);
}

TEST_F(SplitShareList, AsksNothingForAlbum0) {
  const SplitPtr list = get_share_list(3, 0);

  EXPECT_EQ(pb_split_list_get_length(list.get()), 0);
  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"), IsEmpty());
}

/// Files of which each other one has a copy on the server.
void serve_some_copies(gint count) {
  split_list_test::serve(count);
  fake::platform().fm_svc_mb_get_list = [](const gchar *, gint, gint, gint64, gint, GList **list,
                                           gint first, gint last, gint *) {
    std::vector<MbItem> records;
    for (gint row = first; row <= last; ++row) {
      records.push_back(record(row + 1, row, row % 2 == 0 ? row + 500 : -2));
    }
    *list = fake::record_list(records);
    return TRUE;
  };
}

TEST_F(SplitShareList, ListsFilesOfTheLibraryThatTheServerHas) {
  serve_some_copies(5);

  const SplitPtr list = get_share_list(2);

  EXPECT_EQ(pb_split_list_get_length(list.get()), 3);
  EXPECT_THAT(ids_of(list), ElementsAre(1, 3, 5));
  EXPECT_EQ(private_of(list).record_last, 2);
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"),
              ElementsAre("fm_svc_mb_get_list(\"/\", 2, 3, 3, 0, 0, 4)"));
}

TEST_F(SplitShareList, MakesManyRowsFromTheIdle) {
  serve_some_copies(700);
  const SplitPtr list = get_share_list(2);
  EXPECT_LE(rows_of(list), 100);

  fake::run_idles();

  EXPECT_EQ(rows_of(list), 350);
}

TEST_F(SplitShareList, TakesTheFilterOfTheSettingsWhenSorted) {
  serve_some_copies(1);
  pb_app_common_set_filter_sort_type(4, 0x23);

  const SplitPtr list = get_share_list(1, 0, 1);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(HasSubstr("2, 3, 35, 0, 0, 0)")));
}

TEST_F(SplitShareList, TakesFilesOfTheCameraForCategory1) {
  serve_some_copies(1);

  const SplitPtr list = get_share_list(1);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(HasSubstr("2, 3, 19, 0, 0, 0)")));
}

TEST_F(SplitShareList, TakesTheKindOfTheFilterType) {
  serve_some_copies(1);
  pb_split_set_filter_type(2);

  const SplitPtr list = get_share_list(1);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(HasSubstr("2, 3, 18, 0, 0, 0)")));
}

TEST_F(SplitShareList, LogsWhatItIsAskedFor) {
  const SplitPtr list = get_share_list(3, 0, 1);

  EXPECT_THAT(log_of("pb_split_get_share_list"),
              ElementsAre("cate_type=3, sorted=1\n", "album_id = 0\n"));
}

}  // namespace

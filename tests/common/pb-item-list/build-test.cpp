#include "fixture.hpp"

namespace {

using fake::Logged;
using item_list_test::is_connected;
using item_list_test::ItemListTest;
using item_list_test::ListPtr;
using item_list_test::log_of;
using item_list_test::new_list;
using item_list_test::private_of;
using item_list_test::serve;
using item_list_test::store_rows;
using item_list_test::View;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

const GCallback kInsert = G_CALLBACK(pb_item_list_insert_data);
constexpr const char *kName = "pb_item_list_build";

/// Fails the next call with an error code.
template <typename... Arguments>
auto failing(gint code) {
  return [code](Arguments..., gint *error) {
    *error = code;
    return FALSE;
  };
}

void serve_albums(const std::vector<FmAlbumRecord> &albums) {
  fake::platform().fm_svc_mb_get_all_albums_ex = [albums](gint, guint32, GList **list, gint *) {
    *list = fake::record_list(albums);
    return TRUE;
  };
}

void serve_web_only(const std::vector<gint64> &ids) {
  fake::platform().fm_svc_vesk_get_server_only_vesk_files_without_delete =
      [ids](gint64, FmFileList *list, gint *) {
        fake::fill_file_list(list, ids, std::vector<gint32>(ids.size(), FM_FILE_WEB_ONLY));
        return TRUE;
      };
}

using BuildItemList = ItemListTest;

TEST_F(BuildItemList, LogsTheCategory) {
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 4, 0);

  EXPECT_THAT(log_of(kName), Contains("category:4\n"));
}

TEST_F(BuildItemList, StoresTheCategory) {
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 5, 0);

  EXPECT_EQ(list->category, 5);
}

TEST_F(BuildItemList, WarnsAboutANullList) {
  EXPECT_EQ(pb_item_list_build(nullptr, 1, 0), 0);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_list_build: assertion 'PB_IS_ITEM_LIST(list)' failed"));
}

using BuildAlbums = ItemListTest;

TEST_F(BuildAlbums, AsksForAllAlbumsInOrderTwo) {
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 0, 0);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_albums_ex"),
              ElementsAre("fm_svc_mb_get_all_albums_ex(2, 0)"));
}

TEST_F(BuildAlbums, HidesWebAlbumsFromTheSignedOut) {
  mb_util_set_vesk_login_present(0);
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 0, 0);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_albums_ex"),
              ElementsAre("fm_svc_mb_get_all_albums_ex(2, 65536)"));
}

TEST_F(BuildAlbums, ShowsWebAlbumsWhileNobodyKnowsWhoIsSignedIn) {
  mb_util_set_vesk_login_present(PB_VESK_LOGIN_UNKNOWN);
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 0, 0);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_albums_ex"),
              ElementsAre("fm_svc_mb_get_all_albums_ex(2, 0)"));
}

TEST_F(BuildAlbums, HasARowForEachAlbum) {
  serve_albums({fake::make_album(1, "a"), fake::make_album(2, "b")});
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_build(list.get(), 0, 0), 2);

  EXPECT_EQ(pb_item_list_get_length(list.get()), 2);
  EXPECT_EQ(store_rows(list), 2);
}

TEST_F(BuildAlbums, LogsTheirNumberTwice) {
  serve_albums({fake::make_album(1, "a"), fake::make_album(2, "b")});
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 0, 0);

  EXPECT_THAT(log_of(kName),
              ElementsAre("category:0\n", "g_list_length:2\n", "album list record count = 2\n"));
}

TEST_F(BuildAlbums, ReplacesTheRecordsThatWereHeld) {
  serve_albums({fake::make_album(1, "a")});
  const ListPtr list = new_list();
  private_of(list).records = pb::item_list::RecordList(fake::record_list(item_list_test::files(5)));
  fake::take_calls();

  pb_item_list_build(list.get(), 0, 0);

  EXPECT_EQ(private_of(list).records.length(), 1);
  EXPECT_THAT(fake::calls_of("fm_svc_mb_glist_free"), ElementsAre("fm_svc_mb_glist_free(1)"));
}

TEST_F(BuildAlbums, LogsAFailure) {
  fake::platform().fm_svc_mb_get_all_albums_ex = failing<gint, guint32, GList **>(5);
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_build(list.get(), 0, 0), 0);

  EXPECT_THAT(log_of(kName),
              Contains("  [Media Manager - TestApp] : fm_svc_mb_get_all_albums failed  \n"));
  EXPECT_FALSE(item_list_test::has_handlers(list));
}

TEST_F(BuildAlbums, LogsThatThereAreNone) {
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_build(list.get(), 0, 0), 0);

  EXPECT_THAT(log_of(kName), Contains("  [Media Manager - TestApp] : album_list == NULL  \n"));
  EXPECT_FALSE(item_list_test::has_handlers(list));
}

using BuildAlbumFiles = ItemListTest;

TEST_F(BuildAlbumFiles, AsksInTheOrderAndFilterOfTheSettings) {
  pb_app_common_set_album_filter_sort_type(5, 2);
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 3, 77);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"),
              ElementsAre("fm_svc_mb_album_get_all_files_ex(77, 5, 2)"));
}

TEST_F(BuildAlbumFiles, TakesFilterMinusOneAsThree) {
  pb_app_common_set_album_filter_sort_type(2, -1);
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 3, 77);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"),
              ElementsAre("fm_svc_mb_album_get_all_files_ex(77, 2, 3)"));
}

TEST_F(BuildAlbumFiles, PassesFilterMinusTwoThrough) {
  pb_app_common_set_album_filter_sort_type(2, -2);
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 3, 77);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"),
              ElementsAre("fm_svc_mb_album_get_all_files_ex(77, 2, -2)"));
}

TEST_F(BuildAlbumFiles, HasARowForEachFile) {
  item_list_test::serve_album({4, 5, 6});
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_build(list.get(), 3, 77), 3);

  EXPECT_EQ(pb_item_list_get_length(list.get()), 3);
  EXPECT_EQ(store_rows(list), 3);
  EXPECT_EQ(private_of(list).files.id(1), 5);
}

TEST_F(BuildAlbumFiles, LogsTheirNumber) {
  item_list_test::serve_album({4, 5, 6});
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 3, 77);

  EXPECT_THAT(log_of(kName), ElementsAre("category:3\n", "album store list file count = 3\n"));
}

TEST_F(BuildAlbumFiles, StoresTheAlbum) {
  item_list_test::serve_album({4});
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 3, 77);

  EXPECT_EQ(private_of(list).album_id, 77);
}

TEST_F(BuildAlbumFiles, StoresTheLowWordOfTheWebAlbum) {
  item_list_test::serve_album({4});
  fake::platform().fm_svc_mb_get_album = [](gint, FmAlbumRecord *album, gint *) {
    album->naid = G_GINT64_CONSTANT(0x700000012);
    return TRUE;
  };
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 3, 77);

  EXPECT_EQ(private_of(list).album_web_id, 0x12);
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_album"), ElementsAre("fm_svc_mb_get_album(77)"));
}

TEST_F(BuildAlbumFiles, HasNoWebAlbumWhenTheAlbumCannotBeRead) {
  item_list_test::serve_album({4});
  fake::platform().fm_svc_mb_get_album = [](gint, FmAlbumRecord *album, gint *) {
    album->naid = 5;
    return FALSE;
  };
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_build(list.get(), 3, 77), 1);

  EXPECT_EQ(private_of(list).album_web_id, 0);
}

TEST_F(BuildAlbumFiles, IsEmptyForAnEmptyAlbum) {
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_build(list.get(), 3, 77), 0);

  EXPECT_FALSE(item_list_test::has_handlers(list));
  EXPECT_THAT(log_of(kName), ElementsAre("category:3\n"));
}

TEST_F(BuildAlbumFiles, LogsAFailure) {
  fake::platform().fm_svc_mb_album_get_all_files_ex = failing<gint, gint, gint, FmFileList *>(9);
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_build(list.get(), 3, 77), 0);

  EXPECT_THAT(log_of(kName),
              Contains("  [Media Manager - TestApp] : fm_svc_mb_album_get_all_files failed  \n"));
}

TEST_F(BuildAlbumFiles, DropsWhatAFailureLeavesBehind) {
  fake::platform().fm_svc_mb_album_get_all_files_ex = [](gint, gint, gint, FmFileList *list,
                                                         gint *) {
    fake::fill_file_list(list, {1, 2});
    return FALSE;
  };
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_build(list.get(), 3, 77), 0);

  EXPECT_TRUE(private_of(list).files.empty());
}

using BuildWebOnlyFiles = ItemListTest;

TEST_F(BuildWebOnlyFiles, AsksForTheFilesOfEveryWebAlbum) {
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 4, 0);

  EXPECT_THAT(fake::calls_of("fm_svc_vesk_get_server_only_vesk_files_without_delete"),
              ElementsAre("fm_svc_vesk_get_server_only_vesk_files_without_delete(-1)"));
}

TEST_F(BuildWebOnlyFiles, HasARowForEachFile) {
  serve_web_only({G_GINT64_CONSTANT(0x100000000), 9});
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_build(list.get(), 4, 0), 2);

  EXPECT_EQ(store_rows(list), 2);
  EXPECT_EQ(private_of(list).files.id(0), G_GINT64_CONSTANT(0x100000000));
}

TEST_F(BuildWebOnlyFiles, LogsTheirNumber) {
  serve_web_only({8, 9});
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 4, 0);

  EXPECT_THAT(log_of(kName), ElementsAre("category:4\n", "server only list file count = 2\n"));
}

TEST_F(BuildWebOnlyFiles, LogsTheErrorOfAFailure) {
  fake::platform().fm_svc_vesk_get_server_only_vesk_files_without_delete =
      failing<gint64, FmFileList *>(12);
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_build(list.get(), 4, 0), 0);

  EXPECT_THAT(log_of(kName),
              Contains("  [MB_service] : fm_svc_vesk_get_server_only_vesk_files_without_delete "
                       "failed err = 12  \n"));
}

TEST_F(BuildWebOnlyFiles, IsEmptyWithoutFiles) {
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_build(list.get(), 4, 0), 0);

  EXPECT_FALSE(item_list_test::has_handlers(list));
}

using BuildAllFiles = ItemListTest;

TEST_F(BuildAllFiles, LogsItsStepsInOrder) {
  serve(250);
  pb_app_common_set_filter_sort_type(4, -1);
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 1, 0);

  EXPECT_THAT(log_of(kName),
              ElementsAre("category:1\n", "======== pb_item_list_build ==========\n",
                          "sort=4, filter=-1\n", "All/Camera list total count =250\n",
                          "All/Camera record list created: (0, 99), count=100\n"));
}

TEST_F(BuildAllFiles, LogsTheLowWordOfTheFilter) {
  pb_app_common_set_filter_sort_type(4, G_GINT64_CONSTANT(0x300000007));
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 1, 0);

  EXPECT_THAT(log_of(kName), Contains("sort=4, filter=7\n"));
}

struct FilterCase {
  gint64 setting;
  gint64 used;
};

class BuildFilter : public ItemListTest, public testing::WithParamInterface<FilterCase> {};

TEST_P(BuildFilter, IsStoredAndPassedToTheService) {
  serve(1);
  pb_app_common_set_filter_sort_type(4, GetParam().setting);
  const ListPtr list = new_list();
  const std::string used = std::to_string(GetParam().used);

  pb_item_list_build(list.get(), 1, 0);

  EXPECT_EQ(private_of(list).filter, GetParam().used);
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_sub_file_count"),
              ElementsAre("fm_svc_mb_get_all_sub_file_count(\"/\", 2, " + used + ")"));
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"),
              ElementsAre("fm_svc_mb_get_list(\"/\", 2, 3, " + used + ", 0, 0, 99)"));
}

// A sentinel counts only when all of its 64 bits match.
INSTANTIATE_TEST_SUITE_P(
    Filters, BuildFilter,
    testing::Values(FilterCase{-1, 3}, FilterCase{-2, 0x13}, FilterCase{0, 0}, FilterCase{2, 2},
                    FilterCase{-3, -3},
                    FilterCase{G_GINT64_CONSTANT(0xFFFFFFFF), G_GINT64_CONSTANT(0xFFFFFFFF)},
                    FilterCase{G_GINT64_CONSTANT(0xFFFFFFFE), G_GINT64_CONSTANT(0xFFFFFFFE)}));

TEST_F(BuildAllFiles, FetchesInOrderThreeWhateverTheSettings) {
  serve(250);
  pb_app_common_set_filter_sort_type(0, 3);
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 2, 0);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"),
              ElementsAre("fm_svc_mb_get_list(\"/\", 2, 3, 3, 0, 0, 99)"));
}

TEST_F(BuildAllFiles, HasTheServicesTotalAsLength) {
  serve(250);
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_build(list.get(), 1, 0), 250);

  EXPECT_EQ(pb_item_list_get_length(list.get()), 250);
  EXPECT_EQ(store_rows(list), 250);
}

TEST_F(BuildAllFiles, HoldsTheFirstPage) {
  serve(250);
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 1, 0);

  EXPECT_EQ(private_of(list).records.length(), 100);
  EXPECT_EQ(private_of(list).page_start, 0);
  EXPECT_EQ(private_of(list).page_end, 99);
}

TEST_F(BuildAllFiles, HoldsAShortPage) {
  serve(5);
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 1, 0);

  EXPECT_EQ(private_of(list).page_end, 4);
  EXPECT_THAT(log_of(kName), Contains("All/Camera record list created: (0, 99), count=5\n"));
}

TEST_F(BuildAllFiles, HoldsNoMoreThanItAskedFor) {
  serve(250);
  fake::platform().fm_svc_mb_get_list = [](const gchar *, gint, gint, gint64, gint, GList **list,
                                           gint, gint, gint *) {
    *list = fake::record_list(item_list_test::files(150));
    return TRUE;
  };
  const ListPtr list = new_list();

  pb_item_list_build(list.get(), 1, 0);

  EXPECT_EQ(private_of(list).records.length(), 100);
}

TEST_F(BuildAllFiles, IsEmptyWithoutFiles) {
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_build(list.get(), 1, 0), 0);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), IsEmpty());
  EXPECT_FALSE(item_list_test::has_handlers(list));
}

TEST_F(BuildAllFiles, IsEmptyWhenTheCountFails) {
  fake::platform().fm_svc_mb_get_all_sub_file_count = [](const gchar *, gint, gint64, gint *count,
                                                         gint *) {
    *count = 12;
    return FALSE;
  };
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_build(list.get(), 1, 0), 0);

  EXPECT_THAT(log_of(kName), Contains("All/Camera list total count =0\n"));
}

TEST_F(BuildAllFiles, KeepsItsLengthWhenTheFirstPageFails) {
  serve(250);
  fake::platform().fm_svc_mb_get_list = [](const gchar *, gint, gint, gint64, gint, GList **, gint,
                                           gint, gint *) { return FALSE; };
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_build(list.get(), 1, 0), 250);

  EXPECT_TRUE(private_of(list).records.empty());
}

TEST_F(BuildAllFiles, StartsTheFirstFill) {
  serve(250);
  const View view;
  const ListPtr list = new_list();
  view.attach(list);

  pb_item_list_build(list.get(), 1, 0);

  EXPECT_THAT(log_of("pb_item_list_icon_refresh_when_start"), Contains("VLS init\n"));
  EXPECT_EQ(item_list_test::pending_refreshes().size(), 1U);
}

TEST_F(BuildItemList, ConnectsTheSignalsInEveryCategory) {
  serve(3);
  serve_albums({fake::make_album(1, "a")});
  serve_web_only({9});
  item_list_test::serve_album({1});
  for (const gint category : {-1, 0, 1, 2, 3, 4, 5}) {
    const ListPtr list = new_list();

    pb_item_list_build(list.get(), category, 77);

    EXPECT_TRUE(is_connected(list, "fill-cache", kInsert)) << category;
    EXPECT_EQ(fake::platform().fexplorer_connections, 0);
    g_signal_emit_by_name(list.get(), "initialize-cache", 0);
    EXPECT_EQ(fake::platform().fexplorer_connections, 1) << category;
    g_signal_emit_by_name(list.get(), "finalize-cache", 0);
    EXPECT_EQ(fake::platform().fexplorer_connections, 0) << category;
  }
}

TEST_F(BuildItemList, StartsTheFirstFillForAllFilesOnly) {
  serve_albums({fake::make_album(1, "a")});
  serve_web_only({9});
  item_list_test::serve_album({1});
  for (const gint category : {0, 3, 4}) {
    const ListPtr list = new_list();
    pb_item_list_build(list.get(), category, 77);
  }

  EXPECT_THAT(log_of("pb_item_list_icon_refresh_when_start"), IsEmpty());
}

TEST_F(BuildItemList, LeavesTheListEmptyWhenASecondBuildFails) {
  serve(250);
  const ListPtr list = new_list();
  pb_item_list_build(list.get(), 1, 0);

  EXPECT_EQ(pb_item_list_build(list.get(), 3, 77), 0);

  EXPECT_EQ(pb_item_list_get_length(list.get()), 0);
  EXPECT_EQ(store_rows(list), 0);
}

}  // namespace

#include <set>

#include "fixture.hpp"

namespace {

using item_list_test::file;
using item_list_test::files;
using item_list_test::has_handlers;
using item_list_test::is_connected;
using item_list_test::ItemListTest;
using item_list_test::ListPtr;
using item_list_test::log_of;
using item_list_test::new_list;
using item_list_test::private_of;
using item_list_test::read_row;
using item_list_test::serve;
using item_list_test::store_rows;
using item_list_test::View;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const GCallback kInsert = G_CALLBACK(pb_item_list_insert_data);
const GCallback kSub = G_CALLBACK(pb_item_list_sub_insert_data);
const GCallback kAlbum = G_CALLBACK(pb_item_list_album_insert_data);

ListPtr adopt(PbItemList *list) { return ListPtr::adopt(list); }

/// File ids as an application passes them.
class Selected {
 public:
  explicit Selected(std::initializer_list<gint> ids) {
    for (const gint id : ids) list_ = g_list_append(list_, GINT_TO_POINTER(id));
  }
  ~Selected() { g_list_free(list_); }
  Selected(const Selected &) = delete;
  Selected &operator=(const Selected &) = delete;
  [[nodiscard]] GList *get() const { return list_; }

 private:
  GList *list_ = nullptr;
};

std::vector<gint> held_ids(const ListPtr &list) {
  std::vector<gint> ids;
  for (const MbItem *record : pb::each<MbItem>(private_of(list).records.get())) {
    ids.push_back(record->id);
  }
  return ids;
}

std::string count_line(const std::string &filter) {
  return "fm_svc_mb_get_all_sub_file_count(\"/\", 2, " + filter + ")";
}

std::string list_line(gint sort, const std::string &filter, gint first, gint last) {
  return "fm_svc_mb_get_list(\"/\", 2, " + std::to_string(sort) + ", " + filter + ", 0, " +
         std::to_string(first) + ", " + std::to_string(last) + ")";
}

/// Lets the files of some ids have a web copy.
void serve_web_copies(const std::set<gint> &ids) {
  fake::platform().fm_svc_mb_get_record_by_index = [ids](gint id, FmMediaRecord *record, gint *) {
    *record = {};
    if (ids.contains(id)) record->nfid = 1000 + id;
    return TRUE;
  };
}

/// Whether both handlers of the database are connected.
bool follows_the_database(const ListPtr &list) {
  g_signal_emit_by_name(list.get(), "initialize-cache", 0);
  const bool connected = fake::platform().fexplorer_connections == 1;
  g_signal_emit_by_name(list.get(), "finalize-cache", 0);
  return connected && fake::platform().fexplorer_connections == 0;
}

using AlbumQuery = ItemListTest;

TEST_F(AlbumQuery, LogsItsEntryAndTheNumberOfFiles) {
  item_list_test::serve_album({5, 6});

  const ListPtr list = adopt(pb_item_get_album_list(77));

  EXPECT_THAT(log_of("pb_item_get_album_list"), ElementsAre("\n", "Album list record count=2\n"));
}

TEST_F(AlbumQuery, AsksInTheOrderAndFilterOfTheSettings) {
  pb_app_common_set_album_filter_sort_type(1, 2);

  const ListPtr list = adopt(pb_item_get_album_list(77));

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"),
              ElementsAre("fm_svc_mb_album_get_all_files_ex(77, 1, 2)"));
}

TEST_F(AlbumQuery, TakesFilterMinusOneAsThree) {
  pb_app_common_set_album_filter_sort_type(1, -1);

  const ListPtr list = adopt(pb_item_get_album_list(77));

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"),
              ElementsAre("fm_svc_mb_album_get_all_files_ex(77, 1, 3)"));
}

TEST_F(AlbumQuery, HoldsTheFilesOfTheAlbum) {
  item_list_test::serve_album({5, 6, 7});

  const ListPtr list = adopt(pb_item_get_album_list(77));

  EXPECT_EQ(pb_item_list_get_length(list.get()), 3);
  EXPECT_EQ(store_rows(list), 3);
  EXPECT_EQ(private_of(list).files.id(2), 7);
  EXPECT_EQ(private_of(list).album_id, 77);
}

TEST_F(AlbumQuery, HoldsTheLowWordOfTheWebAlbum) {
  item_list_test::serve_album({5});
  fake::platform().fm_svc_mb_get_album = [](gint, FmAlbumRecord *album, gint *) {
    album->naid = G_GINT64_CONSTANT(0x200000003);
    return TRUE;
  };

  const ListPtr list = adopt(pb_item_get_album_list(77));

  EXPECT_EQ(private_of(list).album_web_id, 3);
}

TEST_F(AlbumQuery, HoldsNoWebAlbumWhenTheAlbumCannotBeRead) {
  item_list_test::serve_album({5});
  fake::platform().fm_svc_mb_get_album = [](gint, FmAlbumRecord *album, gint *) {
    album->naid = 3;
    return FALSE;
  };

  const ListPtr list = adopt(pb_item_get_album_list(77));

  EXPECT_EQ(private_of(list).album_web_id, 0);
  EXPECT_EQ(pb_item_list_get_length(list.get()), 1);
}

TEST_F(AlbumQuery, ReadsTheAlbumIntoAClearedRecord) {
  item_list_test::serve_album({5});
  static gint64 before;
  fake::platform().fm_svc_mb_get_album = [](gint, FmAlbumRecord *album, gint *) {
    before = album->naid | album->album_id | album->name[0];
    return TRUE;
  };

  const ListPtr list = adopt(pb_item_get_album_list(77));

  EXPECT_EQ(before, 0);
}

TEST_F(AlbumQuery, ConnectsItsHandlers) {
  item_list_test::serve_album({5});

  const ListPtr list = adopt(pb_item_get_album_list(77));

  EXPECT_TRUE(is_connected(list, "fill-cache", kAlbum));
  EXPECT_TRUE(follows_the_database(list));
}

TEST_F(AlbumQuery, KeepsAHundredRowsFilled) {
  item_list_test::serve_album({5});

  const ListPtr list = adopt(pb_item_get_album_list(77));

  EXPECT_THAT(fake::calls_of("gtk_virtual_list_store_set_cache_size"),
              ElementsAre("gtk_virtual_list_store_set_cache_size(100)"));
}

TEST_F(AlbumQuery, IsBareForAnEmptyAlbum) {
  const ListPtr list = adopt(pb_item_get_album_list(77));

  EXPECT_FALSE(has_handlers(list));
  EXPECT_EQ(store_rows(list), 0);
  EXPECT_THAT(log_of("pb_item_get_album_list"), Contains("Album list record count=0\n"));
}

TEST_F(AlbumQuery, GoesOnWithAnEmptyListAfterAFailure) {
  fake::platform().fm_svc_mb_album_get_all_files_ex = [](gint, gint, gint, FmFileList *list,
                                                         gint *) {
    fake::fill_file_list(list, {1, 2});
    return FALSE;
  };

  const ListPtr list = adopt(pb_item_get_album_list(77));

  EXPECT_FALSE(has_handlers(list));
  EXPECT_THAT(
      log_of("pb_item_get_album_list"),
      ElementsAre("\n", "  [Media Manager - TestApp] : fm_svc_mb_album_get_all_files failed  \n",
                  "Album list record count=0\n"));
}

TEST_F(AlbumQuery, GivesOneReference) {
  const ListPtr list = adopt(pb_item_get_album_list(77));

  EXPECT_EQ(item_list_test::references(list.get()), 1U);
}

/// The three sub-list queries, which share most of their behaviour.
struct Query {
  const char *name;
  PbItemList *(*query)(PbItemList *previous);
};
void PrintTo(const Query &query, std::ostream *out) { *out << query.name; }

const Query kSubQueries[] = {
    {"pb_item_get_sub_list", pb_item_get_sub_list},
    {"pb_item_get_sub_sorted_list",
     [](PbItemList *previous) { return pb_item_get_sub_sorted_list(previous, nullptr); }},
    {"pb_item_get_sorted_sub_list",
     [](PbItemList *previous) { return pb_item_get_sorted_sub_list(previous, nullptr); }},
};

class SubQuery : public ItemListTest, public testing::WithParamInterface<Query> {
 protected:
  static ListPtr ask(PbItemList *previous = nullptr) { return adopt(GetParam().query(previous)); }
};

TEST_P(SubQuery, LogsItsEntry) {
  const ListPtr list = ask();

  EXPECT_EQ(log_of(GetParam().name).at(0), "\n");
}

TEST_P(SubQuery, HoldsAllFiles) {
  serve(250);

  const ListPtr list = ask();

  EXPECT_EQ(pb_item_list_get_length(list.get()), 250);
  EXPECT_EQ(store_rows(list), 250);
  EXPECT_EQ(private_of(list).records.length(), 250);
}

TEST_P(SubQuery, AsksForTheRowsUpToTheCountInTheOrderOfTheSettings) {
  serve(250);
  pb_app_common_set_filter_sort_type(5, 2);

  const ListPtr list = ask();

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_sub_file_count"), ElementsAre(count_line("2")));
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(list_line(5, "2", 0, 250)));
}

TEST_P(SubQuery, TakesFilterMinusOneAsThree) {
  pb_app_common_set_filter_sort_type(5, -1);

  const ListPtr list = ask();

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(list_line(5, "3", 0, 0)));
  EXPECT_THAT(log_of(GetParam().name), Contains(" FILTER = -1\n"));
}

TEST_P(SubQuery, TakesFilterMinusTwoAsNineteen) {
  pb_app_common_set_filter_sort_type(5, -2);

  const ListPtr list = ask();

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(list_line(5, "19", 0, 0)));
  EXPECT_THAT(log_of(GetParam().name), Contains(" FILTER = -2\n"));
}

TEST_P(SubQuery, TakesAnyOtherFilterAsItIs) {
  pb_app_common_set_filter_sort_type(5, G_GINT64_CONSTANT(0xFFFFFFFF));

  const ListPtr list = ask();

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(list_line(5, "4294967295", 0, 0)));
  EXPECT_THAT(log_of(GetParam().name), Contains(" FILTER \n"));
}

TEST_P(SubQuery, LogsTheNumberOfRecords) {
  serve(7);

  const ListPtr list = ask();

  EXPECT_THAT(log_of(GetParam().name), Contains("sub list record =7\n"));
}

TEST_P(SubQuery, ConnectsItsHandlers) {
  serve(7);

  const ListPtr list = ask();

  EXPECT_TRUE(is_connected(list, "fill-cache", kSub));
  EXPECT_TRUE(follows_the_database(list));
}

TEST_P(SubQuery, KeepsAHundredRowsFilled) {
  serve(7);

  const ListPtr list = ask();

  EXPECT_THAT(fake::calls_of("gtk_virtual_list_store_set_cache_size"),
              ElementsAre("gtk_virtual_list_store_set_cache_size(100)"));
}

TEST_P(SubQuery, DisconnectsThePreviousList) {
  serve(7);
  const ListPtr previous = ask();

  const ListPtr list = ask(previous.get());

  EXPECT_FALSE(is_connected(previous, "fill-cache", kSub));
  EXPECT_THAT(log_of("pb_item_sub_list_disconnect_signal"), SizeIs(1));
}

TEST_P(SubQuery, TakesNoReferenceOfThePreviousList) {
  const ListPtr previous = new_list();

  const ListPtr list = ask(previous.get());

  EXPECT_EQ(item_list_test::references(previous.get()), 1U);
}

TEST_P(SubQuery, GivesOneReference) {
  serve(7);

  const ListPtr list = ask();

  EXPECT_EQ(item_list_test::references(list.get()), 1U);
}

TEST_P(SubQuery, AsksForRowZeroWhenTheCountFails) {
  fake::platform().fm_svc_mb_get_all_sub_file_count = [](const gchar *, gint, gint64, gint *count,
                                                         gint *) {
    *count = 99;
    return FALSE;
  };

  const ListPtr list = ask();

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(list_line(4, "3", 0, 0)));
}

TEST_P(SubQuery, SurvivesAFailingList) {
  serve(7);
  fake::platform().fm_svc_mb_get_list = [](const gchar *, gint, gint, gint64, gint, GList **, gint,
                                           gint, gint *) { return FALSE; };

  const ListPtr list = ask();

  EXPECT_EQ(pb_item_list_get_length(list.get()), 0);
}

INSTANTIATE_TEST_SUITE_P(Queries, SubQuery, testing::ValuesIn(kSubQueries));

using SubListQuery = ItemListTest;

TEST_F(SubListQuery, IsBareWithoutFiles) {
  const ListPtr list = adopt(pb_item_get_sub_list(nullptr));

  EXPECT_FALSE(has_handlers(list));
  EXPECT_EQ(store_rows(list), 0);
}

using SubSortedQuery = ItemListTest;

TEST_F(SubSortedQuery, IsBareWithoutFiles) {
  const Selected selected{1};

  const ListPtr list = adopt(pb_item_get_sub_sorted_list(nullptr, selected.get()));

  EXPECT_FALSE(has_handlers(list));
}

TEST_F(SubSortedQuery, LeavesTheSelectedFilesOut) {
  serve(7);
  const Selected selected{5, 6};

  const ListPtr list = adopt(pb_item_get_sub_sorted_list(nullptr, selected.get()));

  EXPECT_THAT(held_ids(list), ElementsAre(1, 2, 3, 4, 7));
  EXPECT_EQ(pb_item_list_get_length(list.get()), 5);
  EXPECT_EQ(store_rows(list), 5);
}

TEST_F(SubSortedQuery, LeavesTheFirstAndTheLastFileOut) {
  serve(4);
  const Selected selected{4, 1};

  const ListPtr list = adopt(pb_item_get_sub_sorted_list(nullptr, selected.get()));

  EXPECT_THAT(held_ids(list), ElementsAre(2, 3));
}

TEST_F(SubSortedQuery, LogsEachRemovedFileInTheOrderOfTheList) {
  serve(7);
  const Selected selected{6, 99, 5};

  const ListPtr list = adopt(pb_item_get_sub_sorted_list(nullptr, selected.get()));

  EXPECT_THAT(log_of("pb_item_get_sub_sorted_list"),
              ElementsAre("\n", " FILTER \n", "sub list record =7\n", "********* Remove Id = 5\n",
                          "********* Remove Id = 6\n"));
}

TEST_F(SubSortedQuery, LogsThatNothingIsSelected) {
  serve(7);

  const ListPtr list = adopt(pb_item_get_sub_sorted_list(nullptr, nullptr));

  EXPECT_THAT(log_of("pb_item_get_sub_sorted_list"),
              Contains("************ SELETCTED LIST is NULL\n"));
}

TEST_F(SubSortedQuery, KeepsItsHandlersWhenEveryFileIsSelected) {
  serve(2);
  const Selected selected{1, 2};

  const ListPtr list = adopt(pb_item_get_sub_sorted_list(nullptr, selected.get()));

  EXPECT_TRUE(is_connected(list, "fill-cache", kSub));
  EXPECT_EQ(store_rows(list), 0);
}

TEST_F(SubSortedQuery, TakesNegativeIds) {
  fake::platform().fm_svc_mb_get_list = [](const gchar *, gint, gint, gint64, gint, GList **list,
                                           gint, gint, gint *) {
    *list = fake::record_list<MbItem>({file(-5), file(5)});
    return TRUE;
  };
  const Selected selected{-5};

  const ListPtr list = adopt(pb_item_get_sub_sorted_list(nullptr, selected.get()));

  EXPECT_THAT(held_ids(list), ElementsAre(5));
}

TEST_F(SubSortedQuery, LeavesTheSelectionAlone) {
  serve(7);
  const Selected selected{5, 6};

  const ListPtr list = adopt(pb_item_get_sub_sorted_list(nullptr, selected.get()));

  EXPECT_EQ(g_list_length(selected.get()), 2U);
}

using SortedSubQuery = ItemListTest;

TEST_F(SortedSubQuery, HasItsHandlersWithoutFiles) {
  const ListPtr list = adopt(pb_item_get_sorted_sub_list(nullptr, nullptr));

  EXPECT_TRUE(is_connected(list, "fill-cache", kSub));
  EXPECT_TRUE(follows_the_database(list));
  EXPECT_THAT(fake::calls_of("gtk_virtual_list_store_set_total_size"),
              ElementsAre("gtk_virtual_list_store_set_total_size(0)"));
}

TEST_F(SortedSubQuery, LeavesTheSelectedFilesOut) {
  serve(7);
  const Selected selected{5, 6};

  const ListPtr list = adopt(pb_item_get_sorted_sub_list(nullptr, selected.get()));

  EXPECT_THAT(held_ids(list), ElementsAre(1, 2, 3, 4, 7));
  EXPECT_EQ(pb_item_list_get_length(list.get()), 5);
  EXPECT_EQ(store_rows(list), 5);
}

TEST_F(SortedSubQuery, LogsTheCountTheSelectionAndTheRemovedFiles) {
  serve(7);
  const Selected selected{6, 99};

  const ListPtr list = adopt(pb_item_get_sorted_sub_list(nullptr, selected.get()));

  EXPECT_THAT(log_of("pb_item_get_sorted_sub_list"),
              ElementsAre("\n", " FILTER \n", "sub list record =7\n", " ####Count = 7 \n",
                          "create_album_selected_items =2\n", "selected id = 6\n",
                          "selected id = 99\n", "Id = 6\n"));
}

TEST_F(SortedSubQuery, LogsThatNothingIsSelected) {
  const ListPtr list = adopt(pb_item_get_sorted_sub_list(nullptr, nullptr));

  EXPECT_THAT(log_of("pb_item_get_sorted_sub_list"),
              Contains("************ SELETCTED LIST is NULL\n"));
}

using BackupQuery = ItemListTest;
constexpr const char *kBackupName = "pb_item_get_sub_backup_list";

TEST_F(BackupQuery, HoldsTheFilesWithAWebCopyInOrder) {
  serve(7);
  serve_web_copies({2, 4, 7});

  const ListPtr list = adopt(pb_item_get_sub_backup_list());

  EXPECT_THAT(held_ids(list), ElementsAre(2, 4, 7));
  EXPECT_EQ(pb_item_list_get_length(list.get()), 3);
  EXPECT_EQ(store_rows(list), 3);
}

TEST_F(BackupQuery, LogsTheWebIds) {
  serve(3);
  serve_web_copies({1, 2, 3});

  const ListPtr list = adopt(pb_item_get_sub_backup_list());

  EXPECT_THAT(log_of(kBackupName), ElementsAre("\n", "record.nfid  = 1001\n",
                                               "record.nfid  = 1002\n", "record.nfid  = 1003\n"));
}

TEST_F(BackupQuery, LogsThatSomeFilesHaveNoWebCopy) {
  serve(7);
  serve_web_copies({2, 4, 7});

  const ListPtr list = adopt(pb_item_get_sub_backup_list());

  EXPECT_THAT(log_of(kBackupName),
              Contains("manual backup list record list error, count=3, list len=7\n"));
}

TEST_F(BackupQuery, TestsTheSignedLowWordOfTheWebId) {
  serve(3);
  fake::platform().fm_svc_mb_get_record_by_index = [](gint id, FmMediaRecord *record, gint *) {
    *record = {};
    if (id == 1) record->nfid = G_GINT64_CONSTANT(0x100000000);
    if (id == 2) record->nfid = G_GINT64_CONSTANT(0x80000001);
    if (id == 3) record->nfid = G_GINT64_CONSTANT(-0x7FFFFFFFFFFFFFFF);
    return TRUE;
  };

  const ListPtr list = adopt(pb_item_get_sub_backup_list());

  EXPECT_THAT(held_ids(list), ElementsAre(3));
}

TEST_F(BackupQuery, SkipsFilesThatCannotBeRead) {
  serve(3);
  fake::platform().fm_svc_mb_get_record_by_index = [](gint id, FmMediaRecord *record, gint *) {
    record->nfid = 5;
    return id == 2 ? FALSE : TRUE;
  };

  const ListPtr list = adopt(pb_item_get_sub_backup_list());

  EXPECT_THAT(held_ids(list), ElementsAre(1, 3));
}

TEST_F(BackupQuery, ReadsEachFileIntoAClearedRecord) {
  serve(3);
  fake::platform().fm_svc_mb_get_record_by_index = [](gint id, FmMediaRecord *record, gint *) {
    if (id == 1) record->nfid = 5;
    return TRUE;
  };

  const ListPtr list = adopt(pb_item_get_sub_backup_list());

  EXPECT_THAT(held_ids(list), ElementsAre(1));
}

TEST_F(BackupQuery, TakesFilterMinusOneAsThree) {
  pb_app_common_set_filter_sort_type(5, -1);

  const ListPtr list = adopt(pb_item_get_sub_backup_list());

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_sub_file_count"), ElementsAre(count_line("3")));
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(list_line(5, "3", 0, 0)));
}

TEST_F(BackupQuery, PassesFilterMinusTwoThrough) {
  pb_app_common_set_filter_sort_type(5, -2);

  const ListPtr list = adopt(pb_item_get_sub_backup_list());

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_sub_file_count"), ElementsAre(count_line("-2")));
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(list_line(5, "-2", 0, 0)));
}

TEST_F(BackupQuery, ConnectsItsHandlersEvenWithoutFiles) {
  const ListPtr list = adopt(pb_item_get_sub_backup_list());

  EXPECT_TRUE(is_connected(list, "fill-cache", kSub));
  EXPECT_TRUE(follows_the_database(list));
  EXPECT_EQ(store_rows(list), 0);
}

using RefreshQuery = ItemListTest;
constexpr const char *kRefreshName = "pb_item_get_refresh_sub_list";

TEST_F(RefreshQuery, LogsItsStepsInOrder) {
  serve(250);
  pb_app_common_set_filter_sort_type(1, -2);

  const ListPtr list = adopt(pb_item_get_refresh_sub_list(nullptr));

  EXPECT_THAT(log_of(kRefreshName),
              ElementsAre("\n", "sort=1, filter=-2\n", "All/Camera list total count =250\n",
                          "All/Camera record list created: (0, 99), count=100\n"));
}

TEST_F(RefreshQuery, FetchesTheFirstPageInOrderThreeWhateverTheSettings) {
  serve(250);
  pb_app_common_set_filter_sort_type(1, 2);

  const ListPtr list = adopt(pb_item_get_refresh_sub_list(nullptr));

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_sub_file_count"), ElementsAre(count_line("2")));
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(list_line(3, "2", 0, 99)));
}

struct FilterCase {
  gint64 setting;
  gint64 used;
};

class RefreshQueryFilter : public ItemListTest, public testing::WithParamInterface<FilterCase> {};

TEST_P(RefreshQueryFilter, IsRemembered) {
  serve(250);
  pb_app_common_set_filter_sort_type(1, GetParam().setting);

  const ListPtr list = adopt(pb_item_get_refresh_sub_list(nullptr));

  EXPECT_EQ(private_of(list).filter, GetParam().used);
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"),
              ElementsAre(list_line(3, std::to_string(GetParam().used), 0, 99)));
}

INSTANTIATE_TEST_SUITE_P(Filters, RefreshQueryFilter,
                         testing::Values(FilterCase{-1, 3}, FilterCase{-2, 0x13},
                                         FilterCase{7, 7}));

TEST_F(RefreshQuery, IsOfCategoryTwo) {
  const ListPtr list = adopt(pb_item_get_refresh_sub_list(nullptr));

  EXPECT_EQ(list->category, 2);
}

TEST_F(RefreshQuery, HasTheServicesTotalAsLength) {
  serve(250);

  const ListPtr list = adopt(pb_item_get_refresh_sub_list(nullptr));

  EXPECT_EQ(pb_item_list_get_length(list.get()), 250);
  EXPECT_EQ(store_rows(list), 250);
}

TEST_F(RefreshQuery, HoldsTheFirstPage) {
  serve(250);

  const ListPtr list = adopt(pb_item_get_refresh_sub_list(nullptr));

  EXPECT_EQ(private_of(list).records.length(), 100);
  EXPECT_EQ(private_of(list).page_start, 0);
  EXPECT_EQ(private_of(list).page_end, 99);
}

TEST_F(RefreshQuery, ConnectsItsHandlers) {
  serve(250);

  const ListPtr list = adopt(pb_item_get_refresh_sub_list(nullptr));

  EXPECT_TRUE(is_connected(list, "fill-cache", kInsert));
  EXPECT_TRUE(follows_the_database(list));
}

TEST_F(RefreshQuery, IsBareWithoutFiles) {
  const ListPtr list = adopt(pb_item_get_refresh_sub_list(nullptr));

  EXPECT_FALSE(has_handlers(list));
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), IsEmpty());
}

TEST_F(RefreshQuery, AttachesTheViewOfTheBrowsingState) {
  const View view;
  pb_app_common_set_adjustment(view.widget.get(), view.adjustment.get());

  const ListPtr list = adopt(pb_item_get_refresh_sub_list(nullptr));

  EXPECT_EQ(private_of(list).icon_view.get(), GTK_ICON_VIEW(view.widget.get()));
  EXPECT_EQ(private_of(list).vadjustment.get(), view.adjustment.get());
  EXPECT_EQ(private_of(list).loads_thumbnails, 1);
}

TEST_F(RefreshQuery, StartsTheFirstFill) {
  serve(250);
  const View view;
  pb_app_common_set_adjustment(view.widget.get(), view.adjustment.get());

  const ListPtr list = adopt(pb_item_get_refresh_sub_list(nullptr));

  EXPECT_THAT(item_list_test::pending_refreshes(), SizeIs(1));
  EXPECT_EQ(read_row(list, 11).item->id, 12);
}

TEST_F(RefreshQuery, DisconnectsThePreviousSubList) {
  serve(5);
  const ListPtr previous = adopt(pb_item_get_sub_list(nullptr));

  const ListPtr list = adopt(pb_item_get_refresh_sub_list(previous.get()));

  EXPECT_FALSE(is_connected(previous, "fill-cache", kSub));
}

TEST_F(RefreshQuery, LeavesTheFillingOfAPreviousPagedList) {
  serve(5);
  const ListPtr previous = adopt(pb_item_get_refresh_sub_list(nullptr));

  const ListPtr list = adopt(pb_item_get_refresh_sub_list(previous.get()));

  EXPECT_TRUE(is_connected(previous, "fill-cache", kInsert));
}

}  // namespace

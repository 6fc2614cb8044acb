#include <climits>

#include "fixture.hpp"

namespace {

using fake::Logged;
using item_list_test::fill;
using item_list_test::ItemListTest;
using item_list_test::ListPtr;
using item_list_test::log_of;
using item_list_test::new_list;
using item_list_test::private_of;
using item_list_test::read_row;
using item_list_test::Row;
using item_list_test::serve;
using item_list_test::View;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr const char *kName = "pb_item_list_insert_data";

/// Asks for a row among others, as a view does.
void ask(const ListPtr &list, gint row) { fill(list, pb_item_list_insert_data, 0, 99, row); }
/// Asks for a row alone.
void ask_alone(const ListPtr &list, gint row) {
  fill(list, pb_item_list_insert_data, row, row, row);
}

std::string fetch_line(gint first, gint last) {
  return "fm_svc_mb_get_list(\"/\", 2, 3, 3, 0, " + std::to_string(first) + ", " +
         std::to_string(last) + ")";
}

/// The held range as text, with the number of records: "100-299 (200)".
std::string held(const ListPtr &list) {
  const PbItemListPrivate &priv = private_of(list);
  return std::to_string(priv.page_start) + "-" + std::to_string(priv.page_end) + " (" +
         std::to_string(priv.records.length()) + ")";
}

/// Whether each held record is the one of its row.
bool holds_the_right_records(const ListPtr &list) {
  const PbItemListPrivate &priv = private_of(list);
  for (gint row = priv.page_start; row <= priv.page_end; ++row) {
    const MbItem *record = pb::item_list::held_record(list.get(), row);
    if (record == nullptr || record->id != row + 1) return false;
  }
  return true;
}

/// A list of all files without a view that holds its first page.
ListPtr paged_list(gint total) {
  serve(total);
  ListPtr list = new_list();
  pb_item_list_build(list.get(), 1, 0);
  fake::take_calls();
  fake::take_log();
  return list;
}

/// A list that holds the given number of pages of 100 rows from a row on.
ListPtr list_holding(gint total, gint first, gint pages) {
  ListPtr list = paged_list(total);
  ask(list, first);
  for (gint page = 1; page < pages; ++page) ask(list, first + page * 100);
  fake::take_calls();
  fake::take_log();
  return list;
}

/// Lets the service have fewer files from here on than it counted.
void shrink(gint count) { serve(count); }

using InsertPagedRow = ItemListTest;

TEST_F(InsertPagedRow, LogsTheRequest) {
  const ListPtr list = paged_list(1000);

  fill(list, pb_item_list_insert_data, 10, 109, 42);

  EXPECT_THAT(log_of(kName), Contains("pb_item_list(1): (10,109), row=42\n"));
}

TEST_F(InsertPagedRow, MakesTheItemOfItsRow) {
  const ListPtr list = paged_list(1000);

  const Row row = read_row(list, 42);

  ASSERT_TRUE(row.item);
  EXPECT_EQ(row.item->id, 43);
  EXPECT_EQ(row.index, 42);
  EXPECT_FALSE(row.has_title);
}

TEST_F(InsertPagedRow, TakesTheFavouriteAndTheMark) {
  const ListPtr list = paged_list(1000);
  auto *record = private_of(list).records.at<MbItem>(42);
  record->flags = 1;
  record->unmarked = 0;

  const Row row = read_row(list, 42);

  EXPECT_EQ(row.item->favourite, 1);
  EXPECT_EQ(row.item->mark, 1);
}

TEST_F(InsertPagedRow, LeavesTheItemToTheRowAlone) {
  const ListPtr list = paged_list(1000);

  Row row = read_row(list, 42);

  EXPECT_EQ(item_list_test::references(row.item.get()), 2U);
}

TEST_F(InsertPagedRow, DoesNothingWhileTheFirstRowsAreFilled) {
  const ListPtr list = paged_list(1000);
  private_of(list).first_fill_busy = 1;

  ask(list, 42);

  EXPECT_THAT(fake::platform().log, IsEmpty());
  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(InsertPagedRow, IsBusyWhileItMakesARow) {
  const ListPtr list = paged_list(1000);
  static gint busy;
  static PbItemListPrivate *priv;
  busy = 0;
  priv = &private_of(list);
  fake::platform().fm_svc_mb_get_record_by_index = [](gint, FmMediaRecord *, gint *) {
    busy = priv->insertion_busy;
    return TRUE;
  };

  ask(list, 42);

  EXPECT_EQ(busy, 1);
  EXPECT_EQ(private_of(list).insertion_busy, 0);
}

TEST_F(InsertPagedRow, IsNotBusyAfterAFailure) {
  const ListPtr list = paged_list(1000);
  shrink(0);

  ask(list, 640);

  EXPECT_EQ(private_of(list).insertion_busy, 0);
}

TEST_F(InsertPagedRow, WarnsAboutANullStore) {
  pb_item_list_insert_data(nullptr, 0, 99, 0);

  EXPECT_THAT(take_glib_warnings(), ElementsAre("pb_item_list_insert_data: assertion "
                                                "'PB_IS_ITEM_LIST(PB_ITEM_LIST(store))' failed"));
}

TEST_F(InsertPagedRow, WarnsAboutAForeignStore) {
  const auto item = pb::Ref<PbItem>::adopt(pb_item_new());

  pb_item_list_insert_data(reinterpret_cast<GtkVirtualListStore *>(item.get()), 0, 99, 0);

  EXPECT_THAT(take_glib_warnings(), Contains("pb_item_list_insert_data: assertion "
                                             "'PB_IS_ITEM_LIST(PB_ITEM_LIST(store))' failed"));
}

TEST_F(InsertPagedRow, StopsWhenItHasNoRecord) {
  const ListPtr list = paged_list(1000);
  shrink(0);

  ask(list, 640);

  EXPECT_THAT(log_of(kName), Contains("mbitem NULL\n"));
  EXPECT_FALSE(gtk_virtual_list_store_row_is_filled(GTK_VIRTUAL_LIST_STORE(list.get()), 640));
}

class InsertAnyPagedCategory : public ItemListTest, public testing::WithParamInterface<gint> {};

TEST_P(InsertAnyPagedCategory, MakesTheItemOfItsRow) {
  serve(1000);
  const ListPtr list = new_list();
  pb_item_list_build(list.get(), GetParam(), 0);

  EXPECT_EQ(read_row(list, 42).item->id, 43);
}

INSTANTIATE_TEST_SUITE_P(Categories, InsertAnyPagedCategory, testing::Values(-1, 1, 2, 5));

using PagedPixbuf = ItemListTest;

/// Asks for a row with the view at a height, and reads the pixbuf that it gets.
pb::Ref<GdkPixbuf> pixbuf_of(const ListPtr &list, gint row) {
  ask(list, row);
  return read_row(list, row).pixbuf;
}

TEST_F(PagedPixbuf, IsTheThumbnailForRowsOnTheScreen) {
  const View view;
  const ListPtr list = paged_list(1000);
  view.attach(list);
  view.scroll(2 * 126);

  EXPECT_EQ(item_list_test::source_of(pixbuf_of(list, 6)), "/thumbnails/7.jpg");
  EXPECT_EQ(item_list_test::source_of(pixbuf_of(list, 20)), "/thumbnails/21.jpg");
}

TEST_F(PagedPixbuf, IsThePlaceholderForAllOtherRows) {
  const View view;
  const ListPtr list = paged_list(1000);
  view.attach(list);
  view.scroll(2 * 126);

  EXPECT_TRUE(item_list_test::is_placeholder(pixbuf_of(list, 5)));
  EXPECT_TRUE(item_list_test::is_placeholder(pixbuf_of(list, 21)));
}

TEST_F(PagedPixbuf, TakesTheTopMarginOff) {
  fake::platform().gtk_icon_view_get_top_margin = [](GtkIconView *) { return 10; };
  const View view;
  const ListPtr list = paged_list(1000);
  view.attach(list);
  view.scroll(2 * 126 + 9);

  EXPECT_EQ(item_list_test::source_of(pixbuf_of(list, 3)), "/thumbnails/4.jpg");
}

TEST_F(PagedPixbuf, CountsFromRowZeroWithoutAView) {
  const ListPtr list = paged_list(1000);

  EXPECT_EQ(item_list_test::source_of(pixbuf_of(list, 14)), "/thumbnails/15.jpg");
  EXPECT_TRUE(item_list_test::is_placeholder(pixbuf_of(list, 15)));
}

TEST_F(PagedPixbuf, CountsFromRowZeroWhenIconsHaveNoHeight) {
  const View view;
  fake::platform().gtk_icon_view_get_icon_height = [](GtkIconView *) { return -6; };
  const ListPtr list = paged_list(1000);
  view.attach(list);
  view.scroll(5000);

  EXPECT_EQ(item_list_test::source_of(pixbuf_of(list, 14)), "/thumbnails/15.jpg");
}

TEST_F(PagedPixbuf, LogsARowOnTheScreen) {
  const ListPtr list = paged_list(1000);

  ask(list, 3);

  EXPECT_THAT(log_of(kName), Contains("ROW=3\n"));
}

TEST_F(PagedPixbuf, LogsAnyOtherRow) {
  const ListPtr list = paged_list(1000);

  ask(list, 30);

  EXPECT_THAT(log_of(kName), Contains("ROW=30, set default image\n"));
}

TEST_F(PagedPixbuf, LoadsNothing) {
  const ListPtr list = paged_list(1000);

  ask(list, 3);
  ask(list, 30);

  EXPECT_THAT(fake::calls_of("fm_svc_thumb_mgr_get_thumbnail"), IsEmpty());
}

TEST_F(PagedPixbuf, IsNothingForARowOnTheScreenWithoutAThumbnailFile) {
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [](const gchar *, gint, gint) {
    return static_cast<GdkPixbuf *>(nullptr);
  };
  const ListPtr list = paged_list(1000);

  EXPECT_EQ(pixbuf_of(list, 3).get(), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_cache_get_thumbnail: assertion 'GDK_IS_PIXBUF(pixbuf)' failed"));
}

TEST_F(PagedPixbuf, LoadsThePlaceholderAgainWhenItIsGone) {
  const ListPtr list = paged_list(1000);
  private_of(list).default_pixbuf.reset();

  EXPECT_TRUE(item_list_test::is_placeholder(pixbuf_of(list, 30)));

  EXPECT_THAT(
      fake::platform().log,
      Contains(Logged(PB_LOG_ERROR, "[pb_item_list_insert_data]Error: default icon was freed!\n")));
}

using HeldRange = ItemListTest;

TEST_F(HeldRange, ServesARowWithoutAFetch) {
  const ListPtr list = paged_list(1000);

  ask(list, 99);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), IsEmpty());
}

TEST_F(HeldRange, GrowsDownwardForTheRowBehindIt) {
  const ListPtr list = paged_list(1000);

  ask(list, 150);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(fetch_line(100, 199)));
  EXPECT_EQ(held(list), "0-199 (200)");
  EXPECT_TRUE(holds_the_right_records(list));
}

TEST_F(HeldRange, LogsItsGrowthDownward) {
  const ListPtr list = paged_list(1000);

  ask(list, 150);

  EXPECT_THAT(log_of(kName), Contains("All/Camera record list upside refreshed: (0, 199)\n"));
}

TEST_F(HeldRange, DropsItsFirstPageWhenItGrowsDownwardAgain) {
  const ListPtr list = list_holding(1000, 0, 2);

  ask(list, 200);

  EXPECT_EQ(held(list), "100-299 (200)");
  EXPECT_TRUE(holds_the_right_records(list));
}

TEST_F(HeldRange, GrowsDownwardForARowAHundredBehindIt) {
  const ListPtr list = paged_list(1000);

  ask(list, 199);

  EXPECT_EQ(held(list), "0-199 (200)");
}

TEST_F(HeldRange, JumpsForARowFurtherBehindIt) {
  const ListPtr list = paged_list(1000);

  ask(list, 200);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(fetch_line(200, 299)));
  EXPECT_EQ(held(list), "200-299 (100)");
  EXPECT_TRUE(holds_the_right_records(list));
}

TEST_F(HeldRange, JumpsToThePageOfARowFarAway) {
  const ListPtr list = paged_list(1000);

  ask(list, 640);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(fetch_line(600, 699)));
  EXPECT_EQ(held(list), "600-699 (100)");
  EXPECT_TRUE(holds_the_right_records(list));
}

TEST_F(HeldRange, LogsAJump) {
  const ListPtr list = paged_list(1000);

  ask(list, 640);

  EXPECT_THAT(log_of(kName), Contains("All/Camera record list created: (600, 699)\n"));
}

TEST_F(HeldRange, FreesWhatItHeldBeforeAJump) {
  const ListPtr list = paged_list(1000);

  ask(list, 640);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_glist_free"), ElementsAre("fm_svc_mb_glist_free(1)"));
}

TEST_F(HeldRange, GrowsUpwardAndDropsItsLastPage) {
  const ListPtr list = list_holding(1000, 100, 2);
  ASSERT_EQ(held(list), "100-299 (200)");

  ask(list, 40);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(fetch_line(0, 99)));
  EXPECT_EQ(held(list), "0-199 (200)");
  EXPECT_TRUE(holds_the_right_records(list));
}

TEST_F(HeldRange, LogsItsGrowthUpward) {
  const ListPtr list = list_holding(1000, 100, 2);

  ask(list, 40);

  EXPECT_THAT(log_of(kName), Contains("All/Camera record list downside refreshed: (0, 199)\n"));
}

TEST_F(HeldRange, KeepsAWholePageWhenItGrowsUpward) {
  const ListPtr list = list_holding(1000, 600, 1);

  ask(list, 599);

  EXPECT_EQ(held(list), "500-699 (200)");
}

TEST_F(HeldRange, GrowsUpwardForARowAHundredBeforeIt) {
  const ListPtr list = list_holding(1000, 600, 1);

  ask(list, 500);

  EXPECT_EQ(held(list), "500-699 (200)");
}

TEST_F(HeldRange, JumpsForARowFurtherBeforeIt) {
  const ListPtr list = list_holding(1000, 600, 1);

  ask(list, 499);

  EXPECT_EQ(held(list), "400-499 (100)");
}

TEST_F(HeldRange, StopsAtRowZeroWhenItGrowsUpward) {
  const ListPtr list = list_holding(1000, 0, 1);
  PbItemListPrivate &priv = private_of(list);
  priv.records.drop_first(40);
  priv.page_start = 40;

  ask(list, 5);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(fetch_line(0, 39)));
  EXPECT_EQ(held(list), "0-99 (100)");
  EXPECT_TRUE(holds_the_right_records(list));
}

TEST_F(HeldRange, EndsWithTheLastFile) {
  const ListPtr list = paged_list(130);

  ask(list, 120);

  EXPECT_EQ(held(list), "0-129 (130)");
}

TEST_F(HeldRange, EndsWithTheLastFileAfterAJump) {
  const ListPtr list = paged_list(650);

  ask(list, 640);

  EXPECT_EQ(held(list), "600-649 (50)");
}

TEST_F(HeldRange, KeepsASinglePageWhenItIsExactlyAHundred) {
  const ListPtr list = paged_list(1000);

  ask(list, 100);

  EXPECT_EQ(held(list), "0-199 (200)");
}

TEST_F(HeldRange, IsCreatedWhenNothingIsHeld) {
  const ListPtr list = paged_list(1000);
  private_of(list).records.clear();

  ask(list, 42);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(fetch_line(0, 99)));
  EXPECT_EQ(held(list), "0-99 (100)");
  EXPECT_THAT(log_of(kName), Contains("All/Camera record list created: (0, 99)\n"));
}

TEST_F(HeldRange, IsNotExtendedWhenNothingIsHeld) {
  const ListPtr list = paged_list(1000);
  private_of(list).records.clear();

  ask(list, 150);

  EXPECT_EQ(held(list), "100-199 (100)");
}

TEST_F(HeldRange, TakesNoMoreThanItAskedFor) {
  const ListPtr list = paged_list(1000);
  fake::platform().fm_svc_mb_get_list = [](const gchar *, gint, gint, gint64, gint, GList **page,
                                           gint first, gint, gint *) {
    *page = fake::record_list(item_list_test::files(170, first + 1));
    return TRUE;
  };

  ask(list, 640);

  EXPECT_EQ(held(list), "600-699 (100)");
}

TEST_F(HeldRange, LogsAShortPageWithoutTheRow) {
  const ListPtr list = paged_list(1000);
  shrink(620);

  ask(list, 640);

  EXPECT_THAT(log_of(kName), Contains("Error: record page (600, 619), but row=640\n"));
  EXPECT_EQ(held(list), "600-619 (20)");
}

TEST_F(HeldRange, SaysNothingOfAShortPageWithTheRow) {
  const ListPtr list = paged_list(1000);
  shrink(641);

  ask(list, 640);

  EXPECT_THAT(log_of(kName), Not(Contains(testing::StartsWith("Error"))));
}

TEST_F(HeldRange, LogsAShortPageWhenItGrowsDownward) {
  const ListPtr list = paged_list(1000);
  shrink(120);

  ask(list, 150);

  EXPECT_THAT(log_of(kName), Contains("Error: record page (100, 119), but row=150\n"));
  EXPECT_THAT(log_of(kName), Contains("mbitem NULL\n"));
  EXPECT_EQ(held(list), "0-119 (120)");
}

TEST_F(HeldRange, StaysWhenNothingComesToGrowDownward) {
  const ListPtr list = list_holding(1000, 0, 2);
  shrink(0);

  ask(list, 250);

  EXPECT_THAT(log_of(kName), Contains("Error: record page (200, 199), but row=250\n"));
  EXPECT_EQ(held(list), "0-199 (200)");
}

TEST_F(HeldRange, RefusesRowsThatDoNotJoinIt) {
  const ListPtr list = list_holding(1000, 200, 1);
  shrink(150);

  ask(list, 120);

  EXPECT_THAT(log_of(kName), Contains("Error: record page (100, 149), record list (200, 299)\n"));
  EXPECT_EQ(held(list), "200-299 (100)");
}

TEST_F(HeldRange, MakesNoRowFromRowsThatDoNotJoinIt) {
  const ListPtr list = list_holding(1000, 200, 1);
  shrink(150);

  ask(list, 120);

  EXPECT_FALSE(gtk_virtual_list_store_row_is_filled(GTK_VIRTUAL_LIST_STORE(list.get()), 120));
  EXPECT_THAT(log_of(kName), Not(Contains("mbitem NULL\n")));
}

TEST_F(HeldRange, HoldsNothingAfterAJumpIntoNothing) {
  const ListPtr list = paged_list(1000);
  shrink(0);

  ask(list, 640);

  EXPECT_TRUE(private_of(list).records.empty());
  EXPECT_THAT(log_of(kName), Contains("Error: record page (600, 599), but row=640\n"));
}

TEST_F(HeldRange, RecoversAfterAJumpIntoNothing) {
  const ListPtr list = paged_list(1000);
  shrink(0);
  ask(list, 640);
  serve(1000);

  ask(list, 640);

  EXPECT_EQ(held(list), "600-699 (100)");
}

TEST_F(HeldRange, SurvivesAFailingFetch) {
  const ListPtr list = paged_list(1000);
  fake::platform().fm_svc_mb_get_list = [](const gchar *, gint, gint, gint64, gint, GList **, gint,
                                           gint, gint *error) {
    *error = 1;
    return FALSE;
  };

  ask(list, 640);

  EXPECT_THAT(log_of(kName), Contains("mbitem NULL\n"));
}

TEST_F(HeldRange, AsksTheServiceForNoRowBeforeTheFirst) {
  const ListPtr list = list_holding(1000, 0, 2);

  for (const gint row : {-1, -100, INT_MIN}) {
    ask(list, row);
    ask_alone(list, row);
  }

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), IsEmpty());
  EXPECT_EQ(held(list), "0-199 (200)");
}

TEST_F(HeldRange, SurvivesRowsThatNoListHas) {
  const ListPtr list = paged_list(1000);

  for (const gint row : {-1, INT_MIN, 1000, INT_MAX}) {
    ask(list, row);
    ask_alone(list, row);
  }

  EXPECT_TRUE(holds_the_right_records(list));
}

using SingleRow = ItemListTest;

TEST_F(SingleRow, IsTakenFromTheHeldRange) {
  const ListPtr list = paged_list(1000);

  ask_alone(list, 42);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), IsEmpty());
  EXPECT_EQ(read_row(list, 42).item->id, 43);
}

TEST_F(SingleRow, IsFetchedAloneOutsideTheHeldRange) {
  const ListPtr list = paged_list(1000);

  ask_alone(list, 500);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(fetch_line(500, 500)));
  EXPECT_EQ(read_row(list, 500).item->id, 501);
}

TEST_F(SingleRow, DoesNotMoveTheHeldRange) {
  const ListPtr list = paged_list(1000);

  ask_alone(list, 500);
  ask_alone(list, 100);

  EXPECT_EQ(held(list), "0-99 (100)");
}

TEST_F(SingleRow, IsLogged) {
  const ListPtr list = paged_list(1000);

  ask_alone(list, 500);

  EXPECT_THAT(log_of(kName), Contains("Get 1 record: (500, 500)\n"));
}

TEST_F(SingleRow, IsFreed) {
  const ListPtr list = paged_list(1000);

  ask_alone(list, 500);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_glist_free"), ElementsAre("fm_svc_mb_glist_free(1)"));
}

TEST_F(SingleRow, IsFetchedAloneWhenNothingIsHeld) {
  const ListPtr list = paged_list(1000);
  private_of(list).records.clear();
  private_of(list).page_end = 0;

  ask_alone(list, 0);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"), ElementsAre(fetch_line(0, 0)));
  EXPECT_TRUE(private_of(list).records.empty());
}

TEST_F(SingleRow, StaysUnfilledWhenItHasGone) {
  const ListPtr list = paged_list(1000);
  shrink(400);

  ask_alone(list, 500);

  EXPECT_THAT(log_of(kName), Contains("mbitem NULL\n"));
}

using FetchFilter = ItemListTest;

TEST_F(FetchFilter, IsTheStoredOne) {
  const ListPtr list = paged_list(1000);
  private_of(list).filter = 0x13;

  ask(list, 640);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"),
              ElementsAre("fm_svc_mb_get_list(\"/\", 2, 3, 19, 0, 600, 699)"));
}

struct StoredFilter {
  gint64 stored;
  gint64 setting;
  gint64 used;
};

class FetchStaleFilter : public ItemListTest, public testing::WithParamInterface<StoredFilter> {};

TEST_P(FetchStaleFilter, IsReadAgainAndStored) {
  const ListPtr list = paged_list(1000);
  private_of(list).filter = GetParam().stored;
  pb_app_common_set_filter_sort_type(4, GetParam().setting);

  ask_alone(list, 640);

  EXPECT_EQ(private_of(list).filter, GetParam().used);
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"),
              ElementsAre("fm_svc_mb_get_list(\"/\", 2, 3, " + std::to_string(GetParam().used) +
                          ", 0, 640, 640)"));
}

INSTANTIATE_TEST_SUITE_P(Filters, FetchStaleFilter,
                         testing::Values(StoredFilter{0, 2, 2}, StoredFilter{-1, -1, 3},
                                         StoredFilter{-7, -2, 0x13}));

TEST_F(FetchFilter, OfPositiveHighWordIsNotReadAgain) {
  const ListPtr list = paged_list(1000);
  private_of(list).filter = G_GINT64_CONSTANT(0x100000000);
  pb_app_common_set_filter_sort_type(4, 2);

  ask_alone(list, 640);

  EXPECT_EQ(private_of(list).filter, G_GINT64_CONSTANT(0x100000000));
}

}  // namespace

#include <algorithm>
#include <numeric>

#include "fixture.hpp"

namespace {

using fake::Logged;
using item_list_test::ItemListTest;
using item_list_test::ListPtr;
using item_list_test::log_of;
using item_list_test::new_list;
using item_list_test::pending_refreshes;
using item_list_test::private_of;
using item_list_test::read_row;
using item_list_test::Row;
using item_list_test::serve;
using item_list_test::View;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::UnorderedElementsAreArray;

constexpr const char *kStart = "pb_item_list_icon_refresh_when_start";
constexpr const char *kScroll = "pb_item_list_vadjustment_cb";
constexpr const char *kIdle = "pb_item_list_icon_refresh_at_idle_cb";
constexpr gint kLine = 126;  // height of a line of icons, spacing included

/// Runs what is pending of a refresh, and nothing of the store. Gives the number of calls.
int run_refresh() {
  int calls = 0;
  for (; !pending_refreshes().empty() && calls < 1000; ++calls) fake::run_next_idle();
  return calls;
}

std::vector<int> numbers(int first, int last) {
  std::vector<int> all(static_cast<std::size_t>(last - first + 1));
  std::iota(all.begin(), all.end(), first);
  return all;
}

/// A list of all files, built while the view stands at a height.
ListPtr built_list(const View &view, gint total, gboolean no_thumbnails = FALSE) {
  serve(total);
  ListPtr list = new_list();
  view.attach(list, no_thumbnails);
  pb_item_list_build(list.get(), 1, 0);
  fake::take_calls();
  fake::take_log();
  return list;
}

/// As built_list(), with the refresh of the first fill done.
ListPtr settled_list(const View &view, gint total) {
  ListPtr list = built_list(view, total);
  run_refresh();
  fake::take_calls();
  fake::take_log();
  return list;
}

gboolean step(const ListPtr &list) { return pb_item_list_icon_refresh_at_idle_cb(list.get()); }

/// The rows whose thumbnails the thumbnail files were asked for, in order.
std::vector<int> loaded_rows() {
  std::vector<int> rows;
  for (const std::string &call : fake::calls_of("fm_svc_thumb_create_pixbuf_by_path")) {
    int id = 0;
    if (sscanf(call.c_str(), "fm_svc_thumb_create_pixbuf_by_path(\"/thumbnails/%d.jpg\"", &id) ==
        1) {
      rows.push_back(id - 1);
    }
  }
  return rows;
}

/// Gives the first rows, at most as many as the store keeps, an item and the placeholder, as an
/// early draw leaves them.
void place(const ListPtr &list, gint rows) {
  for (gint row = 0; row < std::min(rows, 100); ++row) {
    const auto item = pb::item_list::make_marked_item(item_list_test::file(row + 1));
    pb::item_list::set_row(list.get(), row, item.get(), private_of(list).default_pixbuf.get());
  }
  fake::take_calls();
}

/// A list of rows with placeholders whose view has just been scrolled to a line.
ListPtr scrolled_list(const View &view, gint total, gint line) {
  ListPtr list = settled_list(view, total);
  place(list, total);
  view.scroll(line * kLine);
  fake::take_calls();
  fake::take_log();
  return list;
}

using SetAdjustment = ItemListTest;

TEST_F(SetAdjustment, LogsItsEntry) {
  const View view;
  const ListPtr list = new_list();

  view.attach(list);

  EXPECT_THAT(log_of("pb_item_list_set_adjustment_cb"), ElementsAre("\n"));
}

TEST_F(SetAdjustment, RemembersTheViewAndTheAdjustment) {
  const View view;
  const ListPtr list = new_list();

  view.attach(list);

  EXPECT_EQ(private_of(list).icon_view.get(), GTK_ICON_VIEW(view.widget.get()));
  EXPECT_EQ(private_of(list).vadjustment.get(), view.adjustment.get());
}

TEST_F(SetAdjustment, AddsTheSpacingToTheHeightOfAnIcon) {
  const View view;
  const ListPtr list = new_list();

  view.attach(list);

  EXPECT_EQ(private_of(list).row_height, 126.0);
}

TEST_F(SetAdjustment, ReadsTheHeightOnce) {
  const View view;
  const ListPtr list = new_list();
  view.attach(list);
  fake::take_calls();

  view.scroll(500);
  view.scroll(1000);

  EXPECT_THAT(fake::calls_of("gtk_icon_view_get_icon_height"), IsEmpty());
}

TEST_F(SetAdjustment, ReferencesNeither) {
  const View view;
  const ListPtr list = new_list();

  view.attach(list);

  EXPECT_EQ(item_list_test::references(view.widget.get()), 1U);
  EXPECT_EQ(item_list_test::references(view.adjustment.get()), 1U);
}

TEST_F(SetAdjustment, LogsAMissingView) {
  const View view;
  const ListPtr list = new_list();

  pb_item_list_set_adjustment_cb(list.get(), nullptr, view.adjustment.get(), FALSE);

  EXPECT_THAT(log_of("pb_item_list_set_adjustment_cb"), Contains("iconview is not ready\n"));
  EXPECT_EQ(private_of(list).icon_view.get(), nullptr);
}

TEST_F(SetAdjustment, LogsAWidgetThatIsNoIconView) {
  const View view;
  const auto label = pb::Ref<GtkWidget>::sink(gtk_label_new(""));
  const ListPtr list = new_list();

  pb_item_list_set_adjustment_cb(list.get(), label.get(), view.adjustment.get(), FALSE);

  EXPECT_THAT(log_of("pb_item_list_set_adjustment_cb"), Contains("iconview is not ready\n"));
}

TEST_F(SetAdjustment, LogsAMissingAdjustment) {
  const View view;
  const ListPtr list = new_list();

  pb_item_list_set_adjustment_cb(list.get(), view.widget.get(), nullptr, FALSE);

  EXPECT_THAT(log_of("pb_item_list_set_adjustment_cb"), Contains("adjustment is not ready\n"));
}

TEST_F(SetAdjustment, LoadsThumbnailsUnlessToldOtherwise) {
  const View view;
  const ListPtr list = new_list();

  view.attach(list, TRUE);
  EXPECT_EQ(private_of(list).loads_thumbnails, 0);

  view.attach(list, FALSE);
  EXPECT_EQ(private_of(list).loads_thumbnails, 1);
}

TEST_F(SetAdjustment, FollowsTheAdjustment) {
  const View view;
  const ListPtr list = new_list();
  view.attach(list);

  view.scroll(500);

  EXPECT_THAT(log_of(kScroll), SizeIs(1));
}

TEST_F(SetAdjustment, FollowsTheSameAdjustmentOnce) {
  const View view;
  const ListPtr list = new_list();
  view.attach(list);
  view.attach(list);

  view.scroll(500);

  EXPECT_THAT(log_of(kScroll), SizeIs(1));
}

TEST_F(SetAdjustment, LeavesAnAdjustmentForAnother) {
  const View old_view;
  const View view;
  const ListPtr list = new_list();
  old_view.attach(list);
  view.attach(list);

  old_view.scroll(500);

  EXPECT_THAT(log_of(kScroll), IsEmpty());
}

TEST_F(SetAdjustment, WarnsAboutANullList) {
  pb_item_list_set_adjustment_cb(nullptr, nullptr, nullptr, FALSE);

  EXPECT_THAT(
      take_glib_warnings(),
      ElementsAre("pb_item_list_set_adjustment_cb: assertion 'PB_IS_ITEM_LIST(list)' failed"));
}

using FirstFill = ItemListTest;

TEST_F(FirstFill, LogsItsEntry) {
  const ListPtr list = new_list();

  pb_item_list_icon_refresh_when_start(list.get());

  EXPECT_THAT(log_of(kStart), Contains("VLS init\n"));
}

TEST_F(FirstFill, NeedsAView) {
  const ListPtr list = new_list();

  pb_item_list_icon_refresh_when_start(list.get());

  EXPECT_THAT(log_of(kStart), ElementsAre("VLS init\n", "iconview is not set yet, return\n"));
  EXPECT_THAT(pending_refreshes(), IsEmpty());
}

TEST_F(FirstFill, NeedsAnAdjustment) {
  const View view;
  const ListPtr list = new_list();
  pb_item_list_set_adjustment_cb(list.get(), view.widget.get(), nullptr, FALSE);

  pb_item_list_icon_refresh_when_start(list.get());

  EXPECT_THAT(log_of(kStart), ElementsAre("VLS init\n", "adjustment is not set yet, return\n"));
  EXPECT_THAT(pending_refreshes(), IsEmpty());
}

TEST_F(FirstFill, DoesNothingForAListWithoutThumbnails) {
  const View view;
  const ListPtr list = built_list(view, 250, TRUE);

  EXPECT_FALSE(gtk_virtual_list_store_row_is_filled(GTK_VIRTUAL_LIST_STORE(list.get()), 0));
  EXPECT_THAT(pending_refreshes(), IsEmpty());
}

TEST_F(FirstFill, MakesTwelveRowsWithTheirThumbnails) {
  const View view;
  const ListPtr list = built_list(view, 250);

  for (const gint row : {0, 11}) {
    const Row columns = read_row(list, row);
    ASSERT_TRUE(columns.item) << row;
    EXPECT_EQ(columns.item->id, row + 1);
    EXPECT_EQ(columns.index, row);
    EXPECT_FALSE(columns.has_title);
    EXPECT_EQ(item_list_test::source_of(columns.pixbuf),
              "/thumbnails/" + std::to_string(row + 1) + ".jpg");
  }
}

TEST_F(FirstFill, GivesThePlaceholderToTheNextRowsUpToAHundred) {
  const View view;
  const ListPtr list = built_list(view, 250);

  for (const gint row : {12, 99}) {
    const Row columns = read_row(list, row);
    EXPECT_EQ(columns.item.get(), nullptr) << row;
    EXPECT_FALSE(columns.has_title);
    EXPECT_EQ(columns.index, row);
    EXPECT_EQ(columns.pixbuf.get(), private_of(list).default_pixbuf.get());
  }
}

TEST_F(FirstFill, StopsAfterAHundredRows) {
  const View view;
  const ListPtr list = built_list(view, 250);

  EXPECT_TRUE(gtk_virtual_list_store_row_is_filled(GTK_VIRTUAL_LIST_STORE(list.get()), 99));
  EXPECT_FALSE(gtk_virtual_list_store_row_is_filled(GTK_VIRTUAL_LIST_STORE(list.get()), 100));
}

TEST_F(FirstFill, MakesEveryRowOfAShortList) {
  const View view;
  const ListPtr list = built_list(view, 5);

  EXPECT_EQ(read_row(list, 4).item->id, 5);
}

TEST_F(FirstFill, TakesTheFavouriteAndTheMark) {
  const View view;
  const ListPtr list = built_list(view, 5);
  private_of(list).records.at<MbItem>(0)->flags = 1;
  private_of(list).records.at<MbItem>(0)->unmarked = 1;

  pb_item_list_icon_refresh_when_start(list.get());

  EXPECT_EQ(read_row(list, 0).item->favourite, 1);
  EXPECT_EQ(read_row(list, 0).item->mark, 0);
}

TEST_F(FirstFill, LeavesNothingForARowWithoutAThumbnail) {
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [](const gchar *, gint, gint) {
    return static_cast<GdkPixbuf *>(nullptr);
  };
  fake::platform().fm_svc_thumb_mgr_get_thumbnail = [](gint, gint, const gchar *, gboolean, gint,
                                                       GdkPixbuf **) { return 0; };
  const View view;
  const ListPtr list = built_list(view, 5);
  take_glib_warnings();

  EXPECT_EQ(read_row(list, 0).pixbuf.get(), nullptr);
  EXPECT_TRUE(read_row(list, 0).item);
}

TEST_F(FirstFill, LeavesItemsAndThumbnailsToTheRows) {
  const View view;
  const ListPtr list = built_list(view, 5);

  const Row row = read_row(list, 0);

  EXPECT_EQ(item_list_test::references(row.item.get()), 2U);
  EXPECT_EQ(item_list_test::references(row.pixbuf.get()), 2U);
}

TEST_F(FirstFill, GoesOnAfterARowWithoutARecord) {
  const View view;
  const ListPtr list = built_list(view, 20);
  private_of(list).records.drop_last(15);
  private_of(list).refresh_running = 1;

  pb_item_list_icon_refresh_when_start(list.get());

  EXPECT_EQ(std::ranges::count(log_of(kStart), "mbitem NULL\n"), 7);
  EXPECT_EQ(private_of(list).refresh_running, 0);
  EXPECT_EQ(read_row(list, 12).pixbuf.get(), private_of(list).default_pixbuf.get());
}

TEST_F(FirstFill, IsBusyWhileItFills) {
  const View view;
  const ListPtr list = built_list(view, 20);
  static gint busy;
  static PbItemListPrivate *priv;
  priv = &private_of(list);
  fake::platform().fm_svc_mb_get_record_by_index = [](gint, FmMediaRecord *, gint *) {
    busy = priv->first_fill_busy;
    return TRUE;
  };

  pb_item_list_icon_refresh_when_start(list.get());

  EXPECT_EQ(busy, 1);
  EXPECT_EQ(private_of(list).first_fill_busy, 0);
}

TEST_F(FirstFill, LogsTheFirstRowOfTheView) {
  const View view;
  view.scroll(400);
  serve(250);
  const ListPtr list = new_list();
  view.attach(list);

  pb_item_list_build(list.get(), 1, 0);

  EXPECT_THAT(log_of(kStart), Contains("priv->icon_refresh_idle_start=9\n"));
  EXPECT_EQ(private_of(list).view_start, 9);
}

TEST_F(FirstFill, DoesNotTakeTheTopMarginOff) {
  fake::platform().gtk_icon_view_get_top_margin = [](GtkIconView *) { return 60; };
  const View view;
  view.scroll(400);
  const ListPtr list = built_list(view, 250);

  EXPECT_EQ(private_of(list).view_start, 9);
}

TEST_F(FirstFill, StartsAtRowZeroWhenIconsHaveNoHeight) {
  const View view;
  fake::platform().gtk_icon_view_get_icon_height = [](GtkIconView *) { return -6; };
  view.scroll(400);
  const ListPtr list = built_list(view, 250);

  EXPECT_EQ(private_of(list).view_start, 0);
}

TEST_F(FirstFill, AddsTheIdleFunctionAtPriority130) {
  const View view;
  const ListPtr list = built_list(view, 250);

  ASSERT_THAT(pending_refreshes(), SizeIs(1));
  EXPECT_EQ(pending_refreshes()[0].priority, 130);
  EXPECT_EQ(pending_refreshes()[0].data, list.get());
  EXPECT_EQ(static_cast<gint>(pending_refreshes()[0].id), private_of(list).idle_source);
}

TEST_F(FirstFill, MakesAnOrderOfOneBatch) {
  const View view;
  const ListPtr list = built_list(view, 250);

  EXPECT_EQ(g_list_length(private_of(list).refresh_order), 15U);
}

TEST_F(FirstFill, ReplacesARefreshThatIsPending) {
  const View view;
  const ListPtr list = built_list(view, 250);

  pb_item_list_icon_refresh_when_start(list.get());

  EXPECT_THAT(pending_refreshes(), SizeIs(1));
}

TEST_F(FirstFill, WarnsAboutANullList) {
  pb_item_list_icon_refresh_when_start(nullptr);

  EXPECT_THAT(take_glib_warnings(), ElementsAre("pb_item_list_icon_refresh_when_start: assertion "
                                                "'PB_IS_ITEM_LIST(list)' failed"));
}

using Scroll = ItemListTest;

TEST_F(Scroll, TakesTheTopMarginOff) {
  fake::platform().gtk_icon_view_get_top_margin = [](GtkIconView *) { return 10; };
  const View view;
  const ListPtr list = settled_list(view, 250);

  view.scroll(400);

  EXPECT_EQ(private_of(list).view_start, 9);
}

struct Height {
  gdouble value;
  gint start;
};

class ScrollTo : public ItemListTest, public testing::WithParamInterface<Height> {};

TEST_P(ScrollTo, CutsTowardZero) {
  fake::platform().gtk_icon_view_get_top_margin = [](GtkIconView *) { return 10; };
  const View view;
  const ListPtr list = settled_list(view, 1000);

  view.scroll(GetParam().value);

  EXPECT_EQ(private_of(list).view_start, GetParam().start);
}

INSTANTIATE_TEST_SUITE_P(Heights, ScrollTo,
                         testing::Values(Height{1, 0}, Height{-115, 0}, Height{-116, -3},
                                         Height{135.9, 0}, Height{136, 3}, Height{261.5, 3},
                                         Height{262, 6}));

TEST_F(Scroll, LogsTheValueAndTheStart) {
  const View view;
  const ListPtr list = settled_list(view, 250);

  view.scroll(400.5);

  EXPECT_THAT(log_of(kScroll),
              ElementsAre("idle cb set : current_value =400.500000, current_view_start=9\n"));
}

TEST_F(Scroll, StartsAPassOfThirtyRows) {
  const View view;
  const ListPtr list = settled_list(view, 250);

  view.scroll(400);

  const PbItemListPrivate &priv = private_of(list);
  EXPECT_EQ(priv.refresh_remaining, 30);
  EXPECT_EQ(priv.refresh_progress, 0);
  EXPECT_EQ(g_list_length(priv.refresh_order), 15U);
}

TEST_F(Scroll, AddsTheIdleFunctionAtPriority130) {
  const View view;
  const ListPtr list = settled_list(view, 250);

  view.scroll(400);

  ASSERT_THAT(pending_refreshes(), SizeIs(1));
  EXPECT_EQ(pending_refreshes()[0].priority, 130);
  EXPECT_EQ(static_cast<gint>(pending_refreshes()[0].id), private_of(list).idle_source);
}

TEST_F(Scroll, ReplacesThePassThatIsPending) {
  const View view;
  const ListPtr list = settled_list(view, 250);
  view.scroll(400);
  fake::run_next_idle();
  fake::run_next_idle();

  view.scroll(800);

  EXPECT_THAT(pending_refreshes(), SizeIs(1));
  EXPECT_EQ(private_of(list).refresh_remaining, 30);
  EXPECT_EQ(g_list_length(private_of(list).refresh_order), 15U);
}

TEST_F(Scroll, KnowsThatItMovedUp) {
  const View view;
  const ListPtr list = settled_list(view, 250);
  view.scroll(800);

  view.scroll(400);

  EXPECT_EQ(private_of(list).scroll_direction, 0);
}

TEST_F(Scroll, CountsStandingStillAsDown) {
  const View view;
  const ListPtr list = settled_list(view, 250);
  view.scroll(800);
  view.scroll(400);

  view.scroll(401);

  EXPECT_EQ(private_of(list).scroll_direction, 1);
}

TEST_F(Scroll, StartsAtRowZeroWithoutAView) {
  const ListPtr list = new_list();

  pb_item_list_vadjustment_cb(nullptr, nullptr, list.get());

  EXPECT_EQ(private_of(list).view_start, 0);
  EXPECT_THAT(log_of(kScroll),
              ElementsAre("idle cb set : current_value =0.000000, current_view_start=0\n"));
}

TEST_F(Scroll, StartsAtRowZeroWhenTheViewIsGone) {
  auto view = std::make_unique<View>();
  const ListPtr list = settled_list(*view, 250);
  const auto adjustment = view->adjustment;
  view.reset();

  gtk_adjustment_set_value(adjustment.get(), 400);

  EXPECT_EQ(private_of(list).view_start, 0);
}

TEST_F(Scroll, SurvivesAnEnormousValue) {
  const View view;
  fake::platform().gtk_icon_view_get_icon_height = [](GtkIconView *) { return -5; };
  const ListPtr list = settled_list(view, 250);
  gtk_adjustment_set_upper(view.adjustment.get(), 1e300);

  view.scroll(1e299);

  EXPECT_GT(private_of(list).view_start, 0);
}

TEST_F(Scroll, RefreshesRowsOfAListWithoutThumbnails) {
  const View view;
  const ListPtr list = built_list(view, 250, TRUE);

  view.scroll(0.5);
  run_refresh();

  EXPECT_EQ(item_list_test::source_of(read_row(list, 29).pixbuf), "/thumbnails/30.jpg");
}

TEST_F(Scroll, WarnsAboutANullList) {
  pb_item_list_vadjustment_cb(nullptr, nullptr, nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_list_vadjustment_cb: assertion 'PB_IS_ITEM_LIST(list)' failed"));
}

using Resync = ItemListTest;

TEST_F(Resync, LogsItsEntry) {
  const ListPtr list = new_list();

  pb_item_list_rsync_current_icons(list.get());

  EXPECT_THAT(log_of("pb_item_list_rsync_current_icons"), ElementsAre("\n"));
}

TEST_F(Resync, StartsAPassAtTheCurrentPosition) {
  const View view;
  const ListPtr list = settled_list(view, 250);

  pb_item_list_rsync_current_icons(list.get());

  EXPECT_THAT(log_of(kScroll), SizeIs(1));
  EXPECT_THAT(pending_refreshes(), SizeIs(1));
}

TEST_F(Resync, DoesNothingWhileAPassRuns) {
  const View view;
  const ListPtr list = settled_list(view, 250);
  view.scroll(400);
  fake::run_next_idle();
  fake::take_log();

  pb_item_list_rsync_current_icons(list.get());

  EXPECT_THAT(log_of(kScroll), IsEmpty());
}

TEST_F(Resync, WarnsAboutANullList) {
  pb_item_list_rsync_current_icons(nullptr);

  EXPECT_THAT(
      take_glib_warnings(),
      ElementsAre("pb_item_list_rsync_current_icons: assertion 'PB_IS_ITEM_LIST(list)' failed"));
}

using RefreshPass = ItemListTest;

TEST_F(RefreshPass, IsRunningBetweenItsCalls) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);

  EXPECT_TRUE(step(list));

  EXPECT_EQ(private_of(list).refresh_running, 1);
  EXPECT_EQ(private_of(list).refresh_remaining, 29);
}

TEST_F(RefreshPass, EndsAfterThirtyCalls) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);

  EXPECT_EQ(run_refresh(), 30);

  EXPECT_EQ(private_of(list).refresh_running, 0);
  EXPECT_EQ(private_of(list).refresh_remaining, 0);
}

TEST_F(RefreshPass, ForgetsItsSourceWhenItEnds) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);

  run_refresh();

  EXPECT_EQ(private_of(list).idle_source, -1);
}

TEST_F(RefreshPass, LoadsOneThumbnailACall) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);

  for (std::size_t call = 1; call <= 30; ++call) {
    fake::run_next_idle();
    ASSERT_THAT(loaded_rows(), SizeIs(call));
  }
}

TEST_F(RefreshPass, LoadsTheFirstRowsOfTheViewFirst) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);

  for (int call = 0; call < 15; ++call) fake::run_next_idle();

  EXPECT_THAT(loaded_rows(), UnorderedElementsAreArray(numbers(6, 20)));
}

TEST_F(RefreshPass, LoadsThemInRandomOrder) {
  const View view;
  const ListPtr list = scrolled_list(view, 1000, 2);
  std::vector<std::vector<int>> orders;

  for (int pass = 0; pass < 4; ++pass) {
    place(list, 100);
    pb_item_list_vadjustment_cb(nullptr, nullptr, list.get());
    run_refresh();
    auto order = loaded_rows();
    order.resize(15);
    orders.push_back(order);
  }

  // Four equal shuffles of 15 have a chance of 1 in 10^36.
  EXPECT_NE(std::adjacent_find(orders.begin(), orders.end(), std::not_equal_to<>()), orders.end());
}

TEST_F(RefreshPass, GoesOnBelowAfterAScrollDown) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);

  run_refresh();

  const auto rows = loaded_rows();
  ASSERT_THAT(rows, SizeIs(30));
  EXPECT_EQ(std::vector<int>(rows.begin() + 15, rows.end()), numbers(21, 35));
}

TEST_F(RefreshPass, GoesOnAboveAfterAScrollUp) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 20);
  view.scroll(10 * kLine);
  fake::take_calls();

  run_refresh();

  const auto rows = loaded_rows();
  ASSERT_THAT(rows, SizeIs(30));
  EXPECT_THAT(std::vector<int>(rows.begin(), rows.begin() + 15),
              UnorderedElementsAreArray(numbers(30, 44)));
  EXPECT_EQ(std::vector<int>(rows.begin() + 15, rows.end()), numbers(15, 29));
}

TEST_F(RefreshPass, TouchesThirtyRowsAndNoMore) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);
  static int changes;
  changes = 0;
  g_signal_connect(
      list.get(), "row-changed",
      G_CALLBACK(+[](GtkTreeModel *, GtkTreePath *, GtkTreeIter *, gpointer) { ++changes; }),
      nullptr);

  run_refresh();

  EXPECT_EQ(changes, 30);
}

TEST_F(RefreshPass, SetsTheThumbnailOfARowWithThePlaceholder) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);

  run_refresh();

  const Row row = read_row(list, 20);
  EXPECT_EQ(row.item->id, 21);
  EXPECT_EQ(item_list_test::source_of(row.pixbuf), "/thumbnails/21.jpg");
}

TEST_F(RefreshPass, LeavesItemsAndThumbnailsToTheRows) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);

  run_refresh();

  const Row row = read_row(list, 20);
  EXPECT_EQ(item_list_test::references(row.item.get()), 2U);
  EXPECT_EQ(item_list_test::references(row.pixbuf.get()), 2U);
}

TEST_F(RefreshPass, KeepsThePlaceholderOfARowWithoutAThumbnail) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [](const gchar *, gint, gint) {
    return static_cast<GdkPixbuf *>(nullptr);
  };
  fake::platform().fm_svc_thumb_mgr_get_thumbnail = [](gint, gint, const gchar *, gboolean, gint,
                                                       GdkPixbuf **) { return 0; };

  run_refresh();
  take_glib_warnings();

  EXPECT_EQ(read_row(list, 20).pixbuf.get(), private_of(list).default_pixbuf.get());
}

TEST_F(RefreshPass, LeavesARowWithAThumbnailAlone) {
  const View view;
  const ListPtr list = settled_list(view, 250);
  run_refresh();
  fake::take_calls();

  pb_item_list_rsync_current_icons(list.get());
  run_refresh();

  EXPECT_THAT(loaded_rows(), IsEmpty());
}

TEST_F(RefreshPass, TakesARowWithoutAnyPixbufForNotLoaded) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);
  const auto item = pb::item_list::make_marked_item(item_list_test::file(21));
  pb::item_list::set_row(list.get(), 20, item.get(), nullptr);

  run_refresh();

  EXPECT_EQ(item_list_test::source_of(read_row(list, 20).pixbuf), "/thumbnails/21.jpg");
}

TEST_F(RefreshPass, LeavesARowWithoutAnyPixbufWhenThereIsStillNone) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);
  const auto item = pb::item_list::make_marked_item(item_list_test::file(21));
  pb::item_list::set_row(list.get(), 20, item.get(), nullptr);
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [](const gchar *, gint, gint) {
    return static_cast<GdkPixbuf *>(nullptr);
  };
  fake::platform().fm_svc_thumb_mgr_get_thumbnail = [](gint, gint, const gchar *, gboolean, gint,
                                                       GdkPixbuf **) { return 0; };

  run_refresh();
  take_glib_warnings();

  EXPECT_EQ(read_row(list, 20).pixbuf.get(), nullptr);
  EXPECT_EQ(read_row(list, 20).item.get(), item.get());
}

TEST_F(RefreshPass, MakesTheItemOfARowThatHasNone) {
  const View view;
  const ListPtr list = settled_list(view, 250);
  pb::item_list::set_row(list.get(), 20, nullptr, private_of(list).default_pixbuf.get());
  private_of(list).records.at<MbItem>(20)->flags = 1;

  pb_item_list_rsync_current_icons(list.get());
  run_refresh();

  const Row row = read_row(list, 20);
  ASSERT_TRUE(row.item);
  EXPECT_EQ(row.item->id, 21);
  EXPECT_EQ(row.item->favourite, 1);
  EXPECT_EQ(row.item->mark, 1);
}

TEST_F(RefreshPass, DropsTheItemItMadeForARowWithAThumbnail) {
  const View view;
  const ListPtr list = settled_list(view, 250);
  const auto thumbnail = support::solid_pixbuf(4, 4, support::kRed);
  pb::item_list::set_row(list.get(), 20, nullptr, thumbnail.get());

  pb_item_list_rsync_current_icons(list.get());
  run_refresh();

  const Row row = read_row(list, 20);
  EXPECT_EQ(row.item.get(), nullptr);
  EXPECT_EQ(row.pixbuf.get(), thumbnail.get());
}

TEST_F(RefreshPass, GoesOnAfterARowWithoutARecord) {
  const View view;
  const ListPtr list = settled_list(view, 250);
  pb::item_list::set_row(list.get(), 20, nullptr, private_of(list).default_pixbuf.get());
  private_of(list).records.drop_last(90);

  pb_item_list_rsync_current_icons(list.get());
  const int calls = run_refresh();

  EXPECT_EQ(calls, 30);
  EXPECT_THAT(log_of(kIdle), Contains("mbitem NULL\n"));
}

TEST_F(RefreshPass, IsNotRunningAfterARowWithoutARecord) {
  const View view;
  const ListPtr list = settled_list(view, 250);
  place(list, 250);
  private_of(list).records.clear();
  private_of(list).row_count = 250;
  for (gint row = 0; row < 30; ++row) {
    pb::item_list::set_row(list.get(), row, nullptr, private_of(list).default_pixbuf.get());
  }
  pb_item_list_rsync_current_icons(list.get());

  EXPECT_TRUE(step(list));

  EXPECT_EQ(private_of(list).refresh_running, 0);
}

TEST_F(RefreshPass, EndsWhenTheViewHasMoved) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);
  private_of(list).view_start = 3;
  fake::take_log();

  EXPECT_FALSE(step(list));

  EXPECT_THAT(log_of(kIdle), ElementsAre("start index changed (prev:3, curr:6), return\n"));
  EXPECT_EQ(private_of(list).view_start, 6);
  EXPECT_EQ(private_of(list).refresh_running, 0);
  EXPECT_EQ(private_of(list).refresh_progress, 0);
  EXPECT_EQ(private_of(list).idle_source, -1);
}

TEST_F(RefreshPass, LeavesNoSourceBehindWhenACallFromOutsideEndsIt) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);
  ASSERT_THAT(pending_refreshes(), SizeIs(1));
  private_of(list).view_start = 3;

  EXPECT_FALSE(step(list));

  EXPECT_THAT(pending_refreshes(), IsEmpty());
}

TEST_F(RefreshPass, LeavesNoSourceBehindWhenCallsFromOutsideFinishIt) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);

  while (step(list)) continue;

  EXPECT_THAT(pending_refreshes(), IsEmpty());
  EXPECT_EQ(private_of(list).idle_source, -1);
}

TEST_F(RefreshPass, EndsQuietlyInItsOwnCallOfTheMainLoop) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);
  pb_item_list_vls_disconnect_signal(list.get());
  GSource *source = g_idle_source_new();
  g_source_set_callback(source, pb_item_list_icon_refresh_at_idle_cb, list.get(), nullptr);
  private_of(list).idle_source = static_cast<gint>(g_source_attach(source, nullptr));
  private_of(list).view_start = 3;

  g_main_context_iteration(nullptr, FALSE);

  EXPECT_TRUE(g_source_is_destroyed(source));
  EXPECT_EQ(private_of(list).idle_source, -1);
  g_source_unref(source);
}

TEST_F(RefreshPass, EndsWhenARowDisconnectsItsList) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);
  g_signal_connect(list.get(), "row-changed",
                   G_CALLBACK(+[](PbItemList *changed, GtkTreePath *, GtkTreeIter *, gpointer) {
                     pb_item_list_vls_disconnect_signal(changed);
                   }),
                   nullptr);

  fake::run_next_idle();

  EXPECT_THAT(pending_refreshes(), IsEmpty());
  EXPECT_EQ(private_of(list).idle_source, -1);
  EXPECT_EQ(private_of(list).refresh_running, 0);
}

TEST_F(RefreshPass, EndsWhenTheOrderRunsDry) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);
  mb_util_free_glist(private_of(list).refresh_order);
  private_of(list).refresh_order = nullptr;

  EXPECT_FALSE(step(list));

  EXPECT_THAT(log_of(kIdle), ElementsAre("Error: random index = -2\n"));
  EXPECT_EQ(private_of(list).refresh_running, 0);
  EXPECT_EQ(private_of(list).idle_source, -1);
}

TEST_F(RefreshPass, EndsBehindTheLastRow) {
  const View view;
  const ListPtr list = settled_list(view, 5);

  pb_item_list_vadjustment_cb(nullptr, nullptr, list.get());

  // Fifteen calls for the first batch, of which ten are past the end, and one that finds out.
  EXPECT_EQ(run_refresh(), 16);
  EXPECT_EQ(private_of(list).refresh_running, 0);
  EXPECT_EQ(private_of(list).refresh_remaining, 15);
  EXPECT_EQ(private_of(list).idle_source, -1);
}

TEST_F(RefreshPass, SaysNothingOfRowsPastTheEndInItsFirstHalf) {
  const View view;
  const ListPtr list = settled_list(view, 5);

  pb_item_list_vadjustment_cb(nullptr, nullptr, list.get());
  run_refresh();

  EXPECT_THAT(log_of(kIdle), IsEmpty());
}

TEST_F(RefreshPass, EndsBeforeTheFirstRow) {
  const View view;
  const ListPtr list = settled_list(view, 250);
  view.scroll(2 * kLine);
  view.scroll(0);

  EXPECT_EQ(run_refresh(), 16);
  EXPECT_EQ(private_of(list).refresh_running, 0);
}

TEST_F(RefreshPass, GoesOnToTheMiddleOfAListThatEndsThere) {
  const View view;
  const ListPtr list = settled_list(view, 20);

  pb_item_list_vadjustment_cb(nullptr, nullptr, list.get());

  EXPECT_EQ(run_refresh(), 21);
}

TEST_F(RefreshPass, LogsARowThatTheStoreHasNot) {
  const View view;
  const ListPtr list = settled_list(view, 20);
  private_of(list).row_count = 40;

  pb_item_list_vadjustment_cb(nullptr, nullptr, list.get());
  const int calls = run_refresh();

  EXPECT_EQ(calls, 30);
  EXPECT_THAT(log_of(kIdle), Contains("ITEM NOT FOUND!!! [20]\n"));
  EXPECT_THAT(log_of(kIdle), Contains("ITEM NOT FOUND!!! [29]\n"));
}

TEST_F(RefreshPass, WorksAfterTheFirstFill) {
  const View view;
  const ListPtr list = built_list(view, 250);

  EXPECT_EQ(run_refresh(), 30);

  EXPECT_EQ(item_list_test::source_of(read_row(list, 29).pixbuf), "/thumbnails/30.jpg");
  EXPECT_TRUE(item_list_test::is_placeholder(read_row(list, 30).pixbuf));
}

TEST_F(RefreshPass, GivesWayToAPassThatARowStarts) {
  const View view;
  const ListPtr list = scrolled_list(view, 250, 2);
  static const View *scrolled;
  scrolled = &view;
  g_signal_connect(list.get(), "row-changed",
                   G_CALLBACK(+[](GtkTreeModel *, GtkTreePath *, GtkTreeIter *, gpointer) {
                     scrolled->scroll(5 * kLine);
                   }),
                   nullptr);

  fake::run_next_idle();

  ASSERT_THAT(pending_refreshes(), SizeIs(1));
  EXPECT_EQ(static_cast<gint>(pending_refreshes()[0].id), private_of(list).idle_source);
  EXPECT_EQ(private_of(list).refresh_remaining, 30);
}

TEST_F(RefreshPass, SurvivesTheEndOfItsListWithinACall) {
  const View view;
  ListPtr list = scrolled_list(view, 250, 2);
  const support::ExpectFinalized watch(list.get());
  g_signal_connect(list.get(), "row-changed",
                   G_CALLBACK(+[](GtkTreeModel *, GtkTreePath *, GtkTreeIter *, gpointer data) {
                     static_cast<ListPtr *>(data)->reset();
                   }),
                   &list);

  fake::run_next_idle();

  EXPECT_TRUE(watch.finalized());
  EXPECT_THAT(pending_refreshes(), IsEmpty());
}

TEST_F(RefreshPass, RefreshesAlbumFilesThatHadNoThumbnail) {
  const View view;
  serve(10);
  item_list_test::serve_album({1, 2, 3});
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [](const gchar *, gint, gint) {
    return static_cast<GdkPixbuf *>(nullptr);
  };
  const ListPtr list = new_list();
  view.attach(list);
  pb_item_list_build(list.get(), 3, 77);
  ASSERT_EQ(read_row(list, 1).pixbuf.get(), nullptr);

  pb_item_list_rsync_current_icons(list.get());
  run_refresh();
  take_glib_warnings();

  EXPECT_EQ(item_list_test::source_of(read_row(list, 1).pixbuf), "/pictures/2.jpg");
}

TEST_F(RefreshPass, WarnsAboutANullList) {
  EXPECT_FALSE(pb_item_list_icon_refresh_at_idle_cb(nullptr));

  EXPECT_THAT(take_glib_warnings(), ElementsAre("pb_item_list_icon_refresh_at_idle_cb: assertion "
                                                "'PB_IS_ITEM_LIST(list)' failed"));
}

}  // namespace

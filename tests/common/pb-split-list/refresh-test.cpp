#include "fixture.hpp"

namespace {

using split_list_test::is_default_icon;
using split_list_test::kFill;
using split_list_test::kRefresh;
using split_list_test::log_of;
using split_list_test::pending_of;
using split_list_test::private_of;
using split_list_test::read_row;
using split_list_test::rows_of;
using split_list_test::rows_with_thumbnails;
using split_list_test::SplitListTest;
using split_list_test::SplitPtr;
using split_list_test::View;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr gint kLine = 70;  // pixels: an icon and the spacing below it

std::vector<gint> range(gint first, gint end) {
  std::vector<gint> rows;
  for (gint row = first; row < end; ++row) rows.push_back(row);
  return rows;
}

class SplitRefresh : public SplitListTest {
 protected:
  static SplitPtr show(gint files) {
    split_list_test::serve(files);
    return SplitPtr::adopt(pb_split_get_list(nullptr));
  }
};

/// Lets thumbnails have a size.
void serve_thumbnails(gint width, gint height) {
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [=](const gchar *, gint, gint) {
    return gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height);
  };
}

TEST_F(SplitRefresh, LoadsTheThumbnailsInViewAndALittleMore) {
  const View view;
  const SplitPtr list = show(100);

  fake::run_idles();

  EXPECT_EQ(rows_with_thumbnails(list), range(0, 36));
}

TEST_F(SplitRefresh, LoadsOneThumbnailACall) {
  const View view;
  const SplitPtr list = show(50);

  fake::run_next_idle();
  EXPECT_THAT(rows_with_thumbnails(list), ElementsAre(0));
  fake::run_next_idle();

  EXPECT_THAT(rows_with_thumbnails(list), ElementsAre(0, 1));
}

TEST_F(SplitRefresh, GoesBeforeTheFilling) {
  const View view;
  const SplitPtr list = show(500);
  const gint rows = rows_of(list);

  for (int call = 0; call < 36; ++call) fake::run_next_idle();

  EXPECT_EQ(rows_of(list), rows);
  EXPECT_EQ(pending_of(kRefresh), 0);
  EXPECT_EQ(pending_of(kFill), 1);
}

TEST_F(SplitRefresh, EndsWithoutASource) {
  const View view;
  const SplitPtr list = show(5);

  fake::run_idles();

  EXPECT_EQ(private_of(list).refresh_source, -1);
  EXPECT_EQ(private_of(list).refresh_remaining, 0);
  EXPECT_THAT(fake::pending_idles(), IsEmpty());
}

TEST_F(SplitRefresh, KeepsThePlaceholderWhereThereIsNoThumbnail) {
  const View view;
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [](const gchar *, gint, gint) {
    return static_cast<GdkPixbuf *>(nullptr);
  };
  fake::platform().fm_svc_thumb_mgr_get_thumbnail = [](gint, gint, const gchar *, gboolean, gint,
                                                       GdkPixbuf **) { return 0; };
  const SplitPtr list = show(2);

  fake::run_idles();

  EXPECT_THAT(rows_with_thumbnails(list), IsEmpty());
  EXPECT_THAT(take_glib_warnings(), SizeIs(2));
}

TEST_F(SplitRefresh, AsksAgainForAThumbnailThatWasMissing) {
  const View view;
  const auto serving = fake::platform().fm_svc_thumb_create_pixbuf_by_path;
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = [](const gchar *, gint, gint) {
    return static_cast<GdkPixbuf *>(nullptr);
  };
  fake::platform().fm_svc_thumb_mgr_get_thumbnail = [](gint, gint, const gchar *, gboolean, gint,
                                                       GdkPixbuf **) { return 0; };
  const SplitPtr list = show(2);
  fake::run_idles();
  take_glib_warnings();
  fake::platform().fm_svc_thumb_create_pixbuf_by_path = serving;

  pb_split_list_vadjustment_cb(nullptr, nullptr, list.get());
  fake::run_idles();

  EXPECT_THAT(rows_with_thumbnails(list), ElementsAre(0, 1));
}

TEST_F(SplitRefresh, LoadsNoThumbnailTwice) {
  const View view;
  const SplitPtr list = show(2);
  fake::run_idles();
  const auto icon = read_row(list, 0).icon;
  fake::take_calls();

  pb_split_list_vadjustment_cb(nullptr, nullptr, list.get());
  fake::run_idles();

  EXPECT_EQ(read_row(list, 0).icon.get(), icon.get());
  EXPECT_THAT(fake::calls_of("fm_svc_thumb_create_pixbuf_by_path"), IsEmpty());
}

struct Size {
  gint width;
  gint height;
  gint icon_width;
  gint icon_height;
};
void PrintTo(const Size &size, std::ostream *out) { *out << size.width << " x " << size.height; }

class SplitIconSize : public SplitRefresh, public testing::WithParamInterface<Size> {};

TEST_P(SplitIconSize, IsAtMost64Pixels) {
  const View view;
  serve_thumbnails(GetParam().width, GetParam().height);
  const SplitPtr list = show(1);

  fake::run_idles();

  const auto icon = read_row(list, 0).icon;
  ASSERT_TRUE(icon);
  EXPECT_EQ(gdk_pixbuf_get_width(icon.get()), GetParam().icon_width);
  EXPECT_EQ(gdk_pixbuf_get_height(icon.get()), GetParam().icon_height);
}

INSTANTIATE_TEST_SUITE_P(Shapes, SplitIconSize,
                         testing::Values(Size{148, 148, 64, 64}, Size{128, 64, 64, 32},
                                         Size{64, 128, 32, 64}, Size{148, 1, 64, 1},
                                         Size{1, 148, 1, 64}, Size{64, 64, 64, 64},
                                         Size{20, 10, 20, 10}));

TEST_F(SplitRefresh, FollowsTheScrollDown) {
  const View view;
  const SplitPtr list = show(300);
  fake::run_idles();

  view.scroll(40 * kLine);
  fake::run_idles();

  auto expected = range(0, 36);
  const auto further = range(120, 156);
  expected.insert(expected.end(), further.begin(), further.end());
  EXPECT_EQ(rows_with_thumbnails(list), expected);
  EXPECT_EQ(private_of(list).scroll_direction, 1);
}

TEST_F(SplitRefresh, LooksAheadUpwardAfterAScrollUp) {
  const View view;
  const SplitPtr list = show(300);
  fake::run_idles();
  view.scroll(60 * kLine);

  view.scroll(40 * kLine);
  fake::run_idles();

  auto expected = range(0, 36);
  const auto further = range(111, 147);
  expected.insert(expected.end(), further.begin(), further.end());
  EXPECT_EQ(rows_with_thumbnails(list), expected);
  EXPECT_EQ(private_of(list).scroll_direction, 0);
}

TEST_F(SplitRefresh, ReplacesARefreshThatIsUnderWay) {
  const View view;
  const SplitPtr list = show(300);

  view.scroll(10 * kLine);
  view.scroll(20 * kLine);

  EXPECT_EQ(pending_of(kRefresh), 1);
}

TEST_F(SplitRefresh, SkipsWhatWasScrolledAway) {
  const View view;
  const SplitPtr list = show(300);
  while (pending_of(kFill) > 0) fake::run_next_idle();
  fake::take_calls();

  view.scroll(50 * kLine);
  view.scroll(60 * kLine);
  fake::run_idles();

  EXPECT_TRUE(is_default_icon(list, 150));
  EXPECT_FALSE(is_default_icon(list, 180));
}

TEST_F(SplitRefresh, TakesTheTopMarginOff) {
  const View view;
  fake::platform().gtk_icon_view_get_top_margin = [](GtkIconView *) { return 10; };
  const SplitPtr list = show(100);

  view.scroll(kLine + 9);

  EXPECT_EQ(private_of(list).view_start, 0);
  view.scroll(kLine + 10);
  EXPECT_EQ(private_of(list).view_start, 3);
}

TEST_F(SplitRefresh, StartsAtTheFirstRowAboveTheList) {
  const View view;
  const SplitPtr list = show(100);

  view.scroll(-500);

  EXPECT_EQ(private_of(list).view_start, 0);
}

TEST_F(SplitRefresh, LogsTheScroll) {
  const View view;
  const SplitPtr list = show(100);
  fake::take_log();

  view.scroll(2 * kLine);

  EXPECT_THAT(log_of("pb_split_list_vadjustment_cb"), ElementsAre("current_view_start=6\n"));
}

TEST_F(SplitRefresh, RefreshesAsManyRowsAsAreSeen) {
  const View view;
  gtk_adjustment_set_page_size(view.adjustment.get(), 20 * kLine);
  const SplitPtr list = show(100);

  EXPECT_EQ(private_of(list).refresh_count, 66);
}

TEST_F(SplitRefresh, CountsTheColumnsOfTheView) {
  const View view;
  gtk_icon_view_set_columns(GTK_ICON_VIEW(view.widget.get()), 5);
  const SplitPtr list = show(100);

  view.scroll(2 * kLine);

  EXPECT_EQ(private_of(list).view_start, 10);
}

TEST_F(SplitRefresh, ReadsTheColumnsAnewWhenTheDividerMoves) {
  const View view;
  const SplitPtr list = show(300);
  view.scroll(2 * kLine);
  fake::run_idles();
  gtk_icon_view_set_columns(GTK_ICON_VIEW(view.widget.get()), 20);
  fake::take_log();

  gtk_paned_set_position(GTK_PANED(view.paned.get()), 123);
  EXPECT_EQ(pending_of(kRefresh), 1);
  fake::run_idles();

  EXPECT_THAT(log_of("pb_split_list_hpaned_cb"),
              ElementsAre("columns=20, current_view_start=40\n"));
  EXPECT_FALSE(is_default_icon(list, 66));
}

TEST_F(SplitRefresh, FollowsALayoutThatChangesUnderWay) {
  const View view;
  const SplitPtr list = show(300);
  view.scroll(2 * kLine);
  fake::run_next_idle();

  gtk_icon_view_set_columns(GTK_ICON_VIEW(view.widget.get()), 50);
  fake::run_idles();

  EXPECT_EQ(private_of(list).view_start, 100);
  EXPECT_FALSE(is_default_icon(list, 100));
  EXPECT_FALSE(is_default_icon(list, 126));
}

TEST_F(SplitRefresh, KeepsABoundedNumberOfThumbnails) {
  const View view;
  const SplitPtr list = show(2000);
  fake::run_idles();

  for (gint line = 0; line < 600; line += 9) {
    view.scroll(line * kLine);
    while (pending_of(kRefresh) > 0) fake::run_next_idle();
  }

  const auto rows = rows_with_thumbnails(list);
  EXPECT_LE(rows.size(), 540U);
  EXPECT_GT(rows.size(), 500U);
  EXPECT_TRUE(is_default_icon(list, 0));
  EXPECT_FALSE(is_default_icon(list, 594 * 3));
}

TEST_F(SplitRefresh, LoadsNothingWithoutAView) {
  const SplitPtr list = show(10);

  EXPECT_EQ(pending_of(kRefresh), 0);
  EXPECT_EQ(rows_of(list), 10);
}

TEST_F(SplitRefresh, BearsAViewThatIsDestroyedUnderWay) {
  SplitPtr list;
  {
    const View view;
    list = show(10);
  }

  fake::run_idles();

  EXPECT_EQ(rows_of(list), 10);
}

TEST_F(SplitRefresh, BearsAListThatIsDroppedUnderWay) {
  const View view;
  SplitPtr list = show(500);
  g_signal_connect_swapped(list.get(), "row-changed",
                           G_CALLBACK(+[](SplitPtr *owner) { owner->reset(); }), &list);

  fake::run_idles();

  EXPECT_FALSE(list);
}

TEST_F(SplitRefresh, BearsAListThatIsDroppedWhileItIsFilled) {
  SplitPtr list = show(500);
  g_signal_connect_swapped(list.get(), "row-inserted",
                           G_CALLBACK(+[](SplitPtr *owner) { owner->reset(); }), &list);

  fake::run_idles();

  EXPECT_FALSE(list);
}

TEST_F(SplitRefresh, AttachesToWidgetsThatAreSetLater) {
  const SplitPtr list = show(10);
  const View view;

  pb_split_list_icon_refresh_when_start(list.get());
  fake::run_idles();

  EXPECT_EQ(rows_with_thumbnails(list), range(0, 10));
  EXPECT_THAT(log_of("pb_split_list_icon_refresh_when_start"), Contains("\n"));
}

TEST_F(SplitRefresh, FollowsAScrollOnceWhenItIsAttachedTwice) {
  const View view;
  const SplitPtr list = show(10);
  pb_split_list_icon_refresh_when_start(list.get());
  fake::take_log();

  view.scroll(5);

  EXPECT_THAT(log_of("pb_split_list_vadjustment_cb"), SizeIs(1));
}

TEST_F(SplitRefresh, MovesToAnotherAdjustment) {
  const View view;
  const SplitPtr list = show(10);
  const auto other =
      pb::Ref<GtkAdjustment>::sink(GTK_ADJUSTMENT(gtk_adjustment_new(0, 0, 100, 1, 1, 1)));
  pb_split_list_set_adjustment_widget(view.widget.get(), other.get(), view.paned.get());
  pb_split_list_icon_refresh_when_start(list.get());
  fake::take_log();

  view.scroll(5);
  EXPECT_THAT(log_of("pb_split_list_vadjustment_cb"), IsEmpty());
  gtk_adjustment_set_value(other.get(), 5);

  EXPECT_THAT(log_of("pb_split_list_vadjustment_cb"), SizeIs(1));
}

TEST_F(SplitRefresh, LetsTwoPanesFollowTheirOwnViews) {
  const View left;
  const SplitPtr first = show(300);
  const View right;
  const SplitPtr second = show(300);

  right.scroll(30 * kLine);

  EXPECT_EQ(private_of(first).view_start, 0);
  EXPECT_EQ(private_of(second).view_start, 90);
}

}  // namespace

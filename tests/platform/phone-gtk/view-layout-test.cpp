#include <algorithm>
#include <numeric>

#include "phone-gtk/icon-view-private.hpp"
#include "view-fixture.hpp"

using support::ExpectFinalized;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;
using testing::SizeIs;

namespace {

class IconViewLayout : public test::ViewFixture {};
class IconViewModel : public test::ViewFixture {};
class IconViewMeasures : public test::ViewFixture {};

TEST_F(IconViewLayout, HasThreeColumnsOnThePhone) {
  for (const int cell : {148, 154, 160}) {
    phone_icon_view_set_cell_size(view(), cell, cell);
    show(100);
    EXPECT_EQ(phone_icon_view_get_row_at(view(), 80, kMargin + cell + 6 + 20), 3) << cell;
  }
}

TEST_F(IconViewLayout, HasColumnsByTheWidth) {
  resize(800, 480);

  show(100);

  EXPECT_EQ(phone_icon_view_get_row_at(view(), 80, kMargin + kPitch + 20), 5);
}

TEST_F(IconViewLayout, KeepsTheTopRowWhenTheScreenTurns) {
  show(10'000);
  phone_icon_view_scroll_to_row(view(), 3000, 0);
  settle();

  resize(800, 480);

  gint first = 0;
  gint last = 0;
  ASSERT_TRUE(phone_icon_view_get_visible_rows(view(), &first, &last));
  EXPECT_THAT(3000, AllOf(Ge(first), Le(first + 4)));
}

TEST_F(IconViewLayout, IsAsHighAsItsRows) {
  show(1'000'000);

  EXPECT_EQ(gtk_adjustment_get_upper(adjustment()), 2.0 * kMargin + 333'334.0 * kPitch - 6);
  EXPECT_EQ(gtk_adjustment_get_page_size(adjustment()), kHeight);
}

TEST_F(IconViewLayout, KeepsItsWindowAsSmallAsTheScreen) {
  show(1'000'000);

  gint width = 0;
  gint height = 0;
  gdk_drawable_get_size(content(), &width, &height);

  EXPECT_EQ(width, kWidth);
  EXPECT_EQ(height, kHeight);
}

TEST_F(IconViewLayout, ReachesTheLastRowOfAMillion) {
  show(1'000'000);

  scroll_to(gtk_adjustment_get_upper(adjustment()));

  gint last = 0;
  ASSERT_TRUE(phone_icon_view_get_visible_rows(view(), nullptr, &last));
  EXPECT_EQ(last, 999'999);
  EXPECT_EQ(colour_at(80, kHeight - 80), test::colour_of(999'999));
}

TEST_F(IconViewLayout, ReachesTheLastRowOfTheLongestList) {
  show(G_MAXINT);
  phone_icon_view_set_selection_mode(view(), GTK_SELECTION_MULTIPLE);

  phone_icon_view_scroll_to_row(view(), G_MAXINT - 1, 1);
  phone_icon_view_select_all(view());
  settle();

  gint last = 0;
  ASSERT_TRUE(phone_icon_view_get_visible_rows(view(), nullptr, &last));
  EXPECT_EQ(last, G_MAXINT - 1);
  EXPECT_THAT(take_fills(), SizeIs(Le(2U * kVisible)));
}

TEST_F(IconViewLayout, TellsTheVisibleRows) {
  show(100);

  gint first = -1;
  gint last = -1;
  EXPECT_TRUE(phone_icon_view_get_visible_rows(view(), &first, &last));

  EXPECT_EQ(first, 0);
  EXPECT_EQ(last, kVisible - 1);
}

TEST_F(IconViewLayout, HasNoVisibleRowsWithoutAModel) {
  show_without_model();
  gint first = 17;

  EXPECT_FALSE(phone_icon_view_get_visible_rows(view(), &first, nullptr));

  EXPECT_EQ(first, 17);
}

TEST_F(IconViewLayout, FindsTheRowAtAPoint) {
  show(100);
  scroll_to(kPitch);

  EXPECT_EQ(phone_icon_view_get_row_at(view(), 240, 80), 4);
}

TEST_F(IconViewLayout, FindsNoRowBesideCells) {
  show(5);

  EXPECT_EQ(phone_icon_view_get_row_at(view(), 160, 80), -1);
  EXPECT_EQ(phone_icon_view_get_row_at(view(), 80, 2), -1);
  EXPECT_EQ(phone_icon_view_get_row_at(view(), 400, 80 + kPitch), -1);
  EXPECT_EQ(phone_icon_view_get_row_at(view(), -1, 80), -1);
  EXPECT_EQ(phone_icon_view_get_row_at(view(), 80, kHeight + 5), -1);
}

TEST_F(IconViewLayout, ScrollsARowToItsPlace) {
  show(10'000);

  phone_icon_view_scroll_to_row(view(), 3000, 0);
  EXPECT_EQ(offset(), kMargin + 1000 * kPitch);
  phone_icon_view_scroll_to_row(view(), 3000, 1);
  EXPECT_EQ(offset(), kMargin + 1000 * kPitch - (kHeight - kCell));
}

TEST_F(IconViewLayout, ScrollsAsSoonAsItHasASize) {
  give_rows(10'000);
  phone_icon_view_scroll_to_row(view(), 3000, 0);

  show_without_model();

  EXPECT_EQ(offset(), kMargin + 1000 * kPitch);
}

TEST_F(IconViewLayout, IgnoresARowOutsideTheList) {
  show(100);

  phone_icon_view_scroll_to_row(view(), 100, 0);
  phone_icon_view_scroll_to_row(view(), -1, 0);

  EXPECT_EQ(offset(), 0);
}

TEST_F(IconViewLayout, IsMirroredFromRightToLeft) {
  gtk_widget_set_direction(widget(), GTK_TEXT_DIR_RTL);

  show(100);

  EXPECT_EQ(colour_at(400, 80), test::colour_of(0));
  EXPECT_EQ(colour_at(80, 80), test::colour_of(2));
  EXPECT_EQ(phone_icon_view_get_row_at(view(), 400, 80), 0);
}

TEST_F(IconViewLayout, TurnsRoundWithTheDirection) {
  show(100);

  gtk_widget_set_direction(widget(), GTK_TEXT_DIR_RTL);
  settle();

  EXPECT_EQ(colour_at(400, 80), test::colour_of(0));
}

TEST_F(IconViewLayout, FollowsTheSpacings) {
  show(100);

  gtk_icon_view_set_row_spacing(GTK_ICON_VIEW(view()), 20);
  settle();

  EXPECT_EQ(gtk_adjustment_get_step_increment(adjustment()), kCell + 20);
}

TEST_F(IconViewModel, StartsAtTheTop) {
  show(10'000);
  scroll_to(5000);

  give_rows(10'000);

  EXPECT_EQ(offset(), 0);
}

TEST_F(IconViewModel, IsReleasedWithTheView) {
  give_rows(10);
  const ExpectFinalized watch_store(store_.get());
  const ExpectFinalized watch_view(view_.get());

  gtk_widget_destroy(window_.get());
  window_.reset();
  view_.reset();
  store_.reset();
}

TEST_F(IconViewModel, IsReleasedWhenItIsReplaced) {
  show(100);
  {
    const ExpectFinalized watch(store_.get());

    phone_icon_view_set_model(view(), nullptr);
    store_.reset();
  }
  settle();
}

TEST_F(IconViewModel, IsReplacedOnScreen) {
  show(100);
  const auto list = pb::Ref<GtkListStore>::adopt(gtk_list_store_new(1, G_TYPE_INT));
  GtkTreeIter iter;
  gtk_list_store_insert_with_values(list.get(), &iter, -1, 0, 4711, -1);

  phone_icon_view_set_model(view(), GTK_TREE_MODEL(list.get()));
  settle();

  EXPECT_EQ(colour_at(80, 80), test::colour_of(4711));
  EXPECT_EQ(colour_at(240, 80), colour_at(160, 80));
}

TEST_F(IconViewModel, TellsItsNewLength) {
  show(3);

  gtk_virtual_list_store_set_total_size(store(), 3000);
  settle();

  EXPECT_EQ(gtk_adjustment_get_upper(adjustment()), 2.0 * kMargin + 1000.0 * kPitch - 6);
}

TEST_F(IconViewModel, MovesRowsUpWhenOneIsRemoved) {
  show(100);
  take_drawn();
  GtkTreeIter iter;
  gtk_virtual_list_store_iter_nth(store(), &iter, 1);

  gtk_virtual_list_store_remove(store(), &iter);
  settle();

  EXPECT_EQ(colour_at(240, 80), test::colour_of(2));
  EXPECT_THAT(take_drawn(), SizeIs(1)) << "only the row that came in at the end is drawn";
}

TEST_F(IconViewModel, MovesRowsDownWhenOneComesIn) {
  const auto list = pb::Ref<GtkListStore>::adopt(gtk_list_store_new(1, G_TYPE_INT));
  GtkTreeIter iter;
  for (int i = 0; i < 5; ++i) gtk_list_store_insert_with_values(list.get(), &iter, -1, 0, i, -1);
  phone_icon_view_set_model(view(), GTK_TREE_MODEL(list.get()));
  show_without_model();
  take_drawn();

  gtk_list_store_insert_with_values(list.get(), &iter, 0, 0, 99, -1);
  settle();

  EXPECT_EQ(colour_at(80, 80), test::colour_of(99));
  EXPECT_EQ(colour_at(240, 80), test::colour_of(0));
  EXPECT_THAT(take_drawn(), ElementsAre(99));
}

TEST_F(IconViewModel, ScrollsBackWhenTheListGetsShort) {
  show(10'000);
  scroll_to(100'000);

  gtk_virtual_list_store_set_total_size(store(), 3);
  settle();

  EXPECT_EQ(offset(), 0);
}

TEST_F(IconViewMeasures, HaveTheHeightOfItsCells) {
  EXPECT_EQ(gtk_icon_view_get_icon_height(GTK_ICON_VIEW(view())), kCell);
}

TEST_F(IconViewMeasures, PlaceTheFirstLineBelowTheTopMargin) {
  phone_icon_view_set_top_margin(GTK_ICON_VIEW(view()), 30);
  show(100);

  EXPECT_EQ(gtk_icon_view_get_top_margin(GTK_ICON_VIEW(view())), 30);
  EXPECT_EQ(phone_icon_view_get_row_at(view(), 80, 29), -1);
  EXPECT_EQ(phone_icon_view_get_row_at(view(), 80, 30), 0);
}

TEST_F(IconViewMeasures, AgreeWithTheFirstVisibleRow) {
  show(10'000);
  scroll_to(12'345);
  auto *icons = GTK_ICON_VIEW(view());
  const double height = gtk_icon_view_get_icon_height(icons) + gtk_icon_view_get_row_spacing(icons);

  const int start = static_cast<int>((offset() - gtk_icon_view_get_top_margin(icons)) / height) * 3;

  gint first = 0;
  phone_icon_view_get_visible_rows(view(), &first, nullptr);
  EXPECT_EQ(first, start);
}

TEST_F(IconViewMeasures, OfAStockViewAreWhatItWasTold) {
  const auto stock = pb::Ref<GtkWidget>::sink(gtk_icon_view_new());
  auto *icons = GTK_ICON_VIEW(stock.get());

  phone_icon_view_set_icon_height(icons, 120);
  phone_icon_view_set_top_margin(icons, 10);

  EXPECT_EQ(gtk_icon_view_get_icon_height(icons), 120);
  EXPECT_EQ(gtk_icon_view_get_top_margin(icons), 10);
}

TEST_F(IconViewMeasures, OfAStockViewAreItsMarginAndNoHeightUntilThen) {
  const auto stock = pb::Ref<GtkWidget>::sink(gtk_icon_view_new());
  auto *icons = GTK_ICON_VIEW(stock.get());

  EXPECT_EQ(gtk_icon_view_get_icon_height(icons), 0);
  EXPECT_EQ(gtk_icon_view_get_top_margin(icons), gtk_icon_view_get_margin(icons));
}

}  // namespace

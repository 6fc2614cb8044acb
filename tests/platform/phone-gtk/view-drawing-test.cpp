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

std::vector<int> rows(int first, int last) {
  std::vector<int> all(static_cast<std::size_t>(last - first + 1));
  std::iota(all.begin(), all.end(), first);
  return all;
}

class IconViewDrawing : public test::ViewFixture {};
class IconViewReading : public test::ViewFixture {};

TEST_F(IconViewReading, AsksForTheVisibleRowsOnly) {
  show(1'000'000);

  EXPECT_EQ(take_fills(), rows(0, kVisible - 1));
}

TEST_F(IconViewReading, OfAMillionRowsCostsAScreenAndAPageWhenScrolledToTheMiddle) {
  show(1'000'000);

  phone_icon_view_scroll_to_row(view(), 500'000, 0.5F);
  settle();

  EXPECT_THAT(take_fills(), SizeIs(AllOf(Ge(2U * kVisible - 3), Le(kVisible + 100U))));
}

TEST_F(IconViewReading, AsksForNothingAboveTheMiddleWhenScrolledThere) {
  show(1'000'000);
  take_fills();

  phone_icon_view_scroll_to_row(view(), 500'000, 0.5F);
  settle();

  EXPECT_THAT(take_fills(), Each(AllOf(Ge(499'970), Le(500'030))));
}

TEST_F(IconViewReading, TellsTheStoreTheWindowBeforeItDraws) {
  show(1'000'000);
  signals_.clear();

  phone_icon_view_scroll_to_row(view(), 500'001, 0);
  settle();

  EXPECT_THAT(signals_, Contains("fill 499960 500059 500001"));
}

TEST_F(IconViewReading, OpensAndClosesTheSourceOnceADrawing) {
  show(1'000'000);

  EXPECT_EQ(signals_.front(), "initialize 0");
  EXPECT_EQ(signals_.back(), "finalize 17");
  EXPECT_THAT(signals_, SizeIs(kVisible + 2U));
}

TEST_F(IconViewReading, AsksForNothingWhenADrawnScreenIsRepainted) {
  show(1'000'000);
  take_fills();

  gtk_widget_queue_draw(widget());
  settle();

  EXPECT_THAT(take_fills(), IsEmpty());
}

TEST_F(IconViewReading, AsksForTheNewLineOnlyWhenALineComesIn) {
  show(1'000'000);
  take_fills();

  scroll_to(kPitch);

  EXPECT_EQ(take_fills(), rows(kVisible, kVisible + 2));
}

TEST_F(IconViewReading, NeverGivesTheParentAModel) {
  show(100);

  EXPECT_EQ(gtk_icon_view_get_model(GTK_ICON_VIEW(view())), nullptr);
  EXPECT_EQ(phone_icon_view_get_model(view()), GTK_TREE_MODEL(store()));
}

TEST_F(IconViewReading, WorksWithAnOrdinaryList) {
  const auto list = pb::Ref<GtkListStore>::adopt(gtk_list_store_new(1, G_TYPE_INT));
  for (int i = 0; i < 7; ++i) {
    GtkTreeIter iter;
    gtk_list_store_insert_with_values(list.get(), &iter, -1, 0, 100 + i, -1);
  }
  phone_icon_view_set_model(view(), GTK_TREE_MODEL(list.get()));

  show_without_model();

  EXPECT_EQ(take_drawn(), rows(100, 106));
}

TEST_F(IconViewDrawing, PutsEachCellInItsPlace) {
  show(100);

  EXPECT_EQ(colour_at(80, 80), test::colour_of(0));
  EXPECT_EQ(colour_at(240, 80), test::colour_of(1));
  EXPECT_EQ(colour_at(80, 80 + kPitch), test::colour_of(3));
  EXPECT_EQ(colour_at(400, 799), test::colour_of(17));
}

TEST_F(IconViewDrawing, LeavesTheGroundBetweenCells) {
  show(100);
  const GdkColor ground = gtk_widget_get_style(widget())->base[GTK_STATE_NORMAL];

  EXPECT_EQ(colour_at(160, 80), static_cast<unsigned>((ground.red >> 8) << 16 |
                                                      (ground.green >> 8) << 8 | ground.blue >> 8));
}

TEST_F(IconViewDrawing, FollowsTheScrolling) {
  show(100);

  scroll_to(kPitch + 10);

  EXPECT_EQ(colour_at(80, 60), test::colour_of(3));
}

TEST_F(IconViewDrawing, DrawsEachVisibleCellOnce) {
  show(1000);

  EXPECT_EQ(take_drawn(), rows(0, kVisible - 1));
}

TEST_F(IconViewDrawing, CopiesDrawnCellsWhenItIsRepainted) {
  show(1000);
  take_drawn();

  gtk_widget_queue_draw(widget());
  settle();

  EXPECT_THAT(take_drawn(), IsEmpty());
}

TEST_F(IconViewDrawing, KeepsCellsOfTheScreenAbove) {
  show(1000);
  scroll_to(3 * kPitch);
  take_drawn();

  scroll_to(0);

  EXPECT_THAT(take_drawn(), IsEmpty());
}

TEST_F(IconViewDrawing, GivesFarCellsUp) {
  show(1000);
  scroll_to(50 * kPitch);
  take_drawn();

  scroll_to(0);

  EXPECT_THAT(take_drawn(), SizeIs(kVisible));
}

TEST_F(IconViewDrawing, DrawsOnlyTheRowThatChanged) {
  show(1000);
  take_drawn();
  GtkTreeIter iter;
  gtk_virtual_list_store_iter_nth(store(), &iter, 4);

  gtk_virtual_list_store_set(store(), &iter, 0, 777, -1);
  settle();

  EXPECT_THAT(take_drawn(), ElementsAre(777));
  EXPECT_EQ(colour_at(240, 80 + kPitch), test::colour_of(777));
}

TEST_F(IconViewDrawing, IsNotAskedToRepaintBeyondTheRowThatChanged) {
  show(1000);
  GtkTreeIter iter;
  gtk_virtual_list_store_iter_nth(store(), &iter, 4);

  gtk_virtual_list_store_set(store(), &iter, 0, 777, -1);

  GdkRegion *damage = gdk_window_get_update_area(content());
  ASSERT_NE(damage, nullptr);
  GdkRectangle box;
  gdk_region_get_clipbox(damage, &box);
  gdk_region_destroy(damage);
  EXPECT_EQ(box.x, 166);
  EXPECT_EQ(box.y, kMargin + kPitch);
  EXPECT_EQ(box.width, kCell);
  EXPECT_EQ(box.height, kCell);
}

TEST_F(IconViewDrawing, IgnoresARowThatChangedOutOfSight) {
  show(1000);
  take_drawn();
  GtkTreeIter iter;
  gtk_virtual_list_store_iter_nth(store(), &iter, 900);

  gtk_virtual_list_store_set(store(), &iter, 0, 777, -1);
  settle();

  EXPECT_THAT(take_drawn(), IsEmpty());
}

TEST_F(IconViewDrawing, RemembersAChangeOfAKeptRowOutOfSight) {
  show(1000);
  scroll_to(3 * kPitch);
  GtkTreeIter iter;
  gtk_virtual_list_store_iter_nth(store(), &iter, 0);
  gtk_virtual_list_store_set(store(), &iter, 0, 777, -1);
  take_drawn();

  scroll_to(0);

  EXPECT_THAT(take_drawn(), ElementsAre(777));
}

TEST_F(IconViewDrawing, DrawsAllVisibleCellsAnewWhenToldSo) {
  show(1000);
  take_drawn();

  phone_icon_view_invalidate_cells(view());
  settle();

  EXPECT_EQ(take_drawn(), rows(0, kVisible - 1));
}

TEST_F(IconViewDrawing, ShowsTheCursorWhenItHasTheFocus) {
  show(100);
  const unsigned before = colour_at(7, kMargin + 1);

  focus();
  phone_icon_view_set_cursor_row(view(), 0);
  settle();

  EXPECT_NE(colour_at(7, kMargin + 1), before);
  EXPECT_EQ(colour_at(7, kMargin + 1), 0xffffffU);
}

TEST_F(IconViewDrawing, FramesTheSelectedRow) {
  phone_icon_view_set_selection_mode(view(), GTK_SELECTION_SINGLE);
  show(100);

  phone_icon_view_select_row(view(), 1);
  settle();

  const GdkColor accent = gtk_widget_get_style(widget())->base[GTK_STATE_SELECTED];
  EXPECT_EQ(
      colour_at(168, kMargin + 2),
      static_cast<unsigned>((accent.red >> 8) << 16 | (accent.green >> 8) << 8 | accent.blue >> 8));
  EXPECT_EQ(colour_at(80, 80), test::colour_of(0));
}

TEST_F(IconViewDrawing, SurvivesAHandlerThatTakesTheModelAway) {
  give_rows(100);
  g_signal_connect_swapped(
      store(), "fill-cache",
      G_CALLBACK(+[](PhoneIconView *view) { phone_icon_view_set_model(view, nullptr); }), view());

  show_without_model();

  EXPECT_EQ(phone_icon_view_get_model(view()), nullptr);
  EXPECT_EQ(signals_.back(), "finalize 0");
}

TEST_F(IconViewDrawing, SurvivesAHandlerThatShortensTheList) {
  give_rows(100);
  g_signal_connect(store(), "fill-cache", G_CALLBACK(+[](GtkVirtualListStore *store) {
                     gtk_virtual_list_store_set_total_size(store, 2);
                   }),
                   nullptr);

  show_without_model();

  EXPECT_THAT(signals_, Contains("finalize 1"));
}

TEST_F(IconViewDrawing, LeavesCellsToTheNextRepaintWhenItTakesTooLong) {
  show(1000);
  scroll_to(500 * kPitch + kMargin);
  take_drawn();
  phone::gtk::private_of(view()).paint_budget_us = 0;

  gtk_adjustment_set_value(adjustment(), kMargin);
  gdk_window_process_all_updates();

  EXPECT_THAT(take_drawn(), SizeIs(Le(3U)));
}

TEST_F(IconViewDrawing, GetsDoneWhateverTheTimeItTakes) {
  phone::gtk::private_of(view()).paint_budget_us = 0;

  show(1000);

  EXPECT_THAT(take_drawn(), SizeIs(kVisible));
  EXPECT_EQ(colour_at(400, 799), test::colour_of(17));
}

TEST_F(IconViewDrawing, ShowsTheOldPictureUntilTheNewOneIsDrawn) {
  show(1000);
  phone::gtk::private_of(view()).paint_budget_us = 0;

  phone_icon_view_invalidate_cells(view());
  gdk_window_process_all_updates();

  EXPECT_EQ(colour_at(400, 799), test::colour_of(17));
}

TEST_F(IconViewDrawing, WorksWithoutAModel) {
  show_without_model();

  EXPECT_THAT(take_drawn(), IsEmpty());
}

TEST_F(IconViewDrawing, WorksWithoutARenderer) {
  const auto bare = pb::Ref<GtkWidget>::sink(phone_icon_view_new());
  give_rows(10);
  phone_icon_view_set_model(PHONE_ICON_VIEW(bare.get()), GTK_TREE_MODEL(store()));
  gtk_widget_destroy(gtk_bin_get_child(GTK_BIN(window_.get())));
  gtk_container_add(GTK_CONTAINER(window_.get()), bare.get());

  show_without_model();

  EXPECT_EQ(take_drawn().size(), 0U);
}

}  // namespace

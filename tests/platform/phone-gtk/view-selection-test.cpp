#include <gdk/gdkkeysyms.h>

#include "view-fixture.hpp"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class SelectionTest : public test::ViewFixture {
 protected:
  std::vector<int> selected() {
    std::vector<int> rows;
    phone_icon_view_foreach_selected(
        view(),
        [](PhoneIconView *, gint row, gpointer data) {
          static_cast<std::vector<int> *>(data)->push_back(row);
        },
        &rows);
    return rows;
  }
  void show_mode(GtkSelectionMode mode, int rows = 100) {
    phone_icon_view_set_selection_mode(view(), mode);
    show(rows);
    focus();
  }
};

class SelectionNone : public SelectionTest {};
class SelectionSingle : public SelectionTest {};
class SelectionMultiple : public SelectionTest {};

TEST_F(SelectionNone, IsTheModeAtFirst) {
  EXPECT_EQ(phone_icon_view_get_selection_mode(view()), GTK_SELECTION_NONE);
}

TEST_F(SelectionNone, SelectsNothing) {
  show_mode(GTK_SELECTION_NONE);

  click_row(3);
  phone_icon_view_select_row(view(), 4);

  EXPECT_THAT(selected(), IsEmpty());
  EXPECT_EQ(selection_changes_, 0);
}

TEST_F(SelectionSingle, SelectsAndOpensWithAClick) {
  show_mode(GTK_SELECTION_SINGLE);

  click_row(3);
  click_row(5);

  EXPECT_THAT(selected(), ElementsAre(5));
  EXPECT_THAT(activated_, ElementsAre(3, 5));
  EXPECT_EQ(selection_changes_, 2);
}

TEST_F(SelectionSingle, FollowsTheCursor) {
  show_mode(GTK_SELECTION_SINGLE);

  press_key(GDK_Right);

  EXPECT_THAT(selected(), ElementsAre(1));
}

TEST_F(SelectionSingle, KeepsOnlyTheLastRow) {
  show_mode(GTK_SELECTION_SINGLE);

  phone_icon_view_select_row(view(), 3);
  phone_icon_view_select_row(view(), 4);

  EXPECT_THAT(selected(), ElementsAre(4));
}

TEST_F(SelectionSingle, IsNotSelectAll) {
  show_mode(GTK_SELECTION_SINGLE);

  phone_icon_view_select_all(view());

  EXPECT_THAT(selected(), IsEmpty());
}

TEST_F(SelectionMultiple, TicksWithAClickAndOpensNothing) {
  show_mode(GTK_SELECTION_MULTIPLE);

  click_row(3);
  click_row(5);

  EXPECT_THAT(selected(), ElementsAre(3, 5));
  EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(SelectionMultiple, TakesTheTickAwayWithASecondClick) {
  show_mode(GTK_SELECTION_MULTIPLE);
  click_row(3);

  click_row(3);

  EXPECT_THAT(selected(), IsEmpty());
}

TEST_F(SelectionMultiple, TicksARangeWithShift) {
  show_mode(GTK_SELECTION_MULTIPLE);
  click_row(3);

  click_row(6, GDK_SHIFT_MASK);

  EXPECT_THAT(selected(), ElementsAre(3, 4, 5, 6));
}

TEST_F(SelectionMultiple, TicksTheCursorsRowWithSpace) {
  show_mode(GTK_SELECTION_MULTIPLE);
  phone_icon_view_set_cursor_row(view(), 2);

  press_key(GDK_space);

  EXPECT_THAT(selected(), ElementsAre(2));
}

TEST_F(SelectionMultiple, OpensTheCursorsRowWithReturn) {
  show_mode(GTK_SELECTION_MULTIPLE);
  phone_icon_view_set_cursor_row(view(), 2);

  press_key(GDK_Return);

  EXPECT_THAT(activated_, ElementsAre(2));
  EXPECT_THAT(selected(), IsEmpty());
}

TEST_F(SelectionMultiple, StaysWhenTheCursorMoves) {
  show_mode(GTK_SELECTION_MULTIPLE);
  click_row(3);

  press_key(GDK_Right);

  EXPECT_THAT(selected(), ElementsAre(3));
}

TEST_F(SelectionMultiple, GrowsWithShiftAndTheArrows) {
  show_mode(GTK_SELECTION_MULTIPLE);
  phone_icon_view_set_cursor_row(view(), 2);

  press_key(GDK_Right, GDK_SHIFT_MASK);
  press_key(GDK_Right, GDK_SHIFT_MASK);

  EXPECT_THAT(selected(), ElementsAre(2, 3, 4));
}

TEST_F(SelectionMultiple, TakesAllRowsOfAMillionWithoutReadingThem) {
  show_mode(GTK_SELECTION_MULTIPLE, 1'000'000);
  take_fills();

  press_key(GDK_a, GDK_CONTROL_MASK);
  settle();

  EXPECT_EQ(phone_icon_view_count_selected(view()), 1'000'000);
  EXPECT_THAT(take_fills(), IsEmpty());
}

TEST_F(SelectionMultiple, EndsForAllRows) {
  show_mode(GTK_SELECTION_MULTIPLE);
  phone_icon_view_select_all(view());

  phone_icon_view_unselect_all(view());

  EXPECT_THAT(selected(), IsEmpty());
  EXPECT_EQ(selection_changes_, 2);
}

TEST_F(SelectionMultiple, SaysNothingWhenNothingChanges) {
  show_mode(GTK_SELECTION_MULTIPLE);
  phone_icon_view_select_row(view(), 3);

  phone_icon_view_select_row(view(), 3);
  phone_icon_view_unselect_row(view(), 4);

  EXPECT_EQ(selection_changes_, 1);
}

TEST_F(SelectionMultiple, RepaintsOnlyTheCellsThatChanged) {
  show_mode(GTK_SELECTION_MULTIPLE);
  settle();
  take_drawn();

  phone_icon_view_select_row(view(), 3);
  settle();

  EXPECT_THAT(take_drawn(), ElementsAre(3));
}

TEST_F(SelectionMultiple, RemembersCellsThatChangedOutOfSight) {
  show_mode(GTK_SELECTION_MULTIPLE, 1000);
  scroll_to(3 * kPitch);
  phone_icon_view_select_row(view(), 0);
  take_drawn();

  scroll_to(0);

  EXPECT_THAT(take_drawn(), ElementsAre(0));
}

TEST_F(SelectionMultiple, MovesWithItsRows) {
  show_mode(GTK_SELECTION_MULTIPLE);
  phone_icon_view_select_row(view(), 5);
  GtkTreeIter iter;
  gtk_virtual_list_store_iter_nth(store(), &iter, 2);

  gtk_virtual_list_store_remove(store(), &iter);

  EXPECT_THAT(selected(), ElementsAre(4));
  EXPECT_EQ(selection_changes_, 1);
}

TEST_F(SelectionMultiple, LosesARowThatGoes) {
  show_mode(GTK_SELECTION_MULTIPLE);
  phone_icon_view_select_row(view(), 5);
  GtkTreeIter iter;
  gtk_virtual_list_store_iter_nth(store(), &iter, 5);

  gtk_virtual_list_store_remove(store(), &iter);

  EXPECT_THAT(selected(), IsEmpty());
  EXPECT_EQ(selection_changes_, 2);
}

TEST_F(SelectionMultiple, EndsWithItsMode) {
  show_mode(GTK_SELECTION_MULTIPLE);
  phone_icon_view_select_all(view());

  phone_icon_view_set_selection_mode(view(), GTK_SELECTION_NONE);

  EXPECT_THAT(selected(), IsEmpty());
  EXPECT_EQ(selection_changes_, 2);
}

TEST_F(SelectionMultiple, EndsWithItsList) {
  show_mode(GTK_SELECTION_MULTIPLE);
  phone_icon_view_select_all(view());

  give_rows(100);

  EXPECT_THAT(selected(), IsEmpty());
}

TEST_F(SelectionMultiple, ShowsAPlaceToTick) {
  show(100);
  const unsigned before = colour_at(6 + kCell - 19, kMargin + 19);

  phone_icon_view_set_selection_mode(view(), GTK_SELECTION_MULTIPLE);
  settle();

  EXPECT_NE(colour_at(6 + kCell - 19 + 12, kMargin + 19), before);
}

}  // namespace

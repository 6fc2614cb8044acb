#include <gdk/gdkkeysyms.h>

#include "view-fixture.hpp"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class IconViewKeys : public test::ViewFixture {
 protected:
  void show_focused(int rows) {
    show(rows);
    focus();
    settle();
  }
  gint cursor() { return phone_icon_view_get_cursor_row(view()); }
};

TEST_F(IconViewKeys, StartAtTheFirstVisibleRow) {
  show(1000);
  scroll_to(10 * kPitch + kMargin);

  focus();

  EXPECT_EQ(cursor(), 30);
}

TEST_F(IconViewKeys, MoveRightAndLeftByARow) {
  show_focused(100);

  press_key(GDK_Right);
  press_key(GDK_Right);
  EXPECT_EQ(cursor(), 2);
  press_key(GDK_Left);
  EXPECT_EQ(cursor(), 1);
}

TEST_F(IconViewKeys, MoveOnToTheNextLineAtItsEnd) {
  show_focused(100);
  phone_icon_view_set_cursor_row(view(), 2);

  press_key(GDK_Right);

  EXPECT_EQ(cursor(), 3);
}

TEST_F(IconViewKeys, MoveDownAndUpByALine) {
  show_focused(100);

  press_key(GDK_Down);
  press_key(GDK_Down);
  EXPECT_EQ(cursor(), 6);
  press_key(GDK_Up);
  EXPECT_EQ(cursor(), 3);
}

TEST_F(IconViewKeys, StayAtTheStart) {
  show_focused(100);

  press_key(GDK_Left);
  press_key(GDK_Up);

  EXPECT_EQ(cursor(), 0);
}

TEST_F(IconViewKeys, ReachTheLastRowOfAShortLine) {
  show_focused(5);
  phone_icon_view_set_cursor_row(view(), 2);

  press_key(GDK_Down);

  EXPECT_EQ(cursor(), 4);
}

TEST_F(IconViewKeys, GoToBothEnds) {
  show_focused(1'000'000);

  press_key(GDK_End);
  EXPECT_EQ(cursor(), 999'999);
  press_key(GDK_Home);
  EXPECT_EQ(cursor(), 0);
}

TEST_F(IconViewKeys, GoByPages) {
  show_focused(1000);

  press_key(GDK_Page_Down);
  EXPECT_EQ(cursor(), 15);
  press_key(GDK_Page_Up);
  EXPECT_EQ(cursor(), 0);
}

TEST_F(IconViewKeys, BringTheCursorIntoView) {
  show_focused(1000);

  press_key(GDK_End);
  settle();

  gint last = 0;
  phone_icon_view_get_visible_rows(view(), nullptr, &last);
  EXPECT_EQ(last, 999);
  EXPECT_EQ(offset(),
            gtk_adjustment_get_upper(adjustment()) - gtk_adjustment_get_page_size(adjustment()));
}

TEST_F(IconViewKeys, ScrollNoFurtherThanNeeded) {
  show_focused(1000);
  phone_icon_view_set_cursor_row(view(), 12);

  press_key(GDK_Down);

  EXPECT_EQ(offset(), kMargin + 6 * kPitch - kHeight);
}

TEST_F(IconViewKeys, ShowTheMarginAboveTheFirstLine) {
  show_focused(1000);
  phone_icon_view_set_cursor_row(view(), 600);

  press_key(GDK_Home);

  EXPECT_EQ(offset(), 0);
}

TEST_F(IconViewKeys, OpenTheCursorsRowWithReturn) {
  show_focused(100);
  phone_icon_view_set_cursor_row(view(), 7);

  press_key(GDK_Return);

  EXPECT_THAT(activated_, ElementsAre(7));
}

TEST_F(IconViewKeys, OpenTheCursorsRowWithSpaceWhenNothingCanBeSelected) {
  show_focused(100);
  phone_icon_view_set_cursor_row(view(), 7);

  press_key(GDK_space);

  EXPECT_THAT(activated_, ElementsAre(7));
}

TEST_F(IconViewKeys, DoNothingInAnEmptyList) {
  show_focused(0);

  press_key(GDK_Down);
  press_key(GDK_Return);

  EXPECT_EQ(cursor(), -1);
  EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(IconViewKeys, AreMirroredFromRightToLeft) {
  gtk_widget_set_direction(widget(), GTK_TEXT_DIR_RTL);
  show_focused(100);

  press_key(GDK_Left);

  EXPECT_EQ(cursor(), 1);
}

TEST_F(IconViewKeys, StayWithTheirRowWhenAnEarlierRowGoes) {
  show_focused(100);
  phone_icon_view_set_cursor_row(view(), 7);
  GtkTreeIter iter;
  gtk_virtual_list_store_iter_nth(store(), &iter, 2);

  gtk_virtual_list_store_remove(store(), &iter);

  EXPECT_EQ(cursor(), 6);
}

TEST_F(IconViewKeys, StayInPlaceWhenTheirRowGoes) {
  show_focused(100);
  phone_icon_view_set_cursor_row(view(), 7);
  GtkTreeIter iter;
  gtk_virtual_list_store_iter_nth(store(), &iter, 7);

  gtk_virtual_list_store_remove(store(), &iter);

  EXPECT_EQ(cursor(), 7);
}

TEST_F(IconViewKeys, MoveToTheLastRowWhenTheEndGoes) {
  show_focused(8);
  phone_icon_view_set_cursor_row(view(), 7);

  gtk_virtual_list_store_set_total_size(store(), 5);

  EXPECT_EQ(cursor(), 4);
}

TEST_F(IconViewKeys, HaveNoCursorInANewList) {
  show_focused(100);
  phone_icon_view_set_cursor_row(view(), 7);

  give_rows(100);

  EXPECT_EQ(cursor(), -1);
}

TEST_F(IconViewKeys, IgnoreACursorOutsideTheList) {
  show_focused(100);
  phone_icon_view_set_cursor_row(view(), 7);

  phone_icon_view_set_cursor_row(view(), 100);

  EXPECT_EQ(cursor(), 7);
}

}  // namespace

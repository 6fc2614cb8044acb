#include "view-fixture.hpp"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class IconViewPointer : public test::ViewFixture {
 protected:
  /// A drag upwards by this many pixels, in steps of 10 ms.
  void drag_up(int pixels, int steps = 10) {
    press(240, 600);
    for (int i = 1; i <= steps; ++i) move(240, 600.0 - 1.0 * pixels * i / steps);
  }
};

class IconViewGlide : public IconViewPointer {
 protected:
  void fling() {
    drag_up(300, 5);
    release(240, 300);
  }
  static void run_for(guint ms) {
    bool over = false;
    g_timeout_add(
        ms,
        [](gpointer data) -> gboolean {
          *static_cast<bool *>(data) = true;
          return G_SOURCE_REMOVE;
        },
        &over);
    while (!over) g_main_context_iteration(nullptr, TRUE);
  }
};

class IconViewHandle : public test::ViewFixture {};

TEST_F(IconViewPointer, OpensARowWithAClick) {
  show(100);

  click_row(4);

  EXPECT_THAT(activated_, ElementsAre(4));
  EXPECT_EQ(phone_icon_view_get_cursor_row(view()), 4);
}

TEST_F(IconViewPointer, TakesTheFocusWithAClick) {
  show(100);

  click_row(4);

  EXPECT_TRUE(gtk_widget_is_focus(widget()));
}

TEST_F(IconViewPointer, OpensNothingBesideCells) {
  show(100);

  click(160, 80);

  EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(IconViewPointer, ClicksAlsoWhenItTrembles) {
  show(100);

  press(80, 80);
  move(85, 86);
  release(84, 88);

  EXPECT_THAT(activated_, ElementsAre(0));
  EXPECT_EQ(offset(), 0);
}

TEST_F(IconViewPointer, DoesNotClickWhenItLeftTheCell) {
  show(100);

  press(150, 80);
  move(160, 80);
  release(168, 80);

  EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(IconViewPointer, OpensOnceForADoubleClick) {
  show(100);

  click_row(4);
  GdkEvent *event = gdk_event_new(GDK_2BUTTON_PRESS);
  event->button.window = GDK_WINDOW(g_object_ref(content()));
  event->button.button = 1;
  gtk_main_do_event(event);
  gdk_event_free(event);
  release(middle_x(4), middle_y(4));

  EXPECT_THAT(activated_, ElementsAre(4));
}

TEST_F(IconViewPointer, LeavesOtherButtonsToTheApplication) {
  show(100);
  int presses = 0;
  g_signal_connect_after(view(), "button-press-event",
                         G_CALLBACK(+[](GtkWidget *, GdkEvent *, int *count) {
                           ++*count;
                           return TRUE;
                         }),
                         &presses);

  press(80, 80, 3);

  EXPECT_EQ(presses, 1);
  EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(IconViewPointer, DragsTheList) {
  show(1000);

  drag_up(200);

  EXPECT_EQ(offset(), 200);
}

TEST_F(IconViewPointer, IsNoClickAfterADrag) {
  show(1000);

  drag_up(20);
  release(240, 580);

  EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(IconViewPointer, ShowsThatAPressWasFelt) {
  show(100);

  press(80, 80);
  settle();
  EXPECT_NE(colour_at(80, 80), test::colour_of(0));
  release(240, 80);
  settle();
  EXPECT_EQ(colour_at(80, 80), test::colour_of(0));
}

TEST_F(IconViewPointer, ScrollsByALineWithTheWheel) {
  show(1000);

  turn_wheel(GDK_SCROLL_DOWN);
  turn_wheel(GDK_SCROLL_DOWN);
  turn_wheel(GDK_SCROLL_UP);

  EXPECT_EQ(offset(), kPitch);
}

TEST_F(IconViewPointer, DragsNoFurtherThanTheEnds) {
  show(1000);

  press(240, 100);
  move(240, 700);

  EXPECT_EQ(offset(), 0);
}

TEST_F(IconViewPointer, DropsAPressWhenARowGoes) {
  show(100);
  press(80, 80);
  GtkTreeIter iter;
  gtk_virtual_list_store_iter_nth(store(), &iter, 0);

  gtk_virtual_list_store_remove(store(), &iter);
  release(80, 80);

  EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(IconViewGlide, GoesOnAfterAFling) {
  show(1'000'000);

  fling();
  const double left_at = offset();
  run_for(60);

  EXPECT_EQ(left_at, 300);
  EXPECT_GT(offset(), left_at + 10);
}

TEST_F(IconViewGlide, DoesNotFollowAFingerThatRested) {
  show(1'000'000);
  drag_up(300);
  time_ms_ += 500;

  release(240, 300);
  run_for(40);

  EXPECT_EQ(offset(), 300);
}

TEST_F(IconViewGlide, IsStoppedByAPressThatIsNoClick) {
  show(1'000'000);
  fling();
  run_for(20);

  press(80, 80);
  const double stopped_at = offset();
  run_for(40);
  release(80, 80);

  EXPECT_EQ(offset(), stopped_at);
  EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(IconViewGlide, IsStoppedByTheCursor) {
  show(1'000'000);
  fling();

  phone_icon_view_set_cursor_row(view(), 6000);
  const double stopped_at = offset();
  run_for(40);

  EXPECT_EQ(offset(), stopped_at);
}

TEST_F(IconViewGlide, DiesWithTheView) {
  show(1'000'000);
  fling();
  const support::ExpectFinalized watch(view_.get());

  gtk_widget_destroy(window_.get());
  window_.reset();
  view_.reset();
  run_for(40);
}

TEST_F(IconViewGlide, DoesNotHappenWithoutAnimations) {
  g_object_set(gtk_settings_get_default(), "gtk-enable-animations", FALSE, nullptr);
  show(1'000'000);

  fling();
  run_for(40);

  EXPECT_EQ(offset(), 300);
}

TEST_F(IconViewHandle, LeadsThroughTheWholeList) {
  show(1'000'000);

  press(470, 30);
  move(470, 30 + kHeight);

  gint last = 0;
  phone_icon_view_get_visible_rows(view(), nullptr, &last);
  EXPECT_EQ(last, 999'999);
}

TEST_F(IconViewHandle, LeadsToTheMiddle) {
  show(1'000'000);

  press(470, 30);
  move(470, 30 + (kHeight - 64) / 2.0);

  gint first = 0;
  phone_icon_view_get_visible_rows(view(), &first, nullptr);
  EXPECT_NEAR(first, 500'000, 20);
}

TEST_F(IconViewHandle, ReadsOnlyWhatIsSeenOnTheWay) {
  show(1'000'000);
  take_fills();
  press(470, 30);

  for (int y = 30; y < 530; y += 50) {
    move(470, y);
    settle();
  }

  EXPECT_LE(take_fills().size(), 10U * (kVisible + 3));
}

TEST_F(IconViewHandle, IsNoClick) {
  show(1'000'000);

  click(470, 30);

  EXPECT_THAT(activated_, IsEmpty());
}

TEST_F(IconViewHandle, LeavesTheRestOfTheBorderToTheCells) {
  show(1'000'000);

  click(460, 400);

  EXPECT_THAT(activated_, ElementsAre(8));
}

TEST_F(IconViewHandle, IsNotThereForAShortList) {
  show(60);

  click(460, 30);

  EXPECT_THAT(activated_, ElementsAre(2));
}

TEST_F(IconViewHandle, IsOnTheOtherSideFromRightToLeft) {
  gtk_widget_set_direction(widget(), GTK_TEXT_DIR_RTL);
  show(1'000'000);

  press(10, 30);
  move(10, 30 + kHeight);

  EXPECT_GT(offset(), 50'000'000);
}

TEST_F(IconViewHandle, IsDrawn) {
  show(1'000'000);

  EXPECT_NE(colour_at(472, 30), test::colour_of(2));
  EXPECT_EQ(colour_at(472, 100), test::colour_of(2));
}

TEST_F(IconViewHandle, TellsTheRowWhileItIsHeld) {
  show(1'000'000);
  const unsigned before = colour_at(420, 32);

  press(470, 30);
  settle();

  EXPECT_NE(colour_at(420, 32), before);
}

}  // namespace

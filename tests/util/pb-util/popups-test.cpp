#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "util/pb-util/dialog-fixture.hpp"

namespace {

using fake::calls_of;
using fake::Logged;
using fake::platform;
using pb_test::DialogTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class Popups : public DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    made_ = &watch_dialogs();
    fake::settings().values["/CSC/Apps/Settings/DefTheme"] = 2;  // #007CC2
  }

  [[nodiscard]] GtkWidget *shown() { return made_->empty() ? nullptr : made_->back(); }

  static GdkColor text_colour(GtkWidget *dialog) {
    GtkWidget *label = gtk_style_dialog_get_text_label(GTK_STYLE_DIALOG(dialog));
    return gtk_widget_get_modifier_style(label)->fg[GTK_STATE_NORMAL];
  }

  static void expect_theme_colour(GtkWidget *dialog) {
    const GdkColor colour = text_colour(dialog);
    EXPECT_EQ(colour.red, 0);
    EXPECT_EQ(colour.green, 0x7c7c);
    EXPECT_EQ(colour.blue, 0xc2c2);
  }

  std::vector<GtkWidget *> *made_ = nullptr;
};

using Popup = Popups;

TEST_F(Popup, ShowsItsText) {
  mb_show_popup(nullptr, "Sent");

  ASSERT_TRUE(shown());
  EXPECT_EQ(text_of(shown()), "Sent");
  EXPECT_TRUE(gtk_widget_get_visible(shown()));
}

TEST_F(Popup, LiesOverTheMainWindow) {
  create_window();

  mb_show_popup(nullptr, "Sent");

  EXPECT_THAT(calls_of("gtk_style_dialog_new"),
              ElementsAre("gtk_style_dialog_new(2, GtkMainWindow, 2)"));
}

TEST_F(Popup, LiesOverTheWindowOfItsParent) {
  create_window();
  GtkWidget *window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gtk_widget_set_name(window, "other");
  GtkWidget *label = gtk_label_new("x");
  gtk_container_add(GTK_CONTAINER(window), label);

  mb_show_popup(label, "Sent");

  EXPECT_THAT(calls_of("gtk_style_dialog_new"), ElementsAre("gtk_style_dialog_new(2, other, 2)"));
  gtk_widget_destroy(window);
}

TEST_F(Popup, IsTheCurrentDialog) {
  mb_show_popup(nullptr, "Sent");

  EXPECT_TRUE(pb_dialog_check_exist());
  EXPECT_TRUE(mb_popup_check_exist());
}

TEST_F(Popup, DoesNotExistAtFirst) { EXPECT_FALSE(mb_popup_check_exist()); }

TEST_F(Popup, HasTheThemesColour) {
  mb_show_popup(nullptr, "Sent");

  expect_theme_colour(shown());
}

TEST_F(Popup, LeavesTheKeyboardToTheWindowBelow) {
  mb_show_popup(nullptr, "Sent");

  EXPECT_FALSE(gtk_window_get_accept_focus(GTK_WINDOW(shown())));
  EXPECT_FALSE(gtk_window_get_modal(GTK_WINDOW(shown())));
}

TEST_F(Popup, GoesAfterTwoSeconds) {
  mb_show_popup(nullptr, "Sent");

  fake::advance_clock(1999);
  EXPECT_TRUE(mb_popup_check_exist());
  fake::advance_clock(1);

  EXPECT_FALSE(mb_popup_check_exist());
  EXPECT_FALSE(pb_dialog_check_exist());
  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
}

TEST_F(Popup, StaysLongerForALongText) {
  mb_show_popup(nullptr, std::string(60, 'n').c_str());

  fake::advance_clock(2999);
  EXPECT_TRUE(mb_popup_check_exist());
  fake::advance_clock(1);

  EXPECT_FALSE(mb_popup_check_exist());
}

TEST_F(Popup, GoesAfterTenSecondsAtTheLatest) {
  mb_show_popup(nullptr, std::string(4096, 'n').c_str());

  fake::advance_clock(10000);

  EXPECT_FALSE(mb_popup_check_exist());
}

TEST_F(Popup, GoesOnATap) {
  mb_show_popup(nullptr, "Sent");
  const support::ExpectFinalized watch(shown());
  GdkEvent *event = gdk_event_new(GDK_BUTTON_PRESS);
  event->button.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(shown())));
  event->button.button = 1;

  gtk_widget_event(shown(), event);

  EXPECT_FALSE(mb_popup_check_exist());
  gdk_event_free(event);
}

TEST_F(Popup, MakesWayForTheNext) {
  mb_show_popup(nullptr, "First");
  fake::advance_clock(1500);

  mb_show_popup(nullptr, "Second");

  fake::advance_clock(1500);
  EXPECT_TRUE(mb_popup_check_exist());
  EXPECT_EQ(text_of(shown()), "Second");
  EXPECT_THAT(fake::pending_timeouts(), SizeIs(1));
}

TEST_F(Popup, ReplacesAWaitingMessage) {
  mb_util_create_waiting_popup("Sending");
  const support::ExpectFinalized watch(shown());

  mb_show_popup(nullptr, "Sent");
}

TEST_F(Popup, IsTakenDownByTheOthersEnd) {
  mb_show_popup(nullptr, "Sent");

  pb_dialog_destroy();

  EXPECT_FALSE(mb_popup_check_exist());
}

TEST_F(Popup, IsTakenDownWithItsWindow) {
  create_window();
  mb_show_popup(nullptr, "Sent");

  pb_view_manager_destroy_window();

  EXPECT_FALSE(mb_popup_check_exist());
  fake::advance_clock(2000);
}

TEST_F(Popup, ShowsNothingForNull) {
  mb_show_popup(nullptr, nullptr);

  EXPECT_FALSE(mb_popup_check_exist());
  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_WARNING, "[mb_show_popup]text = NULL\n")));
}

TEST_F(Popup, LogsADialogThatIsNotMade) {
  refuse_dialogs();

  mb_show_popup(nullptr, "Sent");

  EXPECT_FALSE(pb_dialog_check_exist());
  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_WARNING, "[mb_show_popup]dialog creation failed\n\n")));
}

TEST_F(Popup, IsAnAlertForAScreenReader) {
  mb_show_popup(nullptr, "Sent");

  AtkObject *accessible = gtk_widget_get_accessible(shown());
  EXPECT_EQ(atk_object_get_role(accessible), ATK_ROLE_ALERT);
  EXPECT_STREQ(atk_object_get_name(accessible), "Sent");
}

class PopupPlace : public Popups {
 protected:
  static GdkRectangle place_of(GtkWidget *window) {
    settle();
    GdkRectangle place{};
    gdk_window_get_origin(gtk_widget_get_window(window), &place.x, &place.y);
    gtk_window_get_size(GTK_WINDOW(window), &place.width, &place.height);
    return place;
  }
};

TEST_F(PopupPlace, IsInTheLowerPartOfItsWindow) {
  GtkWidget *window = create_window();
  gtk_window_move(GTK_WINDOW(window), 100, 50);
  settle();

  mb_show_popup(nullptr, "Sent");

  const GdkRectangle below = place_of(window);
  const GdkRectangle popup = place_of(shown());
  EXPECT_EQ(popup.x, below.x + (below.width - popup.width) / 2);
  EXPECT_EQ(popup.y, below.y + below.height * 3 / 4 - popup.height / 2);
}

TEST_F(PopupPlace, FollowsItsWindow) {
  GtkWidget *window = create_window();
  settle();
  mb_show_popup(nullptr, "Sent");
  settle();

  gtk_window_move(GTK_WINDOW(window), 200, 10);
  settle();

  const GdkRectangle below = place_of(window);
  EXPECT_EQ(below.x, 200);
  EXPECT_EQ(place_of(shown()).x, below.x + (below.width - place_of(shown()).width) / 2);
}

TEST_F(PopupPlace, DoesNotLeaveItsWindowForALongText) {
  GtkWidget *window = create_window();
  settle();
  std::string text;
  for (int i = 0; i < 60; ++i) text += "line\n";

  mb_show_popup(nullptr, text.c_str());

  EXPECT_GE(place_of(shown()).y, place_of(window).y);
}

TEST_F(PopupPlace, IsNobodysWithoutAPopup) { mb_popup_reposition_popup_window(); }

using WaitingPopup = Popups;

TEST_F(WaitingPopup, LiesOverTheMainWindow) {
  create_window();

  mb_util_create_waiting_popup("Sending");

  EXPECT_THAT(calls_of("gtk_style_dialog_new"),
              ElementsAre("gtk_style_dialog_new(4, GtkMainWindow, 2)"));
}

TEST_F(WaitingPopup, ShowsItsTextInTheThemesColour) {
  mb_util_create_waiting_popup("Sending");

  EXPECT_EQ(text_of(shown()), "Sending");
  EXPECT_TRUE(gtk_widget_get_visible(shown()));
  expect_theme_colour(shown());
}

TEST_F(WaitingPopup, IsTheCurrentDialogUntilItIsTakenDown) {
  mb_util_create_waiting_popup("Sending");
  EXPECT_TRUE(pb_dialog_check_exist());
  EXPECT_FALSE(mb_popup_check_exist());

  fake::advance_clock(1'000'000);
  EXPECT_TRUE(pb_dialog_check_exist());
  pb_dialog_destroy();

  EXPECT_FALSE(pb_dialog_check_exist());
}

TEST_F(WaitingPopup, MakesWayForTheNext) {
  mb_util_create_waiting_popup("First");
  const support::ExpectFinalized watch(shown());

  mb_util_create_waiting_popup("Second");

  EXPECT_EQ(text_of(shown()), "Second");
}

TEST_F(WaitingPopup, GoesWhenTheUserClosesIt) {
  mb_util_create_waiting_popup("Sending");
  const support::ExpectFinalized watch(shown());

  gtk_dialog_response(GTK_DIALOG(shown()), GTK_RESPONSE_DELETE_EVENT);

  EXPECT_FALSE(pb_dialog_check_exist());
}

TEST_F(WaitingPopup, GoesEvenWhenADialogTookItsPlace) {
  mb_util_create_waiting_popup("Sending");
  GtkWidget *waiting = shown();
  const support::ExpectFinalized watch(waiting);
  pb_util_show_dialog(1, "Title", "Text", 1, 0, nullptr);
  EXPECT_FALSE(pb_dialog_check_exist());

  pb_dialog_destroy();
}

TEST_F(WaitingPopup, LogsADialogThatIsNotMade) {
  refuse_dialogs();

  mb_util_create_waiting_popup("Sending");

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_WARNING,
                                 "[mb_util_create_waiting_popup]dialog creation failed\n\n")));
}

using LoopAnimation = Popups;

TEST_F(LoopAnimation, IsModalOverTheMainWindow) {
  create_window();

  mb_util_start_waiting_loop_animation("Deleting contents.....");

  EXPECT_THAT(calls_of("gtk_style_dialog_new"),
              ElementsAre("gtk_style_dialog_new(4, GtkMainWindow, 3)"));
  EXPECT_EQ(text_of(shown()), "Deleting contents.....");
  EXPECT_TRUE(pb_dialog_check_exist());
}

/// The toplevel windows that are neither the main window nor dialogs.
std::vector<GtkWidget *> dim_windows() {
  std::vector<GtkWidget *> found;
  GList *windows = gtk_window_list_toplevels();
  for (GList *link = windows; link != nullptr; link = link->next) {
    auto *window = GTK_WIDGET(link->data);
    if (window != pb_view_manager_get_window() && !GTK_IS_DIALOG(window) &&
        gtk_window_get_window_type(GTK_WINDOW(window)) == GTK_WINDOW_TOPLEVEL) {
      found.push_back(window);
    }
  }
  g_list_free(windows);
  return found;
}

TEST_F(LoopAnimation, DimsTheMainWindow) {
  GtkWidget *window = create_window();
  settle();

  mb_util_start_waiting_loop_animation("Deleting");
  settle();

  ASSERT_THAT(dim_windows(), SizeIs(1));
  GtkWidget *dim = dim_windows().front();
  EXPECT_TRUE(gtk_widget_get_visible(dim));
  gint width = 0;
  gint height = 0;
  gtk_window_get_size(GTK_WINDOW(dim), &width, &height);
  EXPECT_EQ(width, gdk_window_get_width(gtk_widget_get_window(window)));
  EXPECT_EQ(height, gdk_window_get_height(gtk_widget_get_window(window)));
}

TEST_F(LoopAnimation, TakesItsDimWindowDown) {
  create_window();
  settle();
  mb_util_start_waiting_loop_animation("Deleting");
  settle();
  fake::take_log();

  pb_dialog_destroy();

  EXPECT_THAT(dim_windows(), IsEmpty());
  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_INFO, "[pb_dialog_destroy]destroy dim window\n")));
}

TEST_F(LoopAnimation, DoesNotDimWithoutAWindow) {
  mb_util_start_waiting_loop_animation("Deleting");

  EXPECT_THAT(dim_windows(), IsEmpty());
}

TEST_F(LoopAnimation, IsNotDimAnyMoreWhenAPopupReplacesIt) {
  create_window();
  settle();
  mb_util_start_waiting_loop_animation("Deleting");

  mb_show_popup(nullptr, "Deleted");

  EXPECT_THAT(dim_windows(), IsEmpty());
}

TEST_F(LoopAnimation, LogsADialogThatIsNotMade) {
  refuse_dialogs();

  mb_util_start_waiting_loop_animation("Deleting");

  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_WARNING,
                                                 "[mb_util_start_waiting_loop_animation]dialog "
                                                 "creation failed\n\n")));
}

}  // namespace

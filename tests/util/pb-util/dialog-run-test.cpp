// The dialogs as the user meets them: the host's widgets, a real main loop, real keys and
// clicks. The other tests of dialogs stand on a pretended phone.
#include <gdk/gdkkeysyms.h>
#include <main-window.h>
#include <style-dialog.h>

#include <functional>
#include <string>

#include "glib-ptr.hpp"
#include "pb-util-dialog.h"
#include "pb-util-settings.h"
#include "pb-view-manager.h"
#include "support/glib-test.hpp"

namespace {

constexpr guint kPatienceMs = 20000;

/// Runs a function once the main loop has nothing better to do.
void later(std::function<void()> action) {
  auto *held = new std::function<void()>(std::move(action));
  g_idle_add_full(
      G_PRIORITY_LOW,
      [](gpointer data) -> gboolean {
        (*static_cast<std::function<void()> *>(data))();
        return G_SOURCE_REMOVE;
      },
      held, [](gpointer data) { delete static_cast<std::function<void()> *>(data); });
}

class DialogRun : public support::DisplayTest {
 protected:
  void SetUp() override {
    DisplayTest::SetUp();
    // A dialog that nobody ends would stop the test for ever.
    g_timeout_add(
        kPatienceMs,
        [](gpointer) -> gboolean {
          ADD_FAILURE() << "a dialog did not end";
          pb_dialog_destroy();
          return G_SOURCE_CONTINUE;
        },
        nullptr);
    pb_view_manager_create_window(0);
  }
  void TearDown() override {
    pb_dialog_destroy();
    pb_view_manager_destroy_window();
  }

  /// The newest dialog on the screen.
  static GtkDialog *dialog() {
    GtkDialog *found = nullptr;
    const pb::ListSpinePtr windows(gtk_window_list_toplevels());
    for (GtkWidget *window : pb::each<GtkWidget>(windows.get())) {
      if (GTK_IS_STYLE_DIALOG(window) && gtk_widget_get_mapped(window)) found = GTK_DIALOG(window);
    }
    return found;
  }

  static void click(gint response) {
    const pb::ListSpinePtr buttons(
        gtk_container_get_children(GTK_CONTAINER(gtk_dialog_get_action_area(dialog()))));
    for (GtkWidget *button : pb::each<GtkWidget>(buttons.get())) {
      if (gtk_dialog_get_response_for_widget(dialog(), button) == response) {
        gtk_button_clicked(GTK_BUTTON(button));
        return;
      }
    }
    ADD_FAILURE() << "no button gives " << response;
    pb_dialog_destroy();
  }

  static void press(guint keyval) {
    GdkEvent *event = gdk_event_new(GDK_KEY_PRESS);
    event->key.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(GTK_WIDGET(dialog()))));
    event->key.keyval = keyval;
    GdkKeymapKey *keys = nullptr;
    gint count = 0;
    ASSERT_TRUE(gdk_keymap_get_entries_for_keyval(gdk_keymap_get_default(), keyval, &keys, &count));
    event->key.hardware_keycode = static_cast<guint16>(keys[0].keycode);
    g_free(keys);
    gtk_main_do_event(event);
    gdk_event_free(event);
  }

  static GtkWidget *delete_box() {
    GtkWidget *content = gtk_style_dialog_get_content_area(GTK_STYLE_DIALOG(dialog()));
    const pb::ListSpinePtr rows(gtk_container_get_children(GTK_CONTAINER(content)));
    const pb::ListSpinePtr boxes(gtk_container_get_children(GTK_CONTAINER(rows->data)));
    return GTK_WIDGET(boxes->data);
  }

  static void settle() {
    while (gtk_events_pending() != FALSE) gtk_main_iteration();
  }

  static GdkRectangle place_of(GtkWidget *window) {
    GdkRectangle place{};
    gdk_window_get_origin(gtk_widget_get_window(window), &place.x, &place.y);
    gtk_window_get_size(GTK_WINDOW(window), &place.width, &place.height);
    return place;
  }
};

TEST_F(DialogRun, IsAnsweredByAClick) {
  later([] { click(GTK_RESPONSE_YES); });
  gint response = 0;

  EXPECT_TRUE(pb_util_show_dialog(2, "Title", "Text", 2, 0, &response));

  EXPECT_EQ(response, GTK_RESPONSE_YES);
}

TEST_F(DialogRun, GivesReturnToTheSafeButton) {
  later([] { press(GDK_KEY_Return); });
  gint response = 0;

  EXPECT_TRUE(pb_util_show_dialog(1, "Delete", "Delete it?", 3, 0, &response));

  EXPECT_EQ(response, GTK_RESPONSE_NO);
}

TEST_F(DialogRun, GivesReturnToTheSafeButtonAlsoFromTheBox) {
  mb_util_set_vesk_login_present(1);
  later([] {
    gtk_widget_grab_focus(delete_box());
    press(GDK_KEY_Return);
  });
  gint response = 0;

  pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 0, &response);

  EXPECT_EQ(response, GTK_RESPONSE_NO);
}

TEST_F(DialogRun, TicksTheBoxWithTheSpaceBar) {
  mb_util_set_vesk_login_present(1);
  later([] {
    GtkWidget *box = delete_box();
    // The box shows itself pressed for a moment before it is ticked.
    g_signal_connect(box, "toggled", G_CALLBACK(+[] { press(GDK_KEY_Escape); }), nullptr);
    gtk_widget_grab_focus(box);
    press(GDK_KEY_space);
  });

  pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 0, nullptr);

  EXPECT_TRUE(pb_is_set_delete_dialog_check_box());
}

class DialogEscape : public DialogRun, public testing::WithParamInterface<std::pair<gint, gint>> {};

TEST_P(DialogEscape, AnswersNoWhereThereIsOne) {
  const auto [buttons, answer] = GetParam();
  later([] { press(GDK_KEY_Escape); });
  gint response = 0;

  EXPECT_TRUE(pb_util_show_dialog(1, "Title", "Text", buttons, 0, &response));

  EXPECT_EQ(response, answer);
}

INSTANTIATE_TEST_SUITE_P(ButtonSets, DialogEscape,
                         testing::Values(std::pair(0, -4), std::pair(1, -4), std::pair(2, -9),
                                         std::pair(3, -9), std::pair(4, -9)),
                         [](const auto &row) { return "Set" + std::to_string(row.param.first); });

TEST_F(DialogRun, IsClosedByTheWindowManagerWithAnAnswerOfItsOwn) {
  later([] {
    GdkEvent *event = gdk_event_new(GDK_DELETE);
    event->any.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(GTK_WIDGET(dialog()))));
    gtk_main_do_event(event);
    gdk_event_free(event);
  });
  gint response = 0;

  EXPECT_TRUE(pb_util_show_dialog(1, "Delete", "Delete it?", 3, 0, &response));

  EXPECT_EQ(response, GTK_RESPONSE_DELETE_EVENT);
}

TEST_F(DialogRun, StaysOnTheScreenWithATextThatIsLonger) {
  std::string text;
  for (int line = 0; line < 400; ++line) text += "line " + std::to_string(line) + "\n";
  GdkRectangle place{};
  later([&place] {
    settle();
    place = place_of(GTK_WIDGET(dialog()));
    click(GTK_RESPONSE_OK);
  });

  pb_util_show_dialog(2, text.c_str(), text.c_str(), 1, 0, nullptr);

  EXPECT_GE(place.y, 0);
  EXPECT_LE(place.y + place.height, gdk_screen_height());
  EXPECT_LE(place.width, 480);
}

TEST_F(DialogRun, StaysOnTheScreenWithAWordThatIsLonger) {
  const std::string word(4096, 'w');
  GdkRectangle place{};
  later([&place] {
    settle();
    place = place_of(GTK_WIDGET(dialog()));
    click(GTK_RESPONSE_OK);
  });

  pb_util_show_dialog(2, word.c_str(), word.c_str(), 1, 0, nullptr);

  EXPECT_LE(place.height, gdk_screen_height());
  EXPECT_LE(place.width, 480);
}

TEST_F(DialogRun, HasAccessibleNames) {
  later([] {
    AtkObject *accessible = gtk_widget_get_accessible(GTK_WIDGET(dialog()));
    EXPECT_STREQ(atk_object_get_name(accessible), "Delete");
    EXPECT_STREQ(atk_object_get_description(accessible), "Delete it?");
    click(GTK_RESPONSE_NO);
  });

  pb_util_show_dialog(1, "Delete", "Delete it?", 3, 0, nullptr);
}

TEST_F(DialogRun, EndsAtItsTimeOut) {
  gint response = 0;

  EXPECT_FALSE(pb_util_show_dialog(2, "Title", "Text", 0, 30, &response));

  EXPECT_EQ(response, GTK_RESPONSE_NONE);
  EXPECT_EQ(dialog(), nullptr);
}

TEST_F(DialogRun, EndsWhenItIsTakenDown) {
  later([] { pb_dialog_destroy(); });

  EXPECT_FALSE(pb_util_show_dialog(2, "Title", "Text", 2, 0, nullptr));

  EXPECT_FALSE(pb_dialog_check_exist());
}

TEST_F(DialogRun, EndsWhenSomebodyDestroysIt) {
  later([] { gtk_widget_destroy(GTK_WIDGET(dialog())); });
  gint response = 0;

  EXPECT_FALSE(pb_util_show_dialog(2, "Title", "Text", 2, 0, &response));

  EXPECT_EQ(response, GTK_RESPONSE_NONE);
}

TEST_F(DialogRun, EndsInsideAnother) {
  gint inner = 0;
  later([&inner] {
    later([] { click(GTK_RESPONSE_NO); });
    pb_util_show_dialog(1, "Second", "Text", 2, 0, &inner);
    later([] { click(GTK_RESPONSE_YES); });
  });
  gint outer = 0;

  EXPECT_TRUE(pb_util_show_dialog(2, "First", "Text", 2, 0, &outer));

  EXPECT_EQ(inner, GTK_RESPONSE_NO);
  EXPECT_EQ(outer, GTK_RESPONSE_YES);
}

TEST_F(DialogRun, IsShownWithoutAMainWindow) {
  pb_view_manager_destroy_window();
  later([] { click(GTK_RESPONSE_OK); });
  gint response = 0;

  EXPECT_TRUE(pb_util_show_dialog(2, "Title", "Text", 1, 0, &response));

  EXPECT_EQ(response, GTK_RESPONSE_OK);
}

TEST_F(DialogRun, LeavesNothingBehind) {
  settle();
  for (int i = 0; i < 20; ++i) {
    later([] { click(GTK_RESPONSE_NO); });
    pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 5000, nullptr);
  }
  settle();

  const pb::ListSpinePtr windows(gtk_window_list_toplevels());
  int dialogs = 0;
  for (GtkWidget *window : pb::each<GtkWidget>(windows.get())) {
    if (GTK_IS_DIALOG(window)) ++dialogs;
  }
  EXPECT_EQ(dialogs, 0);
}

TEST_F(DialogRun, RemembersATickedBox) {
  mb_util_set_vesk_login_present(1);
  later([] {
    gtk_button_clicked(GTK_BUTTON(delete_box()));
    click(GTK_RESPONSE_YES);
  });

  pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 0, nullptr);

  EXPECT_TRUE(pb_is_set_delete_dialog_check_box());
}

TEST_F(DialogRun, OfAnArchiveIsAnsweredByEscape) {
  later([] { press(GDK_KEY_Escape); });
  gint response = 0;

  EXPECT_FALSE(pb_menu_delete_archive_show_dialog(1, "Delete", "Keep it?", 0, &response));

  EXPECT_EQ(response, GTK_RESPONSE_NO);
}

TEST_F(DialogRun, OfASignInIsGivenUpByEscape) {
  later([] { press(GDK_KEY_Escape); });
  gchar *user = nullptr;
  gchar *password = nullptr;

  EXPECT_FALSE(pb_util_create_youtube_login_dialog(&user, &password));

  EXPECT_EQ(user, nullptr);
  EXPECT_EQ(password, nullptr);
}

class WithoutDisplay : public support::GlibTest {};

TEST_F(WithoutDisplay, NoDialogIsShown) {
  gint response = 0;

  EXPECT_FALSE(pb_util_show_dialog(1, "Title", "Text", 3, 2000, &response));

  EXPECT_EQ(response, GTK_RESPONSE_NONE);
  EXPECT_TRUE(pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 0, nullptr));
  EXPECT_FALSE(pb_menu_delete_archive_show_dialog(1, "Delete", "Keep it?", 0, nullptr));
  EXPECT_FALSE(pb_util_create_youtube_login_dialog(nullptr, nullptr));
}

TEST_F(WithoutDisplay, NoIndicatorIsShown) {
  mb_show_popup(nullptr, "Sent");
  mb_util_create_waiting_popup("Sending");
  mb_util_start_waiting_loop_animation("Deleting");
  mb_util_start_noti_progress_bar("Sending");
  pb_util_update_noti_progress_bar(40, "Sending");
  pb_util_start_progress_bar("Sending", "1 of 3", nullptr);
  pb_util_update_progress_bar("2 of 3");

  EXPECT_FALSE(pb_dialog_check_exist());
  EXPECT_FALSE(mb_popup_check_exist());
}

using IndicatorRun = DialogRun;

gint g_progress_answer = 0;

TEST_F(IndicatorRun, OfProgressIsCancelledByEscape) {
  pb_util_start_progress_bar("Sending", "1 of 3", G_CALLBACK(+[](GtkDialog *, gint response) {
                               g_progress_answer = response;
                             }));
  settle();

  press(GDK_KEY_Escape);

  EXPECT_EQ(g_progress_answer, GTK_RESPONSE_CANCEL);
}

TEST_F(IndicatorRun, OfProgressWithoutAHandlerGoesOnEscape) {
  pb_util_start_progress_bar("Sending", "1 of 3", nullptr);
  settle();

  press(GDK_KEY_Escape);

  EXPECT_FALSE(pb_dialog_check_exist());
}

TEST_F(IndicatorRun, OfEveryKindStandsEveryText) {
  const std::string longer(4096, 'n');
  for (const char *text :
       {"", "IMG\xff\xfe.jpg", "$(touch x); `y` & 'z'", "<b>&amp;", longer.c_str()}) {
    mb_show_popup(nullptr, text);
    settle();
    EXPECT_LE(place_of(GTK_WIDGET(dialog())).height, gdk_screen_height()) << text;
    mb_util_create_waiting_popup(text);
    settle();
    EXPECT_LE(place_of(GTK_WIDGET(dialog())).height, gdk_screen_height()) << text;
    mb_util_start_noti_progress_bar(text);
    pb_util_update_noti_progress_bar(40, text);
    settle();
    EXPECT_LE(place_of(GTK_WIDGET(dialog())).height, gdk_screen_height()) << text;
    pb_dialog_destroy();
    pb_util_start_progress_bar(text, text, nullptr);
    pb_util_update_progress_bar(text);
    settle();
    EXPECT_LE(place_of(GTK_WIDGET(dialog())).height, gdk_screen_height()) << text;
    pb_dialog_destroy();
  }
}

TEST_F(IndicatorRun, OfProgressLiesInTheMiddleOfTheScreen) {
  pb_util_start_progress_bar("Sending", "1 of 3", nullptr);
  settle();

  const GdkRectangle place = place_of(GTK_WIDGET(dialog()));
  EXPECT_NEAR(place.x, (gdk_screen_width() - place.width) / 2, 1);
  EXPECT_NEAR(place.y, (gdk_screen_height() - place.height) / 2, 1);
}

TEST_F(IndicatorRun, OfAPopupLiesInTheLowerPartOfTheWindow) {
  GtkWidget *window = pb_view_manager_get_window();
  settle();
  mb_show_popup(nullptr, "Sent");
  settle();

  const GdkRectangle popup = place_of(GTK_WIDGET(dialog()));
  const GdkRectangle below = place_of(window);
  EXPECT_NEAR(popup.x, below.x + (below.width - popup.width) / 2, 1);
  EXPECT_GT(popup.y, below.y + below.height / 2);
  EXPECT_LE(popup.y + popup.height, below.y + below.height);
}

TEST_F(IndicatorRun, OfAWaitingMessageGoesOnEscape) {
  mb_util_create_waiting_popup("Sending");
  settle();

  press(GDK_KEY_Escape);

  EXPECT_FALSE(pb_dialog_check_exist());
}

TEST_F(IndicatorRun, OfAStripLiesAtTheTopOfTheWindow) {
  GtkWidget *window = pb_view_manager_get_window();
  settle();
  mb_util_start_noti_progress_bar("Sending");
  settle();

  const GdkRectangle strip = place_of(GTK_WIDGET(dialog()));
  EXPECT_EQ(strip.y, place_of(window).y);
  EXPECT_EQ(strip.width, place_of(window).width);
}

}  // namespace

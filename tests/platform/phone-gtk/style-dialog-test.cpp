#include <gdk/gdkkeysyms.h>
#include <style-dialog.h>

#include <string>

#include "glib-ptr.hpp"
#include "support/glib-test.hpp"

using support::DisplayTest;
using support::ExpectFinalized;
using testing::ElementsAre;

namespace {

constexpr guint kPatienceMs = 2000;
constexpr gint kNoAnswer = 999;

class DialogTest : public DisplayTest {
 protected:
  void SetUp() override {
    DisplayTest::SetUp();
    dialog_ = pb::Ref<GtkStyleDialog>::sink(GTK_STYLE_DIALOG(gtk_style_dialog_new(1, nullptr, 0)));
  }
  void TearDown() override {
    if (dialog_) gtk_widget_destroy(GTK_WIDGET(dialog_.get()));
  }

  GtkStyleDialog *dialog() { return dialog_.get(); }
  GtkWidget *widget() { return GTK_WIDGET(dialog_.get()); }
  GtkWidget *add(const gchar *label, gint response) {
    return gtk_style_dialog_add_button(dialog(), label, response);
  }
  const gchar *text() {
    return gtk_label_get_text(GTK_LABEL(gtk_style_dialog_get_text_label(dialog())));
  }

  /// Runs the dialog and does something once it is on screen.
  template <typename Action>
  gint run_and(Action action) {
    struct Step {
      Action action;
    } step{action};
    g_idle_add_full(
        G_PRIORITY_LOW,
        [](gpointer data) -> gboolean {
          static_cast<Step *>(data)->action();
          return G_SOURCE_REMOVE;
        },
        &step, nullptr);
    const guint give_up = g_timeout_add(
        kPatienceMs,
        [](gpointer data) -> gboolean {
          gtk_dialog_response(GTK_DIALOG(data), kNoAnswer);
          return G_SOURCE_CONTINUE;
        },
        dialog());
    const gint response = gtk_dialog_run(GTK_DIALOG(widget()));
    g_source_remove(give_up);
    return response;
  }

  /// What a window manager does with the window on top.
  void focus() {
    GdkEvent *event = gdk_event_new(GDK_FOCUS_CHANGE);
    event->focus_change.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(widget())));
    event->focus_change.in = TRUE;
    gtk_main_do_event(event);
    gdk_event_free(event);
  }

  void press(guint keyval) {
    GdkEvent *event = gdk_event_new(GDK_KEY_PRESS);
    event->key.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(widget())));
    event->key.keyval = keyval;
    GdkKeymapKey *keys = nullptr;
    gint count = 0;
    ASSERT_TRUE(gdk_keymap_get_entries_for_keyval(gdk_keymap_get_default(), keyval, &keys, &count));
    event->key.hardware_keycode = static_cast<guint16>(keys[0].keycode);
    g_free(keys);
    gtk_main_do_event(event);
    gdk_event_free(event);
  }

  pb::Ref<GtkStyleDialog> dialog_;
};

class StyleDialog : public DialogTest {};
class StyleDialogButtons : public DialogTest {};
class StyleDialogTimeout : public DialogTest {};

TEST_F(StyleDialog, IsADialog) { EXPECT_TRUE(GTK_IS_DIALOG(dialog())); }

TEST_F(StyleDialog, IsNotShownWhenItIsNew) { EXPECT_FALSE(gtk_widget_get_visible(widget())); }

TEST_F(StyleDialog, ShowsItsText) {
  gtk_style_dialog_set_content_area_text(dialog(), "A & <b>");

  EXPECT_STREQ(text(), "A & <b>");
}

TEST_F(StyleDialog, ChangesItsTextWhileItIsShown) {
  gtk_style_dialog_set_content_area_text(dialog(), "before");
  gtk_widget_show(widget());

  gtk_style_dialog_set_content_area_text(dialog(), "after");

  EXPECT_STREQ(text(), "after");
  EXPECT_TRUE(gtk_widget_get_mapped(gtk_style_dialog_get_text_label(dialog())));
}

TEST_F(StyleDialog, ShowsBytesThatAreNoTextAsReplacement) {
  gtk_style_dialog_set_content_area_text(dialog(), "IMG\xff");

  EXPECT_STREQ(text(), "IMG\xef\xbf\xbd");
}

TEST_F(StyleDialog, LetsTheTextEllipsizeAtItsEnd) {
  auto *label = GTK_LABEL(gtk_style_dialog_get_text_label(dialog()));

  gtk_label_set_ellipsize(label, PANGO_ELLIPSIZE_END);

  EXPECT_EQ(gtk_label_get_ellipsize(label), PANGO_ELLIPSIZE_END);
}

TEST_F(StyleDialog, TakesItsTitle) {
  gtk_style_dialog_set_title(dialog(), "Delete");

  EXPECT_STREQ(gtk_window_get_title(GTK_WINDOW(dialog())), "Delete");
}

TEST_F(StyleDialog, HasABoxForMoreWidgets) {
  GtkWidget *box = gtk_style_dialog_get_content_area(dialog());
  ASSERT_TRUE(GTK_IS_BOX(box));
  GtkWidget *check = gtk_check_button_new_with_label("also there");

  gtk_box_pack_start(GTK_BOX(box), check, FALSE, FALSE, 0);
  gtk_widget_show_all(widget());

  EXPECT_TRUE(gtk_widget_get_mapped(check));
}

TEST_F(StyleDialog, LiesOverItsParent) {
  const auto parent = pb::Ref<GtkWidget>::sink(gtk_window_new(GTK_WINDOW_TOPLEVEL));
  const auto over =
      pb::Ref<GtkWidget>::sink(gtk_style_dialog_new(4, GTK_WINDOW(parent.get()), GTK_DIALOG_MODAL));

  EXPECT_EQ(gtk_window_get_transient_for(GTK_WINDOW(over.get())), GTK_WINDOW(parent.get()));
  EXPECT_TRUE(gtk_window_get_modal(GTK_WINDOW(over.get())));
  gtk_widget_destroy(over.get());
  gtk_widget_destroy(parent.get());
}

TEST_F(StyleDialog, GoesWithItsParentWhenAsked) {
  const auto parent = pb::Ref<GtkWidget>::sink(gtk_window_new(GTK_WINDOW_TOPLEVEL));
  GtkWidget *over = gtk_style_dialog_new(4, GTK_WINDOW(parent.get()),
                                         GTK_DIALOG_MODAL | GTK_DIALOG_DESTROY_WITH_PARENT);
  const ExpectFinalized watch(over);

  gtk_widget_destroy(parent.get());
}

TEST_F(StyleDialog, LiesOverTheVisibleWindowWithoutAParent) {
  const auto parent = pb::Ref<GtkWidget>::sink(gtk_window_new(GTK_WINDOW_TOPLEVEL));
  gtk_widget_show(parent.get());

  const auto over = pb::Ref<GtkWidget>::sink(gtk_style_dialog_new(1, nullptr, 0));

  EXPECT_EQ(gtk_window_get_transient_for(GTK_WINDOW(over.get())), GTK_WINDOW(parent.get()));
  gtk_widget_destroy(over.get());
  gtk_widget_destroy(parent.get());
}

TEST_F(StyleDialog, RefusesAForeignWidget) {
  gtk_style_dialog_set_title(reinterpret_cast<GtkStyleDialog *>(add("x", 1)), "title");

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("gtk_style_dialog_set_title: assertion 'GTK_IS_STYLE_DIALOG(dialog)' "
                          "failed"));
}

TEST_F(StyleDialogButtons, ShowTheirLabelAsItIs) {
  GtkWidget *button = add("Save_as & go", GTK_RESPONSE_OK);

  EXPECT_STREQ(gtk_button_get_label(GTK_BUTTON(button)), "Save_as & go");
}

TEST_F(StyleDialogButtons, SayWhatTheyAnswerWithoutALabel) {
  EXPECT_STREQ(gtk_button_get_label(GTK_BUTTON(add(nullptr, GTK_RESPONSE_NO))), "No");
}

TEST_F(StyleDialogButtons, AreEmptyWithoutALabelForAnAnswerOfTheApplication) {
  EXPECT_STREQ(gtk_button_get_label(GTK_BUTTON(add(nullptr, 17))), "");
}

TEST_F(StyleDialogButtons, StandInTheOrderTheyWereAdded) {
  GtkWidget *first = add("Yes", GTK_RESPONSE_YES);
  GtkWidget *second = add("No", GTK_RESPONSE_NO);
  gtk_widget_show_all(widget());

  GtkAllocation left;
  GtkAllocation right;
  gtk_widget_get_allocation(first, &left);
  gtk_widget_get_allocation(second, &right);
  EXPECT_LT(left.x, right.x);
}

TEST_F(StyleDialogButtons, HaveTheFocusOnTheFirstAlsoBelowOtherWidgets) {
  gtk_box_pack_start(GTK_BOX(gtk_style_dialog_get_content_area(dialog())),
                     gtk_check_button_new_with_label("also there"), FALSE, FALSE, 0);
  GtkWidget *first = add("Yes", GTK_RESPONSE_YES);
  add("No", GTK_RESPONSE_NO);

  gtk_widget_show_all(widget());

  EXPECT_EQ(gtk_window_get_focus(GTK_WINDOW(widget())), first);
}

TEST_F(StyleDialogButtons, AnswerWithTheirResponse) {
  GtkWidget *yes = add("Yes", GTK_RESPONSE_YES);
  add("No", GTK_RESPONSE_NO);

  const gint response = run_and([yes] { gtk_button_clicked(GTK_BUTTON(yes)); });

  EXPECT_EQ(response, GTK_RESPONSE_YES);
}

TEST_F(StyleDialogButtons, AnswerWithTheFirstOnReturn) {
  add("Yes", GTK_RESPONSE_YES);
  add("No", GTK_RESPONSE_NO);

  const gint response = run_and([this] { press(GDK_Return); });

  EXPECT_EQ(response, GTK_RESPONSE_YES);
}

TEST_F(StyleDialogButtons, AnswerWithTheOneReachedByTab) {
  add("Yes", GTK_RESPONSE_YES);
  add("No", GTK_RESPONSE_NO);

  const gint response = run_and([this] {
    focus();
    press(GDK_Tab);
    press(GDK_Return);
  });

  EXPECT_EQ(response, GTK_RESPONSE_NO);
}

TEST_F(StyleDialogButtons, AreDismissedByEscape) {
  add("Yes", GTK_RESPONSE_YES);

  const gint response = run_and([this] { press(GDK_Escape); });

  EXPECT_EQ(response, GTK_RESPONSE_DELETE_EVENT);
}

TEST_F(StyleDialogButtons, AnswerNoOnEscape) {
  add("Yes", GTK_RESPONSE_YES);
  add("No", GTK_RESPONSE_NO);

  const gint response = run_and([this] { press(GDK_Escape); });

  EXPECT_EQ(response, GTK_RESPONSE_NO);
}

TEST_F(StyleDialogButtons, AnswerCancelOnEscape) {
  add("OK", GTK_RESPONSE_OK);
  add("Cancel", GTK_RESPONSE_CANCEL);

  const gint response = run_and([this] { press(GDK_Escape); });

  EXPECT_EQ(response, GTK_RESPONSE_CANCEL);
}

TEST_F(StyleDialogButtons, DoNotAnswerOnEscapeWhenTheyCannotBePressed) {
  gtk_widget_set_sensitive(add("Cancel", GTK_RESPONSE_CANCEL), FALSE);

  const gint response = run_and([this] { press(GDK_Escape); });

  EXPECT_EQ(response, GTK_RESPONSE_DELETE_EVENT);
}

class StyleDialogLongText : public DialogTest {
 protected:
  static std::string lines(int count) {
    std::string text;
    for (int line = 0; line < count; ++line) text += "line " + std::to_string(line) + "\n";
    return text;
  }
  static void settle() {
    while (gtk_events_pending() != FALSE) gtk_main_iteration();
  }
  int height() {
    gint width = 0;
    gint height = 0;
    gtk_window_get_size(GTK_WINDOW(widget()), &width, &height);
    return height;
  }
  GtkAdjustment *place() {
    GtkWidget *label = gtk_style_dialog_get_text_label(dialog());
    GtkWidget *scroller = gtk_widget_get_ancestor(label, GTK_TYPE_SCROLLED_WINDOW);
    return gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(scroller));
  }
  void show(const std::string &text) {
    gtk_style_dialog_set_content_area_text(dialog(), text.c_str());
    add("OK", GTK_RESPONSE_OK);
    gtk_widget_show_all(widget());
    settle();
  }
  void drag(int from, int to) {
    GtkWidget *viewport = gtk_widget_get_parent(gtk_style_dialog_get_text_label(dialog()));
    GdkEvent *event = gdk_event_new(GDK_BUTTON_PRESS);
    event->button.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(viewport)));
    event->button.button = 1;
    event->button.y_root = from;
    gtk_widget_event(viewport, event);
    gdk_event_free(event);
    event = gdk_event_new(GDK_MOTION_NOTIFY);
    event->motion.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(viewport)));
    event->motion.y_root = to;
    gtk_widget_event(viewport, event);
    gdk_event_free(event);
  }
};

TEST_F(StyleDialogLongText, LeavesTheDialogOnTheScreen) {
  show(lines(500));

  EXPECT_LE(height(), gdk_screen_height() * 9 / 10);
}

TEST_F(StyleDialogLongText, LeavesTheDialogOnTheScreenWhenItComesLater) {
  show("short");

  gtk_style_dialog_set_content_area_text(dialog(), lines(500).c_str());
  settle();

  EXPECT_LE(height(), gdk_screen_height() * 9 / 10);
}

TEST_F(StyleDialogLongText, LeavesTheDialogOnTheScreenAsATitle) {
  gtk_style_dialog_set_title(dialog(), lines(500).c_str());
  show("short");

  EXPECT_LT(height(), gdk_screen_height() / 2);
}

TEST_F(StyleDialogLongText, IsShownWholeWhereThereIsRoom) {
  show(lines(5));

  EXPECT_EQ(gtk_adjustment_get_upper(place()), gtk_adjustment_get_page_size(place()));
}

TEST_F(StyleDialogLongText, ScrollsByTheKeys) {
  show(lines(500));

  press(GDK_Page_Down);

  EXPECT_GT(gtk_adjustment_get_value(place()), 0);
  press(GDK_Page_Up);
  EXPECT_EQ(gtk_adjustment_get_value(place()), 0);
}

TEST_F(StyleDialogLongText, FollowsAFinger) {
  show(lines(500));

  drag(300, 200);

  EXPECT_EQ(gtk_adjustment_get_value(place()), 100);
}

TEST_F(StyleDialogLongText, StopsAtItsEnds) {
  show(lines(500));

  drag(300, 400);
  EXPECT_EQ(gtk_adjustment_get_value(place()), 0);

  drag(300, -100'000);
  EXPECT_EQ(gtk_adjustment_get_value(place()),
            gtk_adjustment_get_upper(place()) - gtk_adjustment_get_page_size(place()));
}

TEST_F(StyleDialog, IsNamedByItsTitleForAScreenReader) {
  gtk_style_dialog_set_title(dialog(), "Delete");
  gtk_style_dialog_set_content_area_text(dialog(), "Delete it?");

  AtkObject *accessible = gtk_widget_get_accessible(widget());
  EXPECT_STREQ(atk_object_get_name(accessible), "Delete");
  EXPECT_STREQ(atk_object_get_description(accessible), "Delete it?");
}

TEST_F(StyleDialog, IsNamedByItsTextForAScreenReaderWithoutATitle) {
  gtk_style_dialog_set_content_area_text(dialog(), "Delete it?");

  EXPECT_STREQ(atk_object_get_name(gtk_widget_get_accessible(widget())), "Delete it?");
}

TEST_F(StyleDialogTimeout, EndsTheDialogWithoutAnAnswer) {
  gtk_style_dialog_set_destroy_timeout(dialog(), 5);

  EXPECT_EQ(gtk_dialog_run(GTK_DIALOG(widget())), GTK_RESPONSE_NONE);
}

TEST_F(StyleDialogTimeout, DestroysTheDialog) {
  const ExpectFinalized watch(dialog());
  gtk_style_dialog_set_destroy_timeout(dialog(), 5);

  gtk_dialog_run(GTK_DIALOG(widget()));
  dialog_.reset();
}

TEST_F(StyleDialogTimeout, IsReplacedByALaterOne) {
  gtk_style_dialog_set_destroy_timeout(dialog(), 1);
  gtk_style_dialog_set_destroy_timeout(dialog(), 60'000);
  add("Yes", GTK_RESPONSE_YES);

  g_timeout_add(
      20,
      [](gpointer data) -> gboolean {
        gtk_dialog_response(GTK_DIALOG(data), 42);
        return G_SOURCE_REMOVE;
      },
      dialog());

  EXPECT_EQ(gtk_dialog_run(GTK_DIALOG(widget())), 42);
}

TEST_F(StyleDialogTimeout, DiesWithTheDialog) {
  gtk_style_dialog_set_destroy_timeout(dialog(), 1);
  gtk_widget_destroy(widget());
  const ExpectFinalized watch(dialog());
  dialog_.reset();

  g_usleep(3000);
  while (g_main_context_iteration(nullptr, FALSE)) {
  }

  EXPECT_TRUE(watch.finalized());
}

}  // namespace

#include <main-window.h>

#include <string>

#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "pb-view-manager.h"
#include "support/fake-platform.hpp"

namespace {

using fake::calls_of;
using fake::Logged;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

/// A main window and forms, each with a button that can have the focus.
class ViewManagerForms : public support::DisplayTest {
 protected:
  void SetUp() override {
    DisplayTest::SetUp();
    window_ = pb_view_manager_create_window(0);
    fake::take_calls();
  }
  void TearDown() override { pb_view_manager_destroy_window(); }

  static GtkWidget *new_form(const char *name) {
    GtkWidget *form = gtk_form_new();
    gtk_widget_set_name(form, name);
    gtk_container_add(GTK_CONTAINER(form), gtk_button_new_with_label(name));
    return form;
  }

  static GtkWidget *focus_of(GtkWidget *form) { return gtk_bin_get_child(GTK_BIN(form)); }

  /// Pushes a form whose button gets the focus.
  static GtkWidget *push(const char *name, const char *title = nullptr) {
    GtkWidget *form = new_form(name);
    pb_view_manager_add_widget(form, focus_of(form), title);
    return form;
  }

  [[nodiscard]] GtkWidget *focus() const { return gtk_window_get_focus(GTK_WINDOW(window_)); }
  [[nodiscard]] GtkWidget *shown() const { return fake::current_form(GTK_MAIN_WINDOW(window_)); }
  [[nodiscard]] std::string title() const {
    GtkWidget *label = gtk_main_window_get_title_label(GTK_MAIN_WINDOW(window_));
    return gtk_label_get_text(GTK_LABEL(label));
  }

  GtkWidget *window_ = nullptr;
};

using ViewManagerAdd = ViewManagerForms;

TEST_F(ViewManagerAdd, CallsTheWindowInOrder) {
  pb_view_manager_add_widget(new_form("a"), nullptr, "Albums");

  EXPECT_THAT(
      fake::platform().calls,
      ElementsAre("gtk_main_window_add_form(GtkMainWindow, a)", "gtk_effect_set_motion(a, 4096, 0)",
                  "gtk_main_window_set_default_title(GtkMainWindow, \"Albums\")",
                  "gtk_main_window_set_current_form(GtkMainWindow, a)"));
}

TEST_F(ViewManagerAdd, PutsTheFormOnTop) {
  push("a");
  GtkWidget *b = push("b");

  EXPECT_EQ(pb_view_manager_get_current_widget(), b);
  EXPECT_EQ(pb_view_manager_get_count(), 2);
}

TEST_F(ViewManagerAdd, StopsTheMotionOfTheFirstTwoForms) {
  push("a");
  push("b");
  push("c");
  push("d");

  EXPECT_THAT(calls_of("gtk_effect_set_motion"), ElementsAre("gtk_effect_set_motion(a, 4096, 0)",
                                                             "gtk_effect_set_motion(b, 4096, 0)"));
}

TEST_F(ViewManagerAdd, LeavesTheTitleWhenNoneIsGiven) {
  push("a", "Albums");
  push("b");

  EXPECT_EQ(title(), "Albums");
}

TEST_F(ViewManagerAdd, ShowsTheFormWithItsContents) {
  GtkWidget *a = push("a");

  EXPECT_EQ(shown(), a);
  EXPECT_TRUE(gtk_widget_get_visible(a));
  EXPECT_TRUE(gtk_widget_get_visible(focus_of(a)));
}

TEST_F(ViewManagerAdd, GivesTheFocus) {
  GtkWidget *a = push("a");

  EXPECT_EQ(focus(), focus_of(a));
}

TEST_F(ViewManagerAdd, LeavesTheFocusWhenNoWidgetIsGiven) {
  GtkWidget *a = push("a");
  pb_view_manager_add_widget(new_form("b"), nullptr, nullptr);

  EXPECT_NE(pb_view_manager_get_current_widget(), a);
  EXPECT_EQ(pb_view_manager_get_focus_widget(pb_view_manager_get_current_widget()), nullptr);
}

TEST_F(ViewManagerAdd, IsReportedByThePlatformWithoutAWindow) {
  pb_view_manager_destroy_window();
  const auto form = pb::Ref<GtkWidget>::sink(new_form("a"));

  pb_view_manager_add_widget(form.get(), nullptr, "Albums");

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("gtk_main_window_add_form: assertion 'GTK_IS_MAIN_WINDOW(window)' failed",
                          "gtk_main_window_set_current_form: assertion "
                          "'GTK_IS_MAIN_WINDOW(window)' failed"));
  pb_view_manager_destroy_all();
  EXPECT_THAT(take_glib_warnings(), SizeIs(1));
}

using ViewManagerRemove = ViewManagerForms;

TEST_F(ViewManagerRemove, LeavesTheLastForm) {
  GtkWidget *a = push("a");

  pb_view_manager_remove_widget(a);

  EXPECT_EQ(pb_view_manager_get_current_widget(), a);
  EXPECT_EQ(pb_view_manager_get_count(), 1);
}

TEST_F(ViewManagerRemove, TakesTheTopForm) {
  GtkWidget *a = push("a");
  GtkWidget *b = push("b");
  const support::ExpectFinalized watch(b);

  pb_view_manager_remove_widget(b);

  EXPECT_EQ(pb_view_manager_get_current_widget(), a);
  EXPECT_EQ(pb_view_manager_get_count(), 1);
}

TEST_F(ViewManagerRemove, LeavesAFormBelow) {
  GtkWidget *a = push("a");
  GtkWidget *b = push("b");

  pb_view_manager_remove_widget(a);

  EXPECT_EQ(pb_view_manager_get_current_widget(), b);
  EXPECT_EQ(pb_view_manager_get_count(), 2);
}

TEST_F(ViewManagerRemove, TakesTheTopFormForAnotherWidgetOfItsName) {
  GtkWidget *a = push("a");
  push("b");
  const auto other = pb::Ref<GtkWidget>::sink(new_form("b"));

  pb_view_manager_remove_widget(other.get());

  EXPECT_EQ(pb_view_manager_get_current_widget(), a);
}

TEST_F(ViewManagerRemove, ComparesNamesWithoutCase) {
  GtkWidget *a = push("a");
  push("Viewer");
  const auto other = pb::Ref<GtkWidget>::sink(new_form("vIEWER"));

  pb_view_manager_remove_widget(other.get());

  EXPECT_EQ(pb_view_manager_get_current_widget(), a);
}

TEST_F(ViewManagerRemove, LeavesTheStackForNull) {
  push("a");
  push("b");

  pb_view_manager_remove_widget(nullptr);

  EXPECT_EQ(pb_view_manager_get_count(), 2);
}

TEST_F(ViewManagerRemove, StopsTheMotionOfTheThirdForm) {
  push("a");
  push("b");
  GtkWidget *c = push("c");
  fake::take_calls();

  pb_view_manager_remove_widget(c);

  EXPECT_THAT(fake::platform().calls,
              ElementsAre("gtk_effect_set_motion(c, 4096, 0)",
                          "gtk_main_window_remove_form(GtkMainWindow, c)",
                          "gtk_main_window_set_current_form(GtkMainWindow, b)"));
}

TEST_F(ViewManagerRemove, StopsTheMotionOfTheFormThatWasGiven) {
  push("a");
  push("b");
  push("c");
  const auto other = pb::Ref<GtkWidget>::sink(new_form("C"));
  fake::take_calls();

  pb_view_manager_remove_widget(other.get());

  EXPECT_THAT(calls_of("gtk_effect_set_motion"), ElementsAre("gtk_effect_set_motion(C, 4096, 0)"));
}

TEST_F(ViewManagerRemove, LeavesTheMotionOfOtherForms) {
  push("a");
  push("b");
  push("c");
  GtkWidget *d = push("d");
  fake::take_calls();

  pb_view_manager_remove_widget(d);
  pb_view_manager_remove_widget(pb_view_manager_get_current_widget());
  pb_view_manager_remove_widget(pb_view_manager_get_current_widget());

  EXPECT_THAT(calls_of("gtk_effect_set_motion"), ElementsAre("gtk_effect_set_motion(c, 4096, 0)"));
}

TEST_F(ViewManagerRemove, BringsFocusBack) {
  push("a");
  GtkWidget *b = push("b");
  GtkWidget *c = push("c");

  pb_view_manager_remove_widget(c);

  EXPECT_EQ(focus(), focus_of(b));
}

TEST_F(ViewManagerRemove, BringsTheTitleBack) {
  push("a", "Albums");
  push("b", "Holiday");
  GtkWidget *c = push("c", "IMG_1.jpg");

  pb_view_manager_remove_widget(c);

  EXPECT_EQ(title(), "Holiday");
}

TEST_F(ViewManagerRemove, LeavesTheTitleWhenTheFormBelowHasNone) {
  push("a");
  GtkWidget *b = push("b", "Holiday");

  pb_view_manager_remove_widget(b);

  EXPECT_EQ(title(), "Holiday");
}

TEST_F(ViewManagerRemove, ShowsTheFormBelow) {
  GtkWidget *a = push("a");
  GtkWidget *b = push("b");
  gtk_widget_hide(focus_of(a));

  pb_view_manager_remove_widget(b);

  EXPECT_EQ(shown(), a);
  EXPECT_TRUE(gtk_widget_get_visible(focus_of(a)));
}

TEST_F(ViewManagerRemove, ForgetsAFocusWidgetThatIsGone) {
  GtkWidget *a = push("a");
  GtkWidget *b = push("b");
  gtk_widget_destroy(focus_of(a));

  pb_view_manager_remove_widget(b);

  EXPECT_EQ(pb_view_manager_get_focus_widget(a), nullptr);
}

TEST_F(ViewManagerRemove, LeavesTheStackWhenTheTopFormIsGone) {
  push("a");
  gtk_widget_destroy(push("b"));
  const auto other = pb::Ref<GtkWidget>::sink(new_form("b"));
  fake::take_calls();

  pb_view_manager_remove_widget(other.get());

  EXPECT_EQ(pb_view_manager_get_count(), 2);
  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(ViewManagerRemove, LogsATopFormThatIsGone) {
  push("a");
  gtk_widget_destroy(push("b"));

  pb_view_manager_remove_widget(nullptr);

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_ERROR,
                              "[pb_view_manager_remove_widget]not found widget - (1)item\n")));
}

TEST_F(ViewManagerRemove, BringsTheFormBelowBackWhole) {
  push("a", "Albums");
  GtkWidget *b = push("b", "Holiday");
  GtkWidget *c = push("c", "IMG_1.jpg");

  pb_view_manager_remove_widget(c);

  EXPECT_EQ(shown(), b);
  EXPECT_EQ(focus(), focus_of(b));
  EXPECT_EQ(title(), "Holiday");
}

using ViewManagerRemoveTo = ViewManagerForms;

TEST_F(ViewManagerRemoveTo, TakesEveryFormAbove) {
  push("a");
  GtkWidget *b = push("b", "Holiday");
  push("c");
  push("d");

  pb_view_manager_remove_widget_to_specify(b);

  EXPECT_EQ(pb_view_manager_get_current_widget(), b);
  EXPECT_EQ(pb_view_manager_get_count(), 2);
  EXPECT_EQ(title(), "Holiday");
}

TEST_F(ViewManagerRemoveTo, TakesTheFormsFromTheTop) {
  GtkWidget *a = push("a");
  push("b");
  push("c");
  fake::take_calls();

  pb_view_manager_remove_widget_to_specify(a);

  EXPECT_THAT(calls_of("gtk_main_window_remove_form"),
              ElementsAre("gtk_main_window_remove_form(GtkMainWindow, c)",
                          "gtk_main_window_remove_form(GtkMainWindow, b)"));
}

TEST_F(ViewManagerRemoveTo, TakesNothingForTheTopForm) {
  push("a");
  GtkWidget *b = push("b");

  pb_view_manager_remove_widget_to_specify(b);

  EXPECT_EQ(pb_view_manager_get_count(), 2);
}

TEST_F(ViewManagerRemoveTo, TakesNothingForAnUnknownForm) {
  push("a");
  push("b");
  const auto other = pb::Ref<GtkWidget>::sink(new_form("a"));

  pb_view_manager_remove_widget_to_specify(other.get());

  EXPECT_EQ(pb_view_manager_get_count(), 2);
}

TEST_F(ViewManagerRemoveTo, TakesNothingForNull) {
  push("a");
  push("b");

  pb_view_manager_remove_widget_to_specify(nullptr);

  EXPECT_EQ(pb_view_manager_get_count(), 2);
}

using ViewManagerDestroyAll = ViewManagerForms;

TEST_F(ViewManagerDestroyAll, TakesTheFormsFromTheTop) {
  push("a");
  push("b");
  fake::take_calls();

  pb_view_manager_destroy_all();

  EXPECT_EQ(pb_view_manager_get_count(), 0);
  EXPECT_THAT(fake::platform().calls, ElementsAre("gtk_main_window_remove_form(GtkMainWindow, b)",
                                                  "gtk_main_window_remove_form(GtkMainWindow, a)"));
}

TEST_F(ViewManagerDestroyAll, LogsTheNumberOfForms) {
  push("a");
  push("b");

  pb_view_manager_destroy_all();

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_INFO,
                              "[pb_view_manager_destroy_all]destroy all child forms "
                              "- size(2)\n")));
}

TEST_F(ViewManagerDestroyAll, PassesOverAFormThatIsGone) {
  push("a");
  gtk_widget_destroy(push("b"));
  fake::take_calls();

  pb_view_manager_destroy_all();

  EXPECT_EQ(pb_view_manager_get_count(), 0);
  EXPECT_THAT(fake::platform().calls, ElementsAre("gtk_main_window_remove_form(GtkMainWindow, a)"));
}

TEST_F(ViewManagerDestroyAll, LeavesTheTitle) {
  push("a", "Albums");
  push("b", "Holiday");

  pb_view_manager_destroy_all();

  EXPECT_EQ(title(), "Holiday");
}

using ViewManagerLookup = ViewManagerForms;

TEST_F(ViewManagerLookup, HasNoCurrentFormInAnEmptyStack) {
  EXPECT_EQ(pb_view_manager_get_current_widget(), nullptr);
  EXPECT_EQ(pb_view_manager_get_count(), 0);
}

TEST_F(ViewManagerLookup, ReadsTheFocusWidget) {
  GtkWidget *a = push("a");
  push("b");

  EXPECT_EQ(pb_view_manager_get_focus_widget(a), focus_of(a));
}

TEST_F(ViewManagerLookup, ChangesTheFocusWidget) {
  GtkWidget *a = push("a");
  GtkWidget *b = push("b");
  GtkWidget *entry = gtk_entry_new();
  gtk_container_remove(GTK_CONTAINER(a), focus_of(a));
  gtk_container_add(GTK_CONTAINER(a), entry);

  pb_view_manager_set_focus_widget(a, entry);

  EXPECT_EQ(pb_view_manager_get_focus_widget(a), entry);
  pb_view_manager_remove_widget(b);
  EXPECT_EQ(focus(), entry);
}

TEST_F(ViewManagerLookup, ForgetsTheFocusWidgetForNull) {
  GtkWidget *a = push("a");

  pb_view_manager_set_focus_widget(a, nullptr);

  EXPECT_EQ(pb_view_manager_get_focus_widget(a), nullptr);
}

TEST_F(ViewManagerLookup, IgnoresAnUnknownForm) {
  GtkWidget *a = push("a");
  const auto other = pb::Ref<GtkWidget>::sink(new_form("a"));

  pb_view_manager_set_focus_widget(other.get(), other.get());

  EXPECT_EQ(pb_view_manager_get_focus_widget(other.get()), nullptr);
  EXPECT_EQ(pb_view_manager_get_focus_widget(a), focus_of(a));
}

}  // namespace

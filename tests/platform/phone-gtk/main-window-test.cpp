#include <main-window.h>

#include "glib-ptr.hpp"
#include "support/glib-test.hpp"
#include "support/pixbufs.hpp"

using support::DisplayTest;
using support::ExpectFinalized;
using testing::ElementsAre;

namespace {

class WindowTest : public DisplayTest {
 protected:
  void SetUp() override {
    DisplayTest::SetUp();
    window_ = pb::Ref<GtkMainWindow>::sink(GTK_MAIN_WINDOW(gtk_main_window_new(7)));
  }
  void TearDown() override {
    if (window_) gtk_widget_destroy(GTK_WIDGET(window_.get()));
  }

  GtkMainWindow *window() { return window_.get(); }

  GtkForm *add_form() {
    GtkWidget *form = gtk_form_new();
    gtk_main_window_add_form(window(), GTK_FORM(form));
    return GTK_FORM(form);
  }

  static bool mapped(GtkForm *form) { return gtk_widget_get_mapped(GTK_WIDGET(form)) != FALSE; }
  static bool visible(GtkForm *form) { return gtk_widget_get_visible(GTK_WIDGET(form)) != FALSE; }

  const gchar *title() {
    return gtk_label_get_text(GTK_LABEL(gtk_main_window_get_title_label(window())));
  }

  bool title_shown() {
    return gtk_widget_get_mapped(gtk_main_window_get_title_label(window())) != FALSE;
  }

  pb::Ref<GtkMainWindow> window_;
};

class MainWindow : public WindowTest {};
class MainWindowForms : public WindowTest {};
class MainWindowTitle : public WindowTest {};
class WindowRotation : public WindowTest {};
class FormEffect : public WindowTest {};

TEST_F(MainWindow, IsATopLevelWindow) {
  EXPECT_TRUE(GTK_IS_WINDOW(window()));
  EXPECT_TRUE(gtk_widget_is_toplevel(GTK_WIDGET(window())));
}

TEST_F(MainWindow, IsNotShownWhenItIsNew) {
  EXPECT_FALSE(gtk_widget_get_visible(GTK_WIDGET(window())));
}

TEST_F(MainWindow, KeepsTheStyleItWasMadeWith) {
  EXPECT_EQ(gtk_main_window_get_style(window()), 7);
}

TEST_F(MainWindow, KeepsTheStyleItWasChangedTo) {
  gtk_main_window_change_style(window(), 12, 0);

  EXPECT_EQ(gtk_main_window_get_style(window()), 12);
}

TEST_F(MainWindow, GoesWithItsForms) {
  const ExpectFinalized watch_window(window());
  const ExpectFinalized watch_form(add_form());

  gtk_widget_destroy(GTK_WIDGET(window()));
  window_.reset();
}

TEST_F(MainWindow, KeepsItsLabelReachableAfterItWasDestroyed) {
  gtk_widget_destroy(GTK_WIDGET(window()));

  gtk_main_window_set_default_title(window(), "late");

  EXPECT_STREQ(title(), "late");
}

TEST_F(MainWindow, RefusesAForeignWidget) {
  gtk_main_window_set_default_title(reinterpret_cast<GtkMainWindow *>(add_form()), "title");

  EXPECT_THAT(
      take_glib_warnings(),
      ElementsAre(
          "gtk_main_window_set_default_title: assertion 'GTK_IS_MAIN_WINDOW(window)' failed"));
}

TEST_F(MainWindowForms, AreHiddenUntilTheyAreCurrent) {
  GtkForm *form = add_form();

  gtk_widget_show_all(GTK_WIDGET(window()));

  EXPECT_FALSE(visible(form));
}

TEST_F(MainWindowForms, ShowOnlyTheCurrentOne) {
  GtkForm *first = add_form();
  GtkForm *second = add_form();
  gtk_main_window_set_current_form(window(), first);

  gtk_main_window_set_current_form(window(), second);
  gtk_widget_show_all(GTK_WIDGET(window()));

  EXPECT_FALSE(mapped(first));
  EXPECT_TRUE(mapped(second));
}

TEST_F(MainWindowForms, CanBeMadeCurrentAgain) {
  GtkForm *first = add_form();
  GtkForm *second = add_form();
  gtk_main_window_set_current_form(window(), first);
  gtk_main_window_set_current_form(window(), second);

  gtk_main_window_set_current_form(window(), first);
  gtk_widget_show_all(GTK_WIDGET(window()));

  EXPECT_TRUE(mapped(first));
  EXPECT_FALSE(mapped(second));
}

TEST_F(MainWindowForms, ShowTheirContentsWhenAllOfThemIsShown) {
  GtkForm *form = add_form();
  GtkWidget *label = gtk_label_new("inside");
  gtk_container_add(GTK_CONTAINER(form), label);
  gtk_main_window_set_current_form(window(), form);

  gtk_widget_show_all(GTK_WIDGET(form));
  gtk_widget_show(GTK_WIDGET(window()));

  EXPECT_TRUE(gtk_widget_get_mapped(label));
}

TEST_F(MainWindowForms, FillTheWindowBelowTheTitle) {
  GtkForm *form = add_form();
  gtk_container_add(GTK_CONTAINER(form), gtk_label_new("inside"));
  gtk_main_window_set_current_form(window(), form);
  gtk_window_set_default_size(GTK_WINDOW(window()), 480, 800);

  gtk_widget_show_all(GTK_WIDGET(window()));
  while (gtk_events_pending()) gtk_main_iteration();

  GtkAllocation area;
  gtk_widget_get_allocation(gtk_bin_get_child(GTK_BIN(form)), &area);
  EXPECT_EQ(area.width, 480);
  EXPECT_EQ(area.y + area.height, 800);
}

TEST_F(MainWindowForms, AreDestroyedWhenTheyAreRemoved) {
  GtkForm *form = add_form();
  const ExpectFinalized watch(form);

  gtk_main_window_remove_form(window(), form);
}

TEST_F(MainWindowForms, OutliveTheRemovalWithAReference) {
  const auto form = pb::Ref<GtkForm>::share(add_form());

  gtk_main_window_remove_form(window(), form.get());

  EXPECT_EQ(gtk_widget_get_parent(GTK_WIDGET(form.get())), nullptr);
  gtk_main_window_add_form(window(), form.get());
  EXPECT_NE(gtk_widget_get_parent(GTK_WIDGET(form.get())), nullptr);
}

TEST_F(MainWindowForms, LeaveNoneCurrentWhenTheCurrentOneIsRemoved) {
  GtkForm *first = add_form();
  GtkForm *second = add_form();
  gtk_main_window_set_current_form(window(), second);
  gtk_widget_show_all(GTK_WIDGET(window()));

  gtk_main_window_remove_form(window(), second);

  EXPECT_FALSE(mapped(first));
  gtk_main_window_set_current_form(window(), first);
  EXPECT_TRUE(visible(first));
}

TEST_F(MainWindowForms, AreForgottenWhenTheyAreDestroyedElsewhere) {
  GtkForm *first = add_form();
  GtkForm *second = add_form();
  gtk_main_window_set_current_form(window(), second);

  gtk_widget_destroy(GTK_WIDGET(second));
  gtk_main_window_set_current_form(window(), first);

  EXPECT_TRUE(visible(first));
}

TEST_F(MainWindowForms, OfAnotherWindowAreLeftAlone) {
  const auto form = pb::Ref<GtkWidget>::sink(gtk_form_new());

  gtk_main_window_remove_form(window(), GTK_FORM(form.get()));

  EXPECT_TRUE(GTK_IS_FORM(form.get()));
}

TEST_F(MainWindowForms, OfAnotherWindowAreNotMadeCurrent) {
  const auto form = pb::Ref<GtkWidget>::sink(gtk_form_new());

  gtk_main_window_set_current_form(window(), GTK_FORM(form.get()));

  EXPECT_EQ(take_glib_warnings().size(), 1U);
}

TEST_F(MainWindowForms, RefuseWhatIsNoForm) {
  const auto label = pb::Ref<GtkWidget>::sink(gtk_label_new("no form"));

  gtk_main_window_add_form(window(), reinterpret_cast<GtkForm *>(label.get()));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("gtk_main_window_add_form: assertion 'GTK_IS_FORM(form)' failed"));
}

TEST_F(MainWindowTitle, IsShownInTheLabel) {
  gtk_main_window_set_default_title(window(), "Albums & <pictures>");

  EXPECT_STREQ(title(), "Albums & <pictures>");
}

TEST_F(MainWindowTitle, NamesTheWindowForTheDesktop) {
  gtk_main_window_set_default_title(window(), "Albums");

  EXPECT_STREQ(gtk_window_get_title(GTK_WINDOW(window())), "Albums");
}

TEST_F(MainWindowTitle, ShowsBytesThatAreNoTextAsReplacement) {
  gtk_main_window_set_default_title(window(), "IMG\xff.jpg");

  EXPECT_STREQ(title(), "IMG\xef\xbf\xbd.jpg");
}

TEST_F(MainWindowTitle, IsCentred) {
  gfloat x = 0;
  gfloat y = 0;
  gtk_misc_get_alignment(GTK_MISC(gtk_main_window_get_title_label(window())), &x, &y);

  EXPECT_EQ(x, 0.5F);
  EXPECT_EQ(y, 0.5F);
}

TEST_F(MainWindowTitle, LeavesTheWholeWindowToTheFormWhenHidden) {
  gtk_main_window_set_title_style(window(), PHONE_TITLE_NONE);

  gtk_widget_show_all(GTK_WIDGET(window()));

  EXPECT_FALSE(title_shown());
}

TEST_F(MainWindowTitle, ComesBackWithItsBar) {
  gtk_main_window_set_title_style(window(), PHONE_TITLE_NONE);
  gtk_widget_show_all(GTK_WIDGET(window()));

  gtk_main_window_set_title_style(window(), PHONE_TITLE_BAR);

  EXPECT_TRUE(title_shown());
}

TEST_F(MainWindowTitle, ReferencesItsIcon) {
  const auto icon = support::solid_pixbuf(24, 24, support::kRed);

  gtk_main_window_set_default_icon(window(), icon.get());

  EXPECT_EQ(gtk_window_get_icon(GTK_WINDOW(window())), icon.get());
}

TEST_F(MainWindowTitle, TakesWidgetsOfTheApplication) {
  GtkWidget *button = gtk_button_new_with_label("Back");

  phone_main_window_add_title_widget(window(), button, GTK_PACK_START);
  gtk_widget_show_all(GTK_WIDGET(window()));
  while (gtk_events_pending()) gtk_main_iteration();

  GtkAllocation left;
  GtkAllocation label;
  gtk_widget_get_allocation(button, &left);
  gtk_widget_get_allocation(gtk_main_window_get_title_label(window()), &label);
  EXPECT_LT(left.x, label.x);
}

TEST_F(MainWindow, KeepsABottomWidgetUnderEveryForm) {
  GtkForm *first = add_form();
  GtkForm *second = add_form();
  GtkWidget *bar = gtk_label_new("bar");
  phone_main_window_add_bottom_widget(window(), bar);
  gtk_window_set_default_size(GTK_WINDOW(window()), 200, 300);
  gtk_main_window_set_current_form(window(), first);
  gtk_widget_show_all(GTK_WIDGET(window()));

  gtk_main_window_set_current_form(window(), second);
  while (gtk_events_pending() != FALSE) gtk_main_iteration();

  GtkAllocation place;
  gtk_widget_get_allocation(bar, &place);
  EXPECT_TRUE(gtk_widget_get_mapped(bar));
  EXPECT_EQ(place.y + place.height, 300);
}

TEST_F(MainWindowTitle, StaysInTheMiddleBesideAWidget) {
  gtk_window_set_default_size(GTK_WINDOW(window()), 480, 800);
  phone_main_window_add_title_widget(window(), gtk_button_new_with_label("Back"), GTK_PACK_START);

  gtk_widget_show_all(GTK_WIDGET(window()));
  while (gtk_events_pending()) gtk_main_iteration();

  GtkAllocation label;
  gtk_widget_get_allocation(gtk_main_window_get_title_label(window()), &label);
  EXPECT_NEAR(label.x + label.width / 2.0, 240, 1);
}

TEST_F(WindowRotation, IsZeroWithoutAWindow) { EXPECT_EQ(gtk_window_get_rotate(nullptr), 0); }

TEST_F(WindowRotation, IsUprightForAHighWindow) {
  gtk_window_resize(GTK_WINDOW(window()), 480, 800);

  EXPECT_EQ(gtk_window_get_rotate(GTK_WINDOW(window())), 0);
}

TEST_F(WindowRotation, IsOnItsSideForAWideWindow) {
  gtk_window_set_default_size(GTK_WINDOW(window()), 800, 480);
  gtk_widget_show_all(GTK_WIDGET(window()));

  EXPECT_EQ(gtk_window_get_rotate(GTK_WINDOW(window())), 90);
}

TEST_F(FormEffect, LeavesTheFormAsItIs) {
  GtkForm *form = add_form();
  gtk_main_window_set_current_form(window(), form);

  gtk_effect_set_motion(GTK_WIDGET(form), GTK_EFFECT_MOTION_FORM, FALSE);

  EXPECT_TRUE(visible(form));
}

TEST_F(FormEffect, RefusesWhatIsNoWidget) {
  gtk_effect_set_motion(nullptr, GTK_EFFECT_MOTION_FORM, FALSE);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("gtk_effect_set_motion: assertion 'GTK_IS_WIDGET(form)' failed"));
}

}  // namespace

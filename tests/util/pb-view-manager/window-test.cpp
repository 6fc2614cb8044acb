#include <main-window.h>

#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "pb-view-manager.h"
#include "support/fake-platform.hpp"
#include "support/pixbufs.hpp"

namespace {

using fake::calls_of;
using fake::Logged;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class ViewManagerWindow : public support::DisplayTest {
 protected:
  void TearDown() override { pb_view_manager_destroy_window(); }

  static GtkWidget *create(gint style = 0) {
    GtkWidget *window = pb_view_manager_create_window(style);
    fake::take_calls();
    fake::take_log();
    return window;
  }

  static GtkWidget *add_form(const gchar *title) {
    GtkWidget *form = gtk_form_new();
    pb_view_manager_add_widget(form, nullptr, title);
    fake::take_calls();
    fake::take_log();
    return form;
  }

  static void expect_size_request(GtkWidget *window, gint width, gint height) {
    gint wanted_width = 0;
    gint wanted_height = 0;
    gtk_widget_get_size_request(window, &wanted_width, &wanted_height);
    EXPECT_EQ(wanted_width, width);
    EXPECT_EQ(wanted_height, height);
  }
};

TEST_F(ViewManagerWindow, IsNullBeforeItIsCreated) {
  EXPECT_EQ(pb_view_manager_get_window(), nullptr);
}

TEST_F(ViewManagerWindow, IsCreatedWithTheStyle) {
  pb_view_manager_create_window(7);

  EXPECT_THAT(calls_of("gtk_main_window_new"), ElementsAre("gtk_main_window_new(7)"));
}

TEST_F(ViewManagerWindow, IsReturnedByItsCreation) {
  GtkWidget *window = pb_view_manager_create_window(0);

  EXPECT_TRUE(GTK_IS_MAIN_WINDOW(window));
  EXPECT_EQ(pb_view_manager_get_window(), window);
}

TEST_F(ViewManagerWindow, AsksForItsSizeWhenCreated) {
  expect_size_request(pb_view_manager_create_window(0), 480, 608);
}

TEST_F(ViewManagerWindow, IsShownWhenCreated) {
  EXPECT_TRUE(gtk_widget_get_visible(pb_view_manager_create_window(0)));
}

TEST_F(ViewManagerWindow, IsCreatedOnce) {
  GtkWidget *first = pb_view_manager_create_window(1);

  EXPECT_EQ(pb_view_manager_create_window(2), first);

  EXPECT_THAT(calls_of("gtk_main_window_new"), ElementsAre("gtk_main_window_new(1)"));
}

TEST_F(ViewManagerWindow, IsTakenOverFromTheApplication) {
  GtkWidget *window = gtk_window_new(GTK_WINDOW_TOPLEVEL);

  pb_view_manager_set_window(window);

  EXPECT_EQ(pb_view_manager_get_window(), window);
}

TEST_F(ViewManagerWindow, AsksForTheWholeScreenWhenTakenOver) {
  GtkWidget *window = gtk_window_new(GTK_WINDOW_TOPLEVEL);

  pb_view_manager_set_window(window);

  expect_size_request(window, 480, 800);
}

TEST_F(ViewManagerWindow, IsShownWithItsContentsWhenTakenOver) {
  GtkWidget *window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  GtkWidget *label = gtk_label_new("content");
  gtk_container_add(GTK_CONTAINER(window), label);

  pb_view_manager_set_window(window);

  EXPECT_TRUE(gtk_widget_get_visible(window));
  EXPECT_TRUE(gtk_widget_get_visible(label));
}

TEST_F(ViewManagerWindow, IsNotTakenFromNothing) {
  GtkWidget *window = create();

  pb_view_manager_set_window(nullptr);

  EXPECT_EQ(pb_view_manager_get_window(), window);
}

TEST_F(ViewManagerWindow, IsNotTakenFromWhatIsNoWidget) {
  const auto object = pb::Ref<GObject>::adopt(G_OBJECT(gtk_list_store_new(1, G_TYPE_INT)));

  pb_view_manager_set_window(reinterpret_cast<GtkWidget *>(object.get()));

  EXPECT_EQ(pb_view_manager_get_window(), nullptr);
}

TEST_F(ViewManagerWindow, IsCreatedByNobodyAfterATakeover) {
  GtkWidget *window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  pb_view_manager_set_window(window);

  EXPECT_EQ(pb_view_manager_create_window(0), window);
}

TEST_F(ViewManagerWindow, IsForgottenWhenSomebodyElseDestroysIt) {
  gtk_widget_destroy(create());

  EXPECT_EQ(pb_view_manager_get_window(), nullptr);
}

TEST_F(ViewManagerWindow, IsDestroyedAndForgotten) {
  GtkWidget *window = create();
  const support::ExpectFinalized watch(window);

  pb_view_manager_destroy_window();

  EXPECT_EQ(pb_view_manager_get_window(), nullptr);
}

TEST_F(ViewManagerWindow, IsDestroyedAfterItsForms) {
  create();
  add_form(nullptr);

  pb_view_manager_destroy_window();

  EXPECT_EQ(pb_view_manager_get_count(), 0);
  EXPECT_THAT(
      fake::platform().log,
      ElementsAre(Logged(PB_LOG_INFO,
                         "[pb_view_manager_destroy_all]destroy all child "
                         "forms - size(1)\n"),
                  Logged(PB_LOG_INFO, "[pb_view_manager_destroy_window]destroy GtkMainWindow\n")));
}

TEST_F(ViewManagerWindow, IsNotDestroyedWithoutOne) {
  pb_view_manager_destroy_window();

  EXPECT_THAT(fake::platform().log,
              Not(Contains(
                  Logged(PB_LOG_INFO, "[pb_view_manager_destroy_window]destroy GtkMainWindow\n"))));
}

class ViewManagerTitle : public ViewManagerWindow {};

TEST_F(ViewManagerTitle, IsSet) {
  create();

  pb_view_manager_set_title("Albums");

  EXPECT_THAT(calls_of("gtk_main_window_set_default_title"),
              ElementsAre("gtk_main_window_set_default_title(GtkMainWindow, \"Albums\")"));
}

TEST_F(ViewManagerTitle, IsCentred) {
  GtkWidget *window = create();
  GtkWidget *label = gtk_main_window_get_title_label(GTK_MAIN_WINDOW(window));
  gtk_misc_set_alignment(GTK_MISC(label), 0.0F, 1.0F);

  pb_view_manager_set_title("Albums");

  gfloat x = 0;
  gfloat y = 0;
  gtk_misc_get_alignment(GTK_MISC(label), &x, &y);
  EXPECT_EQ(x, 0.5F);
  EXPECT_EQ(y, 0.5F);
}

TEST_F(ViewManagerTitle, StaysForNull) {
  create();

  pb_view_manager_set_title(nullptr);

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(ViewManagerTitle, NeedsAWindow) {
  pb_view_manager_set_title("Albums");

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(ViewManagerTitle, NeedsAMainWindow) {
  pb_view_manager_set_window(gtk_window_new(GTK_WINDOW_TOPLEVEL));

  pb_view_manager_set_title("Albums");

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(ViewManagerTitle, OfTheTopFormIsSet) {
  create();
  add_form("Albums");
  add_form("Holiday");
  pb_view_manager_set_title("Something else");
  fake::take_calls();

  pb_view_manager_set_current_title();

  EXPECT_THAT(calls_of("gtk_main_window_set_default_title"),
              ElementsAre("gtk_main_window_set_default_title(GtkMainWindow, \"Holiday\")"));
}

TEST_F(ViewManagerTitle, OfTheTopFormIsLogged) {
  create();
  add_form("Albums");

  pb_view_manager_set_current_title();

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_INFO,
                                 "[pb_view_manager_set_current_title]"
                                 "pb_view_manager_set_current_title =Albums\n")));
}

TEST_F(ViewManagerTitle, OfTheTopFormIsTheCopyMadeWhenItWasAdded) {
  create();
  gchar title[] = "Albums";
  add_form(title);
  title[0] = 'X';

  pb_view_manager_set_current_title();

  EXPECT_THAT(calls_of("gtk_main_window_set_default_title"),
              ElementsAre("gtk_main_window_set_default_title(GtkMainWindow, \"Albums\")"));
}

TEST_F(ViewManagerTitle, StaysForATopFormWithoutTitle) {
  create();
  add_form(nullptr);

  pb_view_manager_set_current_title();

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(ViewManagerTitle, OfNoFormIsLogged) {
  create();

  pb_view_manager_set_current_title();

  EXPECT_THAT(
      fake::platform().log,
      ElementsAre(Logged(PB_LOG_INFO, "[pb_view_manager_set_current_title]exit 2 : i=-1\n")));
}

TEST_F(ViewManagerTitle, WithoutAWindowIsLogged) {
  pb_view_manager_set_current_title();

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_INFO, "[pb_view_manager_set_current_title]exit 1\n")));
}

TEST_F(ViewManagerTitle, GetsAnIcon) {
  GtkWidget *window = create();
  const support::PixbufPtr icon = support::solid_pixbuf(4, 4, support::kRed);

  pb_view_manager_set_title_icon(icon.get());

  EXPECT_EQ(fake::title_icon(GTK_MAIN_WINDOW(window)), icon.get());
}

TEST_F(ViewManagerTitle, KeepsItsIconForNull) {
  create();

  pb_view_manager_set_title_icon(nullptr);

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(ViewManagerTitle, GetsNoIconWithoutAWindow) {
  const support::PixbufPtr icon = support::solid_pixbuf(4, 4, support::kRed);

  pb_view_manager_set_title_icon(icon.get());

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(ViewManagerTitle, GetsAStyle) {
  create();

  pb_view_manager_set_title_style(5);

  EXPECT_THAT(fake::platform().calls,
              ElementsAre("gtk_main_window_set_title_style(GtkMainWindow, 5)"));
}

TEST_F(ViewManagerTitle, GetsNoStyleWithoutAMainWindow) {
  pb_view_manager_set_window(gtk_window_new(GTK_WINDOW_TOPLEVEL));

  pb_view_manager_set_title_style(5);

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

class ViewManagerStyle : public ViewManagerWindow {};

TEST_F(ViewManagerStyle, IsThatOfTheWindow) {
  create(3);

  EXPECT_EQ(pb_view_manager_get_window_style(), 3);
}

TEST_F(ViewManagerStyle, IsZeroWithoutAWindow) { EXPECT_EQ(pb_view_manager_get_window_style(), 0); }

TEST_F(ViewManagerStyle, IsZeroForWhatIsNoMainWindow) {
  pb_view_manager_set_window(gtk_window_new(GTK_WINDOW_TOPLEVEL));

  EXPECT_EQ(pb_view_manager_get_window_style(), 0);
  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

TEST_F(ViewManagerStyle, IsChanged) {
  create(3);

  pb_view_manager_set_window_style(9);

  EXPECT_THAT(fake::platform().calls,
              ElementsAre("gtk_main_window_change_style(GtkMainWindow, 9, 0)"));
}

TEST_F(ViewManagerStyle, IsNotChangedWithoutAWindow) {
  pb_view_manager_set_window_style(9);

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

}  // namespace

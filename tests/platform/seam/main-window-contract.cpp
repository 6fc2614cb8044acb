// Windows and forms, by their header alone.
#include <main-window.h>

#include "glib-ptr.hpp"
#include "support/glib-test.hpp"
#include "support/pixbufs.hpp"

namespace {

using testing::ElementsAre;
using testing::StartsWith;

class MainWindowContract : public support::DisplayTest {
 protected:
  void SetUp() override {
    DisplayTest::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    window_ = GTK_MAIN_WINDOW(gtk_main_window_new(7));
  }
  void TearDown() override {
    if (window_ != nullptr) gtk_widget_destroy(GTK_WIDGET(window_));
  }

  GtkForm *add_form() {
    auto *form = GTK_FORM(gtk_form_new());
    gtk_main_window_add_form(window_, form);
    return form;
  }

  static bool visible(GtkForm *form) { return gtk_widget_get_visible(GTK_WIDGET(form)) != FALSE; }

  GtkMainWindow *window_ = nullptr;
};

TEST_F(MainWindowContract, WindowIsAWindowAndAFormHoldsOneChild) {
  EXPECT_TRUE(GTK_IS_WINDOW(window_));
  EXPECT_TRUE(g_type_is_a(GTK_TYPE_FORM, GTK_TYPE_BIN));
}

TEST_F(MainWindowContract, StyleIsWhatWasSetLast) {
  EXPECT_EQ(gtk_main_window_get_style(window_), 7);

  gtk_main_window_change_style(window_, 9, 0);

  EXPECT_EQ(gtk_main_window_get_style(window_), 9);
}

TEST_F(MainWindowContract, FormIsHiddenUntilItIsCurrent) {
  GtkForm *form = add_form();
  gtk_widget_show_all(GTK_WIDGET(window_));
  EXPECT_FALSE(visible(form));

  gtk_main_window_set_current_form(window_, form);

  EXPECT_TRUE(visible(form));
}

TEST_F(MainWindowContract, OneFormIsVisibleAtATime) {
  GtkForm *first = add_form();
  GtkForm *second = add_form();
  gtk_main_window_set_current_form(window_, first);

  gtk_main_window_set_current_form(window_, second);

  EXPECT_FALSE(visible(first));
  EXPECT_TRUE(visible(second));
}

TEST_F(MainWindowContract, RemovedFormIsDestroyed) {
  GtkForm *form = add_form();
  gtk_main_window_set_current_form(window_, form);
  const support::ExpectFinalized watch(form);

  gtk_main_window_remove_form(window_, form);
}

TEST_F(MainWindowContract, RemovedFormThatIsReferencedLives) {
  const auto form = pb::Ref<GtkForm>::share(add_form());

  gtk_main_window_remove_form(window_, form.get());

  EXPECT_EQ(gtk_widget_get_parent(GTK_WIDGET(form.get())), nullptr);
}

TEST_F(MainWindowContract, RemovedFormCanBeAddedAgain) {
  const auto form = pb::Ref<GtkForm>::share(add_form());
  gtk_main_window_remove_form(window_, form.get());

  gtk_main_window_add_form(window_, form.get());
  gtk_main_window_set_current_form(window_, form.get());

  EXPECT_TRUE(visible(form.get()));
}

TEST_F(MainWindowContract, RemovalOfAForeignFormIsIgnored) {
  const auto form = pb::Ref<GtkWidget>::sink(gtk_form_new());

  gtk_main_window_remove_form(window_, GTK_FORM(form.get()));
}

TEST_F(MainWindowContract, DestroyedFormIsNoLongerCurrent) {
  GtkForm *first = add_form();
  gtk_main_window_set_current_form(window_, first);
  gtk_widget_destroy(GTK_WIDGET(first));
  GtkForm *second = add_form();

  gtk_main_window_set_current_form(window_, second);

  EXPECT_TRUE(visible(second));
}

TEST_F(MainWindowContract, TitleIsInItsLabel) {
  gtk_main_window_set_default_title(window_, "A & B");

  EXPECT_STREQ(gtk_label_get_text(GTK_LABEL(gtk_main_window_get_title_label(window_))), "A & B");
}

TEST_F(MainWindowContract, IconIsReferenced) {
  support::PixbufPtr icon = support::solid_pixbuf(2, 2, support::kRed);
  GdkPixbuf *borrowed = icon.get();
  gtk_main_window_set_default_icon(window_, borrowed);

  icon.reset();

  EXPECT_TRUE(GDK_IS_PIXBUF(borrowed));
}

TEST_F(MainWindowContract, TitleLabelOutlivesTheDestructionOfAReferencedWindow) {
  const auto kept = pb::Ref<GtkMainWindow>::share(window_);
  gtk_widget_destroy(GTK_WIDGET(std::exchange(window_, nullptr)));

  EXPECT_TRUE(GTK_IS_LABEL(gtk_main_window_get_title_label(kept.get())));
}

TEST_F(MainWindowContract, RotationOfNoWindowIsUpright) {
  EXPECT_EQ(gtk_window_get_rotate(nullptr), 0);
}

TEST_F(MainWindowContract, PreconditionsAreReported) {
  GtkForm *form = add_form();
  const auto stranger = pb::Ref<GtkWidget>::sink(gtk_form_new());

  gtk_main_window_add_form(nullptr, form);
  gtk_main_window_add_form(window_, nullptr);
  gtk_main_window_add_form(window_, form);
  gtk_main_window_set_current_form(window_, GTK_FORM(stranger.get()));
  gtk_main_window_set_default_title(window_, nullptr);
  gtk_main_window_set_default_icon(window_, nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre(StartsWith("gtk_main_window_add_form: assertion "),
                          StartsWith("gtk_main_window_add_form: assertion "),
                          StartsWith("gtk_main_window_add_form: assertion "),
                          StartsWith("gtk_main_window_set_current_form: assertion "),
                          StartsWith("gtk_main_window_set_default_title: assertion "),
                          StartsWith("gtk_main_window_set_default_icon: assertion ")));
}

}  // namespace

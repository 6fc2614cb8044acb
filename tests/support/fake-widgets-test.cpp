#include "support/fake-platform.hpp"
#include "support/pixbufs.hpp"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FakeWidgets : public support::DisplayTest {
 protected:
  void SetUp() override {
    DisplayTest::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    window_ = GTK_MAIN_WINDOW(gtk_main_window_new(2));
    fake::take_calls();
  }
  void TearDown() override {
    if (window_ != nullptr) gtk_widget_destroy(GTK_WIDGET(window_));
  }

  GtkForm *add_form(const char *name) {
    GtkWidget *form = gtk_form_new();
    gtk_widget_set_name(form, name);
    gtk_main_window_add_form(window_, GTK_FORM(form));
    return GTK_FORM(form);
  }

  GtkMainWindow *window_ = nullptr;
};

TEST_F(FakeWidgets, StandInTheJournalWithTheirNames) {
  GtkForm *form = add_form("albums");

  gtk_main_window_set_current_form(window_, form);

  EXPECT_THAT(fake::platform().calls,
              ElementsAre("gtk_main_window_add_form(GtkMainWindow, albums)",
                          "gtk_main_window_set_current_form(GtkMainWindow, albums)"));
}

TEST_F(FakeWidgets, ShowOneFormOnly) {
  GtkForm *first = add_form("first");
  GtkForm *second = add_form("second");

  gtk_main_window_set_current_form(window_, first);
  gtk_main_window_set_current_form(window_, second);

  EXPECT_FALSE(gtk_widget_get_visible(GTK_WIDGET(first)));
  EXPECT_TRUE(gtk_widget_get_visible(GTK_WIDGET(second)));
  EXPECT_EQ(fake::current_form(window_), GTK_WIDGET(second));
}

TEST_F(FakeWidgets, DestroyAFormThatIsRemoved) {
  GtkForm *form = add_form("first");
  gtk_main_window_set_current_form(window_, form);
  const support::ExpectFinalized watch(form);

  gtk_main_window_remove_form(window_, form);

  EXPECT_EQ(fake::current_form(window_), nullptr);
}

TEST_F(FakeWidgets, WarnAboutWhatIsNoForm) {
  gtk_main_window_add_form(window_, reinterpret_cast<GtkForm *>(window_));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("gtk_main_window_add_form: assertion 'GTK_IS_FORM(form)' failed"));
}

TEST_F(FakeWidgets, KeepTheStyle) {
  EXPECT_EQ(gtk_main_window_get_style(window_), 2);

  gtk_main_window_change_style(window_, 5, 0);

  EXPECT_EQ(gtk_main_window_get_style(window_), 5);
}

TEST_F(FakeWidgets, KeepTitleAndIcon) {
  const support::PixbufPtr icon = support::solid_pixbuf(1, 1, support::kRed);

  gtk_main_window_set_default_title(window_, "Albums");
  gtk_main_window_set_default_icon(window_, icon.get());

  EXPECT_STREQ(gtk_label_get_text(GTK_LABEL(gtk_main_window_get_title_label(window_))), "Albums");
  EXPECT_EQ(fake::title_icon(window_), icon.get());
}

TEST_F(FakeWidgets, AnswerADialogAsTheTestSays) {
  fake::platform().gtk_dialog_run = [](GtkDialog *) { return gint{GTK_RESPONSE_YES}; };
  GtkWidget *dialog = gtk_style_dialog_new(4, GTK_WINDOW(window_), 3);
  fake::take_calls();

  EXPECT_EQ(gtk_dialog_run(GTK_DIALOG(dialog)), GTK_RESPONSE_YES);

  EXPECT_THAT(fake::platform().calls, ElementsAre("gtk_dialog_run(GtkStyleDialog)"));
  gtk_widget_destroy(dialog);
}

TEST_F(FakeWidgets, DestroyADialogAtItsTimeout) {
  GtkWidget *dialog = gtk_style_dialog_new(4, nullptr, 0);
  const support::ExpectFinalized watch(dialog);
  gtk_style_dialog_set_destroy_timeout(GTK_STYLE_DIALOG(dialog), 2000);

  fake::advance_clock(1999);
  EXPECT_FALSE(watch.finalized());
  fake::advance_clock(1);
}

TEST_F(FakeWidgets, ForgetTheTimeoutOfADestroyedDialog) {
  GtkWidget *dialog = gtk_style_dialog_new(4, nullptr, 0);
  gtk_style_dialog_set_destroy_timeout(GTK_STYLE_DIALOG(dialog), 2000);

  gtk_widget_destroy(dialog);

  EXPECT_THAT(fake::pending_sources(), IsEmpty());
}

TEST_F(FakeWidgets, AcceptAButtonWithoutALabel) {
  GtkWidget *dialog = gtk_style_dialog_new(4, nullptr, 0);

  EXPECT_TRUE(GTK_IS_BUTTON(gtk_style_dialog_add_button(GTK_STYLE_DIALOG(dialog), nullptr, -5)));
  gtk_widget_destroy(dialog);
}

}  // namespace

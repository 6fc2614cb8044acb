// Dialogs, by their header alone.
#include <style-dialog.h>

#include "glib-ptr.hpp"
#include "platform/seam/contract-side.hpp"
#include "support/glib-test.hpp"

namespace {

using testing::ElementsAre;
using testing::StartsWith;

constexpr guint kSoonMs = 20;

class StyleDialogContract : public support::DisplayTest {
 protected:
  void SetUp() override {
    DisplayTest::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    dialog_ = pb::Ref<GtkStyleDialog>::share(GTK_STYLE_DIALOG(gtk_style_dialog_new(2, nullptr, 0)));
    g_signal_connect(dialog_.get(), "destroy", G_CALLBACK(count), &destroyed_);
    g_signal_connect(dialog_.get(), "response", G_CALLBACK(note_response), &response_);
  }
  void TearDown() override {
    if (dialog_) gtk_widget_destroy(GTK_WIDGET(dialog_.get()));
  }

  GtkStyleDialog *dialog() { return dialog_.get(); }

  pb::Ref<GtkStyleDialog> dialog_;
  int destroyed_ = 0;
  int response_ = 0;

 private:
  static void count(GtkWidget *, int *counter) { ++*counter; }
  static void note_response(GtkDialog *, gint response, int *where) { *where = response; }
};

TEST_F(StyleDialogContract, DialogIsADialog) { EXPECT_TRUE(GTK_IS_DIALOG(dialog())); }

TEST_F(StyleDialogContract, TextIsInItsLabel) {
  gtk_style_dialog_set_content_area_text(dialog(), "one");
  gtk_style_dialog_set_content_area_text(dialog(), "<b>two</b>");

  EXPECT_STREQ(gtk_label_get_text(GTK_LABEL(gtk_style_dialog_get_text_label(dialog()))),
               "<b>two</b>");
}

TEST_F(StyleDialogContract, ContentAreaIsABoxInTheDialog) {
  GtkWidget *area = gtk_style_dialog_get_content_area(dialog());

  EXPECT_TRUE(GTK_IS_BOX(area));
  EXPECT_TRUE(gtk_widget_is_ancestor(area, GTK_WIDGET(dialog())));
}

TEST_F(StyleDialogContract, TitleIsTheWindowsTitle) {
  gtk_style_dialog_set_title(dialog(), "Delete");

  EXPECT_STREQ(gtk_window_get_title(GTK_WINDOW(dialog())), "Delete");
}

TEST_F(StyleDialogContract, ButtonGivesItsResponse) {
  gtk_style_dialog_add_button(dialog(), "Yes", GTK_RESPONSE_YES);
  GtkWidget *no = gtk_style_dialog_add_button(dialog(), "No", GTK_RESPONSE_NO);

  gtk_button_clicked(GTK_BUTTON(no));

  EXPECT_EQ(response_, GTK_RESPONSE_NO);
}

TEST_F(StyleDialogContract, ButtonNeedsNoLabel) {
  GtkWidget *button = gtk_style_dialog_add_button(dialog(), nullptr, GTK_RESPONSE_OK);

  gtk_button_clicked(GTK_BUTTON(button));

  EXPECT_EQ(response_, GTK_RESPONSE_OK);
}

TEST_F(StyleDialogContract, DialogIsDestroyedAtItsTimeout) {
  gtk_style_dialog_set_destroy_timeout(dialog(), kSoonMs);
  EXPECT_EQ(destroyed_, 0);

  contract::let_time_pass(kSoonMs + 5);

  EXPECT_EQ(destroyed_, 1);
}

TEST_F(StyleDialogContract, LaterTimeoutReplacesAnEarlierOne) {
  gtk_style_dialog_set_destroy_timeout(dialog(), kSoonMs);
  gtk_style_dialog_set_destroy_timeout(dialog(), 60'000);

  contract::let_time_pass(kSoonMs + 5);

  EXPECT_EQ(destroyed_, 0);
}

TEST_F(StyleDialogContract, TimeoutOfADestroyedDialogDoesNothing) {
  gtk_style_dialog_set_destroy_timeout(dialog(), kSoonMs);
  gtk_widget_destroy(GTK_WIDGET(dialog()));

  contract::let_time_pass(kSoonMs + 5);

  EXPECT_EQ(destroyed_, 1);
}

TEST_F(StyleDialogContract, FlagsAreThoseOfADialog) {
  auto *parent = GTK_WINDOW(gtk_window_new(GTK_WINDOW_TOPLEVEL));
  const auto modal = pb::Ref<GtkWidget>::share(gtk_style_dialog_new(4, parent, 3));

  EXPECT_TRUE(gtk_window_get_modal(GTK_WINDOW(modal.get())));
  EXPECT_EQ(gtk_window_get_transient_for(GTK_WINDOW(modal.get())), parent);
  EXPECT_TRUE(gtk_window_get_destroy_with_parent(GTK_WINDOW(modal.get())));
  gtk_widget_destroy(modal.get());
  gtk_widget_destroy(GTK_WIDGET(parent));
}

TEST_F(StyleDialogContract, PreconditionsAreReported) {
  gtk_style_dialog_set_title(nullptr, "title");
  gtk_style_dialog_set_title(dialog(), nullptr);
  gtk_style_dialog_set_content_area_text(dialog(), nullptr);
  gtk_style_dialog_set_destroy_timeout(dialog(), 0);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre(StartsWith("gtk_style_dialog_set_title: assertion "),
                          StartsWith("gtk_style_dialog_set_title: assertion "),
                          StartsWith("gtk_style_dialog_set_content_area_text: assertion "),
                          StartsWith("gtk_style_dialog_set_destroy_timeout: assertion ")));
}

}  // namespace

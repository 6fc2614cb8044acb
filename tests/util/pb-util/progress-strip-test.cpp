#include "pb-debug.h"
#include "util/pb-util/dialog-fixture.hpp"

namespace {

using fake::Logged;
using fake::platform;
using pb_test::DialogTest;
using testing::ElementsAre;
using testing::IsEmpty;

/// A strip that the platform has made.
class ProgressStrip : public DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    made_ = &watch_dialogs();
  }

  [[nodiscard]] GtkWidget *shown() const { return made_->empty() ? nullptr : made_->back(); }

  double fraction() {
    const auto bars = descendants(shown(), GTK_TYPE_PROGRESS_BAR);
    return bars.empty() ? -1 : gtk_progress_bar_get_fraction(GTK_PROGRESS_BAR(bars.front()));
  }

  std::vector<GtkWidget *> *made_ = nullptr;
};

TEST_F(ProgressStrip, ShowsItsText) {
  mb_util_start_noti_progress_bar("Sending 1 of 3");

  EXPECT_EQ(text_of(shown()), "Sending 1 of 3");
  EXPECT_TRUE(gtk_widget_get_visible(shown()));
  EXPECT_TRUE(pb_dialog_check_exist());
}

TEST_F(ProgressStrip, LiesAtTheTopOfTheMainWindow) {
  GtkWidget *window = create_window();
  gtk_window_move(GTK_WINDOW(window), 60, 40);
  settle();

  mb_util_start_noti_progress_bar("Sending");
  settle();

  gint x = 0;
  gint y = 0;
  gdk_window_get_origin(gtk_widget_get_window(shown()), &x, &y);
  EXPECT_EQ(x, 60);
  EXPECT_EQ(y, 40);
  EXPECT_EQ(gdk_window_get_width(gtk_widget_get_window(shown())),
            gdk_window_get_width(gtk_widget_get_window(window)));
}

TEST_F(ProgressStrip, IsMadeOverTheMainWindow) {
  create_window();

  mb_util_start_noti_progress_bar("Sending");

  EXPECT_THAT(fake::calls_of("gtk_style_dialog_new"),
              ElementsAre("gtk_style_dialog_new(4, GtkMainWindow, 2)"));
}

TEST_F(ProgressStrip, LeavesTheWindowUsable) {
  create_window();

  mb_util_start_noti_progress_bar("Sending");

  EXPECT_FALSE(gtk_window_get_modal(GTK_WINDOW(shown())));
  EXPECT_FALSE(gtk_window_get_accept_focus(GTK_WINDOW(shown())));
}

TEST_F(ProgressStrip, Moves) {
  mb_util_start_noti_progress_bar("Sending");
  EXPECT_EQ(fraction(), 0.0);

  pb_util_update_noti_progress_bar(35, "Sending 2 of 3");

  EXPECT_EQ(fraction(), 0.35);
  EXPECT_EQ(text_of(shown()), "Sending 2 of 3");
}

TEST_F(ProgressStrip, KeepsItsTextForNull) {
  mb_util_start_noti_progress_bar("Sending");

  pb_util_update_noti_progress_bar(35, nullptr);

  EXPECT_EQ(text_of(shown()), "Sending");
}

TEST_F(ProgressStrip, TakesANegativePercentageForNone) {
  mb_util_start_noti_progress_bar("Sending");

  pb_util_update_noti_progress_bar(-5, nullptr);

  EXPECT_EQ(fraction(), 0.0);
}

TEST_F(ProgressStrip, GoesAtTheEnd) {
  for (const int percent : {100, 250}) {
    mb_util_start_noti_progress_bar("Sending");
    const support::ExpectFinalized watch(shown());

    pb_util_update_noti_progress_bar(percent, "Sent");

    EXPECT_FALSE(pb_dialog_check_exist());
  }
}

TEST_F(ProgressStrip, IsTakenDown) {
  mb_util_start_noti_progress_bar("Sending");

  pb_dialog_destroy();

  EXPECT_FALSE(pb_dialog_check_exist());
}

TEST_F(ProgressStrip, IsNotUpdatedAfterItsEnd) {
  mb_util_start_noti_progress_bar("Sending");
  pb_dialog_destroy();
  fake::take_calls();

  pb_util_update_noti_progress_bar(50, "Sending");

  EXPECT_THAT(platform().calls, IsEmpty());
}

TEST_F(ProgressStrip, LogsADialogThatIsNotMade) {
  refuse_dialogs();

  mb_util_start_noti_progress_bar("Sending");

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_WARNING,
                                 "[mb_util_start_noti_progress_bar]dialog creation failed\n\n")));
}

}  // namespace

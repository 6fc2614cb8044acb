#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "support/temp-dir.hpp"
#include "util/pb-util/dialog-fixture.hpp"

namespace {

using fake::calls_of;
using fake::Logged;
using fake::LoggedLike;
using fake::platform;
using pb_test::DialogTest;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// A GIF of 3 by 2 pixels with two frames.
const std::string &animation_bytes() {
  static const auto *bytes = new std::string(
      "GIF89a\x03\x00\x02\x00\x80\x00\x00\x00\x00\x00\xff\xff\xff"
      "\x21\xf9\x04\x04\x0a\x00\x00\x00\x2c\x00\x00\x00\x00\x03\x00\x02\x00\x00\x02\x03\x84\x6f"
      "\x05\x00"
      "\x21\xf9\x04\x04\x0a\x00\x00\x00\x2c\x00\x00\x00\x00\x03\x00\x02\x00\x00\x02\x03\x84\x6f"
      "\x05\x00\x3b",
      19 + 8 + 10 + 6 + 8 + 10 + 6 + 1);
  return *bytes;
}

/// Puts the animation where the package has it.
class ProgressBar : public DialogTest {
 protected:
  void SetUp() override {
    DialogTest::SetUp();
    const std::string folder =
        support::photobrowser_root() + "/usr/apps/com.velmora.photobrowser/res/bitmap/WVGA_Pb";
    ASSERT_EQ(g_mkdir_with_parents(folder.c_str(), 0700), 0);
    ASSERT_TRUE(g_file_set_contents(animation_file().c_str(), animation_bytes().data(),
                                    static_cast<gssize>(animation_bytes().size()), nullptr));
  }

  static std::string animation_file() {
    return support::photobrowser_root() +
           "/usr/apps/com.velmora.photobrowser/res/bitmap/WVGA_Pb/download_indicator.gif";
  }

  GtkWidget *start(const char *title, const char *text, GCallback handler = nullptr) {
    std::vector<GtkWidget *> &dialogs = watch_dialogs();
    pb_util_start_progress_bar(title, text, handler);
    return dialogs.empty() ? nullptr : dialogs.back();
  }

  static std::string button_label(GtkWidget *dialog) {
    const auto buttons = descendants(dialog, GTK_TYPE_BUTTON);
    return buttons.empty() ? "" : gtk_button_get_label(GTK_BUTTON(buttons.front()));
  }
};

gint g_handled = 0;

void handle_response(GtkDialog *, gint response, gpointer data) {
  EXPECT_EQ(data, nullptr);
  g_handled = response;
}

TEST_F(ProgressBar, IsMadeOverTheMainWindow) {
  create_window();

  pb_util_start_progress_bar("Title", "Text", nullptr);

  EXPECT_THAT(calls_of("gtk_style_dialog_new"),
              ElementsAre("gtk_style_dialog_new(4, GtkMainWindow, 3)"));
}

TEST_F(ProgressBar, IsMadeWithoutAMainWindow) {
  pb_util_start_progress_bar("Title", "Text", nullptr);

  EXPECT_THAT(calls_of("gtk_style_dialog_new"), ElementsAre("gtk_style_dialog_new(4, NULL, 3)"));
}

TEST_F(ProgressBar, IsTheCurrentDialog) {
  pb_util_start_progress_bar("Title", "Text", nullptr);

  EXPECT_TRUE(pb_dialog_check_exist());
}

TEST_F(ProgressBar, IsRefusedWhileADialogIsCurrent) {
  pb_util_start_progress_bar("First", "Text", nullptr);
  fake::take_log();

  pb_util_start_progress_bar("Second", "Text", nullptr);

  EXPECT_THAT(calls_of("gtk_style_dialog_new"), SizeIs(1));
  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_WARNING,
                                                 "[pb_util_start_progress_bar]message_dialog "
                                                 "dialog is not NULL !!!\n\n")));
}

TEST_F(ProgressBar, LogsADialogThatIsNotMade) {
  refuse_dialogs();

  pb_util_start_progress_bar("Title", "Text", nullptr);

  EXPECT_FALSE(pb_dialog_check_exist());
  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_WARNING,
                                                 "[pb_util_start_progress_bar]dialog creation "
                                                 "failed\n\n")));
}

TEST_F(ProgressBar, HasTitleAndText) {
  pb_util_start_progress_bar("Title", "Text", nullptr);

  EXPECT_THAT(calls_of("gtk_style_dialog_set_title"),
              ElementsAre("gtk_style_dialog_set_title(GtkStyleDialog, \"Title\")"));
  EXPECT_THAT(calls_of("gtk_style_dialog_set_content_area_text"),
              ElementsAre("gtk_style_dialog_set_content_area_text(GtkStyleDialog, \"Text\")"));
}

TEST_F(ProgressBar, EllipsizesItsTextAtTheEnd) {
  GtkWidget *dialog = start("Title", "Text");

  GtkWidget *label = gtk_style_dialog_get_text_label(GTK_STYLE_DIALOG(dialog));
  EXPECT_EQ(gtk_label_get_ellipsize(GTK_LABEL(label)), PANGO_ELLIPSIZE_END);
}

TEST_F(ProgressBar, ShowsTheAnimationInItsContentArea) {
  GtkWidget *dialog = start("Title", "Text");

  GtkWidget *content = gtk_style_dialog_get_content_area(GTK_STYLE_DIALOG(dialog));
  const auto images = descendants(content, GTK_TYPE_IMAGE);
  ASSERT_THAT(images, SizeIs(1));
  GdkPixbufAnimation *animation = gtk_image_get_animation(GTK_IMAGE(images.front()));
  ASSERT_NE(animation, nullptr);
  EXPECT_EQ(gdk_pixbuf_animation_get_width(animation), 3);
  EXPECT_TRUE(gtk_widget_get_visible(images.front()));
}

TEST_F(ProgressBar, TurnsASpinnerForADamagedAnimation) {
  std::string huge = animation_bytes();
  huge.replace(6, 4, "\xff\xff\xff\xff");
  const std::string cut = animation_bytes().substr(0, 9);
  const std::string torn = animation_bytes().substr(0, 15) + "torn";
  for (const std::string &bytes : {huge, cut, torn, std::string("\x89PNG and more")}) {
    ASSERT_TRUE(g_file_set_contents(animation_file().c_str(), bytes.data(),
                                    static_cast<gssize>(bytes.size()), nullptr));

    GtkWidget *dialog = start("Title", "Text");

    EXPECT_THAT(descendants(dialog, GTK_TYPE_IMAGE), IsEmpty());
    EXPECT_THAT(descendants(dialog, GTK_TYPE_SPINNER), SizeIs(1));
    pb_dialog_destroy();
  }
}

TEST_F(ProgressBar, TurnsASpinnerWithoutTheAnimation) {
  ASSERT_EQ(remove(animation_file().c_str()), 0);

  GtkWidget *dialog = start("Title", "Text");

  EXPECT_THAT(descendants(dialog, GTK_TYPE_IMAGE), IsEmpty());
  EXPECT_THAT(descendants(dialog, GTK_TYPE_SPINNER), SizeIs(1));
  EXPECT_THAT(platform().log,
              Contains(LoggedLike(PB_LOG_ERROR, HasSubstr("download_indicator.gif"))));
}

TEST_F(ProgressBar, HasAnOkButtonWithoutAHandler) {
  pb_util_start_progress_bar("Title", "Text", nullptr);

  EXPECT_THAT(calls_of("gtk_style_dialog_add_button"),
              ElementsAre("gtk_style_dialog_add_button(GtkStyleDialog, \"string 69\", -5)"));
}

TEST_F(ProgressBar, HasACancelButtonWithAHandler) {
  pb_util_start_progress_bar("Title", "Text", G_CALLBACK(handle_response));

  EXPECT_THAT(
      calls_of("gtk_style_dialog_add_button"),
      ElementsAre("gtk_style_dialog_add_button(GtkStyleDialog, \"system string 10066\", -6)"));
}

TEST_F(ProgressBar, CallsTheHandler) {
  GtkWidget *dialog = start("Title", "Text", G_CALLBACK(handle_response));

  gtk_button_clicked(GTK_BUTTON(descendants(dialog, GTK_TYPE_BUTTON).front()));

  EXPECT_EQ(g_handled, GTK_RESPONSE_CANCEL);
}

TEST_F(ProgressBar, LeavesItselfToTheHandler) {
  GtkWidget *dialog = start("Title", "Text", G_CALLBACK(handle_response));

  gtk_dialog_response(GTK_DIALOG(dialog), GTK_RESPONSE_CANCEL);

  EXPECT_TRUE(pb_dialog_check_exist());
}

TEST_F(ProgressBar, GoesOnItsButtonWithoutAHandler) {
  GtkWidget *dialog = start("Title", "Text");
  const support::ExpectFinalized watch(dialog);

  gtk_button_clicked(GTK_BUTTON(descendants(dialog, GTK_TYPE_BUTTON).front()));

  EXPECT_FALSE(pb_dialog_check_exist());
}

TEST_F(ProgressBar, IsShown) {
  GtkWidget *dialog = start("Title", "Text");

  EXPECT_TRUE(gtk_widget_get_visible(dialog));
}

TEST_F(ProgressBar, IsCentredOnTheScreen) {
  GtkWidget *dialog = start("Title", "Text");
  settle();

  gint x = 0;
  gint y = 0;
  gint width = 0;
  gint height = 0;
  gtk_window_get_size(GTK_WINDOW(dialog), &width, &height);
  gdk_window_get_origin(gtk_widget_get_window(dialog), &x, &y);
  EXPECT_EQ(x, (gdk_screen_width() - width) >> 1);
  EXPECT_EQ(y, (gdk_screen_height() - height) >> 1);
}

TEST_F(ProgressBar, LogsItsEnd) {
  open_resources();

  pb_util_start_progress_bar("Title", "Text", nullptr);

  EXPECT_THAT(
      platform().log,
      ElementsAre(Logged(PB_LOG_INFO, "[pb_util_start_progress_bar]Dialog Creation exit\n\n")));
}

TEST_F(ProgressBar, IsForgottenWhenSomebodyDestroysIt) {
  gtk_widget_destroy(start("Title", "Text"));

  EXPECT_FALSE(pb_dialog_check_exist());
}

using ProgressBarUpdate = ProgressBar;

TEST_F(ProgressBarUpdate, ChangesTheText) {
  GtkWidget *dialog = start("Title", "Text");

  pb_util_update_progress_bar("Done");

  EXPECT_EQ(text_of(dialog), "Done");
}

TEST_F(ProgressBarUpdate, RelabelsTheButton) {
  GtkWidget *dialog = start("Title", "Text", G_CALLBACK(handle_response));
  ASSERT_EQ(button_label(dialog), "system string 10066");

  pb_util_update_progress_bar("Done");

  EXPECT_EQ(button_label(dialog), "string 69");
}

TEST_F(ProgressBarUpdate, LeavesTheTextForNull) {
  GtkWidget *dialog = start("Title", "Text");

  pb_util_update_progress_bar(nullptr);

  EXPECT_EQ(text_of(dialog), "Text");
}

TEST_F(ProgressBarUpdate, DoesNothingWithoutADialog) {
  pb_util_update_progress_bar("Done");

  EXPECT_THAT(platform().calls, IsEmpty());
}

TEST_F(ProgressBarUpdate, DoesNothingAfterTheDialog) {
  pb_util_start_progress_bar("Title", "Text", nullptr);
  pb_dialog_destroy();
  fake::take_calls();

  pb_util_update_progress_bar("Done");

  EXPECT_THAT(platform().calls, IsEmpty());
}

TEST(NotiPublish, PublishesTheEvent) {
  int data = 0;
  platform().EvtSysEventPublish = [&data](gint reserved, gint event, gpointer what) {
    EXPECT_EQ(reserved, 0);
    EXPECT_EQ(event, 4711);
    EXPECT_EQ(what, &data);
    return 0;
  };

  EXPECT_TRUE(pb_util_noti_publish(4711, &data));

  EXPECT_THAT(platform().log, IsEmpty());
}

TEST(NotiPublish, LogsAFailureWithEventAndError) {
  platform().EvtSysEventPublish = [](gint, gint, gpointer) { return -9; };

  EXPECT_FALSE(pb_util_noti_publish(4711, nullptr));

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR,
                                 "[pb_util_noti_publish]EvtSysEventPublish failed : "
                                 "event = 4711, error = -9\n")));
}

TEST(NotiPublish, FailsForAPositiveResult) {
  platform().EvtSysEventPublish = [](gint, gint, gpointer) { return 1; };

  EXPECT_FALSE(pb_util_noti_publish(4711, nullptr));
}

}  // namespace

#include "pb-debug.h"
#include "pb-util-settings.h"
#include "util/pb-util/dialog-fixture.hpp"

namespace {

using fake::calls_of;
using fake::Logged;
using fake::platform;
using pb_test::DialogTest;
using testing::ElementsAre;
using testing::IsEmpty;

class DeleteDialog : public DialogTest {
 protected:
  /// The check box of a dialog that runs, null when there is none.
  static GtkWidget *box_of(GtkDialog *dialog) {
    const auto boxes = descendants(GTK_WIDGET(dialog), GTK_TYPE_CHECK_BUTTON);
    return boxes.empty() ? nullptr : boxes.front();
  }

  /// Shows the dialog and ticks or unticks the box as often as it says.
  static void tick(int times) {
    mb_util_set_vesk_login_present(1);
    platform().gtk_dialog_run = [times](GtkDialog *dialog) {
      for (int i = 0; i < times; ++i) gtk_button_clicked(GTK_BUTTON(box_of(dialog)));
      return gint{GTK_RESPONSE_YES};
    };
    pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 0, nullptr);
  }
};

TEST_F(DeleteDialog, CallsThePlatformInOrder) {
  open_resources();
  mb_util_set_vesk_login_present(0);

  pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 2000, nullptr);

  EXPECT_THAT(
      platform().calls,
      ElementsAre("gtk_style_dialog_new(1, NULL, 0)",
                  "gtk_style_dialog_set_title(GtkStyleDialog, \"Delete\")",
                  "gtk_style_dialog_set_content_area_text(GtkStyleDialog, \"Delete it?\")",
                  "rsrc_get_system_string(10105)",
                  "gtk_style_dialog_add_button(GtkStyleDialog, \"system string 10105\", -8)",
                  "rsrc_get_system_string(10066)",
                  "gtk_style_dialog_add_button(GtkStyleDialog, \"system string 10066\", -9)",
                  "gtk_style_dialog_set_destroy_timeout(GtkStyleDialog, 2000)",
                  "gtk_dialog_run(GtkStyleDialog)"));
}

TEST_F(DeleteDialog, StoresTheAnswer) {
  answer(GTK_RESPONSE_NO);
  gint response = 0;

  EXPECT_TRUE(pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 0, &response));

  EXPECT_EQ(response, -9);
}

TEST_F(DeleteDialog, IsTrueWithoutAnAnswer) {
  answer(GTK_RESPONSE_NONE);
  gint response = 0;

  EXPECT_TRUE(pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 0, &response));

  EXPECT_EQ(response, -1);
}

TEST_F(DeleteDialog, IsTrueWhenThePlatformMakesNoDialog) {
  refuse_dialogs();
  gint response = 0;

  EXPECT_TRUE(pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 0, &response));

  EXPECT_EQ(response, -1);
}

TEST_F(DeleteDialog, IsDestroyedAndNotCurrentAfterwards) {
  pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 0, nullptr);

  EXPECT_FALSE(pb_dialog_check_exist());
}

TEST_F(DeleteDialog, HasNoBoxWhileNobodyIsSignedIn) {
  for (const int login : {-1, 0, 2}) {
    mb_util_set_vesk_login_present(login);
    platform().gtk_dialog_run = [](GtkDialog *dialog) {
      EXPECT_EQ(box_of(dialog), nullptr);
      return gint{GTK_RESPONSE_YES};
    };

    pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 0, nullptr);
  }
}

TEST_F(DeleteDialog, HasABoxWhileAUserIsSignedIn) {
  mb_util_set_vesk_login_present(1);
  std::string label;
  platform().gtk_dialog_run = [&label](GtkDialog *dialog) {
    GtkWidget *box = box_of(dialog);
    EXPECT_TRUE(GTK_IS_HBOX(gtk_widget_get_parent(box)));
    EXPECT_TRUE(gtk_widget_get_visible(box));
    EXPECT_FALSE(gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(box)));
    label = gtk_button_get_label(GTK_BUTTON(box));
    return gint{GTK_RESPONSE_YES};
  };

  pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 0, nullptr);

  EXPECT_EQ(label, "string 198");
}

TEST_F(DeleteDialog, LabelsTheBoxWithItsNumberWithoutAText) {
  mb_util_set_vesk_login_present(1);
  platform().rsrc_get_string = [](gint, gint) -> const gchar * { return nullptr; };
  std::string label;
  platform().gtk_dialog_run = [&label](GtkDialog *dialog) {
    label = gtk_button_get_label(GTK_BUTTON(box_of(dialog)));
    return gint{GTK_RESPONSE_YES};
  };

  pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 0, nullptr);

  EXPECT_EQ(label, "1198");
}

TEST_F(DeleteDialog, PutsTheBoxIntoTheContentArea) {
  mb_util_set_vesk_login_present(1);
  platform().gtk_dialog_run = [](GtkDialog *dialog) {
    GtkWidget *content = gtk_style_dialog_get_content_area(GTK_STYLE_DIALOG(dialog));
    EXPECT_TRUE(gtk_widget_is_ancestor(box_of(dialog), content));
    return gint{GTK_RESPONSE_YES};
  };

  pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 0, nullptr);
}

TEST_F(DeleteDialog, WrapsTheBoxesLabel) {
  mb_util_set_vesk_login_present(1);
  platform().gtk_dialog_run = [](GtkDialog *dialog) {
    auto *label = GTK_LABEL(gtk_bin_get_child(GTK_BIN(box_of(dialog))));
    EXPECT_TRUE(gtk_label_get_line_wrap(label));
    EXPECT_EQ(gtk_label_get_line_wrap_mode(label), PANGO_WRAP_WORD_CHAR);
    return gint{GTK_RESPONSE_YES};
  };

  pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 0, nullptr);
}

TEST_F(DeleteDialog, SetsTheBoxesFont) {
  mb_util_set_vesk_login_present(1);
  std::string font;
  platform().gtk_dialog_run = [&font](GtkDialog *dialog) {
    GtkWidget *label = gtk_bin_get_child(GTK_BIN(box_of(dialog)));
    gchar *text = pango_font_description_to_string(gtk_widget_get_modifier_style(label)->font_desc);
    font = text;
    g_free(text);
    return gint{GTK_RESPONSE_YES};
  };

  pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 0, nullptr);

  EXPECT_EQ(font, "Quillon Rg Bold 18");
}

using DeleteBox = DeleteDialog;

TEST_F(DeleteBox, IsNotTickedAtFirst) { EXPECT_FALSE(pb_is_set_delete_dialog_check_box()); }

TEST_F(DeleteBox, IsRememberedWhenTicked) {
  tick(1);

  EXPECT_EQ(pb_is_set_delete_dialog_check_box(), 1);
}

TEST_F(DeleteBox, IsRememberedWhenUntickedAgain) {
  tick(2);

  EXPECT_EQ(pb_is_set_delete_dialog_check_box(), 0);
}

TEST_F(DeleteBox, IsForgottenByTheNextDeleteDialog) {
  tick(1);

  tick(0);

  EXPECT_FALSE(pb_is_set_delete_dialog_check_box());
}

TEST_F(DeleteBox, IsForgottenByTheNextDialog) {
  tick(1);
  answer(GTK_RESPONSE_OK);

  pb_util_show_dialog(1, "Title", "Text", 1, 0, nullptr);

  EXPECT_FALSE(pb_is_set_delete_dialog_check_box());
}

TEST_F(DeleteBox, IsLoggedWhenRead) {
  tick(1);
  fake::take_log();

  pb_is_set_delete_dialog_check_box();

  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_INFO,
                                                 "[pb_is_set_delete_dialog_check_box]"
                                                 "pb_is_set_delete_dialog_check_box "
                                                 "check_box_active = 1\n")));
}

using ArchiveDialog = DialogTest;

TEST_F(ArchiveDialog, AsksWithTheDeleteButtons) {
  pb_menu_delete_archive_show_dialog(1, "Delete", "Keep it on the web?", 0, nullptr);

  EXPECT_THAT(calls_of("gtk_style_dialog_add_button"),
              ElementsAre("gtk_style_dialog_add_button(GtkStyleDialog, \"system string 10105\", "
                          "-8)",
                          "gtk_style_dialog_add_button(GtkStyleDialog, \"system string 10066\", "
                          "-9)"));
}

TEST_F(ArchiveDialog, LiesOverTheMainWindow) {
  create_window();

  pb_menu_delete_archive_show_dialog(1, "Delete", "Text", 0, nullptr);

  EXPECT_THAT(calls_of("gtk_style_dialog_new"),
              ElementsAre("gtk_style_dialog_new(1, GtkMainWindow, 3)"));
}

TEST_F(ArchiveDialog, ForgetsTheBoxOfADialogBefore) {
  mb_util_set_vesk_login_present(1);
  platform().gtk_dialog_run = [](GtkDialog *dialog) {
    const auto boxes = descendants(GTK_WIDGET(dialog), GTK_TYPE_CHECK_BUTTON);
    if (!boxes.empty()) gtk_button_clicked(GTK_BUTTON(boxes.front()));
    return gint{GTK_RESPONSE_YES};
  };
  pb_show_delete_local_server_dialog(1, "Delete", "Delete it?", 0, nullptr);
  ASSERT_TRUE(pb_is_set_delete_dialog_check_box());

  pb_menu_delete_archive_show_dialog(1, "Delete", "Text", 0, nullptr);

  EXPECT_FALSE(pb_is_set_delete_dialog_check_box());
}

TEST_F(ArchiveDialog, IsTrueWhenTheUserAgrees) {
  answer(GTK_RESPONSE_YES);
  gint response = 0;

  EXPECT_TRUE(pb_menu_delete_archive_show_dialog(1, "Delete", "Text", 0, &response));

  EXPECT_EQ(response, GTK_RESPONSE_YES);
}

TEST_F(ArchiveDialog, IsFalseForEveryOtherAnswer) {
  for (const gint response : {GTK_RESPONSE_NO, GTK_RESPONSE_NONE, GTK_RESPONSE_DELETE_EVENT}) {
    answer(response);
    gint stored = 0;

    EXPECT_FALSE(pb_menu_delete_archive_show_dialog(1, "Delete", "Text", 0, &stored));

    EXPECT_EQ(stored, response);
  }
}

TEST_F(ArchiveDialog, HasNoBox) {
  mb_util_set_vesk_login_present(1);
  platform().gtk_dialog_run = [](GtkDialog *dialog) {
    EXPECT_THAT(descendants(GTK_WIDGET(dialog), GTK_TYPE_CHECK_BUTTON), IsEmpty());
    EXPECT_TRUE(pb_dialog_check_exist());
    return gint{GTK_RESPONSE_YES};
  };

  pb_menu_delete_archive_show_dialog(1, "Delete", "Text", 0, nullptr);
}

}  // namespace

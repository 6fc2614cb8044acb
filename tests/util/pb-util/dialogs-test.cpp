#include <ostream>

#include "pb-debug.h"
#include "util/pb-util/dialog-fixture.hpp"

namespace {

using fake::calls_of;
using fake::Logged;
using fake::platform;
using pb_test::DialogTest;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::StrEq;

using ShowDialog = DialogTest;

TEST_F(ShowDialog, CallsThePlatformInOrder) {
  open_resources();
  answer(GTK_RESPONSE_YES);

  pb_util_show_dialog(2, "Title", "Text", 2, 1500, nullptr);

  EXPECT_THAT(
      platform().calls,
      ElementsAre("gtk_style_dialog_new(2, NULL, 0)",
                  "gtk_style_dialog_set_title(GtkStyleDialog, \"Title\")",
                  "gtk_style_dialog_set_content_area_text(GtkStyleDialog, \"Text\")",
                  "rsrc_get_system_string(10518)",
                  "gtk_style_dialog_add_button(GtkStyleDialog, \"system string 10518\", -8)",
                  "rsrc_get_system_string(10289)",
                  "gtk_style_dialog_add_button(GtkStyleDialog, \"system string 10289\", -9)",
                  "gtk_style_dialog_set_destroy_timeout(GtkStyleDialog, 1500)",
                  "gtk_dialog_run(GtkStyleDialog)"));
}

TEST_F(ShowDialog, LeavesOutWhatIsNotGiven) {
  pb_util_show_dialog(1, nullptr, nullptr, 0, 0, nullptr);

  EXPECT_THAT(calls_of("gtk_style_dialog_set_title"), IsEmpty());
  EXPECT_THAT(calls_of("gtk_style_dialog_set_content_area_text"), IsEmpty());
  EXPECT_THAT(calls_of("gtk_style_dialog_set_destroy_timeout"), IsEmpty());
}

TEST_F(ShowDialog, HasNoTimeOutForANegativeTime) {
  pb_util_show_dialog(1, nullptr, nullptr, 0, -5, nullptr);

  EXPECT_THAT(calls_of("gtk_style_dialog_set_destroy_timeout"), IsEmpty());
}

TEST_F(ShowDialog, StoresTheAnswer) {
  answer(GTK_RESPONSE_YES);
  gint response = 77;

  EXPECT_TRUE(pb_util_show_dialog(2, "Title", "Text", 2, 0, &response));

  EXPECT_EQ(response, -8);
}

TEST_F(ShowDialog, DoesWithoutAPlaceForTheAnswer) {
  answer(GTK_RESPONSE_NO);

  EXPECT_TRUE(pb_util_show_dialog(2, "Title", "Text", 2, 0, nullptr));
}

TEST_F(ShowDialog, TakesAClosedWindowForAnAnswer) {
  answer(GTK_RESPONSE_DELETE_EVENT);
  gint response = 77;

  EXPECT_TRUE(pb_util_show_dialog(2, "Title", "Text", 2, 0, &response));

  EXPECT_EQ(response, -4);
}

TEST_F(ShowDialog, IsFalseWithoutAnAnswer) {
  answer(GTK_RESPONSE_NONE);
  gint response = 77;

  EXPECT_FALSE(pb_util_show_dialog(2, "Title", "Text", 0, 2000, &response));

  EXPECT_EQ(response, -1);
}

TEST_F(ShowDialog, LogsAMissingAnswer) {
  answer(GTK_RESPONSE_NONE);

  pb_util_show_dialog(2, "Title", "Text", 0, 2000, nullptr);

  EXPECT_THAT(platform().log, Contains(Logged(PB_LOG_WARNING,
                                              "[pb_util_show_dialog]gtk_dialog_run : "
                                              "programmatically hidden or destroyed\n")));
}

TEST_F(ShowDialog, IsQuietAboutAnAnswer) {
  open_resources();
  answer(GTK_RESPONSE_OK);

  pb_util_show_dialog(2, "Title", "Text", 1, 0, nullptr);

  EXPECT_THAT(platform().log, IsEmpty());
}

TEST_F(ShowDialog, DestroysTheDialog) {
  std::vector<GtkWidget *> &dialogs = watch_dialogs();
  bool finalized = false;
  platform().gtk_dialog_run = [&](GtkDialog *dialog) {
    g_object_weak_ref(
        G_OBJECT(dialog), [](gpointer flag, GObject *) { *static_cast<bool *>(flag) = true; },
        &finalized);
    return gint{GTK_RESPONSE_OK};
  };

  pb_util_show_dialog(2, "Title", "Text", 1, 0, nullptr);

  EXPECT_EQ(dialogs.size(), 1u);
  EXPECT_TRUE(finalized);
}

TEST_F(ShowDialog, IsCurrentWhileItRuns) {
  gboolean current = FALSE;
  platform().gtk_dialog_run = [&current](GtkDialog *) {
    current = pb_dialog_check_exist();
    return gint{GTK_RESPONSE_OK};
  };

  pb_util_show_dialog(2, "Title", "Text", 1, 0, nullptr);

  EXPECT_TRUE(current);
  EXPECT_FALSE(pb_dialog_check_exist());
}

TEST_F(ShowDialog, EndsAtItsTimeOut) {
  platform().gtk_dialog_run = [](GtkDialog *) {
    fake::advance_clock(1999);
    EXPECT_TRUE(pb_dialog_check_exist());
    fake::advance_clock(1);
    EXPECT_FALSE(pb_dialog_check_exist());
    return gint{GTK_RESPONSE_NONE};
  };
  gint response = 77;

  EXPECT_FALSE(pb_util_show_dialog(2, "Title", "Text", 0, 2000, &response));

  EXPECT_EQ(response, -1);
}

TEST_F(ShowDialog, StandsBeingTakenDownMeanwhile) {
  platform().gtk_dialog_run = [](GtkDialog *) {
    pb_dialog_destroy();
    return gint{GTK_RESPONSE_NONE};
  };

  EXPECT_FALSE(pb_util_show_dialog(2, "Title", "Text", 2, 0, nullptr));

  EXPECT_FALSE(pb_dialog_check_exist());
}

TEST_F(ShowDialog, StandsASecondDialogMeanwhile) {
  std::vector<GtkWidget *> &dialogs = watch_dialogs();
  platform().gtk_dialog_run = [&dialogs](GtkDialog *dialog) {
    if (dialogs.size() == 2) return gint{GTK_RESPONSE_NO};
    gint nested = 0;
    pb_util_show_dialog(1, "Second", nullptr, 2, 0, &nested);
    EXPECT_EQ(nested, GTK_RESPONSE_NO);
    EXPECT_FALSE(pb_dialog_check_exist());
    EXPECT_TRUE(GTK_IS_STYLE_DIALOG(dialog));
    return gint{GTK_RESPONSE_YES};
  };
  gint response = 0;

  EXPECT_TRUE(pb_util_show_dialog(2, "First", "Text", 2, 0, &response));

  EXPECT_EQ(response, GTK_RESPONSE_YES);
}

TEST_F(ShowDialog, LeavesADialogThatCameMeanwhileCurrent) {
  platform().gtk_dialog_run = [](GtkDialog *) {
    mb_util_create_waiting_popup("Sending");
    return gint{GTK_RESPONSE_YES};
  };

  pb_util_show_dialog(2, "First", "Text", 2, 0, nullptr);

  EXPECT_TRUE(pb_dialog_check_exist());
}

TEST_F(ShowDialog, IsFalseWhenThePlatformMakesNoDialog) {
  refuse_dialogs();
  gint response = 77;

  EXPECT_FALSE(pb_util_show_dialog(2, "Title", "Text", 2, 2000, &response));

  EXPECT_EQ(response, -1);
}

TEST_F(ShowDialog, ShowsValidTextForBytes) {
  pb_util_show_dialog(1, "\xff", "IMG\xfe.jpg", 0, 0, nullptr);

  EXPECT_THAT(calls_of("gtk_style_dialog_set_content_area_text"),
              ElementsAre("gtk_style_dialog_set_content_area_text(GtkStyleDialog, "
                          "\"IMG\xef\xbf\xbd.jpg\")"));
}

TEST_F(ShowDialog, GivesTheFocusToTheButtonThatChangesNothing) {
  GtkWidget *focus = nullptr;
  std::string label;
  platform().gtk_dialog_run = [&](GtkDialog *dialog) {
    focus = gtk_window_get_focus(GTK_WINDOW(dialog));
    label = gtk_button_get_label(GTK_BUTTON(focus));
    return gint{GTK_RESPONSE_NO};
  };

  pb_util_show_dialog(2, "Title", "Text", 3, 0, nullptr);

  EXPECT_EQ(label, "system string 10066");
}

TEST_F(ShowDialog, LabelsItsButtonsWithClosedResources) {
  pb_util_show_dialog(2, "Title", "Text", 1, 0, nullptr);

  EXPECT_THAT(calls_of("gtk_style_dialog_add_button"),
              ElementsAre("gtk_style_dialog_add_button(GtkStyleDialog, \"system string 10307\", "
                          "-5)"));
}

TEST_F(ShowDialog, ClosesTheResourcesThatItOpened) {
  pb_util_show_dialog(2, "Title", "Text", 1, 0, nullptr);

  EXPECT_EQ(pb_get_res_string(1000), nullptr);
}

TEST_F(ShowDialog, LeavesOpenResourcesOpen) {
  open_resources();

  pb_util_show_dialog(2, "Title", "Text", 1, 0, nullptr);

  EXPECT_THAT(pb_get_res_string(1000), StrEq("string 0"));
}

struct Buttons {
  gint set;
  std::vector<std::string> labels_and_responses;
};

void PrintTo(const Buttons &buttons, std::ostream *out) { *out << "set " << buttons.set; }

class DialogButtons : public DialogTest, public testing::WithParamInterface<Buttons> {};

TEST_P(DialogButtons, FollowTheTable) {
  open_resources();

  pb_util_show_dialog(2, "Title", "Text", GetParam().set, 0, nullptr);

  std::vector<std::string> wanted;
  for (const std::string &button : GetParam().labels_and_responses) {
    wanted.push_back("gtk_style_dialog_add_button(GtkStyleDialog, \"system string " + button + ")");
  }
  EXPECT_THAT(calls_of("gtk_style_dialog_add_button"), ElementsAreArray(wanted));
}

INSTANTIATE_TEST_SUITE_P(Table, DialogButtons,
                         testing::Values(Buttons{1, {"10307\", -5"}},
                                         Buttons{2, {"10518\", -8", "10289\", -9"}},
                                         Buttons{3, {"10105\", -8", "10066\", -9"}},
                                         Buttons{4, {"10307\", -8", "10066\", -9"}}, Buttons{0, {}},
                                         Buttons{5, {}}, Buttons{-1, {}}),
                         [](const auto &row) { return "Row" + std::to_string(row.index); });

using DialogDestroy = DialogTest;

TEST_F(DialogDestroy, IsTrueWithoutADialog) {
  EXPECT_TRUE(pb_dialog_destroy());
  EXPECT_THAT(platform().log, IsEmpty());
}

TEST_F(DialogDestroy, TakesTheCurrentDialogDown) {
  pb_util_start_progress_bar("Title", "Text", nullptr);

  EXPECT_TRUE(pb_dialog_destroy());

  EXPECT_FALSE(pb_dialog_check_exist());
}

TEST_F(DialogDestroy, CanBeCalledTwice) {
  pb_util_start_progress_bar("Title", "Text", nullptr);
  pb_dialog_destroy();

  EXPECT_TRUE(pb_dialog_destroy());
}

TEST_F(DialogDestroy, RemovesThePendingTimeOut) {
  mb_show_popup(nullptr, "Sent");
  ASSERT_EQ(fake::pending_timeouts().size(), 1u);

  pb_dialog_destroy();

  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
}

using ButtonLabel = DialogTest;

TEST_F(ButtonLabel, IsTheButtonsText) {
  GtkWidget *button = gtk_button_new_with_label("Cancel");
  g_object_ref_sink(button);

  EXPECT_THAT(__pb_util_get_button_label(button), StrEq("Cancel"));

  g_object_unref(button);
}

TEST_F(ButtonLabel, IsTheTextOfALabelInside) {
  GtkWidget *button = gtk_button_new();
  g_object_ref_sink(button);
  gtk_container_add(GTK_CONTAINER(button), gtk_label_new("Inside"));

  EXPECT_THAT(__pb_util_get_button_label(button), StrEq("Inside"));

  g_object_unref(button);
}

TEST_F(ButtonLabel, IsNullForAPicture) {
  GtkWidget *button = gtk_button_new();
  g_object_ref_sink(button);
  gtk_container_add(GTK_CONTAINER(button), gtk_image_new());

  EXPECT_EQ(__pb_util_get_button_label(button), nullptr);

  g_object_unref(button);
}

TEST_F(ButtonLabel, IsNullForWhatIsNoButton) {
  EXPECT_EQ(__pb_util_get_button_label(nullptr), nullptr);
  EXPECT_EQ(__pb_util_get_button_label(create_window()), nullptr);
}

}  // namespace

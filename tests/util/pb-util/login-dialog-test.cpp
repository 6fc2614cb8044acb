#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "util/pb-util/dialog-fixture.hpp"

namespace {

using fake::calls_of;
using fake::Logged;
using fake::platform;
using pb_test::DialogTest;
using testing::ElementsAre;
using testing::StrEq;

class LoginDialog : public DialogTest {
 protected:
  static GtkEntry *entry(GtkDialog *dialog, std::size_t index) {
    // A table lists its last child first.
    const auto entries = descendants(GTK_WIDGET(dialog), GTK_TYPE_ENTRY);
    return GTK_ENTRY(entries.at(entries.size() - 1 - index));
  }

  static void fill(GtkDialog *dialog, const char *user, const char *password) {
    gtk_entry_set_text(entry(dialog, 0), user);
    gtk_entry_set_text(entry(dialog, 1), password);
  }

  static bool can_sign_in(GtkDialog *dialog) {
    for (GtkWidget *button : descendants(GTK_WIDGET(dialog), GTK_TYPE_BUTTON)) {
      if (gtk_dialog_get_response_for_widget(dialog, button) == GTK_RESPONSE_OK) {
        return gtk_widget_get_sensitive(button) != FALSE;
      }
    }
    return false;
  }

  /// Fills the dialog in and answers it as the buttons do.
  static void sign_in(const char *user, const char *password, gint response) {
    platform().gtk_dialog_run = [=](GtkDialog *dialog) {
      fill(dialog, user, password);
      gtk_dialog_response(dialog, response);
      return response;
    };
  }

  gchar *user_ = nullptr;
  gchar *password_ = nullptr;
};

TEST_F(LoginDialog, GivesNameAndPassword) {
  sign_in("me", "secret", GTK_RESPONSE_OK);

  EXPECT_TRUE(pb_util_create_youtube_login_dialog(&user_, &password_));

  EXPECT_THAT(user_, StrEq("me"));
  EXPECT_THAT(password_, StrEq("secret"));
  g_free(user_);
  g_free(password_);
}

TEST_F(LoginDialog, GivesNothingWhenTheUserGivesUp) {
  sign_in("me", "secret", GTK_RESPONSE_CANCEL);
  user_ = password_ = g_strdup("before");
  const pb::StringPtr owner(user_);

  EXPECT_FALSE(pb_util_create_youtube_login_dialog(&user_, &password_));

  EXPECT_EQ(user_, nullptr);
  EXPECT_EQ(password_, nullptr);
}

TEST_F(LoginDialog, GivesNothingWhenItIsClosed) {
  sign_in("me", "secret", GTK_RESPONSE_DELETE_EVENT);

  EXPECT_FALSE(pb_util_create_youtube_login_dialog(&user_, &password_));
}

TEST_F(LoginDialog, GivesNothingWithoutAPassword) {
  sign_in("me", "", GTK_RESPONSE_OK);

  EXPECT_FALSE(pb_util_create_youtube_login_dialog(&user_, &password_));
}

TEST_F(LoginDialog, DoesWithoutPlaces) {
  sign_in("me", "secret", GTK_RESPONSE_OK);

  EXPECT_TRUE(pb_util_create_youtube_login_dialog(nullptr, nullptr));
}

TEST_F(LoginDialog, SignsInWithBothOnly) {
  platform().gtk_dialog_run = [](GtkDialog *dialog) {
    EXPECT_FALSE(can_sign_in(dialog));
    fill(dialog, "me", "");
    EXPECT_FALSE(can_sign_in(dialog));
    fill(dialog, "", "secret");
    EXPECT_FALSE(can_sign_in(dialog));
    fill(dialog, "me", "secret");
    EXPECT_TRUE(can_sign_in(dialog));
    return gint{GTK_RESPONSE_CANCEL};
  };

  pb_util_create_youtube_login_dialog(&user_, &password_);
}

TEST_F(LoginDialog, HidesThePassword) {
  platform().gtk_dialog_run = [](GtkDialog *dialog) {
    EXPECT_TRUE(gtk_entry_get_visibility(entry(dialog, 0)));
    EXPECT_FALSE(gtk_entry_get_visibility(entry(dialog, 1)));
    return gint{GTK_RESPONSE_CANCEL};
  };

  pb_util_create_youtube_login_dialog(&user_, &password_);
}

TEST_F(LoginDialog, BeginsInTheName) {
  platform().gtk_dialog_run = [](GtkDialog *dialog) {
    EXPECT_EQ(gtk_window_get_focus(GTK_WINDOW(dialog)), GTK_WIDGET(entry(dialog, 0)));
    return gint{GTK_RESPONSE_CANCEL};
  };

  pb_util_create_youtube_login_dialog(&user_, &password_);
}

TEST_F(LoginDialog, LiesOverTheMainWindowAndIsCurrent) {
  create_window();
  platform().gtk_dialog_run = [](GtkDialog *) {
    EXPECT_TRUE(pb_dialog_check_exist());
    return gint{GTK_RESPONSE_CANCEL};
  };

  pb_util_create_youtube_login_dialog(&user_, &password_);

  EXPECT_THAT(calls_of("gtk_style_dialog_new"),
              ElementsAre("gtk_style_dialog_new(2, GtkMainWindow, 3)"));
  EXPECT_FALSE(pb_dialog_check_exist());
}

TEST_F(LoginDialog, HasItsTextsFromTheResources) {
  pb_util_create_youtube_login_dialog(&user_, &password_);

  EXPECT_THAT(calls_of("gtk_style_dialog_set_title"),
              ElementsAre("gtk_style_dialog_set_title(GtkStyleDialog, \"string 217\")"));
  EXPECT_THAT(calls_of("gtk_style_dialog_add_button"),
              ElementsAre("gtk_style_dialog_add_button(GtkStyleDialog, \"system string 10307\", "
                          "-5)",
                          "gtk_style_dialog_add_button(GtkStyleDialog, \"system string 10066\", "
                          "-6)"));
}

TEST_F(LoginDialog, HasTextsWithoutResources) {
  platform().rsrc_get_string = [](gint, gint) -> const gchar * { return nullptr; };

  pb_util_create_youtube_login_dialog(&user_, &password_);

  EXPECT_THAT(calls_of("gtk_style_dialog_set_title"),
              ElementsAre("gtk_style_dialog_set_title(GtkStyleDialog, \"Sign in\")"));
}

TEST_F(LoginDialog, LogsADialogThatIsNotMade) {
  refuse_dialogs();

  EXPECT_FALSE(pb_util_create_youtube_login_dialog(&user_, &password_));

  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_WARNING,
                                                 "[pb_util_create_youtube_login_dialog]dialog "
                                                 "creation failed\n\n")));
}

}  // namespace

#include "pb-debug.h"
#include "pb-util-resource.h"
#include "pb-util-settings.h"
#include "support/fake-platform.hpp"

namespace {

using fake::calls_of;
using fake::Logged;
using fake::platform;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char *kPhone = "/PhoneStatus/Application/FileManager/PhoneInit";
constexpr const char *kCard = "/PhoneStatus/Application/FileManager/MmcInit";

class DataInitStatus : public support::DisplayTest {
 protected:
  static void support_card(gboolean supported) {
    platform().fexplorer_is_mmc_supported = [supported](gboolean *answer) {
      *answer = supported;
      return TRUE;
    };
  }
};

TEST_F(DataInitStatus, IsReadyWithoutACard) {
  platform().phone_status[kPhone] = 1;
  support_card(FALSE);

  EXPECT_TRUE(pb_check_data_init_status());

  EXPECT_THAT(calls_of("gtk_style_dialog_new"), IsEmpty());
}

TEST_F(DataInitStatus, IsReadyForAnUnreadablePhoneWithoutACard) {
  support_card(FALSE);

  EXPECT_TRUE(pb_check_data_init_status());
}

TEST_F(DataInitStatus, IsReadyWhenTheCardCannotBeAskedFor) {
  platform().phone_status[kPhone] = 1;
  platform().fexplorer_is_mmc_supported = [](gboolean *answer) {
    *answer = TRUE;
    return FALSE;
  };

  EXPECT_TRUE(pb_check_data_init_status());
}

TEST_F(DataInitStatus, IsReadyWithACardThatIsBuilt) {
  platform().phone_status[kPhone] = 1;
  platform().phone_status[kCard] = 1;
  support_card(TRUE);

  EXPECT_TRUE(pb_check_data_init_status());
}

TEST_F(DataInitStatus, IsNotReadyWithACardThatIsNotBuilt) {
  platform().phone_status[kPhone] = 1;
  platform().phone_status[kCard] = 0;
  support_card(TRUE);

  EXPECT_FALSE(pb_check_data_init_status());
}

TEST_F(DataInitStatus, TakesThePhonesValueForAnUnreadableCard) {
  platform().phone_status[kPhone] = 1;
  support_card(TRUE);

  EXPECT_TRUE(pb_check_data_init_status());
}

TEST_F(DataInitStatus, IsNotReadyWhenNothingCanBeRead) {
  support_card(TRUE);

  EXPECT_FALSE(pb_check_data_init_status());
}

TEST_F(DataInitStatus, DoesNotAskForTheCardWhileThePhoneIsBuilt) {
  platform().phone_status[kPhone] = 0;
  platform().phone_status[kCard] = 1;

  EXPECT_FALSE(pb_check_data_init_status());

  EXPECT_THAT(calls_of("fexplorer_is_mmc_supported"), IsEmpty());
}

TEST_F(DataInitStatus, LogsThatTheApplicationHasToQuit) {
  platform().phone_status[kPhone] = 0;

  pb_check_data_init_status();

  EXPECT_THAT(platform().log, Contains(Logged(PB_LOG_INFO,
                                              "[pb_check_data_init_status]DB initialization is "
                                              "doing, quit from the application.\n")));
}

TEST_F(DataInitStatus, ShowsANoticeForTwoSeconds) {
  platform().phone_status[kPhone] = 0;
  const std::string root = g_getenv("PHOTOBROWSER_ROOT");

  pb_check_data_init_status();

  const std::string package = root + "/usr/apps/com.velmora.photobrowser/res";
  EXPECT_THAT(
      platform().calls,
      ElementsAre(std::string("phonestatus_get(\"") + kPhone + "\")",
                  "rsrc_open_rbm(\"" + package + "/bitmap/pb-res-bitmap-wvga.rbm\")",
                  "rsrc_open_rsr(\"" + package + "/string/pb-res-string.rsr\")",
                  "rsrc_get_system_string(10035)", "rsrc_get_system_string(10473)",
                  "gtk_style_dialog_new(2, NULL, 0)",
                  "gtk_style_dialog_set_title(GtkStyleDialog, \"system string 10035\")",
                  "gtk_style_dialog_set_content_area_text(GtkStyleDialog, \"system string 10473\")",
                  "rsrc_get_system_string(10307)",
                  "gtk_style_dialog_add_button(GtkStyleDialog, \"system string 10307\", -5)",
                  "gtk_style_dialog_set_destroy_timeout(GtkStyleDialog, 2000)",
                  "gtk_dialog_run(GtkStyleDialog)", "rsrc_close_rbm(1)", "rsrc_close_rsr(2)",
                  "rsrc_free_strings()"));
}

TEST_F(DataInitStatus, ShowsTheNumbersOfItsTextsWithoutResources) {
  platform().phone_status[kPhone] = 0;
  platform().rsrc_open_rsr = [](const gchar *) { return -1; };

  EXPECT_FALSE(pb_check_data_init_status());

  EXPECT_THAT(calls_of("gtk_style_dialog_set_title"),
              ElementsAre("gtk_style_dialog_set_title(GtkStyleDialog, \"10035\")"));
  EXPECT_THAT(calls_of("gtk_style_dialog_set_content_area_text"),
              ElementsAre("gtk_style_dialog_set_content_area_text(GtkStyleDialog, \"10473\")"));
}

TEST_F(DataInitStatus, LeavesTheResourcesClosed) {
  platform().phone_status[kPhone] = 0;

  pb_check_data_init_status();

  EXPECT_EQ(pb_get_res_string(1000), nullptr);
}

}  // namespace

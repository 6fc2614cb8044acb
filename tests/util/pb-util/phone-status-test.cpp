#include "pb-debug.h"
#include "pb-util-settings.h"
#include "support/fake-platform.hpp"

namespace {

using fake::calls_of;
using fake::Logged;
using fake::platform;
using support::GlibTest;
using testing::Contains;
using testing::ElementsAre;

constexpr const char *kKey = "/PhoneStatus/Application/FileManager/PhoneInit";

TEST(GetPhoneStatus, StoresTheNumber) {
  platform().phone_status[kKey] = 31;
  gint value = -7;

  EXPECT_TRUE(mb_get_int_phone_status(kKey, &value));

  EXPECT_EQ(value, 31);
}

TEST(GetPhoneStatus, AsksWithAnIntegerValue) {
  GConfValueType type = GCONF_VALUE_INVALID;
  platform().phonestatus_get = [&type](const gchar *, GConfValue *value) {
    type = value->type;
    return TRUE;
  };
  gint value = 0;

  mb_get_int_phone_status(kKey, &value);

  EXPECT_EQ(type, GCONF_VALUE_INT);
}

TEST(GetPhoneStatus, LogsKeyAndNumber) {
  platform().phone_status[kKey] = 31;
  gint value = 0;

  mb_get_int_phone_status(kKey, &value);

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_INFO,
                                 "[mb_get_int_phone_status]"
                                 "/PhoneStatus/Application/FileManager/PhoneInit:31\n")));
}

TEST(GetPhoneStatus, LeavesTheNumberOnFailure) {
  gint value = -7;

  EXPECT_FALSE(mb_get_int_phone_status(kKey, &value));

  EXPECT_EQ(value, -7);
}

TEST(GetPhoneStatus, LogsAFailure) {
  gint value = 0;

  mb_get_int_phone_status(kKey, &value);

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_get_int_phone_status]failed\n")));
}

TEST(SetPhoneStatus, WritesTheNumber) {
  EXPECT_TRUE(mb_set_int_phone_status(kKey, 2));

  EXPECT_EQ(platform().phone_status[kKey], 2);
}

TEST(SetPhoneStatus, LogsKeyAndNumber) {
  mb_set_int_phone_status("/k", 2);

  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_INFO, "[mb_set_int_phone_status]/k:2\n")));
}

TEST(SetPhoneStatus, LogsAFailure) {
  platform().phonestatus_set = [](const gchar *, GConfValue *) { return FALSE; };

  EXPECT_FALSE(mb_set_int_phone_status(kKey, 2));

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_set_int_phone_status]failed\n")));
}

class PhoneStatusChecks : public GlibTest {};

TEST_F(PhoneStatusChecks, WarnAboutMissingArguments) {
  gint value = 0;

  EXPECT_FALSE(mb_get_int_phone_status(nullptr, &value));
  EXPECT_FALSE(mb_get_int_phone_status(kKey, nullptr));
  EXPECT_FALSE(mb_set_int_phone_status(nullptr, 1));

  EXPECT_THAT(
      take_glib_warnings(),
      ElementsAre("mb_get_int_phone_status: assertion 'key != NULL && value != NULL' failed",
                  "mb_get_int_phone_status: assertion 'key != NULL && value != NULL' failed",
                  "mb_set_int_phone_status: assertion 'key' failed"));
}

TEST(VeskLoginPresent, IsUnknownAtFirst) { EXPECT_EQ(mb_util_is_vesk_login_present(), -1); }

TEST(VeskLoginPresent, IsStored) {
  mb_util_set_vesk_login_present(1);

  EXPECT_EQ(mb_util_is_vesk_login_present(), 1);
}

TEST(VeskLoginPresent, IsLoggedWhenRead) {
  mb_util_is_vesk_login_present();

  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_INFO,
                                                 "[mb_util_is_vesk_login_present]\n"
                                                 " PRESENT -1\n\n")));
}

TEST(VeskLoginPresent, IsLoggedWhenStored) {
  mb_util_set_vesk_login_present(1);

  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_INFO,
                                                 "[mb_util_set_vesk_login_present]\n"
                                                 " PRESENT 1\n\n")));
}

TEST(SimIsPresent, IsTrueForACard) {
  platform().TelTapiSimGetCardType = [](gint *type) {
    *type = 2;
    return 0;
  };

  EXPECT_TRUE(mb_sim_is_present());

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_INFO, "[mb_sim_is_present] SIM CARD TYPE = 2 \n\n")));
}

TEST(SimIsPresent, IsTrueForACardOfTypeZero) {
  platform().TelTapiSimGetCardType = [](gint *type) {
    *type = 0;
    return 0;
  };

  EXPECT_TRUE(mb_sim_is_present());
}

TEST(SimIsPresent, IsFalseForAFailure) {
  platform().TelTapiSimGetCardType = [](gint *) { return -12; };

  EXPECT_FALSE(mb_sim_is_present());

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR,
                                 "[mb_sim_is_present] tapi_sim_get_card_type api failed : "
                                 "err_code(-12) \n\n")));
}

TEST(IsGalleryApp, IsTrueForTheGallerysId) {
  platform().app_get_current_id = [](gint *id) {
    *id = 54;
    return 0;
  };

  EXPECT_TRUE(mb_util_is_gallery_app());
}

TEST(IsGalleryApp, IsFalseForAnotherId) {
  platform().app_get_current_id = [](gint *id) {
    *id = 55;
    return 0;
  };

  EXPECT_FALSE(mb_util_is_gallery_app());
}

TEST(IsGalleryApp, LogsAFailure) {
  platform().app_get_current_id = [](gint *id) {
    *id = 54;
    return -3;
  };

  EXPECT_FALSE(mb_util_is_gallery_app());

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR,
                                 "[mb_util_is_gallery_app]app_get_current_id failed : -3\n")));
}

void answer_albums(int count) {
  platform().fm_svc_mb_get_albums_count = [count](gint *albums, gint, gint *) {
    *albums = count;
    return TRUE;
  };
}

void sign_in() {
  platform().vesk_svc_core_is_logout = [](guint32) { return 0; };
}

TEST(IsThereNoAlbum, AsksForTheCredentialAndThenTheCount) {
  sign_in();

  mb_util_check_is_there_no_album();

  EXPECT_THAT(platform().calls,
              ElementsAre("vesk_svc_core_is_logout(0)", "fm_svc_mb_get_albums_count(-1)"));
}

TEST(IsThereNoAlbum, AsksForLocalAlbumsWithoutACredential) {
  mb_util_check_is_there_no_album();

  EXPECT_THAT(calls_of("fm_svc_mb_get_albums_count"), ElementsAre("fm_svc_mb_get_albums_count(0)"));
}

TEST(IsThereNoAlbum, DoesNotCountTheServicesAlbum) {
  sign_in();
  answer_albums(1);

  EXPECT_TRUE(mb_util_check_is_there_no_album());
}

TEST(IsThereNoAlbum, CountsTheSecondAlbumWithACredential) {
  sign_in();
  answer_albums(2);

  EXPECT_FALSE(mb_util_check_is_there_no_album());
}

TEST(IsThereNoAlbum, IsTrueForNoAlbumWithoutACredential) {
  answer_albums(0);

  EXPECT_TRUE(mb_util_check_is_there_no_album());
}

TEST(IsThereNoAlbum, CountsTheFirstAlbumWithoutACredential) {
  answer_albums(1);

  EXPECT_FALSE(mb_util_check_is_there_no_album());
}

TEST(IsThereNoAlbum, IsTrueWhenTheCountFails) {
  platform().fm_svc_mb_get_albums_count = [](gint *albums, gint, gint *) {
    *albums = 9;
    return FALSE;
  };

  EXPECT_TRUE(mb_util_check_is_there_no_album());

  EXPECT_THAT(platform().log, Contains(Logged(PB_LOG_ERROR,
                                              "[mb_util_check_is_there_no_album]"
                                              "fm_svc_mb_get_albums_count failed\n")));
}

}  // namespace

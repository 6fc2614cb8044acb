#include "mb-vesk-api.h"
#include "pb-debug.h"
#include "pb-util-settings.h"
#include "support/fake-platform.hpp"

namespace {

using fake::Logged;
using fake::LoggedLike;
using fake::platform;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

void sign_in() {
  platform().vesk_svc_core_is_logout = [](guint32) { return 0; };
}

TEST(ServiceHandles, AreZeroBeforeARegistration) {
  EXPECT_EQ(veskMediaHandle, 0u);
  EXPECT_EQ(veskShareHandle, 0u);
}

TEST(ServiceHandles, AreTheApplicationsToWrite) {
  veskShareHandle = 0xfffffff0u;

  EXPECT_EQ(veskShareHandle, 0xfffffff0u);
}

TEST(CheckUserCredential, AsksTheServiceWithTheHandle) {
  mb_vesk_check_user_credential(0xfffffff0u);

  EXPECT_THAT(platform().calls, ElementsAre("vesk_svc_core_is_logout(4294967280)"));
}

TEST(CheckUserCredential, IsOneForASignedInUser) {
  sign_in();

  EXPECT_EQ(mb_vesk_check_user_credential(0), 1);
}

TEST(CheckUserCredential, SetsTheFlagForASignedInUser) {
  sign_in();

  mb_vesk_check_user_credential(0);

  EXPECT_EQ(mb_util_is_vesk_login_present(), 1);
}

TEST(CheckUserCredential, LogsASignedInUser) {
  sign_in();

  mb_vesk_check_user_credential(0);

  EXPECT_THAT(platform().log,
              Contains(Logged(PB_LOG_INFO, "[mb_vesk_check_user_credential]login\n")));
}

TEST(CheckUserCredential, IsZeroForASignedOutUser) {
  for (const int logout : {1, -1, 7}) {
    platform().vesk_svc_core_is_logout = [logout](guint32) { return logout; };

    EXPECT_EQ(mb_vesk_check_user_credential(0), 0) << logout;
  }
}

TEST(CheckUserCredential, ClearsTheFlagForASignedOutUser) {
  mb_util_set_vesk_login_present(1);

  mb_vesk_check_user_credential(0);

  EXPECT_EQ(mb_util_is_vesk_login_present(), 0);
}

TEST(CheckUserCredential, LogsASignedOutUser) {
  mb_vesk_check_user_credential(0);

  EXPECT_THAT(platform().log,
              Contains(Logged(PB_LOG_INFO, "[mb_vesk_check_user_credential]logout\n")));
  EXPECT_THAT(platform().log, Not(Contains(LoggedLike(PB_LOG_INFO, HasSubstr("]login\n")))));
}

TEST(CheckUserCredential, LogsItsEntry) {
  mb_vesk_check_user_credential(0);

  EXPECT_THAT(platform().log.at(0), Logged(PB_LOG_INFO, "[mb_vesk_check_user_credential]\n"));
}

TEST(CheckUserCredential, LogsAsItsModule) {
  mb_vesk_check_user_credential(0);

  EXPECT_EQ(platform().log.at(1).file, "common/mb-vesk-api");
}

gint own_callback(const gchar *, const VeskNotiField *, gint) { return 0; }

/// The lines of one function, in order.
std::vector<std::string> lines_of(const std::string &function) {
  std::vector<std::string> lines;
  for (const fake::LogLine &line : platform().log) {
    if (line.text.starts_with("[" + function + "]")) lines.push_back(line.text);
  }
  return lines;
}

/// A registration that the service refuses.
void refuse(gint code) {
  platform().vesk_svc_core_app_registration = [code](const gint *, gint, vesk_noti_cb, gint *,
                                                     guint32 *) { return code; };
}

TEST(ServiceHandles, AreReadAndLogged) {
  veskMediaHandle = 7;
  veskShareHandle = 9;

  EXPECT_EQ(mb_get_vesk_service_media_handle(), 7u);
  EXPECT_EQ(mb_get_vesk_service_share_handle(), 9u);

  EXPECT_THAT(
      platform().log,
      ElementsAre(
          Logged(PB_LOG_INFO, "[mb_get_vesk_service_media_handle] mb_get_vesk_service_handle  \n"),
          Logged(PB_LOG_INFO,
                 "[mb_get_vesk_service_share_handle] mb_get_vesk_service_handle  \n")));
}

TEST(ServiceHandles, ReadAsZeroBeforeARegistration) {
  EXPECT_EQ(mb_get_vesk_service_media_handle(), 0u);
}

TEST(Register, FillsTheOwnHandle) {
  sign_in();
  platform().vesk_svc_core_app_registration = [](const gint *, gint, vesk_noti_cb, gint *,
                                                 guint32 *handle) {
    *handle = 41;
    return 1;
  };

  mb_vesk_media_service_register(nullptr, nullptr);

  EXPECT_EQ(veskMediaHandle, 41u);
}

TEST(Register, NamesBothCategoriesInOrder) {
  sign_in();

  mb_vesk_media_service_register(nullptr, nullptr);

  EXPECT_THAT(platform().calls,
              ElementsAre("vesk_svc_core_is_logout(0)", "vesk_svc_core_app_registration({6, 10})"));
}

TEST(Register, RegistersTheLibrarysCallback) {
  sign_in();

  mb_vesk_media_service_register(nullptr, nullptr);

  EXPECT_THAT(platform().notification_callbacks, ElementsAre(mb_vesk_media_svc_notification_cb));
}

TEST(Register, HandsAnErrorWordOfMinusOne) {
  sign_in();
  gint seen = 0;
  platform().vesk_svc_core_app_registration = [&seen](const gint *, gint, vesk_noti_cb, gint *error,
                                                      guint32 *) {
    seen = *error;
    return 1;
  };

  mb_vesk_media_service_register(nullptr, nullptr);

  EXPECT_EQ(seen, -1);
}

TEST(Register, IgnoresTheHandleWithoutACallback) {
  sign_in();
  guint32 handle = 5;

  mb_vesk_media_service_register(&handle, nullptr);

  EXPECT_EQ(handle, 5u);
  EXPECT_EQ(veskMediaHandle, 1u);
}

TEST(Register, FillsTheCallersHandleForItsCallback) {
  sign_in();
  guint32 handle = 5;

  mb_vesk_media_service_register(&handle, own_callback);

  EXPECT_EQ(handle, 1u);
  EXPECT_EQ(veskMediaHandle, 0u);
  EXPECT_THAT(platform().notification_callbacks, ElementsAre(own_callback));
}

TEST(Register, HandsAMissingHandleOnForACallback) {
  sign_in();

  mb_vesk_media_service_register(nullptr, own_callback);

  EXPECT_THAT(platform().notification_callbacks, ElementsAre(own_callback));
}

TEST(Register, LogsEntryAndSuccess) {
  sign_in();

  mb_vesk_media_service_register(nullptr, nullptr);

  EXPECT_THAT(lines_of("mb_vesk_media_service_register"),
              ElementsAre("[mb_vesk_media_service_register] mb_vesk_media_service_register \n",
                          "[mb_vesk_media_service_register]  MEDIA_SHARE Noti Registration is "
                          "Successfull\n"));
}

TEST(Register, LogsSuccessBehindAFailure) {
  sign_in();
  refuse(-7);

  mb_vesk_media_service_register(nullptr, nullptr);

  EXPECT_THAT(
      lines_of("mb_vesk_media_service_register"),
      ElementsAre(
          "[mb_vesk_media_service_register] mb_vesk_media_service_register \n",
          "[mb_vesk_media_service_register]  MEDIA_SHARE Noti Registration FAILED Error:-7\n",
          "[mb_vesk_media_service_register]  MEDIA_SHARE Noti Registration is Successfull\n"));
}

TEST(Register, TakesOnlyOneForSuccess) {
  sign_in();
  refuse(2);

  mb_vesk_media_service_register(nullptr, nullptr);

  EXPECT_THAT(
      platform().log,
      Contains(Logged(
          PB_LOG_ERROR,
          "[mb_vesk_media_service_register]  MEDIA_SHARE Noti Registration FAILED Error:2\n")));
  EXPECT_EQ(veskMediaHandle, 0u);
}

TEST(Register, OverwritesTheHandleTheSecondTime) {
  sign_in();
  veskMediaHandle = 30;

  mb_vesk_media_service_register(nullptr, nullptr);

  EXPECT_EQ(veskMediaHandle, 1u);
}

TEST(Register, DoesNothingForASignedOutUser) {
  mb_vesk_media_service_register(nullptr, nullptr);

  EXPECT_THAT(platform().calls, ElementsAre("vesk_svc_core_is_logout(0)"));
  EXPECT_EQ(mb_util_is_vesk_login_present(), 0);
  EXPECT_THAT(
      lines_of("mb_vesk_media_service_register"),
      ElementsAre("[mb_vesk_media_service_register] mb_vesk_media_service_register \n",
                  "[mb_vesk_media_service_register]mb_vesk_check_user_credential : false  \n"));
}

TEST(DeregisterCallback, TakesTheOwnCallbackBackFromTheOwnHandle) {
  sign_in();
  mb_vesk_media_service_register(nullptr, nullptr);
  fake::take_calls();

  mb_vesk_media_service_deregister_callback(0, nullptr);

  EXPECT_THAT(platform().calls, ElementsAre("vesk_svc_core_is_logout(0)",
                                            "vesk_svc_core_deregister_noti_callback(1, {6, 10})"));
  EXPECT_THAT(platform().notification_callbacks, IsEmpty());
}

TEST(DeregisterCallback, TakesTheCallersCallbackBackFromItsHandle) {
  sign_in();
  vesk_noti_cb seen = nullptr;
  platform().vesk_svc_core_deregister_noti_callback = [&seen](guint32, const gint *, gint,
                                                              vesk_noti_cb callback) {
    seen = callback;
    return 1;
  };

  mb_vesk_media_service_deregister_callback(8, own_callback);

  EXPECT_THAT(platform().calls, ElementsAre("vesk_svc_core_is_logout(8)",
                                            "vesk_svc_core_deregister_noti_callback(8, {6, 10})"));
  EXPECT_EQ(seen, own_callback);
}

TEST(DeregisterCallback, LogsSuccessBehindAFailure) {
  sign_in();
  platform().vesk_svc_core_deregister_noti_callback = [](guint32, const gint *, gint,
                                                         vesk_noti_cb) { return 3; };

  mb_vesk_media_service_deregister_callback(0, nullptr);

  EXPECT_THAT(
      lines_of("mb_vesk_media_service_deregister_callback"),
      ElementsAre("[mb_vesk_media_service_deregister_callback] *********** "
                  "mb_vesk_media_service_deregister_callback ********** \n",
                  "[mb_vesk_media_service_deregister_callback]  Deregistration Callback Error:3\n",
                  "[mb_vesk_media_service_deregister_callback]  Deregistration Callback "
                  "Successfull\n"));
}

TEST(DeregisterCallback, DoesNothingForASignedOutUser) {
  mb_vesk_media_service_deregister_callback(4, nullptr);

  EXPECT_THAT(platform().calls, ElementsAre("vesk_svc_core_is_logout(4)"));
  EXPECT_THAT(platform().log, Contains(Logged(PB_LOG_WARNING,
                                              "[mb_vesk_media_service_deregister_callback]mb_vesk_"
                                              "check_user_credential : false  \n")));
}

TEST(DeregisterApp, EndsTheOwnRegistration) {
  sign_in();
  veskMediaHandle = 12;

  mb_vesk_deregister_app(0);

  EXPECT_THAT(platform().calls,
              ElementsAre("vesk_svc_core_is_logout(0)", "vesk_svc_core_deregister_app(12)"));
  EXPECT_EQ(veskMediaHandle, 12u);
}

TEST(DeregisterApp, EndsTheCallersRegistration) {
  sign_in();

  mb_vesk_deregister_app(6);

  EXPECT_THAT(platform().calls,
              ElementsAre("vesk_svc_core_is_logout(6)", "vesk_svc_core_deregister_app(6)"));
}

TEST(DeregisterApp, LogsSuccessBehindAFailure) {
  sign_in();
  platform().vesk_svc_core_deregister_app = [](guint32) { return 0; };

  mb_vesk_deregister_app(0);

  EXPECT_THAT(lines_of("mb_vesk_deregister_app"),
              ElementsAre("[mb_vesk_deregister_app] mb_vesk_deregister_app \n",
                          "[mb_vesk_deregister_app]  Deregistration APP Error:0\n",
                          "[mb_vesk_deregister_app]  Deregistration APP Successfull\n"));
}

TEST(DeregisterApp, DoesNothingForASignedOutUser) {
  mb_vesk_deregister_app(0);

  EXPECT_THAT(platform().calls, ElementsAre("vesk_svc_core_is_logout(0)"));
  EXPECT_THAT(lines_of("mb_vesk_deregister_app"),
              ElementsAre("[mb_vesk_deregister_app] mb_vesk_deregister_app \n",
                          "[mb_vesk_deregister_app]mb_vesk_check_user_credential : false  \n"));
}

TEST(RegisterMirror, RegistersTheLibrarysCallback) {
  sign_in();

  mb_fm_vesk_media_service_register();

  EXPECT_THAT(platform().calls,
              ElementsAre("vesk_svc_core_is_logout(0)", "fm_svc_vesk_registration()"));
  EXPECT_THAT(platform().notification_callbacks, ElementsAre(mb_vesk_media_svc_notification_cb));
  EXPECT_THAT(platform().log,
              Contains(Logged(PB_LOG_INFO,
                              "[mb_fm_vesk_media_service_register]fm_svc_vesk_registration "
                              "success\n\n")));
}

TEST(RegisterMirror, TakesAnyAnswerButZeroForSuccess) {
  sign_in();
  platform().fm_svc_vesk_registration = [](vesk_noti_cb, gint *) { return -3; };

  mb_fm_vesk_media_service_register();

  EXPECT_THAT(platform().log,
              Contains(Logged(PB_LOG_INFO,
                              "[mb_fm_vesk_media_service_register]fm_svc_vesk_registration "
                              "success\n\n")));
}

TEST(RegisterMirror, LogsAFailureInHexadecimal) {
  sign_in();
  platform().fm_svc_vesk_registration = [](vesk_noti_cb, gint *error) {
    EXPECT_EQ(*error, -1);
    *error = 0xab;
    return 0;
  };

  mb_fm_vesk_media_service_register();

  EXPECT_THAT(platform().log,
              Contains(Logged(PB_LOG_ERROR,
                              "[mb_fm_vesk_media_service_register]fm_svc_vesk_registration "
                              "failed ab\n\n")));
}

TEST(RegisterMirror, DoesNothingForASignedOutUser) {
  mb_fm_vesk_media_service_register();

  EXPECT_THAT(platform().calls, ElementsAre("vesk_svc_core_is_logout(0)"));
  EXPECT_THAT(platform().log, Contains(Logged(PB_LOG_WARNING,
                                              "[mb_fm_vesk_media_service_register]mb_vesk_check_"
                                              "user_credential : false  \n")));
}

TEST(DeregisterMirror, TakesTheCallbackBackWithoutAskingForTheUser) {
  mb_util_set_vesk_login_present(1);
  platform().notification_callbacks = {mb_vesk_media_svc_notification_cb};

  mb_fm_vesk_media_service_deregister();

  EXPECT_THAT(platform().calls, ElementsAre("fm_svc_vesk_unregistration_callback()"));
  EXPECT_THAT(platform().log, Contains(Logged(PB_LOG_INFO,
                                              "[mb_fm_vesk_media_service_deregister]fm_svc_vesk_"
                                              "unregistration success\n\n")));
}

TEST(DeregisterMirror, LogsAFailureInHexadecimal) {
  mb_util_set_vesk_login_present(1);

  mb_fm_vesk_media_service_deregister();

  EXPECT_THAT(platform().log, Contains(Logged(PB_LOG_ERROR,
                                              "[mb_fm_vesk_media_service_deregister]fm_svc_vesk_"
                                              "unregistration failed ffffffff\n\n")));
}

TEST(DeregisterMirror, DoesNothingWhenNobodyWasSignedIn) {
  mb_util_set_vesk_login_present(0);

  mb_fm_vesk_media_service_deregister();

  EXPECT_THAT(platform().calls, IsEmpty());
  EXPECT_THAT(platform().log, Contains(Logged(PB_LOG_WARNING,
                                              "[mb_fm_vesk_media_service_deregister]mb_util_is_"
                                              "vesk_login_present : false  \n")));
}

}  // namespace

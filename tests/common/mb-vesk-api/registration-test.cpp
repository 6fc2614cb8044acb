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
using testing::MatchesRegex;
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

TEST(CheckUserCredential, LogsItsEntryAsTheApplicationDoes) {
  mb_vesk_check_user_credential(0);

  EXPECT_THAT(platform().log.at(0),
              LoggedLike(PB_LOG_INFO,
                         MatchesRegex("\\[common/mb-vesk-api:mb_vesk_check_user_credential\\]  "
                                      "[0-9]+ \\[mb_vesk_check_user_credential\\]\n\n")));
}

TEST(CheckUserCredential, LogsAsItsModule) {
  mb_vesk_check_user_credential(0);

  EXPECT_EQ(platform().log.at(1).file, "common/mb-vesk-api");
}

}  // namespace

#include <gtest/gtest.h>

#include "online-content.h"
#include "online-core.h"
#include "online-download.h"
#include "online-share.h"

namespace {

gint unexpected_reply(const gchar * /*message*/, const VeskNotiField * /*fields*/, gint /*n*/) {
  ADD_FAILURE() << "nobody asked for anything";
  return 1;
}

void unexpected_end(const VeskDownloadResponse * /*response*/, gpointer /*user_data*/) {
  ADD_FAILURE() << "nothing was started";
}

constexpr gint kAccepted = 1;

}  // namespace

TEST(WithoutAnAccount, NobodyIsLoggedIn) { EXPECT_NE(vesk_svc_core_is_logout(0), 0); }

TEST(WithoutAnAccount, ARegistrationFailsAndGivesNoHandle) {
  const gint categories[] = {6, 10};
  gint error = -1;
  guint32 handle = 99;

  EXPECT_NE(vesk_svc_core_app_registration(categories, 2, unexpected_reply, &error, &handle),
            kAccepted);

  EXPECT_EQ(handle, 99U);
  EXPECT_NE(error, -1);
}

TEST(WithoutAnAccount, ARegistrationBearsMissingPlaces) {
  EXPECT_NE(vesk_svc_core_app_registration(nullptr, 0, nullptr, nullptr, nullptr), kAccepted);
}

TEST(WithoutAnAccount, ThereIsNothingToDeregister) {
  EXPECT_NE(vesk_svc_core_deregister_noti_callback(1, nullptr, 0, unexpected_reply), kAccepted);
  EXPECT_NE(vesk_svc_core_deregister_app(1), kAccepted);
}

TEST(WithoutAnAccount, TheMirrorIsNotBroughtUpToDate) {
  EXPECT_NE(vesk_svc_core_synchronize_details(0, VESK_SYNCHRONIZE_ALL), kAccepted);
}

TEST(WithoutAnAccount, AlbumRequestsFail) {
  EXPECT_NE(vesk_svc_content_album_get(0, 0, 0, 0, nullptr, nullptr), kAccepted);
  EXPECT_NE(vesk_svc_content_album_update(0, 0, nullptr, nullptr), kAccepted);
  EXPECT_NE(vesk_svc_content_album_add(0, 0, nullptr, nullptr), kAccepted);
  EXPECT_NE(vesk_svc_content_album_remove(0, 0, nullptr, nullptr), kAccepted);
  EXPECT_NE(vesk_svc_content_album_deletecontent(0, 0, nullptr, 1, nullptr), kAccepted);
  EXPECT_NE(vesk_svc_content_album_addcontent(0, 0, nullptr, 1, nullptr), kAccepted);
  EXPECT_NE(vesk_svc_content_album_publish(0, 0, nullptr, "g", nullptr), kAccepted);
}

TEST(WithoutAnAccount, FileRequestsFail) {
  EXPECT_NE(vesk_svc_content_file_get(0, 1, nullptr, nullptr), kAccepted);
  EXPECT_NE(vesk_svc_content_file_upload(0, 0, nullptr, VESK_UPLOAD_PLAIN), kAccepted);
  EXPECT_NE(vesk_svc_content_file_publish(0, 0, nullptr, "g", nullptr), kAccepted);
}

TEST(WithoutAnAccount, SharingFails) {
  EXPECT_NE(vesk_svc_share_shared_with(0, 1, nullptr), kAccepted);
  EXPECT_NE(vesk_svc_share_deny_group_to_access_entities(0, 1, nullptr), kAccepted);
  EXPECT_NE(vesk_svc_share_get_shared_album(0, nullptr, nullptr), kAccepted);
  EXPECT_NE(vesk_svc_share_get_shared_content(0, 0, nullptr, nullptr, nullptr), kAccepted);
}

TEST(WithoutAnAccount, CommentsFail) {
  EXPECT_NE(vesk_svc_comment_get_comments(0, 0, nullptr, 0, nullptr), kAccepted);
  EXPECT_NE(vesk_svc_comment_add_comments(0, 0, nullptr), kAccepted);
  EXPECT_NE(vesk_svc_comment_remove_comments(0, 0, nullptr, 1), kAccepted);
}

TEST(WithoutAnAccount, DownloadsDoNotStart) {
  EXPECT_NE(vesk_svc_download_util_init(0), kAccepted);
  EXPECT_NE(vesk_svc_download_util_download_url("http://127.0.0.1/x", 1, unexpected_end, nullptr,
                                                "/nonexistent/x"),
            kAccepted);
}

TEST(WithoutAnAccount, ThereIsNoDownloadToGiveUp) {
  EXPECT_NE(vesk_svc_download_util_abort_request(1), kAccepted);
}

TEST(RequestIds, AreAboveZeroAndNeverTheSame) {
  const gint first = vesk_svc_download_util_generate_request_id();
  const gint second = vesk_svc_download_util_generate_request_id();

  EXPECT_GT(first, 0);
  EXPECT_GT(second, first);
}

#include "common/mb-vesk-api/vesk-fixture.hpp"
#include "pb-util-dialog.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class Uploads : public vesk_test::VeskTest {
 protected:
  static void refuse() {
    fake::platform().vesk_svc_content_file_upload = [](guint32, gint, const gint64 *, gint) {
      return -3;
    };
  }
};
using UploadMultiple = Uploads;
using UploadFids = Uploads;
using ArchiveAndDelete = Uploads;
using OneClickShare = Uploads;
using ManualBackup = Uploads;

TEST_F(UploadMultiple, SendsTheFilesWithoutAFollowUp) {
  const pb::ListSpinePtr list(list_of_fids({4, -5}));

  mb_vesk_upload_multiple_contents(5, list.get());

  EXPECT_THAT(requests(), ElementsAre("vesk_svc_content_file_upload(5, {4, -5}, 0)"));
  EXPECT_TRUE(logged(PB_LOG_INFO,
                     "[mb_vesk_upload_multiple_contents]vesk_svc_content_file_upload "
                     "request SUCCESS\n"));
}

TEST_F(UploadMultiple, WaitsBehindAPopup) {
  const pb::ListSpinePtr list(list_of_fids({4}));

  mb_vesk_upload_multiple_contents(5, list.get());

  EXPECT_THAT(intervals(), ElementsAre(300000U));
  EXPECT_THAT(shown(), ElementsAre("string 190"));
}

TEST_F(UploadMultiple, ShowsNothingAfterARefusal) {
  refuse();
  const pb::ListSpinePtr list(list_of_fids({4}));

  mb_vesk_upload_multiple_contents(5, list.get());

  EXPECT_TRUE(logged(PB_LOG_ERROR,
                     "[mb_vesk_upload_multiple_contents]vesk_svc_content_file_upload "
                     "request FAILED\n"));
  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
  EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(UploadMultiple, SendsNothingForAnEmptyList) {
  mb_vesk_upload_multiple_contents(5, nullptr);

  EXPECT_THAT(fake::take_calls(), IsEmpty());
}

TEST_F(UploadFids, SendsTheFilesAndMarksThem) {
  const gint fids[] = {4, -5};
  gint error = 0;

  EXPECT_EQ(mb_vesk_upload_fids(5, fids, 2, 3, &error), 1);

  EXPECT_THAT(requests(), ElementsAre("vesk_svc_content_file_upload(5, {4, -5}, 3)",
                                      "fm_svc_vesk_update_nfid_of_file(4, -2)",
                                      "fm_svc_vesk_update_nfid_of_file(-5, -2)"));
  EXPECT_EQ(error, 1);
}

TEST_F(UploadFids, LogsWhatItSends) {
  const gint fids[] = {4, 6};

  mb_vesk_upload_fids(5, fids, 2, 3, nullptr);

  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_upload_fids]handle = 5, count = 2\n\n"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_upload_fids]err=1\n\n"));
}

TEST_F(UploadFids, ArmsNoGuard) {
  const gint fids[] = {4};

  mb_vesk_upload_fids(5, fids, 1, 3, nullptr);

  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
}

TEST_F(UploadFids, MarksNothingAfterARefusal) {
  refuse();
  const gint fids[] = {4};
  gint error = 0;

  EXPECT_EQ(mb_vesk_upload_fids(5, fids, 1, 3, &error), 1);

  EXPECT_THAT(requests(), ElementsAre("vesk_svc_content_file_upload(5, {4}, 3)"));
  EXPECT_EQ(error, -3);
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_upload_fids]err=-3\n\n"));
}

TEST_F(UploadFids, GoesOnAfterAMarkThatFails) {
  fake::platform().fm_svc_vesk_update_nfid_of_file = [](gint, gint64, gint *) { return FALSE; };
  const gint fids[] = {4, 6};

  mb_vesk_upload_fids(5, fids, 2, 3, nullptr);

  EXPECT_THAT(requests(), Contains("fm_svc_vesk_update_nfid_of_file(6, -2)"));
  EXPECT_TRUE(
      logged(PB_LOG_ERROR, "[mb_vesk_upload_fids]fm_svc_vesk_update_nfid_of_file failed\n\n"));
}

TEST_F(UploadFids, ReadsNoFilesOfANegativeCount) {
  const gint fids[] = {4};

  EXPECT_EQ(mb_vesk_upload_fids(5, fids, -1, 3, nullptr), 1);

  EXPECT_THAT(requests(), ElementsAre("vesk_svc_content_file_upload(5, {}, 3)"));
}

TEST_F(ArchiveAndDelete, SendsOneFile) {
  EXPECT_EQ(mb_vesk_archieve_and_delete_local(5, 4), 1);

  EXPECT_THAT(requests(), Contains("vesk_svc_content_file_upload(5, {4}, 3)"));
  EXPECT_THAT(intervals(), ElementsAre(300000U));
  EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(OneClickShare, WithoutAGroupGoesToTheQuickPost) {
  EXPECT_EQ(mb_vesk_one_click_share(5, 4, nullptr), 1);

  EXPECT_THAT(requests(), Contains("vesk_svc_content_file_upload(5, {4}, 1)"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_one_click_share]mb_vesk_upload_fids success\n\n"));
}

TEST_F(OneClickShare, WithAGroupIsPublished) {
  EXPECT_EQ(mb_vesk_one_click_share(5, 4, "Friends"), 1);

  EXPECT_THAT(requests(), Contains("vesk_svc_content_file_upload(5, {4}, 2)"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_one_click_share]SNS name=Friends\n"));
}

TEST_F(OneClickShare, WaitsBehindAPopup) {
  mb_vesk_one_click_share(5, 4, nullptr);

  EXPECT_THAT(intervals(), ElementsAre(300000U));
  EXPECT_THAT(shown(), ElementsAre("string 189"));
}

TEST_F(ManualBackup, SendsTheFilesWithoutAFollowUp) {
  const pb::ListSpinePtr list(list_of_fids({4, 6}));

  EXPECT_EQ(mb_vesk_file_manual_backup(5, list.get()), 1);

  EXPECT_THAT(requests(), ElementsAre("vesk_svc_content_file_upload(5, {4, 6}, 0)",
                                      "fm_svc_vesk_update_nfid_of_file(4, -2)",
                                      "fm_svc_vesk_update_nfid_of_file(6, -2)"));
  EXPECT_THAT(intervals(), ElementsAre(300000U));
}

TEST_F(ManualBackup, TellsOfOneFile) {
  const pb::ListSpinePtr list(list_of_fids({4}));

  mb_vesk_file_manual_backup(5, list.get());

  EXPECT_THAT(shown(), ElementsAre("string 189"));
}

TEST_F(ManualBackup, TellsOfSeveralFiles) {
  const pb::ListSpinePtr list(list_of_fids({4, 6}));

  mb_vesk_file_manual_backup(5, list.get());

  EXPECT_THAT(shown(), ElementsAre("string 190"));
}

}  // namespace

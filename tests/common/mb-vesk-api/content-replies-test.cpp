// What each reply of the content service does.
#include "common/mb-vesk-api/vesk-fixture.hpp"
#include "pb-app-common.h"
#include "pb-util-dialog.h"

namespace {

using fake::platform;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;
using vesk_test::bytes_of;
using vesk_test::send;

constexpr const char *kCountKey = "/Apps/MediaBrowser/WebAlbumCount";

class Replies : public vesk_test::VeskTest {
 protected:
  void SetUp() override {
    VeskTest::SetUp();
    pb_app_common_initialize();
  }
  void TearDown() override {
    VeskTest::TearDown();
    pb_app_common_finalize();
  }

  static std::string stored(int count) {
    return std::string("set_int(") + kCountKey + ", " + std::to_string(count) + ")";
  }
  /// How often the list of the current category was built again.
  static std::size_t resyncs() {
    std::size_t count = 0;
    for (const fake::LogLine &line : platform().log) {
      if (line.text == "[pb_app_common_resync_current_category]\n") ++count;
    }
    return count;
  }
};
using FailedReply = Replies;
using UploadReply = Replies;
using ShareUploadReply = Replies;
using PublishReply = Replies;
using RemoveReply = Replies;
using AddReply = Replies;
using DeleteReply = Replies;

TEST_F(FailedReply, ToAQueryForContentsIsOnlyLogged) {
  send({VESK_CONTENT_REQ_FILE_GET, {}, "", 10});

  EXPECT_TRUE(logged(PB_LOG_ERROR,
                     "[mb_vesk_media_svc_notification_cb]drovo Album cover updation "
                     "failed..... \n"));
  EXPECT_THAT(fake::pending_sources(), IsEmpty());
}

TEST_F(FailedReply, OfTheServiceSaysThatItWasRefused) {
  send({VESK_CONTENT_REQ_ALBUM_UPDATE, {}, "", 10});

  EXPECT_THAT(intervals(), ElementsAre(1000U));
  EXPECT_THAT(shown_after(1000), ElementsAre("string 87"));
}

TEST_F(FailedReply, OfAnyOtherKindSaysThatThereWasNoAnswer) {
  for (const gint32 error : {9, 0, -1, 2, 11}) {
    send({VESK_CONTENT_REQ_ALBUM_UPDATE, {}, "", error});

    EXPECT_THAT(shown_after(1000), ElementsAre("string 125")) << error;
  }
}

TEST_F(FailedReply, ToAnUploadSaysBoth) {
  send({VESK_CONTENT_REQ_FILE_UPLOAD, {}, "", 10});

  EXPECT_THAT(intervals(), ElementsAre(1000U, 1000U));
  EXPECT_THAT(shown_after(1000), ElementsAre("string 155", "string 87"));
}

TEST_F(FailedReply, NeedsNoMetaDataNorData) {
  const VeskResponseHeader header{9, 0, VESK_CONTENT_REQ_ALBUM_GET};

  vesk_test::send_texts({vesk_test::encode(bytes_of(header))});

  EXPECT_THAT(shown_after(1000), ElementsAre("string 125"));
}

TEST_F(FailedReply, ChangesNeitherListsNorCounts) {
  fake::settings().values[kCountKey] = 4;

  send({VESK_CONTENT_REQ_ALBUM_REMOVE, {8}, "", 9});
  fake::run_idles();

  EXPECT_THAT(fake::settings().calls, IsEmpty());
  EXPECT_EQ(resyncs(), 0U);
}

TEST_F(UploadReply, TellsOfEachFile) {
  send({VESK_CONTENT_REQ_FILE_UPLOAD, {21, -1, 0}, ""});

  EXPECT_THAT(intervals(), ElementsAre(1000U, 1000U, 1000U));
  EXPECT_THAT(shown_after(1000), ElementsAre("string 188", "string 155", "string 155"));
}

TEST_F(UploadReply, TellsOfNoMoreFilesThanWereSent) {
  const pb::ListSpinePtr fids(list_of_fids({4, 6}));
  mb_vesk_file_manual_backup(5, fids.get());

  send({VESK_CONTENT_REQ_FILE_UPLOAD, {21, 22, 23, 24}, ""});

  EXPECT_THAT(intervals(), ElementsAre(300000U, 1000U, 1000U));
}

TEST_F(UploadReply, BringsTheListUpToDate) {
  send({VESK_CONTENT_REQ_FILE_UPLOAD, {-1, 21}, ""});
  mb_util_create_waiting_popup("waiting");

  fake::run_idles();

  EXPECT_EQ(resyncs(), 1U);
  EXPECT_FALSE(pb_dialog_check_exist());
}

TEST_F(UploadReply, LeavesTheListAloneWhenEveryFileFailed) {
  send({VESK_CONTENT_REQ_FILE_UPLOAD, {-1, 0}, ""});

  EXPECT_THAT(fake::pending_idles(), IsEmpty());
}

TEST_F(UploadReply, WithUserDataOfAnotherSizeIsDropped) {
  for (const std::size_t size : {1U, 3U, 5U, 8U}) {
    send({VESK_CONTENT_REQ_FILE_UPLOAD, {21}, std::string(size, '\1')});

    EXPECT_THAT(fake::pending_sources(), IsEmpty()) << size;
  }
}

TEST_F(ShareUploadReply, PublishesToTheGroup) {
  veskMediaHandle = 44;
  mb_vesk_one_click_share(5, 4, "Friends");
  fake::take_calls();

  send({VESK_CONTENT_REQ_FILE_UPLOAD, {21, 22}, bytes_of(gint32{2})});
  fake::run_idles();

  EXPECT_THAT(requests(), Contains(R"(vesk_svc_content_file_publish(44, {21}, "Friends"))"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_svc_notification_cb] Vp_status = 1 \n"));
  EXPECT_EQ(resyncs(), 1U);
}

TEST_F(ShareUploadReply, PublishesToAGroupCutTo255Bytes) {
  mb_vesk_one_click_share(5, 4, "an earlier group");
  mb_vesk_one_click_share(5, 4, std::string(300, 'g').c_str());
  fake::take_calls();

  send({VESK_CONTENT_REQ_FILE_UPLOAD, {21}, bytes_of(gint32{2})});
  fake::run_idles();

  EXPECT_THAT(requests(), Contains("vesk_svc_content_file_publish(0, {21}, \"" +
                                   std::string(255, 'g') + "\")"));
}

TEST_F(ShareUploadReply, FollowsWithAQuickPost) {
  veskMediaHandle = 44;
  mb_vesk_one_click_share(5, 4, nullptr);
  fake::take_calls();

  send({VESK_CONTENT_REQ_FILE_UPLOAD, {21}, bytes_of(gint32{1})});
  fake::run_idles();

  EXPECT_THAT(requests(),
              Contains(R"(vesk_svc_content_album_get(44, 0, 0, {{11, "quickpost", "$$"}}))"));
  EXPECT_EQ(resyncs(), 1U);
}

TEST_F(ShareUploadReply, EndsWithTheUploadWhenTheDialogIsGone) {
  mb_vesk_one_click_share(5, 4, "Friends");
  pb_dialog_destroy();
  fake::take_calls();

  send({VESK_CONTENT_REQ_FILE_UPLOAD, {21}, bytes_of(gint32{2})});
  fake::run_idles();

  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_THAT(shown_after(1000), ElementsAre("string 188"));
}

TEST_F(ShareUploadReply, TellsOfAFailedUpload) {
  for (const std::vector<gint64> &ids : {std::vector<gint64>{}, std::vector<gint64>{0, 21}}) {
    mb_vesk_one_click_share(5, 4, "Friends");
    fake::take_calls();

    send({VESK_CONTENT_REQ_FILE_UPLOAD, ids, bytes_of(gint32{2})});
    fake::run_idles();

    EXPECT_THAT(requests(), IsEmpty());
    EXPECT_THAT(shown_after(1000), ElementsAre("string 155"));
  }
}

TEST_F(ShareUploadReply, OfAnArchivedFileEndsWithTheUpload) {
  mb_vesk_archieve_and_delete_local(5, 4);

  send({VESK_CONTENT_REQ_FILE_UPLOAD, {21}, bytes_of(gint32{3})});
  fake::run_idles();

  EXPECT_EQ(resyncs(), 1U);
  EXPECT_THAT(shown_after(1000), ElementsAre("string 188"));
  EXPECT_THAT(shown_after(400000), IsEmpty());
}

TEST_F(PublishReply, TellsOfEachContent) {
  send({VESK_CONTENT_REQ_FILE_PUBLISH, {21, -1}, ""});

  EXPECT_THAT(intervals(), ElementsAre(1000U, 1000U));
  EXPECT_THAT(shown_after(1000), ElementsAre("string 17", "string 164"));
}

TEST_F(PublishReply, TellsOfNoMoreContentsThanWereSent) {
  std::vector<gint64> ids{21};
  const pb::ListSpinePtr list(list_of(ids));
  mb_vesk_media_share_content_sns_group(5, list.get(), FALSE, "Friends");

  send({VESK_CONTENT_REQ_FILE_PUBLISH, {21, 22, 23}, ""});

  EXPECT_THAT(intervals(), ElementsAre(40000U, 1000U));
}

TEST_F(RemoveReply, LowersTheCountNoFurtherThanZero) {
  fake::settings().values[kCountKey] = 2;

  send({VESK_CONTENT_REQ_ALBUM_REMOVE, {8, 9, 10}, ""});
  fake::run_idles();

  EXPECT_THAT(fake::settings().calls, Contains(stored(0)));
}

TEST_F(RemoveReply, CountsOnlyWhatWasRemoved) {
  fake::settings().values[kCountKey] = 7;

  send({VESK_CONTENT_REQ_ALBUM_REMOVE, {8, -1, 0, 9}, ""});
  fake::run_idles();

  EXPECT_THAT(fake::settings().calls, Contains(stored(5)));
}

TEST_F(RemoveReply, LeavesACountBelowOneAlone) {
  for (const int count : {0, -3}) {
    fake::settings().values[kCountKey] = count;
    fake::settings().calls.clear();

    send({VESK_CONTENT_REQ_ALBUM_REMOVE, {8}, ""});
    fake::run_idles();

    EXPECT_THAT(fake::settings().calls, Each(Not(StartsWith("set_int"))));
  }
}

TEST_F(RemoveReply, LeavesACountThatCannotBeReadAlone) {
  fake::settings().failure = "no daemon";

  send({VESK_CONTENT_REQ_ALBUM_REMOVE, {8}, ""});
  fake::run_idles();

  EXPECT_THAT(fake::settings().calls, Each(Not(StartsWith("set_int"))));
}

TEST_F(RemoveReply, TouchesTheSettingsOnTheMainLoopOnly) {
  send({VESK_CONTENT_REQ_ALBUM_REMOVE, {8}, ""});

  EXPECT_THAT(fake::settings().calls, IsEmpty());
  EXPECT_THAT(fake::pending_idles(), SizeIs(1));
}

TEST_F(AddReply, CountsWhatWasAdded) {
  send({VESK_CONTENT_REQ_ALBUM_ADDCONTENT, {21, -1, 22}, ""});

  EXPECT_THAT(intervals(), ElementsAre(10U));
  EXPECT_THAT(shown_after(10), ElementsAre("2 string 67"));
}

TEST_F(AddReply, FreesItsTextOnce) {
  send({VESK_CONTENT_REQ_ALBUM_ADDCONTENT, {21}, ""});

  fake::advance_clock(10);
  mb_vesk_media_get_shared_album(5, 1);
  fake::advance_clock(40000);

  std::size_t freed = 0;
  for (const fake::LogLine &line : platform().log) {
    if (line.text.find("]   $$$$$$$$$$$$$ FREED $$$$$$$$$$$$  \n") != std::string::npos) ++freed;
  }
  EXPECT_EQ(freed, 1U);
}

TEST_F(AddReply, CountsNoMoreThanWasSent) {
  const gint64 ids[] = {21, 22};
  mb_vesk_media_add_content_to_web_album(5, ids, 2, 8);

  send({VESK_CONTENT_REQ_ALBUM_ADDCONTENT, {21, 22, 23}, ""});

  EXPECT_THAT(shown_after(10), ElementsAre("2 string 67"));
}

TEST_F(AddReply, CutsItsTextAfterTwentyBytes) {
  platform().rsrc_get_string = [](gint, gint) { return "bilder zum album hinzugefügt"; };
  send({VESK_CONTENT_REQ_ALBUM_ADDCONTENT, {21}, ""});

  EXPECT_THAT(shown_after(10), ElementsAre("1 bilder zum album h"));
}

TEST_F(AddReply, CutsItsTextBetweenCharacters) {
  platform().rsrc_get_string = [](gint, gint) { return "aaaaaaaaaaaaaaaaaüü"; };
  send({VESK_CONTENT_REQ_ALBUM_ADDCONTENT, {21}, ""});

  EXPECT_THAT(shown_after(10), ElementsAre("1 aaaaaaaaaaaaaaaaa"));
}

TEST_F(AddReply, SaysWhenNothingWasAdded) {
  send({VESK_CONTENT_REQ_ALBUM_ADDCONTENT, {-1}, ""});

  EXPECT_THAT(intervals(), ElementsAre(10U));
  EXPECT_THAT(shown_after(10), ElementsAre("string 168"));
}

/// A deletion that waits for its reply.
class PendingDeletion : public Replies {
 protected:
  void SetUp() override {
    Replies::SetUp();
    platform().vesk_svc_content_album_deletecontent = [this](guint32, gint, const gint64 *, gint64,
                                                             gpointer user_data) {
      user_data_ = bytes_of(user_data);
      return 1;
    };
    platform().fm_svc_mb_get_album_id_by_naid = [](gint64, gint *album_id, gint *) {
      *album_id = 77;
      return TRUE;
    };
    platform().fm_svc_mb_get_album = [](gint album_id, FmAlbumRecord *record, gint *) {
      *record = fake::make_album(album_id, "Summer", 8000000001);
      return TRUE;
    };
    std::vector<gint64> ids{21, 22};
    const pb::ListSpinePtr list(list_of(ids));
    mb_vesk_delete_web_album_contents(5, GINT_TO_POINTER(77), 8000000001, list.get());
    fake::take_calls();
    fake::take_log();
  }
  void reply(const std::vector<gint64> &ids, gint32 error = 1) {
    send({VESK_CONTENT_REQ_ALBUM_DELETECONTENT, ids, user_data_, error});
  }

  std::string user_data_;
};

TEST_F(PendingDeletion, RemovesTheFilesFromTheMirror) {
  reply({21, 22});

  EXPECT_THAT(requests(),
              ElementsAre("fm_svc_vesk_sync_album_remove_vesk_files(8000000001, {21, 22})",
                          R"(fm_svc_vesk_update_folder({77, 8000000001, "Summer", ""}))"));
  EXPECT_TRUE(logged(PB_LOG_INFO,
                     "[mb_vesk_media_svc_notification_cb] "
                     "VESK_CONTENT_REQ_ALBUM_DELETECONTENT SUCCCESS\n"));
  EXPECT_TRUE(logged(PB_LOG_INFO,
                     "[mb_vesk_media_svc_notification_cb]  "
                     "fm_svc_vesk_sync_album_remove_vesk_files SUCCESS\n"));
}

TEST_F(PendingDeletion, ReadsTheAlbumByItsLocalId) {
  reply({21});

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_album_id_by_naid"),
              ElementsAre(HasSubstr("8000000001")));
  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_album"), ElementsAre(HasSubstr("77")));
}

TEST_F(PendingDeletion, RemovesOnlyWhatWasDeleted) {
  reply({-1, 22});

  EXPECT_THAT(requests(), Contains("fm_svc_vesk_sync_album_remove_vesk_files(8000000001, {22})"));
}

TEST_F(PendingDeletion, RemovesNoMoreThanWasAskedFor) {
  reply({21, 22, 23, 24});

  EXPECT_THAT(requests(),
              Contains("fm_svc_vesk_sync_album_remove_vesk_files(8000000001, {21, 22})"));
}

TEST_F(PendingDeletion, ClosesTheDialogWithoutAText) {
  reply({21, 22});

  EXPECT_THAT(intervals(), ElementsAre(40000U, 10U));
  EXPECT_THAT(shown_after(10), IsEmpty());
  EXPECT_FALSE(pb_dialog_check_exist());
}

TEST_F(PendingDeletion, BuildsTheListOfTheAlbumAgain) {
  pb_app_common_build_item_list(3, 5);
  fake::take_calls();
  fake::take_log();

  reply({21, 22});
  fake::run_idles();

  EXPECT_EQ(resyncs(), 1U);
  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"),
              Contains(StartsWith("fm_svc_mb_album_get_all_files_ex(77,")));
}

TEST_F(PendingDeletion, GoesOnWhenTheMirrorFails) {
  platform().fm_svc_vesk_sync_album_remove_vesk_files = [](gint64, const gint64 *, gint,
                                                           gint *error) {
    *error = 6;
    return FALSE;
  };
  platform().fm_svc_mb_get_album = [](gint, FmAlbumRecord *, gint *) { return FALSE; };

  reply({21});

  EXPECT_TRUE(logged(PB_LOG_ERROR,
                     "[mb_vesk_media_svc_notification_cb]  "
                     "fm_svc_vesk_sync_album_remove_vesk_files FAILED err = 6 \n"));
  EXPECT_TRUE(
      logged(PB_LOG_ERROR, "[mb_vesk_media_svc_notification_cb]  fm_svc_mb_get_album FAILED \n"));
  EXPECT_THAT(fake::calls_of("fm_svc_vesk_update_folder"), IsEmpty());
  EXPECT_THAT(fake::pending_idles(), SizeIs(1));
}

TEST_F(PendingDeletion, SaysThatNothingWasDeleted) {
  reply({-1, 0});

  EXPECT_TRUE(logged(PB_LOG_ERROR,
                     "[mb_vesk_media_svc_notification_cb] "
                     "VESK_CONTENT_REQ_ALBUM_DELETECONTENT FAILS\n"));
  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_THAT(fake::pending_idles(), IsEmpty());
  EXPECT_THAT(shown_after(10), IsEmpty());
  EXPECT_FALSE(pb_dialog_check_exist());
}

TEST_F(PendingDeletion, IsRepliedToOnce) {
  reply({21});
  fake::take_calls();

  reply({21});

  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_TRUE(
      logged(PB_LOG_ERROR, "[mb_vesk_media_svc_notification_cb]Error in noti parameter value\n\n"));
}

TEST_F(PendingDeletion, IsOverAfterAFailure) {
  reply({}, 9);
  fake::take_calls();

  reply({21});

  EXPECT_THAT(requests(), IsEmpty());
}

TEST_F(PendingDeletion, IsOverWhenTheRegistrationEnds) {
  mb_vesk_deregister_app(5);
  fake::take_calls();

  reply({21});

  EXPECT_THAT(requests(), IsEmpty());
}

TEST_F(PendingDeletion, OutlivesTheEndOfAnotherRegistration) {
  mb_vesk_deregister_app(6);
  fake::take_calls();

  reply({21});

  EXPECT_THAT(requests(), Not(IsEmpty()));
}

TEST_F(DeleteReply, ToTheDeletionOfOneContentUpdatesTheMirror) {
  std::string user_data;
  platform().vesk_svc_content_album_deletecontent = [&](guint32, gint, const gint64 *, gint64,
                                                        gpointer number) {
    user_data = bytes_of(number);
    return 1;
  };
  mb_vesk_delete_content_cb(5, 21, 8);

  send({VESK_CONTENT_REQ_ALBUM_DELETECONTENT, {21}, user_data});

  EXPECT_THAT(requests(), Contains("fm_svc_vesk_sync_album_remove_vesk_files(8, {21})"));
}

TEST_F(DeleteReply, OfNobodysRequestIsDropped) {
  send({VESK_CONTENT_REQ_ALBUM_DELETECONTENT, {21}, bytes_of(guint64{0x7f0000001000})});

  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_THAT(fake::pending_sources(), IsEmpty());
}

TEST_F(DeleteReply, WithoutAnAlbumFails) {
  send({VESK_CONTENT_REQ_ALBUM_DELETECONTENT, {21}, ""});

  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_TRUE(logged(PB_LOG_ERROR,
                     "[mb_vesk_media_svc_notification_cb] "
                     "VESK_CONTENT_REQ_ALBUM_DELETECONTENT FAILS\n"));
}

}  // namespace

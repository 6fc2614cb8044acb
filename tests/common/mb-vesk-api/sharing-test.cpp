#include "common/mb-vesk-api/vesk-fixture.hpp"
#include "pb-util-dialog.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Sharing : public vesk_test::VeskTest {
 protected:
  void share(std::vector<gint64> ids, bool albums) {
    const pb::ListSpinePtr list(list_of(ids));
    mb_vesk_media_share_content_sns_group(5, list.get(), albums ? TRUE : FALSE, "Friends");
  }
  void unshare(std::vector<gint64> ids) {
    const pb::ListSpinePtr list(list_of(ids));
    mb_vesk_media_unshare_album(0, list.get());
  }
  static void refuse_unsharing() {
    fake::platform().vesk_svc_share_deny_group_to_access_entities = [](guint32, gint64, gpointer) {
      return -1;
    };
  }
};
using ShareWithGroup = Sharing;
using SharedGroups = Sharing;
using Unshare = Sharing;
using SharedAlbum = Sharing;
using SharedQuickPost = Sharing;
using SharedContent = Sharing;

TEST_F(ShareWithGroup, PublishesAlbums) {
  share({8, 9}, true);

  EXPECT_THAT(requests(), ElementsAre(R"(vesk_svc_content_album_publish(5, {8, 9}, "Friends"))"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_share_content_sns_group] Vp_status = 1 \n"));
  EXPECT_THAT(intervals(), ElementsAre(40000U));
}

TEST_F(ShareWithGroup, PublishesContents) {
  share({8}, false);

  EXPECT_THAT(requests(), ElementsAre(R"(vesk_svc_content_file_publish(5, {8}, "Friends"))"));
}

TEST_F(ShareWithGroup, TellsOfAnAlbum) {
  share({8, 9}, true);

  EXPECT_THAT(shown(), ElementsAre("string 133"));
}

TEST_F(ShareWithGroup, TellsOfOneContent) {
  share({8}, false);

  EXPECT_THAT(shown(), ElementsAre("string 134"));
}

TEST_F(ShareWithGroup, TellsOfSeveralContents) {
  share({8, 9}, false);

  EXPECT_THAT(shown(), ElementsAre("string 135"));
}

TEST_F(ShareWithGroup, ShowsNothingAfterARefusal) {
  fake::platform().vesk_svc_content_file_publish = [](guint32, gint, const gint64 *, const gchar *,
                                                      gpointer) { return -8; };

  share({8}, false);

  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_media_share_content_sns_group] Vp_status = -8 \n"));
  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
  EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(SharedGroups, AreAskedForAlbumByAlbum) {
  std::vector<gint64> ids{8, 8000000001};
  const pb::ListSpinePtr list(list_of(ids));

  mb_vesk_tools_get_shared_album_gids(5, list.get());

  EXPECT_THAT(requests(), ElementsAre("vesk_svc_share_shared_with(5, 8)",
                                      "vesk_svc_share_shared_with(5, 8000000001)"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_tools_get_shared_album_gids]Naid[1] = 8000000001\n"));
  EXPECT_THAT(intervals(), ElementsAre(40000U));
  EXPECT_THAT(shown(), ElementsAre("string 119"));
}

TEST_F(Unshare, AsksAlbumByAlbumThroughTheOwnHandle) {
  veskMediaHandle = 44;

  unshare({8, 9});

  EXPECT_THAT(requests(), ElementsAre("vesk_svc_share_deny_group_to_access_entities(44, 8)",
                                      "vesk_svc_share_deny_group_to_access_entities(44, 9)"));
  EXPECT_THAT(shown(), ElementsAre("string 180"));
}

TEST_F(Unshare, LogsTheAlbums) {
  unshare({8});

  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_unshare_album] mb_vesk_media_unshare_album\n"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_unshare_album]Naid[0] = 8\n"));
}

TEST_F(Unshare, ArmsNoGuard) {
  veskMediaHandle = 44;

  unshare({8});

  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
}

TEST_F(Unshare, RegistersWithOneCategoryFirst) {
  unshare({8});

  EXPECT_THAT(requests(), ElementsAre("vesk_svc_core_app_registration({6})",
                                      "vesk_svc_share_deny_group_to_access_entities(1, 8)"));
  EXPECT_EQ(veskMediaHandle, 1U);
  EXPECT_THAT(fake::platform().notification_callbacks,
              ElementsAre(mb_vesk_media_svc_notification_cb));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_unshare_album] REGISTER\n"));
}

TEST_F(Unshare, EndsWhenItCannotRegister) {
  fake::platform().vesk_svc_core_app_registration = [](const gint *, gint, vesk_noti_cb, gint *,
                                                       guint32 *) { return -5; };

  unshare({8});

  EXPECT_THAT(requests(), ElementsAre("vesk_svc_core_app_registration({6})"));
  EXPECT_TRUE(logged(PB_LOG_ERROR,
                     "[mb_vesk_media_unshare_album]  MEDIA_SHARE Noti Registration "
                     "FAILED Error:-5\n"));
  EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(Unshare, TellsASecondLaterThatNothingWasSent) {
  refuse_unsharing();

  unshare({8});

  EXPECT_THAT(intervals(), ElementsAre(1000U));
  EXPECT_THAT(shown_after(999), IsEmpty());
  EXPECT_THAT(shown_after(1), ElementsAre("Cannot Unshare Albums"));
}

TEST_F(Unshare, RemovesTheGuardWithItsMessage) {
  refuse_unsharing();
  mb_vesk_media_get_shared_album(5, 1);
  unshare({8});

  fake::advance_clock(1000);

  EXPECT_THAT(shown_after(100000), IsEmpty());
}

TEST_F(Unshare, SaysNothingWhenOneOfThemWasSent) {
  gint calls = 0;
  fake::platform().vesk_svc_share_deny_group_to_access_entities =
      [&calls](guint32, gint64, gpointer) { return ++calls == 1 ? 0 : 1; };

  unshare({8, 9});

  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
}

TEST_F(SharedAlbum, IsAskedForByItsId) {
  EXPECT_EQ(mb_vesk_media_get_shared_album(5, 8), 1);

  EXPECT_THAT(requests(), ElementsAre(R"(vesk_svc_share_get_shared_album(5, {8, 0, "", ""}))"));
  EXPECT_THAT(intervals(), ElementsAre(40000U));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_get_shared_album]  Operation Successfull\n"));
}

TEST_F(SharedAlbum, ReportsARefusal) {
  fake::platform().vesk_svc_share_get_shared_album = [](guint32, const VeskSharedAlbumQuery *,
                                                        gpointer) { return 4; };

  EXPECT_EQ(mb_vesk_media_get_shared_album(5, 8), 0);

  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_media_get_shared_album]  Operation Error:4\n"));
}

TEST_F(SharedQuickPost, IsAskedForByOwnerAndName) {
  EXPECT_EQ(mb_vesk_media_get_shared_quick_post(5), 1);

  EXPECT_THAT(requests(), ElementsAre(R"(vesk_svc_share_get_shared_album(5, {0, 1, "system", )"
                                      R"("quickpost"}))"));
  EXPECT_THAT(intervals(), ElementsAre(40000U));
}

TEST_F(SharedQuickPost, ReportsARefusal) {
  fake::platform().vesk_svc_share_get_shared_album = [](guint32, const VeskSharedAlbumQuery *,
                                                        gpointer) { return 4; };

  EXPECT_EQ(mb_vesk_media_get_shared_quick_post(5), 0);

  EXPECT_TRUE(logged(PB_LOG_ERROR,
                     "[mb_vesk_media_get_shared_quick_post]vesk_svc_share_get_shared_"
                     "album : Operation Error:4\n"));
  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
}

TEST_F(SharedContent, IsAskedForByAlbumAndRange) {
  EXPECT_EQ(mb_vesk_media_get_shared_content(5, 8000000001, 30, 30), 1);

  EXPECT_THAT(requests(),
              ElementsAre(R"(vesk_svc_share_get_shared_content(5, {"albumid", "lids"}, )"
                          R"({"8000000001", "31-60"}))"));
  EXPECT_THAT(intervals(), ElementsAre(40000U));
}

TEST_F(SharedContent, ReportsARefusal) {
  fake::platform().vesk_svc_share_get_shared_content =
      [](guint32, gint, const gchar *const *, const gchar *const *, gpointer) { return 0; };

  EXPECT_EQ(mb_vesk_media_get_shared_content(5, 8, 0, 30), 0);

  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_media_get_shared_content]  Operation Error:0\n"));
}

}  // namespace

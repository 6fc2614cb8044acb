#include "common/mb-vesk-api/vesk-fixture.hpp"
#include "pb-util-dialog.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class AlbumContents : public vesk_test::VeskTest {};
class SharedByMe : public vesk_test::VeskTest {};
class OneContent : public vesk_test::VeskTest {};
class AddToAlbum : public vesk_test::VeskTest {};
class Synchronize : public vesk_test::VeskTest {};
class DeleteContents : public vesk_test::VeskTest {
 protected:
  static void refuse() {
    fake::platform().vesk_svc_content_album_deletecontent = [](guint32, gint, const gint64 *,
                                                               gint64, gpointer) { return -2; };
  }
  gpointer delete_two() {
    const pb::ListSpinePtr list(list_of(ids_));
    return mb_vesk_delete_web_album_contents(5, nullptr, 8000000001, list.get());
  }

  std::vector<gint64> ids_{21, 22};
};

void refuse_queries() {
  fake::platform().vesk_svc_content_file_get = [](guint32, gint, const VeskContentRequest *,
                                                  gpointer) { return -4; };
}

TEST_F(AlbumContents, AreAskedForInARange) {
  EXPECT_EQ(mb_vesk_media_get_web_album_contents(5, 8000000001, 100, 100, nullptr), 1);

  EXPECT_THAT(requests(), ElementsAre(R"(vesk_svc_content_file_get(5, 2, {5, 8000000001, -1, )"
                                      R"({12, "101-200", "$$"}}))"));
  EXPECT_TRUE(
      logged(PB_LOG_INFO, "[mb_vesk_media_get_web_album_contents]  Operation Successfull\n"));
  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
}

TEST_F(AlbumContents, AreAllOfThemWithoutAnAlbum) {
  mb_vesk_media_get_web_album_contents(5, -1, 100, 100, nullptr);

  EXPECT_THAT(requests(),
              ElementsAre(R"(vesk_svc_content_file_get(5, 1, {1, -1, -1, {0, "", ""}}))"));
}

TEST_F(AlbumContents, AreAskedForThroughTheOwnHandle) {
  veskMediaHandle = 44;

  mb_vesk_media_get_web_album_contents(0, 3, 0, 10, nullptr);

  EXPECT_THAT(requests(), ElementsAre(HasSubstr("(44, 2,")));
}

TEST_F(AlbumContents, HaveTheFilterAtItsPlaceInTheRequest) {
  std::string bytes;
  fake::platform().vesk_svc_content_file_get = [&](guint32, gint, const VeskContentRequest *request,
                                                   gpointer) {
    bytes = vesk_test::bytes_of(*request);
    return 1;
  };

  mb_vesk_media_get_web_album_contents(5, 3, 0, 10, nullptr);

  std::string expected(336, '\0');
  expected[0] = 5;
  expected[8] = 3;
  expected.replace(16, 8, 8, '\xff');
  expected[168] = 12;
  expected.replace(176, 4, "1-10");
  expected.replace(192, 2, "$$");
  EXPECT_EQ(bytes, expected);
}

TEST_F(AlbumContents, ReportARefusal) {
  refuse_queries();

  EXPECT_EQ(mb_vesk_media_get_web_album_contents(5, 3, 0, 10, nullptr), 0);

  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_media_get_web_album_contents]  Operation Error:-4\n"));
}

TEST_F(SharedByMe, IsAskedForInARange) {
  EXPECT_EQ(mb_vesk_media_get_my_shared_content(5, 3, TRUE, 0, 10, nullptr), 1);

  EXPECT_THAT(requests(), ElementsAre(R"(vesk_svc_content_file_get(5, 2, {5, 3, -1, )"
                                      R"({12, "1-10", "$$"}}))"));
  EXPECT_TRUE(
      logged(PB_LOG_INFO, "[mb_vesk_media_get_my_shared_content]  Operation Successfull\n"));
}

TEST_F(SharedByMe, IsAskedForAsAWhole) {
  mb_vesk_media_get_my_shared_content(5, 3, FALSE, 0, 10, nullptr);

  EXPECT_THAT(requests(),
              ElementsAre(R"(vesk_svc_content_file_get(5, 1, {5, 3, -1, {0, "", ""}}))"));
}

TEST_F(SharedByMe, IsNotAskedForWithoutAHandle) {
  veskMediaHandle = 44;

  EXPECT_EQ(mb_vesk_media_get_my_shared_content(0, 3, TRUE, 0, 10, nullptr), 1);

  EXPECT_THAT(requests(), IsEmpty());
}

TEST_F(SharedByMe, ReportsARefusal) {
  refuse_queries();

  EXPECT_EQ(mb_vesk_media_get_my_shared_content(5, 3, TRUE, 0, 10, nullptr), 0);

  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_media_get_my_shared_content]  Operation Error:-4\n"));
}

TEST_F(OneContent, IsAskedForByItsId) {
  mb_vesk_get_content(5, 8000000002);

  EXPECT_THAT(requests(),
              ElementsAre(R"(vesk_svc_content_file_get(5, 1, {1, 8000000002, -1, {0, "", ""}}))"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_get_content]  mb_vesk_get_content :1 \n"));
  EXPECT_THAT(intervals(), ElementsAre(40000U));
}

TEST_F(OneContent, ArmsTheGuardWithoutAHandleToo) {
  mb_vesk_get_content(0, 4);

  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_THAT(intervals(), ElementsAre(40000U));
}

TEST_F(OneContent, ArmsTheGuardAfterARefusalToo) {
  refuse_queries();

  mb_vesk_get_content(5, 4);

  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_get_content]  mb_vesk_get_content :-4 \n"));
  EXPECT_THAT(intervals(), ElementsAre(40000U));
}

TEST_F(DeleteContents, SendsIdsAndAlbum) {
  EXPECT_NE(delete_two(), nullptr);

  EXPECT_THAT(requests(),
              ElementsAre("vesk_svc_content_album_deletecontent(5, {21, 22}, 8000000001)"));
}

TEST_F(DeleteContents, LogsWhatItSends) {
  delete_two();

  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_delete_web_album_contents]Count = 2\n"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_delete_web_album_contents]fids[0] = 21\n"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_delete_web_album_contents]fids[1] = 22\n"));
  EXPECT_TRUE(logged(PB_LOG_INFO,
                     "[mb_vesk_delete_web_album_contents]vesk_svc_content_album_"
                     "deletecontent request SUCCESS\n"));
}

TEST_F(DeleteContents, ShowsAWaitingAnimation) {
  delete_two();

  EXPECT_TRUE(pb_dialog_check_exist());
  EXPECT_THAT(shown(), ElementsAre("Deleting contents....."));
}

TEST_F(DeleteContents, ArmsTheGuard) {
  delete_two();

  EXPECT_THAT(intervals(), ElementsAre(40000U));
}

TEST_F(DeleteContents, ShowsNothingAfterARefusal) {
  refuse();

  EXPECT_EQ(delete_two(), nullptr);

  EXPECT_THAT(shown(), IsEmpty());
  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
  EXPECT_TRUE(logged(PB_LOG_ERROR,
                     "[mb_vesk_delete_web_album_contents]vesk_svc_content_album_"
                     "deletecontent request FAILED\n"));
}

TEST_F(DeleteContents, OfOneSendsItsIdAndAlbum) {
  mb_vesk_delete_content_cb(5, 21, 8);

  EXPECT_THAT(requests(), ElementsAre("vesk_svc_content_album_deletecontent(5, {21}, 8)"));
  EXPECT_THAT(intervals(), ElementsAre(40000U));
  EXPECT_THAT(shown(), IsEmpty());
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_delete_content_cb]  Operation Successfull\n"));
}

TEST_F(DeleteContents, OfOneLogsARefusal) {
  refuse();

  mb_vesk_delete_content_cb(5, 21, 8);

  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_delete_content_cb]  Operation Error:-2\n"));
  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
}

TEST_F(AddToAlbum, SendsACopyOfTheIds) {
  const gint64 ids[] = {31, 8000000003};
  const gint64 *seen = nullptr;
  fake::platform().vesk_svc_content_album_addcontent = [&](guint32, gint, const gint64 *sent,
                                                           gint64, gpointer) {
    seen = sent;
    return 1;
  };

  EXPECT_EQ(mb_vesk_media_add_content_to_web_album(5, ids, 2, 8), 1);

  EXPECT_THAT(requests(), ElementsAre("vesk_svc_content_album_addcontent(5, {31, 8000000003}, 8)"));
  EXPECT_NE(seen, ids);
  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
}

TEST_F(AddToAlbum, ReportsARefusal) {
  fake::platform().vesk_svc_content_album_addcontent = [](guint32, gint, const gint64 *, gint64,
                                                          gpointer) { return -6; };
  const gint64 ids[] = {31};

  EXPECT_EQ(mb_vesk_media_add_content_to_web_album(5, ids, 1, 8), 0);

  EXPECT_TRUE(logged(PB_LOG_ERROR,
                     "[mb_vesk_media_add_content_to_web_album]  "
                     "vesk_svc_content_album_addcontent FAILED Error:-6\n"));
}

TEST_F(Synchronize, AsksForEverything) {
  mb_vesk_synchronize_details(5);

  EXPECT_THAT(requests(), ElementsAre("vesk_svc_core_synchronize_details(5, 2)"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_synchronize_details]  Operation Successfull\n"));
}

TEST_F(Synchronize, LogsARefusal) {
  fake::platform().vesk_svc_core_synchronize_details = [](guint32, gint) { return 5; };

  mb_vesk_synchronize_details(5);

  EXPECT_TRUE(logged(PB_LOG_ERROR, "[mb_vesk_synchronize_details]  Operation Error:5\n"));
}

}  // namespace

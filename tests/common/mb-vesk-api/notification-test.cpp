// How notifications are taken apart, and the replies of the share service.
#include "common/mb-vesk-api/vesk-fixture.hpp"

namespace {

using fake::platform;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using vesk_test::encode;
using vesk_test::integer_field;
using vesk_test::send;
using vesk_test::send_fields;
using vesk_test::send_share;
using vesk_test::send_texts;
using vesk_test::text_field;

constexpr const char *kBadField =
    "[mb_vesk_media_svc_notification_cb]Error in noti parameter value\n\n";

class Notification : public vesk_test::VeskTest {
 protected:
  /// A reply with two ids, of which a test spoils one text.
  static std::vector<std::string> good_texts() {
    return vesk_test::texts_of({VESK_CONTENT_REQ_ALBUM_UPDATE, {8, 9}, ""});
  }
  static std::vector<std::string> spoiled(std::size_t index, const std::string &text) {
    std::vector<std::string> texts = good_texts();
    texts.at(index) = text;
    return texts;
  }
  static std::size_t ids_logged() {
    std::size_t count = 0;
    for (const fake::LogLine &line : platform().log) {
      if (line.text.find("]Id[") != std::string::npos) ++count;
    }
    return count;
  }
};
using ShareReply = Notification;

TEST_F(Notification, OfAnotherNameChangesNothing) {
  EXPECT_EQ(send_fields("Other.Manager.Response.Async", {integer_field(1)}), 1);

  EXPECT_THAT(platform().log, IsEmpty());
  EXPECT_THAT(fake::pending_sources(), IsEmpty());
}

TEST_F(Notification, WithoutANameChangesNothing) {
  EXPECT_EQ(mb_vesk_media_svc_notification_cb(nullptr, nullptr, 4), 1);

  EXPECT_THAT(platform().log, IsEmpty());
}

TEST_F(Notification, IsAlwaysHandled) {
  EXPECT_EQ(send({VESK_CONTENT_REQ_ALBUM_UPDATE, {8}, ""}), 1);
  EXPECT_EQ(send({VESK_CONTENT_REQ_ALBUM_UPDATE, {8}, "", 9}), 1);
  EXPECT_EQ(send_texts({"?"}), 1);
}

TEST_F(Notification, LogsItsHeaderAndSizes) {
  send({VESK_CONTENT_REQ_ALBUM_UPDATE, {8, 9}, ""});

  EXPECT_TRUE(logged(PB_LOG_INFO,
                     "[mb_vesk_media_svc_notification_cb]rsp->errid:1,rsp-appid:77,"
                     "resp->eventid:9\n"));
  EXPECT_TRUE(
      logged(PB_LOG_INFO, "[mb_vesk_media_svc_notification_cb] rsp meta data_size = 4\n \n"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_svc_notification_cb]rsp data_size = 16\n \n"));
}

TEST_F(Notification, OfARenamedAlbumLogsTheIds) {
  send({VESK_CONTENT_REQ_ALBUM_UPDATE, {8, -1}, ""});

  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_svc_notification_cb]Id[0]:8\n"));
  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_svc_notification_cb]Id[1]:-1\n"));
  EXPECT_THAT(fake::pending_sources(), IsEmpty());
}

TEST_F(Notification, OfADeletedAlbumLogsTheIds) {
  send({VESK_CONTENT_REQ_ALBUM_DELETE, {8000000001}, ""});

  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_svc_notification_cb]Id[0]:8000000001\n"));
  EXPECT_THAT(fake::pending_sources(), IsEmpty());
}

TEST_F(Notification, OfAnotherEventChangesNothing) {
  for (const gint32 event : {-1, 0, 2, 3, 4, 6, 8, 15, G_MAXINT, G_MININT}) {
    send({event, {8}, ""});

    EXPECT_THAT(fake::pending_sources(), IsEmpty()) << event;
    EXPECT_THAT(requests(), IsEmpty()) << event;
  }
}

TEST_F(Notification, IsDroppedWithASpoiledText) {
  for (const std::size_t index : {0, 1, 2, 3}) {
    for (const char *text : {"?", "AAA", "AAA=A", "=AAA", "A===", "AA=A", "AAAA AAA",
                             "AAAA====", "AAAAAA-_", "\xff\xff\xff\xff"}) {
      fake::take_log();

      send_texts(spoiled(index, text));

      EXPECT_TRUE(logged(PB_LOG_ERROR, kBadField)) << index << " " << text;
      EXPECT_EQ(ids_logged(), 0U) << index << " " << text;
    }
  }
}

TEST_F(Notification, IsDroppedWithTooFewTexts) {
  for (const std::size_t count : {0, 1, 2, 3}) {
    std::vector<std::string> texts = good_texts();
    texts.resize(count);
    fake::take_log();

    send_texts(texts);

    EXPECT_TRUE(logged(PB_LOG_ERROR, kBadField)) << count;
    EXPECT_EQ(ids_logged(), 0U) << count;
  }
}

TEST_F(Notification, IsDroppedWithAMissingText) {
  const std::vector<std::string> texts = good_texts();
  for (std::size_t index = 0; index < texts.size(); ++index) {
    std::vector<VeskNotiField> fields;
    for (const std::string &text : texts) fields.push_back(text_field(text.c_str()));
    fields[index].value.text = nullptr;
    fake::take_log();

    send_fields(VESK_MESSAGE_CONTENT, fields);

    EXPECT_TRUE(logged(PB_LOG_ERROR, kBadField)) << index;
  }
}

TEST_F(Notification, IsDroppedWithANumberForAText) {
  send_fields(VESK_MESSAGE_CONTENT, {integer_field(1), text_field(""), text_field("")});

  EXPECT_TRUE(logged(PB_LOG_ERROR, kBadField));
}

TEST_F(Notification, IsDroppedWithAHeaderOfAnotherSize) {
  for (const std::size_t size : {0U, 8U, 11U, 13U, 16U}) {
    fake::take_log();

    send_texts(spoiled(0, encode(std::string(size, '\1'))));

    EXPECT_TRUE(logged(PB_LOG_ERROR, kBadField)) << size;
  }
}

TEST_F(Notification, ClaimsNoMoreIdsThanItHas) {
  send_texts(spoiled(1, encode(vesk_test::bytes_of(gint32{G_MAXINT}))));

  EXPECT_EQ(ids_logged(), 2U);
}

TEST_F(Notification, ClaimsNoHalfId) {
  send_texts(spoiled(2, encode(std::string(15, '\1'))));

  EXPECT_EQ(ids_logged(), 1U);
}

TEST_F(Notification, HasNoIdsForANegativeCount) {
  send_texts(spoiled(1, encode(vesk_test::bytes_of(gint32{-1}))));

  EXPECT_EQ(ids_logged(), 0U);
}

TEST_F(Notification, HasNoIdsWithoutACount) {
  send_texts(spoiled(1, ""));

  EXPECT_EQ(ids_logged(), 0U);
}

TEST_F(Notification, TakesFewerIdsThanTheDataHolds) {
  send_texts(spoiled(1, encode(vesk_test::bytes_of(gint32{1}))));

  EXPECT_EQ(ids_logged(), 1U);
}

TEST_F(ShareReply, OfASharedAlbumSaysSo) {
  EXPECT_EQ(send_share(VESK_SHARE_SHARE_WITH_GROUP, 2), 1);

  EXPECT_TRUE(logged(PB_LOG_INFO,
                     "[mb_vesk_media_svc_notification_cb] "
                     "#############################mb_vesk_share_svc_"
                     "notification_cb \n"));
  EXPECT_TRUE(
      logged(PB_LOG_INFO, "[mb_vesk_media_svc_notification_cb]VESK_SHARE_SHARE_WITH_GROUP = 2\n"));
  EXPECT_THAT(intervals(), ElementsAre(1000U));
  EXPECT_THAT(shown_after(1000), ElementsAre("string 17"));
}

TEST_F(ShareReply, OfAnAlbumTakenBackSaysSo) {
  send_share(VESK_SHARE_UNSHARE_GROUP, 1);

  EXPECT_TRUE(
      logged(PB_LOG_INFO, "[mb_vesk_media_svc_notification_cb]VESK_SHARE_UNSHARE_GROUP = 1\n"));
  EXPECT_THAT(intervals(), ElementsAre(1000U));
  EXPECT_THAT(shown_after(1000), ElementsAre("string 179"));
}

TEST_F(ShareReply, OfNothingSharedLeavesTheWaitingDialogToTheGuard) {
  send_share(VESK_SHARE_SHARE_WITH_GROUP, 0);
  send_share(VESK_SHARE_UNSHARE_GROUP, 0);

  EXPECT_TRUE(
      logged(PB_LOG_INFO, "[mb_vesk_media_svc_notification_cb]VESK_SHARE_SHARE_WITH_GROUP = 0\n"));
  EXPECT_THAT(fake::pending_sources(), IsEmpty());
}

TEST_F(ShareReply, OfGroupsIsOnlyLogged) {
  send_share(VESK_SHARE_SHARED_WITH, 3);

  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_svc_notification_cb]VESK_SHARE_SHARED_WITH\n"));
  EXPECT_THAT(fake::pending_sources(), IsEmpty());
}

TEST_F(ShareReply, OfAnotherOperationChangesNothing) {
  for (const gint32 operation : {-1, 1, 4, G_MAXINT}) {
    send_share(operation, 3);

    EXPECT_THAT(fake::pending_sources(), IsEmpty()) << operation;
  }
}

TEST_F(ShareReply, IsDroppedWithoutItsFirstFields) {
  const std::string data = encode(vesk_test::bytes_of(gint32{1}));
  const VeskNotiField one = integer_field(1);
  const VeskNotiField text = text_field(data.c_str());
  const std::vector<std::vector<VeskNotiField>> broken = {
      {},
      {one, integer_field(0), integer_field(4)},
      {integer_field(2), integer_field(0), integer_field(4), text, one},
      {text, integer_field(0), integer_field(4), text, one},
      {one, text, integer_field(4), text, one},
      {one, integer_field(0), text, text, one},
      {one, integer_field(0), integer_field(4), one, one},
      {one, integer_field(0), integer_field(4), text_field("?"), one},
  };
  for (const std::vector<VeskNotiField> &fields : broken) {
    fake::take_log();

    send_fields(VESK_MESSAGE_SHARE, fields);

    EXPECT_TRUE(logged(PB_LOG_ERROR, kBadField));
    EXPECT_THAT(fake::pending_sources(), IsEmpty());
  }
}

TEST_F(ShareReply, IsDroppedWithAnotherLengthThanItSays) {
  const std::string data = encode(vesk_test::bytes_of(gint32{1}));
  for (const gint32 length : {3, 5, -4, G_MAXINT}) {
    fake::take_log();

    send_fields(VESK_MESSAGE_SHARE, {integer_field(1), integer_field(0), integer_field(length),
                                     text_field(data.c_str()), integer_field(1)});

    EXPECT_TRUE(logged(PB_LOG_ERROR,
                       "[mb_vesk_media_svc_notification_cb]Error in noti parameter "
                       "value: data length is not proper\n\n"));
    EXPECT_THAT(fake::pending_sources(), IsEmpty());
  }
}

TEST_F(ShareReply, IsDroppedWithoutANumberOfElements) {
  const std::string data = encode(vesk_test::bytes_of(gint32{1}));

  send_fields(VESK_MESSAGE_SHARE,
              {integer_field(1), integer_field(0), integer_field(4), text_field(data.c_str())});

  EXPECT_TRUE(logged(PB_LOG_ERROR,
                     "[mb_vesk_media_svc_notification_cb]Error in noti parameter "
                     "value,nelem\n\n"));
  EXPECT_THAT(fake::pending_sources(), IsEmpty());
}

TEST_F(ShareReply, WithoutAWordOfDataHasNoSuccess) {
  send_fields(VESK_MESSAGE_SHARE, {integer_field(1), integer_field(0), integer_field(0),
                                   text_field(""), integer_field(0)});

  EXPECT_THAT(fake::pending_sources(), IsEmpty());
}

}  // namespace

// A quick post from the request to the last batch, and what becomes of user data.
#include "common/mb-vesk-api/vesk-fixture.hpp"
#include "pb-app-common.h"

namespace {

using fake::platform;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using vesk_test::bytes_of;
using vesk_test::send;

constexpr const char *kAlbumKey = "/Apps/vesk-service/content/drovosharealbumId";

class QuickPost : public vesk_test::VeskTest {
 protected:
  void SetUp() override {
    VeskTest::SetUp();
    veskMediaHandle = 44;
    platform().vesk_svc_content_album_get = [this](guint32, gint, gint, gint, const VeskFilter *,
                                                   gpointer user_data) {
      user_data_ = bytes_of(user_data);
      return 1;
    };
    platform().vesk_svc_content_album_addcontent = [this](guint32, gint count, const gint64 *ids,
                                                          gint64, gpointer) {
      batches_.push_back(count);
      sent_.insert(sent_.end(), ids, ids + count);
      return 1;
    };
  }
  static gint post(std::vector<gint64> ids) {
    const pb::ListSpinePtr list(list_of(ids));
    return mb_vesk_media_quick_post(0, list.get());
  }
  static std::vector<gint64> numbers(gint64 count) {
    std::vector<gint64> ids;
    for (gint64 id = 1; id <= count; ++id) ids.push_back(id);
    return ids;
  }
  void reply(const std::vector<gint64> &albums, gint32 error = 1) {
    send({VESK_CONTENT_REQ_ALBUM_GET, albums, user_data_, error});
  }
  /// Lines about batches, in order.
  static std::vector<std::string> batch_lines() {
    std::vector<std::string> lines;
    for (const fake::LogLine &line : platform().log) {
      if (line.text.find("Count ") != std::string::npos) lines.push_back(line.text);
    }
    return lines;
  }

  std::string user_data_;
  std::vector<gint> batches_;
  std::vector<gint64> sent_;
};
using UserData = QuickPost;

TEST_F(QuickPost, AsksForItsAlbumByName) {
  EXPECT_EQ(post({21}), 1);

  EXPECT_THAT(requests(),
              ElementsAre(R"(vesk_svc_content_album_get(44, 0, 0, {{11, "quickpost", "$$"}}))"));
  EXPECT_THAT(intervals(), ElementsAre(40000U));
}

TEST_F(QuickPost, TellsOfOneContent) {
  post({21});

  EXPECT_THAT(shown(), ElementsAre("string 133"));
}

TEST_F(QuickPost, TellsOfSeveralContents) {
  post({21, 22});

  EXPECT_THAT(shown(), ElementsAre("string 135"));
}

TEST_F(QuickPost, LogsTheAlbumOfTheSettings) {
  fake::settings().values[kAlbumKey] = std::string("8000000001");

  post({21});

  EXPECT_TRUE(
      logged(PB_LOG_INFO, "[mb_vesk_media_quick_post]NAID str=8000000001, value=8000000001\n"));
}

TEST_F(QuickPost, GoesOnWithoutASetting) {
  fake::settings().failure = "no daemon";

  EXPECT_EQ(post({21}), 1);

  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_quick_post]NAID str=(null), value=0\n"));
  EXPECT_THAT(requests(), SizeIs(1));
}

TEST_F(QuickPost, RefusesAHandle) {
  EXPECT_EQ(mb_vesk_media_quick_post(44, nullptr), 0);

  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_TRUE(logged(PB_LOG_ERROR,
                     "[mb_vesk_media_quick_post] Handle should be not be passed for "
                     "this function \n"));
}

TEST_F(QuickPost, ShowsNothingAfterARefusal) {
  platform().vesk_svc_content_album_get = [](guint32, gint, gint, gint, const VeskFilter *,
                                             gpointer) { return 0; };

  EXPECT_EQ(post({21}), 0);

  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
  EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(QuickPost, SendsItsContentsToTheAlbum) {
  post({21, 22});

  reply({8});
  fake::run_idles();

  EXPECT_THAT(requests(), Contains("vesk_svc_content_album_addcontent(44, {21, 22}, 8)"));
  EXPECT_THAT(batch_lines(), ElementsAre("[add_to_album_idle] Count < 30\n"));
}

TEST_F(QuickPost, SendsBatchesOfAThousand) {
  post(numbers(2500));

  reply({8});
  fake::run_idles();

  EXPECT_THAT(batches_, ElementsAre(1000, 1000, 500));
  EXPECT_EQ(sent_, numbers(2500));
  EXPECT_THAT(batch_lines(),
              ElementsAre("[add_to_album_idle] Count = 30\n", "[add_to_album_idle] Count = 30\n",
                          "[add_to_album_idle] Count < 30\n"));
}

TEST_F(QuickPost, SendsNoEmptyBatch) {
  post(numbers(2000));

  reply({8});
  fake::run_idles();

  EXPECT_THAT(batches_, ElementsAre(1000, 1000));
}

TEST_F(QuickPost, GoesOnAfterABatchThatWasRefused) {
  platform().vesk_svc_content_album_addcontent = [this](guint32, gint count, const gint64 *, gint64,
                                                        gpointer) {
    batches_.push_back(count);
    return 0;
  };
  post(numbers(1001));

  reply({8});
  fake::run_idles();

  EXPECT_THAT(batches_, ElementsAre(1000, 1));
}

TEST_F(QuickPost, SendsOnTheMainLoopOnly) {
  post({21});

  reply({8});

  EXPECT_THAT(batches_, IsEmpty());
}

TEST_F(QuickPost, OfNothingIsLogged) {
  post({});

  reply({8});
  fake::run_idles();

  EXPECT_THAT(batches_, IsEmpty());
  EXPECT_TRUE(logged(PB_LOG_WARNING, "[add_to_album_idle] nelem is ZERO \n"));
}

TEST_F(QuickPost, EndsWithoutAnAlbum) {
  for (const std::vector<gint64> &albums : {std::vector<gint64>{}, std::vector<gint64>{-1}}) {
    post({21});

    reply(albums);
    fake::run_idles();

    EXPECT_THAT(batches_, IsEmpty());
  }
}

TEST_F(QuickPost, EndsWithAFailedReply) {
  post({21});
  fake::advance_clock(0);

  reply({8}, 9);
  fake::run_idles();

  EXPECT_THAT(batches_, IsEmpty());
  EXPECT_THAT(shown_after(1000), ElementsAre("string 125"));
}

TEST_F(QuickPost, IsRepliedToOnce) {
  post({21});

  reply({8});
  reply({8});
  fake::run_idles();

  EXPECT_THAT(batches_, ElementsAre(1));
}

TEST_F(QuickPost, EndsWithItsRegistration) {
  post({21});

  mb_vesk_deregister_app(44);
  reply({8});
  fake::run_idles();

  EXPECT_THAT(batches_, IsEmpty());
}

TEST_F(UserData, OfNoRequestIsLogged) {
  send({VESK_CONTENT_REQ_ALBUM_GET, {8}, ""});

  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_svc_notification_cb]download_data == NULL\n"));
  EXPECT_THAT(fake::pending_sources(), IsEmpty());
}

TEST_F(UserData, OfANullPointerIsNone) {
  send({VESK_CONTENT_REQ_ALBUM_GET, {8}, bytes_of(gpointer{})});

  EXPECT_TRUE(logged(PB_LOG_INFO, "[mb_vesk_media_svc_notification_cb]download_data == NULL\n"));
}

TEST_F(UserData, OfAnotherSizeIsDropped) {
  for (const std::size_t size : {1U, 4U, 7U, 9U, 16U}) {
    fake::take_log();

    send({VESK_CONTENT_REQ_ALBUM_GET, {8}, std::string(size, '\1')});

    EXPECT_TRUE(logged(PB_LOG_ERROR,
                       "[mb_vesk_media_svc_notification_cb]Error in noti parameter value\n\n"))
        << size;
  }
}

TEST_F(UserData, OfAListOfAlbumsIsFreedOnTheMainLoop) {
  MbDownloadData *record = mb_util_content_download_new();
  record->timer_tag = gdk_threads_add_timeout(
      5000, [](gpointer) { return FALSE; }, nullptr);
  mb_vesk_get_web_albums(44, record, 0, 30);

  reply({8});
  EXPECT_THAT(intervals(), ElementsAre(5000U));
  fake::run_idles();

  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
  EXPECT_THAT(batches_, IsEmpty());
}

TEST_F(UserData, OfAListOfContentsIsFreedOnTheMainLoop) {
  platform().vesk_svc_content_file_get = [this](guint32, gint, const VeskContentRequest *,
                                                gpointer user_data) {
    user_data_ = bytes_of(user_data);
    return 1;
  };
  MbDownloadData *record = mb_util_content_download_new();
  record->timer_tag = gdk_threads_add_timeout(
      5000, [](gpointer) { return FALSE; }, nullptr);
  mb_vesk_media_get_web_album_contents(44, 8, 0, 30, record);

  send({VESK_CONTENT_REQ_FILE_GET, {}, user_data_, 9});
  fake::run_idles();

  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
}

TEST_F(UserData, IsNotTheAddressOfAnything) {
  MbDownloadData *record = mb_util_content_download_new();
  mb_vesk_get_web_albums(44, record, 0, 30);

  EXPECT_NE(user_data_, bytes_of(record));

  reply({});
}

TEST_F(UserData, IsNeverUsedTwice) {
  post({21});
  const std::string first = user_data_;
  reply({});
  fake::run_idles();
  post({21});

  EXPECT_NE(user_data_, first);

  reply({});
}

TEST_F(UserData, OfADroppedReplyIsFreed) {
  MbDownloadData *record = mb_util_content_download_new();
  record->timer_tag = gdk_threads_add_timeout(
      5000, [](gpointer) { return FALSE; }, nullptr);
  mb_vesk_get_web_albums(44, record, 0, 30);
  std::vector<std::string> texts =
      vesk_test::texts_of({VESK_CONTENT_REQ_ALBUM_GET, {8}, user_data_});
  texts[1] = "?";

  vesk_test::send_texts(texts);
  fake::run_idles();

  EXPECT_THAT(fake::pending_timeouts(), IsEmpty());
}

}  // namespace

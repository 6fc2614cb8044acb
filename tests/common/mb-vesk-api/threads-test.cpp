// Replies from several threads of the service while the main loop asks and ends.
#include <atomic>
#include <mutex>
#include <random>
#include <thread>

#include "common/mb-vesk-api/vesk-fixture.hpp"

namespace {

using testing::Each;
using testing::SizeIs;
using vesk_test::bytes_of;
using vesk_test::send;

constexpr int kThreads = 4;
constexpr int kRequests = 300;
constexpr guint32 kHandle = 5;

/// The numbers of requests that wait for their replies.
class Inbox {
 public:
  void put(std::string number) {
    const std::scoped_lock lock(mutex_);
    numbers_.push_back(std::move(number));
  }
  std::string take() {
    const std::scoped_lock lock(mutex_);
    if (numbers_.empty()) return {};
    std::string number = std::move(numbers_.back());
    numbers_.pop_back();
    return number;
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> numbers_;  // guarded by mutex_
};

/// Replies until told to end and nothing waits, every time twice.
void serve(Inbox &inbox, const std::atomic<bool> &ended, gint32 event, gint32 error) {
  while (true) {
    const bool last = ended;
    const std::string number = inbox.take();
    if (number.empty() && last) return;
    if (number.empty()) {
      std::this_thread::yield();
      continue;
    }
    send({event, {8}, number, error});
    send({event, {8}, number, error});
  }
}

class ReplyThreads : public testing::Test {
 protected:
  void SetUp() override {
    fake::platform().vesk_svc_core_is_logout = [](guint32) { return 0; };
    fake::platform().vesk_svc_content_album_get = [this](guint32, gint, gint, gint,
                                                         const VeskFilter *, gpointer user_data) {
      inbox_.put(bytes_of(user_data));
      return 1;
    };
    for (int i = 0; i < kThreads; ++i) {
      const gint32 error = i % 2 == 0 ? 1 : 9;
      threads_.emplace_back(
          [this, error] { serve(inbox_, ended_, VESK_CONTENT_REQ_ALBUM_GET, error); });
    }
  }
  void end_threads() {
    ended_ = true;
    for (std::thread &thread : threads_) thread.join();
    threads_.clear();
  }
  /// A record that tells of its end by giving up its only download.
  static MbDownloadData *record(gint request_id) {
    MbDownloadData *data = mb_util_content_download_new();
    data->entries = g_new0(MbDownloadEntry, 1);
    data->n_entries = 1;
    data->entries[0].request_id = request_id;
    return data;
  }

  Inbox inbox_;
  std::atomic<bool> ended_ = false;
  std::vector<std::thread> threads_;
};

TEST_F(ReplyThreads, FreeEachRecordOnce) {
  for (int i = 1; i <= kRequests; ++i) {
    mb_vesk_get_web_albums(kHandle, record(i), 0, 30);
    if (i % 10 == 0) fake::run_idles();
  }
  end_threads();
  fake::run_idles();

  std::vector<std::string> freed = fake::calls_of("vesk_svc_download_util_abort_request");
  EXPECT_THAT(freed, SizeIs(kRequests));
  std::ranges::sort(freed);
  EXPECT_EQ(std::ranges::adjacent_find(freed), freed.end());
}

TEST_F(ReplyThreads, FreeEachRecordOnceBesideTheEndOfTheRegistration) {
  for (int i = 1; i <= kRequests; ++i) {
    mb_vesk_get_web_albums(kHandle, record(i), 0, 30);
    if (i % 7 == 0) mb_vesk_deregister_app(kHandle);
  }
  end_threads();
  fake::run_idles();

  EXPECT_THAT(fake::calls_of("vesk_svc_download_util_abort_request"), SizeIs(kRequests));
}

/// Fields that nobody has thought of, of which some are nearly right.
std::vector<std::string> random_texts(std::mt19937 &random) {
  static constexpr std::string_view kSigns = "AAAAAAAAQEg/+=ab\x80-_ ";
  std::vector<std::string> texts(random() % 6);
  for (std::string &text : texts) {
    if (random() % 2 == 0) {
      std::string bytes(random() % 40, '\0');
      for (char &byte : bytes) byte = static_cast<char>(random() % 4 == 0 ? random() : 0);
      text = vesk_test::encode(bytes);
    } else {
      text.resize(random() % 30);
      for (char &sign : text) sign = kSigns[random() % kSigns.size()];
    }
  }
  return texts;
}

TEST(RandomReplies, AreAlwaysHandled) {
  std::mt19937 random(1234);
  std::vector<gint> results;
  for (int round = 0; round < 20000; ++round) {
    const VeskResponseHeader header{static_cast<gint32>(random() % 3), 0,
                                    static_cast<gint32>(random() % 18) - 1};
    std::vector<std::string> texts = random_texts(random);
    if (!texts.empty() && random() % 4 != 0) texts[0] = vesk_test::encode(bytes_of(header));
    results.push_back(vesk_test::send_texts(texts));
    if (round % 1000 == 0) fake::take_log();
  }

  EXPECT_THAT(results, Each(1));
}

}  // namespace

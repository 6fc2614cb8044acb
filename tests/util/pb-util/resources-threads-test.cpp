#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "pb-util-resource.h"
#include "support/fake-platform.hpp"

namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 200;

/// Notes how many threads are in a look-up of one kind at once.
class Meeting {
 public:
  void pass() {
    const int here = ++inside_;
    int most = most_.load();
    while (here > most && !most_.compare_exchange_weak(most, here)) {
    }
    std::this_thread::yield();
    --inside_;
  }
  [[nodiscard]] int most() const { return most_; }

 private:
  std::atomic<int> inside_ = 0;
  std::atomic<int> most_ = 0;
};

TEST(ResourceThreads, LookUpsOfOneKindComeOneByOne) {
  Meeting strings;
  Meeting bitmaps;
  fake::platform().rsrc_get_string = [&strings](gint, gint) -> const gchar * {
    strings.pass();
    return "text";
  };
  fake::platform().rsrc_get_image = [&bitmaps](gint, gint) -> GdkPixbuf * {
    bitmaps.pass();
    return nullptr;
  };
  pb_res_open();

  std::vector<std::jthread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([] {
      for (int round = 0; round < kRounds; ++round) {
        pb_get_res_string(1000 + round);
        pb_get_pixbuf(round);
      }
    });
  }
  threads.clear();

  EXPECT_EQ(strings.most(), 1);
  EXPECT_EQ(bitmaps.most(), 1);
}

TEST(ResourceThreads, LookUpsStandOpeningAndClosing) {
  std::atomic<bool> bitmaps_open = false;
  std::atomic<int> closed_uses = 0;
  fake::platform().rsrc_open_rbm = [&bitmaps_open](const gchar *) {
    bitmaps_open = true;
    return 1;
  };
  fake::platform().rsrc_close_rbm = [&bitmaps_open](gint) { bitmaps_open = false; };
  fake::platform().rsrc_get_image = [&](gint, gint) -> GdkPixbuf * {
    if (!bitmaps_open) ++closed_uses;
    return nullptr;
  };
  fake::platform().rsrc_get_string = [](gint, gint) -> const gchar * { return "text"; };

  std::atomic<bool> stop = false;
  std::vector<std::jthread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&stop] {
      while (!stop) {
        pb_get_res_string(1000);
        pb_get_pixbuf(105);
      }
    });
  }
  for (int round = 0; round < kRounds; ++round) {
    pb_res_open();
    pb_res_close();
  }
  stop = true;
  threads.clear();

  EXPECT_EQ(closed_uses, 0);
}

}  // namespace

// Look-ups from many threads while the main loop opens and closes.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "resource-manager.h"

namespace {

constexpr const char *kBitmapFile =
    PB_PACKAGE_DIR "/usr/apps/com.velmora.photobrowser/res/bitmap/pb-res-bitmap-wvga.rbm";
constexpr const char *kStringFile =
    PB_PACKAGE_DIR "/usr/apps/com.velmora.photobrowser/res/string/pb-res-string.rsr";
constexpr int kThreads = 8;
constexpr int kRounds = 50;

}  // namespace

TEST(ResourceManagerThreads, AlwaysGetABitmap) {
  std::atomic<gint> bitmaps = -1;
  std::atomic<gint> strings = -1;
  std::atomic<bool> stop = false;
  std::atomic<int> missing = 0;
  std::vector<std::jthread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&] {
      while (!stop) {
        GdkPixbuf *bitmap = rsrc_get_image(bitmaps, 105);
        if (bitmap == nullptr) {
          ++missing;
        } else {
          g_object_unref(bitmap);
        }
        // What these give may be freed at once, so nobody reads it.
        rsrc_get_string(strings, 59);
        rsrc_get_system_string(10307);
      }
    });
  }

  for (int round = 0; round < kRounds; ++round) {
    bitmaps = rsrc_open_rbm(kBitmapFile);
    strings = rsrc_open_rsr(kStringFile);
    rsrc_close_rbm(bitmaps);
    rsrc_close_rsr(strings);
    rsrc_free_strings();
  }
  stop = true;
  threads.clear();

  EXPECT_EQ(missing, 0);
}

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "debug-log.h"
#include "support/glib-test.hpp"

using testing::SizeIs;

namespace {

constexpr guint32 kError = 0x1000000;
constexpr guint32 kModule = 0x53000000;

}  // namespace

TEST(DebugLog, KeepsLinesOfManyThreadsApart) {
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t] {
      for (int i = 0; i < 50; ++i) _debug_message(t, "m", kModule, kError, "%d %d", t, i);
    });
  }
  for (std::thread &thread : threads) thread.join();

  EXPECT_THAT(support::take_structured_lines(), SizeIs(200));
}

#include <debug-log.h>

#include <thread>

#include "support/fake-platform.hpp"

namespace {

using testing::Each;
using testing::SizeIs;

constexpr int kRounds = 500;

/// Runs a function on two threads at once.
template <typename Function>
void run_twice(Function function) {
  std::thread other(function);
  function();
  other.join();
}

gboolean count_run(gpointer counter) {
  ++*static_cast<int *>(counter);
  return FALSE;
}

TEST(Threads, LoseNoCall) {
  run_twice([] {
    for (int i = 0; i < kRounds; ++i) pm_control(2, 1);
  });

  EXPECT_THAT(fake::platform().calls, SizeIs(2 * kRounds));
  EXPECT_THAT(fake::platform().calls, Each("pm_control(2, 1)"));
}

TEST(Threads, LoseNoLogLine) {
  run_twice([] {
    for (int i = 0; i < kRounds; ++i) _debug_message(1, "m", 0, 0x4000000, "[%s]\n", "f");
  });

  EXPECT_THAT(fake::platform().log, SizeIs(2 * kRounds));
}

TEST(Threads, LoseNoWarning) {
  run_twice([] {
    for (int i = 0; i < kRounds; ++i) g_warning("elsewhere");
  });

  const std::vector<std::string> warnings = support::take_glib_warnings();
  EXPECT_THAT(warnings, SizeIs(2 * kRounds));
  EXPECT_THAT(warnings, Each("elsewhere"));
}

TEST(Threads, AddAndRemoveSources) {
  int runs = 0;

  run_twice([&runs] {
    for (int i = 0; i < kRounds; ++i) {
      gdk_threads_add_idle(count_run, &runs);
      g_source_remove(gdk_threads_add_timeout(1000, count_run, &runs));
    }
  });
  fake::run_idles();

  EXPECT_EQ(runs, 2 * kRounds);
  EXPECT_THAT(fake::pending_sources(), SizeIs(0));
}

}  // namespace

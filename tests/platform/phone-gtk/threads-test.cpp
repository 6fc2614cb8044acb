#include "phone-threads.h"

#include <gdk/gdk.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "support/glib-test.hpp"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class GdkLock : public support::GlibTest {
 protected:
  GdkLock() { phone_threads_init(); }
};

}  // namespace

TEST_F(GdkLock, KeepsAnotherThreadOut) {
  std::atomic<bool> entered = false;
  gdk_threads_enter();
  std::thread other([&entered] {
    gdk_threads_enter();
    entered = true;
    gdk_threads_leave();
  });
  g_usleep(20000);

  EXPECT_FALSE(entered);

  gdk_threads_leave();
  other.join();
  EXPECT_TRUE(entered);
}

TEST_F(GdkLock, IgnoresAnUnlockByAThreadThatDoesNotHoldIt) {
  gdk_threads_enter();
  std::thread([] { gdk_threads_leave(); }).join();
  EXPECT_THAT(take_glib_warnings(), ElementsAre("The GDK lock is not held by this thread."));

  std::atomic<bool> entered = false;
  std::thread other([&entered] {
    gdk_threads_enter();
    entered = true;
    gdk_threads_leave();
  });
  g_usleep(20000);
  EXPECT_FALSE(entered);
  gdk_threads_leave();
  other.join();
}

TEST_F(GdkLock, IgnoresAnUnlockWhenNobodyHoldsIt) {
  gdk_threads_leave();

  EXPECT_THAT(take_glib_warnings(), ElementsAre("The GDK lock is not held by this thread."));
}

TEST_F(GdkLock, DoesNotHangWhenItIsTakenTwice) {
  gdk_threads_enter();
  gdk_threads_enter();

  EXPECT_THAT(take_glib_warnings(), ElementsAre("The GDK lock is held by this thread already."));
  gdk_threads_leave();
}

TEST_F(GdkLock, CanBeTakenAgainAndAgain) {
  for (int i = 0; i < 3; ++i) {
    gdk_threads_enter();
    gdk_threads_leave();
  }

  EXPECT_THAT(take_glib_warnings(), IsEmpty());
}

TEST_F(GdkLock, IsInitialisedOnce) {
  phone_threads_init();
  gdk_threads_enter();
  gdk_threads_leave();

  EXPECT_THAT(take_glib_warnings(), IsEmpty());
}

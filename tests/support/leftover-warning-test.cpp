// Tests that have to fail: the program's exit status and output are what is looked at.
#include "support/glib-test.hpp"

namespace {

TEST(LeftoverWarning, FailsItsTest) { g_warning("nobody takes this"); }

TEST(LeftoverWarning, DoesNotReachTheNextTest) {
  EXPECT_THAT(support::take_glib_warnings(), testing::IsEmpty());
}

}  // namespace

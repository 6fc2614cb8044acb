#include <gmock/gmock.h>

#include "support/process.hpp"

namespace {

/// Priority 101 is the first that programs may use: ahead of every static object.
[[gnu::constructor(101)]] void set_environment_up() { support::enter_private_environment(); }

}  // namespace

int main(int argc, char **argv) {
  testing::InitGoogleMock(&argc, argv);
  support::record_glib_log();
  const int result = RUN_ALL_TESTS();
  support::leave_private_environment();
  return result;
}

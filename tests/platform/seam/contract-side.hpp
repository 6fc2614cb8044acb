/// What a contract test does differently on the two sides of the seam: it is built once with the
/// host's service and once, with CONTRACT_OF_FAKES, with the fakes.
#pragma once

#include <glib.h>

#ifdef CONTRACT_OF_FAKES
#include "support/fake-clock.hpp"
#endif

namespace contract {

/// Runs every source that is due at once.
inline void let_main_loop_run() {
#ifdef CONTRACT_OF_FAKES
  fake::run_idles();
#endif
  while (g_main_context_iteration(nullptr, FALSE)) {
  }
}

/// Lets so much time pass and runs what becomes due.
inline void let_time_pass(unsigned milliseconds) {
#ifdef CONTRACT_OF_FAKES
  fake::advance_clock(milliseconds);
#else
  const gint64 end = g_get_monotonic_time() + gint64{milliseconds} * 1000;
  while (g_get_monotonic_time() <= end) {
    if (!g_main_context_iteration(nullptr, FALSE)) g_usleep(500);
  }
#endif
}

}  // namespace contract

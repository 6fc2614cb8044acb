/// The main loop, for tests of what arrives there.
#pragma once

#include <glib.h>

#include <functional>

namespace test {

/// Runs the main loop until something holds; tells whether it did within some seconds.
inline bool run_until(const std::function<bool()> &holds, int seconds = 20) {
  const gint64 deadline = g_get_monotonic_time() + seconds * G_TIME_SPAN_SECOND;
  // Wakes the loop now and then, for what does not come through it.
  const guint tick = g_timeout_add(
      5, [](gpointer) -> gboolean { return TRUE; }, nullptr);
  while (!holds() && g_get_monotonic_time() < deadline) g_main_context_iteration(nullptr, TRUE);
  g_source_remove(tick);
  return holds();
}

/// Runs the main loop for a while.
inline void run_for(int milliseconds) {
  const gint64 end = g_get_monotonic_time() + milliseconds * G_TIME_SPAN_MILLISECOND;
  run_until([end] { return g_get_monotonic_time() >= end; });
}

}  // namespace test

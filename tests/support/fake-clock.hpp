/// A pretended clock and main loop for programs linked with fake-platform: what the code under
/// test adds with gdk_threads_add_timeout(), gdk_threads_add_idle(), g_timeout_add(),
/// g_idle_add() and their _full forms, and removes with g_source_remove(), stays here until the
/// test runs it. Sources of GTK+ itself are not touched.
#pragma once

#include <glib.h>

#include <iosfwd>
#include <vector>

namespace fake {

/// A source that has been added and has neither ended nor been removed.
struct PendingSource {
  guint id;
  bool idle;          ///< else a timeout
  int priority;       ///< G_PRIORITY_DEFAULT for a timeout, G_PRIORITY_DEFAULT_IDLE for an idle
  guint interval_ms;  ///< 0 for an idle
  guint64 due_ms;     ///< on the pretended clock; 0 for an idle
  GSourceFunc function;
  gpointer data;

  bool operator==(const PendingSource &) const = default;
};
void PrintTo(const PendingSource &source, std::ostream *out);

/// Milliseconds since the test began.
guint64 clock_now();

/// Moves the clock on and runs the timeouts that become due on the way, in the order of their
/// times; a timeout that returns TRUE is due again. Idles are not run.
void advance_clock(guint64 ms);

/// Runs the pending idle with the smallest priority number, the oldest of these. Returns false
/// when none is pending.
bool run_next_idle();

/// Runs idles until none is pending and returns how many runs that were. Idles added meanwhile
/// are run too; a test whose idles never end fails after 100,000 runs.
int run_idles();

/// Everything pending, in the order in which it was added.
std::vector<PendingSource> pending_sources();
/// Pending idles, in the order in which they were added.
std::vector<PendingSource> pending_idles();
/// Pending timeouts, in the order in which they were added.
std::vector<PendingSource> pending_timeouts();

}  // namespace fake

#include "support/fake-clock.hpp"

#include <gdk/gdk.h>

#include <algorithm>
#include <mutex>
#include <optional>
#include <ostream>

#include "fakes/journal.hpp"

namespace fake {
namespace {

/// Far above what GLib gives out in a test.
constexpr guint kFirstId = 1'000'000;
constexpr int kMostIdleRuns = 100'000;

struct Source {
  PendingSource what;
  GDestroyNotify notify;
  bool with_gdk_lock;
};

/// The pretended main loop. Any thread may add and remove; the test's thread runs.
struct Loop {
  std::mutex mutex;
  std::vector<Source> sources;  // guarded by mutex, in the order in which they were added
  guint next_id = kFirstId;     // guarded by mutex; never used twice in a process
  guint64 now_ms = 0;           // guarded by mutex
};

/// Never destroyed: static objects of the code under test may still remove their sources.
Loop &loop() {
  static auto *instance = new Loop;
  return *instance;
}

guint add(bool idle, int priority, guint interval_ms, GSourceFunc function, gpointer data,
          GDestroyNotify notify, bool with_gdk_lock) {
  const std::scoped_lock lock(loop().mutex);
  const guint id = loop().next_id++;
  const guint64 due = idle ? 0 : loop().now_ms + interval_ms;
  loop().sources.push_back(
      {{id, idle, priority, interval_ms, due, function, data}, notify, with_gdk_lock});
  return id;
}

/// Takes a source out of the loop.
std::optional<Source> take(guint id) {
  const std::scoped_lock lock(loop().mutex);
  const auto found =
      std::ranges::find(loop().sources, id, [](const Source &source) { return source.what.id; });
  if (found == loop().sources.end()) return std::nullopt;
  Source source = *found;
  loop().sources.erase(found);
  return source;
}

bool is_pending(guint id) {
  const std::scoped_lock lock(loop().mutex);
  return std::ranges::any_of(loop().sources,
                             [id](const Source &source) { return source.what.id == id; });
}

void finish(const Source &source) {
  if (source.notify != nullptr) source.notify(source.what.data);
}

/// Runs a source that stays in the loop meanwhile, so that it can be removed from within.
void run(const Source &source) {
  if (source.with_gdk_lock) gdk_threads_enter();
  const gboolean again = source.what.function(source.what.data);
  if (source.with_gdk_lock) gdk_threads_leave();
  if (again) return;
  if (const std::optional<Source> ended = take(source.what.id)) finish(*ended);
}

/// The idle to run next: the smallest priority number, then the oldest.
std::optional<Source> next_idle() {
  const std::scoped_lock lock(loop().mutex);
  const Source *best = nullptr;
  for (const Source &source : loop().sources) {
    if (!source.what.idle) continue;
    if (best == nullptr || source.what.priority < best->what.priority) best = &source;
  }
  return best != nullptr ? std::optional(*best) : std::nullopt;
}

/// The timeout that is due first, not later than a time; sets the clock to its time and makes it
/// due again.
std::optional<Source> next_timeout(guint64 until) {
  const std::scoped_lock lock(loop().mutex);
  Source *best = nullptr;
  for (Source &source : loop().sources) {
    if (source.what.idle || source.what.due_ms > until) continue;
    if (best == nullptr || source.what.due_ms < best->what.due_ms ||
        (source.what.due_ms == best->what.due_ms && source.what.priority < best->what.priority)) {
      best = &source;
    }
  }
  if (best == nullptr) return std::nullopt;
  loop().now_ms = std::max(loop().now_ms, best->what.due_ms);
  // A timeout of 0 ms would be due for ever.
  best->what.due_ms = loop().now_ms + std::max(best->what.interval_ms, 1u);
  return *best;
}

/// An idle goes behind its equals after a run, as in GLib's round of ready sources.
void move_to_the_end(guint id) {
  const std::scoped_lock lock(loop().mutex);
  const auto found =
      std::ranges::find(loop().sources, id, [](const Source &source) { return source.what.id; });
  if (found != loop().sources.end()) std::rotate(found, found + 1, loop().sources.end());
}

std::vector<PendingSource> pending(bool idles, bool timeouts) {
  const std::scoped_lock lock(loop().mutex);
  std::vector<PendingSource> result;
  for (const Source &source : loop().sources) {
    if (source.what.idle ? idles : timeouts) result.push_back(source.what);
  }
  return result;
}

}  // namespace

void PrintTo(const PendingSource &source, std::ostream *out) {
  *out << (source.idle ? "idle " : "timeout ") << source.id << " of priority " << source.priority;
  if (!source.idle) *out << ", every " << source.interval_ms << " ms, due at " << source.due_ms;
}

void reset_clock() {
  std::vector<Source> old;
  {
    const std::scoped_lock lock(loop().mutex);
    old.swap(loop().sources);
    loop().now_ms = 0;
  }
  for (const Source &source : old) finish(source);
}

guint64 clock_now() {
  const std::scoped_lock lock(loop().mutex);
  return loop().now_ms;
}

void advance_clock(guint64 ms) {
  const guint64 until = clock_now() + ms;
  while (const std::optional<Source> source = next_timeout(until)) run(*source);
  const std::scoped_lock lock(loop().mutex);
  loop().now_ms = until;
}

bool run_next_idle() {
  const std::optional<Source> source = next_idle();
  if (!source) return false;
  run(*source);
  if (is_pending(source->what.id)) move_to_the_end(source->what.id);
  return true;
}

int run_idles() {
  int runs = 0;
  while (run_next_idle()) {
    if (++runs == kMostIdleRuns) {
      ADD_FAILURE() << "the idles did not end after " << runs << " runs";
      break;
    }
  }
  return runs;
}

std::vector<PendingSource> pending_sources() { return pending(true, true); }
std::vector<PendingSource> pending_idles() { return pending(true, false); }
std::vector<PendingSource> pending_timeouts() { return pending(false, true); }

}  // namespace fake

// What the linker puts in the place of GLib's and GDK's functions.
extern "C" {

guint __wrap_gdk_threads_add_timeout_full(gint priority, guint interval, GSourceFunc function,
                                          gpointer data, GDestroyNotify notify);
guint __wrap_gdk_threads_add_timeout(guint interval, GSourceFunc function, gpointer data);
guint __wrap_gdk_threads_add_idle_full(gint priority, GSourceFunc function, gpointer data,
                                       GDestroyNotify notify);
guint __wrap_gdk_threads_add_idle(GSourceFunc function, gpointer data);
guint __wrap_g_timeout_add_full(gint priority, guint interval, GSourceFunc function, gpointer data,
                                GDestroyNotify notify);
guint __wrap_g_timeout_add(guint interval, GSourceFunc function, gpointer data);
guint __wrap_g_idle_add_full(gint priority, GSourceFunc function, gpointer data,
                             GDestroyNotify notify);
guint __wrap_g_idle_add(GSourceFunc function, gpointer data);
gboolean __real_g_source_remove(guint id);
gboolean __wrap_g_source_remove(guint id);

guint __wrap_gdk_threads_add_timeout_full(gint priority, guint interval, GSourceFunc function,
                                          gpointer data, GDestroyNotify notify) {
  return fake::add(false, priority, interval, function, data, notify, true);
}

guint __wrap_gdk_threads_add_timeout(guint interval, GSourceFunc function, gpointer data) {
  return fake::add(false, G_PRIORITY_DEFAULT, interval, function, data, nullptr, true);
}

guint __wrap_gdk_threads_add_idle_full(gint priority, GSourceFunc function, gpointer data,
                                       GDestroyNotify notify) {
  return fake::add(true, priority, 0, function, data, notify, true);
}

guint __wrap_gdk_threads_add_idle(GSourceFunc function, gpointer data) {
  return fake::add(true, G_PRIORITY_DEFAULT_IDLE, 0, function, data, nullptr, true);
}

guint __wrap_g_timeout_add_full(gint priority, guint interval, GSourceFunc function, gpointer data,
                                GDestroyNotify notify) {
  return fake::add(false, priority, interval, function, data, notify, false);
}

guint __wrap_g_timeout_add(guint interval, GSourceFunc function, gpointer data) {
  return fake::add(false, G_PRIORITY_DEFAULT, interval, function, data, nullptr, false);
}

guint __wrap_g_idle_add_full(gint priority, GSourceFunc function, gpointer data,
                             GDestroyNotify notify) {
  return fake::add(true, priority, 0, function, data, notify, false);
}

guint __wrap_g_idle_add(GSourceFunc function, gpointer data) {
  return fake::add(true, G_PRIORITY_DEFAULT_IDLE, 0, function, data, nullptr, false);
}

gboolean __wrap_g_source_remove(guint id) {
  if (id < fake::kFirstId) return __real_g_source_remove(id);
  const std::optional<fake::Source> removed = fake::take(id);
  if (!removed) {
    g_critical("Source ID %u was not found when attempting to remove it", id);
    return FALSE;
  }
  fake::finish(*removed);
  return TRUE;
}

}  // extern "C"

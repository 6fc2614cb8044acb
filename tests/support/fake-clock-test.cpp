#include "support/fake-clock.hpp"

#include <gdk/gdk.h>

#include "support/glib-test.hpp"

namespace {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

/// Writes its name into a common trace, and ends when it has run so often.
struct Step {
  std::string name;
  std::vector<std::string> *trace;
  int runs = 1;
  guint remove = 0;
};

gboolean run_step(gpointer data) {
  auto *step = static_cast<Step *>(data);
  step->trace->push_back(step->name);
  if (step->remove != 0) g_source_remove(step->remove);
  return --step->runs > 0;
}

void note_end(gpointer data) {
  auto *step = static_cast<Step *>(data);
  step->trace->push_back(step->name + " ended");
}

class FakeClock : public support::GlibTest {
 protected:
  std::vector<std::string> trace_;
  Step a_{"a", &trace_};
  Step b_{"b", &trace_};
  Step c_{"c", &trace_};
};

TEST_F(FakeClock, RunsNothingByItself) {
  gdk_threads_add_timeout(1, run_step, &a_);
  gdk_threads_add_idle(run_step, &b_);

  while (g_main_context_iteration(nullptr, FALSE)) {
  }

  EXPECT_THAT(trace_, IsEmpty());
}

TEST_F(FakeClock, RunsATimeoutWhenItIsDue) {
  gdk_threads_add_timeout(40000, run_step, &a_);

  fake::advance_clock(39999);
  EXPECT_THAT(trace_, IsEmpty());
  fake::advance_clock(1);

  EXPECT_THAT(trace_, ElementsAre("a"));
  EXPECT_EQ(fake::clock_now(), 40000u);
  EXPECT_THAT(fake::pending_sources(), IsEmpty());
}

TEST_F(FakeClock, RunsTimeoutsInTheOrderOfTheirTimes) {
  gdk_threads_add_timeout(300, run_step, &a_);
  gdk_threads_add_timeout(100, run_step, &b_);
  g_timeout_add(200, run_step, &c_);

  fake::advance_clock(1000);

  EXPECT_THAT(trace_, ElementsAre("b", "c", "a"));
}

TEST_F(FakeClock, RunsATimeoutAgainThatReturnsTrue) {
  a_.runs = 3;
  gdk_threads_add_timeout(100, run_step, &a_);

  fake::advance_clock(200);

  EXPECT_THAT(trace_, ElementsAre("a", "a"));
  EXPECT_THAT(fake::pending_timeouts(), ElementsAre(Field(&fake::PendingSource::due_ms, 300)));
}

TEST_F(FakeClock, CountsATimeoutFromTheTimeOfItsAddition) {
  fake::advance_clock(500);
  gdk_threads_add_timeout(100, run_step, &a_);

  fake::advance_clock(99);

  EXPECT_THAT(trace_, IsEmpty());
}

TEST_F(FakeClock, RunsIdlesByPriorityThenAge) {
  gdk_threads_add_idle(run_step, &a_);
  gdk_threads_add_idle_full(130, run_step, &b_, nullptr);
  g_idle_add(run_step, &c_);

  EXPECT_EQ(fake::run_idles(), 3);

  EXPECT_THAT(trace_, ElementsAre("b", "a", "c"));
}

TEST_F(FakeClock, RunsOneIdleAtATime) {
  a_.runs = 2;
  gdk_threads_add_idle(run_step, &a_);
  gdk_threads_add_idle(run_step, &b_);

  EXPECT_TRUE(fake::run_next_idle());
  EXPECT_THAT(trace_, ElementsAre("a"));
  EXPECT_TRUE(fake::run_next_idle());
  EXPECT_TRUE(fake::run_next_idle());
  EXPECT_FALSE(fake::run_next_idle());

  EXPECT_THAT(trace_, ElementsAre("a", "b", "a"));
}

TEST_F(FakeClock, LeavesIdlesAloneWhenTimePasses) {
  gdk_threads_add_idle(run_step, &a_);

  fake::advance_clock(1000);

  EXPECT_THAT(trace_, IsEmpty());
}

TEST_F(FakeClock, TellsWhatIsPending) {
  const guint idle = gdk_threads_add_idle_full(130, run_step, &a_, nullptr);
  const guint timeout = gdk_threads_add_timeout(1000, run_step, &b_);

  EXPECT_THAT(fake::pending_idles(),
              ElementsAre(fake::PendingSource{idle, true, 130, 0, 0, run_step, &a_}));
  EXPECT_THAT(fake::pending_timeouts(),
              ElementsAre(fake::PendingSource{timeout, false, G_PRIORITY_DEFAULT, 1000, 1000,
                                              run_step, &b_}));
}

TEST_F(FakeClock, RemovesASource) {
  const guint id = gdk_threads_add_timeout(100, run_step, &a_);

  EXPECT_TRUE(g_source_remove(id));
  fake::advance_clock(100);

  EXPECT_THAT(trace_, IsEmpty());
}

TEST_F(FakeClock, WarnsAboutTheRemovalOfASourceThatIsGone) {
  const guint id = gdk_threads_add_timeout(100, run_step, &a_);
  fake::advance_clock(100);

  EXPECT_FALSE(g_source_remove(id));

  EXPECT_THAT(take_glib_warnings(), ElementsAre("Source ID " + std::to_string(id) +
                                                " was not found when attempting to remove it"));
}

TEST_F(FakeClock, LetsASourceRemoveItself) {
  const guint id = gdk_threads_add_timeout_full(G_PRIORITY_DEFAULT, 100, run_step, &a_, note_end);
  a_.runs = 5;
  a_.remove = id;

  fake::advance_clock(1000);

  EXPECT_THAT(trace_, ElementsAre("a", "a ended"));
}

TEST_F(FakeClock, LetsASourceRemoveAnother) {
  gdk_threads_add_timeout(100, run_step, &a_);
  a_.remove = gdk_threads_add_timeout(100, run_step, &b_);

  fake::advance_clock(1000);

  EXPECT_THAT(trace_, ElementsAre("a"));
}

TEST_F(FakeClock, TellsTheEndOnce) {
  gdk_threads_add_idle_full(G_PRIORITY_DEFAULT_IDLE, run_step, &a_, note_end);
  const guint id = g_timeout_add_full(G_PRIORITY_DEFAULT, 50, run_step, &b_, note_end);

  fake::run_idles();
  g_source_remove(id);

  EXPECT_THAT(trace_, ElementsAre("a", "a ended", "b ended"));
}

gboolean note_real_source(gpointer data) {
  static_cast<std::vector<std::string> *>(data)->push_back("real");
  return FALSE;
}

TEST_F(FakeClock, LeavesOtherSourcesToGlib) {
  GSource *source = g_idle_source_new();
  g_source_set_callback(source, note_real_source, &trace_, nullptr);
  const guint id = g_source_attach(source, nullptr);
  g_source_unref(source);

  EXPECT_TRUE(g_source_remove(id));
  while (g_main_context_iteration(nullptr, FALSE)) {
  }

  EXPECT_THAT(trace_, IsEmpty());
}

}  // namespace

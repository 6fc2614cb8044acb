#include "debug-log/repeats.hpp"

#include <gtest/gtest.h>

using phone::debug_log::Repeats;

namespace {

class RepeatsOfALine : public testing::Test {
 protected:
  /// Sends the line `times` at one moment and counts how often it is to be written.
  guint send(int times, gint64 now) {
    guint written = 0;
    for (int i = 0; i < times; ++i) written += repeats_.admit(7, "same", now).write ? 1 : 0;
    return written;
  }

  Repeats repeats_;
};

}  // namespace

TEST_F(RepeatsOfALine, AreWrittenUpToTheBurst) {
  EXPECT_EQ(send(Repeats::kBurst, 0), Repeats::kBurst);
}

TEST_F(RepeatsOfALine, BeyondTheBurstAreLeftOut) { EXPECT_EQ(send(100, 0), Repeats::kBurst); }

TEST_F(RepeatsOfALine, AreWrittenAgainAfterThePeriod) {
  send(100, 0);

  EXPECT_EQ(send(1, Repeats::kPeriodUs), 1U);
}

TEST_F(RepeatsOfALine, AreStillLeftOutJustBeforeThePeriodEnds) {
  send(100, 0);

  EXPECT_EQ(send(1, Repeats::kPeriodUs - 1), 0U);
}

TEST_F(RepeatsOfALine, AreCountedWhenTheLineComesBack) {
  send(25, 0);

  const auto verdict = repeats_.admit(7, "same", Repeats::kPeriodUs);

  EXPECT_EQ(verdict.left_out, 25 - Repeats::kBurst);
  EXPECT_EQ(verdict.left_out_text, "same");
}

TEST_F(RepeatsOfALine, DoNotHoldBackAnotherLine) {
  send(100, 0);

  EXPECT_TRUE(repeats_.admit(7, "other", 0).write);
}

TEST_F(RepeatsOfALine, DoNotHoldBackTheSameTextFromAnotherPlace) {
  send(100, 0);

  EXPECT_TRUE(repeats_.admit(8, "same", 0).write);
}

TEST_F(RepeatsOfALine, TellNothingWhenNoneWasLeftOut) {
  send(2, 0);

  EXPECT_EQ(repeats_.admit(7, "same", Repeats::kPeriodUs).left_out, 0U);
}

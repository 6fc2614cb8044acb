#include "phone-gtk/kinetic.hpp"

#include <gmock/gmock.h>

using phone::gtk::Glide;
using phone::gtk::VelocityTracker;
using testing::DoubleNear;

namespace {

TEST(VelocityTracker, IsStillWithoutAMovement) {
  VelocityTracker tracker;
  tracker.add(100, 50);

  EXPECT_EQ(tracker.velocity(100), 0);
}

TEST(VelocityTracker, TellsPixelsAMillisecond) {
  VelocityTracker tracker;
  for (std::uint32_t i = 0; i <= 5; ++i) tracker.add(1000 + i * 10, i * 20.0);

  EXPECT_THAT(tracker.velocity(1050), DoubleNear(2.0, 1e-9));
}

TEST(VelocityTracker, ForgetsWhatIsLongAgo) {
  VelocityTracker tracker;
  tracker.add(0, 0);
  tracker.add(10, 1000);
  for (std::uint32_t i = 0; i <= 12; ++i) tracker.add(500 + i * 10, 1000 + i * 1.0);

  EXPECT_THAT(tracker.velocity(620), DoubleNear(0.1, 1e-9));
}

TEST(VelocityTracker, IsStillAfterARest) {
  VelocityTracker tracker;
  tracker.add(0, 0);
  tracker.add(10, 100);

  EXPECT_EQ(tracker.velocity(500), 0);
}

TEST(VelocityTracker, SurvivesTheWrapOfTheServersClock) {
  VelocityTracker tracker;
  tracker.add(0xfffffff0U, 0);
  tracker.add(0x10U, 32);

  EXPECT_THAT(tracker.velocity(0x10U), DoubleNear(1.0, 1e-9));
}

TEST(VelocityTracker, HasALimit) {
  VelocityTracker tracker;
  tracker.add(0, 0);
  tracker.add(1, 100'000);

  EXPECT_EQ(tracker.velocity(1), 8.0);
}

TEST(VelocityTracker, IsStillWhenTwoPositionsHaveOneTime) {
  VelocityTracker tracker;
  tracker.add(5, 0);
  tracker.add(5, 100);

  EXPECT_EQ(tracker.velocity(5), 0);
}

TEST(Glide, BeginsWhereTheFingerLeft) { EXPECT_EQ(Glide(300, 1).position(0), 300); }

TEST(Glide, MovesOnInItsDirection) {
  EXPECT_GT(Glide(300, 1).position(100), 350);
  EXPECT_LT(Glide(300, -1).position(100), 250);
}

TEST(Glide, SlowsDown) {
  const Glide glide(0, 1);

  EXPECT_LT(glide.position(200) - glide.position(100), glide.position(100));
}

TEST(Glide, ComesToAnEnd) {
  const Glide glide(0, 2);

  EXPECT_FALSE(glide.over(100));
  EXPECT_TRUE(glide.over(5000));
}

TEST(Glide, IsNotWorthwhileForASlowRelease) {
  EXPECT_FALSE(Glide::worthwhile(0.05));
  EXPECT_TRUE(Glide::worthwhile(-0.5));
}

}  // namespace

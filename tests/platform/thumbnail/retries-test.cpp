#include "thumbnail/retries.hpp"

#include "support/glib-test.hpp"

namespace phone::thumbnail {
namespace {

using testing::Optional;

constexpr gint64 kNow = 1000 * G_TIME_SPAN_SECOND;

TEST(Retries, HasNothingToWaitForAtFirst) {
  const Retries retries;

  EXPECT_EQ(retries.next(), std::nullopt);
}

TEST(Retries, TellsWhenTheNextTryIsDue) {
  Retries retries;

  retries.failed("late", kNow + 1);
  retries.failed("early", kNow);

  EXPECT_THAT(retries.next(), Optional(kNow + Retries::kPauses[0]));
}

TEST(Retries, HoldsAFileBackUntilItIsDue) {
  Retries retries;
  retries.failed("a", kNow);

  EXPECT_EQ(retries.take(kNow + Retries::kPauses[0] - 1), std::nullopt);
  EXPECT_TRUE(retries.is_waiting("a"));
}

TEST(Retries, HandsOutAFileThatIsDueOnce) {
  Retries retries;
  retries.failed("a", kNow);

  EXPECT_THAT(retries.take(kNow + Retries::kPauses[0]), Optional(std::string("a")));

  EXPECT_EQ(retries.take(kNow + Retries::kPauses[0]), std::nullopt);
  EXPECT_EQ(retries.next(), std::nullopt);
  EXPECT_FALSE(retries.is_waiting("a"));
}

TEST(Retries, WaitsLongerEachTime) {
  Retries retries;
  retries.failed("a", kNow);
  retries.take(kNow + Retries::kPauses[0]);

  retries.failed("a", kNow);

  EXPECT_THAT(retries.next(), Optional(kNow + Retries::kPauses[1]));
}

TEST(Retries, DropsAFileAfterTheLastTry) {
  Retries retries;
  for (std::size_t i = 0; i <= std::size(Retries::kPauses); ++i) {
    retries.failed("a", kNow);
    retries.take(kNow + Retries::kPauses[2]);
  }

  EXPECT_FALSE(retries.is_waiting("a"));
  EXPECT_EQ(retries.next(), std::nullopt);
}

TEST(Retries, BeginsAnewWithAFileThatWasDone) {
  Retries retries;
  retries.failed("a", kNow);
  retries.take(kNow + Retries::kPauses[0]);
  retries.done("a");

  retries.failed("a", kNow);

  EXPECT_THAT(retries.next(), Optional(kNow + Retries::kPauses[0]));
}

TEST(Retries, TakesNoMoreFilesThanItsLimit) {
  Retries retries;
  for (std::size_t i = 0; i < Retries::kMost; ++i) retries.failed(std::to_string(i), kNow);

  retries.failed("one more", kNow);

  EXPECT_FALSE(retries.is_waiting("one more"));
}

}  // namespace
}  // namespace phone::thumbnail

#include "thumbnail/wish-queue.hpp"

#include "support/glib-test.hpp"

namespace phone::thumbnail {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// All that is left, in the order in which it is made.
std::vector<std::string> taken(WishQueue &queue) {
  std::vector<std::string> paths;
  while (const auto path = queue.take()) paths.push_back(*path);
  return paths;
}

TEST(WishQueue, TakesTheNewestWishForTheScreenFirst) {
  WishQueue queue;
  for (const char *path : {"a", "b", "c"}) queue.add_for_screen(path);

  EXPECT_THAT(taken(queue), ElementsAre("c", "b", "a"));
}

TEST(WishQueue, MovesARepeatedWishToTheFront) {
  WishQueue queue;
  for (const char *path : {"a", "b", "a"}) queue.add_for_screen(path);

  EXPECT_THAT(taken(queue), ElementsAre("a", "b"));
}

TEST(WishQueue, DropsWhatHasScrolledFarAway) {
  WishQueue queue;
  for (std::size_t i = 0; i < WishQueue::kMostForScreen + 5; ++i)
    queue.add_for_screen(std::to_string(i));

  const auto paths = taken(queue);

  EXPECT_EQ(paths.size(), WishQueue::kMostForScreen);
  EXPECT_EQ(paths.back(), "5");
}

TEST(WishQueue, TakesWishesForLaterInTheirOrder) {
  WishQueue queue;
  for (const char *path : {"a", "b", "a", "c"}) queue.add_for_later(path);

  EXPECT_THAT(taken(queue), ElementsAre("a", "b", "c"));
}

TEST(WishQueue, TakesWishesForLaterBehindThoseForTheScreen) {
  WishQueue queue;
  queue.add_for_later("later");
  queue.add_for_screen("screen");

  EXPECT_THAT(taken(queue), ElementsAre("screen", "later"));
}

TEST(WishQueue, TakesNoMoreWishesForLaterThanANumber) {
  WishQueue queue;
  for (std::size_t i = 0; i < WishQueue::kMostForLater + 5; ++i)
    queue.add_for_later(std::to_string(i));

  EXPECT_EQ(taken(queue).size(), WishQueue::kMostForLater);
}

TEST(WishQueue, TakesNoWishForWhatIsUnderWay) {
  WishQueue queue;
  queue.add_for_screen("a");
  queue.take();
  queue.add_for_screen("a");
  queue.add_for_later("a");

  EXPECT_THAT(taken(queue), IsEmpty());
}

TEST(WishQueue, TakesWishesAgainForWhatIsDone) {
  WishQueue queue;
  queue.add_for_screen("a");
  queue.take();
  queue.done("a");
  queue.add_for_screen("a");

  EXPECT_THAT(taken(queue), ElementsAre("a"));
}

TEST(WishQueue, IsEmptyAfterClearing) {
  WishQueue queue;
  queue.add_for_screen("a");
  queue.add_for_later("b");
  queue.clear();
  EXPECT_TRUE(queue.empty());

  queue.add_for_later("b");

  EXPECT_THAT(taken(queue), ElementsAre("b"));
}

}  // namespace
}  // namespace phone::thumbnail

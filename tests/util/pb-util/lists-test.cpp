#include <algorithm>
#include <cstdlib>
#include <vector>

#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "pb-util-file.h"
#include "support/fake-platform.hpp"

namespace {

using fake::Logged;
using fake::platform;
using support::GlibTest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

std::vector<int> numbers_of(const GList *list) {
  std::vector<int> numbers;
  for (const int *number : pb::each<int>(list)) numbers.push_back(*number);
  return numbers;
}

/// A random list, and every number that was ever in it: a drawn number is not freed.
class RandomList : public GlibTest {
 protected:
  ~RandomList() override {
    for (gpointer number : numbers_) std::free(number);
    g_list_free(list_);
  }

  void init(int length) {
    pb_random_list_init(&list_, length);
    numbers_.clear();
    for (gpointer number : pb::each<void>(list_)) numbers_.push_back(number);
  }

  GList *list_ = nullptr;
  std::vector<gpointer> numbers_;
};

TEST_F(RandomList, HoldsTheNumbersInOrder) {
  init(5);

  EXPECT_THAT(numbers_of(list_), ElementsAre(0, 1, 2, 3, 4));
}

TEST_F(RandomList, HasNumbersOfTheirOwn) {
  init(3);

  std::ranges::sort(numbers_);
  EXPECT_EQ(std::ranges::adjacent_find(numbers_), numbers_.end());
}

TEST_F(RandomList, IsEmptyForNoLength) {
  init(0);

  EXPECT_EQ(list_, nullptr);
}

TEST_F(RandomList, IsEmptyForANegativeLength) {
  init(-4);

  EXPECT_EQ(list_, nullptr);
}

TEST_F(RandomList, FreesTheListBefore) {
  init(2);
  fake::take_calls();

  init(3);

  EXPECT_THAT(platform().calls, ElementsAre("fm_svc_mb_glist_free(1)"));
  EXPECT_THAT(numbers_of(list_), ElementsAre(0, 1, 2));
}

TEST_F(RandomList, IsAPreconditionOfItsInitialisation) {
  pb_random_list_init(nullptr, 3);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_random_list_init: assertion 'random_list' failed"));
}

using RandomIndex = RandomList;

TEST_F(RandomIndex, IsEachNumberOnce) {
  init(5);
  std::vector<int> drawn;

  for (int i = 0; i < 5; ++i) drawn.push_back(pb_get_random_index(&list_));

  EXPECT_THAT(drawn, UnorderedElementsAre(0, 1, 2, 3, 4));
}

TEST_F(RandomIndex, SaysWhenNothingIsLeft) {
  init(1);
  pb_get_random_index(&list_);

  EXPECT_EQ(pb_get_random_index(&list_), -2);
}

TEST_F(RandomIndex, SaysWhenTheListIsEmpty) { EXPECT_EQ(pb_get_random_index(&list_), -2); }

TEST_F(RandomIndex, UnlinksTheNumber) {
  init(4);

  const int drawn = pb_get_random_index(&list_);

  EXPECT_EQ(g_list_length(list_), 3u);
  EXPECT_THAT(numbers_of(list_), testing::Not(testing::Contains(drawn)));
}

TEST_F(RandomIndex, LeavesTheNumbersStorage) {
  init(4);
  auto *numbers = reinterpret_cast<int **>(numbers_.data());

  const int drawn = pb_get_random_index(&list_);

  EXPECT_EQ(*numbers[drawn], drawn);
}

TEST_F(RandomIndex, ReachesEveryPosition) {
  std::vector<int> seen(3);

  for (int i = 0; i < 60; ++i) {
    init(3);
    seen[static_cast<std::size_t>(pb_get_random_index(&list_))] += 1;
    for (gpointer number : numbers_) std::free(number);
    numbers_.clear();
    g_list_free(std::exchange(list_, nullptr));
  }

  EXPECT_THAT(seen, testing::Each(testing::Gt(0)));
}

TEST_F(RandomIndex, HasAPrecondition) {
  EXPECT_EQ(pb_get_random_index(nullptr), -1);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_get_random_index: assertion 'random_list' failed"));
}

TEST(FreeGlist, FreesElementsThatExist) {
  GList *list = g_list_append(nullptr, std::malloc(4));
  list = g_list_append(list, nullptr);
  list = g_list_append(list, std::malloc(4));

  mb_util_free_glist(list);

  EXPECT_THAT(platform().log, IsEmpty());
}

TEST(FreeGlist, LogsAnEmptyList) {
  mb_util_free_glist(nullptr);

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_INFO, "[mb_util_free_glist]list = NULL\n")));
}

TEST(SelectCheck, IsTrueForOne) {
  EXPECT_TRUE(user_bt_select_check(1));

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_INFO,
                                 "[user_bt_select_check]user_bt_select_check : 1... "
                                 "return TRUE\n")));
}

TEST(SelectCheck, IsTrueForFour) { EXPECT_TRUE(user_bt_select_check(4)); }

TEST(SelectCheck, IsFalseForEveryOtherValue) {
  for (const int value : {-1, 0, 2, 3, 5, 6, 14, G_MAXINT, G_MININT}) {
    EXPECT_FALSE(user_bt_select_check(value)) << value;
  }
}

TEST(SelectCheck, LogsTheOtherValues) {
  user_bt_select_check(2);

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_INFO,
                                 "[user_bt_select_check]user_bt_select_check : 2... "
                                 "return FALSE\n")));
}

}  // namespace

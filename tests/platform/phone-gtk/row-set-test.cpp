#include "phone-gtk/row-set.hpp"

#include <gmock/gmock.h>

#include <random>
#include <set>

using phone::gtk::RowSet;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<int> rows_of(const RowSet &set) {
  std::vector<int> rows;
  set.for_each([&](int row) { rows.push_back(row); });
  return rows;
}

TEST(RowSet, IsEmptyAtFirst) {
  const RowSet set;

  EXPECT_TRUE(set.empty());
  EXPECT_FALSE(set.contains(0));
}

TEST(RowSet, JoinsRangesThatTouch) {
  RowSet set;
  set.add({3, 4});
  set.add({6, 7});

  set.add({5, 5});

  RowSet whole;
  whole.add({3, 7});
  EXPECT_EQ(set, whole);
}

TEST(RowSet, TakesRowsOutOfARange) {
  RowSet set;
  set.add({0, 5});

  set.remove({2, 3});

  EXPECT_THAT(rows_of(set), ElementsAre(0, 1, 4, 5));
}

TEST(RowSet, CountsAMillionRowsAtOnce) {
  RowSet set;
  set.add({0, 999'999});

  EXPECT_EQ(set.size(), 1'000'000);
}

TEST(RowSet, IgnoresAnEmptyRange) {
  RowSet set;

  set.add({0, -1});

  EXPECT_THAT(rows_of(set), IsEmpty());
}

TEST(RowSet, MovesLaterRowsUpWhenARowComesIn) {
  RowSet set;
  set.add({1, 3});

  set.insert_row(2);

  EXPECT_THAT(rows_of(set), ElementsAre(1, 3, 4));
}

TEST(RowSet, MovesLaterRowsDownWhenARowGoes) {
  RowSet set;
  set.add({1, 1});
  set.add({3, 3});

  EXPECT_FALSE(set.delete_row(2));

  EXPECT_THAT(rows_of(set), ElementsAre(1, 2));
}

TEST(RowSet, TellsThatItHadTheRowThatGoes) {
  RowSet set;
  set.add({1, 3});

  EXPECT_TRUE(set.delete_row(2));

  EXPECT_THAT(rows_of(set), ElementsAre(1, 2));
}

/// The same operations on a plain set.
TEST(RowSet, AgreesWithAPlainSetOverManyOperations) {
  RowSet set;
  std::set<int> model;
  std::minstd_rand random(7);  // NOLINT(bugprone-random-generator-seed): the same run every time
  for (int step = 0; step < 5000; ++step) {
    const int first = static_cast<int>(random() % 40);
    const int last = first + static_cast<int>(random() % 6);
    std::set<int> moved;
    switch (random() % 4) {
      case 0:
        set.add({first, last});
        for (int row = first; row <= last; ++row) model.insert(row);
        break;
      case 1:
        set.remove({first, last});
        for (int row = first; row <= last; ++row) model.erase(row);
        break;
      case 2:
        set.insert_row(first);
        for (const int row : model) moved.insert(row < first ? row : row + 1);
        model = std::move(moved);
        break;
      default:
        ASSERT_EQ(set.delete_row(first), model.erase(first) == 1);
        for (const int row : model) moved.insert(row < first ? row : row - 1);
        model = std::move(moved);
    }
    ASSERT_EQ(rows_of(set), std::vector<int>(model.begin(), model.end())) << "step " << step;
    ASSERT_EQ(set.contains(first), model.contains(first));
  }
}

}  // namespace

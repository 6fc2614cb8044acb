#include "phone-gtk/sparse-rows.hpp"

#include <gmock/gmock.h>

#include <array>
#include <map>
#include <random>

using phone::gtk::FilledRow;
using phone::gtk::SparseRows;
using testing::ElementsAre;
using testing::IsNull;
using testing::NotNull;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace {

const std::array<GType, 1> kTypes{G_TYPE_INT};

std::unique_ptr<FilledRow> make_row(int value, bool pinned = false, std::uint64_t age = 0) {
  auto row = std::make_unique<FilledRow>(kTypes, pinned, false, age);
  g_value_set_int(&row->values[0], value);
  return row;
}

int value_of(const SparseRows &rows, int row) {
  FilledRow *found = rows.find(row);
  return found == nullptr ? -1 : g_value_get_int(&found->values[0]);
}

TEST(SparseRows, FindsNothingInAnEmptyList) {
  const SparseRows rows;

  EXPECT_THAT(rows.find(0), IsNull());
  EXPECT_TRUE(rows.empty());
}

TEST(SparseRows, FindsARowByItsNumber) {
  SparseRows rows;
  for (const int row : {7, 3, 999'999}) rows.insert(row, make_row(row * 2));

  EXPECT_EQ(value_of(rows, 3), 6);
  EXPECT_EQ(value_of(rows, 999'999), 1'999'998);
  EXPECT_THAT(rows.find(4), IsNull());
}

TEST(SparseRows, TakeKeepsTheNumbersOfLaterRows) {
  SparseRows rows;
  for (const int row : {1, 2, 3}) rows.insert(row, make_row(row));

  const auto taken = rows.take(2);

  ASSERT_THAT(taken, NotNull());
  EXPECT_EQ(value_of(rows, 3), 3);
  EXPECT_THAT(rows.find(2), IsNull());
}

TEST(SparseRows, TakeAndRenumberMovesLaterRowsDown) {
  SparseRows rows;
  for (const int row : {1, 2, 30}) rows.insert(row, make_row(row));

  const auto taken = rows.take_and_renumber(2);

  ASSERT_THAT(taken, NotNull());
  EXPECT_EQ(value_of(rows, 29), 30);
  EXPECT_EQ(value_of(rows, 1), 1);
}

TEST(SparseRows, RenumbersAlsoWhenTheRowWasNotHeld) {
  SparseRows rows;
  rows.insert(5, make_row(50));

  EXPECT_THAT(rows.take_and_renumber(2), IsNull());

  EXPECT_EQ(value_of(rows, 4), 50);
}

TEST(SparseRows, TakesAllRowsFromOneOn) {
  SparseRows rows;
  for (const int row : {1, 5, 9}) rows.insert(row, make_row(row));

  const auto dropped = rows.take_from(5);

  EXPECT_EQ(dropped.size(), 2U);
  EXPECT_EQ(value_of(rows, 1), 1);
  EXPECT_THAT(rows.find(9), IsNull());
}

TEST(SparseRows, LeavesPinnedRowsAndTheRangeAlone) {
  SparseRows rows;
  rows.insert(1, make_row(1, true));
  rows.insert(2, make_row(2));
  rows.insert(10, make_row(10));
  rows.insert(20, make_row(20));

  const auto dropped = rows.take_unpinned_outside(10, 19);

  EXPECT_EQ(dropped.size(), 2U);
  EXPECT_THAT(rows.find(1), NotNull());
  EXPECT_THAT(rows.find(10), NotNull());
}

TEST(SparseRows, TellsTheAgesOfRowsOutsideARange) {
  SparseRows rows;
  rows.insert(1, make_row(1, false, 7));
  rows.insert(2, make_row(2, false, 8));
  rows.insert(3, make_row(3, false, 9));

  EXPECT_THAT(rows.unpinned_outside(2, 2), UnorderedElementsAre(Pair(7U, 1), Pair(9U, 3)));
}

/// The same operations on a plain map, whose renumbering is obvious.
TEST(SparseRows, AgreesWithAPlainMapOverManyOperations) {
  SparseRows rows;
  std::map<int, int> model;
  std::minstd_rand random(1);  // NOLINT(bugprone-random-generator-seed): the same run every time
  for (int step = 0; step < 20'000; ++step) {
    const int row = static_cast<int>(random() % 300);
    switch (random() % 4) {
      case 0:
      case 1:
        if (!model.contains(row)) rows.insert(row, make_row(step));
        model.emplace(row, step);
        break;
      case 2:
        ASSERT_EQ(rows.take(row) != nullptr, model.erase(row) == 1);
        break;
      default: {
        ASSERT_EQ(rows.take_and_renumber(row) != nullptr, model.erase(row) == 1);
        std::map<int, int> moved;
        for (const auto &[number, value] : model) moved[number > row ? number - 1 : number] = value;
        model = std::move(moved);
      }
    }
    if (step % 50 != 0) continue;
    for (int i = 0; i < 300; ++i) {
      const auto known = model.find(i);
      ASSERT_EQ(value_of(rows, i), known == model.end() ? -1 : known->second) << "row " << i;
    }
  }
}

}  // namespace

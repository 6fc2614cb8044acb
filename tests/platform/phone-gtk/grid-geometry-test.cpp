#include "phone-gtk/grid-geometry.hpp"

#include <gmock/gmock.h>

#include <climits>

using phone::gtk::GridGeometry;
using phone::gtk::GridPoint;
using phone::gtk::QuickHandle;
using phone::gtk::RowRange;

namespace {

/// The phone's screen: three columns of 148 pixels.
GridGeometry phone_grid(int rows) {
  GridGeometry grid;
  grid.rows = rows;
  grid.row_spacing = 6;
  grid.margin = 6;
  grid.width = 480;
  grid.height = 800;
  return grid;
}

TEST(GridColumns, AreThreeOnThePhoneForCellsUpTo160Pixels) {
  GridGeometry grid = phone_grid(100);
  for (const int width : {148, 154, 160}) {
    grid.cell_width = width;
    EXPECT_EQ(grid.columns(), 3) << width;
  }
}

TEST(GridColumns, AreTwoForACellThatIsTooWide) {
  GridGeometry grid = phone_grid(100);
  grid.cell_width = 161;

  EXPECT_EQ(grid.columns(), 2);
}

TEST(GridColumns, AreAtLeastOne) {
  GridGeometry grid = phone_grid(100);
  grid.width = 50;

  EXPECT_EQ(grid.columns(), 1);
}

TEST(GridColumns, LeaveRoomForTheSpacing) {
  GridGeometry grid = phone_grid(100);
  grid.cell_width = 160;
  grid.column_spacing = 1;

  EXPECT_EQ(grid.columns(), 2);
}

TEST(GridHeight, IsZeroWithoutRows) { EXPECT_EQ(phone_grid(0).total_height(), 0); }

TEST(GridHeight, HasMarginsOutsideAndSpacingsBetweenLines) {
  EXPECT_EQ(phone_grid(4).total_height(), 6 + 148 + 6 + 148 + 6);
}

TEST(GridHeight, IsExactForTheLongestList) {
  GridGeometry grid = phone_grid(INT_MAX);

  EXPECT_EQ(grid.total_height(), 2 * 6 + 715'827'883LL * 154 - 6);
}

TEST(GridPlace, CentresCellsInTheirColumns) {
  EXPECT_EQ(phone_grid(9).place_of(0), (GridPoint{6, 6}));
  EXPECT_EQ(phone_grid(9).place_of(5), (GridPoint{326, 160}));
}

TEST(GridPlace, IsMirroredFromRightToLeft) {
  GridGeometry grid = phone_grid(9);
  grid.mirrored = true;

  EXPECT_EQ(grid.place_of(0), (GridPoint{326, 6}));
}

TEST(GridPlace, IsExactForTheLastRowOfTheLongestList) {
  EXPECT_EQ(phone_grid(INT_MAX).place_of(INT_MAX - 1).y, 6 + 715'827'882LL * 154);
}

TEST(GridRowAt, FindsEachCell) {
  const GridGeometry grid = phone_grid(100);
  for (int row = 0; row < 100; ++row) {
    const GridPoint place = grid.place_of(row);
    EXPECT_EQ(grid.row_at(place), row);
    EXPECT_EQ(grid.row_at({place.x + 147, place.y + 147}), row);
  }
}

TEST(GridRowAt, FindsNothingBetweenCells) {
  const GridGeometry grid = phone_grid(100);

  EXPECT_EQ(grid.row_at({5, 50}), -1);
  EXPECT_EQ(grid.row_at({154, 50}), -1);
  EXPECT_EQ(grid.row_at({50, 5}), -1);
  EXPECT_EQ(grid.row_at({50, 6 + 148}), -1);
}

TEST(GridRowAt, FindsNothingBehindTheLastRow) {
  const GridGeometry grid = phone_grid(4);

  EXPECT_EQ(grid.row_at({200, 200}), -1);
  EXPECT_EQ(grid.row_at({50, 100'000}), -1);
}

TEST(GridRowAt, FindsTheLastRowOfTheLongestList) {
  const GridGeometry grid = phone_grid(INT_MAX);

  EXPECT_EQ(grid.row_at(grid.place_of(INT_MAX - 1)), INT_MAX - 1);
}

TEST(GridVisible, IsTheFirstScreenAtTheTop) {
  EXPECT_EQ(phone_grid(100).rows_from(0), (RowRange{0, 17}));
}

TEST(GridVisible, HasLinesThatAreSeenInPart) {
  EXPECT_EQ(phone_grid(100).rows_from(100), (RowRange{0, 17}));
}

TEST(GridVisible, LosesALineWhenOnlyItsSpacingIsSeen) {
  EXPECT_EQ(phone_grid(100).rows_from(6 + 147).first, 0);
  EXPECT_EQ(phone_grid(100).rows_from(6 + 148).first, 3);
}

TEST(GridVisible, EndsWithTheList) { EXPECT_EQ(phone_grid(4).rows_from(0), (RowRange{0, 3})); }

TEST(GridVisible, IsNothingInAnEmptyList) { EXPECT_TRUE(phone_grid(0).rows_from(0).empty()); }

TEST(GridVisible, IsNothingBelowTheList) {
  EXPECT_TRUE(phone_grid(4).rows_from(1'000'000).empty());
}

TEST(GridVisible, ReachesTheEndOfTheLongestList) {
  const GridGeometry grid = phone_grid(INT_MAX);

  EXPECT_EQ(grid.rows_from(grid.total_height() - 800).last, INT_MAX - 1);
}

TEST(QuickHandle, IsHiddenForAShortList) {
  EXPECT_FALSE((QuickHandle{800, 3200}).shown());
  EXPECT_TRUE((QuickHandle{800, 3201}).shown());
}

TEST(QuickHandle, StaysLargeEnoughForAThumb) {
  EXPECT_EQ((QuickHandle{800, 51'000'000}).length(), 64);
}

TEST(QuickHandle, IsAtTheTopAndTheBottomWithTheList) {
  const QuickHandle handle{800, 51'000'000};

  EXPECT_EQ(handle.position_of(0), 0);
  EXPECT_EQ(handle.position_of(51'000'000 - 800), 800 - 64);
}

TEST(QuickHandle, LeadsToBothEnds) {
  const QuickHandle handle{800, 51'000'000};

  EXPECT_EQ(handle.offset_of(0), 0);
  EXPECT_EQ(handle.offset_of(800 - 64), 51'000'000 - 800);
}

TEST(QuickHandle, GoesNoFurtherThanTheEnds) {
  const QuickHandle handle{800, 51'000'000};

  EXPECT_EQ(handle.offset_of(-50), 0);
  EXPECT_EQ(handle.offset_of(5000), 51'000'000 - 800);
}

}  // namespace

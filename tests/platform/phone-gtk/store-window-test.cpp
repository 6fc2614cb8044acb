#include "store-fixture.hpp"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

class StoreWindow : public test::StoreFixture {
 protected:
  StoreWindow() {
    connect_source();
    gtk_virtual_list_store_set_cache_size(store(), 10);
    gtk_virtual_list_store_set_total_size(store(), 1000);
  }
};

class StoreEviction : public StoreWindow {};

TEST_F(StoreWindow, HoldsCacheSizeRowsAroundTheVisibleOnes) {
  gtk_virtual_list_store_set_view_range(store(), 500, 503);

  read(500);

  EXPECT_THAT(signals_, Contains("fill 497 506 500"));
}

TEST_F(StoreWindow, IsPushedBackAtTheStart) {
  gtk_virtual_list_store_set_view_range(store(), 0, 3);

  read(1);

  EXPECT_THAT(signals_, Contains("fill 0 9 1"));
}

TEST_F(StoreWindow, IsPushedBackAtTheEnd) {
  gtk_virtual_list_store_set_view_range(store(), 996, 999);

  read(999);

  EXPECT_THAT(signals_, Contains("fill 990 999 999"));
}

TEST_F(StoreWindow, CoversAllVisibleRowsEvenBeyondTheCacheSize) {
  gtk_virtual_list_store_set_view_range(store(), 100, 129);

  read(129);

  EXPECT_THAT(signals_, Contains("fill 100 129 129"));
}

TEST_F(StoreWindow, IsClampedToAShortList) {
  gtk_virtual_list_store_set_total_size(store(), 4);
  gtk_virtual_list_store_set_view_range(store(), 0, 20);

  read(1);

  EXPECT_THAT(signals_, Contains("fill 0 3 1"));
}

TEST_F(StoreWindow, IsEmptyWithoutACacheSize) {
  gtk_virtual_list_store_set_cache_size(store(), 0);
  gtk_virtual_list_store_set_view_range(store(), 0, 20);

  read(1);

  EXPECT_THAT(signals_, Contains("fill 1 1 1"));
}

TEST_F(StoreWindow, TakesAwayTheRowsThatLeaveIt) {
  gtk_virtual_list_store_set_view_range(store(), 500, 503);
  for (int row = 497; row <= 506; ++row) read(row);

  gtk_virtual_list_store_set_view_range(store(), 504, 507);

  EXPECT_FALSE(filled(497));
  EXPECT_FALSE(filled(500));
  EXPECT_TRUE(filled(501));
  EXPECT_TRUE(filled(506));
}

TEST_F(StoreWindow, TakesRowsAwayWithoutASignal) {
  gtk_virtual_list_store_set_view_range(store(), 500, 503);
  read(500);
  test::run_main_loop();
  signals_.clear();
  connect_view();

  gtk_virtual_list_store_set_view_range(store(), 0, 3);
  test::run_main_loop();

  EXPECT_FALSE(filled(500));
  EXPECT_THAT(signals_, IsEmpty());
}

TEST_F(StoreWindow, ReleasesTheValuesOfRowsThatLeave) {
  gtk_virtual_list_store_set_view_range(store(), 0, 3);
  const auto object = pb::Ref<GObject>::adopt(G_OBJECT(g_object_new(G_TYPE_OBJECT, nullptr)));
  GtkTreeIter iter = iter_of(2);
  gtk_virtual_list_store_set(store(), &iter, kObject, object.get(), -1);

  gtk_virtual_list_store_set_view_range(store(), 500, 503);

  EXPECT_EQ(object->ref_count, 1U);
}

TEST_F(StoreWindow, TakesSingleReadsOutsideAwayWhenItMoves) {
  read(700);

  gtk_virtual_list_store_set_view_range(store(), 0, 3);

  EXPECT_FALSE(filled(700));
}

TEST_F(StoreWindow, KeepsSingleReadsOutsideWhileItStays) {
  gtk_virtual_list_store_set_view_range(store(), 0, 3);
  read(700);

  gtk_virtual_list_store_set_view_range(store(), 0, 3);
  test::run_main_loop();

  EXPECT_TRUE(filled(700));
}

TEST_F(StoreWindow, NeverTakesPinnedRows) {
  GtkTreeIter iter;
  gtk_virtual_list_store_append(store(), &iter);

  gtk_virtual_list_store_set_view_range(store(), 0, 3);
  gtk_virtual_list_store_set_view_range(store(), 500, 503);

  EXPECT_TRUE(filled(1000));
}

TEST_F(StoreWindow, MovedWithinAFillTakesRowsAwayOnlyLater) {
  gtk_virtual_list_store_set_view_range(store(), 0, 3);
  set(2, "two");
  bool kept = false;
  answer_ = [&](int) {
    gtk_virtual_list_store_set_view_range(store(), 500, 503);
    kept = filled(2);
  };

  read(1);
  test::run_main_loop();

  EXPECT_TRUE(kept);
  EXPECT_FALSE(filled(2));
}

TEST_F(StoreWindow, MovedWithinASetTakesRowsAwayOnlyLater) {
  gtk_virtual_list_store_set_view_range(store(), 0, 3);
  set(2, "two");
  g_signal_connect(store(), "row-changed", G_CALLBACK(+[](GtkVirtualListStore *moved) {
                     gtk_virtual_list_store_set_view_range(moved, 500, 503);
                   }),
                   nullptr);

  set(1, "one");

  EXPECT_TRUE(filled(2));
  test::run_main_loop();
  EXPECT_FALSE(filled(2));
}

TEST_F(StoreEviction, HappensNeverWithinReads) {
  for (int row = 0; row < 50; ++row) read(row);

  EXPECT_EQ(filled_rows(), 50);
}

TEST_F(StoreEviction, HappensNeverWithinSets) {
  for (int row = 0; row < 50; ++row) set(row, "set");

  EXPECT_EQ(filled_rows(), 50);
}

TEST_F(StoreEviction, KeepsTheYoungestCacheSizeRowsAtIdle) {
  for (int row = 49; row >= 0; --row) read(row);

  test::run_main_loop();

  EXPECT_EQ(filled_rows(), 10);
  EXPECT_TRUE(filled(0));
  EXPECT_TRUE(filled(9));
}

TEST_F(StoreEviction, LeavesCacheSizeRowsAlone) {
  for (int row = 0; row < 10; ++row) read(row);

  test::run_main_loop();

  EXPECT_EQ(filled_rows(), 10);
}

TEST_F(StoreEviction, LeavesTheWindowAlone) {
  gtk_virtual_list_store_set_view_range(store(), 0, 3);
  for (int row = 0; row < 10; ++row) read(row);
  for (int row = 100; row < 150; ++row) read(row);

  test::run_main_loop();

  EXPECT_TRUE(filled(0));
  EXPECT_FALSE(filled(139));
  EXPECT_TRUE(filled(140));
  EXPECT_EQ(filled_rows(), 20);
}

TEST_F(StoreEviction, GoesOnWithLaterReads) {
  for (int row = 0; row < 50; ++row) read(row);
  test::run_main_loop();
  for (int row = 100; row < 150; ++row) read(row);

  test::run_main_loop();

  EXPECT_EQ(filled_rows(), 10);
  EXPECT_TRUE(filled(149));
}

TEST_F(StoreEviction, LeavesPinnedRowsAlone) {
  gtk_virtual_list_store_set_total_size(store(), 0);
  for (int i = 0; i < 50; ++i) {
    GtkTreeIter iter;
    gtk_virtual_list_store_append(store(), &iter);
  }

  test::run_main_loop();

  EXPECT_EQ(filled_rows(), 50);
}

TEST_F(StoreEviction, DoesNotHappenWithoutALimit) {
  gtk_virtual_list_store_set_cache_size(store(), 0);
  for (int row = 0; row < 50; ++row) read(row);

  test::run_main_loop();

  EXPECT_EQ(filled_rows(), 50);
}

TEST_F(StoreEviction, WaitsForAFillThatRunsTheMainLoop) {
  for (int row = 0; row < 50; ++row) read(row);
  int seen = 0;
  answer_ = [&](int) {
    test::run_main_loop();
    seen = filled_rows();
  };

  read(500);
  test::run_main_loop();

  EXPECT_EQ(seen, 50);
  EXPECT_EQ(filled_rows(), 10);
}

TEST_F(StoreEviction, CountsOnlyRowsThatAreStillThere) {
  for (int row = 0; row < 10; ++row) read(row);
  GtkTreeIter iter = iter_of(0);
  gtk_virtual_list_store_remove(store(), &iter);
  read(500);

  test::run_main_loop();

  EXPECT_EQ(filled_rows(), 10);
}

}  // namespace

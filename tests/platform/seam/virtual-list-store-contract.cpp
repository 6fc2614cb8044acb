// Reading, bursts, window and eviction of a virtual list store, by its header alone.
#include "platform/phone-gtk/store-fixture.hpp"
#include "platform/seam/contract-side.hpp"
#include "support/glib-test.hpp"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class StoreContract : public test::StoreFixture {
 protected:
  /// A store of so many rows whose source is connected.
  void prepare(int rows, int cache_size = 0) {
    connect_source();
    if (cache_size > 0) gtk_virtual_list_store_set_cache_size(store(), cache_size);
    gtk_virtual_list_store_set_total_size(store(), rows);
  }

  /// Moves the window as a view does that shows these rows, and ends its pass.
  void show(int first, int last) {
    gtk_virtual_list_store_set_view_range(store(), first, last);
    contract::let_main_loop_run();
  }

  /// Lets the source fill every row it is asked for.
  void fill_whole_pages() {
    g_signal_connect(store(), "fill-cache", G_CALLBACK(fill_page), this);
    answer_ = [](int) {};
  }

 private:
  static void fill_page(GtkVirtualListStore *, gint first, gint last, gint, StoreContract *self) {
    for (gint row = first; row <= last; ++row) self->set(row, "page");
  }
};

TEST_F(StoreContract, ReadOfAFilledRowAsksNobody) {
  prepare(5);
  set(2, "two");

  EXPECT_EQ(read(2), "two");

  EXPECT_THAT(signals_, IsEmpty());
}

TEST_F(StoreContract, SingleReadIsABurstOfItsOwn) {
  prepare(5);

  EXPECT_EQ(read(3), "row 3");

  EXPECT_THAT(signals_, ElementsAre("initialize 3", "fill 3 3 3", "finalize 3"));
}

TEST_F(StoreContract, ReadGivesNullWhenTheRowStaysUnfilled) {
  prepare(5);
  answer_ = [](int) {};

  EXPECT_EQ(read(3), "(null)");

  EXPECT_FALSE(filled(3));
}

TEST_F(StoreContract, ReadWithinAFillSeesNullAndAsksNobody) {
  prepare(5);
  std::string nested;
  answer_ = [&](int row) {
    nested = read(4);
    set(row, "filled");
  };

  EXPECT_EQ(read(1), "filled");

  EXPECT_EQ(nested, "(null)");
  EXPECT_THAT(signals_, ElementsAre("initialize 1", "fill 1 1 1", "finalize 1"));
}

TEST_F(StoreContract, ReadWithoutAFillHandlerDoesNothing) {
  prepare(5);
  disconnect_fill();

  EXPECT_EQ(read(1), "(null)");

  EXPECT_THAT(signals_, IsEmpty());
}

TEST_F(StoreContract, LookNeverAsks) {
  prepare(5);

  EXPECT_FALSE(filled(1));
  EXPECT_FALSE(filled(-1));
  EXPECT_FALSE(filled(5));

  EXPECT_THAT(signals_, IsEmpty());
}

TEST_F(StoreContract, RowInTheWindowAsksForTheWholeWindow) {
  prepare(100, 10);
  show(50, 53);

  read(51);

  EXPECT_THAT(signals_, ElementsAre("initialize 51", "fill 47 56 51", "finalize 51"));
}

TEST_F(StoreContract, RowOutsideTheWindowAsksForItself) {
  prepare(100, 10);
  show(50, 53);

  read(70);

  EXPECT_THAT(signals_, ElementsAre("initialize 70", "fill 70 70 70", "finalize 70"));
}

TEST_F(StoreContract, WindowIsPushedBackAtTheStart) {
  prepare(100, 10);
  show(0, 3);

  read(0);

  EXPECT_EQ(signals_.at(1), "fill 0 9 0");
}

TEST_F(StoreContract, WindowIsPushedBackAtTheEnd) {
  prepare(100, 10);
  show(98, 99);

  read(99);

  EXPECT_EQ(signals_.at(1), "fill 90 99 99");
}

TEST_F(StoreContract, WindowIsClampedToAShortList) {
  prepare(4, 10);
  show(0, 3);

  read(2);

  EXPECT_EQ(signals_.at(1), "fill 0 3 2");
}

TEST_F(StoreContract, WindowIsEmptyWithoutACacheSize) {
  prepare(100);
  show(50, 53);

  read(51);

  EXPECT_EQ(signals_.at(1), "fill 51 51 51");
}

TEST_F(StoreContract, WindowFollowsARemoval) {
  prepare(4, 10);
  show(0, 3);
  GtkTreeIter iter = iter_of(0);
  gtk_virtual_list_store_remove(store(), &iter);

  read(2);

  EXPECT_EQ(signals_.at(1), "fill 0 2 2");
}

TEST_F(StoreContract, PassIsOneBurst) {
  prepare(100, 10);
  gtk_virtual_list_store_set_view_range(store(), 50, 53);

  read(51);
  read(70);
  EXPECT_THAT(signals_, ElementsAre("initialize 51", "fill 47 56 51", "fill 70 70 70"));
  contract::let_main_loop_run();

  EXPECT_EQ(signals_.size(), 4u);
  EXPECT_EQ(signals_.back(), "finalize 70");
}

TEST_F(StoreContract, PassThatReadsNothingNewIsSilent) {
  prepare(100, 10);
  set(51, "known");
  gtk_virtual_list_store_set_view_range(store(), 50, 53);

  read(51);
  contract::let_main_loop_run();

  EXPECT_THAT(signals_, IsEmpty());
}

TEST_F(StoreContract, NothingIsEmittedWhenAStoreDiesInAPass) {
  prepare(100, 10);
  gtk_virtual_list_store_set_view_range(store(), 50, 53);
  read(51);
  signals_.clear();

  store_.reset();
  contract::let_main_loop_run();

  EXPECT_THAT(signals_, IsEmpty());
}

TEST_F(StoreContract, RowsThatLeaveTheWindowLoseTheirValues) {
  prepare(1000, 10);
  fill_whole_pages();
  show(50, 53);
  read(51);
  ASSERT_EQ(filled_rows(), 10);

  show(60, 63);

  EXPECT_FALSE(filled(51));
  EXPECT_EQ(filled_rows(), 0);
}

TEST_F(StoreContract, RowsThatStayInTheWindowKeepTheirValues) {
  prepare(1000, 10);
  fill_whole_pages();
  show(50, 53);
  read(51);

  show(52, 55);

  EXPECT_TRUE(filled(49));
  EXPECT_TRUE(filled(56));
  EXPECT_FALSE(filled(48));
}

TEST_F(StoreContract, RowsLeaveTheWindowWithoutASignal) {
  prepare(1000, 10);
  fill_whole_pages();
  show(50, 53);
  read(51);
  connect_view();
  signals_.clear();

  show(60, 63);

  EXPECT_THAT(signals_, IsEmpty());
}

TEST_F(StoreContract, PinnedRowsNeverGo) {
  prepare(100, 10);
  GtkTreeIter iter;
  gtk_virtual_list_store_append(store(), &iter);

  show(0, 3);
  show(50, 53);

  EXPECT_TRUE(filled(100));
}

TEST_F(StoreContract, SingleReadsTakeNothingAway) {
  prepare(1000, 10);

  for (int row = 0; row < 30; ++row) read(row);

  EXPECT_EQ(filled_rows(), 30);
}

TEST_F(StoreContract, SetsTakeNothingAway) {
  prepare(1000, 10);

  for (int row = 0; row < 30; ++row) set(row, "set");

  EXPECT_EQ(filled_rows(), 30);
}

TEST_F(StoreContract, MainLoopTakesTheOldestSingleReadsAway) {
  prepare(1000, 10);
  for (int row = 0; row < 30; ++row) read(row);

  contract::let_main_loop_run();

  EXPECT_EQ(filled_rows(), 10);
  EXPECT_TRUE(filled(29));
  EXPECT_TRUE(filled(20));
  EXPECT_FALSE(filled(19));
}

TEST_F(StoreContract, MainLoopLeavesCacheSizeSingleReadsAlone) {
  prepare(1000, 10);
  for (int row = 0; row < 10; ++row) read(row);

  contract::let_main_loop_run();

  EXPECT_EQ(filled_rows(), 10);
}

TEST_F(StoreContract, NothingIsTakenAwayWithoutALimit) {
  prepare(1000);
  for (int row = 0; row < 300; ++row) read(row);

  contract::let_main_loop_run();

  EXPECT_EQ(filled_rows(), 300);
}

TEST_F(StoreContract, WindowThatMovesWithinAFillTakesRowsAwayLater) {
  prepare(1000, 10);
  set(5, "five");
  bool kept = false;
  answer_ = [&](int row) {
    gtk_virtual_list_store_set_view_range(store(), 500, 503);
    kept = filled(5);
    set(row, "filled");
  };

  read(20);
  EXPECT_TRUE(kept);
  EXPECT_TRUE(filled(5));
  contract::let_main_loop_run();

  EXPECT_FALSE(filled(5));
}

TEST_F(StoreContract, PreconditionsAreReported) {
  GtkTreeIter iter;

  EXPECT_FALSE(gtk_virtual_list_store_iter_nth(nullptr, &iter, 0));
  EXPECT_FALSE(gtk_virtual_list_store_row_is_filled(nullptr, 0));

  EXPECT_THAT(support::take_glib_warnings(),
              ElementsAre(StartsWith("gtk_virtual_list_store_iter_nth: assertion "),
                          StartsWith("gtk_virtual_list_store_row_is_filled: assertion ")));
}

}  // namespace

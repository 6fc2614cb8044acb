#include "phone-gtk/drawing-pass.hpp"
#include "store-fixture.hpp"

using phone::gtk::DrawingPass;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

class StoreRead : public test::StoreFixture {};
class StoreBurst : public test::StoreFixture {};

TEST_F(StoreRead, OfAFilledRowAsksNobody) {
  connect_source();
  gtk_virtual_list_store_set_total_size(store(), 5);
  set(2, "two");

  EXPECT_EQ(read(2), "two");

  EXPECT_THAT(signals_, IsEmpty());
}

TEST_F(StoreRead, OfAnUnfilledRowOutsideTheWindowAsksForThatRow) {
  connect_source();
  gtk_virtual_list_store_set_total_size(store(), 5);

  EXPECT_EQ(read(3), "row 3");

  EXPECT_THAT(signals_, Contains("fill 3 3 3"));
}

TEST_F(StoreRead, GivesNullWhenTheRowStaysUnfilled) {
  connect_source();
  answer_ = [](int) {};
  gtk_virtual_list_store_set_total_size(store(), 5);

  EXPECT_EQ(read(3), "(null)");

  EXPECT_FALSE(filled(3));
}

TEST_F(StoreRead, AsksAgainForARowThatStayedUnfilled) {
  connect_source();
  answer_ = [](int) {};
  gtk_virtual_list_store_set_total_size(store(), 5);
  read(3);
  signals_.clear();

  read(3);

  EXPECT_THAT(signals_, Contains("fill 3 3 3"));
}

TEST_F(StoreRead, AsksOnceForARowThatWasFilled) {
  connect_source();
  gtk_virtual_list_store_set_total_size(store(), 5);
  read(3);
  signals_.clear();

  EXPECT_EQ(read(3), "row 3");

  EXPECT_THAT(signals_, IsEmpty());
}

TEST_F(StoreRead, WithinAFillSeesNullAndAsksNobody) {
  connect_source();
  gtk_virtual_list_store_set_total_size(store(), 5);
  std::string nested;
  answer_ = [&](int row) {
    nested = read(4);
    set(row, "filled");
  };

  EXPECT_EQ(read(1), "filled");

  EXPECT_EQ(nested, "(null)");
  EXPECT_THAT(signals_, Not(Contains("fill 4 4 4")));
}

TEST_F(StoreRead, WithoutAHandlerDoesNothing) {
  gtk_virtual_list_store_set_total_size(store(), 5);

  EXPECT_EQ(read(1), "(null)");

  EXPECT_FALSE(filled(1));
}

TEST_F(StoreRead, WithoutAFillHandlerOpensNoBurst) {
  connect_source();
  disconnect_fill();
  gtk_virtual_list_store_set_total_size(store(), 5);

  read(1);

  EXPECT_THAT(signals_, IsEmpty());
}

TEST_F(StoreRead, SurvivesAHandlerThatRemovesTheRow) {
  connect_source();
  gtk_virtual_list_store_set_total_size(store(), 5);
  answer_ = [this](int row) {
    GtkTreeIter iter = iter_of(row);
    gtk_virtual_list_store_remove(store(), &iter);
  };

  EXPECT_EQ(read(4), "(null)");

  EXPECT_EQ(length(), 4);
}

TEST_F(StoreRead, SurvivesAHandlerThatDropsTheStore) {
  connect_source();
  gtk_virtual_list_store_set_total_size(store(), 5);
  GtkTreeIter iter = iter_of(1);
  GtkTreeModel *raw = model();
  GValue value = G_VALUE_INIT;
  answer_ = [this](int) { store_.reset(); };

  gtk_tree_model_get_value(raw, &iter, kText, &value);

  EXPECT_EQ(g_value_get_string(&value), nullptr);
  g_value_unset(&value);
}

TEST_F(StoreRead, LookNeverAsks) {
  connect_source();
  gtk_virtual_list_store_set_total_size(store(), 5);

  EXPECT_FALSE(filled(1));
  EXPECT_FALSE(filled(-1));
  EXPECT_FALSE(filled(5));

  EXPECT_THAT(signals_, IsEmpty());
}

TEST_F(StoreBurst, OfOneReadIsThatRead) {
  connect_source();
  gtk_virtual_list_store_set_total_size(store(), 5);

  read(2);
  read(3);

  EXPECT_THAT(signals_, ElementsAre("initialize 2", "fill 2 2 2", "finalize 2", "initialize 3",
                                    "fill 3 3 3", "finalize 3"));
}

TEST_F(StoreBurst, OfAPassEndsWithThePass) {
  connect_source();
  gtk_virtual_list_store_set_total_size(store(), 5);

  {
    const DrawingPass pass(model(), 0, 4);
    read(2);
    read(3);
    EXPECT_THAT(signals_, ElementsAre("initialize 2", "fill 2 2 2", "fill 3 3 3"));
  }

  EXPECT_EQ(signals_.back(), "finalize 3");
}

TEST_F(StoreBurst, OfAPassThatReadsNothingNewIsSilent) {
  connect_source();
  gtk_virtual_list_store_set_total_size(store(), 5);
  set(2, "two");

  {
    const DrawingPass pass(model(), 0, 4);
    read(2);
  }

  EXPECT_THAT(signals_, IsEmpty());
}

TEST_F(StoreBurst, OfNestedPassesEndsWithTheOuterOne) {
  connect_source();
  gtk_virtual_list_store_set_total_size(store(), 5);

  const DrawingPass outer(model(), 0, 4);
  {
    const DrawingPass inner(model(), 0, 4);
    read(2);
  }

  EXPECT_THAT(signals_, Not(Contains(StartsWith("finalize"))));
}

TEST_F(StoreBurst, OfAMovedWindowEndsWhenTheMainLoopRuns) {
  connect_source();
  gtk_virtual_list_store_set_total_size(store(), 5);
  gtk_virtual_list_store_set_view_range(store(), 0, 4);
  read(2);
  read(3);

  test::run_main_loop();

  EXPECT_THAT(signals_, ElementsAre("initialize 2", "fill 2 2 2", "fill 3 3 3", "finalize 3"));
}

TEST_F(StoreBurst, LeavesNothingToEmitWhenTheStoreDies) {
  connect_source();
  gtk_virtual_list_store_set_total_size(store(), 5);
  gtk_virtual_list_store_set_view_range(store(), 0, 4);
  read(2);
  signals_.clear();

  store_.reset();
  test::run_main_loop();

  EXPECT_THAT(signals_, IsEmpty());
}

TEST_F(StoreBurst, KeepsTheStoreOfAPassAlive) {
  connect_source();
  gtk_virtual_list_store_set_total_size(store(), 5);

  {
    const DrawingPass pass(model(), 0, 4);
    read(2);
    store_.reset();
  }

  EXPECT_EQ(signals_.back(), "finalize 2");
}

TEST_F(StoreBurst, OpensForAHandlerThatLeavesDuringIt) {
  connect_source();
  gtk_virtual_list_store_set_total_size(store(), 5);
  answer_ = [this](int) { disconnect_fill(); };

  read(2);
  read(3);

  EXPECT_THAT(signals_, ElementsAre("initialize 2", "fill 2 2 2", "finalize 2"));
}

}  // namespace

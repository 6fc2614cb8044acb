#include "fixture.hpp"

namespace {

using split_list_test::ids_of;
using split_list_test::is_default_icon;
using split_list_test::log_of;
using split_list_test::numbers_of;
using split_list_test::pending_of;
using split_list_test::private_of;
using split_list_test::Records;
using split_list_test::rows_of;
using split_list_test::SplitListTest;
using split_list_test::SplitPtr;
using split_list_test::View;
using testing::Contains;
using testing::ElementsAre;

/// A list of files in the middle of a selection.
class SplitRows : public SplitListTest {
 protected:
  void TearDown() override {
    if (list_) pb_split_clear_record_list(list_.get());
    SplitListTest::TearDown();
  }

  void show(gint files) {
    split_list_test::serve(files);
    list_ = SplitPtr::adopt(pb_split_get_list(nullptr));
    unselected_.head = pb_split_list_get_records(list_.get());
  }
  void select(gint index) {
    pb_split_list_select_item(list_.get(), &unselected_.head, &selected_.head,
                              static_cast<guint>(index));
  }
  gint unselect(gint id) {
    return pb_split_list_unselect_item(list_.get(), &unselected_.head, &selected_.head, nullptr,
                                       id);
  }
  void refresh(gint index) { pb_split_list_refresh_new_item_when_remove(list_.get(), index); }

  SplitPtr list_;
  Records unselected_;
  Records selected_;
};

TEST_F(SplitRows, AreLeftAloneByASelection) {
  show(4);

  select(1);

  EXPECT_THAT(ids_of(list_), ElementsAre(1, 2, 3, 4));
}

TEST_F(SplitRows, LoseTheSelectedRecord) {
  show(4);
  select(1);

  refresh(1);

  EXPECT_THAT(ids_of(list_), ElementsAre(1, 3, 4));
  EXPECT_THAT(numbers_of(list_), ElementsAre(0, 1, 2));
  EXPECT_THAT(log_of("pb_split_list_refresh_new_item_when_remove"), Contains("index=1\n"));
}

TEST_F(SplitRows, LoseTheLastRecord) {
  show(3);
  select(2);

  refresh(2);

  EXPECT_THAT(ids_of(list_), ElementsAre(1, 2));
}

TEST_F(SplitRows, LoseTheOnlyRecord) {
  show(1);
  select(0);

  refresh(0);

  EXPECT_EQ(rows_of(list_), 0);
}

TEST_F(SplitRows, GetARecordBack) {
  show(4);
  select(1);
  refresh(1);

  refresh(unselect(2));

  EXPECT_THAT(ids_of(list_), ElementsAre(1, 2, 3, 4));
  EXPECT_THAT(numbers_of(list_), ElementsAre(0, 1, 2, 3));
  EXPECT_TRUE(is_default_icon(list_, 1));
}

TEST_F(SplitRows, GetTheLastRecordBack) {
  show(3);
  select(2);
  refresh(2);

  refresh(unselect(3));
  fake::run_idles();

  EXPECT_THAT(ids_of(list_), ElementsAre(1, 2, 3));
}

TEST_F(SplitRows, GetTheOnlyRecordBack) {
  show(1);
  select(0);
  refresh(0);

  refresh(unselect(1));
  fake::run_idles();

  EXPECT_THAT(ids_of(list_), ElementsAre(1));
}

TEST_F(SplitRows, AreNotRemovedTwice) {
  show(3);
  select(1);
  GtkTreeIter iter;
  gtk_tree_model_iter_nth_child(GTK_TREE_MODEL(list_.get()), &iter, nullptr, 1);
  gtk_list_store_remove(GTK_LIST_STORE(list_.get()), &iter);

  refresh(1);

  EXPECT_THAT(ids_of(list_), ElementsAre(1, 3));
}

TEST_F(SplitRows, StayWhenNothingMoved) {
  show(3);

  refresh(1);

  EXPECT_THAT(ids_of(list_), ElementsAre(1, 2, 3));
}

TEST_F(SplitRows, StayForARowThatDoesNotExist) {
  show(3);
  select(1);

  refresh(7);
  refresh(-1);

  EXPECT_THAT(ids_of(list_), ElementsAre(1, 2, 3));
}

TEST_F(SplitRows, StayWhenTheRecordsWereHandedOver) {
  show(3);
  pb_split_clear_record_list(list_.get());

  refresh(0);

  EXPECT_THAT(ids_of(list_), ElementsAre(1, 2, 3));
}

TEST_F(SplitRows, AreNumberedAnewFromTheIdle) {
  show(1000);
  fake::run_idles();
  select(0);

  refresh(0);
  EXPECT_EQ(split_list_test::read_row(list_, 0).index, 0);
  EXPECT_EQ(split_list_test::read_row(list_, 998).index, 999);
  fake::run_idles();

  EXPECT_EQ(split_list_test::read_row(list_, 998).index, 998);
}

TEST_F(SplitRows, GetTheirThumbnailAfterARemoval) {
  const View view;
  show(100);
  fake::run_idles();
  ASSERT_TRUE(is_default_icon(list_, 36));
  select(0);

  refresh(0);
  EXPECT_TRUE(is_default_icon(list_, 35));
  fake::run_idles();

  EXPECT_FALSE(is_default_icon(list_, 35));
}

TEST_F(SplitRows, KeepTheirThumbnailsCountedWhenRowsMove) {
  const View view;
  show(100);
  fake::run_idles();

  select(10);
  refresh(10);
  refresh(unselect(11));

  const auto rows = split_list_test::rows_with_thumbnails(list_);
  EXPECT_EQ(
      std::vector<gint>(private_of(list_).icon_rows.begin(), private_of(list_).icon_rows.end()),
      rows);
}

TEST_F(SplitRows, FollowASelectionWhileTheyAreMade) {
  show(300);
  const gint made = rows_of(list_);
  ASSERT_LE(made, 100);

  select(made + 20);
  refresh(made + 20);
  select(5);
  refresh(5);
  EXPECT_EQ(rows_of(list_), made - 1);
  fake::run_idles();

  EXPECT_EQ(ids_of(list_), unselected_.ids());
}

TEST_F(SplitRows, FollowASelectionOfTheLastOneThatIsMade) {
  show(300);
  const gint made = rows_of(list_);

  select(made - 1);
  refresh(made - 1);
  fake::run_idles();

  EXPECT_EQ(ids_of(list_), unselected_.ids());
}

TEST_F(SplitRows, LeaveOutRecordsThatAreNull) {
  show(2);
  unselected_.head = g_list_append(unselected_.head, nullptr);

  fake::run_idles();

  EXPECT_THAT(ids_of(list_), ElementsAre(1, 2));
}

TEST_F(SplitRows, BearAListThatIsDroppedWhenARowGoes) {
  show(5);
  select(1);
  g_signal_connect_swapped(list_.get(), "row-deleted", G_CALLBACK(+[](SplitPtr *owner) {
                             pb_split_clear_record_list(owner->get());
                             owner->reset();
                           }),
                           &list_);

  refresh(1);

  EXPECT_FALSE(list_);
}

using SplitNthItem = SplitRows;

TEST_F(SplitNthItem, IsTheItemOfTheRow) {
  show(3);

  PbItem *item = pb_split_list_get_nth_item(list_.get(), 1);

  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->id, 2);
  EXPECT_EQ(item_list_test::references(item), 1U);
}

TEST_F(SplitNthItem, MakesTheRowsUpToIt) {
  split_list_test::serve(500);
  list_ = SplitPtr::adopt(pb_split_get_list(nullptr));

  PbItem *item = pb_split_list_get_nth_item(list_.get(), 420);

  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->id, 421);
  pb_split_list_get_records(list_.get());
  unselected_.head = private_of(list_).record_list;
}

TEST_F(SplitNthItem, IsNothingBehindTheEnd) {
  show(3);

  EXPECT_EQ(pb_split_list_get_nth_item(list_.get(), 3), nullptr);

  EXPECT_THAT(log_of("pb_split_list_get_nth_item"), Contains("ITEM NOT FOUND!!! [3]\n"));
}

TEST_F(SplitNthItem, IsNothingBeforeTheBeginning) {
  show(3);

  EXPECT_EQ(pb_split_list_get_nth_item(list_.get(), -1), nullptr);
}

}  // namespace

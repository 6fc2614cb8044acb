#include "fixture.hpp"

namespace {

using split_list_test::log_of;
using split_list_test::new_list;
using split_list_test::private_of;
using split_list_test::record;
using split_list_test::Records;
using split_list_test::SplitListTest;
using split_list_test::SplitPtr;
using testing::ElementsAre;
using testing::IsEmpty;

/// A list whose records are the unselected ones.
class Selection : public SplitListTest {
 protected:
  void TearDown() override {
    if (list_) pb_split_clear_record_list(list_.get());
    SplitListTest::TearDown();
  }

  void have(const std::vector<MbItem> &unselected, const std::vector<MbItem> &selected = {},
            const std::vector<MbItem> &filtered = {}) {
    unselected_.head = fake::record_list(unselected);
    selected_.head = fake::record_list(selected);
    filtered_.head = fake::record_list(filtered);
    PbSplitListPrivate &priv = private_of(list_);
    priv.record_list = unselected_.head;
    priv.count = static_cast<gint>(unselected.size());
    priv.record_last = priv.count - 1;
    fake::take_log();
  }
  void select(guint index) {
    pb_split_list_select_item(list_.get(), &unselected_.head, &selected_.head, index);
  }
  gint unselect(gint key) {
    return pb_split_list_unselect_item(list_.get(), &unselected_.head, &selected_.head,
                                       &filtered_.head, key);
  }
  [[nodiscard]] const PbSplitListPrivate &priv() const { return private_of(list_); }

  SplitPtr list_ = new_list();
  Records unselected_;
  Records selected_;
  Records filtered_;
};

using SelectItem = Selection;

TEST_F(SelectItem, MovesTheRecordToTheEndOfTheSelectedOnes) {
  have({record(1, 10), record(2, 20), record(3, 30)}, {record(9, 90)});

  select(0);

  EXPECT_THAT(unselected_.ids(), ElementsAre(2, 3));
  EXPECT_THAT(selected_.ids(), ElementsAre(9, 1));
}

TEST_F(SelectItem, LowersTheCountOfTheList) {
  have({record(1, 10), record(2, 20), record(3, 30)});

  select(0);

  EXPECT_EQ(pb_split_list_get_length(list_.get()), 2);
  EXPECT_EQ(priv().record_list, unselected_.head);
  EXPECT_EQ(priv().record_first, 0);
  EXPECT_EQ(priv().record_last, 1);
}

TEST_F(SelectItem, KeepsTheOrderOfSelection) {
  have({record(1, 10), record(2, 20), record(3, 30)});

  select(2);
  select(0);
  select(0);

  EXPECT_THAT(selected_.ids(), ElementsAre(3, 1, 2));
}

TEST_F(SelectItem, MovesTheVeryRecord) {
  have({record(1, 10), record(2, 20)});
  gpointer moved = g_list_nth_data(unselected_.head, 1);

  select(1);

  EXPECT_EQ(selected_.head->data, moved);
  EXPECT_THAT(fake::calls_of("fm_svc_mb_glist_free"), IsEmpty());
}

TEST_F(SelectItem, EmptiesTheUnselectedRecords) {
  have({record(1, 10)});

  select(0);

  EXPECT_EQ(unselected_.head, nullptr);
  EXPECT_EQ(priv().record_list, nullptr);
  EXPECT_EQ(priv().count, 0);
  EXPECT_EQ(priv().record_last, -1);
}

TEST_F(SelectItem, LogsTheMove) {
  have({record(1, 10), record(2, 20)}, {record(9, 90)});

  select(1);

  EXPECT_THAT(log_of("pb_split_list_select_item"),
              ElementsAre("============== selected_db_idx: 1 ===========\n", "unselected: 1\n",
                          "selected: 2\n"));
}

TEST_F(SelectItem, LogsNoCountOfNothing) {
  have({record(1, 10)});

  select(0);

  EXPECT_THAT(log_of("pb_split_list_select_item"),
              ElementsAre("============== selected_db_idx: 0 ===========\n", "selected: 1\n"));
}

TEST_F(SelectItem, ChangesNothingForAPositionBehindTheEnd) {
  have({record(1, 10)});

  select(1);

  EXPECT_THAT(unselected_.ids(), ElementsAre(1));
  EXPECT_EQ(selected_.head, nullptr);
  EXPECT_EQ(priv().count, 1);
  EXPECT_THAT(log_of("pb_split_list_select_item"),
              ElementsAre("============== selected_db_idx: 1 ===========\n", "mbitem NULL!\n"));
}

TEST_F(SelectItem, LogsAHugePositionAsItsWord) {
  have({record(1, 10)});

  select(G_MAXUINT);

  EXPECT_THAT(log_of("pb_split_list_select_item"),
              ElementsAre("============== selected_db_idx: -1 ===========\n", "mbitem NULL!\n"));
}

TEST_F(SelectItem, ChangesNothingForARecordThatIsNull) {
  have({record(1, 10)});
  unselected_.head = g_list_append(unselected_.head, nullptr);

  select(1);

  EXPECT_THAT(unselected_.ids(), ElementsAre(1, -1));
  EXPECT_EQ(selected_.head, nullptr);
  EXPECT_EQ(priv().count, 1);
}

TEST_F(SelectItem, ChangesNothingInAnEmptyList) {
  have({});

  select(0);

  EXPECT_EQ(priv().count, 0);
  EXPECT_EQ(priv().record_last, -1);
  EXPECT_THAT(log_of("pb_split_list_select_item"),
              ElementsAre("============== selected_db_idx: 0 ===========\n",
                          "unselected_record_list NULL, return\n"));
}

constexpr const char *kNoAddress =
    "unselected_record_list or selected_record_list address NULL, return\n";

TEST_F(SelectItem, WantsTheAddressOfTheUnselectedRecords) {
  have({record(1, 10)});

  pb_split_list_select_item(list_.get(), nullptr, &selected_.head, 0);

  EXPECT_EQ(priv().count, 1);
  EXPECT_THAT(log_of("pb_split_list_select_item"),
              ElementsAre("============== selected_db_idx: 0 ===========\n", kNoAddress));
}

TEST_F(SelectItem, WantsTheAddressOfTheSelectedRecords) {
  have({record(1, 10)});

  pb_split_list_select_item(list_.get(), &unselected_.head, nullptr, 0);

  EXPECT_THAT(unselected_.ids(), ElementsAre(1));
  EXPECT_THAT(log_of("pb_split_list_select_item"),
              ElementsAre("============== selected_db_idx: 0 ===========\n", kNoAddress));
}

TEST_F(SelectItem, WarnsAboutANullList) {
  have({record(1, 10)});

  pb_split_list_select_item(nullptr, &unselected_.head, &selected_.head, 0);

  EXPECT_THAT(
      take_glib_warnings(),
      ElementsAre("pb_split_list_select_item: assertion 'PB_IS_SPLIT_LIST(item_list)' failed"));
  EXPECT_THAT(unselected_.ids(), ElementsAre(1));
  EXPECT_THAT(log_of("pb_split_list_select_item"), IsEmpty());
}

using UnselectItem = Selection;

TEST_F(UnselectItem, PutsTheSmallestIndexFirst) {
  have({record(2, 20), record(3, 30)}, {record(1, 10)});

  EXPECT_EQ(unselect(1), 0);

  EXPECT_THAT(unselected_.ids(), ElementsAre(1, 2, 3));
  EXPECT_EQ(selected_.head, nullptr);
}

TEST_F(UnselectItem, PutsTheLargestIndexLast) {
  have({record(2, 20), record(3, 30)}, {record(1, 40)});

  EXPECT_EQ(unselect(1), 2);

  EXPECT_THAT(unselected_.ids(), ElementsAre(2, 3, 1));
}

TEST_F(UnselectItem, PutsARecordBetweenItsNeighbours) {
  have({record(2, 20), record(3, 30), record(4, 40)}, {record(1, 25)});

  EXPECT_EQ(unselect(1), 1);

  EXPECT_THAT(unselected_.ids(), ElementsAre(2, 1, 3, 4));
}

TEST_F(UnselectItem, PutsAnEqualIndexAfterTheExistingOnes) {
  have({record(2, 20), record(3, 20), record(4, 30)}, {record(1, 20)});

  EXPECT_EQ(unselect(1), 2);

  EXPECT_THAT(unselected_.ids(), ElementsAre(2, 3, 1, 4));
}

TEST_F(UnselectItem, OrdersNegativeIndicesAsSigned) {
  have({record(2, -20), record(3, 5)}, {record(1, -30)});

  EXPECT_EQ(unselect(1), 0);

  EXPECT_THAT(unselected_.ids(), ElementsAre(1, 2, 3));
}

TEST_F(UnselectItem, FillsAnEmptyList) {
  have({}, {record(1, 10)});

  EXPECT_EQ(unselect(1), 0);

  EXPECT_THAT(unselected_.ids(), ElementsAre(1));
}

TEST_F(UnselectItem, LetsTheListFollow) {
  have({record(2, 20)}, {record(1, 10), record(5, 50)});
  private_of(list_).count = 99;

  unselect(1);

  EXPECT_EQ(priv().record_list, unselected_.head);
  EXPECT_EQ(pb_split_list_get_length(list_.get()), 2);
  EXPECT_EQ(priv().record_last, 1);
}

TEST_F(UnselectItem, LogsTheMove) {
  have({record(2, 20)}, {record(1, 30), record(5, 50)});

  unselect(1);

  EXPECT_THAT(log_of("pb_split_list_unselect_item"),
              ElementsAre("db_idx[30] removed from selected_record_list\n",
                          "db_idx[30] inserted into index[1] of unselected_record_list\n",
                          "selected: 1\n"));
}

TEST_F(UnselectItem, TakesTheFirstRecordWithTheKey) {
  have({}, {record(1, 10), record(1, 20)});

  unselect(1);

  EXPECT_EQ(static_cast<MbItem *>(unselected_.head->data)->db_idx, 10);
  EXPECT_EQ(static_cast<MbItem *>(selected_.head->data)->db_idx, 20);
}

TEST_F(UnselectItem, FindsANegativeId) {
  have({}, {record(-5, 10)});

  EXPECT_EQ(unselect(-5), 0);
}

TEST_F(UnselectItem, FindsARecordByItsWebId) {
  have({}, {record(7, 10, 500), record(500, 20, 7)});
  pb_split_set_id_type(1);

  EXPECT_EQ(unselect(500), 0);

  EXPECT_THAT(unselected_.ids(), ElementsAre(7));
}

TEST_F(UnselectItem, DoesNotFindADatabaseIdAmongWebIds) {
  have({}, {record(7, 10, 500)});
  pb_split_set_id_type(1);

  EXPECT_EQ(unselect(7), -1);

  EXPECT_THAT(selected_.ids(), ElementsAre(7));
}

TEST_F(UnselectItem, FindsByTheDatabaseIdForAnyOtherIdType) {
  have({}, {record(7, 10, 500)});
  pb_split_set_id_type(2);

  EXPECT_EQ(unselect(7), 0);
}

TEST_F(UnselectItem, FindsANegativeWebId) {
  have({}, {record(7, 10, -2)});
  pb_split_set_id_type(1);

  EXPECT_EQ(unselect(-2), 0);
}

TEST_F(UnselectItem, FailsForAnUnknownKey) {
  have({record(2, 20)}, {record(1, 10)});

  EXPECT_EQ(unselect(2), -1);

  EXPECT_THAT(unselected_.ids(), ElementsAre(2));
  EXPECT_THAT(selected_.ids(), ElementsAre(1));
  EXPECT_EQ(priv().count, 1);
  EXPECT_THAT(log_of("pb_split_list_unselect_item"),
              ElementsAre("can't find unselected item in selected_list, return!!!\n"));
}

TEST_F(UnselectItem, FailsSilentlyWithoutASelection) {
  have({record(2, 20)});

  EXPECT_EQ(unselect(2), -1);

  EXPECT_THAT(unselected_.ids(), ElementsAre(2));
  EXPECT_THAT(log_of("pb_split_list_unselect_item"), IsEmpty());
}

TEST_F(UnselectItem, PassesOverASelectedRecordThatIsNull) {
  have({}, {record(1, 10)});
  selected_.head = g_list_prepend(selected_.head, nullptr);

  EXPECT_EQ(unselect(1), 0);

  EXPECT_THAT(selected_.ids(), ElementsAre(-1));
}

TEST_F(UnselectItem, LosesTheRecordBehindOneThatIsNull) {
  have({record(2, 20)}, {record(1, 30)});
  unselected_.head = g_list_append(unselected_.head, nullptr);
  Records lost;
  lost.head = g_list_append(nullptr, selected_.head->data);

  EXPECT_EQ(unselect(1), -1);

  EXPECT_THAT(unselected_.ids(), ElementsAre(2, -1));
  EXPECT_EQ(selected_.head, nullptr);
  EXPECT_EQ(priv().count, 1);
  EXPECT_THAT(log_of("pb_split_list_unselect_item"),
              ElementsAre("db_idx[30] removed from selected_record_list\n", "mbitem NULL!\n"));
}

TEST_F(UnselectItem, StopsInFrontOfARecordThatIsNull) {
  have({record(2, 20)}, {record(1, 10)});
  unselected_.head = g_list_append(unselected_.head, nullptr);

  EXPECT_EQ(unselect(1), 0);

  EXPECT_THAT(unselected_.ids(), ElementsAre(1, 2, -1));
}

TEST_F(UnselectItem, LosesTheRecordInAFilteredListWithARecordThatIsNull) {
  have({}, {record(1, 30, 0, 2)});
  filtered_.head = g_list_append(nullptr, nullptr);
  Records lost;
  lost.head = g_list_append(nullptr, selected_.head->data);
  pb_split_set_filter_type(1);

  EXPECT_EQ(unselect(1), -1);

  EXPECT_THAT(filtered_.ids(), ElementsAre(-1));
}

TEST_F(UnselectItem, WantsTheAddressOfTheUnselectedRecords) {
  have({}, {record(1, 10)});

  EXPECT_EQ(pb_split_list_unselect_item(list_.get(), nullptr, &selected_.head, &filtered_.head, 1),
            -1);

  EXPECT_THAT(selected_.ids(), ElementsAre(1));
  EXPECT_THAT(log_of("pb_split_list_unselect_item"), ElementsAre(kNoAddress));
}

TEST_F(UnselectItem, WantsTheAddressOfTheSelectedRecords) {
  have({record(1, 10)});

  EXPECT_EQ(
      pb_split_list_unselect_item(list_.get(), &unselected_.head, nullptr, &filtered_.head, 1), -1);

  EXPECT_THAT(log_of("pb_split_list_unselect_item"), ElementsAre(kNoAddress));
}

TEST_F(UnselectItem, KeepsARecordThatHasNoFilteredListToGoTo) {
  have({}, {record(1, 10, 0, 2)});
  pb_split_set_filter_type(1);

  EXPECT_EQ(
      pb_split_list_unselect_item(list_.get(), &unselected_.head, &selected_.head, nullptr, 1), -1);

  EXPECT_THAT(selected_.ids(), ElementsAre(1));
  EXPECT_EQ(unselected_.head, nullptr);
}

TEST_F(UnselectItem, NeedsNoFilteredListForAShownRecord) {
  have({}, {record(1, 10)});

  EXPECT_EQ(
      pb_split_list_unselect_item(list_.get(), &unselected_.head, &selected_.head, nullptr, 1), 0);
}

TEST_F(UnselectItem, WarnsAboutANullList) {
  have({}, {record(1, 10)});

  EXPECT_EQ(
      pb_split_list_unselect_item(nullptr, &unselected_.head, &selected_.head, &filtered_.head, 1),
      -1);

  EXPECT_THAT(
      take_glib_warnings(),
      ElementsAre("pb_split_list_unselect_item: assertion 'PB_IS_SPLIT_LIST(item_list)' failed"));
  EXPECT_THAT(selected_.ids(), ElementsAre(1));
}

TEST_F(UnselectItem, HoldsAVideoAsideFromPictures) {
  have({record(2, 20)}, {record(1, 10, 0, 2)});
  pb_split_set_filter_type(1);

  EXPECT_EQ(unselect(1), -2);

  EXPECT_THAT(filtered_.ids(), ElementsAre(1));
  EXPECT_THAT(unselected_.ids(), ElementsAre(2));
  EXPECT_EQ(pb_split_list_get_length(list_.get()), 1);
}

TEST_F(UnselectItem, LeavesTheListAloneWhenARecordIsHeldAside) {
  have({record(2, 20)}, {record(1, 10, 0, 2)});
  pb_split_set_filter_type(1);
  PbSplitListPrivate &state = private_of(list_);
  state.count = 77;
  state.record_last = 55;

  unselect(1);

  EXPECT_EQ(state.count, 77);
  EXPECT_EQ(state.record_last, 55);
}

TEST_F(UnselectItem, OrdersTheRecordsHeldAside) {
  have({}, {record(1, 10, 0, 2)}, {record(5, 5), record(6, 20)});
  pb_split_set_filter_type(1);

  unselect(1);

  EXPECT_THAT(filtered_.ids(), ElementsAre(5, 1, 6));
  EXPECT_THAT(log_of("pb_split_list_unselect_item"),
              ElementsAre("db_idx[10] removed from selected_record_list\n",
                          "db_idx[10] inserted into index[1] of filtered_record_list\n"));
}

struct Pair {
  gint media_type;
  gint filter_type;
  gint result;
};
void PrintTo(const Pair &pair, std::ostream *out) {
  *out << "kind " << pair.media_type << ", filter " << pair.filter_type;
}

class MediaFilter : public Selection, public testing::WithParamInterface<Pair> {};

TEST_P(MediaFilter, ChoosesTheReceivingList) {
  have({}, {record(1, 10, 0, GetParam().media_type)});
  pb_split_set_filter_type(GetParam().filter_type);

  EXPECT_EQ(unselect(1), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Pairs, MediaFilter,
                         testing::Values(Pair{1, 0, 0}, Pair{1, 1, 0}, Pair{1, 2, -2},
                                         Pair{1, 3, 0}, Pair{2, 0, 0}, Pair{2, 1, -2},
                                         Pair{2, 2, 0}, Pair{2, 3, 0}, Pair{0, 1, 0}, Pair{3, 2, 0},
                                         Pair{-1, 1, 0}));

}  // namespace

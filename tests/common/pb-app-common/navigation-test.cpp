#include "browsing-fixture.hpp"

namespace {

using fake::Logged;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

using NthItemFromList = BrowsingFixture;
using NthItemFromCurrent = BrowsingFixture;
using CheckPreviousItem = BrowsingFixture;
using CheckNextItem = BrowsingFixture;
using NavigateByIndex = BrowsingFixture;
using NavigateBackward = BrowsingFixture;
using NavigateForward = BrowsingFixture;
using NavigateCluster = BrowsingFixture;

const std::vector<gint> kTenRows = {11, 12, 13, 14, 15, 16, 17, 18, 19, 20};
/// Ten rows of which 3 and 4 are empty.
const std::vector<gint> kWithGap = {11, 12, 13, kEmptyRow, kEmptyRow, 16, 17, 18, 19, 20};

TEST_F(NthItemFromList, IsFound) {
  const ListRef list = make_list(kTenRows);

  EXPECT_EQ(id_of(pb_app_common_get_nth_item_from_list(list.get(), 2)), 13);
}

TEST_F(NthItemFromList, IsBorrowed) {
  const ListRef list = make_list(kTenRows);

  PbItem *item = pb_app_common_get_nth_item_from_list(list.get(), 2);

  EXPECT_EQ(G_OBJECT(item)->ref_count, 1U);
}

TEST_F(NthItemFromList, IsLogged) {
  const ListRef list = make_list(kTenRows);
  fake::take_log();

  pb_app_common_get_nth_item_from_list(list.get(), 2);

  EXPECT_THAT(
      fake::platform().log,
      ElementsAre(
          Logged(PB_LOG_INFO, "[pb_app_common_get_nth_item_from_list]nth = 2, n_items = 10 \n"),
          Logged(PB_LOG_INFO, "[pb_app_common_get_nth_item_from_list]ITEM FOUND\n")));
}

TEST_F(NthItemFromList, IsNothingInAnEmptyRow) {
  const ListRef list = make_list(kWithGap);

  EXPECT_EQ(pb_app_common_get_nth_item_from_list(list.get(), 3), nullptr);
}

TEST_F(NthItemFromList, NeedsNoBrowsingState) {
  end_browsing();
  const ListRef list = make_list(kTenRows);

  EXPECT_EQ(id_of(pb_app_common_get_nth_item_from_list(list.get(), 9)), 20);
}

class NthItemOutsideAList : public BrowsingFixture, public testing::WithParamInterface<gint> {};

TEST_P(NthItemOutsideAList, IsNothing) {
  const ListRef list = make_list(kTenRows);

  EXPECT_EQ(pb_app_common_get_nth_item_from_list(list.get(), GetParam()), nullptr);
}

TEST_P(NthItemOutsideAList, IsLogged) {
  const ListRef list = make_list(kTenRows);

  pb_app_common_get_nth_item_from_list(list.get(), GetParam());

  EXPECT_THAT(
      fake::platform().log,
      Contains(Logged(PB_LOG_WARNING, "[pb_app_common_get_nth_item_from_list]ITEM NOT FOUND\n")));
}

INSTANTIATE_TEST_SUITE_P(Rows, NthItemOutsideAList, testing::Values(-1, 10, G_MAXINT, G_MININT));

TEST_F(NthItemFromList, IsNothingWithoutAList) {
  EXPECT_EQ(pb_app_common_get_nth_item_from_list(nullptr, 0), nullptr);

  EXPECT_THAT(
      fake::platform().log,
      Contains(Logged(PB_LOG_WARNING, "[pb_app_common_get_nth_item_from_list]ITEM NOT FOUND\n")));
}

TEST_F(NthItemFromList, IsNothingInAForeignObject) {
  const auto object = pb::Ref<PbItem>::adopt(pb_item_new());

  EXPECT_EQ(pb_app_common_get_nth_item_from_list(reinterpret_cast<PbItemList *>(object.get()), 0),
            nullptr);

  EXPECT_FALSE(take_glib_warnings().empty());
}

TEST_F(NthItemFromCurrent, CountsFromTheCurrentRow) {
  const ListRef list = browse(kTenRows, 4);

  EXPECT_EQ(id_of(pb_app_common_get_nth_item_from_current(0)), 15);
  EXPECT_EQ(id_of(pb_app_common_get_nth_item_from_current(3)), 18);
  EXPECT_EQ(id_of(pb_app_common_get_nth_item_from_current(-4)), 11);
}

TEST_F(NthItemFromCurrent, IsBorrowed) {
  const ListRef list = browse(kTenRows, 4);

  PbItem *item = pb_app_common_get_nth_item_from_current(0);

  EXPECT_EQ(G_OBJECT(item)->ref_count, 1U);
}

TEST_F(NthItemFromCurrent, LeavesTheRowAsItWas) {
  const ListRef list = browse(kTenRows, 4);

  pb_app_common_get_nth_item_from_current(3);

  EXPECT_EQ(state()->item_index, 4);
}

TEST_F(NthItemFromCurrent, IsLogged) {
  const ListRef list = browse(kTenRows, 4);

  pb_app_common_get_nth_item_from_current(3);

  EXPECT_THAT(
      fake::platform().log,
      ElementsAre(
          Logged(PB_LOG_INFO, "[pb_app_common_get_nth_item_from_current]nth = 3, Current = 4 \n"),
          Logged(PB_LOG_INFO, "[pb_app_common_get_nth_item_from_current]ITEM FOUND\n")));
}

class NthItemOutsideTheCurrentList : public BrowsingFixture,
                                     public testing::WithParamInterface<gint> {};

TEST_P(NthItemOutsideTheCurrentList, IsNothing) {
  const ListRef list = browse(kTenRows, 4);

  EXPECT_EQ(pb_app_common_get_nth_item_from_current(GetParam()), nullptr);
}

TEST_P(NthItemOutsideTheCurrentList, IsLogged) {
  const ListRef list = browse(kTenRows, 4);

  pb_app_common_get_nth_item_from_current(GetParam());

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_WARNING,
                              "[pb_app_common_get_nth_item_from_current]ITEM NOT FOUND\n")));
}

TEST_P(NthItemOutsideTheCurrentList, LeavesTheRowAsItWas) {
  const ListRef list = browse(kTenRows, 4);

  pb_app_common_get_nth_item_from_current(GetParam());

  EXPECT_EQ(state()->item_index, 4);
}

INSTANTIATE_TEST_SUITE_P(Offsets, NthItemOutsideTheCurrentList,
                         testing::Values(-5, 6, G_MAXINT, G_MININT));

TEST_F(NthItemFromCurrent, IsBoundedByTheCountOfTheBuild) {
  const ListRef list = browse(kTenRows, 4);
  hidden().n_entire_items = 6;

  EXPECT_EQ(pb_app_common_get_nth_item_from_current(2), nullptr);
}

TEST_F(NthItemFromCurrent, MovesOnFromAnEmptyRow) {
  const ListRef list = browse({11, kEmptyRow, 13}, 1);

  EXPECT_EQ(id_of(pb_app_common_get_nth_item_from_current(0)), 13);

  EXPECT_EQ(state()->item_index, 2);
}

TEST_F(NthItemFromCurrent, MovesTheCurrentRowForADistantEmptyRow) {
  const ListRef list = browse(kWithGap, 2);

  EXPECT_EQ(id_of(pb_app_common_get_nth_item_from_current(2)), 16);

  EXPECT_EQ(state()->item_index, 3);
}

TEST_F(NthItemFromCurrent, MovesOnOnceOnly) {
  const ListRef list = browse(kWithGap, 3);

  EXPECT_EQ(pb_app_common_get_nth_item_from_current(0), nullptr);

  EXPECT_EQ(state()->item_index, 4);
}

TEST_F(NthItemFromCurrent, MovesBehindTheEndFromAnEmptyLastRow) {
  const ListRef list = browse({11, kEmptyRow}, 1);

  EXPECT_EQ(pb_app_common_get_nth_item_from_current(0), nullptr);

  EXPECT_EQ(state()->item_index, 2);
}

TEST_F(NthItemFromCurrent, MovesOnWithoutANotification) {
  const ListRef list = browse({11, kEmptyRow, 13}, 1);
  const NotifyCount notified(state(), "item-index");

  pb_app_common_get_nth_item_from_current(0);

  EXPECT_EQ(notified.count(), 0);
}

TEST_F(NthItemFromCurrent, IsNothingBehindTheLargestRow) {
  const ListRef list = browse(kTenRows, G_MAXINT);

  EXPECT_EQ(pb_app_common_get_nth_item_from_current(G_MAXINT), nullptr);

  EXPECT_EQ(state()->item_index, G_MAXINT);
}

TEST_F(NthItemFromCurrent, DoesNotMoveOnFromTheLargestRow) {
  const ListRef list = browse({kEmptyRow, 5}, G_MAXINT);

  EXPECT_EQ(id_of(pb_app_common_get_nth_item_from_current(-G_MAXINT)), 5);

  EXPECT_EQ(state()->item_index, G_MAXINT);
}

TEST_F(NthItemFromCurrent, IsNothingBeforeTheSmallestRow) {
  const ListRef list = browse(kTenRows, -1);

  EXPECT_EQ(pb_app_common_get_nth_item_from_current(G_MININT), nullptr);

  EXPECT_EQ(state()->item_index, -1);
}

TEST_F(NthItemFromCurrent, NeedsAList) {
  EXPECT_EQ(pb_app_common_get_nth_item_from_current(0), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_app_common_get_nth_item_from_current: assertion 'item_list' "
                          "failed"));
}

TEST_F(NthItemFromCurrent, LogsBeforeItMissesTheList) {
  pb_app_common_get_nth_item_from_current(0);
  take_glib_warnings();

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_INFO,
                                 "[pb_app_common_get_nth_item_from_current]nth = 0, Current = 0 "
                                 "\n")));
}

TEST_F(NthItemFromCurrent, NeedsAnObject) {
  end_browsing();

  EXPECT_EQ(pb_app_common_get_nth_item_from_current(0), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_app_common_get_nth_item_from_current: assertion 'thiz' failed"));
}

TEST_F(CheckPreviousItem, LogsTheRow) {
  const ListRef list = browse(kTenRows, 4);

  pb_app_common_check_previous_item_exist();

  EXPECT_THAT(
      fake::platform().log,
      ElementsAre(Logged(PB_LOG_INFO, "[pb_app_common_check_previous_item_exist]item idx:4\n")));
}

TEST_F(CheckPreviousItem, FailsInTheFirstRow) {
  const ListRef list = browse(kTenRows, 0);

  EXPECT_FALSE(pb_app_common_check_previous_item_exist());

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_INFO,
                              "[pb_app_common_check_previous_item_exist]Operation "
                              "Failed\n")));
}

TEST_F(CheckPreviousItem, FindsTheFirstItemFromTheSecondRow) {
  const ListRef list = browse(kTenRows, 1);

  EXPECT_TRUE(pb_app_common_check_previous_item_exist());
}

TEST_F(CheckPreviousItem, MissesAnEmptyFirstRowFromTheSecondRow) {
  const ListRef list = browse({kEmptyRow, 12, 13}, 1);

  EXPECT_FALSE(pb_app_common_check_previous_item_exist());
}

TEST_F(CheckPreviousItem, LooksAtNoRowFromAnyLaterRow) {
  const ListRef list = browse({kEmptyRow, kEmptyRow, 13}, 2);

  EXPECT_TRUE(pb_app_common_check_previous_item_exist());
}

TEST_F(CheckPreviousItem, FailsWithoutAList) {
  state()->item_index = 1;

  EXPECT_FALSE(pb_app_common_check_previous_item_exist());
}

TEST_F(CheckPreviousItem, FailsWithoutAnObject) {
  end_browsing();

  EXPECT_FALSE(pb_app_common_check_previous_item_exist());
}

TEST_F(CheckNextItem, FindsALaterRow) {
  const ListRef list = browse(kTenRows, 8);

  EXPECT_TRUE(pb_app_common_check_next_item_exist());
}

TEST_F(CheckNextItem, DoesNotLookAtTheRow) {
  const ListRef list = browse({11, kEmptyRow}, 0);

  EXPECT_TRUE(pb_app_common_check_next_item_exist());
}

TEST_F(CheckNextItem, FailsInTheLastRow) {
  const ListRef list = browse(kTenRows, 9);

  EXPECT_FALSE(pb_app_common_check_next_item_exist());

  EXPECT_THAT(
      fake::platform().log,
      Contains(Logged(PB_LOG_INFO, "[pb_app_common_check_next_item_exist]Operation Failed\n")));
}

TEST_F(CheckNextItem, GoesByTheListsOwnLength) {
  const ListRef list = browse(kTenRows, 8);
  hidden().n_entire_items = 3;

  EXPECT_TRUE(pb_app_common_check_next_item_exist());
}

TEST_F(CheckNextItem, IsTrueForAnEmptyList) {
  const ListRef list = browse({});

  EXPECT_TRUE(pb_app_common_check_next_item_exist());
}

TEST_F(CheckNextItem, FailsBehindTheEnd) {
  const ListRef list = browse(kTenRows, G_MAXINT);

  EXPECT_FALSE(pb_app_common_check_next_item_exist());
}

TEST_F(CheckNextItem, FailsWithoutAnObject) {
  end_browsing();

  EXPECT_FALSE(pb_app_common_check_next_item_exist());
}

TEST_F(NavigateByIndex, MakesTheRowCurrent) {
  const ListRef list = browse(kTenRows);

  EXPECT_TRUE(pb_app_common_navigate_item_by_index(7));

  EXPECT_EQ(state()->item_index, 7);
}

TEST_F(NavigateByIndex, LogsTheIndex) {
  const ListRef list = browse(kTenRows);

  pb_app_common_navigate_item_by_index(7);

  EXPECT_THAT(
      fake::platform().log,
      ElementsAre(Logged(PB_LOG_INFO, "[pb_app_common_navigate_item_by_index]ITEM Indx:7\n")));
}

TEST_F(NavigateByIndex, NotifiesOnce) {
  const ListRef list = browse(kTenRows);
  const NotifyCount notified(state(), "item-index");

  pb_app_common_navigate_item_by_index(7);

  EXPECT_EQ(notified.count(), 1);
}

TEST_F(NavigateByIndex, HoldsTheNotificationWhileTheObjectIsFrozen) {
  const ListRef list = browse(kTenRows);
  const NotifyCount notified(state(), "item-index");
  g_object_freeze_notify(G_OBJECT(state()));

  pb_app_common_navigate_item_by_index(7);
  pb_app_common_navigate_item_by_index(8);

  EXPECT_EQ(notified.count(), 0);
  g_object_thaw_notify(G_OBJECT(state()));
  EXPECT_EQ(notified.count(), 1);
}

TEST_F(NavigateByIndex, ShowsTheNewRowToTheListener) {
  const ListRef list = browse(kTenRows);
  gint seen = -100;
  g_signal_connect(
      state(), "notify::item-index",
      G_CALLBACK(+[](PbAppCommon *object, GParamSpec *, gint *out) { *out = object->item_index; }),
      &seen);

  pb_app_common_navigate_item_by_index(7);

  EXPECT_EQ(seen, 7);
}

TEST_F(NavigateByIndex, DoesNotLookAtTheRow) {
  const ListRef list = browse(kWithGap);

  EXPECT_TRUE(pb_app_common_navigate_item_by_index(3));
}

class NavigateToTheCurrentRow : public BrowsingFixture, public testing::WithParamInterface<gint> {};

TEST_P(NavigateToTheCurrentRow, KeepsTheRow) {
  const ListRef list = browse(kTenRows, 6);

  EXPECT_TRUE(pb_app_common_navigate_item_by_index(GetParam()));

  EXPECT_EQ(state()->item_index, 6);
}

TEST_P(NavigateToTheCurrentRow, NotifiesAllTheSame) {
  const ListRef list = browse(kTenRows, 6);
  const NotifyCount notified(state(), "item-index");

  pb_app_common_navigate_item_by_index(GetParam());

  EXPECT_EQ(notified.count(), 1);
}

INSTANTIATE_TEST_SUITE_P(Indexes, NavigateToTheCurrentRow, testing::Values(-1, -7, G_MININT, 6));

class NavigateOutside : public BrowsingFixture, public testing::WithParamInterface<gint> {};

TEST_P(NavigateOutside, Fails) {
  const ListRef list = browse(kTenRows, 6);

  EXPECT_FALSE(pb_app_common_navigate_item_by_index(GetParam()));

  EXPECT_EQ(state()->item_index, 6);
}

TEST_P(NavigateOutside, IsLogged) {
  const ListRef list = browse(kTenRows, 6);

  pb_app_common_navigate_item_by_index(GetParam());

  EXPECT_THAT(
      fake::platform().log,
      Contains(Logged(PB_LOG_WARNING, "[pb_app_common_navigate_item_by_index]Invalid item-index:" +
                                          std::to_string(GetParam()) + "\n")));
}

TEST_P(NavigateOutside, NotifiesNothing) {
  const ListRef list = browse(kTenRows, 6);
  const NotifyCount notified(state(), "item-index");

  pb_app_common_navigate_item_by_index(GetParam());

  EXPECT_EQ(notified.count(), 0);
}

INSTANTIATE_TEST_SUITE_P(Indexes, NavigateOutside, testing::Values(10, 11, G_MAXINT));

TEST_F(NavigateByIndex, FailsWhenTheCurrentRowIsNoRow) {
  const ListRef list = browse(kTenRows, -1);

  EXPECT_FALSE(pb_app_common_navigate_item_by_index(-1));

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_WARNING,
                              "[pb_app_common_navigate_item_by_index]Invalid item-index:-1\n")));
}

TEST_F(NavigateByIndex, ThawsTheObjectAfterAFailure) {
  const ListRef list = browse(kTenRows);
  pb_app_common_navigate_item_by_index(10);
  const NotifyCount notified(state(), "item-index");

  pb_app_common_navigate_item_by_index(1);

  EXPECT_EQ(notified.count(), 1);
}

TEST_F(NavigateByIndex, IsBoundedByTheCountOfTheBuild) {
  const ListRef list = browse(kTenRows);
  hidden().n_entire_items = 5;

  EXPECT_FALSE(pb_app_common_navigate_item_by_index(5));
}

TEST_F(NavigateByIndex, FailsSilentlyWithoutAList) {
  EXPECT_FALSE(pb_app_common_navigate_item_by_index(0));

  EXPECT_THAT(
      fake::platform().log,
      ElementsAre(Logged(PB_LOG_INFO, "[pb_app_common_navigate_item_by_index]ITEM Indx:0\n")));
}

TEST_F(NavigateByIndex, FailsWithoutAnObject) {
  end_browsing();

  EXPECT_FALSE(pb_app_common_navigate_item_by_index(0));

  EXPECT_THAT(fake::platform().log,
              Contains(LoggedText(
                  "[pb_app_common_navigate_item_by_index]fail to get PbAppCommon object\n")));
}

TEST_F(NavigateBackward, GoesOneRowBack) {
  const ListRef list = browse(kTenRows, 6);

  EXPECT_TRUE(pb_app_common_navigate_item_backward());

  EXPECT_EQ(state()->item_index, 5);
}

TEST_F(NavigateBackward, LogsTheRow) {
  const ListRef list = browse(kTenRows, 6);

  pb_app_common_navigate_item_backward();

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_INFO, "[pb_app_common_navigate_item_backward]item idx:6\n")));
}

TEST_F(NavigateBackward, NotifiesOnce) {
  const ListRef list = browse(kWithGap, 5);
  const NotifyCount notified(state(), "item-index");

  pb_app_common_navigate_item_backward();

  EXPECT_EQ(notified.count(), 1);
}

TEST_F(NavigateBackward, SkipsEmptyRows) {
  const ListRef list = browse(kWithGap, 5);

  EXPECT_TRUE(pb_app_common_navigate_item_backward());

  EXPECT_EQ(state()->item_index, 2);
}

TEST_F(NavigateBackward, ReachesTheFirstRow) {
  const ListRef list = browse(kTenRows, 1);

  EXPECT_TRUE(pb_app_common_navigate_item_backward());

  EXPECT_EQ(state()->item_index, 0);
}

TEST_F(NavigateBackward, FailsInTheFirstRow) {
  const ListRef list = browse(kTenRows, 0);

  EXPECT_FALSE(pb_app_common_navigate_item_backward());

  EXPECT_THAT(
      fake::platform().log,
      Contains(Logged(PB_LOG_INFO, "[pb_app_common_navigate_item_backward]Operation Failed\n")));
}

TEST_F(NavigateBackward, DoesNotWrapAround) {
  const ListRef list = browse(kTenRows, 0);

  pb_app_common_navigate_item_backward();

  EXPECT_EQ(state()->item_index, 0);
}

TEST_F(NavigateBackward, FailsWhenEveryEarlierRowIsEmpty) {
  const ListRef list = browse({kEmptyRow, kEmptyRow, 13}, 2);

  EXPECT_FALSE(pb_app_common_navigate_item_backward());

  EXPECT_EQ(state()->item_index, 2);
}

TEST_F(NavigateBackward, ComesBackFromBehindTheEnd) {
  const ListRef list = browse(kTenRows, G_MAXINT);

  EXPECT_TRUE(pb_app_common_navigate_item_backward());

  EXPECT_EQ(state()->item_index, 9);
}

TEST_F(NavigateBackward, FailsAtARowThatTheBuildDidNotCount) {
  const ListRef list = browse(kTenRows, 8);
  hidden().n_entire_items = 3;

  EXPECT_FALSE(pb_app_common_navigate_item_backward());

  EXPECT_EQ(state()->item_index, 8);
}

TEST_F(NavigateBackward, FailsWithoutAList) {
  state()->item_index = 5;

  EXPECT_FALSE(pb_app_common_navigate_item_backward());
}

TEST_F(NavigateBackward, FailsWithoutAnObject) {
  end_browsing();

  EXPECT_FALSE(pb_app_common_navigate_item_backward());
}

TEST_F(NavigateForward, GoesOneRowOn) {
  const ListRef list = browse(kTenRows, 6);

  EXPECT_TRUE(pb_app_common_navigate_item_forward());

  EXPECT_EQ(state()->item_index, 7);
}

TEST_F(NavigateForward, LogsItsEntry) {
  const ListRef list = browse(kTenRows, 6);

  pb_app_common_navigate_item_forward();

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_INFO, "[pb_app_common_navigate_item_forward]\n")));
}

TEST_F(NavigateForward, NotifiesOnce) {
  const ListRef list = browse(kWithGap, 2);
  const NotifyCount notified(state(), "item-index");

  pb_app_common_navigate_item_forward();

  EXPECT_EQ(notified.count(), 1);
}

TEST_F(NavigateForward, SkipsEmptyRows) {
  const ListRef list = browse(kWithGap, 2);

  EXPECT_TRUE(pb_app_common_navigate_item_forward());

  EXPECT_EQ(state()->item_index, 5);
}

TEST_F(NavigateForward, ReachesTheLastRow) {
  const ListRef list = browse(kTenRows, 8);

  EXPECT_TRUE(pb_app_common_navigate_item_forward());

  EXPECT_EQ(state()->item_index, 9);
}

TEST_F(NavigateForward, FailsInTheLastRow) {
  const ListRef list = browse(kTenRows, 9);

  EXPECT_FALSE(pb_app_common_navigate_item_forward());

  EXPECT_THAT(
      fake::platform().log,
      Contains(Logged(PB_LOG_INFO, "[pb_app_common_navigate_item_forward]Operation Failed\n")));
}

TEST_F(NavigateForward, DoesNotWrapAround) {
  const ListRef list = browse(kTenRows, 9);

  pb_app_common_navigate_item_forward();

  EXPECT_EQ(state()->item_index, 9);
}

TEST_F(NavigateForward, FailsWhenEveryLaterRowIsEmpty) {
  const ListRef list = browse({11, kEmptyRow, kEmptyRow}, 0);

  EXPECT_FALSE(pb_app_common_navigate_item_forward());

  EXPECT_EQ(state()->item_index, 0);
}

TEST_F(NavigateForward, FailsInAnEmptyList) {
  const ListRef list = browse({});

  EXPECT_FALSE(pb_app_common_navigate_item_forward());
}

TEST_F(NavigateForward, FailsInAnEmptyListWithoutSayingSo) {
  const ListRef list = browse({});

  pb_app_common_navigate_item_forward();

  EXPECT_THAT(fake::platform().log,
              Not(Contains(LoggedText("[pb_app_common_navigate_item_forward]Operation Failed\n"))));
}

TEST_F(NavigateForward, FailsBehindTheEnd) {
  const ListRef list = browse(kTenRows, G_MAXINT);

  EXPECT_FALSE(pb_app_common_navigate_item_forward());
}

TEST_F(NavigateForward, StartsAtTheFirstRowFromNone) {
  const ListRef list = browse(kTenRows, -1);

  EXPECT_TRUE(pb_app_common_navigate_item_forward());

  EXPECT_EQ(state()->item_index, 0);
}

TEST_F(NavigateForward, FailsAtARowThatTheBuildDidNotCount) {
  const ListRef list = browse(kTenRows, 3);
  hidden().n_entire_items = 4;

  EXPECT_FALSE(pb_app_common_navigate_item_forward());

  EXPECT_EQ(state()->item_index, 3);
}

TEST_F(NavigateForward, FailsWithoutAList) { EXPECT_FALSE(pb_app_common_navigate_item_forward()); }

TEST_F(NavigateForward, FailsWithoutAnObject) {
  end_browsing();

  EXPECT_FALSE(pb_app_common_navigate_item_forward());
}

TEST_F(NavigateCluster, MakesTheFirstRowCurrent) {
  const ListRef list = browse(kTenRows, 6);

  EXPECT_TRUE(pb_app_common_navigate_cluster_by_index(7));

  EXPECT_EQ(state()->item_index, 0);
}

TEST_F(NavigateCluster, LogsTheAlbum) {
  const ListRef list = browse(kTenRows, 6);

  pb_app_common_navigate_cluster_by_index(7);

  EXPECT_THAT(
      fake::platform().log,
      Contains(Logged(PB_LOG_INFO, "[pb_app_common_navigate_cluster_by_index]cluster-index:7\n")));
}

TEST_F(NavigateCluster, FailsInAnEmptyList) {
  const ListRef list = browse({});

  EXPECT_FALSE(pb_app_common_navigate_cluster_by_index(0));
}

}  // namespace

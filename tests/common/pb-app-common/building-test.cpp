#include "browsing-fixture.hpp"
#include "common/pb-item-list/private.hpp"

namespace {

using fake::Logged;
using support::ExpectFinalized;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

/// A service with two albums of three files each, and two files in all.
class Building : public BrowsingFixture {
 protected:
  void SetUp() override {
    BrowsingFixture::SetUp();
    serve_albums({fake::make_album(1, "one"), fake::make_album(2, "two")});
    serve_album_files({501, 502, 503});
    fake::serve_files({fake::make_item(501, "/a.jpg"), fake::make_item(502, "/b.jpg")});
    fake::platform().fm_svc_vesk_get_server_only_vesk_files_without_delete =
        [](gint64, FmFileList *list, gint *) {
          fake::fill_file_list(list, {88}, {FM_FILE_WEB_ONLY});
          return TRUE;
        };
  }

  /// A current item that stands for an album.
  static void stand_on_album(gint album_id) {
    const ListRef list = browse({7});
    pb_app_common_get_nth_item_from_current(0)->album_id = album_id;
    fake::take_log();
  }
  /// How many lists wait for their view, and found none.
  static bool asked_for_the_view() {
    return !testing::Value(
        fake::platform().log,
        Not(Contains(LoggedText(StartsWith("[pb_item_list_set_adjustment_cb]")))));
  }
};

using BuildItemList = Building;
using BuildAlbumContents = Building;
using ResyncCurrentCategory = Building;
using ResetListIndex = Building;
using ResyncCurrentIcons = Building;
using DisconnectSignal = Building;

TEST_F(BuildItemList, LogsItsCategory) {
  pb_app_common_build_item_list(0, 0);

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_INFO,
                              "[pb_app_common_build_item_list]======== "
                              "pb_app_common_build_item_list ========== 0\n")));
}

TEST_F(BuildItemList, InstallsAList) {
  EXPECT_TRUE(pb_app_common_build_item_list(0, 0));

  EXPECT_EQ(pb_item_list_get_length(pb_app_common_get_item_list()), 2);
}

TEST_F(BuildItemList, OwnsItsList) {
  pb_app_common_build_item_list(0, 0);

  EXPECT_EQ(G_OBJECT(pb_app_common_get_item_list())->ref_count, 1U);
}

TEST_F(BuildItemList, KeepsTheCount) {
  pb_app_common_build_item_list(0, 0);

  EXPECT_EQ(hidden().n_entire_items, 2);
}

TEST_F(BuildItemList, HandsTheCategoryToItsList) {
  pb_app_common_build_item_list(5, 0);

  EXPECT_EQ(pb_app_common_get_item_list()->category, 5);
}

TEST_F(BuildItemList, HandsTheAlbumToItsList) {
  pb_app_common_build_item_list(3, 77);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"),
              ElementsAre(StartsWith("fm_svc_mb_album_get_all_files_ex(77,")));
}

TEST_F(BuildItemList, SetsTheCategory) {
  pb_app_common_build_item_list(2, 0);

  EXPECT_EQ(state()->category_type, 2);
}

TEST_F(BuildItemList, NotifiesTheCategoryOnce) {
  const NotifyCount notified(state(), "category-type");

  pb_app_common_build_item_list(2, 0);

  EXPECT_EQ(notified.count(), 1);
}

TEST_F(BuildItemList, LogsTheChange) {
  pb_app_common_build_item_list(0, 0);

  EXPECT_THAT(fake::platform().log,
              testing::IsSupersetOf(
                  {Logged(PB_LOG_INFO,
                          "[pb_app_common_build_item_list]======== CATEGORY CHANGED ==========\n"),
                   Logged(PB_LOG_INFO, "[pb_app_common_build_item_list]category-type:0\n"),
                   Logged(PB_LOG_INFO, "[pb_app_common_build_item_list]n_entire_items:2\n")}));
}

TEST_F(BuildItemList, LeavesTheRowAsItWas) {
  state()->item_index = 9;

  pb_app_common_build_item_list(0, 0);

  EXPECT_EQ(state()->item_index, 9);
}

TEST_F(BuildItemList, DropsTheOldList) {
  ListRef old = browse({1, 2});
  const ExpectFinalized watch(old.get());
  old.reset();

  pb_app_common_build_item_list(0, 0);

  EXPECT_TRUE(watch.finalized());
}

TEST_F(BuildItemList, DisconnectsTheOldList) {
  const ListRef old = browse({1, 2});

  pb_app_common_build_item_list(0, 0);

  EXPECT_THAT(fake::platform().log,
              Contains(LoggedText(StartsWith("[pb_item_list_vls_disconnect_signal]item_list: "))));
}

TEST_F(BuildItemList, DisconnectsNothingAtFirst) {
  pb_app_common_build_item_list(0, 0);

  EXPECT_THAT(fake::platform().log,
              Not(Contains(LoggedText(StartsWith("[pb_item_list_vls_disconnect_signal]")))));
}

TEST_F(BuildItemList, FailsWhenNothingIsListed) {
  serve_albums({});

  EXPECT_FALSE(pb_app_common_build_item_list(0, 0));
}

TEST_F(BuildItemList, InstallsTheEmptyList) {
  const ListRef old = browse({1, 2});
  serve_albums({});

  pb_app_common_build_item_list(0, 0);

  EXPECT_NE(pb_app_common_get_item_list(), old.get());
  EXPECT_EQ(hidden().n_entire_items, 0);
}

TEST_F(BuildItemList, SetsTheCategoryOfAnEmptyList) {
  serve_albums({});

  pb_app_common_build_item_list(0, 0);

  EXPECT_EQ(state()->category_type, 0);
}

TEST_F(BuildItemList, NotifiesTheCategoryOfAnEmptyList) {
  serve_albums({});
  const NotifyCount notified(state(), "category-type");

  pb_app_common_build_item_list(0, 0);

  EXPECT_EQ(notified.count(), 1);
}

TEST_F(BuildItemList, LogsNoChangeToAnEmptyList) {
  serve_albums({});

  pb_app_common_build_item_list(0, 0);

  EXPECT_THAT(fake::platform().log, Not(Contains(LoggedText(HasSubstr("CATEGORY CHANGED")))));
}

TEST_F(BuildItemList, FailsWithoutAnObject) {
  end_browsing();

  EXPECT_FALSE(pb_app_common_build_item_list(0, 0));
}

TEST_F(BuildItemList, AsksNothingWithoutAnObject) {
  end_browsing();

  pb_app_common_build_item_list(0, 0);

  EXPECT_THAT(fake::platform().calls, IsEmpty());
}

class BuildWithTheView : public Building, public testing::WithParamInterface<int> {};

TEST_P(BuildWithTheView, HandsItToTheList) {
  const auto adjustment =
      pb::Ref<GtkAdjustment>::sink(GTK_ADJUSTMENT(gtk_adjustment_new(0, 0, 100, 1, 10, 10)));
  pb_app_common_set_adjustment(nullptr, adjustment.get());

  pb_app_common_build_item_list(GetParam(), 77);

  EXPECT_EQ(pb::item_list::private_of(pb_app_common_get_item_list()).vadjustment.get(),
            adjustment.get());
}

TEST_P(BuildWithTheView, LoadsThumbnailsInTheFirstFill) {
  pb_app_common_build_item_list(GetParam(), 77);

  EXPECT_EQ(pb::item_list::private_of(pb_app_common_get_item_list()).loads_thumbnails, 1);
}

INSTANTIATE_TEST_SUITE_P(Categories, BuildWithTheView, testing::Values(1, 2, 3));

class BuildWithoutTheView : public Building, public testing::WithParamInterface<int> {};

TEST_P(BuildWithoutTheView, LeavesTheListAlone) {
  pb_app_common_build_item_list(GetParam(), 77);

  EXPECT_FALSE(asked_for_the_view());
}

INSTANTIATE_TEST_SUITE_P(Categories, BuildWithoutTheView, testing::Values(0, 4, 5));

TEST_F(BuildAlbumContents, TakesTheAlbumOfTheCurrentItem) {
  stand_on_album(66);

  EXPECT_TRUE(pb_app_common_build_item_list(3, 0));

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"),
              ElementsAre(StartsWith("fm_svc_mb_album_get_all_files_ex(66,")));
}

TEST_F(BuildAlbumContents, LogsTheAlbumOfTheCurrentItem) {
  stand_on_album(66);

  pb_app_common_build_item_list(3, 0);

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_INFO, "[pb_app_common_build_item_list]album_id:66\n")));
}

TEST_F(BuildAlbumContents, PrefersTheAlbumThatIsGiven) {
  stand_on_album(66);

  pb_app_common_build_item_list(3, 77);

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"),
              ElementsAre(StartsWith("fm_svc_mb_album_get_all_files_ex(77,")));
}

TEST_F(BuildAlbumContents, FailsWithoutACurrentItem) {
  const ListRef list = browse({});

  EXPECT_FALSE(pb_app_common_build_item_list(3, 0));
}

TEST_F(BuildAlbumContents, FailsWithoutAList) {
  EXPECT_FALSE(pb_app_common_build_item_list(3, 0));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_app_common_get_nth_item_from_current: assertion "
                          "'item_list' failed"));
}

TEST_F(BuildAlbumContents, CountsNothingWithoutACurrentItem) {
  const ListRef list = browse({kEmptyRow, kEmptyRow});

  pb_app_common_build_item_list(3, 0);

  EXPECT_EQ(hidden().n_entire_items, 0);
}

TEST_F(BuildAlbumContents, SetsTheCategoryWithoutACurrentItem) {
  const ListRef list = browse({});
  const NotifyCount notified(state(), "category-type");

  pb_app_common_build_item_list(3, 0);

  EXPECT_EQ(state()->category_type, 3);
  EXPECT_EQ(notified.count(), 1);
}

TEST_F(BuildAlbumContents, KeepsTheListWithoutACurrentItem) {
  const ListRef list = browse({});

  pb_app_common_build_item_list(3, 0);

  EXPECT_EQ(pb_app_common_get_item_list(), list.get());
}

TEST_F(BuildAlbumContents, NeedsNoCurrentItemInAnotherCategory) {
  EXPECT_TRUE(pb_app_common_build_item_list(0, 0));
}

TEST_F(ResyncCurrentCategory, LogsItsEntry) {
  pb_app_common_resync_current_category();

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_INFO, "[pb_app_common_resync_current_category]\n")));
}

TEST_F(ResyncCurrentCategory, BuildsTheCategoryAgain) {
  state()->category_type = 0;

  EXPECT_TRUE(pb_app_common_resync_current_category());

  EXPECT_EQ(pb_app_common_get_item_list()->category, 0);
}

TEST_F(ResyncCurrentCategory, FindsTheAlbumByTheCurrentItem) {
  stand_on_album(66);
  state()->category_type = 3;

  pb_app_common_resync_current_category();

  EXPECT_THAT(fake::calls_of("fm_svc_mb_album_get_all_files_ex"),
              ElementsAre(StartsWith("fm_svc_mb_album_get_all_files_ex(66,")));
}

TEST_F(ResyncCurrentCategory, TellsTheListThatItsViewIsShown) {
  state()->category_type = 1;

  pb_app_common_resync_current_category();

  EXPECT_EQ(pb::item_list::private_of(pb_app_common_get_item_list()).loads_thumbnails, 0);
}

TEST_F(ResyncCurrentCategory, IsOverAfterwards) {
  state()->category_type = 1;

  pb_app_common_resync_current_category();

  EXPECT_FALSE(hidden().resync);
}

TEST_F(ResyncCurrentCategory, IsOverAfterAFailure) {
  serve_albums({});
  state()->category_type = 0;

  EXPECT_FALSE(pb_app_common_resync_current_category());

  EXPECT_FALSE(hidden().resync);
}

TEST_F(ResyncCurrentCategory, LeavesTheRowAsItWas) {
  state()->category_type = 0;
  state()->item_index = 1;

  pb_app_common_resync_current_category();

  EXPECT_EQ(state()->item_index, 1);
}

TEST_F(ResyncCurrentCategory, FailsWithoutAnObject) {
  end_browsing();

  EXPECT_FALSE(pb_app_common_resync_current_category());
}

TEST_F(ResyncCurrentCategory, IsLoggedWithoutAnObject) {
  end_browsing();

  pb_app_common_resync_current_category();

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_WARNING,
                              "[pb_app_common_resync_current_category]"
                              "pb_app_common_resync_current_category : object = NULL\n")));
}

TEST_F(ResetListIndex, InstallsTheList) {
  const ListRef list = make_list({1, 2, 3});

  pb_app_common_reset_list_index(list.get());

  EXPECT_EQ(pb_app_common_get_item_list(), list.get());
}

TEST_F(ResetListIndex, TakesAReference) {
  const ListRef list = make_list({1, 2, 3});

  pb_app_common_reset_list_index(list.get());

  EXPECT_EQ(G_OBJECT(list.get())->ref_count, 2U);
}

TEST_F(ResetListIndex, TakesItsLength) {
  const ListRef list = make_list({1, kEmptyRow, 3});

  pb_app_common_reset_list_index(list.get());

  EXPECT_EQ(hidden().n_entire_items, 3);
}

TEST_F(ResetListIndex, StartsAtTheFirstRow) {
  state()->item_index = 2;
  const ListRef list = make_list({1, 2, 3});

  pb_app_common_reset_list_index(list.get());

  EXPECT_EQ(state()->item_index, 0);
}

TEST_F(ResetListIndex, DropsTheOldList) {
  ListRef old = browse({1, 2});
  const ExpectFinalized watch(old.get());
  old.reset();
  const ListRef list = make_list({1, 2, 3});

  pb_app_common_reset_list_index(list.get());

  EXPECT_TRUE(watch.finalized());
}

TEST_F(ResetListIndex, KeepsAListThatIsInstalledAgain) {
  PbItemList *list = browse({1, 2}).get();

  pb_app_common_reset_list_index(list);

  EXPECT_EQ(pb_app_common_get_item_list(), list);
  EXPECT_EQ(G_OBJECT(list)->ref_count, 1U);
}

TEST_F(ResetListIndex, LogsTheStart) {
  const ListRef list = make_list({1, 2, 3});

  pb_app_common_reset_list_index(list.get());

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_INFO,
                              "[pb_app_common_reset_list_index]\nReset Indx = 0, no of items = "
                              "3\n\n")));
}

TEST_F(ResetListIndex, NotifiesNothing) {
  const ListRef list = make_list({1, 2, 3});
  const NotifyCount notified(state(), "item-index");

  pb_app_common_reset_list_index(list.get());

  EXPECT_EQ(notified.count(), 0);
}

TEST_F(ResetListIndex, TakesTheListAway) {
  const ListRef old = browse({1, 2});

  pb_app_common_reset_list_index(nullptr);

  EXPECT_EQ(hidden().item_list, nullptr);
  EXPECT_EQ(hidden().n_entire_items, 0);
}

TEST_F(ResetListIndex, RefusesAForeignObject) {
  const ListRef old = browse({1, 2});
  const auto object = pb::Ref<PbItem>::adopt(pb_item_new());

  pb_app_common_reset_list_index(reinterpret_cast<PbItemList *>(object.get()));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_app_common_reset_list_index: assertion 'PB_IS_ITEM_LIST(list)' "
                          "failed"));
  EXPECT_EQ(pb_app_common_get_item_list(), old.get());
}

TEST_F(ResetListIndex, IsLoggedWithoutAnObject) {
  end_browsing();
  const ListRef list = make_list({1});

  pb_app_common_reset_list_index(list.get());

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_WARNING, "[pb_app_common_reset_list_index]thiz = NULL\n")));
}

TEST_F(ResyncCurrentIcons, ReachesTheList) {
  const ListRef list = browse({1, 2});

  pb_app_common_resync_current_icons();

  EXPECT_THAT(fake::platform().log,
              Contains(LoggedText(StartsWith("[pb_item_list_rsync_current_icons]"))));
}

TEST_F(ResyncCurrentIcons, DoesNothingWithoutAList) {
  pb_app_common_resync_current_icons();

  EXPECT_THAT(fake::platform().log, IsEmpty());
}

TEST_F(ResyncCurrentIcons, DoesNothingWithoutAnObject) {
  end_browsing();

  pb_app_common_resync_current_icons();

  EXPECT_THAT(fake::platform().log, SizeIs(1));
}

TEST_F(DisconnectSignal, ReachesTheList) {
  const ListRef list = browse({1, 2});

  pb_app_common_vls_disconnect_signal();

  EXPECT_THAT(fake::platform().log,
              Contains(LoggedText(StartsWith("[pb_item_list_vls_disconnect_signal]item_list: "))));
}

TEST_F(DisconnectSignal, DoesNothingWithoutAList) {
  pb_app_common_vls_disconnect_signal();

  EXPECT_THAT(fake::platform().log, IsEmpty());
}

TEST_F(DisconnectSignal, DoesNothingWithoutAnObject) {
  end_browsing();

  pb_app_common_vls_disconnect_signal();

  EXPECT_THAT(fake::platform().log, SizeIs(1));
}

}  // namespace

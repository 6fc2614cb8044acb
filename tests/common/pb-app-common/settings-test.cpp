#include "browsing-fixture.hpp"

namespace {

using fake::Logged;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr gint kUntouched = 1234;

using CurrentCategory = BrowsingFixture;
using IconSize = BrowsingFixture;
using FilterSortType = BrowsingFixture;
using AlbumFilterSortType = BrowsingFixture;
using CurrentList = BrowsingFixture;

TEST_F(CurrentCategory, IsNoneAtFirst) { EXPECT_EQ(pb_app_common_get_category(), -1); }

TEST_F(CurrentCategory, IsTheField) {
  state()->category_type = 3;

  EXPECT_EQ(pb_app_common_get_category(), 3);
}

TEST_F(CurrentCategory, IsZeroWithoutAnObject) {
  end_browsing();

  EXPECT_EQ(pb_app_common_get_category(), 0);
}

TEST_F(IconSize, Is148AtFirst) {
  gint size = kUntouched;
  pb_app_common_get_icon_size(&size);

  EXPECT_EQ(size, 148);
}

TEST_F(IconSize, IsReadAsSet) {
  pb_app_common_set_icon_size(64);

  gint size = kUntouched;
  pb_app_common_get_icon_size(&size);

  EXPECT_EQ(size, 64);
}

TEST_F(IconSize, IsZeroWithoutAnObject) {
  end_browsing();

  gint size = kUntouched;
  pb_app_common_get_icon_size(&size);

  EXPECT_EQ(size, 0);
}

TEST_F(IconSize, LogsThatNothingCanBeRead) {
  end_browsing();

  gint size = kUntouched;
  pb_app_common_get_icon_size(&size);

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_WARNING, "[pb_app_common_get_icon_size]priv == NULL !!!\n")));
}

TEST_F(IconSize, LogsThatNothingCanBeSet) {
  end_browsing();

  pb_app_common_set_icon_size(64);

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_WARNING, "[pb_app_common_set_icon_size]priv == NULL !!!\n")));
}

TEST_F(IconSize, NeedsAPlaceToBeStored) {
  pb_app_common_get_icon_size(nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_app_common_get_icon_size: assertion 'size' failed"));
}

TEST_F(FilterSortType, IsAllFilesInOrderFourAtFirst) {
  gint sort = kUntouched;
  gint64 filter = kUntouched;
  pb_app_common_get_filter_sort_type(&sort, &filter);

  EXPECT_EQ(sort, 4);
  EXPECT_EQ(filter, -1);
}

TEST_F(FilterSortType, IsReadAsSet) {
  pb_app_common_set_filter_sort_type(7, G_GINT64_CONSTANT(0x100000013));

  gint sort = kUntouched;
  gint64 filter = kUntouched;
  pb_app_common_get_filter_sort_type(&sort, &filter);

  EXPECT_EQ(sort, 7);
  EXPECT_EQ(filter, G_GINT64_CONSTANT(0x100000013));
}

TEST_F(FilterSortType, IsLoggedWhenSet) {
  pb_app_common_set_filter_sort_type(7, G_GINT64_CONSTANT(4294967315));

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_INFO,
                                 "[pb_app_common_set_filter_sort_type] sort=7, "
                                 "filter=4294967315\n")));
}

TEST_F(FilterSortType, LeavesTheAlbumsAlone) {
  pb_app_common_set_filter_sort_type(7, 9);

  EXPECT_EQ(hidden().album_sort, 2);
  EXPECT_EQ(hidden().album_filter, 0);
}

TEST_F(FilterSortType, IsZeroWithoutAnObject) {
  end_browsing();

  gint sort = kUntouched;
  gint64 filter = kUntouched;
  pb_app_common_get_filter_sort_type(&sort, &filter);

  EXPECT_EQ(sort, 0);
  EXPECT_EQ(filter, 0);
}

TEST_F(FilterSortType, CannotBeSetWithoutAnObject) {
  end_browsing();

  pb_app_common_set_filter_sort_type(7, 9);

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_ERROR,
                              "[pb_app_common_get_instance]pb_app_common_get_instance : "
                              "g_app_common_instance == NULL\n")));
}

TEST_F(AlbumFilterSortType, IsOrderTwoAtFirst) {
  gint sort = kUntouched;
  gint filter = kUntouched;
  pb_app_common_get_album_filter_sort_type(&sort, &filter);

  EXPECT_EQ(sort, 2);
  EXPECT_EQ(filter, 0);
}

TEST_F(AlbumFilterSortType, IsReadAsSet) {
  pb_app_common_set_album_filter_sort_type(1, 3);

  gint sort = kUntouched;
  gint filter = kUntouched;
  pb_app_common_get_album_filter_sort_type(&sort, &filter);

  EXPECT_EQ(sort, 1);
  EXPECT_EQ(filter, 3);
}

TEST_F(AlbumFilterSortType, IsLoggedWhenSet) {
  pb_app_common_set_album_filter_sort_type(1, 3);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_INFO,
                                 "[pb_app_common_set_album_filter_sort_type] sort=1, "
                                 "filter=3\n")));
}

TEST_F(AlbumFilterSortType, IsLoggedWhenRead) {
  gint sort = kUntouched;
  gint filter = kUntouched;
  pb_app_common_get_album_filter_sort_type(&sort, &filter);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_INFO,
                                 "[pb_app_common_get_album_filter_sort_type] **sort=2, "
                                 "**filter=0\n")));
}

TEST_F(AlbumFilterSortType, LeavesTheFilesAlone) {
  pb_app_common_set_album_filter_sort_type(1, 3);

  EXPECT_EQ(hidden().sort, 4);
  EXPECT_EQ(hidden().filter, -1);
}

TEST_F(AlbumFilterSortType, IsZeroWithoutAnObject) {
  end_browsing();

  gint sort = kUntouched;
  gint filter = kUntouched;
  pb_app_common_get_album_filter_sort_type(&sort, &filter);

  EXPECT_EQ(sort, 0);
  EXPECT_EQ(filter, 0);
}

TEST_F(AlbumFilterSortType, CannotBeSetWithoutAnObject) {
  end_browsing();

  pb_app_common_set_album_filter_sort_type(1, 3);

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_ERROR,
                              "[pb_app_common_get_instance]pb_app_common_get_instance : "
                              "g_app_common_instance == NULL\n")));
}

TEST_F(CurrentList, IsBorrowed) {
  const ListRef list = browse({1, 2});

  EXPECT_EQ(pb_app_common_get_item_list(), list.get());

  EXPECT_EQ(G_OBJECT(list.get())->ref_count, 2U);
}

TEST_F(CurrentList, IsMissingAtFirst) {
  EXPECT_EQ(pb_app_common_get_item_list(), nullptr);

  EXPECT_THAT(take_glib_warnings(), ElementsAre("pb_app_common_get_item_list: assertion "
                                                "'PB_IS_ITEM_LIST(priv->item_list)' failed"));
}

TEST_F(CurrentList, IsMissingWithoutAnObject) {
  end_browsing();

  EXPECT_EQ(pb_app_common_get_item_list(), nullptr);
}

class ScrollWidgets : public BrowsingFixture {
 protected:
  /// Neither is used by the browsing state, so the view need not be a widget here.
  pb::Ref<GObject> view_ =
      pb::Ref<GObject>::adopt(G_OBJECT(g_object_new(G_TYPE_INITIALLY_UNOWNED, nullptr)));
  pb::Ref<GtkAdjustment> adjustment_ =
      pb::Ref<GtkAdjustment>::sink(GTK_ADJUSTMENT(gtk_adjustment_new(0, 0, 100, 1, 10, 10)));

  GtkWidget *view() { return reinterpret_cast<GtkWidget *>(view_.get()); }

  GtkWidget *read_view_ = reinterpret_cast<GtkWidget *>(1);
  GtkAdjustment *read_adjustment_ = reinterpret_cast<GtkAdjustment *>(1);
};

TEST_F(ScrollWidgets, AreMissingAtFirst) {
  pb_app_common_get_adjustment_widget(&read_view_, &read_adjustment_);

  EXPECT_EQ(read_view_, nullptr);
  EXPECT_EQ(read_adjustment_, nullptr);
}

TEST_F(ScrollWidgets, AreReadAsSet) {
  pb_app_common_set_adjustment(view(), adjustment_.get());

  pb_app_common_get_adjustment_widget(&read_view_, &read_adjustment_);

  EXPECT_EQ(read_view_, view());
  EXPECT_EQ(read_adjustment_, adjustment_.get());
}

TEST_F(ScrollWidgets, AreNotReferenced) {
  const guint references = G_OBJECT(adjustment_.get())->ref_count;

  pb_app_common_set_adjustment(view(), adjustment_.get());

  EXPECT_EQ(view_->ref_count, 1U);
  EXPECT_EQ(G_OBJECT(adjustment_.get())->ref_count, references);
}

TEST_F(ScrollWidgets, AreForgottenWhenTheyGo) {
  pb_app_common_set_adjustment(view(), adjustment_.get());
  view_.reset();
  adjustment_.reset();

  pb_app_common_get_adjustment_widget(&read_view_, &read_adjustment_);

  EXPECT_EQ(read_view_, nullptr);
  EXPECT_EQ(read_adjustment_, nullptr);
}

TEST_F(ScrollWidgets, AreTakenAway) {
  pb_app_common_set_adjustment(view(), adjustment_.get());

  pb_app_common_set_adjustment(nullptr, nullptr);

  pb_app_common_get_adjustment_widget(&read_view_, &read_adjustment_);
  EXPECT_EQ(read_view_, nullptr);
  EXPECT_EQ(read_adjustment_, nullptr);
}

TEST_F(ScrollWidgets, MayOutliveTheState) {
  pb_app_common_set_adjustment(view(), adjustment_.get());

  end_browsing();

  view_.reset();
  EXPECT_FALSE(view_);
}

TEST_F(ScrollWidgets, AreLoggedWhenTheyCannotBeSet) {
  end_browsing();

  pb_app_common_set_adjustment(view(), adjustment_.get());

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_WARNING, "[pb_app_common_set_adjustment]priv == NULL !!!\n")));
}

TEST_F(ScrollWidgets, AreNullWithoutAnObject) {
  end_browsing();

  pb_app_common_get_adjustment_widget(&read_view_, &read_adjustment_);

  EXPECT_EQ(read_view_, nullptr);
  EXPECT_EQ(read_adjustment_, nullptr);
}

TEST_F(ScrollWidgets, NeedAPlaceForTheView) {
  pb_app_common_get_adjustment_widget(nullptr, &read_adjustment_);

  EXPECT_THAT(take_glib_warnings(), ElementsAre("pb_app_common_get_adjustment_widget: assertion "
                                                "'iconview&&adjustment' failed"));
}

TEST_F(ScrollWidgets, NeedAPlaceForTheAdjustment) {
  pb_app_common_get_adjustment_widget(&read_view_, nullptr);

  EXPECT_THAT(take_glib_warnings(), ElementsAre("pb_app_common_get_adjustment_widget: assertion "
                                                "'iconview&&adjustment' failed"));
}

class SetCategory : public BrowsingFixture {
 protected:
  void SetUp() override {
    BrowsingFixture::SetUp();
    serve_albums({fake::make_album(1, "one"), fake::make_album(2, "two")});
  }
};

TEST_F(SetCategory, LogsTheCategory) {
  pb_app_common_set_category(0, FALSE);

  EXPECT_THAT(fake::platform().log,
              Contains(Logged(PB_LOG_INFO, "[pb_app_common_set_category]CATE:0\n")));
}

TEST_F(SetCategory, ChangesTheCategory) {
  EXPECT_TRUE(pb_app_common_set_category(0, FALSE));

  EXPECT_EQ(state()->category_type, 0);
}

TEST_F(SetCategory, BuildsItsList) {
  pb_app_common_set_category(0, FALSE);

  EXPECT_EQ(pb_item_list_get_length(pb_app_common_get_item_list()), 2);
}

TEST_F(SetCategory, StartsAtTheFirstRow) {
  state()->item_index = 5;

  pb_app_common_set_category(0, FALSE);

  EXPECT_EQ(state()->item_index, 0);
}

TEST_F(SetCategory, NotifiesOnceWhenItSucceeds) {
  const NotifyCount notified(state(), "category-type");

  pb_app_common_set_category(0, FALSE);

  EXPECT_EQ(notified.count(), 1);
}

TEST_F(SetCategory, BuildsNothingForTheCurrentCategory) {
  state()->category_type = 0;

  EXPECT_TRUE(pb_app_common_set_category(0, FALSE));

  EXPECT_THAT(fake::platform().calls, IsEmpty());
  EXPECT_EQ(hidden().item_list, nullptr);
}

TEST_F(SetCategory, StartsAtTheFirstRowOfTheCurrentCategory) {
  state()->category_type = 0;
  state()->item_index = 5;

  pb_app_common_set_category(0, FALSE);

  EXPECT_EQ(state()->item_index, 0);
}

TEST_F(SetCategory, NotifiesNothingForTheCurrentCategory) {
  state()->category_type = 0;
  const NotifyCount notified(state(), "category-type");

  pb_app_common_set_category(0, FALSE);

  EXPECT_EQ(notified.count(), 0);
}

TEST_F(SetCategory, BuildsTheCurrentCategoryWhenForced) {
  state()->category_type = 0;

  EXPECT_TRUE(pb_app_common_set_category(0, TRUE));

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_all_albums_ex"), testing::SizeIs(1));
}

TEST_F(SetCategory, FailsWithAnEmptyList) {
  serve_albums({});

  EXPECT_FALSE(pb_app_common_set_category(0, FALSE));
}

TEST_F(SetCategory, ChangesTheCategoryWhenItFails) {
  serve_albums({});

  pb_app_common_set_category(0, FALSE);

  EXPECT_EQ(state()->category_type, 0);
}

TEST_F(SetCategory, KeepsTheRowWhenItFails) {
  serve_albums({});
  state()->item_index = 5;

  pb_app_common_set_category(0, FALSE);

  EXPECT_EQ(state()->item_index, 5);
}

TEST_F(SetCategory, NotifiesASecondTimeWhenItFails) {
  serve_albums({});
  const NotifyCount notified(state(), "category-type");

  pb_app_common_set_category(0, FALSE);

  EXPECT_EQ(notified.count(), 2);
}

TEST_F(SetCategory, LogsItsFailure) {
  serve_albums({});

  pb_app_common_set_category(0, FALSE);

  EXPECT_THAT(fake::platform().log,
              Contains(LoggedText("[pb_app_common_set_category]return FALSE\n")));
}

TEST_F(SetCategory, LogsNoFailureWhenItSucceeds) {
  pb_app_common_set_category(0, FALSE);

  EXPECT_THAT(fake::platform().log,
              Not(Contains(LoggedText("[pb_app_common_set_category]return FALSE\n"))));
}

TEST_F(SetCategory, FailsWithoutAnObject) {
  end_browsing();

  EXPECT_FALSE(pb_app_common_set_category(0, FALSE));
}

}  // namespace

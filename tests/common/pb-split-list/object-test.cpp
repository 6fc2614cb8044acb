#include "fixture.hpp"

namespace {

using item_list_test::address_of;
using split_list_test::log_of;
using split_list_test::new_list;
using split_list_test::private_of;
using split_list_test::record;
using split_list_test::Records;
using split_list_test::SplitListTest;
using split_list_test::SplitPtr;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using SplitList = SplitListTest;

/// A list that owns records.
SplitPtr list_of(gint count) {
  SplitPtr list = new_list();
  std::vector<MbItem> records;
  for (gint id = 1; id <= count; ++id) records.push_back(record(id, id));
  PbSplitListPrivate &priv = private_of(list);
  priv.record_list = fake::record_list(records);
  priv.count = count;
  priv.record_last = count - 1;
  return list;
}

TEST_F(SplitList, IsAListStoreOfItsName) {
  const SplitPtr list = new_list();

  EXPECT_TRUE(GTK_IS_LIST_STORE(list.get()));
  EXPECT_STREQ(G_OBJECT_TYPE_NAME(list.get()), "PbSplitList");
}

TEST_F(SplitList, HasTheColumnsOfTheItemList) {
  const SplitPtr list = new_list();
  GtkTreeModel *model = GTK_TREE_MODEL(list.get());

  ASSERT_EQ(gtk_tree_model_get_n_columns(model), 4);
  EXPECT_EQ(gtk_tree_model_get_column_type(model, 0), PB_TYPE_ITEM);
  EXPECT_EQ(gtk_tree_model_get_column_type(model, 1), G_TYPE_STRING);
  EXPECT_EQ(gtk_tree_model_get_column_type(model, 2), G_TYPE_INT);
  EXPECT_EQ(gtk_tree_model_get_column_type(model, 3), GDK_TYPE_PIXBUF);
}

TEST_F(SplitList, BeginsWithItsInitialValues) {
  const SplitPtr list = new_list();

  const PbSplitListPrivate &priv = private_of(list);
  EXPECT_EQ(priv.count, 0);
  EXPECT_EQ(priv.record_list, nullptr);
  EXPECT_EQ(priv.record_first, 0);
  EXPECT_EQ(priv.record_last, -1);
  EXPECT_EQ(priv.vadjustment.get(), nullptr);
  EXPECT_EQ(priv.hpaned.get(), nullptr);
  EXPECT_EQ(priv.rows_in_view, 27);
  EXPECT_EQ(priv.rows_ahead, 9);
  EXPECT_EQ(priv.columns, 3);
  EXPECT_EQ(priv.refresh_source, -1);
  EXPECT_EQ(priv.scroll_direction, 1);
  EXPECT_EQ(priv.refresh_remaining, 27);
  EXPECT_EQ(priv.refresh_count, 27);
  EXPECT_EQ(priv.sub_record_list, nullptr);
  EXPECT_EQ(priv.loads_thumbnails, 1);
}

TEST_F(SplitList, HasZerosInItsOtherWords) {
  const SplitPtr list = new_list();

  const PbSplitListPrivate &priv = private_of(list);
  EXPECT_EQ(priv.album_id, 0);
  EXPECT_EQ(priv.view_start, 0);
  EXPECT_EQ(priv.refresh_progress, 0);
  EXPECT_EQ(priv.renumber_from, 0);
  EXPECT_EQ(priv.fill_source, 0);
  EXPECT_EQ(priv.row_height, 0);
  EXPECT_EQ(priv.renumbering, 0);
}

TEST_F(SplitList, ScalesTheDefaultIconTo64Pixels) {
  std::vector<gint> ids;
  fake::platform().rsrc_get_image = [&ids](gint, gint id) {
    ids.push_back(id);
    return support::quartered_pixbuf(148, 148).release();
  };
  pb_res_open();

  const SplitPtr list = new_list();

  GdkPixbuf *icon = private_of(list).default_icon.get();
  ASSERT_NE(icon, nullptr);
  EXPECT_THAT(ids, ElementsAre(67));
  EXPECT_EQ(gdk_pixbuf_get_width(icon), 64);
  EXPECT_EQ(gdk_pixbuf_get_height(icon), 64);
  const auto source = support::quartered_pixbuf(148, 148);
  const auto expected =
      pb::Ref<GdkPixbuf>::adopt(gdk_pixbuf_scale_simple(source.get(), 64, 64, GDK_INTERP_BILINEAR));
  for (int i = 0; i < 64; ++i) {
    EXPECT_EQ(support::pixel_at(icon, i, 31), support::pixel_at(expected.get(), i, 31));
  }
}

TEST_F(SplitList, IsMadeWithoutItsBitmap) {
  fake::platform().rsrc_get_image = [](gint, gint) -> GdkPixbuf * { return nullptr; };

  const SplitPtr list = new_list();

  EXPECT_EQ(private_of(list).default_icon.get(), nullptr);
}

TEST_F(SplitList, LogsTheViewType) {
  pb_split_set_view_type(4);

  const SplitPtr list = new_list();

  EXPECT_THAT(log_of("pb_split_list_init"), ElementsAre("iconview_type: 4\n"));
}

TEST_F(SplitList, LogsItsBirthWithTheCount) {
  const SplitPtr first = new_list();
  fake::take_log();

  const SplitPtr second = new_list();

  EXPECT_EQ(pb_split_list_count, 2);
  EXPECT_THAT(fake::platform().log,
              Contains(LoggedText("[pb_split_list_new]==============pb_split_list_new(" +
                                  address_of(second.get()) + "), count=2================\n")));
}

TEST_F(SplitList, LogsItsEndWithTheCount) {
  SplitPtr list = new_list();
  const std::string address = address_of(list.get());

  list.reset();

  EXPECT_EQ(pb_split_list_count, 0);
  EXPECT_THAT(log_of("pb_split_list_finalize"),
              ElementsAre("==============pb_split_list_finalize(" + address +
                          "), count=0================\n"));
}

TEST_F(SplitList, FilesItsLinesUnderItsModule) {
  const SplitPtr list = new_list();

  ASSERT_THAT(fake::platform().log, Not(IsEmpty()));
  EXPECT_EQ(fake::platform().log.back().file, "common/pb-split-list");
}

TEST_F(SplitList, FreesItsRecordsAtTheEnd) {
  SplitPtr list = list_of(2);

  list.reset();

  EXPECT_THAT(fake::calls_of("fm_svc_mb_glist_free"), ElementsAre("fm_svc_mb_glist_free(1)"));
  EXPECT_THAT(log_of("pb_split_list_finalize"),
              ElementsAre("record_list free\n", "done\n", HasSubstr("pb_split_list_finalize(0x")));
}

TEST_F(SplitList, FreesItsSecondRecordsAtTheEnd) {
  SplitPtr list = new_list();
  private_of(list).sub_record_list = fake::record_list<MbItem>({record(1, 1)});

  list.reset();

  EXPECT_THAT(fake::calls_of("fm_svc_mb_glist_free"), ElementsAre("fm_svc_mb_glist_free(1)"));
  EXPECT_THAT(log_of("pb_split_list_finalize"), ElementsAre(HasSubstr("count=0")));
}

TEST_F(SplitList, DropsTheDefaultIcon) {
  SplitPtr list = new_list();
  const support::ExpectFinalized watch(private_of(list).default_icon.get());

  list.reset();
}

TEST_F(SplitList, RemovesItsPendingRefresh) {
  const split_list_test::View view;
  SplitPtr list = new_list();
  pb_split_list_icon_refresh_when_start(list.get());
  ASSERT_EQ(split_list_test::pending_of(split_list_test::kRefresh), 1);

  list.reset();

  EXPECT_THAT(fake::pending_idles(), IsEmpty());
}

TEST_F(SplitList, StopsFollowingItsWidgets) {
  const split_list_test::View view;
  SplitPtr list = list_of(1);
  pb_split_list_icon_refresh_when_start(list.get());
  const std::string address = address_of(list.get());
  fake::take_log();

  list.reset();

  EXPECT_THAT(
      log_of("pb_split_list_finalize"),
      ElementsAre("record_list free\n", "done\n",
                  "vadjustment_cb disconnected (item_list=" + address + ")\n",
                  "paned_cb disconnected (item_list=" + address + ")\n", HasSubstr("count=0")));
  view.scroll(500);
  gtk_paned_set_position(GTK_PANED(view.paned.get()), 30);
}

TEST_F(SplitList, SaysNothingOfWidgetsThatAreGone) {
  SplitPtr list = list_of(1);
  {
    const split_list_test::View view;
    pb_split_list_icon_refresh_when_start(list.get());
  }
  fake::take_log();

  list.reset();

  EXPECT_THAT(fake::platform().log, Not(Contains(LoggedText(HasSubstr("disconnected")))));
}

TEST_F(SplitList, LeavesOtherListsConnected) {
  const split_list_test::View view;
  SplitPtr list = list_of(1);
  const SplitPtr other = list_of(1);
  pb_split_list_icon_refresh_when_start(list.get());
  pb_split_list_icon_refresh_when_start(other.get());
  fake::run_idles();
  list.reset();

  view.scroll(500);

  EXPECT_EQ(split_list_test::pending_of(split_list_test::kRefresh), 1);
}

TEST_F(SplitList, FreesNothingThatWasHandedOver) {
  SplitPtr list = list_of(2);
  Records records;
  records.head = private_of(list).record_list;

  pb_split_clear_record_list(list.get());
  list.reset();

  EXPECT_THAT(fake::calls_of("fm_svc_mb_glist_free"), IsEmpty());
  EXPECT_THAT(records.ids(), ElementsAre(1, 2));
}

TEST_F(SplitList, LogsThatTheRecordsAreHandedOver) {
  const SplitPtr list = new_list();

  pb_split_clear_record_list(list.get());

  EXPECT_EQ(private_of(list).record_list, nullptr);
  EXPECT_THAT(log_of("pb_split_clear_record_list"),
              ElementsAre("item_list: " + address_of(list.get()) + " record_list cleared.\n"));
}

TEST_F(SplitList, HasTheLengthOfItsCount) {
  const SplitPtr list = list_of(3);

  EXPECT_EQ(pb_split_list_get_length(list.get()), 3);
}

TEST_F(SplitList, HasNoLengthWhenThereIsNone) {
  EXPECT_EQ(pb_split_list_get_length(nullptr), 0);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_split_list_get_length: assertion 'list' failed"));
  EXPECT_THAT(log_of("pb_split_list_get_length"), ElementsAre("split list is null\n"));
}

using FullRecordList = SplitListTest;

TEST_F(FullRecordList, AsksNothingForAnEmptyList) {
  const SplitPtr list = new_list();
  fake::take_calls();
  fake::take_log();

  EXPECT_FALSE(pb_split_get_full_record_list(list.get()));

  EXPECT_THAT(fake::platform().calls, IsEmpty());
  EXPECT_THAT(fake::platform().log, IsEmpty());
}

TEST_F(FullRecordList, ReplacesTheRecords) {
  split_list_test::serve(3);
  const SplitPtr list = list_of(3);
  private_of(list).record_first = 7;
  GList *old = private_of(list).record_list;
  pb_app_common_set_filter_sort_type(5, 16);

  EXPECT_TRUE(pb_split_get_full_record_list(list.get()));

  const PbSplitListPrivate &priv = private_of(list);
  EXPECT_NE(priv.record_list, old);
  EXPECT_THAT(split_list_test::ids_of(priv.record_list), ElementsAre(1, 2, 3));
  EXPECT_EQ(priv.record_first, 0);
  EXPECT_EQ(priv.record_last, 2);
  EXPECT_THAT(
      log_of("pb_split_get_full_record_list"),
      ElementsAre("sort_type = 5, filter = 16\n", "Split new record list created: (0, 2)\n"));
  EXPECT_THAT(fake::calls_of("fm_svc_mb_glist_free"), ElementsAre("fm_svc_mb_glist_free(1)"));
}

TEST_F(FullRecordList, KeepsTheRecordsWhenTheServiceHasFewer) {
  split_list_test::serve(2);
  const SplitPtr list = list_of(3);
  GList *old = private_of(list).record_list;

  EXPECT_FALSE(pb_split_get_full_record_list(list.get()));

  EXPECT_EQ(private_of(list).record_list, old);
  EXPECT_EQ(private_of(list).record_last, 2);
  EXPECT_THAT(log_of("pb_split_get_full_record_list"), ElementsAre(HasSubstr("sort_type")));
}

TEST_F(FullRecordList, FreesFetchedRecordsOfTheWrongNumber) {
  split_list_test::serve(2);
  const SplitPtr list = list_of(3);
  fake::take_calls();

  EXPECT_FALSE(pb_split_get_full_record_list(list.get()));

  EXPECT_THAT(fake::calls_of("fm_svc_mb_glist_free"), ElementsAre("fm_svc_mb_glist_free(1)"));
}

TEST_F(FullRecordList, KeepsTheRecordsWhenTheServiceHasMore) {
  const SplitPtr list = list_of(1);
  fake::platform().fm_svc_mb_get_list = [](const gchar *, gint, gint, gint64, gint, GList **records,
                                           gint, gint, gint *) {
    *records = fake::record_list<MbItem>({record(1, 1), record(2, 2)});
    return TRUE;
  };

  EXPECT_FALSE(pb_split_get_full_record_list(list.get()));

  EXPECT_THAT(split_list_test::ids_of(private_of(list).record_list), ElementsAre(1));
}

struct Filter {
  gint64 setting;
  gint64 asked;
};
void PrintTo(const Filter &filter, std::ostream *out) {
  *out << filter.setting << " as " << filter.asked;
}

class FullRecordFilter : public SplitListTest, public testing::WithParamInterface<Filter> {};

TEST_P(FullRecordFilter, IsMapped) {
  split_list_test::serve(1);
  const SplitPtr list = list_of(1);
  pb_app_common_set_filter_sort_type(2, GetParam().setting);
  fake::take_calls();

  pb_split_get_full_record_list(list.get());

  EXPECT_THAT(fake::calls_of("fm_svc_mb_get_list"),
              ElementsAre("fm_svc_mb_get_list(\"/\", 2, 2, " + std::to_string(GetParam().asked) +
                          ", 0, 0, 0)"));
}

INSTANTIATE_TEST_SUITE_P(Each, FullRecordFilter,
                         testing::Values(Filter{-1, 3}, Filter{-2, 19}, Filter{0, 3}, Filter{1, 3},
                                         Filter{2, 3}, Filter{16, 19}, Filter{0x23, 0x23},
                                         Filter{0x100000000, 0x100000003},
                                         Filter{0xFFFFFFFF, 0xFFFFFFFF},
                                         Filter{0xFFFFFFFE, 0xFFFFFFFF}));

}  // namespace

#include <functional>

#include "fixture.hpp"

namespace {

using item_list_test::is_connected;
using item_list_test::ItemListTest;
using item_list_test::ListPtr;
using item_list_test::log_of;
using item_list_test::new_list;
using item_list_test::private_of;
using item_list_test::Says;
using item_list_test::View;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const GCallback kInsert = G_CALLBACK(pb_item_list_insert_data);
const GCallback kSub = G_CALLBACK(pb_item_list_sub_insert_data);
const GCallback kAlbum = G_CALLBACK(pb_item_list_album_insert_data);
const GCallback kShare = G_CALLBACK(pb_item_list_share_insert_data);

ListPtr connected_list(GCallback fill, gint total = 0) {
  ListPtr list = new_list();
  pb::item_list::connect_store(list.get(), fill, total);
  return list;
}

void emit(const ListPtr &list, const char *signal) { g_signal_emit_by_name(list.get(), signal, 0); }

std::string end_line(const ListPtr &list, int count) {
  return "==============pb_item_list_finalize(" + item_list_test::address_of(list.get()) +
         "), count=" + std::to_string(count) + "================\n";
}

/// A list with an idle source and a followed adjustment.
ListPtr refreshing_list(const View &view) {
  ListPtr list = connected_list(kInsert);
  view.attach(list);
  pb_item_list_vadjustment_cb(nullptr, nullptr, list.get());
  return list;
}

using ConnectStore = ItemListTest;

TEST_F(ConnectStore, ConnectsTheThreeSignals) {
  const ListPtr list = connected_list(kSub);

  for (const char *signal : {"fill-cache", "initialize-cache", "finalize-cache"}) {
    const guint id = g_signal_lookup(signal, PB_TYPE_ITEM_LIST);
    EXPECT_TRUE(g_signal_has_handler_pending(list.get(), id, 0, TRUE)) << signal;
  }
}

TEST_F(ConnectStore, GivesTheStoreItsLength) {
  const ListPtr list = connected_list(kSub, 250);

  EXPECT_EQ(item_list_test::store_rows(list), 250);
}

TEST_F(ConnectStore, KeepsAHundredRowsFilled) {
  const ListPtr list = connected_list(kInsert, 1000);
  list->category = 2;
  private_of(list).row_count = 1000;
  gtk_virtual_list_store_set_view_range(GTK_VIRTUAL_LIST_STORE(list.get()), 300, 310);

  item_list_test::read_row(list, 305);

  const std::string line = log_of("pb_item_list_insert_data").at(0);
  int first = 0;
  int last = 0;
  ASSERT_EQ(sscanf(line.c_str(), "pb_item_list(2): (%d,%d), row=305", &first, &last), 2) << line;
  EXPECT_EQ(last - first + 1, 100);
}

TEST_F(ConnectStore, ConnectsASecondTimeOnlyOnce) {
  const ListPtr list = connected_list(kSub, 10);

  pb::item_list::connect_store(list.get(), kSub, 10);

  g_signal_handlers_disconnect_matched(list.get(), G_SIGNAL_MATCH_FUNC, 0, 0, nullptr,
                                       reinterpret_cast<gpointer>(kInsert), nullptr);
  EXPECT_EQ(g_signal_handlers_disconnect_matched(list.get(), G_SIGNAL_MATCH_FUNC, 0, 0, nullptr,
                                                 reinterpret_cast<gpointer>(kSub), nullptr),
            1U);
}

using InitializeCache = ItemListTest;

TEST_F(InitializeCache, ConnectsToTheDatabase) {
  const ListPtr list = connected_list(kInsert);

  emit(list, "initialize-cache");

  EXPECT_THAT(fake::calls_of("fexplorer_initialize"), SizeIs(1));
  EXPECT_TRUE(private_of(list).database_connected);
}

TEST_F(InitializeCache, LogsTheConnection) {
  const ListPtr list = connected_list(kInsert);

  emit(list, "initialize-cache");

  EXPECT_THAT(
      fake::platform().log,
      Contains(testing::Field(&fake::LogLine::text,
                              testing::EndsWith("]***connect to the filemanager database*** \n"))));
}

TEST_F(InitializeCache, DoesNotConnectTwice) {
  const ListPtr list = connected_list(kInsert);

  emit(list, "initialize-cache");
  emit(list, "initialize-cache");

  EXPECT_THAT(fake::calls_of("fexplorer_initialize"), SizeIs(1));
}

TEST_F(InitializeCache, StopsTheFillingOfAListThatCannotConnect) {
  fake::platform().fexplorer_initialize = [](gint *) { return FALSE; };
  const ListPtr list = connected_list(kInsert);

  emit(list, "initialize-cache");

  EXPECT_FALSE(is_connected(list, "fill-cache", kInsert));
  EXPECT_FALSE(private_of(list).database_connected);
}

TEST_F(InitializeCache, LogsTheFailure) {
  fake::platform().fexplorer_initialize = [](gint *) { return FALSE; };
  const ListPtr list = connected_list(kInsert);

  emit(list, "initialize-cache");

  EXPECT_THAT(fake::platform().log,
              Contains(testing::Field(
                  &fake::LogLine::text,
                  testing::EndsWith("]***Failed to connect to the filemanager database*** \n"))));
}

TEST_F(InitializeCache, LeavesTheOtherFillHandlersConnected) {
  fake::platform().fexplorer_initialize = [](gint *) { return FALSE; };
  const ListPtr list = connected_list(kSub);

  emit(list, "initialize-cache");

  EXPECT_TRUE(is_connected(list, "fill-cache", kSub));
}

using FinalizeCache = ItemListTest;

TEST_F(FinalizeCache, DisconnectsFromTheDatabase) {
  const ListPtr list = connected_list(kInsert);
  emit(list, "initialize-cache");

  emit(list, "finalize-cache");

  EXPECT_EQ(fake::platform().fexplorer_connections, 0);
  EXPECT_FALSE(private_of(list).database_connected);
}

TEST_F(FinalizeCache, LogsTheDisconnection) {
  const ListPtr list = connected_list(kInsert);

  emit(list, "finalize-cache");

  EXPECT_THAT(
      fake::platform().log,
      Contains(testing::Field(&fake::LogLine::text,
                              testing::EndsWith("]***disconnect the filemanager database*** \n"))));
}

TEST_F(FinalizeCache, StaysConnectedWhenItFails) {
  fake::platform().fexplorer_finalize = [] { return FALSE; };
  const ListPtr list = connected_list(kInsert);
  emit(list, "initialize-cache");

  emit(list, "finalize-cache");

  EXPECT_TRUE(private_of(list).database_connected);
}

TEST_F(FinalizeCache, LogsTheFailure) {
  fake::platform().fexplorer_finalize = [] { return FALSE; };
  const ListPtr list = connected_list(kInsert);

  emit(list, "finalize-cache");

  EXPECT_THAT(fake::platform().log,
              Contains(testing::Field(
                  &fake::LogLine::text,
                  testing::EndsWith("]***Failed to disconnect the filemanager database*** \n"))));
}

/// A disconnect function, its name, the handler of its family and one of another.
struct Family {
  const char *name;
  void (*disconnect)(PbItemList *);
  GCallback own;
  GCallback other;
};
void PrintTo(const Family &family, std::ostream *out) { *out << family.name; }

class Disconnect : public ItemListTest, public testing::WithParamInterface<Family> {};

TEST_P(Disconnect, EndsTheFillingOfItsFamily) {
  const ListPtr list = connected_list(GetParam().own);

  GetParam().disconnect(list.get());

  EXPECT_FALSE(is_connected(list, "fill-cache", GetParam().own));
}

TEST_P(Disconnect, LeavesTheFillingOfAnotherFamily) {
  const ListPtr list = connected_list(GetParam().other);

  GetParam().disconnect(list.get());

  EXPECT_TRUE(is_connected(list, "fill-cache", GetParam().other));
}

TEST_P(Disconnect, EndsTheConnectingToTheDatabase) {
  const ListPtr list = connected_list(GetParam().own);

  GetParam().disconnect(list.get());
  emit(list, "initialize-cache");

  EXPECT_THAT(fake::calls_of("fexplorer_initialize"), IsEmpty());
}

TEST_P(Disconnect, LeavesTheDisconnectingFromTheDatabase) {
  const ListPtr list = connected_list(GetParam().own);

  GetParam().disconnect(list.get());
  emit(list, "finalize-cache");

  EXPECT_THAT(fake::calls_of("fexplorer_finalize"), SizeIs(1));
}

TEST_P(Disconnect, LogsTheList) {
  const ListPtr list = connected_list(GetParam().own);

  GetParam().disconnect(list.get());

  EXPECT_THAT(log_of(GetParam().name),
              ElementsAre("item_list: " + item_list_test::address_of(list.get()) +
                          " signal disconnected.\n"));
}

TEST_P(Disconnect, WarnsAboutANullList) {
  GetParam().disconnect(nullptr);

  EXPECT_THAT(take_glib_warnings(), ElementsAre(std::string(GetParam().name) +
                                                ": assertion 'PB_IS_ITEM_LIST(item_list)' failed"));
}

TEST_P(Disconnect, WarnsAboutAForeignList) {
  const auto item = pb::Ref<PbItem>::adopt(pb_item_new());

  GetParam().disconnect(reinterpret_cast<PbItemList *>(item.get()));

  EXPECT_THAT(take_glib_warnings(), ElementsAre(std::string(GetParam().name) +
                                                ": assertion 'PB_IS_ITEM_LIST(item_list)' failed"));
}

INSTANTIATE_TEST_SUITE_P(
    Families, Disconnect,
    testing::Values(Family{"pb_item_sub_list_disconnect_signal", pb_item_sub_list_disconnect_signal,
                           kSub, kAlbum},
                    Family{"pb_item_share_list_disconnect_signal",
                           pb_item_share_list_disconnect_signal, kShare, kInsert},
                    Family{"pb_item_list_vls_disconnect_signal", pb_item_list_vls_disconnect_signal,
                           kInsert, kSub}));

using VlsDisconnect = ItemListTest;

TEST_F(VlsDisconnect, RemovesThePendingRefresh) {
  const View view;
  const ListPtr list = refreshing_list(view);

  pb_item_list_vls_disconnect_signal(list.get());

  EXPECT_THAT(item_list_test::pending_refreshes(), IsEmpty());
  EXPECT_EQ(private_of(list).idle_source, -1);
}

TEST_F(VlsDisconnect, EndsThePassThatRuns) {
  const View view;
  const ListPtr list = refreshing_list(view);
  fake::run_next_idle();
  ASSERT_EQ(private_of(list).refresh_running, 1);

  pb_item_list_vls_disconnect_signal(list.get());

  EXPECT_EQ(private_of(list).refresh_running, 0);
}

TEST_F(VlsDisconnect, RemovesNothingWhenNoRefreshIsPending) {
  const ListPtr list = connected_list(kInsert);

  pb_item_list_vls_disconnect_signal(list.get());

  EXPECT_EQ(private_of(list).idle_source, -1);
}

TEST_F(VlsDisconnect, StopsFollowingTheAdjustment) {
  const View view;
  const ListPtr list = refreshing_list(view);

  pb_item_list_vls_disconnect_signal(list.get());
  view.scroll(500);

  EXPECT_THAT(item_list_test::pending_refreshes(), IsEmpty());
}

TEST_F(VlsDisconnect, ForgetsTheAdjustment) {
  const View view;
  const ListPtr list = refreshing_list(view);

  pb_item_list_vls_disconnect_signal(list.get());

  EXPECT_EQ(private_of(list).vadjustment.get(), nullptr);
}

TEST_F(VlsDisconnect, LeavesHandlersOfOtherListsOnTheAdjustment) {
  const View view;
  const ListPtr other = refreshing_list(view);
  const ListPtr list = refreshing_list(view);

  pb_item_list_vls_disconnect_signal(list.get());
  view.scroll(500);

  EXPECT_THAT(item_list_test::pending_refreshes(), SizeIs(1));
}

using SubDisconnect = ItemListTest;

TEST_F(SubDisconnect, LeavesThePendingRefresh) {
  const View view;
  const ListPtr list = refreshing_list(view);

  pb_item_sub_list_disconnect_signal(list.get());

  EXPECT_THAT(item_list_test::pending_refreshes(), SizeIs(1));
}

using ItemListFinalize = ItemListTest;

TEST_F(ItemListFinalize, FreesTheRecordsThenTheFilesThenThePageRecords) {
  ListPtr list = new_list();
  PbItemListPrivate &priv = private_of(list);
  FmFileList files{};
  fake::fill_file_list(&files, {1});
  priv.records = pb::item_list::RecordList(fake::record_list(item_list_test::files(1)));
  priv.files = pb::item_list::FileList(files);
  priv.page_records = pb::item_list::RecordList(fake::record_list(item_list_test::files(1)));
  fake::take_calls();

  list.reset();

  EXPECT_THAT(
      fake::platform().calls,
      ElementsAre("fm_svc_mb_glist_free(1)", "fm_svc_sync_list_free()", "fm_svc_mb_glist_free(1)"));
}

TEST_F(ItemListFinalize, FreesTheOrderOfARefresh) {
  ListPtr list = new_list();
  pb_random_list_init(&private_of(list).refresh_order, 15);
  fake::take_calls();

  list.reset();

  EXPECT_THAT(fake::platform().calls, ElementsAre("fm_svc_mb_glist_free(1)"));
}

TEST_F(ItemListFinalize, DropsThePlaceholder) {
  ListPtr list = new_list();
  const support::ExpectFinalized watch(private_of(list).default_pixbuf.get());

  list.reset();

  EXPECT_TRUE(watch.finalized());
}

TEST_F(ItemListFinalize, LetsGoOfItsItems) {
  ListPtr list = new_list();
  PbItem *item = pb_item_new();
  pb_item_list_add(list.get(), item, 0, nullptr);
  g_object_unref(item);
  const support::ExpectFinalized watch(item);

  list.reset();

  EXPECT_TRUE(watch.finalized());
}

TEST_F(ItemListFinalize, RemovesThePendingRefresh) {
  const View view;
  ListPtr list = refreshing_list(view);

  list.reset();

  EXPECT_THAT(item_list_test::pending_refreshes(), IsEmpty());
}

TEST_F(ItemListFinalize, StopsFollowingTheAdjustment) {
  const View view;
  ListPtr list = refreshing_list(view);

  list.reset();
  view.scroll(500);

  EXPECT_THAT(item_list_test::pending_refreshes(), IsEmpty());
}

TEST_F(ItemListFinalize, LogsItsEndInOrder) {
  const View view;
  ListPtr list = refreshing_list(view);
  const std::string disconnected =
      "vadjustment_cb disconnected (item_list=" + item_list_test::address_of(list.get()) + ")\n";
  const std::string end = end_line(list, 0);
  fake::take_log();

  list.reset();

  EXPECT_THAT(log_of("pb_item_list_finalize"), ElementsAre("\n", disconnected, end));
}

TEST_F(ItemListFinalize, DoesNotSpeakOfAnAdjustmentThatItHasNot) {
  ListPtr list = new_list();
  const std::string end = end_line(list, 0);

  list.reset();

  EXPECT_THAT(log_of("pb_item_list_finalize"), ElementsAre("\n", end));
}

TEST_F(ItemListFinalize, LogsTheCountThatIsLeft) {
  const ListPtr other = new_list();
  ListPtr list = new_list();
  const std::string end = end_line(list, 1);

  list.reset();

  EXPECT_THAT(log_of("pb_item_list_finalize"), Contains(end));
}

TEST_F(ItemListFinalize, EmitsNothing) {
  ListPtr list = connected_list(kInsert, 10);
  fake::take_calls();

  list.reset();

  EXPECT_THAT(fake::calls_of("fexplorer_finalize"), IsEmpty());
}

TEST_F(ItemListFinalize, OutlivesItsView) {
  ListPtr list;
  {
    const View view;
    list = refreshing_list(view);
  }

  EXPECT_EQ(private_of(list).icon_view.get(), nullptr);
  EXPECT_EQ(private_of(list).vadjustment.get(), nullptr);
  list.reset();
}

TEST_F(ItemListFinalize, GoesBeforeItsView) {
  const View view;

  refreshing_list(view).reset();

  EXPECT_EQ(item_list_test::references(view.widget.get()), 1U);
}

}  // namespace

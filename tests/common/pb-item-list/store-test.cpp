#include <climits>
#include <cstdio>

#include "fixture.hpp"

namespace {

using fake::Logged;
using item_list_test::file;
using item_list_test::ItemListTest;
using item_list_test::ItemPtr;
using item_list_test::ListPtr;
using item_list_test::new_list;
using item_list_test::private_of;
using item_list_test::read_row;
using item_list_test::references;
using item_list_test::Row;
using item_list_test::Says;
using item_list_test::store_rows;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

ItemPtr new_item(gint id = 0) {
  auto item = ItemPtr::adopt(pb_item_new());
  item->id = id;
  return item;
}

void add_items(const ListPtr &list, gint count) {
  for (gint i = 0; i < count; ++i) pb_item_list_add(list.get(), new_item(i + 1).get(), i, nullptr);
}

void add_header(const ListPtr &list, const char *title) {
  pb_item_list_add(list.get(), new_item().get(), -1, title);
}

/// A list with unfilled rows and the records for some of them.
ListPtr list_with_records(gint rows, const std::vector<MbItem> &records, gint page_start = 0) {
  ListPtr list = new_list();
  PbItemListPrivate &priv = private_of(list);
  priv.records = pb::item_list::RecordList(fake::record_list(records));
  priv.page_start = page_start;
  priv.page_end = page_start + static_cast<gint>(records.size()) - 1;
  priv.row_count = rows;
  gtk_virtual_list_store_set_total_size(GTK_VIRTUAL_LIST_STORE(list.get()), rows);
  return list;
}

/// Something that is no list, to be passed as one.
class Foreign {
 public:
  Foreign() : object_(pb_item_new()) {}
  ~Foreign() { g_object_unref(object_); }
  Foreign(const Foreign &) = delete;
  Foreign &operator=(const Foreign &) = delete;
  [[nodiscard]] PbItemList *list() const { return reinterpret_cast<PbItemList *>(object_); }
  [[nodiscard]] PbItem *item() const { return object_; }

 private:
  PbItem *object_;
};

std::string critical(const std::string &function, const std::string &expression) {
  return function + ": assertion '" + expression + "' failed";
}

using ItemListType = ItemListTest;

TEST_F(ItemListType, DerivesFromTheVirtualListStore) {
  EXPECT_EQ(g_type_parent(PB_TYPE_ITEM_LIST), gtk_virtual_list_store_get_type());
  EXPECT_STREQ(g_type_name(PB_TYPE_ITEM_LIST), "PbItemList");
}

TEST_F(ItemListType, HasFourColumns) {
  const ListPtr list = new_list();
  GtkTreeModel *model = GTK_TREE_MODEL(list.get());

  ASSERT_EQ(gtk_tree_model_get_n_columns(model), 4);
  EXPECT_EQ(gtk_tree_model_get_column_type(model, 0), PB_TYPE_ITEM);
  EXPECT_EQ(gtk_tree_model_get_column_type(model, 1), G_TYPE_STRING);
  EXPECT_EQ(gtk_tree_model_get_column_type(model, 2), G_TYPE_INT);
  EXPECT_EQ(gtk_tree_model_get_column_type(model, 3), GDK_TYPE_PIXBUF);
}

using ItemListNew = ItemListTest;

TEST_F(ItemListNew, CountsTheList) {
  const gint before = pb_item_list_count;
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_count, before + 1);
}

TEST_F(ItemListNew, ReturnsTheCountToItsFormerValueWhenTheListGoes) {
  const gint before = pb_item_list_count;

  new_list().reset();

  EXPECT_EQ(pb_item_list_count, before);
}

TEST_F(ItemListNew, LogsTheListAndTheCount) {
  const ListPtr list = new_list();
  const std::string line = "[pb_item_list_new]==============pb_item_list_new(" +
                           item_list_test::address_of(list.get()) + "), count=1================\n";

  EXPECT_THAT(fake::platform().log, Contains(Says(line)));
}

TEST_F(ItemListNew, LogsUnderTheModulesPath) {
  const ListPtr list = new_list();

  EXPECT_THAT(fake::platform().log,
              Contains(testing::Field(&fake::LogLine::file, "common/pb-item-list")));
}

TEST_F(ItemListNew, GivesOneReference) {
  const ListPtr list = new_list();

  EXPECT_EQ(references(list.get()), 1U);
}

TEST_F(ItemListNew, IsEmptyWithoutHandlers) {
  const ListPtr list = new_list();

  EXPECT_EQ(store_rows(list), 0);
  EXPECT_EQ(pb_item_list_get_length(list.get()), 0);
  EXPECT_FALSE(item_list_test::has_handlers(list));
}

TEST_F(ItemListNew, HoldsNothingAtFirst) {
  const ListPtr list = new_list();
  const PbItemListPrivate &priv = private_of(list);

  EXPECT_FALSE(priv.database_connected);
  EXPECT_TRUE(priv.records.empty());
  EXPECT_TRUE(priv.files.empty());
  EXPECT_TRUE(priv.page_records.empty());
  EXPECT_EQ(priv.sorted, 0);
  EXPECT_EQ(priv.album_id, 0);
  EXPECT_EQ(priv.album_web_id, 0);
  EXPECT_EQ(priv.page_start, 0);
  EXPECT_EQ(priv.page_end, 0);
  EXPECT_EQ(priv.filter, -1);
}

TEST_F(ItemListNew, IsNotRefreshingAtFirst) {
  const ListPtr list = new_list();
  const PbItemListPrivate &priv = private_of(list);

  EXPECT_EQ(priv.first_fill_busy, 0);
  EXPECT_EQ(priv.insertion_busy, 0);
  EXPECT_EQ(priv.icon_view.get(), nullptr);
  EXPECT_EQ(priv.vadjustment.get(), nullptr);
  EXPECT_EQ(priv.row_height, 0.0);
  EXPECT_EQ(priv.idle_source, -1);
  EXPECT_EQ(priv.scroll_direction, 1);
  EXPECT_EQ(priv.view_start, 0);
  EXPECT_EQ(priv.refresh_progress, 0);
  EXPECT_EQ(priv.refresh_order, nullptr);
  EXPECT_EQ(priv.refresh_running, 0);
}

TEST_F(ItemListNew, RefreshesThirtyRowsInTwoBatchesOfThreeColumns) {
  const ListPtr list = new_list();
  const PbItemListPrivate &priv = private_of(list);

  EXPECT_EQ(priv.batch_size, 15);
  EXPECT_EQ(priv.columns, 3);
  EXPECT_EQ(priv.refresh_remaining, 30);
  EXPECT_EQ(priv.refresh_count, 30);
  EXPECT_EQ(priv.loads_thumbnails, 1);
}

TEST_F(ItemListNew, TakesBitmap67AsPlaceholder) {
  const ListPtr list = new_list();

  EXPECT_EQ(fake::image_id(private_of(list).default_pixbuf.get()), 67);
}

TEST_F(ItemListNew, OwnsOneReferenceOfThePlaceholder) {
  const ListPtr list = new_list();

  EXPECT_EQ(references(private_of(list).default_pixbuf.get()), 1U);
}

using ItemListAdd = ItemListTest;

TEST_F(ItemListAdd, AppendsAnItemRow) {
  const ListPtr list = new_list();
  const ItemPtr item = new_item();

  pb_item_list_add(list.get(), item.get(), 42, nullptr);

  const Row row = read_row(list, 0);
  EXPECT_EQ(row.item.get(), item.get());
  EXPECT_FALSE(row.has_title);
  EXPECT_EQ(row.index, 42);
}

TEST_F(ItemListAdd, IgnoresTheTitleOfAnItemRow) {
  const ListPtr list = new_list();

  pb_item_list_add(list.get(), new_item().get(), 0, "title");

  EXPECT_FALSE(read_row(list, 0).has_title);
}

TEST_F(ItemListAdd, AppendsAHeaderRowForIndexMinusOne) {
  const ListPtr list = new_list();

  pb_item_list_add(list.get(), new_item().get(), -1, "Locked");

  const Row row = read_row(list, 0);
  EXPECT_EQ(row.item.get(), nullptr);
  EXPECT_EQ(row.title, "Locked");
}

TEST_F(ItemListAdd, TakesAnyOtherNegativeIndexAsAnItemRow) {
  const ListPtr list = new_list();
  const ItemPtr item = new_item();

  pb_item_list_add(list.get(), item.get(), -2, nullptr);

  EXPECT_EQ(read_row(list, 0).item.get(), item.get());
}

TEST_F(ItemListAdd, AppendsBehindTheLastRow) {
  const ListPtr list = new_list();

  add_items(list, 3);

  EXPECT_EQ(read_row(list, 2).item->id, 3);
}

TEST_F(ItemListAdd, RaisesTheLengthForItemsAndHeaders) {
  const ListPtr list = new_list();

  add_header(list, "header");
  add_items(list, 1);

  EXPECT_EQ(pb_item_list_get_length(list.get()), 2);
}

TEST_F(ItemListAdd, HoldsAReferenceOfTheItem) {
  const ListPtr list = new_list();
  const ItemPtr item = new_item();

  pb_item_list_add(list.get(), item.get(), 0, nullptr);

  EXPECT_EQ(references(item.get()), 2U);
}

TEST_F(ItemListAdd, RefusesAHeaderRowWithoutAnItem) {
  const ListPtr list = new_list();

  pb_item_list_add(list.get(), nullptr, -1, "title");

  EXPECT_THAT(take_glib_warnings(), ElementsAre(critical("pb_item_list_add", "PB_IS_ITEM(item)")));
  EXPECT_EQ(pb_item_list_get_length(list.get()), 0);
  EXPECT_EQ(store_rows(list), 0);
}

TEST_F(ItemListAdd, RefusesAForeignItem) {
  const ListPtr list = new_list();
  const ListPtr foreign = new_list();

  pb_item_list_add(list.get(), reinterpret_cast<PbItem *>(foreign.get()), 0, nullptr);

  EXPECT_THAT(take_glib_warnings(), ElementsAre(critical("pb_item_list_add", "PB_IS_ITEM(item)")));
  EXPECT_EQ(store_rows(list), 0);
}

TEST_F(ItemListAdd, RefusesAForeignList) {
  const Foreign foreign;

  pb_item_list_add(foreign.list(), foreign.item(), 0, nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre(critical("pb_item_list_add", "PB_IS_ITEM_LIST(list)")));
}

TEST_F(ItemListAdd, RefusesANullList) {
  pb_item_list_add(nullptr, new_item().get(), 0, nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre(critical("pb_item_list_add", "PB_IS_ITEM_LIST(list)")));
}

using ItemListLength = ItemListTest;

TEST_F(ItemListLength, IsTheListsOwnNumberAndNotTheStores) {
  const ListPtr list = new_list();
  private_of(list).row_count = 1000;

  EXPECT_EQ(pb_item_list_get_length(list.get()), 1000);
}

TEST_F(ItemListLength, LogsANullList) {
  EXPECT_EQ(pb_item_list_get_length(nullptr), 0);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Says("[pb_item_list_get_length]item list is null\n")));
}

TEST_F(ItemListLength, WarnsAboutAForeignList) {
  const Foreign foreign;

  EXPECT_EQ(pb_item_list_get_length(foreign.list()), 0);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre(critical("pb_item_list_get_length", "PB_IS_ITEM_LIST(list)")));
}

using ItemListFirst = ItemListTest;

TEST_F(ItemListFirst, GivesANewReferenceOfTheFirstItem) {
  const ListPtr list = new_list();
  add_items(list, 2);

  const ItemPtr first = ItemPtr::adopt(pb_item_list_get_first(list.get()));

  EXPECT_EQ(first->id, 1);
  EXPECT_EQ(references(first.get()), 2U);
}

TEST_F(ItemListFirst, WarnsWhenTheFirstRowIsAHeader) {
  const ListPtr list = new_list();
  add_header(list, "header");

  EXPECT_EQ(pb_item_list_get_first(list.get()), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre(critical("pb_item_list_get_first", "PB_IS_ITEM(item)")));
}

TEST_F(ItemListFirst, WarnsWhenThereIsNoRow) {
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_get_first(list.get()), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre(critical("pb_item_list_get_first", "PB_IS_ITEM(item)")));
}

TEST_F(ItemListFirst, WarnsAboutAForeignList) {
  const Foreign foreign;

  EXPECT_EQ(pb_item_list_get_first(foreign.list()), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre(critical("pb_item_list_get_first", "PB_IS_ITEM_LIST(list)")));
}

using ItemListLast = ItemListTest;

TEST_F(ItemListLast, GivesANewReferenceOfTheLastItem) {
  const ListPtr list = new_list();
  add_items(list, 3);

  const ItemPtr last = ItemPtr::adopt(pb_item_list_get_last(list.get()));

  EXPECT_EQ(last->id, 3);
  EXPECT_EQ(references(last.get()), 2U);
}

TEST_F(ItemListLast, GivesNothingForAListOfOneRow) {
  const ListPtr list = new_list();
  add_items(list, 1);

  EXPECT_EQ(pb_item_list_get_last(list.get()), nullptr);
}

TEST_F(ItemListLast, GivesNothingForAnEmptyList) {
  const ListPtr list = new_list();

  EXPECT_EQ(pb_item_list_get_last(list.get()), nullptr);
}

TEST_F(ItemListLast, GivesNothingForALastRowWithoutAnItem) {
  const ListPtr list = new_list();
  add_items(list, 1);
  add_header(list, "header");

  EXPECT_EQ(pb_item_list_get_last(list.get()), nullptr);
}

TEST_F(ItemListLast, LooksAtTheRowOfItsLength) {
  const ListPtr list = new_list();
  add_items(list, 3);
  private_of(list).row_count = 2;

  const ItemPtr last = ItemPtr::adopt(pb_item_list_get_last(list.get()));

  EXPECT_EQ(last->id, 2);
}

TEST_F(ItemListLast, WarnsAboutAForeignList) {
  const Foreign foreign;

  EXPECT_EQ(pb_item_list_get_last(foreign.list()), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre(critical("pb_item_list_get_last", "PB_IS_ITEM_LIST(list)")));
}

using ItemListByIndex = ItemListTest;

TEST_F(ItemListByIndex, GivesTheItemOfTheRow) {
  const ListPtr list = new_list();
  add_items(list, 3);

  const ItemPtr item = ItemPtr::adopt(pb_item_list_get_by_index(list.get(), 1));

  EXPECT_EQ(item->id, 2);
}

class ItemListByBadIndex : public ItemListTest, public testing::WithParamInterface<gint> {};

TEST_P(ItemListByBadIndex, WarnsWithTheFailedCondition) {
  const ListPtr list = new_list();
  add_items(list, 3);
  const char *expression = GetParam() < 0 ? "index >= 0" : "index < pb_item_list_get_length(list)";

  EXPECT_EQ(pb_item_list_get_by_index(list.get(), GetParam()), nullptr);

  EXPECT_THAT(take_glib_warnings(), ElementsAre(critical("pb_item_list_get_by_index", expression)));
}

INSTANTIATE_TEST_SUITE_P(Indexes, ItemListByBadIndex, testing::Values(-1, 3, 4, INT_MIN, INT_MAX));

TEST_F(ItemListByIndex, WarnsAboutARowWithoutAnItem) {
  const ListPtr list = new_list();
  add_header(list, "header");

  EXPECT_EQ(pb_item_list_get_by_index(list.get(), 0), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre(critical("pb_item_list_get_by_index", "PB_IS_ITEM(item)")));
}

TEST_F(ItemListByIndex, WarnsAboutAForeignList) {
  const Foreign foreign;

  EXPECT_EQ(pb_item_list_get_by_index(foreign.list(), 0), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre(critical("pb_item_list_get_by_index", "PB_IS_ITEM_LIST(list)")));
}

TEST_F(ItemListByIndex, MakesAnItemThatTheRowHasNot) {
  const ListPtr list = list_with_records(1, {file(7)});

  const PbItem *item = pb_item_list_get_by_index(list.get(), 0);

  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->id, 7);
}

using ItemListVls = ItemListTest;

TEST_F(ItemListVls, LogsARowThatDoesNotExist) {
  const ListPtr list = new_list();
  fake::take_log();

  EXPECT_EQ(pb_item_list_vls_get_item_by_index(list.get(), 0), nullptr);

  EXPECT_THAT(
      fake::platform().log,
      ElementsAre(Logged(PB_LOG_WARNING, "[pb_item_list_vls_get_item_by_index]ITEM NOT FOUND\n")));
}

TEST_F(ItemListVls, LogsANegativeRow) {
  const ListPtr list = new_list();
  add_items(list, 1);

  EXPECT_EQ(pb_item_list_vls_get_item_by_index(list.get(), INT_MIN), nullptr);

  EXPECT_THAT(fake::platform().log,
              Contains(Says("[pb_item_list_vls_get_item_by_index]ITEM NOT FOUND\n")));
}

TEST_F(ItemListVls, GivesANewReferenceOfAnItemThatTheRowHas) {
  const ListPtr list = new_list();
  add_items(list, 1);

  const ItemPtr item = ItemPtr::adopt(pb_item_list_vls_get_item_by_index(list.get(), 0));

  EXPECT_EQ(references(item.get()), 2U);
}

TEST_F(ItemListVls, BorrowsAnItemThatItMakes) {
  const ListPtr list = list_with_records(1, {file(7)});

  PbItem *item = pb_item_list_vls_get_item_by_index(list.get(), 0);

  ASSERT_NE(item, nullptr);
  EXPECT_EQ(references(item), 1U);
}

TEST_F(ItemListVls, StoresTheItemThatItMakes) {
  const ListPtr list = list_with_records(1, {file(7)});

  const PbItem *item = pb_item_list_vls_get_item_by_index(list.get(), 0);

  EXPECT_EQ(read_row(list, 0).item.get(), item);
}

TEST_F(ItemListVls, LeavesTheOtherColumnsOfTheRowAlone) {
  const ListPtr list = list_with_records(1, {file(7)});
  pb::item_list::set_row(list.get(), 0, nullptr, private_of(list).default_pixbuf.get());

  pb_item_list_vls_get_item_by_index(list.get(), 0);

  EXPECT_EQ(read_row(list, 0).pixbuf.get(), private_of(list).default_pixbuf.get());
}

TEST_F(ItemListVls, LogsARowWithoutAnItem) {
  const ListPtr list = list_with_records(1, {file(7)});

  pb_item_list_vls_get_item_by_index(list.get(), 0);

  EXPECT_THAT(fake::platform().log,
              Contains(Says("[pb_item_list_vls_get_item_by_index]ITEM NULL\n")));
}

TEST_F(ItemListVls, TakesTheRecordFromThePageStartOn) {
  const ListPtr list = list_with_records(300, item_list_test::files(100, 101), 100);

  const PbItem *item = pb_item_list_vls_get_item_by_index(list.get(), 150);

  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->id, 151);
}

TEST_F(ItemListVls, LogsARowWithoutARecord) {
  const ListPtr list = list_with_records(300, item_list_test::files(100, 101), 100);

  EXPECT_EQ(pb_item_list_vls_get_item_by_index(list.get(), 250), nullptr);

  EXPECT_THAT(fake::platform().log,
              Contains(Says("[pb_item_list_vls_get_item_by_index]mbitem NULL: index=250, "
                            "record_list (100, 199)\n")));
}

TEST_F(ItemListVls, FindsNoRecordBeforeThePageStart) {
  const ListPtr list = list_with_records(300, item_list_test::files(100, 101), 100);

  EXPECT_EQ(pb_item_list_vls_get_item_by_index(list.get(), 99), nullptr);
}

TEST_F(ItemListVls, DoesNotTakeAnAlbumForAFile) {
  const ListPtr list = list_with_records(1, {});
  private_of(list).records =
      pb::item_list::RecordList(fake::record_list<FmAlbumRecord>({fake::make_album(1, "album")}),
                                pb::item_list::RecordKind::kAlbums);

  EXPECT_EQ(pb_item_list_vls_get_item_by_index(list.get(), 0), nullptr);
}

TEST_F(ItemListVls, WarnsAboutAForeignList) {
  const Foreign foreign;

  EXPECT_EQ(pb_item_list_vls_get_item_by_index(foreign.list(), 0), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre(critical("pb_item_list_vls_get_item_by_index", "PB_IS_ITEM_LIST(list)")));
}

using ItemListPeek = ItemListTest;

TEST_F(ItemListPeek, BorrowsAnItemThatTheRowHas) {
  const ListPtr list = new_list();
  add_items(list, 1);

  PbItem *item = __pb_item_list_peek_item(list.get(), 0);

  ASSERT_NE(item, nullptr);
  EXPECT_EQ(references(item), 1U);
}

TEST_F(ItemListPeek, BorrowsAnItemThatItMakes) {
  const ListPtr list = list_with_records(1, {file(7)});

  PbItem *item = __pb_item_list_peek_item(list.get(), 0);

  ASSERT_NE(item, nullptr);
  EXPECT_EQ(item->id, 7);
  EXPECT_EQ(references(item), 1U);
}

class ItemListPeekAtNothing : public ItemListTest, public testing::WithParamInterface<gint> {};

TEST_P(ItemListPeekAtNothing, IsSilent) {
  const ListPtr list = new_list();
  add_header(list, "header");
  fake::take_log();

  EXPECT_EQ(__pb_item_list_peek_item(list.get(), GetParam()), nullptr);

  EXPECT_THAT(fake::platform().log, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Rows, ItemListPeekAtNothing, testing::Values(0, 1, -1, INT_MIN, INT_MAX));

TEST_F(ItemListPeek, IsSilentAboutANullList) {
  EXPECT_EQ(__pb_item_list_peek_item(nullptr, 0), nullptr);

  EXPECT_THAT(fake::platform().log, IsEmpty());
}

using ItemListRemove = ItemListTest;

TEST_F(ItemListRemove, RemovesTheRow) {
  const ListPtr list = new_list();
  add_items(list, 3);

  EXPECT_TRUE(pb_item_list_remove_by_index(list.get(), 1));

  EXPECT_EQ(store_rows(list), 2);
  EXPECT_EQ(read_row(list, 1).item->id, 3);
}

TEST_F(ItemListRemove, MarksTheItemAsDeleted) {
  const ListPtr list = new_list();
  const ItemPtr item = new_item();
  pb_item_list_add(list.get(), item.get(), 0, nullptr);

  pb_item_list_remove_by_index(list.get(), 0);

  EXPECT_TRUE(pb_item_get_deleted(item.get()));
}

TEST_F(ItemListRemove, ReportsTheLastRowAsRemoved) {
  const ListPtr list = new_list();
  add_items(list, 2);

  EXPECT_TRUE(pb_item_list_remove_by_index(list.get(), 1));
}

TEST_F(ItemListRemove, KeepsTheLength) {
  const ListPtr list = new_list();
  add_items(list, 3);

  pb_item_list_remove_by_index(list.get(), 0);

  EXPECT_EQ(pb_item_list_get_length(list.get()), 3);
}

TEST_F(ItemListRemove, KeepsTheNumbersOfTheRowsBehind) {
  const ListPtr list = new_list();
  add_items(list, 3);

  pb_item_list_remove_by_index(list.get(), 0);

  EXPECT_EQ(read_row(list, 0).index, 1);
  EXPECT_EQ(read_row(list, 1).index, 2);
}

TEST_F(ItemListRemove, DropsTheReferenceOfTheRow) {
  const ListPtr list = new_list();
  const ItemPtr item = new_item();
  pb_item_list_add(list.get(), item.get(), 0, nullptr);

  pb_item_list_remove_by_index(list.get(), 0);

  EXPECT_EQ(references(item.get()), 1U);
}

class ItemListRemoveNothing : public ItemListTest, public testing::WithParamInterface<gint> {};

TEST_P(ItemListRemoveNothing, LogsTheMissingRow) {
  const ListPtr list = new_list();
  add_items(list, 3);
  const std::string line =
      "[pb_item_list_remove_by_index]item not found:" + std::to_string(GetParam()) + "\n";

  EXPECT_FALSE(pb_item_list_remove_by_index(list.get(), GetParam()));

  EXPECT_THAT(fake::platform().log, Contains(Logged(PB_LOG_WARNING, line)));
  EXPECT_EQ(pb_item_list_get_length(list.get()), 3);
  EXPECT_EQ(store_rows(list), 3);
}

INSTANTIATE_TEST_SUITE_P(Rows, ItemListRemoveNothing, testing::Values(-1, 3, -2, INT_MIN, INT_MAX));

TEST_F(ItemListRemove, RefusesAHeaderRow) {
  const ListPtr list = new_list();
  add_header(list, "header");

  EXPECT_FALSE(pb_item_list_remove_by_index(list.get(), 0));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre(critical("pb_item_list_remove_by_index", "PB_IS_ITEM(item)")));
  EXPECT_EQ(store_rows(list), 1);
}

TEST_F(ItemListRemove, WarnsAboutAForeignList) {
  const Foreign foreign;

  EXPECT_FALSE(pb_item_list_remove_by_index(foreign.list(), 0));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre(critical("pb_item_list_remove_by_index", "PB_IS_ITEM_LIST(list)")));
}

}  // namespace

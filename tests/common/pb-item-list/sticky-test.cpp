#include <set>

#include "fixture.hpp"

namespace {

using item_list_test::file;
using item_list_test::ItemListTest;
using item_list_test::ItemPtr;
using item_list_test::ListPtr;
using item_list_test::log_of;
using item_list_test::new_list;
using item_list_test::private_of;
using item_list_test::read_row;
using item_list_test::Row;
using testing::ElementsAre;
using testing::IsEmpty;

/// A list of files with the ids 1 to count.
ListPtr list_of(gint count) {
  ListPtr list = new_list();
  for (gint id = 1; id <= count; ++id) {
    pb_item_list_add(list.get(), pb::item_list::make_item(file(id)).get(), id - 1, nullptr);
  }
  fake::take_calls();
  return list;
}

void lock(const std::set<gint> &ids) {
  fake::platform().fexplorer_get_file_lock_status = [ids](const gchar *path, gboolean *locked,
                                                          gint *) {
    gint id = 0;
    sscanf(path, "/pictures/%d.jpg", &id);
    *locked = ids.contains(id);
    return TRUE;
  };
}

/// The regrouped list, without the second reference.
ListPtr regroup(const ListPtr &list) {
  ListPtr grouped = ListPtr::adopt(pb_item_get_sticky_sub_list(list.get()));
  if (grouped) g_object_unref(grouped.get());
  return grouped;
}

/// Each row as its header text, or the id of its file and its index.
std::vector<std::string> rows_of(const ListPtr &list) {
  std::vector<std::string> rows;
  for (gint i = 0; i < pb_item_list_get_length(list.get()); ++i) {
    const Row row = read_row(list, i);
    rows.push_back(row.item ? std::to_string(row.item->id) + " at " + std::to_string(row.index)
                            : row.title);
  }
  return rows;
}

class StickyList : public ItemListTest {
 protected:
  void SetUp() override {
    ItemListTest::SetUp();
    pb_res_open();
  }
};

TEST_F(StickyList, LogsItsEntry) {
  const ListPtr list = new_list();

  const ListPtr grouped = regroup(list);

  EXPECT_THAT(log_of("pb_item_get_sticky_sub_list"), ElementsAre("\n"));
}

TEST_F(StickyList, PutsLockedFilesFirst) {
  const ListPtr list = list_of(4);
  lock({2, 4});

  const ListPtr grouped = regroup(list);

  EXPECT_THAT(rows_of(grouped),
              ElementsAre("string 59", "2 at 1", "4 at 3", "string 99", "1 at 0", "3 at 2"));
}

TEST_F(StickyList, HasOneHeaderWhenEveryFileIsUnlocked) {
  const ListPtr list = list_of(2);

  const ListPtr grouped = regroup(list);

  EXPECT_THAT(rows_of(grouped), ElementsAre("string 99", "1 at 0", "2 at 1"));
}

TEST_F(StickyList, HasOneHeaderWhenEveryFileIsLocked) {
  const ListPtr list = list_of(2);
  lock({1, 2});

  const ListPtr grouped = regroup(list);

  EXPECT_THAT(rows_of(grouped), ElementsAre("string 59", "1 at 0", "2 at 1"));
}

TEST_F(StickyList, IsEmptyForAnEmptyList) {
  const ListPtr list = new_list();

  const ListPtr grouped = regroup(list);

  EXPECT_THAT(rows_of(grouped), IsEmpty());
}

TEST_F(StickyList, TakesAFileWhoseLockCannotBeReadForUnlocked) {
  const ListPtr list = list_of(1);
  fake::platform().fexplorer_get_file_lock_status = [](const gchar *, gboolean *locked, gint *) {
    *locked = TRUE;
    return FALSE;
  };

  const ListPtr grouped = regroup(list);

  EXPECT_THAT(rows_of(grouped), ElementsAre("string 99", "1 at 0"));
}

TEST_F(StickyList, AsksForTheLockOfEachFileInBothPasses) {
  const ListPtr list = list_of(2);

  const ListPtr grouped = regroup(list);

  EXPECT_THAT(fake::calls_of("fexplorer_get_file_lock_status"),
              ElementsAre("fexplorer_get_file_lock_status(\"/pictures/1.jpg\")",
                          "fexplorer_get_file_lock_status(\"/pictures/2.jpg\")",
                          "fexplorer_get_file_lock_status(\"/pictures/1.jpg\")",
                          "fexplorer_get_file_lock_status(\"/pictures/2.jpg\")"));
}

TEST_F(StickyList, TakesAnItemWithoutAPathForUnlocked) {
  const ListPtr list = new_list();
  pb_item_list_add(list.get(), ItemPtr::adopt(pb_item_new()).get(), 0, nullptr);

  const ListPtr grouped = regroup(list);

  EXPECT_THAT(rows_of(grouped), ElementsAre("string 99", "0 at 0"));
  EXPECT_THAT(fake::calls_of("fexplorer_get_file_lock_status"), IsEmpty());
}

TEST_F(StickyList, SkipsRowsWithoutAnItem) {
  const ListPtr list = list_of(1);
  pb_item_list_add(list.get(), ItemPtr::adopt(pb_item_new()).get(), -1, "header");

  const ListPtr grouped = regroup(list);

  EXPECT_THAT(rows_of(grouped), ElementsAre("string 99", "1 at 0"));
}

TEST_F(StickyList, HasItsHeadersWhenTheStringsAreClosed) {
  pb_res_close();
  const ListPtr list = list_of(2);
  lock({1});

  const ListPtr grouped = regroup(list);

  EXPECT_THAT(rows_of(grouped), ElementsAre("string 59", "1 at 0", "string 99", "2 at 1"));
}

TEST_F(StickyList, ClosesTheStringsThatItOpened) {
  pb_res_close();
  const ListPtr list = list_of(1);

  const ListPtr grouped = regroup(list);

  EXPECT_EQ(pb_get_res_string(1000), nullptr);
}

TEST_F(StickyList, LeavesStringsOpenThatWereOpen) {
  const ListPtr list = list_of(1);

  const ListPtr grouped = regroup(list);

  EXPECT_THAT(fake::calls_of("rsrc_close_rsr"), IsEmpty());
  EXPECT_STREQ(pb_get_res_string(1000), "string 0");
}

TEST_F(StickyList, HasTheNumbersOfTextsThatAreMissing) {
  fake::platform().rsrc_get_string = [](gint, gint) -> const gchar * { return nullptr; };
  const ListPtr list = list_of(2);
  lock({1});

  const ListPtr grouped = regroup(list);

  EXPECT_THAT(rows_of(grouped), ElementsAre("1059", "1 at 0", "1099", "2 at 1"));
}

TEST_F(StickyList, GivesTwoReferences) {
  const ListPtr list = list_of(1);

  const ListPtr grouped = ListPtr::adopt(pb_item_get_sticky_sub_list(list.get()));

  EXPECT_EQ(item_list_test::references(grouped.get()), 2U);
  g_object_unref(grouped.get());
}

TEST_F(StickyList, SharesTheItems) {
  const ListPtr list = list_of(1);

  const ListPtr grouped = regroup(list);

  EXPECT_EQ(read_row(grouped, 1).item.get(), read_row(list, 0).item.get());
  EXPECT_EQ(item_list_test::references(read_row(list, 0).item.get()), 3U);
}

TEST_F(StickyList, LeavesTheItemsOfAServedListAlive) {
  item_list_test::serve(3);
  const ListPtr list = new_list();
  pb_item_list_build(list.get(), 1, 0);
  pb_item_list_vls_disconnect_signal(list.get());

  ListPtr grouped = regroup(list);
  grouped.reset();

  const ItemPtr item = ItemPtr::adopt(pb_item_list_get_by_index(list.get(), 0));
  EXPECT_EQ(item->id, 1);
}

TEST_F(StickyList, ReadsNoServiceForItsRows) {
  const ListPtr list = list_of(1);

  const ListPtr grouped = regroup(list);

  EXPECT_FALSE(item_list_test::has_handlers(grouped));
}

TEST_F(StickyList, KeepsAHundredRowsFilled) {
  const ListPtr list = list_of(1);

  const ListPtr grouped = regroup(list);

  EXPECT_THAT(fake::calls_of("gtk_virtual_list_store_set_cache_size"),
              ElementsAre("gtk_virtual_list_store_set_cache_size(100)"));
}

TEST_F(StickyList, WarnsAboutANullList) {
  EXPECT_EQ(pb_item_get_sticky_sub_list(nullptr), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_item_get_sticky_sub_list: assertion 'PB_IS_ITEM_LIST(list)' failed"));
}

}  // namespace

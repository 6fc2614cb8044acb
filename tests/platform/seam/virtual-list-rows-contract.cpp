// Rows, iterators and values of a virtual list store, by its header alone.
#include "platform/phone-gtk/store-fixture.hpp"
#include "support/glib-test.hpp"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RowsContract : public test::StoreFixture {
 protected:
  void set_length(int rows) { gtk_virtual_list_store_set_total_size(store(), rows); }

  bool remove(GtkTreeIter *iter) { return gtk_virtual_list_store_remove(store(), iter) != FALSE; }

  bool remove(int row) {
    GtkTreeIter iter = iter_of(row);
    return remove(&iter);
  }

  int row_of(GtkTreeIter *iter) {
    GtkTreePath *path = gtk_tree_model_get_path(model(), iter);
    const int row = gtk_tree_path_get_indices(path)[0];
    gtk_tree_path_free(path);
    return row;
  }
};

TEST_F(RowsContract, ListHasTheLengthItIsGiven) {
  EXPECT_EQ(length(), 0);

  set_length(40);
  set_length(30);

  EXPECT_EQ(length(), 30);
}

TEST_F(RowsContract, NewRowsAreUnfilled) {
  set_length(3);

  EXPECT_EQ(filled_rows(), 0);
}

TEST_F(RowsContract, RowsKeepTheirValuesWhenTheListGrows) {
  set_length(3);
  set(2, "two");

  set_length(5);

  EXPECT_EQ(read(2), "two");
}

TEST_F(RowsContract, DroppedRowsComeBackUnfilled) {
  set_length(3);
  set(2, "two");

  set_length(2);
  set_length(3);

  EXPECT_FALSE(filled(2));
}

TEST_F(RowsContract, ViewHearsOfNewAndDroppedRows) {
  connect_view();

  set_length(2);
  set_length(1);

  EXPECT_THAT(signals_, ElementsAre("inserted 0 of 1", "inserted 1 of 2", "deleted 1 of 1"));
}

TEST_F(RowsContract, ListIsPlainAndItsIteratorsDoNotPersist) {
  EXPECT_EQ(gtk_tree_model_get_flags(model()), GTK_TREE_MODEL_LIST_ONLY);
}

TEST_F(RowsContract, IteratorIsFoundExactlyForRowsOfTheList) {
  set_length(3);
  GtkTreeIter iter;

  EXPECT_FALSE(gtk_virtual_list_store_iter_nth(store(), &iter, -1));
  EXPECT_TRUE(gtk_virtual_list_store_iter_nth(store(), &iter, 0));
  EXPECT_TRUE(gtk_virtual_list_store_iter_nth(store(), &iter, 2));
  EXPECT_FALSE(gtk_virtual_list_store_iter_nth(store(), &iter, 3));
  EXPECT_TRUE(gtk_tree_model_iter_nth_child(model(), &iter, nullptr, 2));
  EXPECT_FALSE(gtk_tree_model_iter_nth_child(model(), &iter, nullptr, 3));
  EXPECT_TRUE(gtk_tree_model_get_iter_from_string(model(), &iter, "2"));
  EXPECT_FALSE(gtk_tree_model_get_iter_from_string(model(), &iter, "3"));
  EXPECT_FALSE(gtk_tree_model_get_iter_from_string(model(), &iter, "1:0"));
}

TEST_F(RowsContract, IteratorWalksTheList) {
  set_length(3);
  GtkTreeIter iter;
  ASSERT_TRUE(gtk_tree_model_get_iter_first(model(), &iter));
  int rows = 1;

  while (gtk_tree_model_iter_next(model(), &iter)) ++rows;

  EXPECT_EQ(rows, 3);
}

TEST_F(RowsContract, RowHasNoChildrenAndNoParent) {
  set_length(3);
  GtkTreeIter parent = iter_of(1);
  GtkTreeIter iter;

  EXPECT_FALSE(gtk_tree_model_iter_has_child(model(), &parent));
  EXPECT_EQ(gtk_tree_model_iter_n_children(model(), &parent), 0);
  EXPECT_FALSE(gtk_tree_model_iter_children(model(), &iter, &parent));
  EXPECT_FALSE(gtk_tree_model_iter_nth_child(model(), &iter, &parent, 0));
  EXPECT_FALSE(gtk_tree_model_iter_parent(model(), &iter, &parent));
}

TEST_F(RowsContract, PositioningEmitsNothing) {
  connect_source();
  set_length(3);
  GtkTreeIter iter = iter_of(1);

  row_of(&iter);
  gtk_tree_model_iter_next(model(), &iter);

  EXPECT_THAT(signals_, IsEmpty());
}

TEST_F(RowsContract, IteratorStaysWithItsRow) {
  set_length(5);
  set(4, "four");
  GtkTreeIter iter = iter_of(4);

  remove(1);

  EXPECT_EQ(row_of(&iter), 3);
  EXPECT_EQ(read(&iter), "four");
}

TEST_F(RowsContract, IteratorNamesNothingWhenItsRowIsGone) {
  set_length(5);
  GtkTreeIter iter = iter_of(4);
  ASSERT_TRUE(remove(4));

  EXPECT_FALSE(remove(&iter));

  EXPECT_EQ(length(), 4);
}

TEST_F(RowsContract, SetLeavesOtherColumnsAlone) {
  set_length(2);
  const auto object =
      pb::Ref<GObject>::adopt(static_cast<GObject *>(g_object_new(G_TYPE_OBJECT, nullptr)));
  GtkTreeIter iter = iter_of(1);
  gtk_virtual_list_store_set(store(), &iter, kObject, object.get(), -1);

  set(1, "text");

  pb::Ref<GObject> read_back;
  GObject *raw = nullptr;
  gtk_tree_model_get(model(), &iter, kObject, &raw, -1);
  read_back = pb::Ref<GObject>::adopt(raw);
  EXPECT_EQ(read_back.get(), object.get());
  EXPECT_EQ(read(1), "text");
}

TEST_F(RowsContract, SetCopiesStrings) {
  set_length(1);
  char text[] = "before";
  set(0, text);

  text[0] = 'X';

  EXPECT_EQ(read(0), "before");
}

TEST_F(RowsContract, SetReferencesObjectsUntilTheRowGoes) {
  set_length(1);
  GtkTreeIter iter = iter_of(0);
  auto object =
      pb::Ref<GObject>::adopt(static_cast<GObject *>(g_object_new(G_TYPE_OBJECT, nullptr)));
  const support::ExpectFinalized watch(object.get());
  gtk_virtual_list_store_set(store(), &iter, kObject, object.get(), -1);
  object.reset();
  EXPECT_FALSE(watch.finalized());

  remove(0);

  EXPECT_TRUE(watch.finalized());
}

TEST_F(RowsContract, SetTellsTheViewOnceAndAsksNobody) {
  connect_source();
  set_length(3);
  connect_view();

  set(1, "one");

  EXPECT_THAT(signals_, ElementsAre("changed 1"));
}

TEST_F(RowsContract, AppendAddsAFilledEmptyRow) {
  set_length(2);
  connect_source();
  connect_view();
  GtkTreeIter iter;

  gtk_virtual_list_store_append(store(), &iter);

  EXPECT_EQ(row_of(&iter), 2);
  EXPECT_TRUE(filled(2));
  EXPECT_EQ(read(2), "(null)");
  EXPECT_THAT(signals_, ElementsAre("inserted 2 of 3"));
}

TEST_F(RowsContract, RemoveRenumbersTheRowsBehind) {
  set_length(4);
  set(1, "one");
  set(3, "three");

  EXPECT_TRUE(remove(1));

  EXPECT_EQ(length(), 3);
  EXPECT_FALSE(filled(1));
  EXPECT_EQ(read(2), "three");
}

TEST_F(RowsContract, RemoveSucceedsForTheLastRow) {
  set_length(1);

  EXPECT_TRUE(remove(0));

  EXPECT_EQ(length(), 0);
}

TEST_F(RowsContract, RemoveTellsTheView) {
  set_length(3);
  connect_view();

  remove(2);

  EXPECT_THAT(signals_, ElementsAre("deleted 2 of 2"));
}

TEST_F(RowsContract, FillsAfterARemovalUseTheNewNumbers) {
  set_length(4);
  connect_source();
  remove(0);

  EXPECT_EQ(read(2), "row 2");

  EXPECT_THAT(signals_, ElementsAre("initialize 2", "fill 2 2 2", "finalize 2"));
}

TEST_F(RowsContract, SubclassIsAStore) {
  static const GType type = g_type_register_static_simple(
      GTK_TYPE_VIRTUAL_LIST_STORE, "ContractStore", sizeof(GtkVirtualListStoreClass), nullptr,
      sizeof(GtkVirtualListStore), nullptr, GTypeFlags{});
  store_ = pb::Ref<GtkVirtualListStore>::adopt(
      static_cast<GtkVirtualListStore *>(g_object_new(type, nullptr)));
  GType types[] = {G_TYPE_OBJECT, G_TYPE_STRING};
  gtk_virtual_list_store_set_column_types(store(), 2, types);
  set_length(1);

  set(0, "zero");

  EXPECT_EQ(read(0), "zero");
}

}  // namespace

#include <cstring>

#include "store-fixture.hpp"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class StoreRows : public test::StoreFixture {};
class StoreIterator : public test::StoreFixture {};
class StoreSet : public test::StoreFixture {};
class StoreAppend : public test::StoreFixture {};
class StoreRemove : public test::StoreFixture {};

TEST_F(StoreRows, HasNoRowsAtFirst) { EXPECT_EQ(length(), 0); }

TEST_F(StoreRows, HasTheLengthItIsGiven) {
  gtk_virtual_list_store_set_total_size(store(), 1'000'000);

  EXPECT_EQ(length(), 1'000'000);
}

TEST_F(StoreRows, MayBeAsManyAsAnIntegerCounts) {
  gtk_virtual_list_store_set_total_size(store(), G_MAXINT);
  gtk_virtual_list_store_set_cache_size(store(), 100);
  gtk_virtual_list_store_set_view_range(store(), G_MAXINT - 20, G_MAXINT - 1);

  set(G_MAXINT - 1, "last");

  EXPECT_EQ(read(G_MAXINT - 1), "last");
}

TEST_F(StoreRows, AreUnfilledWhenTheyAreNew) {
  gtk_virtual_list_store_set_total_size(store(), 10);

  EXPECT_EQ(filled_rows(), 0);
}

TEST_F(StoreRows, KeepTheirValuesWhenTheListGrows) {
  gtk_virtual_list_store_set_total_size(store(), 3);
  set(1, "one");

  gtk_virtual_list_store_set_total_size(store(), 300);

  EXPECT_EQ(read(1), "one");
}

TEST_F(StoreRows, AreUnfilledAgainAfterTheListWasShorter) {
  gtk_virtual_list_store_set_total_size(store(), 10);
  set(8, "eight");
  set(2, "two");

  gtk_virtual_list_store_set_total_size(store(), 5);
  gtk_virtual_list_store_set_total_size(store(), 10);

  EXPECT_FALSE(filled(8));
  EXPECT_TRUE(filled(2));
}

TEST_F(StoreRows, AreAnnouncedToAViewOneByOne) {
  gtk_virtual_list_store_set_total_size(store(), 1);
  connect_view();

  gtk_virtual_list_store_set_total_size(store(), 3);

  EXPECT_THAT(signals_, ElementsAre("inserted 1 of 2", "inserted 2 of 3"));
}

TEST_F(StoreRows, GoOneByOneFromTheEndUnderAView) {
  gtk_virtual_list_store_set_total_size(store(), 3);
  set(1, "one");
  connect_view();

  gtk_virtual_list_store_set_total_size(store(), 1);

  EXPECT_THAT(signals_, ElementsAre("deleted 2 of 2", "deleted 1 of 1"));
  gtk_virtual_list_store_set_total_size(store(), 3);
  EXPECT_FALSE(filled(1));
}

TEST_F(StoreRows, FormAPlainListWhoseIteratorsDoNotPersist) {
  EXPECT_EQ(gtk_tree_model_get_flags(model()), GTK_TREE_MODEL_LIST_ONLY);
}

TEST_F(StoreRows, HaveTheColumnsThatWereSet) {
  EXPECT_EQ(gtk_tree_model_get_n_columns(model()), 2);
  EXPECT_EQ(gtk_tree_model_get_column_type(model(), kText), G_TYPE_STRING);
}

TEST_F(StoreIterator, IsFoundExactlyForRowsOfTheList) {
  gtk_virtual_list_store_set_total_size(store(), 5);
  GtkTreeIter iter;

  EXPECT_TRUE(gtk_virtual_list_store_iter_nth(store(), &iter, 0));
  EXPECT_TRUE(gtk_virtual_list_store_iter_nth(store(), &iter, 4));
  EXPECT_FALSE(gtk_virtual_list_store_iter_nth(store(), &iter, 5));
  EXPECT_FALSE(gtk_virtual_list_store_iter_nth(store(), &iter, -1));
}

TEST_F(StoreIterator, IsFoundByChildNumber) {
  gtk_virtual_list_store_set_total_size(store(), 5);
  GtkTreeIter iter;

  EXPECT_TRUE(gtk_tree_model_iter_nth_child(model(), &iter, nullptr, 4));
  EXPECT_FALSE(gtk_tree_model_iter_nth_child(model(), &iter, nullptr, 5));
}

TEST_F(StoreIterator, IsFoundByPath) {
  gtk_virtual_list_store_set_total_size(store(), 5);
  GtkTreeIter iter;

  EXPECT_TRUE(gtk_tree_model_get_iter_from_string(model(), &iter, "4"));
  EXPECT_FALSE(gtk_tree_model_get_iter_from_string(model(), &iter, "5"));
  EXPECT_FALSE(gtk_tree_model_get_iter_from_string(model(), &iter, "1:1"));
}

TEST_F(StoreIterator, WalksTheWholeList) {
  gtk_virtual_list_store_set_total_size(store(), 5);
  GtkTreeIter iter = iter_of(0);

  int steps = 0;
  while (gtk_tree_model_iter_next(model(), &iter)) ++steps;

  EXPECT_EQ(steps, 4);
}

TEST_F(StoreIterator, HasNoChildrenOrParent) {
  gtk_virtual_list_store_set_total_size(store(), 5);
  GtkTreeIter row = iter_of(0);
  GtkTreeIter other;

  EXPECT_FALSE(gtk_tree_model_iter_has_child(model(), &row));
  EXPECT_FALSE(gtk_tree_model_iter_children(model(), &other, &row));
  EXPECT_FALSE(gtk_tree_model_iter_parent(model(), &other, &row));
  EXPECT_EQ(gtk_tree_model_iter_n_children(model(), &row), 0);
}

TEST_F(StoreIterator, TellsThePathOfItsRow) {
  gtk_virtual_list_store_set_total_size(store(), 5);
  GtkTreeIter iter = iter_of(3);

  const pb::StringPtr path(gtk_tree_model_get_string_from_iter(model(), &iter));

  EXPECT_STREQ(path.get(), "3");
}

TEST_F(StoreIterator, EmitsNothingWhenARowIsPositioned) {
  connect_source();
  connect_view();
  gtk_virtual_list_store_set_total_size(store(), 5);
  signals_.clear();

  GtkTreeIter iter = iter_of(2);
  gtk_tree_model_iter_next(model(), &iter);
  gtk_tree_model_iter_nth_child(model(), &iter, nullptr, 4);

  EXPECT_THAT(signals_, IsEmpty());
}

TEST_F(StoreIterator, StaysWithItsRowWhenAnEarlierRowGoes) {
  gtk_virtual_list_store_set_total_size(store(), 5);
  set(3, "three");
  GtkTreeIter iter = iter_of(3);
  GtkTreeIter earlier = iter_of(1);

  gtk_virtual_list_store_remove(store(), &earlier);

  EXPECT_EQ(read(&iter), "three");
  const pb::StringPtr path(gtk_tree_model_get_string_from_iter(model(), &iter));
  EXPECT_STREQ(path.get(), "2");
}

TEST_F(StoreIterator, NamesNothingWhenItsRowWasRemoved) {
  gtk_virtual_list_store_set_total_size(store(), 5);
  GtkTreeIter iter = iter_of(3);
  GtkTreeIter same = iter;

  gtk_virtual_list_store_remove(store(), &iter);

  EXPECT_FALSE(gtk_virtual_list_store_remove(store(), &same));
  EXPECT_FALSE(gtk_tree_model_iter_next(model(), &same));
}

TEST_F(StoreIterator, NamesNothingWhenTheListWasCutBeforeIt) {
  gtk_virtual_list_store_set_total_size(store(), 5);
  GtkTreeIter iter = iter_of(3);

  gtk_virtual_list_store_set_total_size(store(), 2);
  gtk_virtual_list_store_set_total_size(store(), 5);

  EXPECT_FALSE(gtk_virtual_list_store_remove(store(), &iter));
}

TEST_F(StoreSet, FillsTheRow) {
  gtk_virtual_list_store_set_total_size(store(), 5);

  set(2, "two");

  EXPECT_TRUE(filled(2));
  EXPECT_EQ(read(2), "two");
}

TEST_F(StoreSet, LeavesOtherColumnsOfAnUnfilledRowEmpty) {
  gtk_virtual_list_store_set_total_size(store(), 5);

  set(2, "two");

  GtkTreeIter iter = iter_of(2);
  GObject *object = reinterpret_cast<GObject *>(1);
  gtk_tree_model_get(model(), &iter, kObject, &object, -1);
  EXPECT_EQ(object, nullptr);
}

TEST_F(StoreSet, KeepsOtherColumnsOfAFilledRow) {
  gtk_virtual_list_store_set_total_size(store(), 5);
  set(2, "two");

  GtkTreeIter iter = iter_of(2);
  gtk_virtual_list_store_set(store(), &iter, kObject, nullptr, -1);

  EXPECT_EQ(read(2), "two");
}

TEST_F(StoreSet, CopiesStrings) {
  gtk_virtual_list_store_set_total_size(store(), 1);
  char text[] = "before";
  set(0, text);

  strcpy(text, "after!");

  EXPECT_EQ(read(0), "before");
}

TEST_F(StoreSet, TakesAValueThatTheRowItselfHeld) {
  gtk_virtual_list_store_set_total_size(store(), 1);
  const auto object = pb::Ref<GObject>::adopt(G_OBJECT(g_object_new(G_TYPE_OBJECT, nullptr)));
  GtkTreeIter iter = iter_of(0);
  gtk_virtual_list_store_set(store(), &iter, kObject, object.get(), -1);

  gtk_virtual_list_store_set(store(), &iter, kObject, object.get(), -1);

  EXPECT_EQ(object->ref_count, 2U);
}

TEST_F(StoreSet, ReferencesObjectsAndHandsOutTheSamePointer) {
  gtk_virtual_list_store_set_total_size(store(), 1);
  const auto object = pb::Ref<GObject>::adopt(G_OBJECT(g_object_new(G_TYPE_OBJECT, nullptr)));
  GtkTreeIter iter = iter_of(0);

  gtk_virtual_list_store_set(store(), &iter, kObject, object.get(), -1);

  EXPECT_EQ(object->ref_count, 2U);
  pb::Ref<GObject> got;
  GObject *raw = nullptr;
  gtk_tree_model_get(model(), &iter, kObject, &raw, -1);
  got = pb::Ref<GObject>::adopt(raw);
  EXPECT_EQ(got.get(), object.get());
}

TEST_F(StoreSet, EmitsRowChangedOnce) {
  gtk_virtual_list_store_set_total_size(store(), 5);
  connect_source();
  connect_view();

  GtkTreeIter iter = iter_of(4);
  gtk_virtual_list_store_set(store(), &iter, kText, "four", kObject, nullptr, -1);

  EXPECT_THAT(signals_, ElementsAre("changed 4"));
}

TEST_F(StoreAppend, AddsAFilledEmptyRowAtTheEnd) {
  gtk_virtual_list_store_set_total_size(store(), 2);
  GtkTreeIter iter;

  gtk_virtual_list_store_append(store(), &iter);

  EXPECT_EQ(length(), 3);
  EXPECT_TRUE(filled(2));
  EXPECT_EQ(read(&iter), "(null)");
}

TEST_F(StoreAppend, TellsTheView) {
  connect_view();
  GtkTreeIter iter;

  gtk_virtual_list_store_append(store(), &iter);

  EXPECT_THAT(signals_, ElementsAre("inserted 0 of 1"));
}

TEST_F(StoreRemove, RenumbersTheRowsBehind) {
  gtk_virtual_list_store_set_total_size(store(), 5);
  set(1, "one");
  set(3, "three");
  GtkTreeIter iter = iter_of(1);

  EXPECT_TRUE(gtk_virtual_list_store_remove(store(), &iter));

  EXPECT_EQ(length(), 4);
  EXPECT_EQ(read(2), "three");
  EXPECT_FALSE(filled(1));
}

TEST_F(StoreRemove, SucceedsForTheLastRow) {
  gtk_virtual_list_store_set_total_size(store(), 1);
  GtkTreeIter iter = iter_of(0);

  EXPECT_TRUE(gtk_virtual_list_store_remove(store(), &iter));

  EXPECT_EQ(length(), 0);
}

TEST_F(StoreRemove, TellsTheView) {
  gtk_virtual_list_store_set_total_size(store(), 5);
  connect_view();
  GtkTreeIter iter = iter_of(3);

  gtk_virtual_list_store_remove(store(), &iter);

  EXPECT_THAT(signals_, ElementsAre("deleted 3 of 4"));
}

TEST_F(StoreRemove, MakesLaterFillsUseTheNewNumbers) {
  connect_source();
  gtk_virtual_list_store_set_total_size(store(), 5);
  GtkTreeIter iter = iter_of(0);

  gtk_virtual_list_store_remove(store(), &iter);

  EXPECT_EQ(read(0), "row 0");
}

TEST_F(StoreRemove, ReleasesTheValues) {
  gtk_virtual_list_store_set_total_size(store(), 5);
  const auto object = pb::Ref<GObject>::adopt(G_OBJECT(g_object_new(G_TYPE_OBJECT, nullptr)));
  GtkTreeIter iter = iter_of(2);
  gtk_virtual_list_store_set(store(), &iter, kObject, object.get(), -1);

  gtk_virtual_list_store_remove(store(), &iter);

  EXPECT_EQ(object->ref_count, 1U);
}

}  // namespace

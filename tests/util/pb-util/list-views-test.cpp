#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "pb-util-file.h"
#include "support/fake-platform.hpp"

namespace {

using fake::Logged;
using fake::platform;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StrEq;

/// A list view over rows ("zero", 0), ("one", 10), (NULL, 20).
class ListView : public support::DisplayTest {
 protected:
  void SetUp() override {
    DisplayTest::SetUp();
    const auto store =
        pb::Ref<GtkListStore>::adopt(gtk_list_store_new(2, G_TYPE_STRING, G_TYPE_INT));
    gtk_list_store_insert_with_values(store.get(), nullptr, -1, 0, "zero", 1, 0, -1);
    gtk_list_store_insert_with_values(store.get(), nullptr, -1, 0, "one", 1, 10, -1);
    gtk_list_store_insert_with_values(store.get(), nullptr, -1, 1, 20, -1);
    view_ = view_of(GTK_TREE_MODEL(store.get()));
  }

  static pb::Ref<GtkWidget> view_of(GtkTreeModel *model) {
    return pb::Ref<GtkWidget>::sink(gtk_tree_view_new_with_model(model));
  }
  static pb::Ref<GtkWidget> view_of_a_tree() {
    const auto store = pb::Ref<GtkTreeStore>::adopt(gtk_tree_store_new(1, G_TYPE_STRING));
    GtkTreeIter parent;
    GtkTreeIter child;
    gtk_tree_store_append(store.get(), &parent, nullptr);
    gtk_tree_store_append(store.get(), &child, &parent);
    return view_of(GTK_TREE_MODEL(store.get()));
  }
  static void select(GtkWidget *view, const char *row) {
    GtkTreePath *path = gtk_tree_path_new_from_string(row);
    gtk_tree_view_expand_to_path(GTK_TREE_VIEW(view), path);
    gtk_tree_selection_select_path(gtk_tree_view_get_selection(GTK_TREE_VIEW(view)), path);
    gtk_tree_path_free(path);
  }

  pb::Ref<GtkWidget> view_;
};

using ListItemString = ListView;

TEST_F(ListItemString, IsTheRowsText) {
  const pb::StringPtr text(pb_get_list_item_string(view_.get(), 1, 0));

  EXPECT_THAT(text.get(), StrEq("one"));
}

TEST_F(ListItemString, IsNullForAnEmptyCell) {
  EXPECT_EQ(pb_get_list_item_string(view_.get(), 2, 0), nullptr);
}

TEST_F(ListItemString, IsNullForARowThatDoesNotExist) {
  EXPECT_EQ(pb_get_list_item_string(view_.get(), 3, 0), nullptr);
  EXPECT_EQ(pb_get_list_item_string(view_.get(), -1, 0), nullptr);
}

TEST_F(ListItemString, IsNullForAColumnThatIsNoText) {
  EXPECT_EQ(pb_get_list_item_string(view_.get(), 1, 1), nullptr);
  EXPECT_EQ(pb_get_list_item_string(view_.get(), 1, 2), nullptr);
  EXPECT_EQ(pb_get_list_item_string(view_.get(), 1, -1), nullptr);
}

TEST_F(ListItemString, LogsANullView) {
  EXPECT_EQ(pb_get_list_item_string(nullptr, 0, 0), nullptr);

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[pb_get_list_item_string]Widget is NULL.\n\n")));
}

TEST_F(ListItemString, LogsAViewWithoutAModel) {
  EXPECT_EQ(pb_get_list_item_string(view_of(nullptr).get(), 0, 0), nullptr);

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[pb_get_list_item_string]Model is NULL.\n\n")));
}

TEST_F(ListItemString, WarnsAboutAModelThatIsNoListStore) {
  EXPECT_EQ(pb_get_list_item_string(view_of_a_tree().get(), 0, 0), nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_get_list_item_string: assertion 'GTK_IS_LIST_STORE(p_tree_store)' "
                          "failed"));
}

using ListItemData = ListView;

TEST_F(ListItemData, IsTheRowsNumber) { EXPECT_EQ(pb_get_list_item_data(view_.get(), 1, 1), 10); }

TEST_F(ListItemData, IsMinusOneForARowThatDoesNotExist) {
  EXPECT_EQ(pb_get_list_item_data(view_.get(), 3, 1), -1);
}

TEST_F(ListItemData, IsMinusOneForAColumnThatIsNoNumber) {
  EXPECT_EQ(pb_get_list_item_data(view_.get(), 1, 0), -1);
}

TEST_F(ListItemData, LogsANullView) {
  EXPECT_EQ(pb_get_list_item_data(nullptr, 0, 1), -1);

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[pb_get_list_item_data]Widget is NULL.\n\n")));
}

TEST_F(ListItemData, LogsAViewWithoutAModel) {
  EXPECT_EQ(pb_get_list_item_data(view_of(nullptr).get(), 0, 1), -1);

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[pb_get_list_item_data]Model is NULL.\n\n")));
}

TEST_F(ListItemData, WarnsAboutAModelThatIsNoListStore) {
  EXPECT_EQ(pb_get_list_item_data(view_of_a_tree().get(), 0, 0), -1);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("pb_get_list_item_data: assertion 'GTK_IS_LIST_STORE(p_tree_store)' "
                          "failed"));
}

using FocusedListIndex = ListView;

TEST_F(FocusedListIndex, IsTheSelectedRow) {
  select(view_.get(), "2");

  EXPECT_EQ(pb_treeview_get_focused_list_index(view_.get()), 2);
}

TEST_F(FocusedListIndex, IsMinusOneWithoutASelection) {
  EXPECT_EQ(pb_treeview_get_focused_list_index(view_.get()), -1);
  EXPECT_THAT(platform().log, IsEmpty());
}

TEST_F(FocusedListIndex, IsMinusOneForADeeperRow) {
  const pb::Ref<GtkWidget> view = view_of_a_tree();
  select(view.get(), "0:0");

  EXPECT_EQ(pb_treeview_get_focused_list_index(view.get()), -1);
}

TEST_F(FocusedListIndex, LogsAnInvalidView) {
  EXPECT_EQ(pb_treeview_get_focused_list_index(nullptr), -1);

  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_ERROR,
                                                 "[pb_treeview_get_focused_list_index] Treeview "
                                                 "model is invalid\n")));
}

TEST_F(FocusedListIndex, LogsAnInvalidModel) {
  EXPECT_EQ(pb_treeview_get_focused_list_index(view_of(nullptr).get()), -1);

  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_ERROR,
                                                 "[pb_treeview_get_focused_list_index] Treeview "
                                                 "model is invalid\n")));
}

}  // namespace

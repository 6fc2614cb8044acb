#include <algorithm>

#include "check.hpp"
#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "pb-util-file.h"

namespace {

using PathPtr = std::unique_ptr<GtkTreePath, pb::FreeWith<gtk_tree_path_free>>;
using PathsPtr = pb::ListPtr<GtkTreePath, gtk_tree_path_free>;

GtkTreeModel *model_of(GtkWidget *tree_view) {
  return GTK_IS_TREE_VIEW(tree_view) ? gtk_tree_view_get_model(GTK_TREE_VIEW(tree_view)) : nullptr;
}

/// Points to a row when it exists and the column is of the type asked for.
bool find_cell(GtkTreeModel *model, gint row, gint column, GType type, GtkTreeIter &iter) {
  return row >= 0 && column >= 0 && column < gtk_tree_model_get_n_columns(model) &&
         gtk_tree_model_get_column_type(model, column) == type &&
         gtk_tree_model_iter_nth_child(model, &iter, nullptr, row);
}

}  // namespace

gchar *pb_get_list_item_string(GtkWidget *tree_view, gint row, gint column) {
  if (tree_view == nullptr) {
    PB_LOG(PB_LOG_ERROR, "Widget is NULL.\n\n");
    return nullptr;
  }
  GtkTreeModel *p_tree_store = model_of(tree_view);
  if (p_tree_store == nullptr) {
    PB_LOG(PB_LOG_ERROR, "Model is NULL.\n\n");
    return nullptr;
  }
  PB_CHECK(GTK_IS_LIST_STORE(p_tree_store), NULL);
  gchar *text = nullptr;
  GtkTreeIter iter;
  if (find_cell(p_tree_store, row, column, G_TYPE_STRING, iter)) {
    gtk_tree_model_get(p_tree_store, &iter, column, &text, -1);
  }
  return text;
}

gint pb_get_list_item_data(GtkWidget *tree_view, gint row, gint column) {
  if (tree_view == nullptr) {
    PB_LOG(PB_LOG_ERROR, "Widget is NULL.\n\n");
    return -1;
  }
  GtkTreeModel *p_tree_store = model_of(tree_view);
  if (p_tree_store == nullptr) {
    PB_LOG(PB_LOG_ERROR, "Model is NULL.\n\n");
    return -1;
  }
  PB_CHECK(GTK_IS_LIST_STORE(p_tree_store), -1);
  gint number = -1;
  GtkTreeIter iter;
  if (find_cell(p_tree_store, row, column, G_TYPE_INT, iter)) {
    gtk_tree_model_get(p_tree_store, &iter, column, &number, -1);
  }
  return number;
}

gint pb_treeview_get_focused_list_index(GtkWidget *tree_view) {
  if (model_of(tree_view) == nullptr) {
    PB_LOG(PB_LOG_ERROR, " Treeview model is invalid\n");
    return -1;
  }
  GtkTreeSelection *selection = gtk_tree_view_get_selection(GTK_TREE_VIEW(tree_view));
  const PathsPtr rows(gtk_tree_selection_get_selected_rows(selection, nullptr));
  if (rows == nullptr) return -1;
  auto *path = static_cast<GtkTreePath *>(rows->data);
  return gtk_tree_path_get_depth(path) == 1 ? gtk_tree_path_get_indices(path)[0] : -1;
}

#include "check.hpp"
#include "phone-gtk/virtual-list-private.hpp"

namespace phone::gtk {

void name_row(const GtkVirtualListStorePrivate &priv, GtkTreeIter *iter, int row) {
  iter->stamp = priv.stamp;
  iter->user_data = GINT_TO_POINTER(row);
  iter->user_data2 = GSIZE_TO_POINTER(priv.losses.size());
  iter->user_data3 = nullptr;
}

bool position(const GtkVirtualListStorePrivate &priv, GtkTreeIter *iter, int row) {
  if (row < 0 || row >= priv.length) {
    *iter = GtkTreeIter{};
    return false;
  }
  name_row(priv, iter, row);
  return true;
}

int row_of(const GtkVirtualListStorePrivate &priv, const GtkTreeIter *iter) {
  if (iter == nullptr || iter->stamp != priv.stamp) return -1;
  int row = GPOINTER_TO_INT(iter->user_data);
  for (std::size_t i = GPOINTER_TO_SIZE(iter->user_data2); i < priv.losses.size(); ++i) {
    const RowLoss &loss = priv.losses[i];
    if (row < loss.row) continue;
    if (row == loss.row || loss.and_all_behind) return -1;
    --row;
  }
  return row;
}

namespace {

GtkVirtualListStorePrivate &private_of_model(GtkTreeModel *model) {
  return private_of(GTK_VIRTUAL_LIST_STORE(model));
}

GtkTreeModelFlags get_flags(GtkTreeModel *) { return GTK_TREE_MODEL_LIST_ONLY; }

gint get_n_columns(GtkTreeModel *model) {
  return static_cast<gint>(private_of_model(model).types.size());
}

GType get_column_type(GtkTreeModel *model, gint column) {
  const auto &types = private_of_model(model).types;
  PB_CHECK(column >= 0 && static_cast<std::size_t>(column) < types.size(), G_TYPE_INVALID);
  return types[static_cast<std::size_t>(column)];
}

gboolean get_iter(GtkTreeModel *model, GtkTreeIter *iter, GtkTreePath *path) {
  const int row = gtk_tree_path_get_depth(path) == 1 ? gtk_tree_path_get_indices(path)[0] : -1;
  return position(private_of_model(model), iter, row);
}

GtkTreePath *get_path(GtkTreeModel *model, GtkTreeIter *iter) {
  const int row = row_of(private_of_model(model), iter);
  PB_CHECK(row >= 0, nullptr);
  return gtk_tree_path_new_from_indices(row, -1);
}

void get_value(GtkTreeModel *model, GtkTreeIter *iter, gint column, GValue *value) {
  auto *store = GTK_VIRTUAL_LIST_STORE(model);
  auto &priv = private_of(store);
  PB_CHECK(column >= 0 && static_cast<std::size_t>(column) < priv.types.size());
  const auto index = static_cast<std::size_t>(column);
  g_value_init(value, priv.types[index]);
  int row = row_of(priv, iter);
  PB_CHECK(row >= 0);

  FilledRow *filled = priv.rows.find(row);
  if (filled == nullptr) {
    const auto alive = pb::Ref<GtkVirtualListStore>::share(store);
    request(store, row);
    // The handlers may have removed rows; the iterator still finds its own.
    row = row_of(priv, iter);
    filled = row < 0 ? nullptr : priv.rows.find(row);
    if (filled != nullptr) g_value_copy(&filled->values[index], value);
    return;
  }
  g_value_copy(&filled->values[index], value);
}

gboolean iter_next(GtkTreeModel *model, GtkTreeIter *iter) {
  const auto &priv = private_of_model(model);
  const int row = row_of(priv, iter);
  return position(priv, iter, row < 0 ? -1 : row + 1);
}

gboolean iter_nth_child(GtkTreeModel *model, GtkTreeIter *iter, GtkTreeIter *parent, gint n) {
  return position(private_of_model(model), iter, parent == nullptr ? n : -1);
}

gboolean iter_children(GtkTreeModel *model, GtkTreeIter *iter, GtkTreeIter *parent) {
  return iter_nth_child(model, iter, parent, 0);
}

gboolean iter_has_child(GtkTreeModel *, GtkTreeIter *) { return FALSE; }

gint iter_n_children(GtkTreeModel *model, GtkTreeIter *iter) {
  return iter == nullptr ? private_of_model(model).length : 0;
}

gboolean iter_parent(GtkTreeModel *, GtkTreeIter *iter, GtkTreeIter *) {
  *iter = GtkTreeIter{};
  return FALSE;
}

}  // namespace

void tree_model_init(GtkTreeModelIface *iface) {
  iface->get_flags = get_flags;
  iface->get_n_columns = get_n_columns;
  iface->get_column_type = get_column_type;
  iface->get_iter = get_iter;
  iface->get_path = get_path;
  iface->get_value = get_value;
  iface->iter_next = iter_next;
  iface->iter_children = iter_children;
  iface->iter_has_child = iter_has_child;
  iface->iter_n_children = iter_n_children;
  iface->iter_nth_child = iter_nth_child;
  iface->iter_parent = iter_parent;
}

}  // namespace phone::gtk

#include "phone-gtk/icon-view-private.hpp"

namespace phone::gtk {
namespace {

int row_of(GtkTreePath *path) {
  return gtk_tree_path_get_depth(path) == 1 ? gtk_tree_path_get_indices(path)[0] : -1;
}

void on_row_changed(GtkTreeModel *, GtkTreePath *path, GtkTreeIter *, gpointer data) {
  auto *view = PHONE_ICON_VIEW(data);
  const int row = row_of(path);
  auto &priv = private_of(view);
  // Reading a row fills it, which says that it changed; the picture being drawn has that already.
  if (row == priv.drawing_row) return;
  priv.cells.mark_stale(row);
  queue_cell(view, row);
}

/// The number of rows changed at or before the visible ones, or what is below them moved.
void after_renumbering(PhoneIconView *view) {
  ++private_of(view).numbering;
  queue_layout(view);
  gtk_widget_queue_draw(GTK_WIDGET(view));
}

void on_row_inserted(GtkTreeModel *, GtkTreePath *path, GtkTreeIter *, gpointer data) {
  auto *view = PHONE_ICON_VIEW(data);
  auto &priv = private_of(view);
  const int row = row_of(path);
  if (row < 0) return;
  ++priv.grid.rows;
  priv.cells.insert_row(row);
  priv.selected.insert_row(row);
  if (priv.cursor >= row) ++priv.cursor;
  if (priv.anchor >= row) ++priv.anchor;
  after_renumbering(view);
}

void on_row_deleted(GtkTreeModel *, GtkTreePath *path, gpointer data) {
  auto *view = PHONE_ICON_VIEW(data);
  auto &priv = private_of(view);
  const int row = row_of(path);
  if (row < 0 || row >= priv.grid.rows) return;
  --priv.grid.rows;
  priv.cells.delete_row(row);
  cancel_gesture(view);
  const bool was_selected = priv.selected.delete_row(row);
  // The cursor stays where it is on screen: on the row that moved up, or on the last one.
  if (priv.cursor > row || priv.cursor >= priv.grid.rows) --priv.cursor;
  if (priv.anchor > row || priv.anchor >= priv.grid.rows) --priv.anchor;
  after_renumbering(view);
  if (was_selected) g_signal_emit_by_name(view, "selection-changed");
}

void on_rows_reordered(GtkTreeModel *, GtkTreePath *, GtkTreeIter *, gint *, gpointer data) {
  auto *view = PHONE_ICON_VIEW(data);
  auto &priv = private_of(view);
  priv.cells.mark_all_stale();
  change_selection(view, {});
  priv.cursor = -1;
  priv.anchor = -1;
  after_renumbering(view);
}

void connect(PhoneIconView *view) {
  auto &priv = private_of(view);
  auto *model = priv.model.get();
  priv.model_handlers = {
      g_signal_connect(model, "row-changed", G_CALLBACK(on_row_changed), view),
      g_signal_connect(model, "row-inserted", G_CALLBACK(on_row_inserted), view),
      g_signal_connect(model, "row-deleted", G_CALLBACK(on_row_deleted), view),
      g_signal_connect(model, "rows-reordered", G_CALLBACK(on_rows_reordered), view)};
}

void disconnect(PhoneIconView *view) {
  auto &priv = private_of(view);
  for (gulong &handler : priv.model_handlers) {
    if (handler != 0) g_signal_handler_disconnect(priv.model.get(), handler);
    handler = 0;
  }
}

}  // namespace

void set_model(PhoneIconView *view, GtkTreeModel *model) {
  auto &priv = private_of(view);
  stop_glide(view);
  cancel_gesture(view);
  const auto incoming = pb::Ref<GtkTreeModel>::share(model);
  const auto outgoing = priv.model;
  if (outgoing) disconnect(view);
  priv.model = incoming;
  ++priv.model_generation;
  ++priv.numbering;
  priv.grid.rows = model == nullptr ? 0 : gtk_tree_model_iter_n_children(model, nullptr);
  if (model != nullptr) connect(view);
  priv.cells.mark_all_stale();
  priv.pending_scroll.reset();
  priv.cursor = -1;
  priv.anchor = -1;
  change_selection(view, {});
  if (!priv.vertical) return;
  queue_layout(view);
  settle_layout(view);
  scroll_to(view, 0);
  gtk_widget_queue_draw(GTK_WIDGET(view));
  announce_rows(view);
}

}  // namespace phone::gtk

#include <algorithm>

#include "check.hpp"
#include "phone-gtk/icon-view-private.hpp"

namespace phone::gtk {
namespace {

using PathPtr = std::unique_ptr<GtkTreePath, pb::FreeWith<gtk_tree_path_free>>;

GtkSelectionMode mode_of(PhoneIconView *view) {
  return gtk_icon_view_get_selection_mode(GTK_ICON_VIEW(view));
}

bool in_list(PhoneIconView *view, int row) { return row >= 0 && row < private_of(view).grid.rows; }

}  // namespace

void set_cursor(PhoneIconView *view, int row) {
  auto &priv = private_of(view);
  const int previous = std::exchange(priv.cursor, row);
  if (previous != row) {
    queue_cell(view, previous);
    queue_cell(view, row);
    announce_cursor(view);
  }
  bring_into_view(view, row);
}

void change_selection(PhoneIconView *view, const RowSet &selected) {
  auto &priv = private_of(view);
  if (priv.selected == selected) return;
  const RowSet before = std::exchange(priv.selected, selected);
  // Kept cells are few; the rows that changed may be a million.
  const RowRange kept = rows_worth_keeping(visible_rows(view));
  for (int row = kept.first; row <= kept.last; ++row) {
    if (before.contains(row) == selected.contains(row)) continue;
    priv.cells.mark_stale(row);
    queue_cell(view, row);
  }
  g_signal_emit_by_name(view, "selection-changed");
}

void select_only(PhoneIconView *view, int row) {
  if (mode_of(view) == GTK_SELECTION_NONE) return;
  private_of(view).anchor = row;
  RowSet selected;
  selected.add({row, row});
  change_selection(view, selected);
}

void toggle_row(PhoneIconView *view, int row) {
  const GtkSelectionMode mode = mode_of(view);
  auto &priv = private_of(view);
  const bool was_selected = priv.selected.contains(row);
  if (mode == GTK_SELECTION_NONE) return;
  if (mode != GTK_SELECTION_MULTIPLE && !was_selected) return select_only(view, row);
  if (mode == GTK_SELECTION_BROWSE) return;
  RowSet selected = priv.selected;
  if (was_selected) {
    selected.remove({row, row});
  } else {
    selected.add({row, row});
  }
  priv.anchor = row;
  change_selection(view, selected);
}

void extend_to(PhoneIconView *view, int row) {
  auto &priv = private_of(view);
  if (mode_of(view) != GTK_SELECTION_MULTIPLE) return select_only(view, row);
  if (priv.anchor < 0) priv.anchor = priv.cursor >= 0 ? priv.cursor : row;
  RowSet selected;
  selected.add({std::min(priv.anchor, row), std::max(priv.anchor, row)});
  change_selection(view, selected);
}

void conform_to_mode(PhoneIconView *view) {
  auto &priv = private_of(view);
  const GtkSelectionMode mode = mode_of(view);
  // The places to tick come and go with the mode.
  priv.cells.mark_all_stale();
  gtk_widget_queue_draw(GTK_WIDGET(view));
  if (mode == GTK_SELECTION_MULTIPLE || priv.selected.empty()) return;
  if (mode != GTK_SELECTION_NONE && priv.selected.size() == 1) return;
  change_selection(view, {});
}

void activate_row(PhoneIconView *view, int row) {
  if (!in_list(view, row)) return;
  const PathPtr path(gtk_tree_path_new_from_indices(row, -1));
  gtk_icon_view_item_activated(GTK_ICON_VIEW(view), path.get());
}

}  // namespace phone::gtk

using phone::gtk::private_of;
using phone::gtk::RowSet;

void phone_icon_view_set_cursor_row(PhoneIconView *view, gint row) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view));
  if (!phone::gtk::in_list(view, row)) return;
  phone::gtk::stop_glide(view);
  phone::gtk::set_cursor(view, row);
}

gint phone_icon_view_get_cursor_row(PhoneIconView *view) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view), -1);
  return private_of(view).cursor;
}

void phone_icon_view_set_selection_mode(PhoneIconView *view, GtkSelectionMode mode) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view));
  gtk_icon_view_set_selection_mode(GTK_ICON_VIEW(view), mode);
}

GtkSelectionMode phone_icon_view_get_selection_mode(PhoneIconView *view) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view), GTK_SELECTION_NONE);
  return phone::gtk::mode_of(view);
}

void phone_icon_view_select_row(PhoneIconView *view, gint row) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view));
  if (!phone::gtk::in_list(view, row) || private_of(view).selected.contains(row)) return;
  phone::gtk::toggle_row(view, row);
}

void phone_icon_view_unselect_row(PhoneIconView *view, gint row) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view));
  RowSet selected = private_of(view).selected;
  selected.remove({row, row});
  phone::gtk::change_selection(view, selected);
}

gboolean phone_icon_view_row_is_selected(PhoneIconView *view, gint row) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view), FALSE);
  return private_of(view).selected.contains(row);
}

void phone_icon_view_select_all(PhoneIconView *view) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view));
  if (phone::gtk::mode_of(view) != GTK_SELECTION_MULTIPLE) return;
  RowSet all;
  all.add({0, private_of(view).grid.rows - 1});
  phone::gtk::change_selection(view, all);
}

void phone_icon_view_unselect_all(PhoneIconView *view) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view));
  phone::gtk::change_selection(view, {});
}

gint phone_icon_view_count_selected(PhoneIconView *view) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view), 0);
  return static_cast<gint>(private_of(view).selected.size());
}

void phone_icon_view_foreach_selected(PhoneIconView *view, phone_icon_view_row_func function,
                                      gpointer user_data) {
  PB_CHECK(PHONE_IS_ICON_VIEW(view));
  PB_CHECK(function != nullptr);
  const RowSet selected = private_of(view).selected;
  selected.for_each([=](int row) { function(view, row, user_data); });
}

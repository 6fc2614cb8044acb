#include <gdk/gdkkeysyms.h>

#include <algorithm>

#include "phone-gtk/icon-view-private.hpp"

namespace phone::gtk {
namespace {

struct Step {
  GtkMovementStep kind;
  int count;
};

/// The row that a step leads to, held within the list.
int row_after(PhoneIconView *view, int from, Step step) {
  const auto &grid = private_of(view).grid;
  const std::int64_t last = grid.rows - 1;
  std::int64_t goal = from;
  switch (step.kind) {
    case GTK_MOVEMENT_LOGICAL_POSITIONS:
      goal += step.count;
      break;
    case GTK_MOVEMENT_VISUAL_POSITIONS:
      goal += grid.mirrored ? -step.count : step.count;
      break;
    case GTK_MOVEMENT_DISPLAY_LINES:
    case GTK_MOVEMENT_PAGES: {
      const bool page = step.kind == GTK_MOVEMENT_PAGES;
      const std::int64_t lines =
          std::int64_t{step.count} * (page ? std::max(grid.height / grid.pitch(), 1) : 1);
      const std::int64_t line =
          std::clamp<std::int64_t>(grid.line_of(from) + lines, 0, grid.lines() - 1);
      goal = line * grid.columns() + from % grid.columns();
      break;
    }
    case GTK_MOVEMENT_BUFFER_ENDS:
      goal = step.count < 0 ? 0 : last;
      break;
    default:
      break;
  }
  return static_cast<int>(std::clamp<std::int64_t>(goal, 0, last));
}

GdkModifierType pressed_modifiers() {
  GdkModifierType state{};
  gtk_get_current_event_state(&state);
  return state;
}

gboolean move_cursor(GtkIconView *icons, GtkMovementStep kind, gint count) {
  auto *view = PHONE_ICON_VIEW(icons);
  auto &priv = private_of(view);
  if (!gtk_widget_has_focus(GTK_WIDGET(icons)) || priv.grid.rows == 0) return FALSE;
  stop_glide(view);
  settle_layout(view);
  const RowRange visible = visible_rows(view);
  const bool starts = priv.cursor < 0;
  const int from = starts ? std::max(visible.first, 0) : priv.cursor;
  const int goal =
      starts && kind != GTK_MOVEMENT_BUFFER_ENDS ? from : row_after(view, from, {kind, count});
  const GtkSelectionMode mode = gtk_icon_view_get_selection_mode(icons);
  const bool shift = (pressed_modifiers() & GDK_SHIFT_MASK) != 0;
  if (mode == GTK_SELECTION_MULTIPLE && shift) {
    extend_to(view, goal);
  } else if (mode == GTK_SELECTION_MULTIPLE) {
    priv.anchor = goal;
  } else {
    select_only(view, goal);
  }
  set_cursor(view, goal);
  return TRUE;
}

gboolean activate_cursor_item(GtkIconView *icons) {
  auto *view = PHONE_ICON_VIEW(icons);
  const int cursor = private_of(view).cursor;
  if (cursor < 0) return FALSE;
  activate_row(view, cursor);
  return TRUE;
}

/// Space ticks a row where rows can be ticked, and opens it where not.
void toggle_cursor_item(GtkIconView *icons) {
  auto *view = PHONE_ICON_VIEW(icons);
  const int cursor = private_of(view).cursor;
  if (cursor < 0) return;
  if (gtk_icon_view_get_selection_mode(icons) == GTK_SELECTION_NONE) {
    activate_row(view, cursor);
  } else {
    toggle_row(view, cursor);
  }
}

void select_cursor_item(GtkIconView *icons) {
  auto *view = PHONE_ICON_VIEW(icons);
  const int cursor = private_of(view).cursor;
  if (cursor >= 0) select_only(view, cursor);
}

void select_all(GtkIconView *icons) { phone_icon_view_select_all(PHONE_ICON_VIEW(icons)); }

void unselect_all(GtkIconView *icons) { phone_icon_view_unselect_all(PHONE_ICON_VIEW(icons)); }

}  // namespace

void bind_keys(GtkIconViewClass *klass) {
  klass->move_cursor = move_cursor;
  klass->activate_cursor_item = activate_cursor_item;
  klass->toggle_cursor_item = toggle_cursor_item;
  klass->select_cursor_item = select_cursor_item;
  klass->select_all = select_all;
  klass->unselect_all = unselect_all;
  GtkBindingSet *bindings = gtk_binding_set_by_class(klass);
  for (const guint space : {GDK_space, GDK_KP_Space}) {
    gtk_binding_entry_add_signal(bindings, space, GdkModifierType{}, "toggle-cursor-item", 0);
  }
}

}  // namespace phone::gtk

#include <algorithm>

#include "phone-gtk/drawing-pass.hpp"
#include "phone-gtk/icon-view-private.hpp"

namespace phone::gtk {
namespace {

class Value {
 public:
  Value() = default;
  ~Value() {
    if (G_IS_VALUE(&value_)) g_value_unset(&value_);
  }
  Value(const Value &) = delete;
  Value &operator=(const Value &) = delete;
  GValue *get() { return &value_; }

 private:
  GValue value_ = G_VALUE_INIT;
};

GtkStyle *style_of(PhoneIconView *view) { return gtk_widget_get_style(GTK_WIDGET(view)); }

/// Gives the renderer the row's value. False when there is no renderer or no such row.
bool load_renderer(PhoneIconView *view, int row) {
  auto &priv = private_of(view);
  const auto model = priv.model;
  GtkTreeIter iter;
  if (!gtk_tree_model_iter_nth_child(model.get(), &iter, nullptr, row)) return false;
  Value value;
  gtk_tree_model_get_value(model.get(), &iter, priv.column, value.get());
  if (!priv.renderer) return false;
  g_object_set_property(G_OBJECT(priv.renderer.get()), priv.property.c_str(), value.get());
  return true;
}

/// The renderer keeps no row's object longer than the pass.
void empty_renderer(PhoneIconView *view) {
  auto &priv = private_of(view);
  if (!priv.renderer) return;
  auto *object = G_OBJECT(priv.renderer.get());
  GParamSpec *property =
      g_object_class_find_property(G_OBJECT_GET_CLASS(object), priv.property.c_str());
  if (property == nullptr || !G_IS_PARAM_SPEC_OBJECT(property)) return;
  Value nothing;
  g_value_init(nothing.get(), property->value_type);
  g_object_set_property(object, priv.property.c_str(), nothing.get());
}

void draw_cell(PhoneIconView *view, int row, GdkPixmap *surface, bool has_value) {
  auto &priv = private_of(view);
  const bool selected = priv.selected.contains(row);
  GdkRectangle area{0, 0, priv.grid.cell_width, priv.grid.cell_height};
  gdk_draw_rectangle(surface, style_of(view)->base_gc[GTK_STATE_NORMAL], TRUE, 0, 0, area.width,
                     area.height);
  if (has_value) {
    gtk_cell_renderer_render(priv.renderer.get(), surface, GTK_WIDGET(view), &area, &area, &area,
                             selected ? GTK_CELL_RENDERER_SELECTED : GtkCellRendererState{});
  }
  draw_selection(view, surface, selected);
}

/// Draws a cell; nullptr when the model changed under the drawing.
GdkPixmap *draw_picture_of(PhoneIconView *view, int row) {
  auto &priv = private_of(view);
  const unsigned generation = priv.model_generation;
  priv.drawing_row = row;
  const bool has_value = load_renderer(view, row);
  GdkPixmap *surface = nullptr;
  if (generation == priv.model_generation && row < priv.grid.rows) {
    surface =
        priv.cells.prepare(row, content_window(view), priv.grid.cell_width, priv.grid.cell_height);
    draw_cell(view, row, surface, has_value);
  }
  priv.drawing_row = -1;
  return surface;
}

/// Cells that one repaint may still draw. The first is always drawn, so that repaints get on.
class Budget {
 public:
  explicit Budget(gint64 us) : deadline_(g_get_monotonic_time() + us) {}
  bool take() {
    if (used_ && g_get_monotonic_time() >= deadline_) return false;
    used_ = true;
    return true;
  }

 private:
  gint64 deadline_;
  bool used_ = false;
};

void copy_to_screen(PhoneIconView *view, GdkWindow *window, GdkPixmap *picture,
                    const GdkRectangle &cell) {
  gdk_draw_drawable(window, style_of(view)->base_gc[GTK_STATE_NORMAL], picture, 0, 0, cell.x,
                    cell.y, cell.width, cell.height);
}

/// True when the cells are on screen; false when the model changed under the drawing.
bool draw_rows(PhoneIconView *view, GdkEventExpose *event, RowRange rows) {
  auto &priv = private_of(view);
  const unsigned generation = priv.model_generation;
  Budget budget(priv.paint_budget_us);
  for (int row = rows.first; row <= rows.last; ++row) {
    const GdkRectangle cell = cell_on_screen(view, row);
    if (gdk_region_rect_in(event->region, &cell) == GDK_OVERLAP_RECTANGLE_OUT) continue;
    GdkPixmap *picture = priv.cells.find(row);
    if (picture == nullptr && budget.take()) {
      picture = draw_picture_of(view, row);
      if (priv.model_generation != generation || row >= priv.grid.rows) return false;
    } else if (picture == nullptr) {
      picture = priv.cells.find_outdated(row);
      gdk_window_invalidate_rect(event->window, &cell, FALSE);
    }
    if (picture != nullptr) copy_to_screen(view, event->window, picture, cell);
  }
  return true;
}

void draw_cells(PhoneIconView *view, GdkEventExpose *event) {
  auto &priv = private_of(view);
  const RowRange visible = visible_rows(view);
  if (!priv.model || visible.empty()) {
    priv.cells.keep_only({});
    return;
  }
  const DrawingPass pass(priv.model.get(), visible.first, visible.last);
  priv.cells.keep_only(rows_worth_keeping(visible));
  if (draw_rows(view, event, visible)) empty_renderer(view);
}

}  // namespace

gboolean on_expose(GtkWidget *widget, GdkEventExpose *event) {
  auto *view = PHONE_ICON_VIEW(widget);
  if (event->window != content_window(view)) return FALSE;
  draw_cells(view, event);
  draw_press(view, event->window);
  draw_focus(view, event->window);
  draw_handle(view, event->window);
  return TRUE;
}

RowRange rows_worth_keeping(RowRange visible) {
  if (visible.empty()) return {};
  const int screen = visible.last - visible.first + 1;
  const int last = visible.last > G_MAXINT - 1 - screen ? G_MAXINT - 1 : visible.last + screen;
  return {std::max(visible.first - screen, 0), last};
}

GdkRectangle cell_on_screen(PhoneIconView *view, int row) {
  const auto &grid = private_of(view).grid;
  const GridPoint place = grid.place_of(row);
  // Far cells lie where no window reaches; coordinates of the server have 16 bits.
  const std::int64_t y =
      std::clamp<std::int64_t>(place.y - scroll_offset(view), -G_MAXINT16, G_MAXINT16);
  return {place.x, static_cast<int>(y), grid.cell_width, grid.cell_height};
}

void queue_cell(PhoneIconView *view, int row) {
  auto *widget = GTK_WIDGET(view);
  if (!gtk_widget_get_realized(widget)) return;
  if (!visible_rows(view).contains(row)) return;
  GdkRectangle cell = cell_on_screen(view, row);
  gdk_window_invalidate_rect(content_window(view), &cell, FALSE);
}

}  // namespace phone::gtk

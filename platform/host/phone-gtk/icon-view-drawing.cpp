#include <algorithm>
#include <numbers>

#include "phone-gtk/drawing-pass.hpp"
#include "phone-gtk/icon-view-private.hpp"

namespace phone::gtk {
namespace {

using CairoPtr = std::unique_ptr<cairo_t, pb::FreeWith<cairo_destroy>>;
using LayoutPtr = pb::Ref<PangoLayout>;

constexpr int kSelectionWidth = 4;
constexpr int kFocusWidth = 3;
constexpr int kBadgeRadius = 13;
constexpr int kBadgeInset = 6;
constexpr int kHandleWidth = 8;
constexpr int kGrippedHandleWidth = 14;
constexpr int kBubblePadding = 12;

class Value {
 public:
  Value() = default;
  ~Value() {
    if (G_IS_VALUE(&value_)) g_value_unset(&value_);
  }
  Value(const Value &) = delete;
  Value &operator=(const Value &) = delete;
  GValue *operator&() { return &value_; }

 private:
  GValue value_ = G_VALUE_INIT;
};

GtkStyle *style_of(PhoneIconView *view) { return gtk_widget_get_style(GTK_WIDGET(view)); }

void set_colour(cairo_t *cairo, const GdkColor &colour, double alpha = 1) {
  constexpr double kFull = 65535.0;
  cairo_set_source_rgba(cairo, colour.red / kFull, colour.green / kFull, colour.blue / kFull,
                        alpha);
}

/// A frame just inside a rectangle.
void draw_frame(cairo_t *cairo, const GdkRectangle &area, double inset, double width) {
  cairo_set_line_width(cairo, width);
  const double edge = inset + width / 2;
  cairo_rectangle(cairo, area.x + edge, area.y + edge, area.width - 2 * edge,
                  area.height - 2 * edge);
  cairo_stroke(cairo);
}

void draw_tick(cairo_t *cairo, double x, double y) {
  cairo_set_line_width(cairo, 3);
  cairo_set_line_cap(cairo, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(cairo, CAIRO_LINE_JOIN_ROUND);
  cairo_move_to(cairo, x - 6, y);
  cairo_line_to(cairo, x - 1.5, y + 5);
  cairo_line_to(cairo, x + 6.5, y - 5);
  cairo_stroke(cairo);
}

/// A place to see and to tick: rows can be selected one by one.
void draw_badge(PhoneIconView *view, cairo_t *cairo, bool selected) {
  const auto &grid = private_of(view).grid;
  const int from_edge = kBadgeInset + kBadgeRadius;
  const double x = grid.mirrored ? from_edge : grid.cell_width - from_edge;
  const double y = from_edge;
  cairo_arc(cairo, x, y, kBadgeRadius, 0, 2 * std::numbers::pi);
  if (selected) {
    set_colour(cairo, style_of(view)->base[GTK_STATE_SELECTED]);
  } else {
    cairo_set_source_rgba(cairo, 0, 0, 0, 0.4);
  }
  cairo_fill_preserve(cairo);
  cairo_set_source_rgb(cairo, 1, 1, 1);
  cairo_set_line_width(cairo, 2);
  cairo_stroke(cairo);
  if (!selected) return;
  set_colour(cairo, style_of(view)->text[GTK_STATE_SELECTED]);
  draw_tick(cairo, x, y);
}

void draw_selection(PhoneIconView *view, GdkPixmap *surface, bool selected) {
  const bool many = gtk_icon_view_get_selection_mode(GTK_ICON_VIEW(view)) == GTK_SELECTION_MULTIPLE;
  if (!selected && !many) return;
  const auto &grid = private_of(view).grid;
  const CairoPtr cairo(gdk_cairo_create(surface));
  if (selected) {
    set_colour(cairo.get(), style_of(view)->base[GTK_STATE_SELECTED]);
    draw_frame(cairo.get(), {0, 0, grid.cell_width, grid.cell_height}, 0, kSelectionWidth);
  }
  if (many) draw_badge(view, cairo.get(), selected);
}

/// Gives the renderer the row's value. False when the row or the property is not there.
bool load_renderer(PhoneIconView *view, int row) {
  auto &priv = private_of(view);
  const auto model = priv.model;
  GtkTreeIter iter;
  if (!gtk_tree_model_iter_nth_child(model.get(), &iter, nullptr, row)) return false;
  Value value;
  gtk_tree_model_get_value(model.get(), &iter, priv.column, &value);
  if (!priv.renderer) return false;
  g_object_set_property(G_OBJECT(priv.renderer.get()), priv.property.c_str(), &value);
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
  g_value_init(&nothing, property->value_type);
  g_object_set_property(object, priv.property.c_str(), &nothing);
}

void draw_cell(PhoneIconView *view, int row, GdkPixmap *surface) {
  auto &priv = private_of(view);
  auto *widget = GTK_WIDGET(view);
  const bool selected = priv.selected.contains(row);
  const GtkStateType state = selected ? GTK_STATE_SELECTED : GTK_STATE_NORMAL;
  GdkRectangle area{0, 0, priv.grid.cell_width, priv.grid.cell_height};
  gdk_draw_rectangle(surface, style_of(view)->base_gc[GTK_STATE_NORMAL], TRUE, 0, 0, area.width,
                     area.height);
  const auto renderer = priv.renderer;
  if (renderer) {
    gtk_cell_renderer_render(
        renderer.get(), surface, widget, &area, &area, &area,
        state == GTK_STATE_SELECTED ? GTK_CELL_RENDERER_SELECTED : GtkCellRendererState{});
  }
  draw_selection(view, surface, selected);
}

/// Draws a cell; nullptr when the model changed under the drawing.
GdkPixmap *draw_picture_of(PhoneIconView *view, int row) {
  auto &priv = private_of(view);
  const unsigned generation = priv.model_generation;
  priv.drawing_row = row;
  load_renderer(view, row);
  GdkPixmap *surface = nullptr;
  if (generation == priv.model_generation && row < priv.grid.rows) {
    surface =
        priv.cells.prepare(row, content_window(view), priv.grid.cell_width, priv.grid.cell_height);
    draw_cell(view, row, surface);
  }
  priv.drawing_row = -1;
  return surface;
}

void draw_focus(PhoneIconView *view, GdkWindow *window, const GdkRectangle &cell) {
  const CairoPtr cairo(gdk_cairo_create(window));
  cairo_set_source_rgb(cairo.get(), 1, 1, 1);
  draw_frame(cairo.get(), cell, 0, kFocusWidth);
  set_colour(cairo.get(), style_of(view)->base[GTK_STATE_SELECTED]);
  draw_frame(cairo.get(), cell, kFocusWidth, kFocusWidth);
}

void rounded_box(cairo_t *cairo, double x, double y, double width, double height) {
  constexpr double kQuarter = std::numbers::pi / 2;
  const double radius = std::min({width / 2, height / 2, 10.0});
  cairo_new_sub_path(cairo);
  cairo_arc(cairo, x + width - radius, y + radius, radius, -kQuarter, 0);
  cairo_arc(cairo, x + width - radius, y + height - radius, radius, 0, kQuarter);
  cairo_arc(cairo, x + radius, y + height - radius, radius, kQuarter, 2 * kQuarter);
  cairo_arc(cairo, x + radius, y + radius, radius, 2 * kQuarter, 3 * kQuarter);
  cairo_close_path(cairo);
}

/// Tells where in the list the thumb has got to.
void draw_bubble(PhoneIconView *view, cairo_t *cairo, const GdkRectangle &handle) {
  auto &priv = private_of(view);
  const RowRange visible = visible_rows(view);
  if (visible.empty()) return;
  const std::string text =
      std::to_string(visible.first + 1) + " / " + std::to_string(priv.grid.rows);
  const auto layout =
      LayoutPtr::adopt(gtk_widget_create_pango_layout(GTK_WIDGET(view), text.c_str()));
  int width = 0;
  int height = 0;
  pango_layout_get_pixel_size(layout.get(), &width, &height);
  const int box_width = width + 2 * kBubblePadding;
  const int box_height = height + 2 * kBubblePadding;
  const int x = priv.grid.mirrored ? handle.x + handle.width : handle.x - box_width;
  const int middle = handle.y + handle.height / 2 - box_height / 2;
  const int y = std::clamp(middle, 0, std::max(priv.grid.height - box_height, 0));
  rounded_box(cairo, x, y, box_width, box_height);
  set_colour(cairo, style_of(view)->base[GTK_STATE_SELECTED], 0.95);
  cairo_fill(cairo);
  set_colour(cairo, style_of(view)->text[GTK_STATE_SELECTED]);
  cairo_move_to(cairo, x + kBubblePadding, y + kBubblePadding);
  pango_cairo_show_layout(cairo, layout.get());
}

void draw_handle(PhoneIconView *view, GdkWindow *window) {
  const auto area = handle_area(view);
  if (!area) return;
  const auto &priv = private_of(view);
  const bool gripped = priv.pointer.gesture == Gesture::kHandle;
  const int width = gripped ? kGrippedHandleWidth : kHandleWidth;
  const int x = priv.grid.mirrored ? 2 : priv.grid.width - width - 2;
  const CairoPtr cairo(gdk_cairo_create(window));
  rounded_box(cairo.get(), x, area->y + 2, width, area->height - 4);
  if (gripped) {
    set_colour(cairo.get(), style_of(view)->base[GTK_STATE_SELECTED]);
  } else {
    cairo_set_source_rgba(cairo.get(), 1, 1, 1, 0.55);
  }
  cairo_fill_preserve(cairo.get());
  cairo_set_source_rgba(cairo.get(), 0, 0, 0, 0.5);
  cairo_set_line_width(cairo.get(), 1);
  cairo_stroke(cairo.get());
  if (gripped) draw_bubble(view, cairo.get(), *area);
}

/// Cells a screen above and below are kept: scrolling back costs nothing.
RowRange rows_worth_keeping(RowRange visible) {
  const int screen = visible.last - visible.first + 1;
  const int last = visible.last > G_MAXINT - screen ? G_MAXINT : visible.last + screen;
  return {visible.first - screen, last};
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

/// Shows that a touch was felt.
void draw_press(PhoneIconView *view, GdkWindow *window) {
  const auto &pointer = private_of(view).pointer;
  if (pointer.gesture != Gesture::kPress || pointer.pressed_row < 0) return;
  const GdkRectangle cell = cell_on_screen(view, pointer.pressed_row);
  const CairoPtr cairo(gdk_cairo_create(window));
  cairo_set_source_rgba(cairo.get(), 1, 1, 1, 0.2);
  gdk_cairo_rectangle(cairo.get(), &cell);
  cairo_fill(cairo.get());
}

}  // namespace

gboolean on_expose(GtkWidget *widget, GdkEventExpose *event) {
  auto *view = PHONE_ICON_VIEW(widget);
  if (event->window != content_window(view)) return FALSE;
  auto &priv = private_of(view);
  draw_cells(view, event);
  draw_press(view, event->window);
  if (priv.cursor >= 0 && gtk_widget_has_focus(widget)) {
    draw_focus(view, event->window, cell_on_screen(view, priv.cursor));
  }
  draw_handle(view, event->window);
  return TRUE;
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

#include <algorithm>
#include <numbers>

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

}  // namespace

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

void draw_press(PhoneIconView *view, GdkWindow *window) {
  const auto &pointer = private_of(view).pointer;
  if (pointer.gesture != Gesture::kPress || pointer.pressed_row < 0) return;
  const GdkRectangle cell = cell_on_screen(view, pointer.pressed_row);
  const CairoPtr cairo(gdk_cairo_create(window));
  cairo_set_source_rgba(cairo.get(), 1, 1, 1, 0.2);
  gdk_cairo_rectangle(cairo.get(), &cell);
  cairo_fill(cairo.get());
}

void draw_focus(PhoneIconView *view, GdkWindow *window) {
  const int cursor = private_of(view).cursor;
  if (cursor < 0 || !gtk_widget_has_focus(GTK_WIDGET(view))) return;
  const GdkRectangle cell = cell_on_screen(view, cursor);
  const CairoPtr cairo(gdk_cairo_create(window));
  cairo_set_source_rgb(cairo.get(), 1, 1, 1);
  draw_frame(cairo.get(), cell, 0, kFocusWidth);
  set_colour(cairo.get(), style_of(view)->base[GTK_STATE_SELECTED]);
  draw_frame(cairo.get(), cell, kFocusWidth, kFocusWidth);
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

}  // namespace phone::gtk

#include <algorithm>
#include <cmath>

#include "phone-gtk/icon-view-private.hpp"

namespace phone::gtk {
namespace {

constexpr guint kFrameMs = 16;
constexpr int kHandleTouch = 44;

double largest_offset(PhoneIconView *view) {
  const auto &grid = private_of(view).grid;
  return static_cast<double>(std::max<std::int64_t>(grid.total_height() - grid.height, 0));
}

void on_scrolled(GtkAdjustment *adjustment, gpointer data) {
  auto *view = PHONE_ICON_VIEW(data);
  // An adjustment lets the last line be scrolled out of sight; the list ends at the lower edge.
  const double offset = gtk_adjustment_get_value(adjustment);
  if (!private_of(view).layout.pending() && offset > largest_offset(view)) {
    scroll_to(view, offset);
    return;
  }
  gtk_widget_queue_draw(GTK_WIDGET(view));
}

void configure_adjustments(PhoneIconView *view, double offset) {
  auto &priv = private_of(view);
  const auto &grid = priv.grid;
  const double page = grid.height;
  const double upper = std::max(static_cast<double>(grid.total_height()), page);
  gtk_adjustment_configure(priv.vertical.get(), std::clamp(offset, 0.0, upper - page), 0, upper,
                           grid.pitch(), std::max(page - grid.pitch(), page / 2), page);
  const double width = grid.width;
  gtk_adjustment_configure(priv.horizontal.get(), 0, 0, width, width / 10, width, width);
}

gboolean lay_out_at_idle(gpointer data) {
  auto *view = PHONE_ICON_VIEW(data);
  settle_layout(view);
  return G_SOURCE_REMOVE;
}

gboolean glide_on(gpointer data) {
  auto *view = PHONE_ICON_VIEW(data);
  auto &priv = private_of(view);
  const double elapsed_ms = static_cast<double>(g_get_monotonic_time() - priv.glide_start_us) / 1e3;
  const double goal = priv.glide.position(elapsed_ms);
  scroll_to(view, goal);
  const bool at_an_end = goal < 0 || goal > largest_offset(view);
  if (!at_an_end && !priv.glide.over(elapsed_ms)) return G_SOURCE_CONTINUE;
  priv.glide_timer.forget();
  return G_SOURCE_REMOVE;
}

/// Where the view must be so that a row is seen, from where it is.
double nearest_offset_showing(PhoneIconView *view, int row) {
  const auto &grid = private_of(view).grid;
  const int line = grid.line_of(row);
  const std::int64_t top = line == 0 ? 0 : grid.top_of_line(line);
  const std::int64_t bottom = grid.top_of_line(line) + grid.cell_height +
                              (line + 1 == grid.lines() ? grid.margin : grid.row_spacing);
  const std::int64_t offset = scroll_offset(view);
  if (top < offset) return static_cast<double>(top);
  if (bottom > offset + grid.height) return static_cast<double>(bottom - grid.height);
  return static_cast<double>(offset);
}

double aligned_offset(PhoneIconView *view, int row, float align) {
  const auto &grid = private_of(view).grid;
  const auto top = static_cast<double>(grid.top_of_line(grid.line_of(row)));
  return top - static_cast<double>(align) * (grid.height - grid.cell_height);
}

void apply_pending_scroll(PhoneIconView *view) {
  auto &priv = private_of(view);
  if (!priv.pending_scroll || !priv.has_size) return;
  const PendingScroll goal = *priv.pending_scroll;
  priv.pending_scroll.reset();
  if (goal.row >= priv.grid.rows) return;
  scroll_to(view, goal.align ? aligned_offset(view, goal.row, *goal.align)
                             : nearest_offset_showing(view, goal.row));
}

}  // namespace

std::int64_t scroll_offset(PhoneIconView *view) {
  return static_cast<std::int64_t>(gtk_adjustment_get_value(private_of(view).vertical.get()));
}

void scroll_to(PhoneIconView *view, double offset) {
  gtk_adjustment_set_value(private_of(view).vertical.get(),
                           std::round(std::clamp(offset, 0.0, largest_offset(view))));
}

void set_adjustments(PhoneIconView *view, GtkAdjustment *horizontal, GtkAdjustment *vertical) {
  auto &priv = private_of(view);
  const auto own = [](GtkAdjustment *given) {
    return pb::Ref<GtkAdjustment>::sink(
        given != nullptr ? given : GTK_ADJUSTMENT(gtk_adjustment_new(0, 0, 0, 0, 0, 0)));
  };
  auto new_horizontal = own(horizontal);
  auto new_vertical = own(vertical);
  const double offset = priv.vertical ? gtk_adjustment_get_value(priv.vertical.get()) : 0;
  drop_adjustments(view);
  priv.horizontal = std::move(new_horizontal);
  priv.vertical = std::move(new_vertical);
  priv.scroll_handler =
      g_signal_connect(priv.vertical.get(), "value-changed", G_CALLBACK(on_scrolled), view);
  configure_adjustments(view, offset);
}

void drop_adjustments(PhoneIconView *view) {
  auto &priv = private_of(view);
  stop_glide(view);
  if (priv.vertical) g_signal_handler_disconnect(priv.vertical.get(), priv.scroll_handler);
  priv.vertical.reset();
  priv.horizontal.reset();
}

void refresh_geometry(PhoneIconView *view) {
  auto &grid = private_of(view).grid;
  auto *icons = GTK_ICON_VIEW(view);
  grid.row_spacing = std::max(gtk_icon_view_get_row_spacing(icons), 0);
  grid.column_spacing = std::max(gtk_icon_view_get_column_spacing(icons), 0);
  grid.margin = std::max(gtk_icon_view_get_top_margin(icons), 0);
  grid.mirrored = gtk_widget_get_direction(GTK_WIDGET(view)) == GTK_TEXT_DIR_RTL;
}

void queue_layout(PhoneIconView *view) {
  auto &priv = private_of(view);
  if (priv.layout.pending() || !priv.vertical) return;
  priv.layout =
      pb::SourceId(gdk_threads_add_idle_full(G_PRIORITY_HIGH_IDLE, lay_out_at_idle, view, nullptr));
}

void settle_layout(PhoneIconView *view) {
  auto &priv = private_of(view);
  if (!priv.layout.pending()) return;
  priv.layout.remove();
  refresh_geometry(view);
  configure_adjustments(view, gtk_adjustment_get_value(priv.vertical.get()));
  gtk_widget_queue_draw(GTK_WIDGET(view));
}

void resize_viewport(PhoneIconView *view, int width, int height) {
  auto &priv = private_of(view);
  auto &grid = priv.grid;
  settle_layout(view);
  const int columns = grid.columns();
  const RowRange visible = grid.rows_from(scroll_offset(view));
  const std::int64_t offset = scroll_offset(view);
  const bool keep_top = priv.has_size && offset > 0 && !visible.empty();
  const std::int64_t into_line = keep_top ? offset - grid.place_of(visible.first).y : 0;
  grid.width = std::max(width, 1);
  grid.height = std::max(height, 1);
  priv.has_size = true;
  const bool turned = keep_top && grid.columns() != columns;
  configure_adjustments(view, turned
                                  ? static_cast<double>(grid.place_of(visible.first).y + into_line)
                                  : static_cast<double>(offset));
  apply_pending_scroll(view);
}

void bring_into_view(PhoneIconView *view, int row) {
  private_of(view).pending_scroll = PendingScroll{row, std::nullopt};
  settle_layout(view);
  apply_pending_scroll(view);
}

void scroll_to_row(PhoneIconView *view, int row, float align) {
  private_of(view).pending_scroll = PendingScroll{row, align};
  settle_layout(view);
  apply_pending_scroll(view);
}

RowRange visible_rows(PhoneIconView *view) {
  auto &priv = private_of(view);
  settle_layout(view);
  if (!priv.has_size || !priv.vertical) return {};
  return priv.grid.rows_from(scroll_offset(view));
}

void start_glide(PhoneIconView *view, double velocity) {
  auto &priv = private_of(view);
  gboolean animations = TRUE;
  g_object_get(gtk_widget_get_settings(GTK_WIDGET(view)), "gtk-enable-animations", &animations,
               nullptr);
  if (!animations || !Glide::worthwhile(velocity)) return;
  priv.glide = Glide(gtk_adjustment_get_value(priv.vertical.get()), velocity);
  priv.glide_start_us = g_get_monotonic_time();
  priv.glide_timer = pb::SourceId(gdk_threads_add_timeout(kFrameMs, glide_on, view));
}

bool stop_glide(PhoneIconView *view) {
  auto &timer = private_of(view).glide_timer;
  const bool was_gliding = timer.pending();
  timer.remove();
  return was_gliding;
}

QuickHandle quick_handle(PhoneIconView *view) {
  const auto &grid = private_of(view).grid;
  return {grid.height, grid.total_height()};
}

std::optional<GdkRectangle> handle_area(PhoneIconView *view) {
  const QuickHandle handle = quick_handle(view);
  if (!handle.shown()) return std::nullopt;
  const auto &grid = private_of(view).grid;
  const int top = handle.position_of(static_cast<double>(scroll_offset(view)));
  const int left = grid.mirrored ? 0 : grid.width - kHandleTouch;
  return GdkRectangle{left, top, kHandleTouch, handle.length()};
}

}  // namespace phone::gtk

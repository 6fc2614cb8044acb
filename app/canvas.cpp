#include "canvas.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "slide-painter.hpp"

namespace gallery {
namespace {

constexpr double kDragStart = 10;  // pixels before a press is a drag
constexpr double kFlick = 0.4;     // pixels a millisecond
constexpr guint kFrameMs = 16;
constexpr gint64 kGlideUs = 180000;
/// A slide without a neighbour follows the finger by this part of its way.
constexpr double kResistance = 0.25;
constexpr double kWheelStep = 1.25;
constexpr double kTapZoom = 2.5;

}  // namespace

Canvas::Canvas(Hooks hooks)
    : hooks_(std::move(hooks)), area_(pb::Ref<GtkWidget>::sink(gtk_drawing_area_new())) {
  GtkWidget *area = area_.get();
  gtk_widget_set_name(area, "viewer-canvas");
  gtk_widget_set_can_focus(area, TRUE);
  gtk_widget_add_events(area, GDK_BUTTON_PRESS_MASK | GDK_BUTTON_RELEASE_MASK |
                                  GDK_BUTTON1_MOTION_MASK | GDK_SCROLL_MASK);
  const GdkColor black{0, 0, 0, 0};
  gtk_widget_modify_bg(area, GTK_STATE_NORMAL, &black);
  g_signal_connect(area, "expose-event", G_CALLBACK(on_expose), this);
  g_signal_connect(area, "button-press-event", G_CALLBACK(on_press), this);
  g_signal_connect(area, "button-release-event", G_CALLBACK(on_release), this);
  g_signal_connect(area, "motion-notify-event", G_CALLBACK(on_motion), this);
  g_signal_connect(area, "scroll-event", G_CALLBACK(on_scroll), this);
  g_signal_connect(area, "size-allocate", G_CALLBACK(on_resized), this);
}

Canvas::~Canvas() { g_signal_handlers_disconnect_by_data(area_.get(), this); }

int Canvas::width() const {
  GtkAllocation allocation;
  gtk_widget_get_allocation(area_.get(), &allocation);
  return allocation.width;
}

void Canvas::show(Slide current) {
  current_ = std::move(current);
  update_sizes();
  gtk_widget_queue_draw(area_.get());
}

void Canvas::set_neighbours(std::unique_ptr<Slide> previous, std::unique_ptr<Slide> next) {
  previous_ = std::move(previous);
  next_ = std::move(next);
  sent_.keep_only({&current_, previous_.get(), next_.get()});
  // After what is to be seen has been drawn.
  if (sending_.pending()) return;
  sending_ = pb::SourceId(gdk_threads_add_idle_full(G_PRIORITY_LOW, send_ahead, this, nullptr));
}

/// Sends one neighbour at a time.
gboolean Canvas::send_ahead(gpointer self) {
  auto *canvas = static_cast<Canvas *>(self);
  canvas->sending_.forget();
  GdkWindow *window = gtk_widget_get_window(canvas->area_.get());
  if (window == nullptr) return G_SOURCE_REMOVE;
  cairo_t *cairo = gdk_cairo_create(window);
  for (const Slide *slide : {canvas->next_.get(), canvas->previous_.get()}) {
    if (slide == nullptr || !slide->picture || slide->is_preview) continue;
    canvas->sent_.get(cairo_get_target(cairo), slide->picture.get());
  }
  cairo_destroy(cairo);
  return G_SOURCE_REMOVE;
}

void Canvas::draw(cairo_t *cairo) {
  GtkAllocation allocation;
  gtk_widget_get_allocation(area_.get(), &allocation);
  const auto paint_at = [&](const Slide &slide, double x) {
    cairo_save(cairo);
    cairo_translate(cairo, x, 0);
    cairo_rectangle(cairo, 0, 0, allocation.width, allocation.height);
    cairo_clip(cairo);
    paint_slide(cairo, area_.get(), sent_, slide, allocation.width, allocation.height);
    cairo_restore(cairo);
  };
  if (zoom_.is_enlarged()) {
    GdkPixbuf *picture = full_ ? full_.get() : current_.picture.get();
    paint_enlarged(cairo, picture, zoom_.place(), allocation.width, allocation.height);
    return;
  }
  const double shift = std::round(shift_);
  paint_at(current_, shift);
  if (shift > 0 && previous_) paint_at(*previous_, shift - allocation.width);
  if (shift < 0 && next_) paint_at(*next_, shift + allocation.width);
}

gboolean Canvas::on_expose(GtkWidget *area, GdkEventExpose *event, gpointer self) {
  cairo_t *cairo = gdk_cairo_create(gtk_widget_get_window(area));
  gdk_cairo_region(cairo, event->region);
  cairo_clip(cairo);
  static_cast<Canvas *>(self)->draw(cairo);
  cairo_destroy(cairo);
  return TRUE;
}

gboolean Canvas::on_press(GtkWidget *area, GdkEventButton *event, gpointer self) {
  auto *canvas = static_cast<Canvas *>(self);
  if (event->button != 1) return FALSE;
  if (event->type == GDK_2BUTTON_PRESS) canvas->tap_twice(event->x, event->y);
  if (event->type != GDK_BUTTON_PRESS) return TRUE;
  gtk_widget_grab_focus(area);
  if (canvas->glide_.pending()) canvas->arrive();
  canvas->pressed_ = true;
  canvas->dragging_ = false;
  canvas->press_x_ = event->x;
  canvas->press_y_ = event->y;
  canvas->press_time_ = event->time;
  return TRUE;
}

gboolean Canvas::on_motion(GtkWidget *area, GdkEventMotion *event, gpointer self) {
  auto *canvas = static_cast<Canvas *>(self);
  if (!canvas->pressed_) return FALSE;
  const double way = event->x - canvas->press_x_;
  const double aside = canvas->is_enlarged() ? event->y - canvas->press_y_ : 0;
  if (!canvas->dragging_ && std::hypot(way, aside) < kDragStart) return TRUE;
  canvas->dragging_ = true;
  if (canvas->is_enlarged()) {
    canvas->move(way, event->y - canvas->press_y_);
    canvas->press_x_ = event->x;
    canvas->press_y_ = event->y;
    return TRUE;
  }
  const bool free = way > 0 ? canvas->previous_ != nullptr : canvas->next_ != nullptr;
  canvas->shift_ = free ? way : way * kResistance;
  gtk_widget_queue_draw(area);
  return TRUE;
}

gboolean Canvas::on_release(GtkWidget * /*area*/, GdkEventButton *event, gpointer self) {
  auto *canvas = static_cast<Canvas *>(self);
  if (event->button != 1 || !canvas->pressed_) return FALSE;
  canvas->pressed_ = false;
  const bool dragged = std::exchange(canvas->dragging_, false);
  if (canvas->is_enlarged()) {
    if (!dragged) canvas->tap(canvas->width() / 2.0);
  } else if (dragged) {
    canvas->let_go(event->x, event->time);
  } else {
    canvas->tap(event->x);
  }
  return TRUE;
}

void Canvas::tap(double x) {
  const int third = width() / 3;
  if (x < third) {
    hooks_.step(-1);
  } else if (x >= width() - third) {
    hooks_.step(1);
  } else if (!tap_.pending()) {
    gint double_click_ms = 0;
    g_object_get(gtk_widget_get_settings(area_.get()), "gtk-double-click-time", &double_click_ms,
                 nullptr);
    tap_ = pb::SourceId(
        gdk_threads_add_timeout(static_cast<guint>(double_click_ms), on_tap_due, this));
  }
}

gboolean Canvas::on_tap_due(gpointer self) {
  auto *canvas = static_cast<Canvas *>(self);
  canvas->tap_.forget();
  canvas->hooks_.tapped();
  return G_SOURCE_REMOVE;
}

/// At the sides a second tap goes one picture further.
void Canvas::tap_twice(double x, double y) {
  const int third = width() / 3;
  if (x < third || x >= width() - third) return;
  // Nothing is pending where a slow turn has taken the first tap for a whole one.
  if (tap_.pending()) tap_.remove();
  pressed_ = false;
  if (is_enlarged()) {
    zoom_to_fit();
  } else {
    zoom_about(kTapZoom, x, y);
  }
}

gboolean Canvas::on_scroll(GtkWidget * /*area*/, GdkEventScroll *event, gpointer self) {
  auto *canvas = static_cast<Canvas *>(self);
  if (event->direction != GDK_SCROLL_UP && event->direction != GDK_SCROLL_DOWN) return FALSE;
  const bool up = event->direction == GDK_SCROLL_UP;
  canvas->zoom_about(up ? kWheelStep : 1 / kWheelStep, event->x, event->y);
  return TRUE;
}

void Canvas::zoom_about(double factor, double x, double y) {
  if (!current_.picture || current_.has_play_mark || dragging_ || shift_ != 0) return;
  pixels_wanted_ = false;
  update_sizes();
  const bool was_enlarged = is_enlarged();
  zoom_.by(factor, x, y);
  if (is_enlarged() && !was_enlarged) hooks_.enlarged();
  gtk_widget_queue_draw(area_.get());
}

void Canvas::zoom(double factor) {
  GtkAllocation allocation;
  gtk_widget_get_allocation(area_.get(), &allocation);
  zoom_about(factor, allocation.width / 2.0, allocation.height / 2.0);
}

void Canvas::zoom_to_fit() {
  pixels_wanted_ = false;
  zoom_.reset();
  gtk_widget_queue_draw(area_.get());
}

void Canvas::zoom_to_pixels() {
  if (full_ && zoom_.place().width > 0) {
    zoom(gdk_pixbuf_get_width(full_.get()) / zoom_.place().width);
    return;
  }
  hooks_.enlarged();
  pixels_wanted_ = true;
}

void Canvas::set_full(pb::Ref<GdkPixbuf> full) {
  full_ = std::move(full);
  if (!full_) zoom_to_fit();
  if (full_ && pixels_wanted_) zoom_to_pixels();
  gtk_widget_queue_draw(area_.get());
}

void Canvas::move(double dx, double dy) {
  zoom_.move(dx, dy);
  gtk_widget_queue_draw(area_.get());
}

void Canvas::update_sizes() {
  GtkAllocation allocation;
  gtk_widget_get_allocation(area_.get(), &allocation);
  zoom_.set_sizes({static_cast<double>(allocation.width), static_cast<double>(allocation.height)},
                  fitted_size(current_, allocation.width, allocation.height));
}

void Canvas::let_go(double x, guint32 time) {
  const double way = x - press_x_;
  const double speed = std::abs(way) / std::max<guint32>(1, time - press_time_);
  const bool far = std::abs(way) > width() / 3.0 || speed > kFlick;
  const bool free = way > 0 ? previous_ != nullptr : next_ != nullptr;
  glide_to(far && free ? std::copysign(width(), way) : 0);
}

void Canvas::glide_to(double goal) {
  glide_from_ = shift_;
  glide_goal_ = goal;
  glide_start_ = g_get_monotonic_time();
  glide_ = pb::SourceId(gdk_threads_add_timeout(kFrameMs, on_frame, this));
}

gboolean Canvas::on_frame(gpointer self) {
  auto *canvas = static_cast<Canvas *>(self);
  const double part = static_cast<double>(g_get_monotonic_time() - canvas->glide_start_) / kGlideUs;
  if (part >= 1) {
    canvas->glide_.forget();
    canvas->arrive();
    return G_SOURCE_REMOVE;
  }
  const double eased = 1 - (1 - part) * (1 - part);
  canvas->shift_ = canvas->glide_from_ + (canvas->glide_goal_ - canvas->glide_from_) * eased;
  gtk_widget_queue_draw(canvas->area_.get());
  return G_SOURCE_CONTINUE;
}

void Canvas::arrive() {
  glide_.remove();
  const double goal = glide_goal_;
  shift_ = 0;
  glide_goal_ = 0;
  gtk_widget_queue_draw(area_.get());
  if (goal != 0) hooks_.step(goal > 0 ? -1 : 1);
}

void Canvas::on_resized(GtkWidget * /*area*/, GtkAllocation *allocation, gpointer self) {
  static_cast<Canvas *>(self)->update_sizes();
  static_cast<Canvas *>(self)->hooks_.resized(allocation->width, allocation->height);
}

}  // namespace gallery

#include <algorithm>
#include <cmath>

#include "phone-gtk/icon-view-private.hpp"

namespace phone::gtk {
namespace {

/// A finger trembles more than a mouse.
constexpr double kDragThreshold = 12;
constexpr guint kFirstButton = 1;

bool inside(const GdkRectangle &area, double x, double y) {
  return x >= area.x && x < area.x + area.width && y >= area.y && y < area.y + area.height;
}

double offset_of(PhoneIconView *view) {
  return gtk_adjustment_get_value(private_of(view).vertical.get());
}

void grip_handle(PhoneIconView *view, const GdkRectangle &handle, double y) {
  auto &pointer = private_of(view).pointer;
  pointer.gesture = Gesture::kHandle;
  pointer.handle_grip = static_cast<int>(y) - handle.y;
  gtk_widget_queue_draw(GTK_WIDGET(view));
}

void press_cell(PhoneIconView *view, const GdkEventButton *event, bool stopped_a_glide) {
  auto &pointer = private_of(view).pointer;
  pointer.gesture = Gesture::kPress;
  pointer.stopped_a_glide = stopped_a_glide;
  pointer.pressed_row =
      phone_icon_view_get_row_at(view, static_cast<gint>(event->x), static_cast<gint>(event->y));
  pointer.start_x = event->x;
  pointer.start_y = event->y;
  pointer.start_offset = offset_of(view);
  pointer.tracker.reset();
  pointer.tracker.add(event->time, event->y);
  queue_cell(view, pointer.pressed_row);
}

void click(PhoneIconView *view, int row, guint state) {
  auto *icons = GTK_ICON_VIEW(view);
  auto &priv = private_of(view);
  // The extension of a selection begins at the old cursor.
  if (gtk_icon_view_get_selection_mode(icons) == GTK_SELECTION_MULTIPLE) {
    if ((state & GDK_SHIFT_MASK) != 0) {
      extend_to(view, row);
    } else {
      toggle_row(view, row);
    }
    set_cursor(view, row);
    return;
  }
  set_cursor(view, row);
  select_only(view, row);
  // Handlers of the selection may have taken the row away.
  if (row < priv.grid.rows) activate_row(view, row);
}

void drag(PhoneIconView *view, double y, guint32 time) {
  auto &pointer = private_of(view).pointer;
  pointer.tracker.add(time, y);
  scroll_to(view, pointer.start_offset - (y - pointer.start_y));
}

}  // namespace

gboolean on_button_press(GtkWidget *widget, GdkEventButton *event) {
  auto *view = PHONE_ICON_VIEW(widget);
  if (event->window != content_window(view) || event->button != kFirstButton) return FALSE;
  if (event->type != GDK_BUTTON_PRESS) return TRUE;
  if (!gtk_widget_has_focus(widget)) gtk_widget_grab_focus(widget);
  const bool stopped_a_glide = stop_glide(view);
  settle_layout(view);
  const auto handle = handle_area(view);
  if (handle && inside(*handle, event->x, event->y)) {
    grip_handle(view, *handle, event->y);
  } else {
    press_cell(view, event, stopped_a_glide);
  }
  return TRUE;
}

gboolean on_motion(GtkWidget *widget, GdkEventMotion *event) {
  auto *view = PHONE_ICON_VIEW(widget);
  auto &pointer = private_of(view).pointer;
  switch (pointer.gesture) {
    case Gesture::kNone:
      return FALSE;
    case Gesture::kHandle:
      scroll_to(view,
                quick_handle(view).offset_of(static_cast<int>(event->y) - pointer.handle_grip));
      return TRUE;
    case Gesture::kPress:
      if (std::hypot(event->x - pointer.start_x, event->y - pointer.start_y) < kDragThreshold) {
        return TRUE;
      }
      pointer.gesture = Gesture::kDrag;
      queue_cell(view, pointer.pressed_row);
      [[fallthrough]];
    case Gesture::kDrag:
      drag(view, event->y, event->time);
      return TRUE;
  }
  return FALSE;
}

gboolean on_button_release(GtkWidget *widget, GdkEventButton *event) {
  auto *view = PHONE_ICON_VIEW(widget);
  auto &pointer = private_of(view).pointer;
  if (event->button != kFirstButton || pointer.gesture == Gesture::kNone) return FALSE;
  const Gesture gesture = std::exchange(pointer.gesture, Gesture::kNone);
  queue_cell(view, pointer.pressed_row);
  if (gesture == Gesture::kHandle) {
    gtk_widget_queue_draw(widget);
  } else if (gesture == Gesture::kDrag) {
    start_glide(view, -pointer.tracker.velocity(event->time));
  } else if (!pointer.stopped_a_glide && pointer.pressed_row >= 0 &&
             pointer.pressed_row == phone_icon_view_get_row_at(view, static_cast<gint>(event->x),
                                                               static_cast<gint>(event->y))) {
    click(view, pointer.pressed_row, event->state);
  }
  return TRUE;
}

gboolean on_scroll(GtkWidget *widget, GdkEventScroll *event) {
  auto *view = PHONE_ICON_VIEW(widget);
  if (event->direction != GDK_SCROLL_UP && event->direction != GDK_SCROLL_DOWN) return FALSE;
  stop_glide(view);
  settle_layout(view);
  const int line = private_of(view).grid.pitch();
  scroll_to(view, offset_of(view) + (event->direction == GDK_SCROLL_UP ? -line : line));
  return TRUE;
}

void cancel_gesture(PhoneIconView *view) {
  auto &pointer = private_of(view).pointer;
  if (pointer.gesture != Gesture::kNone) gtk_widget_queue_draw(GTK_WIDGET(view));
  pointer.gesture = Gesture::kNone;
}

}  // namespace phone::gtk

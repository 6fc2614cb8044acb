/// A borrowed widget that may be destroyed by others.
#pragma once

#include <gtk/gtk.h>

namespace pb {

/// Remembers a widget without owning it and forgets it when it is destroyed. Main loop only.
/// Objects of static lifetime leave their last connection to the end of the process.
class WidgetSlot {
 public:
  WidgetSlot() = default;
  WidgetSlot(const WidgetSlot &) = delete;
  WidgetSlot &operator=(const WidgetSlot &) = delete;
  ~WidgetSlot() { set(nullptr); }

  /// Remembers another widget, or none.
  void set(GtkWidget *widget) {
    if (widget_ != nullptr) g_signal_handler_disconnect(widget_, handler_);
    widget_ = widget;
    if (widget_ == nullptr) return;
    handler_ = g_signal_connect(widget_, "destroy", G_CALLBACK(forget), this);
  }

  [[nodiscard]] GtkWidget *get() const { return widget_; }
  explicit operator bool() const { return widget_ != nullptr; }

  /// Destroys the widget, if there still is one.
  void destroy() {
    GtkWidget *widget = widget_;
    set(nullptr);
    if (widget != nullptr) gtk_widget_destroy(widget);
  }

 private:
  static void forget(GtkWidget *, gpointer slot) { static_cast<WidgetSlot *>(slot)->set(nullptr); }

  GtkWidget *widget_ = nullptr;
  gulong handler_ = 0;
};

}  // namespace pb

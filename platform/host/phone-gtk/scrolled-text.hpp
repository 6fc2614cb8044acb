/// The text of a dialog.
#pragma once

#include <gtk/gtk.h>

#include "glib-ptr.hpp"

namespace phone::gtk {

/// A label that scrolls where it has less room than it needs: by its bar, the wheel, a finger and
/// the keys. It hides while it is empty. Its owner keeps it for as long as its widget is shown.
class ScrolledText {
 public:
  explicit ScrolledText(GtkWidget *label);
  ScrolledText(const ScrolledText &) = delete;
  ScrolledText &operator=(const ScrolledText &) = delete;

  /// What goes into the dialog.
  [[nodiscard]] GtkWidget *widget() const { return scroller_.get(); }
  [[nodiscard]] GtkWidget *label() const { return label_.get(); }

  void set(const gchar *text);

  /// The height that the widget asked for last, 0 while it hides.
  [[nodiscard]] int asked_height() const;

  /// Takes the height of all of the text, but at most a height, and scrolls where that is too
  /// little. @return whether the widget asks for another height than before
  bool fit(int room);

  /// Scrolls by the keys of a scrolled window. @return whether the key was one of them
  bool handle_key(GdkEventKey *event);

 private:
  static gboolean pressed(GtkWidget *, GdkEventButton *event, gpointer self);
  static gboolean moved(GtkWidget *, GdkEventMotion *event, gpointer self);
  [[nodiscard]] GtkAdjustment *place() const;
  void take_height(int height);

  pb::Ref<GtkWidget> label_;
  pb::Ref<GtkWidget> scroller_;
  int height_ = 0;  ///< what the widget has of a text that scrolls, -1 of one that does not
  /// Where the finger came down, and what the text was scrolled to then.
  double pressed_y_ = 0;
  double pressed_place_ = 0;
};

}  // namespace phone::gtk

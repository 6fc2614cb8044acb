/// One screen of the gallery: a form on the view stack and what it does.
#pragma once

#include <gtk/gtk.h>

#include <string>

namespace gallery {

class Screen {
 public:
  Screen() = default;
  virtual ~Screen() = default;
  Screen(const Screen &) = delete;
  Screen &operator=(const Screen &) = delete;

  /// The form; it lives at least as long as the screen.
  [[nodiscard]] virtual GtkWidget *form() const = 0;
  /// The widget that gets the keyboard when the screen opens.
  [[nodiscard]] virtual GtkWidget *focus() const = 0;
  [[nodiscard]] virtual std::string title() const = 0;

  /// Whether the screen shows a list of its own; if not, it stands over one that does.
  [[nodiscard]] virtual bool has_list() const { return true; }

  /// The screen has come to the top, for the first time or again.
  virtual void enter() = 0;
  /// Another screen comes over this one.
  virtual void covered() {}
  /// Another list takes the place of the screen's, which therefore lets go of it.
  virtual void leave() {}
  /// Pictures or albums came, went or moved.
  virtual void rows_changed() {}
  /// Thumbnails that were asked for are there.
  virtual void thumbnails_arrived() {}
  /// A key that no other part of the program has taken.
  /// @return true when the screen has used it
  virtual bool key(const GdkEventKey & /*event*/) { return false; }
  /// The window has been given the whole screen, or has given it back.
  virtual void full_screen_changed(bool /*full*/) {}
  /// Escape and its like. @return true when the screen stays, having left a mode of its own
  virtual bool back() { return false; }
};

}  // namespace gallery

/// Eyes and hands of the tour: looks at the whole X screen, presses keys and buttons.
#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <string>

#include "glib-ptr.hpp"

namespace tour {

class Screen {
 public:
  [[nodiscard]] pb::Ref<GdkPixbuf> photograph() const;
  /// Title of the topmost window, "" while there is none.
  [[nodiscard]] std::string title() const;
  /// Waits until a window is there and gives it the keyboard.
  bool wait_for_window(int timeout_ms);
  /// Waits until the screen has stood still for quiet_ms.
  /// @return milliseconds until it did, -1 when it never stood still
  int settle(int quiet_ms, int timeout_ms) const;

  /// Presses a key by its name as in "Return", "Right", with modifiers in front: "alt+Left".
  void press(const std::string &key) const;
  void click(int x, int y) const;
  /// Moves with the button held, in steps of a few pixels as a finger would.
  void drag(int from_x, int from_y, int to_x, int to_y) const;
};

/// Lets the X connection work for a while.
void pause(int ms);

}  // namespace tour

#include "screen.hpp"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <gdk/gdkx.h>

#include <cstdlib>
#include <cstring>

namespace tour {
namespace {

Display *display() { return gdk_x11_get_default_xdisplay(); }

/// The topmost mapped child of the root window; there is no window manager.
Window top_window() {
  Window root = 0;
  Window parent = 0;
  Window *children = nullptr;
  unsigned count = 0;
  if (XQueryTree(display(), DefaultRootWindow(display()), &root, &parent, &children, &count) == 0) {
    return 0;
  }
  Window found = 0;
  for (unsigned i = count; i-- > 0 && found == 0;) {
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(display(), children[i], &attributes) != 0 &&
        attributes.map_state == IsViewable && attributes.override_redirect == False &&
        attributes.width > 10) {
      found = children[i];
    }
  }
  if (children != nullptr) XFree(children);
  return found;
}

bool same_picture(GdkPixbuf *a, GdkPixbuf *b) {
  const gsize size = gdk_pixbuf_get_byte_length(a);
  return size == gdk_pixbuf_get_byte_length(b) &&
         std::memcmp(gdk_pixbuf_read_pixels(a), gdk_pixbuf_read_pixels(b), size) == 0;
}

void key_event(KeySym symbol, bool down) {
  XTestFakeKeyEvent(display(), XKeysymToKeycode(display(), symbol), down ? True : False, 0);
}

}  // namespace

void pause(int ms) {
  XFlush(display());
  g_usleep(static_cast<gulong>(ms) * 1000);
}

pb::Ref<GdkPixbuf> Screen::photograph() const {
  GdkWindow *root = gdk_get_default_root_window();
  gint width = 0;
  gint height = 0;
  gdk_drawable_get_size(root, &width, &height);
  return pb::Ref<GdkPixbuf>::adopt(
      gdk_pixbuf_get_from_drawable(nullptr, root, nullptr, 0, 0, 0, 0, width, height));
}

std::string Screen::title() const {
  gdk_error_trap_push();
  std::string text;
  XTextProperty name{};
  const Window window = top_window();
  const Atom utf8 = XInternAtom(display(), "_NET_WM_NAME", False);
  if (window != 0 && XGetTextProperty(display(), window, &name, utf8) != 0) {
    text = reinterpret_cast<const char *>(name.value);
    XFree(name.value);
  }
  gdk_error_trap_pop();
  return text;
}

bool Screen::wait_for_window(int timeout_ms) {
  for (int waited = 0; waited < timeout_ms; waited += 5) {
    gdk_error_trap_push();
    const Window window = top_window();
    if (window != 0) {
      XSetInputFocus(display(), window, RevertToPointerRoot, CurrentTime);
      XTestFakeMotionEvent(display(), -1, 240, 5, 0);
    }
    gdk_flush();
    gdk_error_trap_pop();
    if (window != 0) return true;
    pause(5);
  }
  return false;
}

int Screen::settle(int quiet_ms, int timeout_ms) const {
  constexpr int kStep = 40;
  pb::Ref<GdkPixbuf> last = photograph();
  int still_since = 0;
  for (int waited = 0; waited < timeout_ms; waited += kStep) {
    pause(kStep);
    pb::Ref<GdkPixbuf> next = photograph();
    if (!same_picture(last.get(), next.get())) still_since = waited + kStep;
    last = next;
    if (waited + kStep - still_since >= quiet_ms) return still_since;
  }
  return -1;
}

void Screen::press(const std::string &key) const {
  std::string rest = key;
  std::string modifiers;
  for (std::size_t plus = rest.find('+'); plus != std::string::npos && plus + 1 < rest.size();
       plus = rest.find('+')) {
    modifiers += rest[0];
    rest = rest.substr(plus + 1);
  }
  const auto modifier = [](char letter) -> KeySym {
    return letter == 'a' ? XK_Alt_L : letter == 'c' ? XK_Control_L : XK_Shift_L;
  };
  for (const char letter : modifiers) key_event(modifier(letter), true);
  key_event(XStringToKeysym(rest.c_str()), true);
  key_event(XStringToKeysym(rest.c_str()), false);
  for (const char letter : modifiers) key_event(modifier(letter), false);
  XFlush(display());
}

void Screen::click(int x, int y) const {
  XTestFakeMotionEvent(display(), -1, x, y, 0);
  pause(30);
  XTestFakeButtonEvent(display(), 1, True, 0);
  pause(60);
  XTestFakeButtonEvent(display(), 1, False, 0);
  XFlush(display());
}

void Screen::drag(int from_x, int from_y, int to_x, int to_y) const {
  constexpr int kSteps = 20;
  XTestFakeMotionEvent(display(), -1, from_x, from_y, 0);
  pause(20);
  XTestFakeButtonEvent(display(), 1, True, 0);
  for (int i = 1; i <= kSteps; ++i) {
    XTestFakeMotionEvent(display(), -1, from_x + (to_x - from_x) * i / kSteps,
                         from_y + (to_y - from_y) * i / kSteps, 0);
    pause(12);
  }
  XTestFakeButtonEvent(display(), 1, False, 0);
  XFlush(display());
}

}  // namespace tour

/// Small helpers for widgets.
#pragma once

#include <gtk/gtk.h>

#include <string>

namespace gallery {

/// Names a widget for styles and tests, and for people who hear the screen.
void name_widget(GtkWidget *widget, const char *name, const std::string &spoken);

/// Shows or hides a part of a form for good: showing all of the form does not change it.
void set_shown(GtkWidget *widget, bool shown);

/// A button with a bitmap of the package, without a frame.
GtkWidget *make_icon_button(int bitmap, const char *name, const std::string &spoken);

/// A label that wraps and is centred.
GtkWidget *make_wrapped_label(const char *name);

}  // namespace gallery

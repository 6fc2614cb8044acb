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

/// Lets a label wrap at the width of a container less what stands beside it: by itself a label
/// of GTK+ wraps at a width of its own choice.
void wrap_with_width(GtkWidget *label, GtkWidget *container, int beside);

}  // namespace gallery

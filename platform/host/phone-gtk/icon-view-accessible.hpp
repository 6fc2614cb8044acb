/// The objects that a screen reader sees of a grid: the grid, and a cell for each row it asks for.
#pragma once

#include <atk/atk.h>
#include <gtk/gtk.h>
#include <icon-view.h>

namespace phone::gtk {

/// (transfer full) The object of one row of the list.
AtkObject *new_cell_accessible(PhoneIconView *view, int row);
/// Extents of an area of a widget, relative to the screen or to its window.
void place_on_screen(GtkWidget *widget, GdkRectangle area, AtkCoordType relative_to, gint *x,
                     gint *y, gint *width, gint *height);

}  // namespace phone::gtk

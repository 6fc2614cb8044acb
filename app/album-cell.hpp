/// An album as one cell: its cover, and under it its name and the number of its files.
#pragma once

#include <gtk/gtk.h>
#include <pb-item.h>

namespace gallery {

/// Draws the cover with the library's renderer, which has the item already. The captions of that
/// renderer are left out: they are cut after a few letters.
void draw_album(GdkDrawable *window, GtkWidget *widget, GtkCellRenderer *renderer, PbItem *item,
                const GdkRectangle &place, GdkRectangle *exposed);

}  // namespace gallery

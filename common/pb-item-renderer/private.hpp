/// What the files of the item renderer share.
#pragma once

#include <pb-item-renderer.h>

namespace pb::item_renderer {

/// The icon size at which files are drawn small; every other size is drawn at kLargeIcon.
inline constexpr gint kSmallIcon = 64;
inline constexpr gint kLargeIcon = 148;

/// The size that the browsing state asks for, as one of the two above.
gint icon_size();

}  // namespace pb::item_renderer

void pb_item_renderer_get_size(GtkCellRenderer *cell, GtkWidget *widget, GdkRectangle *cell_area,
                               gint *x_offset, gint *y_offset, gint *width, gint *height);

void pb_item_renderer_render(GtkCellRenderer *cell, GdkDrawable *window, GtkWidget *widget,
                             GdkRectangle *background_area, GdkRectangle *cell_area,
                             GdkRectangle *expose_area, GtkCellRendererState flags);

#include <algorithm>

#include <pb-app-common.h>
#include <pb-debug.h>

#include "private.hpp"

namespace {

/// The frame of an album's cover and the two lines of caption under it.
constexpr gint kAlbumWidth = 138;
constexpr gint kAlbumHeight = 167;

gint offset_in(gint available, gint needed, gfloat alignment) {
  return std::max(static_cast<gint>(static_cast<gfloat>(available - needed) * alignment), 0);
}

}  // namespace

gint pb::item_renderer::icon_size() {
  gint size = 0;
  pb_app_common_get_icon_size(&size);
  return size == kSmallIcon ? kSmallIcon : kLargeIcon;
}

void pb_item_renderer_get_size(GtkCellRenderer *cell, GtkWidget * /*widget*/,
                               GdkRectangle *cell_area, gint *x_offset, gint *y_offset, gint *width,
                               gint *height) {
  const PbItem *item = PB_ITEM_RENDERER(cell)->item;
  if (item == nullptr) {
    PB_LOG(PB_LOG_WARNING, "item not ready\n");
    return;
  }

  const bool album = item->is_cluster != 0;
  const gint icon = album ? 0 : pb::item_renderer::icon_size();
  gint xpad = 0;
  gint ypad = 0;
  gtk_cell_renderer_get_padding(cell, &xpad, &ypad);
  const gint cell_width = (album ? kAlbumWidth : icon) + 2 * xpad;
  const gint cell_height = (album ? kAlbumHeight : icon) + 2 * ypad;

  gfloat xalign = 0;
  gfloat yalign = 0;
  gtk_cell_renderer_get_alignment(cell, &xalign, &yalign);
  if (x_offset != nullptr) {
    *x_offset = cell_area != nullptr ? offset_in(cell_area->width, cell_width, xalign) : 0;
  }
  if (y_offset != nullptr) {
    *y_offset = cell_area != nullptr ? offset_in(cell_area->height, cell_height, yalign) : 0;
  }
  if (width != nullptr) *width = cell_width;
  if (height != nullptr) *height = cell_height;
}

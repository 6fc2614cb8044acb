/// One cell of the gallery's grids.
#pragma once

#include <gtk/gtk.h>

namespace gallery {

/// Side of a cover, and of a large picture.
inline constexpr int kTile = 148;
/// An album's cover with its two lines of text.
inline constexpr int kAlbumCellHeight = 167;

/// A cell renderer with the property "item" (PbItem): draws the item with the library's renderer,
/// in the middle of a tile of tile_size(). A row whose item has not been made gets the empty tile.
///
/// @return (transfer floating) the renderer
GtkCellRenderer *make_cell(bool albums);

}  // namespace gallery

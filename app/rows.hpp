/// Which row of a list shows what.
#pragma once

#include <glib.h>
#include <pb-item-list.h>
#include <pb-item.h>

namespace gallery {

/// Categories of the library.
enum Category : gint { kCategoryAlbums = 0, kCategoryFiles = 2, kCategoryAlbum = 3 };

/// What names an item beyond the list that shows it: the id of its album or of its file.
gint id_of(const PbItem *item);

/// (nullable) The item of a row, made when the row has none.
PbItem *item_at(PbItemList *list, int row);

/// Row of a file among all files; -1 when it is not listed.
int row_of_file(gint id);

/// Row of a file in an album; -1 when it is not listed.
int row_of_album_file(gint album_id, gint id);

/// Row of an album among the albums; -1 when it is not listed.
int row_of_album(gint album_id);

}  // namespace gallery

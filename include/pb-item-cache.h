/** @file
 * The one place where the list thumbnail of an item is produced. Main loop only.
 */
#ifndef PB_ITEM_CACHE_H
#define PB_ITEM_CACHE_H

#include <pb-item.h>

G_BEGIN_DECLS

/**
 * Gives the list thumbnail: from the item's thumbnail file, else from the thumbnail manager,
 * and only for a file that the database does not know from the picture itself.
 *
 * A thumbnail file that is broken is deleted, so that it can be downloaded again; a file that
 * merely could not be read at this moment, and the item's own picture, stay.
 *
 * @param item (transfer none) (nullable) the item
 * @param only_cached TRUE looks at the thumbnail file alone
 * @return (transfer full) (nullable) a pixbuf of at most 148 x 148 that may be drawn into
 */
PB_EXPORT GdkPixbuf *pb_item_cache_get_thumbnail(PbItem *item, gboolean only_cached);

G_END_DECLS

#endif

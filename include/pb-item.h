/** @file
 * One browsable entry: a file of the phone or the card, a file that is on the web, or an album.
 *
 * Items are made, filled and read on the main loop only.
 */
#ifndef PB_ITEM_H
#define PB_ITEM_H

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <glib-object.h>
#include <pb-export.h>

G_BEGIN_DECLS

/** The type of PbItem. */
#define PB_TYPE_ITEM (pb_item_get_type())

/** @cond */
PB_EXPORT G_DECLARE_FINAL_TYPE(PbItem, pb_item, PB, ITEM, GObject)
/** @endcond */

/**
 * The fields are read directly by lists, views and the application. Write them through the
 * setters where there is one; the item frees the strings.
 *
 * Property "palm-loaded" (boolean, FALSE): the animated preview of this item is loaded.
 */
struct _PbItem {
  GObject parent;     /**< base instance */
  gint is_cluster;    /**< 1 for an album, 0 for a file */
  gint id;            /**< database index; 0 when not in the database, -1 for an album */
  gchar *filename;    /**< owned, nullable; full path of the media file */
  gchar *thumb_path;  /**< owned, nullable; a thumbnail or cover file that is ready to show */
  gint attr;          /**< attribute word of the record it came from, carried only */
  gchar *extension;   /**< owned, nullable; without the dot */
  gchar *aux_text;    /**< owned, nullable; second text, set by the list */
  gint media_type;    /**< as the thumbnail manager counts: 2 is a video */
  gint nfid;          /**< id of the file on the web; 0 when it is not there, -2 while it is sent */
  gint favourite;     /**< 1 when marked as a favourite */
  gint mark;          /**< flag of the list, carried only */
  gint cluster_index; /**< number of the album, for the log */
  gint album_id;      /**< database id of the album */
  gchar *name;        /**< owned, nullable; name of the album */
  gint cate_type;     /**< category of the album, for the log */
  gint64 naid;        /**< id of the album on the web; 0 when it is not there */
  gint count;         /**< files in the album */
};

/** @return (transfer full) an item with all fields 0 or NULL */
PB_EXPORT PbItem *pb_item_new(void);

/**
 * Fills the identity of a file; the item is then neither deleted nor palm-loaded.
 *
 * Strings that the item held before are not freed: a caller may still use them.
 *
 * @param item (transfer none) the item
 * @param id database index, 0 for a file outside the database
 * @param thumb_path (transfer none) (nullable) copied
 * @param filename (transfer none) (nullable) copied
 * @param extension (transfer none) (nullable) copied
 * @param attr attribute word
 */
PB_EXPORT void pb_item_set_info(PbItem *item, gint id, const gchar *thumb_path,
                                const gchar *filename, const gchar *extension, gint attr);

/**
 * Fills an item for an album of the database; the first file of the album becomes its cover.
 *
 * Asks the media-browser service and blocks for its answers. When the service fails, the album
 * fields are set and the file fields keep what they were.
 *
 * @param item (transfer none) the item
 * @param ignored1 not read
 * @param ignored2 not read
 * @param album_id database id of the album
 * @param name (transfer none) (nullable) name of the album, copied
 * @param ignored3 not read
 * @param naid id of the album on the web, widened with its sign
 * @param ignored4 not read
 * @param count files in the album
 */
PB_EXPORT void pb_item_set_album_info(PbItem *item, gint ignored1, gint ignored2, gint album_id,
                                      const gchar *name, gint ignored3, gint naid, gint ignored4,
                                      gint count);

/**
 * Fills an item for an album whose cover is a file already.
 *
 * @param item (transfer none) the item; its id becomes -1 and its filename NULL
 * @param album_id database id of the album
 * @param name (transfer none) (nullable) name of the album, copied
 * @param thumb_path (transfer none) (nullable) the cover file, copied
 * @param naid id of the album on the web, 0 when it is not there
 * @param count files in the album
 * @param attr attribute word
 */
PB_EXPORT void pb_item_set_album_info_ex(PbItem *item, gint album_id, const gchar *name,
                                         const gchar *thumb_path, gint64 naid, gint count,
                                         gint attr);

/**
 * Marks an item as deleted: its thumbnails are then handed out washed out.
 *
 * @param item (transfer none) the item
 * @param deleted only the lowest bit counts
 */
PB_EXPORT void pb_item_set_deleted(PbItem *item, gboolean deleted);

/**
 * @param item (transfer none) the item
 * @return TRUE when the item is marked as deleted; FALSE for anything that is no item
 */
PB_EXPORT gboolean pb_item_get_deleted(PbItem *item);

/**
 * @param item (transfer none) the item; anything else answers FALSE without a warning
 * @return TRUE when the animated preview is loaded (property "palm-loaded")
 */
PB_EXPORT gboolean pb_item_is_palm_pixbuf_ready(PbItem *item);

/**
 * Finds the MIME type of an extension; lower case only.
 *
 * @param ignored not read
 * @param mime_out (transfer none) at least 100 bytes; untouched when nothing is found
 * @param ext (transfer none) (nullable) extension without the dot
 * @return TRUE when the extension is known
 */
PB_EXPORT gboolean pb_item_get_content_type_by_ext(gint ignored, gchar *mime_out, const gchar *ext);

/**
 * Gives the thumbnail of a list, made if there is none.
 *
 * @param item (transfer none) the item
 * @return (transfer full) (nullable) a pixbuf that fits 148 x 148 and may be drawn into;
 *         NULL when there is none
 */
PB_EXPORT GdkPixbuf *pb_item_get_thumbnail_pixbuf(PbItem *item);

/**
 * Gives the thumbnail of a list only when a file of it lies ready.
 *
 * @param item (transfer none) the item
 * @return (transfer full) (nullable) as pb_item_get_thumbnail_pixbuf()
 */
PB_EXPORT GdkPixbuf *pb_item_get_only_cached_thumbnail_pixbuf(PbItem *item);

/**
 * Gives the picture of a row's icon column: the thumbnail of a list.
 *
 * @param item (transfer none) the item
 * @return (transfer full) (nullable) as pb_item_get_thumbnail_pixbuf()
 */
PB_EXPORT GdkPixbuf *pb_item_get_render_pixbuf(PbItem *item);

/**
 * Gives the picture of a row's icon column only when a file of it lies ready.
 *
 * @param item (transfer none) the item
 * @return (transfer full) (nullable) as pb_item_get_only_cached_thumbnail_pixbuf()
 */
PB_EXPORT GdkPixbuf *pb_item_get_only_cached_render_pixbuf(PbItem *item);

/**
 * Gives the picture at the size in which its file stores it, upright.
 *
 * Decodes in the calling thread.
 *
 * @param item (transfer none) the item; it must have a filename
 * @return (transfer full) (nullable) NULL when the file cannot be loaded
 */
PB_EXPORT GdkPixbuf *pb_item_get_pixbuf(PbItem *item);

/**
 * Gives the picture upright and, when it is as large as the screen (480 x 800) or larger,
 * scaled to fit a box. A smaller picture keeps its size.
 *
 * Decodes in the calling thread.
 *
 * @param item (transfer none) the item
 * @param width width of the box in pixels
 * @param height height of the box in pixels
 * @return (transfer full) (nullable) NULL when the file cannot be loaded
 */
PB_EXPORT GdkPixbuf *pb_item_get_pixbuf_at_size(PbItem *item, gint width, gint height);

/**
 * Gives the animation of the item's file for the animated preview.
 *
 * @param item (transfer none) the item
 * @param is_static (out) (nullable) TRUE when the file holds a single picture; FALSE when it cannot
 * be loaded
 * @return (transfer full) (nullable) NULL when the file cannot be loaded
 */
PB_EXPORT GdkPixbufAnimation *pb_item_get_palm_animation_pixbuf(PbItem *item, gboolean *is_static);

G_END_DECLS

#endif

/** @file
 * The state of browsing: the current category, its list, the current item in it, and the
 * choices of size, order and filter. One object for the whole process, main loop only; nothing
 * of it is stored.
 *
 * Categories: -1 none, 0 the albums, 1, 2 and 5 all files of the current filter, 3 the contents
 * of one album, 4 the files that are only on the web.
 *
 * Without the object (before pb_app_common_initialize(), after pb_app_common_finalize()) every
 * function logs that it is missing and returns what it returns on failure.
 */
#ifndef PB_APP_COMMON_H
#define PB_APP_COMMON_H

#include <gtk/gtk.h>
#include <pb-item-list.h>
#include <pb-item.h>

G_BEGIN_DECLS

/** The type of PbAppCommon. */
#define PB_TYPE_APP_COMMON (pb_app_common_get_type())

/** @cond */
PB_EXPORT G_DECLARE_FINAL_TYPE(PbAppCommon, pb_app_common, PB, APP_COMMON, GObject)
/** @endcond */

/**
 * Properties, all integers that read and write the field of their name: "category-type" (-1 to
 * 5), "item-index" (-1 and more), "evt-delivery-handle" (-1 and more, carried only).
 *
 * "item-index" is notified by navigation. "category-type" is notified by every build of a list,
 * and once more by pb_app_common_set_category() when the build failed.
 */
struct _PbAppCommon {
  GObject parent;           /**< base instance */
  gint category_type;       /**< current category; -1 at first */
  gint reserved;            /**< 0 */
  gint item_index;          /**< row of the current item in the list */
  gint evt_delivery_handle; /**< the application's; 0 at first */
};

/** Creates the object. A second call leaks the first object. */
PB_EXPORT void pb_app_common_initialize(void);

/** Destroys the object and drops the list. */
PB_EXPORT void pb_app_common_finalize(void);

/** @return (transfer none) (nullable) the object */
PB_EXPORT PbAppCommon *pb_app_common_get_instance(void);

/** @return the current category; 0 without the object */
PB_EXPORT gint pb_app_common_get_category(void);

/**
 * Makes a category current, builds its list and makes the first item current.
 *
 * @param category -1 to 5
 * @param force FALSE keeps the list when the category is current already
 * @return FALSE when the list is empty; the category is current all the same, the current item
 *         keeps its row
 */
PB_EXPORT gboolean pb_app_common_set_category(gint category, gboolean force);

/** @param size (out) icon size in pixels; 148 at first, 0 without the object */
PB_EXPORT void pb_app_common_get_icon_size(gint *size);

/** @param size icon size in pixels; views draw 64 and, for any other value, 148 */
PB_EXPORT void pb_app_common_set_icon_size(gint size);

/**
 * Reads the order and filter of the file lists.
 *
 * @param sort (out) 4 at first; 0 without the object
 * @param filter (out) -1 (none) at first; 0 without the object
 */
PB_EXPORT void pb_app_common_get_filter_sort_type(gint *sort, gint64 *filter);

/**
 * Sets the order and filter of file lists that are built from here on.
 *
 * @param sort order, as the media-browser service numbers it
 * @param filter filter, as the media-browser service numbers it; -1 for none
 */
PB_EXPORT void pb_app_common_set_filter_sort_type(gint sort, gint64 filter);

/**
 * Reads the order and filter of the album list.
 *
 * @param sort (out) 2 at first; 0 without the object
 * @param filter (out) 0 at first; 0 without the object
 */
PB_EXPORT void pb_app_common_get_album_filter_sort_type(gint *sort, gint *filter);

/**
 * Sets the order and filter of the album list.
 *
 * @param sort order, as the media-browser service numbers it
 * @param filter filter, as the media-browser service numbers it
 */
PB_EXPORT void pb_app_common_set_album_filter_sort_type(gint sort, gint filter);

/** @return (transfer none) (nullable) the list of the current category */
PB_EXPORT PbItemList *pb_app_common_get_item_list(void);

/**
 * Names the view whose scrolling loads thumbnails. Neither is referenced; each is forgotten when
 * it is destroyed.
 *
 * @param iconview (transfer none) (nullable) the icon view
 * @param adjustment (transfer none) (nullable) its vertical adjustment
 */
PB_EXPORT void pb_app_common_set_adjustment(GtkWidget *iconview, GtkAdjustment *adjustment);

/**
 * Reads what pb_app_common_set_adjustment() stored.
 *
 * @param iconview (out) (transfer none) (nullable) the icon view
 * @param adjustment (out) (transfer none) (nullable) its vertical adjustment
 */
PB_EXPORT void pb_app_common_get_adjustment_widget(GtkWidget **iconview,
                                                   GtkAdjustment **adjustment);

/**
 * Builds the list of a category in place of the current list. Items borrowed from the old list
 * may be gone; the current row stays.
 *
 * @param category the category, current afterwards
 * @param album_id for category 3 the album; 0 takes the album of the current item
 * @return FALSE when the list is empty or there is no album to list
 */
PB_EXPORT gboolean pb_app_common_build_item_list(gint category, gint album_id);

/**
 * Builds the list of the current category again, for the view that shows it.
 *
 * @return as pb_app_common_build_item_list()
 */
PB_EXPORT gboolean pb_app_common_resync_current_category(void);

/**
 * Installs a list that was built elsewhere and makes its first row current.
 *
 * @param list (transfer none) the list; it may be the current one
 */
PB_EXPORT void pb_app_common_reset_list_index(PbItemList *list);

/**
 * @param list (transfer none) any list
 * @param nth row, from 0
 * @return (transfer none) (nullable) the item; NULL outside the list and for an empty row
 */
PB_EXPORT PbItem *pb_app_common_get_nth_item_from_list(PbItemList *list, gint nth);

/**
 * Gives an item of the current list. When its row is empty, the current row moves on by one and
 * the same offset is tried once more.
 *
 * @param offset rows from the current one
 * @return (transfer none) (nullable) the item
 */
PB_EXPORT PbItem *pb_app_common_get_nth_item_from_current(gint offset);

/** @return TRUE when there is an item before the current one; only row 0 is looked at */
PB_EXPORT gboolean pb_app_common_check_previous_item_exist(void);

/** @return TRUE when there is a row after the current one; also TRUE for an empty list */
PB_EXPORT gboolean pb_app_common_check_next_item_exist(void);

/**
 * Makes a row current and notifies "item-index" once.
 *
 * @param index row; a negative one stands for the current row
 * @return FALSE outside the list; the current row stays
 */
PB_EXPORT gboolean pb_app_common_navigate_item_by_index(gint index);

/** @return TRUE when the nearest earlier row with an item is current; FALSE moves nothing */
PB_EXPORT gboolean pb_app_common_navigate_item_backward(void);

/** @return TRUE when the nearest later row with an item is current; FALSE moves nothing */
PB_EXPORT gboolean pb_app_common_navigate_item_forward(void);

/**
 * Makes the first row of an album's list current.
 *
 * @param cluster_index number of the album, for the log
 * @return as pb_app_common_navigate_item_by_index()
 */
PB_EXPORT gboolean pb_app_common_navigate_cluster_by_index(gint cluster_index);

/** Reloads the icons of the rows on screen. */
PB_EXPORT void pb_app_common_resync_current_icons(void);

/** Ends the filling of the current list, for example before its view goes. */
PB_EXPORT void pb_app_common_vls_disconnect_signal(void);

/**
 * Builds the album list in a given order in place of the current list. Neither the current row
 * nor the category changes.
 *
 * @param sort_type order, as the media-browser service numbers it
 * @return FALSE without albums; the current list is then empty
 */
PB_EXPORT gboolean pb_app_common_sort_albums(gint sort_type);

/**
 * Makes the row of a file current after a list was built again; in categories 1 and 2 only.
 * "item-index" is not notified.
 *
 * @param fid database index, 0 when there is none
 * @param nfid id on the web, 0 when there is none
 * @return FALSE when the file is not listed; the current row stays
 */
PB_EXPORT gboolean mb_app_common_update_iter_index_after_build(gint fid, gint nfid);

/**
 * Gives a row that shows a web album its downloaded cover; in categories 0 and 3 only.
 *
 * @param id id on the web, above 0; the low 32 bits are compared
 * @param cover_path (transfer none) the cover file, copied
 * @return FALSE when no row that the view has drawn matches
 */
PB_EXPORT gboolean mb_app_common_update_content_cover_after_download(gint64 id,
                                                                     const gchar *cover_path);

/**
 * Brings the current row up to date after its file changed.
 *
 * @param file_full_path (transfer none) (nullable) the file that changed; any other than the
 *        current one changes nothing
 * @param update_type 1 favourite, 2 id on the web, 3 picture, 4 path, 5 mark removed
 * @param favourite for type 1
 * @param nfid for type 2
 * @param new_path (transfer none) (nullable) for type 4, copied
 * @return (transfer none) (nullable) the current item, changed or not
 */
PB_EXPORT PbItem *pb_app_common_update_item_pixbuf(const gchar *file_full_path, gint update_type,
                                                   gboolean favourite, gint nfid,
                                                   const gchar *new_path);

G_END_DECLS

#endif

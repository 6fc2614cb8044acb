/** @file
 * PbItemList: the model of a view, a virtual list store whose rows are made when they are asked
 * for, and the questions to the media-browser service that fill it.
 *
 * Columns: 0 the PbItem of the row (NULL in a header row), 1 the text of a header row (NULL in
 * an item row), 2 the item's index in the list it came from (gint), 3 the GdkPixbuf that the
 * view draws for the row.
 *
 * Every function runs on the main loop, with the GDK lock. An argument of another type gives a
 * GLib critical warning and the failure result.
 */
#ifndef PB_ITEM_LIST_H
#define PB_ITEM_LIST_H

#include <gtk/gtk.h>
#include <pb-export.h>
#include <pb-item.h>
#include <virtual-list-store.h>

G_BEGIN_DECLS

#define PB_TYPE_ITEM_LIST (pb_item_list_get_type())
PB_EXPORT G_DECLARE_FINAL_TYPE(PbItemList, pb_item_list, PB, ITEM_LIST, GtkVirtualListStore)

/** The field is written by the functions that fill the list. */
struct _PbItemList {
  GtkVirtualListStore parent; /**< base instance */
  gint category;              /**< what the list was built for; chooses how rows are made */
};

/** Number of lists that are alive. */
PB_EXPORT extern gint pb_item_list_count;

/** @return (transfer full) an empty list without handlers */
PB_EXPORT PbItemList *pb_item_list_new(void);

/**
 * Appends a row that stays filled, and counts it.
 *
 * @param list (transfer none) the list
 * @param item (transfer none) the item; required, and unused, for a header row
 * @param index -1 for a header row, else the number kept in column 2
 * @param title (transfer none) (nullable) text of a header row; ignored for an item row
 */
PB_EXPORT void pb_item_list_add(PbItemList *list, PbItem *item, gint index, const gchar *title);

/**
 * Counts the rows that the list presents. Removing a row does not lower the number.
 *
 * @param list (transfer none) (nullable) the list
 * @return the number of rows; 0 for NULL
 */
PB_EXPORT gint pb_item_list_get_length(PbItemList *list);

/**
 * @param list (transfer none) the list
 * @return (transfer full) (nullable) the item of the first row; NULL with a critical warning
 *         when that row has none
 */
PB_EXPORT PbItem *pb_item_list_get_first(PbItemList *list);

/**
 * @param list (transfer none) the list
 * @return (transfer full) (nullable) the item of the last row; NULL when the list has fewer than
 *         two rows or that row has no item
 */
PB_EXPORT PbItem *pb_item_list_get_last(PbItemList *list);

/**
 * Finds the item of a row, as pb_item_list_vls_get_item_by_index() does, within the length of
 * the list.
 *
 * @param list (transfer none) the list
 * @param index 0 to pb_item_list_get_length() - 1
 * @return (nullable) the item, owned as by pb_item_list_vls_get_item_by_index(); NULL with a
 *         critical warning for another index or a row without an item
 */
PB_EXPORT PbItem *pb_item_list_get_by_index(PbItemList *list, gint index);

/**
 * Finds the item of a row, and makes it from the held records when the row has none.
 *
 * The caller cannot tell from the result which of the two ways it is owned.
 *
 * @param list (transfer none) the list
 * @param index number of the row
 * @return (nullable) an item that the row already had: transfer full; an item made by this call:
 *         transfer none; NULL when there is no such row or no record for it
 */
PB_EXPORT PbItem *pb_item_list_vls_get_item_by_index(PbItemList *list, gint index);

/**
 * Marks the item of a row as deleted and removes the row. The rows after it move up and keep
 * their column 2; the length of the list stays.
 *
 * @param list (transfer none) the list
 * @param index number of the row
 * @return TRUE when the row was removed; FALSE, with nothing changed, when there is no such row
 *         or it is a header row
 */
PB_EXPORT gboolean pb_item_list_remove_by_index(PbItemList *list, gint index);

/**
 * Stops a list of pb_item_get_sub_list() and its relatives from reading the service.
 *
 * @param item_list (transfer none) the list
 */
PB_EXPORT void pb_item_sub_list_disconnect_signal(PbItemList *item_list);

/**
 * Stops a list of pb_item_get_share_list() from reading the service.
 *
 * @param item_list (transfer none) the list
 */
PB_EXPORT void pb_item_share_list_disconnect_signal(PbItemList *item_list);

/**
 * Stops a list of pb_item_list_build() from reading the service and from following its
 * adjustment; a pending refresh is dropped.
 *
 * @param item_list (transfer none) the list
 */
PB_EXPORT void pb_item_list_vls_disconnect_signal(PbItemList *item_list);

/**
 * Fills a new list for a category.
 *
 * @param list (transfer none) the list
 * @param category 0 albums, 3 the files of one album, 4 files that only the web-album server
 *        has, any other number all files of the current filter, in pages
 * @param album_id the album of category 3; ignored otherwise
 * @return the number of rows; 0 when there is nothing to list or the service failed, and the
 *         list is then empty
 */
PB_EXPORT gint pb_item_list_build(PbItemList *list, gint category, gint album_id);

/**
 * Handler of "fill-cache" for lists of pb_item_list_build(): makes one row.
 *
 * @param store (transfer none) the list
 * @param first first row of the range that the store is filling
 * @param last last row of that range
 * @param row the row to make; left as it is when the service has nothing for it
 */
PB_EXPORT void pb_item_list_insert_data(GtkVirtualListStore *store, gint first, gint last,
                                        gint row);

/**
 * Handler of "fill-cache" for lists of pb_item_get_sub_list() and its relatives.
 *
 * @param store (transfer none) the list
 * @param first first row of the range that the store is filling
 * @param last last row of that range
 * @param row the row to make
 */
PB_EXPORT void pb_item_list_sub_insert_data(GtkVirtualListStore *store, gint first, gint last,
                                            gint row);

/**
 * Handler of "fill-cache" for lists of pb_item_get_album_list().
 *
 * @param store (transfer none) the list
 * @param first first row of the range that the store is filling
 * @param last last row of that range
 * @param row the row to make
 */
PB_EXPORT void pb_item_list_album_insert_data(GtkVirtualListStore *store, gint first, gint last,
                                              gint row);

/**
 * Handler of "fill-cache" for lists of pb_item_get_share_list().
 *
 * @param store (transfer none) the list
 * @param first first row of the range that the store is filling
 * @param last last row of that range
 * @param row the row to make
 */
PB_EXPORT void pb_item_list_share_insert_data(GtkVirtualListStore *store, gint first, gint last,
                                              gint row);

/**
 * Attaches the view whose geometry and scrolling decide which thumbnails are loaded. Neither is
 * referenced; each is forgotten when it is destroyed.
 *
 * @param list (transfer none) the list
 * @param icon_view (transfer none) (nullable) a GtkIconView; its icon height and row spacing are
 *        read once, here
 * @param adjustment (transfer none) (nullable) its vertical adjustment
 * @param no_thumbnails TRUE when the first fill is to leave the rows alone; scrolling refreshes
 *        them all the same
 */
PB_EXPORT void pb_item_list_set_adjustment_cb(PbItemList *list, GtkWidget *icon_view,
                                              GtkAdjustment *adjustment, gboolean no_thumbnails);

/**
 * Makes the first 12 rows with their thumbnails, gives rows up to the 100th the placeholder, and
 * starts a refresh. Does nothing without an icon view and an adjustment.
 *
 * @param list (transfer none) the list
 */
PB_EXPORT void pb_item_list_icon_refresh_when_start(PbItemList *list);

/**
 * Handler of "notify::value" of the adjustment: starts a refresh of 30 rows around the first
 * visible row, one row an idle call, in place of a refresh that is under way.
 *
 * @param object (transfer none) (nullable) not read
 * @param pspec (transfer none) (nullable) not read
 * @param list (transfer none) the list
 */
PB_EXPORT void pb_item_list_vadjustment_cb(GObject *object, GParamSpec *pspec, PbItemList *list);

/**
 * Refreshes the rows around the first visible row, unless a refresh is under way.
 *
 * @param list (transfer none) the list
 */
PB_EXPORT void pb_item_list_rsync_current_icons(PbItemList *list);

/**
 * Idle function of a refresh: loads at most one thumbnail.
 *
 * @param list (transfer none) the PbItemList
 * @return TRUE to be called again
 */
PB_EXPORT gboolean pb_item_list_icon_refresh_at_idle_cb(gpointer list);

/**
 * Lists the files of one album, in the album sort and filter.
 *
 * @param album_id media-browser id of the album
 * @return (transfer full) the list; empty when the album is or the service failed
 */
PB_EXPORT PbItemList *pb_item_get_album_list(gint album_id);

/**
 * Lists all files of the current filter, in the current sort.
 *
 * @param previous (transfer none) (nullable) a list that this one replaces; its handlers are
 *        disconnected
 * @return (transfer full) the list
 */
PB_EXPORT PbItemList *pb_item_get_sub_list(PbItemList *previous);

/**
 * Lists all files of the current filter, less the given ones.
 *
 * @param previous (transfer none) (nullable) a list that this one replaces; its handlers are
 *        disconnected
 * @param selected (transfer none) (nullable) file ids to leave out, as GINT_TO_POINTER
 * @return (transfer full) the list; without handlers when the service has no files
 */
PB_EXPORT PbItemList *pb_item_get_sub_sorted_list(PbItemList *previous, GList *selected);

/**
 * As pb_item_get_sub_sorted_list(), but the list has its handlers even when the service has no
 * files.
 *
 * @param previous (transfer none) (nullable) a list that this one replaces; its handlers are
 *        disconnected
 * @param selected (transfer none) (nullable) file ids to leave out, as GINT_TO_POINTER
 * @return (transfer full) the list
 */
PB_EXPORT PbItemList *pb_item_get_sorted_sub_list(PbItemList *previous, GList *selected);

/**
 * Lists the files of the current filter that have a copy on the web-album server.
 *
 * @return (transfer full) the list
 */
PB_EXPORT PbItemList *pb_item_get_sub_backup_list(void);

/**
 * Lists all files of the current filter in pages, attached to the icon view and adjustment that
 * the browsing state holds.
 *
 * @param previous (transfer none) (nullable) a list that this one replaces; its handlers are
 *        disconnected
 * @return (transfer full) the list, of category 2
 */
PB_EXPORT PbItemList *pb_item_get_refresh_sub_list(PbItemList *previous);

/**
 * Lists what can be shared: what has a copy on the web-album server.
 *
 * @param cate_type 0 albums, 3 the files of one album, any other number files of the whole
 *        library; becomes the category of the list
 * @param album_id the album of cate_type 3; ignored otherwise
 * @param sorted 0 for the fixed filter of cate_type, else the filter of the settings; read for
 *        the whole library only
 * @return (transfer full) (nullable) the list; NULL when memory ran out
 */
PB_EXPORT PbItemList *pb_item_get_share_list(gint cate_type, gint album_id, gint sorted);

/**
 * Regroups a list: locked files first, then the others, each group under a header row. Column 2
 * holds the index in the given list.
 *
 * @param list (transfer none) the list to regroup
 * @return (transfer full) the list, with two references for the caller to drop
 */
PB_EXPORT PbItemList *pb_item_get_sticky_sub_list(PbItemList *list);

G_END_DECLS

#endif

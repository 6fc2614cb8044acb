/** @file
 * PbSplitList: the model of a view of two panes, albums on one side and the files of the chosen
 * album on the other, and the moving of records into and out of a selection that reaches across
 * albums.
 *
 * Columns: 0 the PbItem of the row, 1 the title of a header row (NULL: the lists here have none),
 * 2 the number of the row (gint), 3 the GdkPixbuf of the row, at most 64 x 64 pixels: its
 * thumbnail, or the placeholder while that is not loaded.
 *
 * A list of files keeps the records of the media-browser service behind its rows. A query fetches
 * and makes the first page of 100 rows, and an idle source the pages after it, in order. Thumbnails
 * are loaded by another idle source, one row a call, for the rows in view and a few lines in the
 * direction of the scroll; those far from the view are dropped again.
 *
 * A selection goes like this:
 *
 *     GList *unselected = pb_split_list_get_records(list);
 *     pb_split_list_select_item(list, &unselected, &selected, index);
 *     pb_split_list_refresh_new_item_when_remove(list, index);
 *     ...
 *     pb_split_clear_record_list(list);
 *     g_object_unref(list);
 *
 * and all three lists of records are then the application's. Without
 * pb_split_clear_record_list() the list frees the unselected records when it is finalised.
 *
 * Every function runs on the main loop, with the GDK lock. An argument of another type gives a
 * GLib critical warning and the failure result.
 */
#ifndef PB_SPLIT_LIST_H
#define PB_SPLIT_LIST_H

#include <gtk/gtk.h>
#include <pb-export.h>
#include <pb-item.h>

G_BEGIN_DECLS

/** The type of PbSplitList, a GtkListStore. */
#define PB_TYPE_SPLIT_LIST (pb_split_list_get_type())

/** @cond */
#define PB_SPLIT_LIST(object) \
  (G_TYPE_CHECK_INSTANCE_CAST((object), PB_TYPE_SPLIT_LIST, PbSplitList))
#define PB_SPLIT_LIST_CLASS(klass) \
  (G_TYPE_CHECK_CLASS_CAST((klass), PB_TYPE_SPLIT_LIST, PbSplitListClass))
#define PB_IS_SPLIT_LIST(object) (G_TYPE_CHECK_INSTANCE_TYPE((object), PB_TYPE_SPLIT_LIST))
#define PB_IS_SPLIT_LIST_CLASS(klass) (G_TYPE_CHECK_CLASS_TYPE((klass), PB_TYPE_SPLIT_LIST))
#define PB_SPLIT_LIST_GET_CLASS(object) \
  (G_TYPE_INSTANCE_GET_CLASS((object), PB_TYPE_SPLIT_LIST, PbSplitListClass))

typedef struct _PbSplitList PbSplitList;
typedef struct _PbSplitListClass PbSplitListClass;
/** @endcond */

/** Nothing is public. */
struct _PbSplitList {
  GtkListStore parent; /**< base instance */
};

/** Nothing beyond the parent's class. */
struct _PbSplitListClass {
  GtkListStoreClass parent_class; /**< base class */
};

#define PB_SPLIT_VIEW_FILES 0  /**< view type: pb_split_get_list() lists files; any other number */
#define PB_SPLIT_VIEW_ALBUMS 1 /**< view type: pb_split_get_list() lists albums */

#define PB_SPLIT_FILTER_NONE 0     /**< filter type: files of every kind; any other number */
#define PB_SPLIT_FILTER_PICTURES 1 /**< filter type: no videos */
#define PB_SPLIT_FILTER_VIDEOS 2   /**< filter type: no pictures */

#define PB_SPLIT_ID_DATABASE                                                                \
  0                       /**< id type: the database index names a record; any other number \
                           */
#define PB_SPLIT_ID_WEB 1 /**< id type: the low word of the web id names a record */

/** Number of lists that are alive. */
PB_EXPORT extern gint pb_split_list_count;

/** @return the type "PbSplitList" */
PB_EXPORT GType pb_split_list_get_type(void);

/** @return (transfer full) an empty list without records */
PB_EXPORT PbSplitList *pb_split_list_new(void);

/** @name What all split lists of the process share
 * The values stay until they are set again, whichever lists come and go.
 * @{
 */

/** @param view_type PB_SPLIT_VIEW_FILES or PB_SPLIT_VIEW_ALBUMS; kept whatever it is */
PB_EXPORT void pb_split_set_view_type(gint view_type);

/** @return the view type; 0 at first */
PB_EXPORT gint pb_split_get_view_type(void);

/** @param filter_type one of PB_SPLIT_FILTER_*; kept whatever it is */
PB_EXPORT void pb_split_set_filter_type(gint filter_type);

/** @return the filter type; 0 at first */
PB_EXPORT gint pb_split_get_filter_type(void);

/**
 * Keeps a list of records for the application.
 *
 * @param list (transfer none) (nullable) the records; neither copied nor ever freed here
 */
PB_EXPORT void pb_split_set_unselected_record_list(GList *list);

/** @return (transfer none) (nullable) what was set; NULL at first */
PB_EXPORT GList *pb_split_get_unselected_record_list(void);

/**
 * Says by which of its ids a record is found.
 *
 * @param id_type PB_SPLIT_ID_DATABASE or PB_SPLIT_ID_WEB; kept whatever it is
 * @return the value that was set
 */
PB_EXPORT gint pb_split_set_id_type(gint id_type);

/** @return the id type; 0 at first */
PB_EXPORT gint pb_split_get_id_type(void);

/**
 * Says which widgets drive the lists that are made from now on. What is not of its type leaves
 * the earlier widget in its place. None is referenced; each is forgotten when it is destroyed.
 *
 * @param iconview (transfer none) (nullable) a GtkIconView; its icons are taken for as wide as
 *        high unless it has an item width or a number of columns
 * @param adjustment (transfer none) (nullable) its vertical adjustment
 * @param paned (transfer none) (nullable) the GtkPaned whose divider separates the panes
 */
PB_EXPORT void pb_split_list_set_adjustment_widget(GtkWidget *iconview, GtkAdjustment *adjustment,
                                                   GtkWidget *paned);

/**
 * Gives the widgets that were set.
 *
 * @param iconview (out) (transfer none) receives the icon view or NULL
 * @param adjustment (out) (transfer none) receives the adjustment or NULL
 * @param paned (out) (nullable) (transfer none) receives the paned widget or NULL
 */
PB_EXPORT void pb_split_list_get_adjustment_widget(GtkWidget **iconview, GtkAdjustment **adjustment,
                                                   GtkWidget **paned);
/** @} */

/**
 * Counts the records of a list, those whose rows are not made yet included.
 *
 * @param list (transfer none) the list
 * @return the number; 0 with a warning for NULL
 */
PB_EXPORT gint pb_split_list_get_length(PbSplitList *list);

/**
 * Gives the records behind the rows. Those that were not fetched yet are fetched by this call.
 *
 * @param list (transfer none) the list
 * @return (transfer none) (nullable) the MbItem records; NULL for a list of albums. They belong to
 *         the list until pb_split_clear_record_list() hands them over.
 */
PB_EXPORT GList *pb_split_list_get_records(PbSplitList *list);

/**
 * Lets go of the records: whoever has taken them frees them with fm_svc_mb_glist_free(). To be
 * called before the last reference is dropped of a list that took part in a selection, because
 * the list otherwise frees the unselected records.
 *
 * @param item_list (transfer none) the list; it has no records any more, and no more rows are made
 */
PB_EXPORT void pb_split_clear_record_list(PbSplitList *item_list);

/**
 * Fetches all records of the current sort and filter anew, for a list that has as many.
 *
 * @param list (transfer none) the list
 * @return TRUE when the list has the fetched records in place of its own, which were freed; FALSE
 *         when the list is empty or the service has another number of records, and nothing changed
 */
PB_EXPORT gboolean pb_split_get_full_record_list(PbSplitList *list);

/**
 * Lists all files of the current sort and filter or, with the view type PB_SPLIT_VIEW_ALBUMS, the
 * albums.
 *
 * @param previous (transfer none) (nullable) a list that this one replaces; it fetches and loads
 *        nothing more and does not follow its widgets any longer
 * @return (transfer full) (nullable) the list; empty when there is nothing or the service failed;
 *         NULL when @p previous is something else
 */
PB_EXPORT PbSplitList *pb_split_get_list(PbSplitList *previous);

/**
 * Lists the files of the current sort and filter that are of the kind of the filter type.
 *
 * @param previous (transfer none) (nullable) as for pb_split_get_list()
 * @return (transfer full) (nullable) as for pb_split_get_list()
 */
PB_EXPORT PbSplitList *pb_split_get_filter_list(PbSplitList *previous);

/**
 * Lists what can be shared: what has a copy on the web-album server.
 *
 * @param cate_type 0 albums, 3 the files of one album, any other number files of the whole library
 *        that are of the kind of the filter type
 * @param album_id the album of cate_type 3; ignored otherwise
 * @param sorted 0 for the fixed filter of cate_type, else the filter of the settings; read for
 *        the whole library only
 * @return (transfer full) (nullable) the list; NULL when memory ran out
 */
PB_EXPORT PbSplitList *pb_split_get_share_list(gint cate_type, gint album_id, gint sorted);

/**
 * Lists the files of an album that are of the kind of the filter type, those that only the
 * web-album server has included, in the album sort and filter.
 *
 * @param album_id media-browser id of the album
 * @return (transfer full) the list; empty when the album is or the service failed
 */
PB_EXPORT PbSplitList *pb_split_get_album_contents_list(gint album_id);

/**
 * Lists the files that only the web-album server has. Their database index is 0: set the id type
 * PB_SPLIT_ID_WEB before records of this list are unselected.
 *
 * @return (transfer full) the list; empty when there is none or the service failed
 */
PB_EXPORT PbSplitList *pb_split_get_server_only_share_list(void);

/**
 * Handler of "notify::value" of the adjustment: loads the thumbnails around the first visible row,
 * in place of a refresh that is under way. To be called, too, when thumbnails have arrived.
 *
 * @param object (transfer none) (nullable) not read
 * @param pspec (transfer none) (nullable) not read
 * @param list (transfer none) the list
 */
PB_EXPORT void pb_split_list_vadjustment_cb(GObject *object, GParamSpec *pspec, PbSplitList *list);

/**
 * Handler of "notify::position" of the paned widget: reads the view's geometry anew and loads the
 * thumbnails around the first visible row.
 *
 * @param object (transfer none) (nullable) not read
 * @param pspec (transfer none) (nullable) not read
 * @param list (transfer none) the list
 */
PB_EXPORT void pb_split_list_hpaned_cb(GObject *object, GParamSpec *pspec, PbSplitList *list);

/**
 * Brings the rows in line after one record was taken out of the unselected records or put back:
 * removes the row or makes one, and loads the thumbnails that come into view. Does nothing to rows
 * that the application has brought in line itself. The numbers in column 2 of the rows after it
 * follow, the last of them from an idle source.
 *
 * @param list (transfer none) the list
 * @param index where the record was, or is
 */
PB_EXPORT void pb_split_list_refresh_new_item_when_remove(PbSplitList *list, gint index);

/**
 * Follows the widgets that are set, makes the first rows of a list that has none, and starts
 * loading the thumbnails in view. The queries call it; call it again when the widgets were set
 * after the query.
 *
 * @param list (transfer none) the list
 */
PB_EXPORT void pb_split_list_icon_refresh_when_start(PbSplitList *list);

/**
 * Gives the item of a row; rows up to it that are not made yet are made by this call.
 *
 * @param list (transfer none) the list
 * @param index number of the row
 * @return (transfer none) (nullable) the item, owned by the row; NULL when there is no such row
 */
PB_EXPORT PbItem *pb_split_list_get_nth_item(PbSplitList *list, gint index);

/**
 * Moves one record from the unselected ones to the end of the selected ones. The list's records
 * and length follow the unselected ones, and it fetches no further ones; its rows are left alone.
 *
 * @param list (transfer none) the list
 * @param unselected_record_list (inout) MbItem records in ascending order of their ordering index
 * @param selected_record_list (inout) MbItem records in the order of selection
 * @param index position in the unselected list; one that it does not have changes nothing
 */
PB_EXPORT void pb_split_list_select_item(PbSplitList *list, GList **unselected_record_list,
                                         GList **selected_record_list, guint index);

/**
 * Puts one selected record back in order: among the unselected ones, and the list's records and
 * length follow; or, when the filter type hides its kind, among the filtered ones.
 *
 * A record NULL that is met in the receiving list ends the call, and the record is then in no list.
 * Nothing is ever freed.
 *
 * @param list (transfer none) the list
 * @param unselected_record_list (inout) records in ascending order of their ordering index
 * @param selected_record_list (inout) records in the order of selection
 * @param filtered_record_list (inout) records in ascending order of their ordering index
 * @param key id of the record, of the kind that the id type says
 * @return its position among the unselected records; -2 when it is among the filtered ones; -1
 *         when there is no such selected record
 */
PB_EXPORT gint pb_split_list_unselect_item(PbSplitList *list, GList **unselected_record_list,
                                           GList **selected_record_list,
                                           GList **filtered_record_list, gint key);

G_END_DECLS

#endif

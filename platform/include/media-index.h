/** @file
 * The index behind the media-browser service: which folders it covers, and how far it is.
 *
 * Main loop only.
 */
#ifndef MEDIA_INDEX_H
#define MEDIA_INDEX_H

#include <phone-api.h>

PHONE_BEGIN_DECLS

/** How far a scan is. */
typedef struct _MediaIndexProgress {
  gboolean running;    /**< a scan is under way */
  guint64 files_seen;  /**< directory entries looked at since the scan began */
  guint64 media_files; /**< pictures and videos in the index */
  guint problems;      /**< folders and files since the scan began that could not be read, or do
                            not fit a record */
  gchar problem[1024]; /**< the latest of them, a sentence for the user in UTF-8; "" for none */
} MediaIndexProgress;

/** What has changed; a set of bits. */
enum {
  MEDIA_INDEX_ROWS_CHANGED = 1, /**< files or albums came, went or moved in an order */
  MEDIA_INDEX_PROGRESS = 2,     /**< media_index_get_progress() has news */
  MEDIA_INDEX_SCAN_FINISHED = 4 /**< a scan has ended */
};

/** Told what has changed. Main loop, under the GDK lock; changes that come close together are
 * told at once. */
typedef void (*media_index_cb)(guint changes, gpointer user_data);

/**
 * Opens the index, starts its thread and a first scan. An index that was started before is stopped
 * first.
 *
 * @param roots (transfer none) full paths of the folders to cover
 * @param n_roots number of folders
 * @param problem (nullable) (transfer full) set to a sentence for the user on failure, else NULL;
 *        free with g_free()
 * @return TRUE on success
 */
gboolean media_index_start(const gchar *const *roots, gint n_roots, gchar **problem);

/** Ends the thread and closes the index. Safe to call twice. */
void media_index_stop(void);

/** Looks for changes in all folders again. Does nothing while the index is stopped. */
void media_index_rescan(void);

/**
 * Tells how far the index is.
 *
 * @param progress filled; cleared while the index is stopped
 */
void media_index_get_progress(MediaIndexProgress *progress);

/**
 * Adds a listener.
 *
 * @param callback told what has changed
 * @param user_data (transfer none) handed to the callback; the caller keeps it alive
 * @return an id for media_index_remove_listener(), never 0
 */
guint media_index_add_listener(media_index_cb callback, gpointer user_data);

/**
 * Removes a listener. Its callback is not called any more.
 *
 * @param id from media_index_add_listener(); 0 or an unknown id is ignored
 */
void media_index_remove_listener(guint id);

/**
 * Finds a file in an order.
 *
 * @param sort order, as for fm_svc_mb_get_list()
 * @param filter filter, as for fm_svc_mb_get_list()
 * @param id database index of the file
 * @return number of its row, from 0; -1 when it is not listed
 */
gint media_index_get_position(gint sort, gint64 filter, gint id);

/**
 * Finds a file by its path.
 *
 * @param path (transfer none) full path
 * @return its database index; 0 when it is not in the index
 */
gint media_index_get_id_by_path(const gchar *path);

/**
 * Writes what people have said about their pictures as one JSON file: favourites, marks and web
 * ids, by the paths and identities of the files. Works while the index is stopped too.
 *
 * @param path (transfer none) full path of the file; one that is there is replaced as a whole
 * @param problem (nullable) (transfer full) set to a sentence for the user on failure, else NULL;
 *        free with g_free()
 * @return TRUE on success; on failure a file that was there is as before
 */
gboolean media_index_export_user_data(const gchar *path, gchar **problem);

/**
 * Adds what a file of media_index_export_user_data() says to what is known. Favourites and marks
 * are added, never taken away; a web id that is known stays. Works while the index is stopped
 * too; while it runs, the listeners hear when the lists show it.
 *
 * @param path (transfer none) full path of the file
 * @param problem (nullable) (transfer full) set to a sentence for the user on failure, else NULL;
 *        free with g_free()
 * @return TRUE on success; on failure nothing has changed
 */
gboolean media_index_import_user_data(const gchar *path, gchar **problem);

PHONE_END_DECLS

#endif

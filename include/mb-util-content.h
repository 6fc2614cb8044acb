/** @file
 * Files that were, or are to be, downloaded from the web albums.
 */
#ifndef MB_UTIL_CONTENT_H
#define MB_UTIL_CONTENT_H

#include <glib.h>
#include <pb-export.h>

G_BEGIN_DECLS

/**
 * Tells whether a downloaded file is there. May be called on any thread.
 *
 * @param path (transfer none) (nullable) the file; links are followed
 * @return 1 when the path names a regular file; 0 when there is none, and for a directory or
 *         anything else
 */
PB_EXPORT gint mb_util_content_is_exist(const gchar *path);

/** One file of a batch of downloads. */
typedef struct _MbDownloadEntry {
  gint64 id;            /**< id on the web of the album or of the content */
  gchar path[264];      /**< where the file ends up */
  gchar temp_path[264]; /**< where it is downloaded to */
  gchar url[256];       /**< where it comes from */
  gint request_id;      /**< of the download that is under way; 0 when there is none */
  gint state;           /**< 0 to be requested, 1 requested, 2 finished */
  gint retries;         /**< how often it was requested again */
  gboolean given_up;    /**< TRUE after the last retry failed */
} MbDownloadEntry;

/** Kind of an MbDownloadData that belongs to a quick post. */
#define MB_DOWNLOAD_KIND_QUICK_POST 3

/** A batch of downloads, or what a quick post waits with. */
typedef struct _MbDownloadData {
  gpointer work1;           /**< owned; freed with the record */
  gpointer work2;           /**< owned; freed with the record */
  MbDownloadEntry *entries; /**< owned array of n_entries; freed with the record */
  gint n_entries;           /**< number of entries */
  gint first_index;         /**< first row that the batch covers; -1 at first */
  gint last_index;          /**< last row that the batch covers; -1 at first */
  gint abort;               /**< not 0: no further requests are to be sent */
  gint finished;            /**< number of downloads that have ended */
  gint issued;              /**< number of requests under way */
  gint remaining;           /**< number of downloads that have not ended */
  guint timer_tag;          /**< source of the batch, removed with the record; 0 for none */
  gint kind;                /**< MB_DOWNLOAD_KIND_QUICK_POST, or 0 */
  GList *content_ids;       /**< owned gint64 elements, each from g_malloc(): a quick post's */
} MbDownloadData;

/**
 * Makes an empty batch.
 *
 * @return (transfer full) (nullable) the batch, freed with mb_util_content_download_free(); NULL
 *         (logged) without memory
 */
PB_EXPORT MbDownloadData *mb_util_content_download_new(void);

/**
 * Frees a batch: ends the current dialog, removes the batch's source and gives up the downloads
 * that are under way. Main loop only.
 *
 * @param data (transfer full) (nullable) the batch
 */
PB_EXPORT void mb_util_content_download_free(MbDownloadData *data);

/**
 * Finds the extension for a MIME type. Any thread.
 *
 * @param mime (transfer none) (nullable) a type, or a text that contains one
 * @return (transfer none) the extension without a dot; "jpg" for an unknown type
 */
PB_EXPORT const gchar *mb_util_content_get_ext_by_mime(const gchar *mime);

/**
 * Makes a destination of downloads ready: there has to be memory for it, the directory is made
 * when it is missing, and one file goes when it holds too many. Main loop only; a full memory is
 * shown in a dialog that runs a nested main loop.
 *
 * @param path (transfer none) the directory
 * @param limit_type 0: 30 files and 10 folders of thumbnails; 1, 2, 3: 100 files
 * @return 1 when downloads may go there, else 0
 */
PB_EXPORT gint mb_util_check_dwndest_directory(const gchar *path, gint limit_type);

/**
 * Counts the entries of a directory and picks the newest of them. Names that begin with a dot do
 * not count.
 *
 * @param directory (transfer none) the directory
 * @param buffer (out caller-allocates) at least 256 bytes; path of the pick, "" without one
 * @param files not 0 counts everything but directories, 0 everything but regular files
 * @return the count; 0 also when the directory cannot be read
 */
PB_EXPORT gint mb_util_get_oldest_content(const gchar *directory, gchar *buffer, gint files);

G_END_DECLS

#endif

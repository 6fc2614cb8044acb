/** @file
 * The media-browser service: the phone's albums, pictures and videos.
 *
 * Every function that returns a gboolean gives TRUE for success. On failure it gives FALSE,
 * stores the service's error code in error when that is not NULL, and leaves a count at 0, a list
 * at NULL or empty and a caller's record cleared. Web ids (naid, nfid) are those of the web album
 * service. Any thread may call; answers are consistent within one call only.
 */
#ifndef MEDIA_BROWSER_H
#define MEDIA_BROWSER_H

#include <media-records.h>
#include <phone-api.h>

PHONE_BEGIN_DECLS

#define FM_ALBUMS_WITHOUT_WEB 0x10000u /**< flag: no web albums in the list */

/**
 * Counts the albums.
 *
 * @param count set to the number
 * @param web -1 counts web albums too, 0 local albums only
 * @param error (nullable) set to a code on failure
 * @return TRUE on success
 */
gboolean fm_svc_mb_get_albums_count(gint *count, gint web, gint *error);

/**
 * Lists the albums.
 *
 * @param sort 0 name, 1 name descending, 2 newest content first, 3 oldest first, 4 number of files
 * @param flags 0 or FM_ALBUMS_WITHOUT_WEB
 * @param albums (transfer full) set to a list of FmAlbumRecord, each from malloc(): free it with
 *        fm_svc_mb_glist_free(), or the elements with free(); NULL when there is no album
 * @param error (nullable) set to a code on failure
 * @return TRUE on success
 */
gboolean fm_svc_mb_get_all_albums_ex(gint sort, guint32 flags, GList **albums, gint *error);

/**
 * Lists the files of an album.
 *
 * @param album_id local album id
 * @param sort 0 name, 1 name descending, 2 oldest first, 3 newest first, 4 added last first, 5 size
 * @param filter FM_FILTER_* bits; 0 for every file
 * @param list (transfer full) filled; free with fm_svc_sync_list_free()
 * @param error (nullable) set to a code on failure
 * @return TRUE on success, an empty album included
 */
gboolean fm_svc_mb_album_get_all_files_ex(gint album_id, gint sort, gint filter, FmFileList *list,
                                          gint *error);

/**
 * Lists all files of an album in the order of their names.
 *
 * @param album_id local album id
 * @param list (transfer full) filled; free with fm_svc_sync_list_free(). Clear it before: a
 *        failure may leave it as it was.
 * @param error (nullable) set to a code on failure
 * @return TRUE on success
 */
gboolean fm_svc_mb_album_get_all_files(gint album_id, FmFileList *list, gint *error);

/**
 * Counts the files of an album.
 *
 * @param album_id local album id
 * @param count set to the number
 * @param error (nullable) set to a code on failure
 * @return TRUE on success
 */
gboolean fm_svc_mb_album_get_files_count(gint album_id, gint *count, gint *error);

/**
 * Reads the file that came last into an album.
 *
 * @param album_id local album id
 * @param record filled; its name is the file's full path
 * @param error (nullable) set to a code on failure
 * @return TRUE on success; FALSE also for an album without files
 */
gboolean fm_svc_mb_album_get_last_added_file(gint album_id, FmVeskFileRecord *record, gint *error);

/**
 * Stores the cover of a web album. Called on the download thread.
 *
 * @param naid web id of the album
 * @param path (transfer none) full path of the cover, less than 300 bytes
 * @param error (nullable) set to a code on failure
 * @return TRUE on success; a failure keeps the old cover
 */
gboolean fm_svc_mb_album_set_thumb_path_by_naid(gint64 naid, const gchar *path, gint *error);

/**
 * Reads an album.
 *
 * @param album_id local album id
 * @param record filled
 * @param error (nullable) set to a code on failure
 * @return TRUE on success
 */
gboolean fm_svc_mb_get_album(gint album_id, FmAlbumRecord *record, gint *error);

/**
 * Finds the local id of a web album.
 *
 * @param naid web id of the album
 * @param album_id set to the local id; 0 on failure
 * @param error (nullable) set to a code on failure
 * @return TRUE on success; FALSE also for an id that is not mirrored
 */
gboolean fm_svc_mb_get_album_id_by_naid(gint64 naid, gint *album_id, gint *error);

/**
 * Reads the album of quick posts.
 *
 * @param record filled
 * @param error (nullable) set to a code on failure
 * @return TRUE on success; FALSE also when there is no such album
 */
gboolean fm_svc_mb_get_drovo_album(FmAlbumRecord *record, gint *error);

/**
 * Counts the files below a path.
 *
 * @param path (transfer none) "/" for all storages
 * @param depth 2 for the whole tree
 * @param filter FM_FILTER_* bits; 0 for every file
 * @param count set to the number
 * @param error (nullable) set to a code on failure
 * @return TRUE on success
 */
gboolean fm_svc_mb_get_all_sub_file_count(const gchar *path, gint depth, gint64 filter, gint *count,
                                          gint *error);

/**
 * Lists some of the files below a path in a given order. Any page costs the same, wherever it
 * lies.
 *
 * @param path (transfer none) "/" for all storages
 * @param depth 2 for the whole tree
 * @param sort order of the files, as for fm_svc_mb_album_get_all_files_ex()
 * @param filter FM_FILTER_* bits; 0 for every file
 * @param reserved 0
 * @param list (transfer full) set to a list of MbItem, each from malloc(): free it with
 *        fm_svc_mb_glist_free(); NULL when there is no such row
 * @param first first wanted row, from 0
 * @param last last wanted row, included; a number behind the last row means the last row
 * @param error (nullable) set to a code on failure
 * @return TRUE on success
 */
gboolean fm_svc_mb_get_list(const gchar *path, gint depth, gint sort, gint64 filter, gint reserved,
                            GList **list, gint first, gint last, gint *error);

/**
 * Reads a file. A file that has gone, or was never there, succeeds with a cleared record, so that
 * a list which still holds it can go on.
 *
 * @param id database index
 * @param record filled; every byte is written
 * @param error (nullable) set to a code on failure
 * @return TRUE on success
 */
gboolean fm_svc_mb_get_record_by_index(gint id, FmMediaRecord *record, gint *error);

/**
 * Reads a file with its place.
 *
 * @param id database index
 * @param record filled; every byte is written
 * @param error (nullable) set to a code on failure
 * @return TRUE on success
 */
gboolean fm_svc_mb_get_item_by_database_index(gint id, FmFileRecord *record, gint *error);

/**
 * Frees a list of the service and sets the caller's pointer to NULL.
 *
 * @param list (transfer full) address of the list; the list may be NULL
 * @param free_data TRUE: the elements are freed with free() as well
 */
void fm_svc_mb_glist_free(GList **list, gboolean free_data);

/**
 * Frees the arrays of a file list with free() and clears the list.
 *
 * @param list (transfer none) the list; its arrays may be NULL
 */
void fm_svc_sync_list_free(FmFileList *list);

PHONE_END_DECLS

#endif

/** @file
 * The mirror of the web albums in the media-browser service: what the server holds, readable
 * without the network.
 *
 * Where nothing else is said a function gives TRUE for success, and on failure FALSE with a code
 * in error when that is not NULL, and leaves its results empty. Any thread may call.
 */
#ifndef MEDIA_MIRROR_H
#define MEDIA_MIRROR_H

#include <media-records.h>
#include <online-records.h>
#include <phone-api.h>

PHONE_BEGIN_DECLS

/**
 * Adds a callback for the mirror's notifications.
 *
 * @param callback called on the service's thread
 * @param error set to a code on failure; -1 before the call
 * @return non-zero on success
 */
gint fm_svc_vesk_registration(vesk_noti_cb callback, gint *error);

/**
 * Removes a callback. It is not called any more once this returns, unless it is itself the
 * caller.
 *
 * @param callback what fm_svc_vesk_registration() got
 * @param error set to a code on failure; -1 before the call
 * @return non-zero on success; 0 also for a callback that is not registered
 */
gint fm_svc_vesk_unregistration_callback(vesk_noti_cb callback, gint *error);

/**
 * Reads a file of the server.
 *
 * @param nfid web id of the file
 * @param record filled; the caller clears it first
 * @param error (nullable) set to a code on failure
 * @return TRUE on success
 */
gboolean fm_svc_vesk_get_vesk_file(gint64 nfid, FmVeskFileRecord *record, gint *error);

/**
 * Lists the files that are on the server only, less those whose deletion is under way.
 *
 * @param album web id of an album; -1 for all
 * @param list (transfer full) filled; free with fm_svc_sync_list_free()
 * @param error (nullable) set to a code on failure
 * @return TRUE on success, an empty list included
 */
gboolean fm_svc_vesk_get_server_only_vesk_files_without_delete(gint64 album, FmFileList *list,
                                                               gint *error);

/**
 * Reads a folder of the mirror.
 *
 * @param folder_id local id
 * @param folder filled
 * @param error (nullable) set to a code on failure
 * @return TRUE on success
 */
gboolean fm_svc_vesk_get_folder(gint folder_id, FmAlbumRecord *folder, gint *error);

/**
 * Stores a folder of the mirror. Called on the service's thread.
 *
 * @param folder (transfer none) what it shall be; its web id says which
 * @param error (nullable) set to a code on failure
 * @return TRUE on success; a failure keeps the old one
 */
gboolean fm_svc_vesk_update_folder(const FmAlbumRecord *folder, gint *error);

/**
 * Stores the web id of a local file.
 *
 * @param fid database index
 * @param nfid web id; -2 while its upload is under way
 * @param error (nullable) set to a code on failure
 * @return TRUE on success
 */
gboolean fm_svc_vesk_update_nfid_of_file(gint fid, gint64 nfid, gint *error);

/**
 * Takes files that were deleted on the server out of a web album.
 *
 * @param naid web id of the album
 * @param ids (transfer none) web ids of the files
 * @param count number of ids
 * @param error (nullable) set to a code on failure
 * @return TRUE on success; a failure removes none
 */
gboolean fm_svc_vesk_sync_album_remove_vesk_files(gint64 naid, const gint64 *ids, gint count,
                                                  gint *error);

PHONE_END_DECLS

#endif

/** @file
 * The web album service's client: albums and files.
 *
 * Each function queues one request and returns exactly 1, or an error code when it was not
 * queued; the reply goes to the registered vesk_noti_cb. Records and arrays are copied before the
 * function returns. User data comes back in the reply and belongs to it from the moment the
 * request is queued; a request that was not queued leaves it to the caller. Any thread may call;
 * none waits for the network.
 */
#ifndef ONLINE_CONTENT_H
#define ONLINE_CONTENT_H

#include <online-records.h>
#include <phone-api.h>

PHONE_BEGIN_DECLS

#define VESK_UPLOAD_PLAIN 0     /**< upload mode whose reply has no user data */
#define VESK_UPLOAD_QUICKPOST 1 /**< upload mode: the follow-up is a quick post */
#define VESK_UPLOAD_GROUP 2     /**< upload mode: the follow-up publishes to a group */
#define VESK_UPLOAD_ARCHIVE 3   /**< upload mode: the local file goes afterwards */

/**
 * Asks for albums. Reply: VESK_CONTENT_REQ_ALBUM_GET.
 *
 * @param handle handle of the registration
 * @param reserved1 0
 * @param reserved2 0
 * @param filter_count number of filters
 * @param filters (transfer none) which albums
 * @param user_data (transfer full) (nullable) comes back in the reply
 * @return 1 when it was queued
 */
gint vesk_svc_content_album_get(guint32 handle, gint reserved1, gint reserved2, gint filter_count,
                                const VeskFilter *filters, gpointer user_data);

/**
 * Asks for contents. Reply: VESK_CONTENT_REQ_FILE_GET.
 *
 * @param handle handle of the registration
 * @param count 2 when the request's filter counts, else 1
 * @param request (transfer none) which contents
 * @param user_data (transfer full) (nullable) comes back in the reply
 * @return 1 when it was queued
 */
gint vesk_svc_content_file_get(guint32 handle, gint count, const VeskContentRequest *request,
                               gpointer user_data);

/**
 * Renames albums. Reply: VESK_CONTENT_REQ_ALBUM_UPDATE.
 *
 * @param handle handle of the registration
 * @param count number of albums
 * @param albums (transfer none) their ids and new names
 * @param user_data (transfer full) (nullable) comes back in the reply
 * @return 1 when it was queued
 */
gint vesk_svc_content_album_update(guint32 handle, gint count, const VeskAlbum *albums,
                                   gpointer user_data);

/**
 * Makes albums.
 *
 * @param handle handle of the registration
 * @param count number of albums
 * @param albums (transfer none) their names
 * @param user_data (transfer full) (nullable) comes back in the reply
 * @return 1 when it was queued
 */
gint vesk_svc_content_album_add(guint32 handle, gint count, const VeskAlbum *albums,
                                gpointer user_data);

/**
 * Deletes albums. Reply: VESK_CONTENT_REQ_ALBUM_REMOVE.
 *
 * @param handle handle of the registration
 * @param count number of ids
 * @param album_ids (transfer none) web ids
 * @param user_data (transfer full) (nullable) comes back in the reply
 * @return 1 when it was queued
 */
gint vesk_svc_content_album_remove(guint32 handle, gint count, const gint64 *album_ids,
                                   gpointer user_data);

/**
 * Takes contents out of an album. Reply: VESK_CONTENT_REQ_ALBUM_DELETECONTENT.
 *
 * @param handle handle of the registration
 * @param count number of ids
 * @param ids (transfer none) web ids of the contents
 * @param album_id web id of the album
 * @param user_data (transfer full) (nullable) comes back in the reply
 * @return 1 when it was queued
 */
gint vesk_svc_content_album_deletecontent(guint32 handle, gint count, const gint64 *ids,
                                          gint64 album_id, gpointer user_data);

/**
 * Puts contents into an album. Reply: VESK_CONTENT_REQ_ALBUM_ADDCONTENT.
 *
 * @param handle handle of the registration
 * @param count number of ids
 * @param ids (transfer none) web ids of the contents
 * @param album_id web id of the album
 * @param user_data (transfer full) (nullable) comes back in the reply
 * @return 1 when it was queued
 */
gint vesk_svc_content_album_addcontent(guint32 handle, gint count, const gint64 *ids,
                                       gint64 album_id, gpointer user_data);

/**
 * Uploads local files. Reply: VESK_CONTENT_REQ_FILE_UPLOAD with one web id for each file, 0 or
 * less for a file that failed; without user data for VESK_UPLOAD_PLAIN, else with the mode as a
 * gint32.
 *
 * @param handle handle of the registration
 * @param count number of files
 * @param fids (transfer none) their database indices
 * @param mode VESK_UPLOAD_*
 * @return 1 when it was queued
 */
gint vesk_svc_content_file_upload(guint32 handle, gint count, const gint64 *fids, gint mode);

/**
 * Publishes albums to a social-network group. Reply: VESK_CONTENT_REQ_FILE_PUBLISH.
 *
 * @param handle handle of the registration
 * @param count number of ids
 * @param ids (transfer none) web ids of the albums
 * @param group (transfer none) name of the group
 * @param user_data (transfer full) (nullable) comes back in the reply
 * @return 1 when it was queued
 */
gint vesk_svc_content_album_publish(guint32 handle, gint count, const gint64 *ids,
                                    const gchar *group, gpointer user_data);

/**
 * Publishes contents to a social-network group. Reply: VESK_CONTENT_REQ_FILE_PUBLISH.
 *
 * @param handle handle of the registration
 * @param count number of ids
 * @param ids (transfer none) web ids of the contents
 * @param group (transfer none) name of the group
 * @param user_data (transfer full) (nullable) comes back in the reply
 * @return 1 when it was queued
 */
gint vesk_svc_content_file_publish(guint32 handle, gint count, const gint64 *ids,
                                   const gchar *group, gpointer user_data);

PHONE_END_DECLS

#endif

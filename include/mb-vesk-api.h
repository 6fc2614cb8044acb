/** @file
 * The library's client side of the web-album and sharing service: registration and requests.
 *
 * A request is only sent here; its reply comes to mb_vesk_media_svc_notification_cb(). Requests
 * that take time arm a guard that reports a missing reply after 40 seconds, or 5 minutes for
 * uploads; there is one guard, the latest request's. A handle of 0 stands for veskMediaHandle
 * where nothing else is said. Every request asks the service first whether a user is signed in
 * and stores the answer for mb_util_is_vesk_login_present().
 *
 * Lists of web ids hold pointers to gint64, lists of files hold GINT_TO_POINTER() database
 * indices. Lists, arrays and texts are copied before a function returns.
 *
 * Main loop only, except for the callback.
 */
#ifndef MB_VESK_API_H
#define MB_VESK_API_H

#include <glib.h>
#include <online-records.h>
#include <pb-export.h>

G_BEGIN_DECLS

/** The registration with the service's media application; 0 until registered. */
PB_EXPORT extern guint32 veskMediaHandle;
/** The registration with the service's share application. Only the application writes it. */
PB_EXPORT extern guint32 veskShareHandle;

/** @return veskMediaHandle */
PB_EXPORT guint32 mb_get_vesk_service_media_handle(void);

/** @return veskShareHandle */
PB_EXPORT guint32 mb_get_vesk_service_share_handle(void);

/**
 * Asks the service whether a user is signed in, and stores the answer for
 * mb_util_is_vesk_login_present().
 *
 * @param handle a registration, or 0
 * @return 1 signed in, 0 not
 */
PB_EXPORT gint mb_vesk_check_user_credential(guint32 handle);

/**
 * Registers for the service's replies. Does nothing (logged) while no user is signed in; a
 * failure is logged and leaves the handle alone.
 *
 * @param handle (out) (nullable) receives the registration; not used without a callback, which
 *        fills veskMediaHandle
 * @param callback (nullable) gets the replies, on the service's thread;
 *        mb_vesk_media_svc_notification_cb() when NULL
 */
PB_EXPORT void mb_vesk_media_service_register(guint32 *handle, vesk_noti_cb callback);

/**
 * Ends the service's replies to a callback. Does nothing (logged) while no user is signed in.
 *
 * @param handle the registration
 * @param callback (nullable) what mb_vesk_media_service_register() got
 */
PB_EXPORT void mb_vesk_media_service_deregister_callback(guint32 handle, vesk_noti_cb callback);

/**
 * Ends a registration and frees what its requests had left for their replies. Does nothing
 * (logged) while no user is signed in. veskMediaHandle stays.
 *
 * @param handle the registration
 */
PB_EXPORT void mb_vesk_deregister_app(guint32 handle);

/** Registers mb_vesk_media_svc_notification_cb() with the mirror of the web albums. Does nothing
 *  (logged) while no user is signed in. */
PB_EXPORT void mb_fm_vesk_media_service_register(void);

/** Takes mb_vesk_media_svc_notification_cb() back from the mirror. Does nothing (logged) when
 *  the last check found no user signed in. */
PB_EXPORT void mb_fm_vesk_media_service_deregister(void);

/** Removes the guard of the latest request, if there is one. */
PB_EXPORT void mb_vesk_media_destroy_timer(void);

/**
 * Asks for web albums, and makes the directories that their downloads go to.
 *
 * @param handle a registration, or 0
 * @param user_data (transfer full) (nullable) from mb_util_content_download_new(); freed after
 *        the reply, or stays the caller's when 0 is returned
 * @param start number of albums to leave out
 * @param count number of albums
 * @return 1 when the request was sent, else 0
 */
PB_EXPORT gint mb_vesk_get_web_albums(guint32 handle, gpointer user_data, gint start, gint count);

/**
 * Asks for the contents of a web album.
 *
 * @param handle a registration, or 0
 * @param album_id web id of the album; -1 for all contents, whatever the range
 * @param start number of contents to leave out
 * @param count number of contents
 * @param user_data (transfer full) (nullable) as for mb_vesk_get_web_albums()
 * @return 1 when the request was sent, else 0
 */
PB_EXPORT gint mb_vesk_media_get_web_album_contents(guint32 handle, gint64 album_id, gint start,
                                                    gint count, gpointer user_data);

/**
 * Asks for the contents of an album that the user has shared.
 *
 * @param handle a registration; 0 sends nothing
 * @param album_id web id of the album
 * @param ranged TRUE for a part, FALSE for all contents
 * @param start number of contents to leave out
 * @param count number of contents
 * @param user_data (transfer full) (nullable) as for mb_vesk_get_web_albums(); stays the
 *        caller's also when nothing was sent
 * @return 0 when the service refused, else 1
 */
PB_EXPORT gint mb_vesk_media_get_my_shared_content(guint32 handle, gint64 album_id, gboolean ranged,
                                                   gint start, gint count, gpointer user_data);

/**
 * Asks for one content. The guard is armed in any case.
 *
 * @param handle a registration; 0 sends nothing
 * @param content_id web id of the content
 */
PB_EXPORT void mb_vesk_get_content(guint32 handle, gint64 content_id);

/**
 * Asks for the album that quick posts go to.
 *
 * @param handle a registration; 0 sends nothing
 */
PB_EXPORT void mb_vesk_get_hidden_album_id(guint32 handle);

/**
 * Renames a web album.
 *
 * @param handle a registration, or 0
 * @param album_id web id of the album
 * @param name (transfer none) (nullable) UTF-8, cut to 255 bytes; NULL sends nothing
 */
PB_EXPORT void mb_vesk_update_web_album(guint32 handle, gint64 album_id, const gchar *name);

/**
 * Deletes web albums.
 *
 * @param handle a registration, or 0
 * @param album_ids (transfer none) (nullable) web ids; an empty list sends nothing
 */
PB_EXPORT void mb_vesk_delete_web_album(guint32 handle, GList *album_ids);

/**
 * Takes contents out of a web album, behind a waiting animation.
 *
 * @param handle a registration, or 0
 * @param deletion_context GINT_TO_POINTER() of the local album whose list is built again after
 *        the deletion
 * @param album_id web id of the album
 * @param content_ids (transfer none) web ids of the contents
 * @return not NULL when the request was sent
 */
PB_EXPORT gpointer mb_vesk_delete_web_album_contents(guint32 handle, gpointer deletion_context,
                                                     gint64 album_id, GList *content_ids);

/**
 * Takes one content out of a web album.
 *
 * @param handle a registration, or 0
 * @param content_id web id of the content
 * @param album_id web id of the album
 */
PB_EXPORT void mb_vesk_delete_content_cb(guint32 handle, gint64 content_id, gint64 album_id);

/**
 * Uploads files behind a waiting popup.
 *
 * @param handle a registration, or 0
 * @param fids (transfer none) (nullable) files; an empty list sends nothing
 */
PB_EXPORT void mb_vesk_upload_multiple_contents(guint32 handle, GList *fids);

/**
 * Uploads files and marks them as being uploaded. Arms no guard.
 *
 * @param handle a registration, or 0
 * @param fids (transfer none) database indices
 * @param count number of files
 * @param mode a VESK_UPLOAD_ value
 * @param error (out) (nullable) receives what the service answered, 1 for success
 * @return 1, also when the service refused; 0 without memory
 */
PB_EXPORT gint mb_vesk_upload_fids(guint32 handle, const gint *fids, gint count, gint mode,
                                   gint *error);

/**
 * Uploads a file; its local copy goes afterwards.
 *
 * @param handle a registration, or 0
 * @param fid the file
 * @return 1 when it was sent, else 0
 */
PB_EXPORT gint mb_vesk_archieve_and_delete_local(guint32 handle, gint fid);

/**
 * Uploads a file behind a waiting popup and shares it.
 *
 * @param handle a registration, or 0
 * @param fid the file
 * @param group (transfer none) (nullable) social-network group to publish it to, cut to 255
 *        bytes; NULL puts it into the quick-post album
 * @return 1 when it was sent, else 0
 */
PB_EXPORT gint mb_vesk_one_click_share(guint32 handle, gint fid, const gchar *group);

/**
 * Uploads files behind a waiting animation.
 *
 * @param handle a registration, or 0
 * @param fids (transfer none) files
 * @return 1
 */
PB_EXPORT gint mb_vesk_file_manual_backup(guint32 handle, GList *fids);

/**
 * Asks for the mirror of the web albums to be brought up to date.
 *
 * @param handle a registration, or 0
 */
PB_EXPORT void mb_vesk_synchronize_details(guint32 handle);

/**
 * Puts contents into a web album.
 *
 * @param handle a registration, or 0
 * @param content_ids (transfer none) web ids
 * @param count number of ids
 * @param album_id web id of the album
 * @return 1 when the request was sent, else 0
 */
PB_EXPORT gint mb_vesk_media_add_content_to_web_album(guint32 handle, const gint64 *content_ids,
                                                      gint count, gint64 album_id);

/**
 * Publishes albums or contents to a social-network group behind a waiting popup.
 *
 * @param handle a registration, or 0
 * @param ids (transfer none) (nullable) web ids; an empty list sends nothing
 * @param is_album whether they are ids of albums
 * @param group (transfer none) (nullable) name of the group; NULL sends nothing
 */
PB_EXPORT void mb_vesk_media_share_content_sns_group(guint32 handle, GList *ids, gboolean is_album,
                                                     const gchar *group);

/**
 * Asks which groups see web albums, one request an album, behind a waiting popup.
 *
 * @param handle a registration, or 0
 * @param album_ids (transfer none) web ids
 */
PB_EXPORT void mb_vesk_tools_get_shared_album_gids(guint32 handle, GList *album_ids);

/**
 * Takes web albums back from every group behind a waiting popup, registering first where that
 * has not been done. When nothing could be sent a message says so a second later.
 *
 * @param handle a registration, or 0
 * @param album_ids (transfer none) web ids
 */
PB_EXPORT void mb_vesk_media_unshare_album(guint32 handle, GList *album_ids);

/**
 * Asks for an album that somebody shares.
 *
 * @param handle a registration, or 0
 * @param album_id web id of the album
 * @return 1 when the request was sent, else 0
 */
PB_EXPORT gint mb_vesk_media_get_shared_album(guint32 handle, gint64 album_id);

/**
 * Asks for the quick-post album that everybody sees.
 *
 * @param handle a registration, or 0
 * @return 1 when the request was sent, else 0
 */
PB_EXPORT gint mb_vesk_media_get_shared_quick_post(guint32 handle);

/**
 * Asks for the contents of an album that somebody shares.
 *
 * @param handle a registration, or 0
 * @param album_id web id of the album
 * @param start number of contents to leave out
 * @param count number of contents
 * @return 1 when the request was sent, else 0
 */
PB_EXPORT gint mb_vesk_media_get_shared_content(guint32 handle, gint64 album_id, gint start,
                                                gint count);

/**
 * Asks for comments on a content.
 *
 * @param handle a registration, or 0
 * @param content_id web id of the content
 * @param album_id web id of its album
 * @param start number of comments to leave out
 * @param count number of comments
 */
PB_EXPORT void mb_vesk_media_get_comments(guint32 handle, gint64 content_id, gint64 album_id,
                                          gint start, gint count);

/**
 * Writes a comment on a content.
 *
 * @param handle a registration, or 0
 * @param content_id web id of the content
 * @param text (transfer none) (nullable) UTF-8, cut to 1023 bytes; NULL sends nothing
 */
PB_EXPORT void mb_vesk_media_add_comments(guint32 handle, gint64 content_id, const gchar *text);

/**
 * Deletes comments.
 *
 * @param handle a registration, or 0
 * @param comment_ids (transfer none) (nullable) web ids; an empty list sends nothing
 * @param owner_id id of their owner
 */
PB_EXPORT void mb_vesk_media_delete_comments(guint32 handle, GList *comment_ids, gint owner_id);

/**
 * Makes a web album with the name of a folder of the mirror.
 *
 * @param handle a registration, or 0
 * @param folder_id local id of the folder
 * @return 0 when the folder cannot be read, else 1
 */
PB_EXPORT gint mb_vesk_vesk_upload_album(guint32 handle, gint folder_id);

/**
 * Puts contents into the quick-post album behind a waiting popup: asks for the album, and the
 * reply sends the contents.
 *
 * @param handle 0; any other is refused
 * @param content_ids (transfer none) web ids
 * @return 1 when the request was sent, else 0
 */
PB_EXPORT gint mb_vesk_media_quick_post(guint32 handle, GList *content_ids);

/**
 * Receives every reply of the service and of the mirror. Stores in the mirror what a reply
 * changes, and leaves dialogs, lists and settings to the main loop. Any thread.
 *
 * @param message (transfer none) (nullable) which service replies; any other is ignored
 * @param fields (transfer none) (nullable) the reply; whatever does not decode is logged and
 *        dropped
 * @param n_fields number of fields
 * @return 1
 */
PB_EXPORT gint mb_vesk_media_svc_notification_cb(const gchar *message, const VeskNotiField *fields,
                                                 gint n_fields);

G_END_DECLS

#endif

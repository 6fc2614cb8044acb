/** @file
 * The web album service's client: sharing and comments.
 *
 * Each function queues one request and returns exactly 1, or an error code when it was not
 * queued. Records, arrays and texts are copied before the function returns; user data belongs to
 * the reply from the moment the request is queued. Any thread may call; none waits for the
 * network.
 */
#ifndef ONLINE_SHARE_H
#define ONLINE_SHARE_H

#include <online-records.h>
#include <phone-api.h>

PHONE_BEGIN_DECLS

/**
 * Asks which groups see an album. Reply: VESK_SHARE_SHARED_WITH.
 *
 * @param handle handle of the registration
 * @param album_id web id of the album
 * @param user_data (transfer full) (nullable) comes back in the reply
 * @return 1 when it was queued
 */
gint vesk_svc_share_shared_with(guint32 handle, gint64 album_id, gpointer user_data);

/**
 * Takes an album back from every group. Reply: VESK_SHARE_UNSHARE_GROUP.
 *
 * @param handle handle of the registration
 * @param album_id web id of the album
 * @param user_data (transfer full) (nullable) comes back in the reply
 * @return 1 when it was queued
 */
gint vesk_svc_share_deny_group_to_access_entities(guint32 handle, gint64 album_id,
                                                  gpointer user_data);

/**
 * Asks for a shared album.
 *
 * @param handle handle of the registration
 * @param query (transfer none) which
 * @param user_data (transfer full) (nullable) comes back in the reply
 * @return 1 when it was queued
 */
gint vesk_svc_share_get_shared_album(guint32 handle, const VeskSharedAlbumQuery *query,
                                     gpointer user_data);

/**
 * Asks for the contents of a shared album.
 *
 * @param handle handle of the registration
 * @param n number of keys and of values
 * @param keys (transfer none) "albumid", "lids"
 * @param values (transfer none) the album's web id; numbers from 1 as "first-last"
 * @param user_data (transfer full) (nullable) comes back in the reply
 * @return 1 when it was queued
 */
gint vesk_svc_share_get_shared_content(guint32 handle, gint n, const gchar *const *keys,
                                       const gchar *const *values, gpointer user_data);

/**
 * Asks for comments.
 *
 * @param handle handle of the registration
 * @param n_entities number of entities
 * @param entities (transfer none) what the comments are about
 * @param n_filters number of filters
 * @param filters (transfer none) which of the comments
 * @return 1 when it was queued
 */
gint vesk_svc_comment_get_comments(guint32 handle, gint n_entities,
                                   const VeskCommentEntity *entities, gint n_filters,
                                   const VeskFilter *filters);

/**
 * Writes comments.
 *
 * @param handle handle of the registration
 * @param n number of comments
 * @param comments (transfer none) the comments
 * @return 1 when it was queued
 */
gint vesk_svc_comment_add_comments(guint32 handle, gint n, const VeskComment *comments);

/**
 * Deletes comments.
 *
 * @param handle handle of the registration
 * @param n number of ids
 * @param ids (transfer none) web ids of the comments
 * @param owner_id id of their owner
 * @return 1 when it was queued
 */
gint vesk_svc_comment_remove_comments(guint32 handle, gint n, const gint64 *ids, gint64 owner_id);

PHONE_END_DECLS

#endif

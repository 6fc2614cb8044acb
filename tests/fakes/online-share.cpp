#include <online-share.h>

#include "fakes/journal.hpp"

void fake::set_online_share_defaults(Platform &phone) {
  phone.vesk_svc_share_shared_with = [](guint32, gint64, gpointer) { return 1; };
  phone.vesk_svc_share_deny_group_to_access_entities = [](guint32, gint64, gpointer) { return 1; };
  phone.vesk_svc_share_get_shared_album = [](guint32, const VeskSharedAlbumQuery *, gpointer) {
    return 1;
  };
  phone.vesk_svc_share_get_shared_content = [](guint32, gint, const gchar *const *,
                                               const gchar *const *, gpointer) { return 1; };
  phone.vesk_svc_comment_get_comments = [](guint32, gint, const VeskCommentEntity *, gint,
                                           const VeskFilter *) { return 1; };
  phone.vesk_svc_comment_add_comments = [](guint32, gint, const VeskComment *) { return 1; };
  phone.vesk_svc_comment_remove_comments = [](guint32, gint, const gint64 *, gint64) { return 1; };
}

gint vesk_svc_share_shared_with(guint32 handle, gint64 album_id, gpointer user_data) {
  fake::record("vesk_svc_share_shared_with", handle, album_id);
  return fake::platform().vesk_svc_share_shared_with(handle, album_id, user_data);
}

gint vesk_svc_share_deny_group_to_access_entities(guint32 handle, gint64 album_id,
                                                  gpointer user_data) {
  fake::record("vesk_svc_share_deny_group_to_access_entities", handle, album_id);
  return fake::platform().vesk_svc_share_deny_group_to_access_entities(handle, album_id, user_data);
}

gint vesk_svc_share_get_shared_album(guint32 handle, const VeskSharedAlbumQuery *query,
                                     gpointer user_data) {
  fake::record("vesk_svc_share_get_shared_album", handle, *query);
  return fake::platform().vesk_svc_share_get_shared_album(handle, query, user_data);
}

gint vesk_svc_share_get_shared_content(guint32 handle, gint n, const gchar *const *keys,
                                       const gchar *const *values, gpointer user_data) {
  fake::record("vesk_svc_share_get_shared_content", handle, fake::array_of(keys, n),
               fake::array_of(values, n));
  return fake::platform().vesk_svc_share_get_shared_content(handle, n, keys, values, user_data);
}

gint vesk_svc_comment_get_comments(guint32 handle, gint n_entities,
                                   const VeskCommentEntity *entities, gint n_filters,
                                   const VeskFilter *filters) {
  fake::record("vesk_svc_comment_get_comments", handle, fake::array_of(entities, n_entities),
               fake::array_of(filters, n_filters));
  return fake::platform().vesk_svc_comment_get_comments(handle, n_entities, entities, n_filters,
                                                        filters);
}

gint vesk_svc_comment_add_comments(guint32 handle, gint n, const VeskComment *comments) {
  fake::record("vesk_svc_comment_add_comments", handle, fake::array_of(comments, n));
  return fake::platform().vesk_svc_comment_add_comments(handle, n, comments);
}

gint vesk_svc_comment_remove_comments(guint32 handle, gint n, const gint64 *ids, gint64 owner_id) {
  fake::record("vesk_svc_comment_remove_comments", handle, fake::array_of(ids, n), owner_id);
  return fake::platform().vesk_svc_comment_remove_comments(handle, n, ids, owner_id);
}

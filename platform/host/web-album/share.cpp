#include "online-share.h"

#include "web-album/answers.hpp"

using namespace phone::web_album;

gint vesk_svc_share_shared_with(guint32 /*handle*/, gint64 /*album_id*/, gpointer /*user_data*/) {
  return kNoAccount;
}

gint vesk_svc_share_deny_group_to_access_entities(guint32 /*handle*/, gint64 /*album_id*/,
                                                  gpointer /*user_data*/) {
  return kNoAccount;
}

gint vesk_svc_share_get_shared_album(guint32 /*handle*/, const VeskSharedAlbumQuery * /*query*/,
                                     gpointer /*user_data*/) {
  return kNoAccount;
}

gint vesk_svc_share_get_shared_content(guint32 /*handle*/, gint /*n*/,
                                       const gchar *const * /*keys*/,
                                       const gchar *const * /*values*/, gpointer /*user_data*/) {
  return kNoAccount;
}

gint vesk_svc_comment_get_comments(guint32 /*handle*/, gint /*n_entities*/,
                                   const VeskCommentEntity * /*entities*/, gint /*n_filters*/,
                                   const VeskFilter * /*filters*/) {
  return kNoAccount;
}

gint vesk_svc_comment_add_comments(guint32 /*handle*/, gint /*n*/,
                                   const VeskComment * /*comments*/) {
  return kNoAccount;
}

gint vesk_svc_comment_remove_comments(guint32 /*handle*/, gint /*n*/, const gint64 * /*ids*/,
                                      gint64 /*owner_id*/) {
  return kNoAccount;
}

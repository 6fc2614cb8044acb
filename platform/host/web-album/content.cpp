#include "online-content.h"

#include "web-album/answers.hpp"

using namespace phone::web_album;

gint vesk_svc_content_album_get(guint32 /*handle*/, gint /*reserved1*/, gint /*reserved2*/,
                                gint /*filter_count*/, const VeskFilter * /*filters*/,
                                gpointer /*user_data*/) {
  return kNoAccount;
}

gint vesk_svc_content_file_get(guint32 /*handle*/, gint /*count*/,
                               const VeskContentRequest * /*request*/, gpointer /*user_data*/) {
  return kNoAccount;
}

gint vesk_svc_content_album_update(guint32 /*handle*/, gint /*count*/, const VeskAlbum * /*albums*/,
                                   gpointer /*user_data*/) {
  return kNoAccount;
}

gint vesk_svc_content_album_add(guint32 /*handle*/, gint /*count*/, const VeskAlbum * /*albums*/,
                                gpointer /*user_data*/) {
  return kNoAccount;
}

gint vesk_svc_content_album_remove(guint32 /*handle*/, gint /*count*/, const gint64 * /*album_ids*/,
                                   gpointer /*user_data*/) {
  return kNoAccount;
}

gint vesk_svc_content_album_deletecontent(guint32 /*handle*/, gint /*count*/,
                                          const gint64 * /*ids*/, gint64 /*album_id*/,
                                          gpointer /*user_data*/) {
  return kNoAccount;
}

gint vesk_svc_content_album_addcontent(guint32 /*handle*/, gint /*count*/, const gint64 * /*ids*/,
                                       gint64 /*album_id*/, gpointer /*user_data*/) {
  return kNoAccount;
}

gint vesk_svc_content_file_upload(guint32 /*handle*/, gint /*count*/, const gint64 * /*fids*/,
                                  gint /*mode*/) {
  return kNoAccount;
}

gint vesk_svc_content_album_publish(guint32 /*handle*/, gint /*count*/, const gint64 * /*ids*/,
                                    const gchar * /*group*/, gpointer /*user_data*/) {
  return kNoAccount;
}

gint vesk_svc_content_file_publish(guint32 /*handle*/, gint /*count*/, const gint64 * /*ids*/,
                                   const gchar * /*group*/, gpointer /*user_data*/) {
  return kNoAccount;
}

#include <online-content.h>

#include "fakes/journal.hpp"

void fake::set_online_content_defaults(Platform &phone) {
  phone.vesk_svc_content_album_get = [](guint32, gint, gint, gint, const VeskFilter *, gpointer) {
    return 1;
  };
  phone.vesk_svc_content_file_get = [](guint32, gint, const VeskContentRequest *, gpointer) {
    return 1;
  };
  phone.vesk_svc_content_album_update = [](guint32, gint, const VeskAlbum *, gpointer) {
    return 1;
  };
  phone.vesk_svc_content_album_add = [](guint32, gint, const VeskAlbum *, gpointer) { return 1; };
  phone.vesk_svc_content_album_remove = [](guint32, gint, const gint64 *, gpointer) { return 1; };
  phone.vesk_svc_content_album_deletecontent = [](guint32, gint, const gint64 *, gint64, gpointer) {
    return 1;
  };
  phone.vesk_svc_content_album_addcontent = [](guint32, gint, const gint64 *, gint64, gpointer) {
    return 1;
  };
  phone.vesk_svc_content_file_upload = [](guint32, gint, const gint64 *, gint) { return 1; };
  phone.vesk_svc_content_album_publish = [](guint32, gint, const gint64 *, const gchar *,
                                            gpointer) { return 1; };
  phone.vesk_svc_content_file_publish = [](guint32, gint, const gint64 *, const gchar *, gpointer) {
    return 1;
  };
}

gint vesk_svc_content_album_get(guint32 handle, gint reserved1, gint reserved2, gint filter_count,
                                const VeskFilter *filters, gpointer user_data) {
  fake::record("vesk_svc_content_album_get", handle, reserved1, reserved2,
               fake::array_of(filters, filter_count));
  return fake::platform().vesk_svc_content_album_get(handle, reserved1, reserved2, filter_count,
                                                     filters, user_data);
}

gint vesk_svc_content_file_get(guint32 handle, gint count, const VeskContentRequest *request,
                               gpointer user_data) {
  fake::record("vesk_svc_content_file_get", handle, count, *request);
  return fake::platform().vesk_svc_content_file_get(handle, count, request, user_data);
}

gint vesk_svc_content_album_update(guint32 handle, gint count, const VeskAlbum *albums,
                                   gpointer user_data) {
  fake::record("vesk_svc_content_album_update", handle, fake::array_of(albums, count));
  return fake::platform().vesk_svc_content_album_update(handle, count, albums, user_data);
}

gint vesk_svc_content_album_add(guint32 handle, gint count, const VeskAlbum *albums,
                                gpointer user_data) {
  fake::record("vesk_svc_content_album_add", handle, fake::array_of(albums, count));
  return fake::platform().vesk_svc_content_album_add(handle, count, albums, user_data);
}

gint vesk_svc_content_album_remove(guint32 handle, gint count, const gint64 *album_ids,
                                   gpointer user_data) {
  fake::record("vesk_svc_content_album_remove", handle, fake::array_of(album_ids, count));
  return fake::platform().vesk_svc_content_album_remove(handle, count, album_ids, user_data);
}

gint vesk_svc_content_album_deletecontent(guint32 handle, gint count, const gint64 *ids,
                                          gint64 album_id, gpointer user_data) {
  fake::record("vesk_svc_content_album_deletecontent", handle, fake::array_of(ids, count),
               album_id);
  return fake::platform().vesk_svc_content_album_deletecontent(handle, count, ids, album_id,
                                                               user_data);
}

gint vesk_svc_content_album_addcontent(guint32 handle, gint count, const gint64 *ids,
                                       gint64 album_id, gpointer user_data) {
  fake::record("vesk_svc_content_album_addcontent", handle, fake::array_of(ids, count), album_id);
  return fake::platform().vesk_svc_content_album_addcontent(handle, count, ids, album_id,
                                                            user_data);
}

gint vesk_svc_content_file_upload(guint32 handle, gint count, const gint64 *fids, gint mode) {
  fake::record("vesk_svc_content_file_upload", handle, fake::array_of(fids, count), mode);
  return fake::platform().vesk_svc_content_file_upload(handle, count, fids, mode);
}

gint vesk_svc_content_album_publish(guint32 handle, gint count, const gint64 *ids,
                                    const gchar *group, gpointer user_data) {
  fake::record("vesk_svc_content_album_publish", handle, fake::array_of(ids, count), group);
  return fake::platform().vesk_svc_content_album_publish(handle, count, ids, group, user_data);
}

gint vesk_svc_content_file_publish(guint32 handle, gint count, const gint64 *ids,
                                   const gchar *group, gpointer user_data) {
  fake::record("vesk_svc_content_file_publish", handle, fake::array_of(ids, count), group);
  return fake::platform().vesk_svc_content_file_publish(handle, count, ids, group, user_data);
}

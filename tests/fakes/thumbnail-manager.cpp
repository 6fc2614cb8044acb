#include <thumbnail-manager.h>

#include "fakes/journal.hpp"

void fake::set_thumbnail_defaults(Platform &phone) {
  phone.fm_svc_thumb_create_pixbuf_by_path = [](const gchar *, gint, gint) -> GdkPixbuf * {
    return nullptr;
  };
  phone.fm_svc_thumb_mgr_get_thumbnail = [](gint, gint, const gchar *, gboolean, gint,
                                            GdkPixbuf **pixbuf) {
    answer(pixbuf, nullptr);
    return 0;
  };
}

GdkPixbuf *fm_svc_thumb_create_pixbuf_by_path(const gchar *path, gint width, gint height) {
  fake::record("fm_svc_thumb_create_pixbuf_by_path", path, width, height);
  return fake::platform().fm_svc_thumb_create_pixbuf_by_path(path, width, height);
}

gint fm_svc_thumb_mgr_get_thumbnail(gint kind, gint reserved, const gchar *path, gboolean is_mmc,
                                    gint media_type, GdkPixbuf **pixbuf) {
  fake::record("fm_svc_thumb_mgr_get_thumbnail", kind, reserved, path, is_mmc, media_type);
  return fake::platform().fm_svc_thumb_mgr_get_thumbnail(kind, reserved, path, is_mmc, media_type,
                                                         pixbuf);
}

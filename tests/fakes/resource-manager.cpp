#include <resource-manager.h>

#include "fakes/journal.hpp"

namespace {

constexpr int kBitmapHandle = 1;
constexpr int kStringHandle = 2;
constexpr int kBitmapSize = 8;
constexpr const char *kImageId = "fake-image-id";

/// A pixbuf in a colour of its own for every id.
GdkPixbuf *make_bitmap(gint id) {
  GdkPixbuf *bitmap = gdk_pixbuf_new(GDK_COLORSPACE_RGB, TRUE, 8, kBitmapSize, kBitmapSize);
  gdk_pixbuf_fill(bitmap, static_cast<guint32>(id) << 8 | 0xffu);
  g_object_set_data(G_OBJECT(bitmap), kImageId, GINT_TO_POINTER(id + 1));
  return bitmap;
}

}  // namespace

void fake::set_resource_defaults(Platform &phone) {
  phone.rsrc_open_rbm = [](const gchar *) { return kBitmapHandle; };
  phone.rsrc_open_rsr = [](const gchar *) { return kStringHandle; };
  phone.rsrc_close_rbm = [](gint) {};
  phone.rsrc_close_rsr = [](gint) {};
  phone.rsrc_get_image = [](gint handle, gint id) {
    return handle < 0 ? nullptr : make_bitmap(id);
  };
  phone.rsrc_get_string = [](gint handle, gint index) -> const gchar * {
    if (handle < 0) return nullptr;
    return g_intern_string(("string " + std::to_string(index)).c_str());
  };
  phone.rsrc_get_system_string = [](gint id) {
    return g_intern_string(("system string " + std::to_string(id)).c_str());
  };
  phone.rsrc_free_strings = [] {};
}

int fake::image_id(GdkPixbuf *pixbuf) {
  return GPOINTER_TO_INT(g_object_get_data(G_OBJECT(pixbuf), kImageId)) - 1;
}

gint rsrc_open_rbm(const gchar *path) {
  fake::record("rsrc_open_rbm", path);
  return fake::platform().rsrc_open_rbm(path);
}

gint rsrc_open_rsr(const gchar *path) {
  fake::record("rsrc_open_rsr", path);
  return fake::platform().rsrc_open_rsr(path);
}

void rsrc_close_rbm(gint handle) {
  fake::record("rsrc_close_rbm", handle);
  fake::platform().rsrc_close_rbm(handle);
}

void rsrc_close_rsr(gint handle) {
  fake::record("rsrc_close_rsr", handle);
  fake::platform().rsrc_close_rsr(handle);
}

GdkPixbuf *rsrc_get_image(gint handle, gint id) {
  fake::record("rsrc_get_image", handle, id);
  return fake::platform().rsrc_get_image(handle, id);
}

const gchar *rsrc_get_string(gint handle, gint index) {
  fake::record("rsrc_get_string", handle, index);
  return fake::platform().rsrc_get_string(handle, index);
}

const gchar *rsrc_get_system_string(gint id) {
  fake::record("rsrc_get_system_string", id);
  return fake::platform().rsrc_get_system_string(id);
}

void rsrc_free_strings() {
  fake::record("rsrc_free_strings");
  fake::platform().rsrc_free_strings();
}

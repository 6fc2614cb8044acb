#include <pb-item.h>

#include <cstring>

#include <check.hpp>

namespace {

constexpr gsize kMimeSize = 100;

struct ContentType {
  const char *mime;
  const char *extension;
};

/// The first row that matches wins; the later names of a format are never handed out.
constexpr ContentType kContentTypes[] = {
    {"image/gif", "gif"},   {"image/jpeg", "jpg"},  {"image/jpg", "jpg"},
    {"image/tiff", "tif"},  {"image/tif", "tif"},   {"image/png", "png"},
    {"image/wbmp", "wbmp"}, {"image/pjpeg", "jpg"}, {"image/bmp", "bmp"},
};

}  // namespace

gboolean pb_item_get_content_type_by_ext(gint /*ignored*/, gchar *mime_out, const gchar *ext) {
  PB_CHECK(mime_out, FALSE);

  for (const ContentType &type : kContentTypes) {
    if (g_strcmp0(type.extension, ext) != 0) continue;
    std::strncpy(mime_out, type.mime, kMimeSize);
    return TRUE;
  }
  return FALSE;
}

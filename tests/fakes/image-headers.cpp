#include <image-headers.h>

#include "fakes/header-objects.hpp"
#include "fakes/journal.hpp"

WinkExifInfo *fake::make_exif_info(int width, int height, int orientation) {
  ++header_objects;
  return new WinkExifInfo{width, height, orientation};
}

gboolean wink_parse_from_file(const gchar *path, gint *width, gint *height) {
  fake::record("wink_parse_from_file", path);
  return fake::platform().wink_parse_from_file(path, width, height);
}

WinkExifInfo *wink_create_jpeg_exifinfo_from_file(const gchar *path) {
  fake::record("wink_create_jpeg_exifinfo_from_file", path);
  return fake::platform().wink_create_jpeg_exifinfo_from_file(path);
}

void wink_free_exifinfo(WinkExifInfo *info) {
  fake::record("wink_free_exifinfo");
  if (info == nullptr) return;
  --fake::header_objects;
  delete info;
}

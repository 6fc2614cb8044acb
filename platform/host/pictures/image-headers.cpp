#include <image-headers.h>

#include <check.hpp>

#include "pictures/descriptor.hpp"
#include "pictures/header-reader.hpp"

namespace phone::pictures {
namespace {

/// The header of a picture that may be decoded, by its path.
std::optional<Header> picture_header(const char *path) {
  const Descriptor file(open_regular_file(path));
  if (!file) return std::nullopt;
  const auto header = read_header_of_file(file.get());
  if (!header || header->refused) return std::nullopt;
  switch (header->format) {
    case Format::kRaw:
    case Format::kDrawing:  // a few bytes can ask for any amount of work
    case Format::kVideo:
      return std::nullopt;
    default:
      return header;
  }
}

}  // namespace
}  // namespace phone::pictures

gboolean wink_parse_from_file(const gchar *path, gint *width, gint *height) {
  PB_CHECK(path != NULL, FALSE);
  PB_CHECK(width != NULL && height != NULL, FALSE);
  const auto header = phone::pictures::picture_header(path);
  if (!header) return FALSE;
  *width = header->width;
  *height = header->height;
  return TRUE;
}

WinkExifInfo *wink_create_jpeg_exifinfo_from_file(const gchar *path) {
  PB_CHECK(path != NULL, NULL);
  using phone::pictures::Format;
  const auto header = phone::pictures::picture_header(path);
  if (!header || header->format != Format::kJpeg || !header->has_exif) return nullptr;
  auto *info = g_new0(WinkExifInfo, 1);
  info->width = header->width;
  info->height = header->height;
  info->orientation = header->has_orientation ? header->orientation : 0;
  return info;
}

void wink_free_exifinfo(WinkExifInfo *info) { g_free(info); }

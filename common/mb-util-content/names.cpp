#include <cstring>

#include <mb-util-content.h>

namespace {

struct MimeExtension {
  const char *mime;
  const char *extension;
};

/// The first row whose text occurs in the type wins.
constexpr MimeExtension kExtensions[] = {
    {"image/jpeg", "jpg"},  {"image/pjpeg", "jpg"}, {"image/jpg", "jpg"}, {"image/gif", "gif"},
    {"image/tiff", "tiff"}, {"image/bmp", "bmp"},   {"image/png", "png"}, {"video/3gp", "3gp"},
    {"video/mp4", "mp4"},   {"video/avi", "avi"},
};
constexpr const char *kDefaultExtension = "jpg";

}  // namespace

const gchar *mb_util_content_get_ext_by_mime(const gchar *mime) {
  if (mime == nullptr) return kDefaultExtension;
  for (const MimeExtension &row : kExtensions) {
    if (std::strstr(mime, row.mime) != nullptr) return row.extension;
  }
  return kDefaultExtension;
}

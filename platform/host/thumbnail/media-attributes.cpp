#include <media-attributes.h>

#include <algorithm>
#include <check.hpp>
#include <cstring>
#include <memory>
#include <vector>

#include "pictures/header-reader.hpp"
#include "pictures/picture-file.hpp"
#include "thumbnail/disk.hpp"

/// A frame of a video with rows that follow each other without padding; empty for a file that
/// has none.
struct _MMAttrs {
  int width = 0;
  int height = 0;
  std::vector<guchar> pixels;
};

namespace phone::thumbnail {
namespace {

using pictures::OpenFile;
using pictures::Problem;

/// The stored frame, or one taken now and stored.
PixbufRef frame_of(const OpenFile &file) {
  const std::string path = stored_frame_path(file.info);
  if (!path.empty()) {
    if (PixbufRef stored = load_stored(path)) return stored;
  }
  pictures::Wish wish;
  wish.width = kFrameSide;
  wish.height = kFrameSide;
  wish.flags = pictures::wire::kUpright | pictures::wire::kOpaque;
  PixbufRef frame = pictures::decode_picture(file, wish).pixbuf;
  // A frame that cannot be kept is taken again the next time.
  if (frame && save(path, frame.get())) keep_within_limit();
  return frame;
}

void take_pixels(GdkPixbuf *frame, MMAttrs &attrs) {
  attrs.width = gdk_pixbuf_get_width(frame);
  attrs.height = gdk_pixbuf_get_height(frame);
  const auto line = static_cast<size_t>(attrs.width) * 3;
  const auto stride = static_cast<size_t>(gdk_pixbuf_get_rowstride(frame));
  const guchar *from = gdk_pixbuf_read_pixels(frame);
  attrs.pixels.resize(line * static_cast<size_t>(attrs.height));
  for (size_t y = 0; y < static_cast<size_t>(attrs.height); ++y) {
    std::memcpy(attrs.pixels.data() + y * line, from + y * stride, line);
  }
}

}  // namespace
}  // namespace phone::thumbnail

namespace {

constexpr gint kSuccess = 0;
constexpr gint kFailure = -1;

}  // namespace

gint MMFileGetContentAttr(const gchar *path, MMAttrs **attrs) {
  PB_CHECK(attrs != NULL, kFailure);
  *attrs = nullptr;
  PB_CHECK(path != NULL, kFailure);
  using namespace phone;
  const pictures::OpenFile file = pictures::open_picture(path);
  if (file.problem != pictures::Problem::kNone) return kFailure;
  const auto header = pictures::read_header_of_file(file.fd.get());
  if (!header || header->refused) return kFailure;

  auto result = std::make_unique<MMAttrs>();
  if (header->format == pictures::Format::kVideo) {
    const auto frame = thumbnail::frame_of(file);
    if (frame) thumbnail::take_pixels(frame.get(), *result);
  }
  *attrs = result.release();
  return kSuccess;
}

gint MMAttrsGetInt(MMAttrs *attrs, gint attribute, gint *value) {
  PB_CHECK(value != NULL, kFailure);
  *value = 0;
  PB_CHECK(attrs != NULL, kFailure);
  if (attribute == MM_ATTR_THUMBNAIL_WIDTH) {
    *value = attrs->width;
  } else if (attribute == MM_ATTR_THUMBNAIL_HEIGHT) {
    *value = attrs->height;
  } else {
    return kFailure;
  }
  return kSuccess;
}

gint MMAttrsGetData(MMAttrs *attrs, gint attribute, void **data) {
  PB_CHECK(data != NULL, kFailure);
  *data = nullptr;
  PB_CHECK(attrs != NULL, kFailure);
  if (attribute != MM_ATTR_THUMBNAIL_PIXELS) return kFailure;
  if (!attrs->pixels.empty()) *data = attrs->pixels.data();
  return kSuccess;
}

void MMAttrsFree(MMAttrs *attrs) { delete attrs; }

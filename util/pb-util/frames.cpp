#include "check.hpp"
#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "pb-util-image.h"
#include "pb-util-resource.h"
#include "util/pb-util/image.hpp"
#include "util/pb-util/private.hpp"

namespace {

using PixbufRef = pb::Ref<GdkPixbuf>;

constexpr gint kFrameBitmap = 83;

/// Place and size of a thumbnail in the frame.
constexpr gint kThumbnailX = 19;
constexpr gint kThumbnailY = 9;
constexpr gint kThumbnailSize = 108;

constexpr int kOpaque = 255;

/// Main loop only. Never destroyed: pixbufs may outlive the static objects of this library.
PixbufRef &cached_frame() {
  static auto *frame = new PixbufRef;
  return *frame;
}

bool holds_thumbnail(GdkPixbuf *mask) {
  return gdk_pixbuf_get_width(mask) >= kThumbnailX + kThumbnailSize &&
         gdk_pixbuf_get_height(mask) >= kThumbnailY + kThumbnailSize;
}

}  // namespace

namespace pb::util {

void drop_cached_frame() { cached_frame().reset(); }

}  // namespace pb::util

GdkPixbuf *pb_get_pixbuf_with_thumbnail_mask(GdkPixbuf *thumbnail, GdkPixbuf *mask) {
  PB_CHECK(GDK_IS_PIXBUF(thumbnail), NULL);
  PB_CHECK(GDK_IS_PIXBUF(mask), NULL);
  PB_CHECK(holds_thumbnail(mask), NULL);
  const auto scaled = PixbufRef::adopt(
      gdk_pixbuf_scale_simple(thumbnail, kThumbnailSize, kThumbnailSize, GDK_INTERP_BILINEAR));
  auto framed = PixbufRef::adopt(gdk_pixbuf_copy(mask));
  if (!scaled || !framed) return nullptr;
  if (gdk_pixbuf_get_has_alpha(scaled.get()) && !gdk_pixbuf_get_has_alpha(framed.get())) {
    // A copy needs room for the alpha, which an opaque frame has not.
    gdk_pixbuf_composite(scaled.get(), framed.get(), kThumbnailX, kThumbnailY, kThumbnailSize,
                         kThumbnailSize, kThumbnailX, kThumbnailY, 1, 1, GDK_INTERP_NEAREST,
                         kOpaque);
  } else {
    gdk_pixbuf_copy_area(scaled.get(), 0, 0, kThumbnailSize, kThumbnailSize, framed.get(),
                         kThumbnailX, kThumbnailY);
  }
  return framed.release();
}

GdkPixbuf *pb_get_cached_pixbuf(gint index) {
  if (index < 0) {
    PB_LOG(PB_LOG_ERROR, "bitmap id -> (-1)\n");
    return nullptr;
  }
  if (index != PB_CACHED_PIXBUF_FRAME) {
    PB_LOG(PB_LOG_WARNING, "no cached bitmap : %d\n", index);
    return nullptr;
  }
  if (!cached_frame()) cached_frame() = PixbufRef::adopt(pb_get_pixbuf(kFrameBitmap));
  return cached_frame().get();
}

GdkPixbuf *__mb_get_filter_theme_pixbuf(gint icon_id) {
  PB_LOG(PB_LOG_INFO, "__mb_get_filter_theme_pixbuf : icon_id = %d \n", icon_id);
  return pb_get_pixbuf(icon_id);
}

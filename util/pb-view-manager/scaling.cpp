#include <algorithm>
#include <limits>

#include "check.hpp"
#include "glib-ptr.hpp"
#include "pb-view-manager.h"

namespace {

using PixbufRef = pb::Ref<GdkPixbuf>;

struct Size {
  gint width;
  gint height;
};

/// Cuts towards zero. What no int can hold, as after a division by zero, is limited to one.
gint cut(float value) {
  constexpr float kLimit = 2147483648.0F;
  if (value >= kLimit) return std::numeric_limits<gint>::max();
  if (value <= -kLimit) return std::numeric_limits<gint>::min();
  return value == value ? static_cast<gint>(value) : 0;
}

Size scaled_size(Size image, Size canvas, guint flags) {
  const float ratio = static_cast<float>(image.height) / static_cast<float>(image.width);
  const float canvas_ratio = static_cast<float>(canvas.height) / static_cast<float>(canvas.width);
  const Size by_width{canvas.width, cut(ratio * static_cast<float>(canvas.width))};
  const Size by_height{cut(static_cast<float>(canvas.height) / ratio), canvas.height};

  switch (flags & (PB_SCALE_FIT_WIDTH | PB_SCALE_FIT_HEIGHT)) {
    case PB_SCALE_FIT_WIDTH | PB_SCALE_FIT_HEIGHT:
      if (image.width <= canvas.width && image.height <= canvas.height &&
          (flags & PB_SCALE_ENLARGE) == 0) {
        return image;
      }
      return ratio < canvas_ratio ? by_width : by_height;
    case PB_SCALE_FIT_WIDTH:
      return image.width > canvas.width ? by_width : image;
    case PB_SCALE_FIT_HEIGHT:
      return image.height > canvas.height ? by_height : image;
    default:
      return image;
  }
}

/// The part of a picture that is to fill a box; null when it does not lie inside the picture.
/// Ratios are whole quotients and the horizontal place follows from the height: views rely on
/// the part that this gives.
PixbufRef part_for_box(GdkPixbuf *src, Size box) {
  const Size size{gdk_pixbuf_get_width(src), gdk_pixbuf_get_height(src)};
  const gint source_ratio = size.height / size.width;
  const gint box_ratio = box.height / box.width;
  if (source_ratio > box_ratio) {
    const auto height = static_cast<gint>(gint64{box.height} * size.width / box.width);
    return PixbufRef::adopt(
        gdk_pixbuf_new_subpixbuf(src, 0, (size.height - height) / 2, size.width, height));
  }
  if (source_ratio < box_ratio) {
    const auto width = static_cast<gint>(gint64{box.width} * size.height / box.height);
    return PixbufRef::adopt(
        gdk_pixbuf_new_subpixbuf(src, (size.height - width) / 2, 0, width, size.height));
  }
  return PixbufRef::share(src);
}

}  // namespace

gboolean pb_calc_scaled_size(gint img_w, gint img_h, gint canvas_w, gint canvas_h, guint flags,
                             gint *out_w, gint *out_h) {
  PB_CHECK(canvas_w > 0 && canvas_h > 0, FALSE);
  const Size size = scaled_size({img_w, img_h}, {canvas_w, canvas_h}, flags);
  if (out_w != nullptr) *out_w = size.width;
  if (out_h != nullptr) *out_h = size.height;
  return size.width != img_w || size.height != img_h;
}

GdkPixbuf *pb_pixbuf_scale(GdkPixbuf *src, gint canvas_w, gint canvas_h, guint flags) {
  PB_CHECK(GDK_IS_PIXBUF(src), NULL);
  PB_CHECK(canvas_w > 0 && canvas_h > 0, NULL);
  gint width = 0;
  gint height = 0;
  if (!pb_calc_scaled_size(gdk_pixbuf_get_width(src), gdk_pixbuf_get_height(src), canvas_w,
                           canvas_h, flags, &width, &height)) {
    return PixbufRef::share(src).release();
  }
  // A long strip shrinks to less than a pixel, which no pixbuf can be.
  return gdk_pixbuf_scale_simple(src, std::max(width, 1), std::max(height, 1), GDK_INTERP_BILINEAR);
}

GdkPixbuf *pb_pixbuf_best_fit(GdkPixbuf *src, gint width, gint height) {
  PB_CHECK(src, NULL);
  PB_CHECK(width > 0 && height > 0, NULL);
  PixbufRef part = part_for_box(src, {width, height});
  if (!part) return nullptr;
  if (gdk_pixbuf_get_width(src) == width && gdk_pixbuf_get_height(src) == height) {
    return part.release();
  }
  return gdk_pixbuf_scale_simple(part.get(), width, height, GDK_INTERP_BILINEAR);
}

void pb_draw_rect(GdkDrawable *drawable, GdkGC *gc, gboolean filled, const PbRect *rect) {
  PB_CHECK(rect);
  gdk_draw_rectangle(drawable, gc, filled, rect->x, rect->y, rect->width, rect->height);
}

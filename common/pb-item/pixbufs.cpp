#include <pb-item.h>

#include <file-explorer.h>
#include <image-headers.h>
#include <thumbnail-manager.h>

#include <pb-debug.h>
#include <pb-item-cache.h>
#include <pb-view-manager.h>
#include <check.hpp>
#include <glib-ptr.hpp>

#include <algorithm>

namespace {

using PixbufRef = pb::Ref<GdkPixbuf>;

/// A picture that reaches either side of the screen is scaled; a smaller one is shown as it is.
constexpr gint kScreenWidth = 480;
constexpr gint kScreenHeight = 800;
constexpr gfloat kDeletedSaturation = 0.1F;

/// The rotating values of the EXIF orientation; the mirroring ones get no transform.
enum Orientation : gint { kUpsideDown = 3, kQuarterRight = 6, kQuarterLeft = 8 };

struct Size {
  gint width = 0;
  gint height = 0;
};

Size swapped(Size size) { return {size.height, size.width}; }

bool lies_sideways(gint orientation) {
  return orientation == kQuarterRight || orientation == kQuarterLeft;
}

gint orientation_of(const gchar *filename) {
  gint orientation = 0;
  return fexplorer_get_exif_orientation(filename, &orientation) ? orientation : 0;
}

GdkPixbufRotation rotation_for(gint orientation) {
  switch (orientation) {
    case kUpsideDown:
      return GDK_PIXBUF_ROTATE_UPSIDEDOWN;
    case kQuarterRight:
      return GDK_PIXBUF_ROTATE_CLOCKWISE;
    case kQuarterLeft:
      return GDK_PIXBUF_ROTATE_COUNTERCLOCKWISE;
    default:
      return GDK_PIXBUF_ROTATE_NONE;
  }
}

/// The size to decode a file to, in the orientation in which the file stores the picture.
Size decoded_size(Size stored, bool sideways, Size box) {
  const Size shown = sideways ? swapped(stored) : stored;
  if (shown.width < kScreenWidth && shown.height < kScreenHeight) return stored;
  // A box that is not positive leaves the outputs alone; the picture then keeps its size.
  Size fitted = shown;
  pb_calc_scaled_size(shown.width, shown.height, box.width, box.height,
                      PB_SCALE_FIT_WIDTH | PB_SCALE_FIT_HEIGHT, &fitted.width, &fitted.height);
  // The short side of a long strip comes out as 0.
  fitted = {std::max(fitted.width, 1), std::max(fitted.height, 1)};
  return sideways ? swapped(fitted) : fitted;
}

/// A decoder may hang or take all memory over the content of a file. What the header reader refuses
/// is given to none, not even for its size.
bool may_decode(const gchar *filename) {
  Size size;
  return filename != nullptr && wink_parse_from_file(filename, &size.width, &size.height);
}

GdkPixbuf *thumbnail_of(PbItem *item, gboolean only_cached) {
  PixbufRef thumbnail = PixbufRef::adopt(pb_item_cache_get_thumbnail(item, only_cached));
  if (!thumbnail || !pb_item_get_deleted(item)) return thumbnail.release();
  PixbufRef washed_out = PixbufRef::adopt(gdk_pixbuf_copy(thumbnail.get()));
  if (!washed_out) return nullptr;
  gdk_pixbuf_saturate_and_pixelate(thumbnail.get(), washed_out.get(), kDeletedSaturation, TRUE);
  return washed_out.release();
}

}  // namespace

GdkPixbuf *pb_item_get_thumbnail_pixbuf(PbItem *item) {
  PB_CHECK(PB_IS_ITEM(item), nullptr);
  return thumbnail_of(item, FALSE);
}

GdkPixbuf *pb_item_get_only_cached_thumbnail_pixbuf(PbItem *item) {
  PB_CHECK(PB_IS_ITEM(item), nullptr);
  return thumbnail_of(item, TRUE);
}

GdkPixbuf *pb_item_get_render_pixbuf(PbItem *item) {
  PB_CHECK(PB_IS_ITEM(item), nullptr);
  return thumbnail_of(item, FALSE);
}

GdkPixbuf *pb_item_get_only_cached_render_pixbuf(PbItem *item) {
  PB_CHECK(PB_IS_ITEM(item), nullptr);
  return thumbnail_of(item, TRUE);
}

GdkPixbuf *pb_item_get_pixbuf(PbItem *item) {
  PB_CHECK(PB_IS_ITEM(item), nullptr);
  PB_CHECK(item->filename, nullptr);
  return pb_item_get_pixbuf_at_size(item, -1, -1);
}

GdkPixbuf *pb_item_get_pixbuf_at_size(PbItem *item, gint width, gint height) {
  PB_CHECK(PB_IS_ITEM(item), nullptr);
  PB_LOG(PB_LOG_INFO, "\n");

  Size stored;
  if (!may_decode(item->filename) ||
      gdk_pixbuf_get_file_info(item->filename, &stored.width, &stored.height) == nullptr) {
    return nullptr;
  }
  const gint orientation = orientation_of(item->filename);
  const Size size = decoded_size(stored, lies_sideways(orientation), {width, height});
  const auto loaded =
      PixbufRef::adopt(fm_svc_thumb_create_pixbuf_by_path(item->filename, size.width, size.height));
  if (!loaded) return nullptr;

  GdkPixbuf *upright = gdk_pixbuf_rotate_simple(loaded.get(), rotation_for(orientation));
  if (upright == nullptr) return nullptr;
  PB_LOG(PB_LOG_INFO, "Final width = %d, height=%d\n", gdk_pixbuf_get_width(upright),
         gdk_pixbuf_get_height(upright));
  return upright;
}

GdkPixbufAnimation *pb_item_get_palm_animation_pixbuf(PbItem *item, gboolean *is_static) {
  PB_CHECK(PB_IS_ITEM(item), nullptr);

  GdkPixbufAnimation *animation = nullptr;
  if (may_decode(item->filename)) {
    animation = gdk_pixbuf_animation_new_from_file(item->filename, nullptr);
  }
  if (is_static != nullptr) {
    *is_static = animation != nullptr && gdk_pixbuf_animation_is_static_image(animation);
  }
  return animation;
}

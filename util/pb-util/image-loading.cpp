#include <file-explorer.h>
#include <gio/gio.h>
#include <image-headers.h>

#include <algorithm>

#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "pb-util-image.h"
#include "pb-view-manager.h"
#include "util/pb-util/image.hpp"

namespace {

using PixbufRef = pb::Ref<GdkPixbuf>;

/// A picture that reaches one of these is never decoded at its full size.
constexpr gint kScreenWidth = 480;
constexpr gint kScreenHeight = 800;

enum Orientation { kUpright = 1, kUpsideDown = 3, kTurnedRight = 6, kTurnedLeft = 8 };

struct Size {
  gint width;
  gint height;
};

Size swapped(Size size) { return {size.height, size.width}; }

gint orientation_of(const gchar *path) {
  gint orientation = kUpright;
  return fexplorer_get_exif_orientation(path, &orientation) ? orientation : kUpright;
}

bool is_sideways(gint orientation) {
  return orientation == kTurnedRight || orientation == kTurnedLeft;
}

/// The size to decode to, as shown, for a picture of a size as shown.
Size decoding_size(Size shown, gint width, gint height) {
  if (shown.width < kScreenWidth && shown.height < kScreenHeight) return shown;
  // For a box that is no box, the computation leaves the size alone and warns.
  Size fitted = shown;
  pb_calc_scaled_size(shown.width, shown.height, width, height,
                      PB_SCALE_FIT_WIDTH | PB_SCALE_FIT_HEIGHT, &fitted.width, &fitted.height);
  // A long strip shrinks to less than a pixel, which no pixbuf can be.
  return {std::max(fitted.width, 1), std::max(fitted.height, 1)};
}

PixbufRef turn_upright(PixbufRef pixbuf, gint orientation) {
  if (!pixbuf) return pixbuf;
  const auto turn = [&pixbuf](GdkPixbufRotation rotation) {
    return PixbufRef::adopt(gdk_pixbuf_rotate_simple(pixbuf.get(), rotation));
  };
  switch (orientation) {
    case kTurnedRight:
      return turn(GDK_PIXBUF_ROTATE_CLOCKWISE);
    case kTurnedLeft:
      return turn(GDK_PIXBUF_ROTATE_COUNTERCLOCKWISE);
    case kUpsideDown:
      return turn(GDK_PIXBUF_ROTATE_UPSIDEDOWN);
    default:
      return pixbuf;
  }
}

}  // namespace

GdkPixbuf *__pb_get_pixbuf_at_size_with_adjustment(const gchar *path, const guchar *data,
                                                   gssize length, gint width, gint height,
                                                   GError **error) {
  if (data == nullptr || length <= 0) {
    return gdk_pixbuf_new_from_file_at_size(path, width, height, error);
  }
  const auto stream =
      pb::Ref<GInputStream>::adopt(g_memory_input_stream_new_from_data(data, length, nullptr));
  return gdk_pixbuf_new_from_stream_at_scale(stream.get(), width, height, TRUE, nullptr, error);
}

GdkPixbuf *pb_get_pixbuf_at_size_with_adjustment(const gchar *path, gint width, gint height) {
  Size stored{};
  if (path == nullptr || !wink_parse_from_file(path, &stored.width, &stored.height)) {
    PB_LOG(PB_LOG_ERROR, "fail to read the size of the picture\n");
    return nullptr;
  }
  const gint orientation = orientation_of(path);
  const bool sideways = is_sideways(orientation);
  const Size shown = decoding_size(sideways ? swapped(stored) : stored, width, height);
  const Size size = sideways ? swapped(shown) : shown;

  pb::ErrorPtr error;
  auto pixbuf = PixbufRef::adopt(__pb_get_pixbuf_at_size_with_adjustment(
      path, nullptr, 0, size.width, size.height, pb::out(error)));
  pixbuf = turn_upright(std::move(pixbuf), orientation);
  if (error != nullptr) {
    g_warning("[%s:%d] (%s), %s\n", __func__, __LINE__, path, error->message);
  }
  if (!pixbuf) return nullptr;
  PB_LOG(PB_LOG_INFO, "Final width = %d*******\n\n\n\n", gdk_pixbuf_get_width(pixbuf.get()));
  PB_LOG(PB_LOG_INFO, "Final Height = %d*******\n\n\n\n", gdk_pixbuf_get_height(pixbuf.get()));
  return pixbuf.release();
}

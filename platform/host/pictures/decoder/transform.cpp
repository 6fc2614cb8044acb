#include <algorithm>
#include <cmath>

#include "pictures/decoder/decode.hpp"

namespace phone::pictures {

Size fit(Size picture, Size box, bool enlarge) {
  const double scale = std::min(static_cast<double>(box.width) / picture.width,
                                static_cast<double>(box.height) / picture.height);
  if (scale >= 1 && !enlarge) return picture;
  const auto side = [scale](int length, int limit) {
    return std::clamp(static_cast<int>(std::lround(length * scale)), 1, limit);
  };
  return {side(picture.width, box.width), side(picture.height, box.height)};
}

PixbufRef turned(const PixbufRef &pixbuf, int orientation) {
  GdkPixbuf *source = pixbuf.get();
  const auto rotate = [source](GdkPixbufRotation angle) {
    return PixbufRef::adopt(gdk_pixbuf_rotate_simple(source, angle));
  };
  const auto mirror = [](GdkPixbuf *from, bool sideways) {
    return PixbufRef::adopt(gdk_pixbuf_flip(from, sideways ? TRUE : FALSE));
  };
  switch (orientation) {
    case 2:
      return mirror(source, true);
    case 3:
      return rotate(GDK_PIXBUF_ROTATE_UPSIDEDOWN);
    case 4:
      return mirror(source, false);
    case 6:
      return rotate(GDK_PIXBUF_ROTATE_CLOCKWISE);
    case 8:
      return rotate(GDK_PIXBUF_ROTATE_COUNTERCLOCKWISE);
    case 5:
    case 7: {
      const PixbufRef sideways = rotate(GDK_PIXBUF_ROTATE_CLOCKWISE);
      return sideways ? mirror(sideways.get(), orientation == 5) : PixbufRef();
    }
    default:
      return pixbuf;
  }
}

int opposite(int orientation) {
  if (orientation == 6) return 8;
  if (orientation == 8) return 6;
  return orientation;
}

}  // namespace phone::pictures

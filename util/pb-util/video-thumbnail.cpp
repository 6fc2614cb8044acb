#include <main-window.h>
#include <media-attributes.h>

#include <algorithm>

#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "pb-util-image.h"
#include "pb-view-manager.h"

namespace {

using AttrsPtr = std::unique_ptr<MMAttrs, pb::FreeWith<MMAttrsFree>>;
using PixbufRef = pb::Ref<GdkPixbuf>;

/// A frame up to this size is shown at twice its size.
constexpr gint kSmallWidth = 176;
constexpr gint kSmallHeight = 144;

constexpr gint kPortraitFrameOnPortrait = 352;    // height
constexpr gint kPortraitFrameOnLandscape = 480;   // height
constexpr gint kLandscapeFrameOnPortrait = 480;   // width
constexpr gint kLandscapeFrameOnLandscape = 800;  // width

struct Size {
  gint width;
  gint height;
};

/// length times to / from, in single precision and at least one pixel.
gint in_proportion(gint length, gint to, gint from) {
  const float factor = static_cast<float>(to) / static_cast<float>(from);
  return std::max(static_cast<gint>(static_cast<float>(length) * factor), 1);
}

Size shown_size(Size frame, bool portrait_screen) {
  if (frame.width <= kSmallWidth && frame.height <= kSmallHeight) {
    return {2 * frame.width, 2 * frame.height};
  }
  if (frame.width < frame.height) {
    const gint height = portrait_screen ? kPortraitFrameOnPortrait : kPortraitFrameOnLandscape;
    return {in_proportion(frame.width, height, frame.height), height};
  }
  const gint width = portrait_screen ? kLandscapeFrameOnPortrait : kLandscapeFrameOnLandscape;
  return {width, in_proportion(frame.height, width, frame.width)};
}

bool is_portrait_screen() {
  GtkWidget *window = pb_view_manager_get_window();
  const gint turned = gtk_window_get_rotate(GTK_IS_WINDOW(window) ? GTK_WINDOW(window) : nullptr);
  return turned == 0 || turned == 180;
}

/// The stored frame, whose pixels stay with the attributes; null when there is none.
PixbufRef frame_of(MMAttrs *attrs) {
  Size size{};
  void *pixels = nullptr;
  MMAttrsGetInt(attrs, MM_ATTR_THUMBNAIL_WIDTH, &size.width);
  MMAttrsGetInt(attrs, MM_ATTR_THUMBNAIL_HEIGHT, &size.height);
  MMAttrsGetData(attrs, MM_ATTR_THUMBNAIL_PIXELS, &pixels);
  if (pixels == nullptr || size.width <= 0 || size.height <= 0) return nullptr;
  if (size.width > G_MAXINT / 3 / size.height) return nullptr;
  return PixbufRef::adopt(gdk_pixbuf_new_from_data(static_cast<const guchar *>(pixels),
                                                   GDK_COLORSPACE_RGB, FALSE, 8, size.width,
                                                   size.height, 3 * size.width, nullptr, nullptr));
}

}  // namespace

GdkPixbuf *pb_get_video_thumnail_by_path(const gchar *path) {
  MMAttrs *found = nullptr;
  const gint result = MMFileGetContentAttr(path, &found);
  if (result != 0 || found == nullptr) {
    PB_LOG(PB_LOG_ERROR, "pb_get_video_thumnail_by_path : ret = %d, buffer=%p \n\n", result,
           static_cast<void *>(found));
    return nullptr;
  }
  // Declared first: the frame has to go before the pixels that it shows.
  const AttrsPtr attrs(found);
  const PixbufRef frame = frame_of(attrs.get());
  if (!frame) return nullptr;
  const Size size =
      shown_size({gdk_pixbuf_get_width(frame.get()), gdk_pixbuf_get_height(frame.get())},
                 is_portrait_screen());
  return gdk_pixbuf_scale_simple(frame.get(), size.width, size.height, GDK_INTERP_BILINEAR);
}

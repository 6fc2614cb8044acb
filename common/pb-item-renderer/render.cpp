#include <pb-debug.h>
#include <pb-util.h>
#include <glib-ptr.hpp>

#include "private.hpp"

namespace {

using PixbufRef = pb::Ref<GdkPixbuf>;
using pb::item_renderer::icon_size;
using pb::item_renderer::kSmallIcon;

/// Ids of the bitmap resources that are drawn.
enum Bitmap : gint {
  kNoCover = 53,
  kWebFileMark = 55,
  kNoPicture = 67,
  kNoVideo = 86,
  kPlayMark = 105,
  kWebAlbumMark = 195,
};

constexpr gint kVideo = 2;
/// The corner of a framed cover at which the mark of a web album ends.
constexpr gint kWebAlbumMarkRight = 127;
constexpr gint kWebAlbumMarkBottom = 117;
/// How far the file count lies under the album's name.
constexpr gint kCountBelowName = 25;
/// The album of quick posts, which has no count of its own.
constexpr const char *kQuickPostAlbum = "drovo";

struct Canvas {
  GdkDrawable *drawable;
  GdkRectangle box;   ///< where the picture lies
  GdkRectangle clip;  ///< the part of it that is filled
};

PixbufRef with_alpha(PixbufRef picture) {
  if (gdk_pixbuf_get_has_alpha(picture.get())) return picture;
  return PixbufRef::adopt(gdk_pixbuf_add_alpha(picture.get(), FALSE, 0, 0, 0));
}

/// Blends a mark into the part of the picture that it covers. The picture must be the caller's
/// own: it is drawn into where it has an alpha channel.
template <typename Place>
PixbufRef marked(PixbufRef picture, gint bitmap, Place place) {
  const auto mark = PixbufRef::adopt(pb_get_pixbuf(bitmap));
  PixbufRef result = with_alpha(picture);
  if (!mark || !result) return picture;

  GdkRectangle area = place(gdk_pixbuf_get_width(mark.get()), gdk_pixbuf_get_height(mark.get()));
  const GdkRectangle whole = {0, 0, gdk_pixbuf_get_width(result.get()),
                              gdk_pixbuf_get_height(result.get())};
  GdkRectangle covered;
  if (gdk_rectangle_intersect(&area, &whole, &covered)) {
    gdk_pixbuf_composite(mark.get(), result.get(), covered.x, covered.y, covered.width,
                         covered.height, area.x, area.y, 1.0, 1.0, GDK_INTERP_BILINEAR, 255);
  }
  return result;
}

PixbufRef with_play_mark(const PixbufRef &picture) {
  const gint width = gdk_pixbuf_get_width(picture.get());
  const gint height = gdk_pixbuf_get_height(picture.get());
  return marked(picture, kPlayMark, [=](gint mark_width, gint mark_height) {
    return GdkRectangle{(width - mark_width) / 2, (height - mark_height) / 2, mark_width,
                        mark_height};
  });
}

PixbufRef with_web_file_mark(const PixbufRef &picture) {
  const gint width = gdk_pixbuf_get_width(picture.get());
  return marked(picture, kWebFileMark, [=](gint mark_width, gint mark_height) {
    return GdkRectangle{width - mark_width, 0, mark_width, mark_height};
  });
}

PixbufRef with_web_album_mark(const PixbufRef &picture) {
  return marked(picture, kWebAlbumMark, [](gint mark_width, gint mark_height) {
    return GdkRectangle{kWebAlbumMarkRight - mark_width, kWebAlbumMarkBottom - mark_height,
                        mark_width, mark_height};
  });
}

PixbufRef file_picture(const PbItem *item, PixbufRef thumbnail) {
  const bool video = item->media_type == kVideo;
  PixbufRef picture;
  if (!thumbnail) {
    picture = PixbufRef::adopt(pb_get_pixbuf(video ? kNoVideo : kNoPicture));
  } else {
    picture = video ? with_play_mark(thumbnail) : std::move(thumbnail);
  }
  if (picture && item->nfid > 0) picture = with_web_file_mark(picture);
  return picture;
}

PixbufRef album_picture(const PbItem *item, const PixbufRef &cover) {
  PixbufRef picture;
  if (!cover) {
    picture = PixbufRef::adopt(pb_get_pixbuf(kNoCover));
  } else if (GdkPixbuf *frame = pb_get_cached_pixbuf(PB_CACHED_PIXBUF_FRAME)) {
    picture = PixbufRef::adopt(pb_get_pixbuf_with_thumbnail_mask(cover.get(), frame));
  }
  if (picture && item->naid > 0) picture = with_web_album_mark(picture);
  return picture;
}

void paint(const Canvas &canvas, GdkPixbuf *picture) {
  cairo_t *cairo = gdk_cairo_create(canvas.drawable);
  gdk_cairo_set_source_pixbuf(cairo, picture, canvas.box.x, canvas.box.y);
  gdk_cairo_rectangle(cairo, &canvas.clip);
  cairo_fill(cairo);
  cairo_destroy(cairo);
}

void draw_file(const PbItem *item, PixbufRef thumbnail, const Canvas &canvas) {
  PixbufRef picture = file_picture(item, std::move(thumbnail));
  if (picture && icon_size() == kSmallIcon) {
    picture = PixbufRef::adopt(
        gdk_pixbuf_scale_simple(picture.get(), kSmallIcon, kSmallIcon, GDK_INTERP_BILINEAR));
  }
  if (picture) paint(canvas, picture.get());
}

void draw_caption(const Canvas &canvas, const gchar *text, gint below, gint width, gint font_size,
                  gint weight) {
  const GdkColor white = {0, 0xFFFF, 0xFFFF, 0xFFFF};
  PbDrawTextInfo info{};
  info.drawable = canvas.drawable;
  info.text = text;
  info.x = canvas.box.x;
  info.y = canvas.box.y + below;
  info.width = width;
  info.height = 20;
  info.color = &white;
  info.font_size = font_size;
  info.weight = weight;
  info.align_x = 0.5F;
  info.align_y = 1.1F;
  pb_draw_text(&info);
}

void draw_album(const PbItem *item, const PixbufRef &cover, const Canvas &canvas) {
  const PixbufRef picture = album_picture(item, cover);
  if (!picture) return;
  paint(canvas, picture.get());

  const gint width = gdk_pixbuf_get_width(picture.get());
  draw_caption(canvas, item->name, 0, width, 18, PANGO_WEIGHT_NORMAL);
  if (g_strcmp0(item->name, kQuickPostAlbum) == 0) return;
  const pb::StringPtr count(g_strdup_printf("(%d)", item->count));
  draw_caption(canvas, count.get(), kCountBelowName, width, 13, PANGO_WEIGHT_BOLD);
}

}  // namespace

void pb_item_renderer_render(GtkCellRenderer *cell, GdkDrawable *window, GtkWidget *widget,
                             GdkRectangle * /*background_area*/, GdkRectangle *cell_area,
                             GdkRectangle *expose_area, GtkCellRendererState /*flags*/) {
  PbItem *item = PB_ITEM_RENDERER(cell)->item;
  Canvas canvas{.drawable = window, .box = {}, .clip = {}};
  pb_item_renderer_get_size(cell, widget, cell_area, &canvas.box.x, &canvas.box.y,
                            &canvas.box.width, &canvas.box.height);
  if (item == nullptr) {
    PB_LOG(PB_LOG_WARNING, "item is null\n");
    return;
  }

  gint xpad = 0;
  gint ypad = 0;
  gtk_cell_renderer_get_padding(cell, &xpad, &ypad);
  canvas.box.x += cell_area->x;
  canvas.box.y += cell_area->y;
  canvas.box.width -= 2 * xpad;
  canvas.box.height -= 2 * ypad;
  if (!gdk_rectangle_intersect(cell_area, &canvas.box, &canvas.clip) ||
      !gdk_rectangle_intersect(expose_area, &canvas.clip, &canvas.clip)) {
    return;
  }

  auto thumbnail = PixbufRef::adopt(pb_item_get_thumbnail_pixbuf(item));
  if (item->is_cluster != 0) {
    draw_album(item, thumbnail, canvas);
  } else {
    draw_file(item, std::move(thumbnail), canvas);
  }
}

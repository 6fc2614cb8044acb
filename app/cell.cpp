#include "cell.hpp"

#include <pb-item-renderer.h>
#include <pb-item.h>

#include <glib-ptr.hpp>
#include <memory>
#include <new>

#include "album-cell.hpp"
#include "tile-size.hpp"

struct GalleryCell {
  GtkCellRenderer parent;
};
struct GalleryCellClass {
  GtkCellRendererClass parent_class;
};

using gallery::kAlbumCellHeight;
using gallery::kTile;

namespace {

struct GalleryCellPrivate {
  pb::Ref<GtkCellRenderer> renderer;
  bool albums = false;
};

constexpr guint kPropItem = 1;
/// A picture that does not fill its tile lies on this.
constexpr double kTileGrey = 0.11;

}  // namespace

G_DEFINE_TYPE_WITH_PRIVATE(GalleryCell, gallery_cell, GTK_TYPE_CELL_RENDERER)

namespace {

GalleryCellPrivate &private_of(gpointer cell) {
  return *static_cast<GalleryCellPrivate *>(
      gallery_cell_get_instance_private(static_cast<GalleryCell *>(cell)));
}

PbItem *item_of(GtkCellRenderer *cell) {
  return reinterpret_cast<PbItemRenderer *>(private_of(cell).renderer.get())->item;
}

GdkRectangle centred(const GdkRectangle &area, int width, int height) {
  return {area.x + (area.width - width) / 2, area.y + (area.height - height) / 2, width, height};
}

void fill_tile(GdkDrawable *window, const GdkRectangle &tile, const GdkRectangle *exposed) {
  cairo_t *cairo = gdk_cairo_create(window);
  if (exposed != nullptr) {
    gdk_cairo_rectangle(cairo, exposed);
    cairo_clip(cairo);
  }
  cairo_set_source_rgb(cairo, kTileGrey, kTileGrey, kTileGrey * 1.1);
  gdk_cairo_rectangle(cairo, &tile);
  cairo_fill(cairo);
  cairo_destroy(cairo);
}

/// Where the library's renderer, which starts in the upper left corner, puts the picture into the
/// middle of the tile. It draws a tile of its own where there is no thumbnail.
GdkRectangle area_of_picture(PbItem *item, const GdkRectangle &tile) {
  const auto thumbnail = pb::Ref<GdkPixbuf>::adopt(pb_item_get_thumbnail_pixbuf(item));
  if (!thumbnail) return tile;
  const int dx = MAX(0, (tile.width - gdk_pixbuf_get_width(thumbnail.get())) / 2);
  const int dy = MAX(0, (tile.height - gdk_pixbuf_get_height(thumbnail.get())) / 2);
  return {tile.x + dx, tile.y + dy, tile.width - dx, tile.height - dy};
}

}  // namespace

static void gallery_cell_set_property(GObject *object, guint id, const GValue *value,
                                      GParamSpec *pspec) {
  if (id != kPropItem) {
    G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, pspec);
    return;
  }
  g_object_set_property(G_OBJECT(private_of(object).renderer.get()), "item", value);
}

static void gallery_cell_get_property(GObject *object, guint id, GValue *value, GParamSpec *pspec) {
  if (id != kPropItem) {
    G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, pspec);
    return;
  }
  g_object_get_property(G_OBJECT(private_of(object).renderer.get()), "item", value);
}

static void gallery_cell_get_size(GtkCellRenderer *cell, GtkWidget * /*widget*/, GdkRectangle *area,
                                  gint *x, gint *y, gint *width, gint *height) {
  const bool albums = private_of(cell).albums;
  const int side = albums ? kTile : gallery::tile_size();
  const GdkRectangle wanted{0, 0, side, albums ? kAlbumCellHeight : side};
  const GdkRectangle place =
      area != nullptr ? centred({0, 0, area->width, area->height}, wanted.width, wanted.height)
                      : wanted;
  if (x != nullptr) *x = MAX(0, place.x);
  if (y != nullptr) *y = MAX(0, place.y);
  if (width != nullptr) *width = wanted.width;
  if (height != nullptr) *height = wanted.height;
}

/// The library knows no small picture that keeps its proportions, so a large one is reduced.
static void render_small(GtkCellRenderer *renderer, GdkDrawable *window, GtkWidget *widget,
                         PbItem *item, const GdkRectangle &place, const GdkRectangle *exposed) {
  const auto large = pb::Ref<GdkPixmap>::adopt(gdk_pixmap_new(window, kTile, kTile, -1));
  GdkRectangle whole{0, 0, kTile, kTile};
  fill_tile(large.get(), whole, nullptr);
  GdkRectangle picture = area_of_picture(item, whole);
  gtk_cell_renderer_render(renderer, large.get(), widget, &whole, &picture, &whole,
                           GtkCellRendererState{});
  cairo_t *cairo = gdk_cairo_create(window);
  if (exposed != nullptr) {
    gdk_cairo_rectangle(cairo, exposed);
    cairo_clip(cairo);
  }
  cairo_translate(cairo, place.x, place.y);
  const double scale = static_cast<double>(place.width) / kTile;
  cairo_scale(cairo, scale, scale);
  gdk_cairo_set_source_pixmap(cairo, large.get(), 0, 0);
  cairo_pattern_set_extend(cairo_get_source(cairo), CAIRO_EXTEND_PAD);
  cairo_rectangle(cairo, 0, 0, kTile, kTile);
  cairo_fill(cairo);
  cairo_destroy(cairo);
}

static void gallery_cell_render(GtkCellRenderer *cell, GdkDrawable *window, GtkWidget *widget,
                                GdkRectangle *background, GdkRectangle *area, GdkRectangle *exposed,
                                GtkCellRendererState flags) {
  const bool albums = private_of(cell).albums;
  const int side = albums ? kTile : gallery::tile_size();
  GdkRectangle place = centred(*area, side, albums ? kAlbumCellHeight : side);
  PbItem *item = item_of(cell);
  if (!albums) fill_tile(window, place, exposed);
  if (item == nullptr) return;
  if (item->is_cluster != 0) {
    gallery::draw_album(window, widget, private_of(cell).renderer.get(), item, place, exposed);
    return;
  }
  if (side < kTile) {
    render_small(private_of(cell).renderer.get(), window, widget, item, place, exposed);
    return;
  }
  place = area_of_picture(item, place);
  gtk_cell_renderer_render(private_of(cell).renderer.get(), window, widget, background, &place,
                           exposed, flags);
}

static void gallery_cell_finalize(GObject *object) {
  std::destroy_at(&private_of(object));
  G_OBJECT_CLASS(gallery_cell_parent_class)->finalize(object);
}

static void gallery_cell_class_init(GalleryCellClass *klass) {
  GObjectClass *object_class = G_OBJECT_CLASS(klass);
  object_class->set_property = gallery_cell_set_property;
  object_class->get_property = gallery_cell_get_property;
  object_class->finalize = gallery_cell_finalize;
  GTK_CELL_RENDERER_CLASS(klass)->get_size = gallery_cell_get_size;
  GTK_CELL_RENDERER_CLASS(klass)->render = gallery_cell_render;
  g_object_class_install_property(
      object_class, kPropItem,
      g_param_spec_object("item", "Item", "The item to draw", PB_TYPE_ITEM, G_PARAM_READWRITE));
}

static void gallery_cell_init(GalleryCell *cell) {
  auto *priv = new (gallery_cell_get_instance_private(cell)) GalleryCellPrivate{};
  priv->renderer = pb::Ref<GtkCellRenderer>::sink(pb_item_renderer_new());
}

namespace gallery {

GtkCellRenderer *make_cell(bool albums) {
  auto *cell = GTK_CELL_RENDERER(g_object_new(gallery_cell_get_type(), nullptr));
  private_of(cell).albums = albums;
  return cell;
}

}  // namespace gallery

#include "album-cell.hpp"

#include <glib-ptr.hpp>
#include <string>

#include "text.hpp"

namespace gallery {
namespace {

constexpr int kCoverHeight = 122;
/// The stack of pictures lies that much to the right of the cell's middle.
constexpr int kOffCentre = 4;
constexpr int kNameSize = 12;
constexpr int kCountSize = 10;

struct Colour {
  double red;
  double green;
  double blue;
};
constexpr Colour kNameColour{1, 1, 1};
constexpr Colour kCountColour{0.72, 0.74, 0.78};

/// The renderer draws its captions over the lower edge of the cover's place, so it gets a ground
/// of its own, of which the cover is taken.
void draw_cover(GdkDrawable *window, GtkWidget *widget, GtkCellRenderer *renderer,
                const GdkRectangle &place, const GdkRectangle &exposed) {
  GdkRectangle cover{place.x, place.y, place.width, kCoverHeight};
  if (!gdk_rectangle_intersect(&cover, &exposed, &cover)) return;
  const auto ground =
      pb::Ref<GdkPixmap>::adopt(gdk_pixmap_new(window, place.width, place.height, -1));
  GdkRectangle whole{0, 0, place.width, place.height};
  cairo_t *cairo = gdk_cairo_create(ground.get());
  gdk_cairo_set_source_color(cairo, &gtk_widget_get_style(widget)->base[GTK_STATE_NORMAL]);
  cairo_paint(cairo);
  cairo_destroy(cairo);
  gtk_cell_renderer_render(renderer, ground.get(), widget, &whole, &whole, &whole,
                           GtkCellRendererState{});

  cairo = gdk_cairo_create(window);
  gdk_cairo_set_source_pixmap(cairo, ground.get(), place.x - kOffCentre, place.y);
  gdk_cairo_rectangle(cairo, &cover);
  cairo_fill(cairo);
  cairo_destroy(cairo);
}

/// @return the line's height
int draw_line(cairo_t *cairo, GtkWidget *widget, const std::string &line, int points,
              const Colour &colour, const GdkRectangle &place) {
  const auto layout =
      pb::Ref<PangoLayout>::adopt(gtk_widget_create_pango_layout(widget, line.c_str()));
  PangoFontDescription *font = pango_font_description_copy(gtk_widget_get_style(widget)->font_desc);
  pango_font_description_set_size(font, points * PANGO_SCALE);
  pango_layout_set_font_description(layout.get(), font);
  pango_font_description_free(font);
  pango_layout_set_width(layout.get(), place.width * PANGO_SCALE);
  pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
  pango_layout_set_alignment(layout.get(), PANGO_ALIGN_CENTER);
  cairo_set_source_rgb(cairo, colour.red, colour.green, colour.blue);
  cairo_move_to(cairo, place.x, place.y);
  pango_cairo_show_layout(cairo, layout.get());
  int height = 0;
  pango_layout_get_pixel_size(layout.get(), nullptr, &height);
  return height;
}

}  // namespace

void draw_album(GdkDrawable *window, GtkWidget *widget, GtkCellRenderer *renderer, PbItem *item,
                const GdkRectangle &place, GdkRectangle *exposed) {
  const GdkRectangle &seen = exposed != nullptr ? *exposed : place;
  draw_cover(window, widget, renderer, place, seen);
  cairo_t *cairo = gdk_cairo_create(window);
  gdk_cairo_rectangle(cairo, &seen);
  cairo_clip(cairo);
  GdkRectangle line{place.x, place.y + kCoverHeight, place.width, 0};
  line.y += draw_line(cairo, widget, one_line(item->name != nullptr ? item->name : ""), kNameSize,
                      kNameColour, line);
  draw_line(cairo, widget, grouped(static_cast<guint64>(MAX(0, item->count))), kCountSize,
            kCountColour, line);
  cairo_destroy(cairo);
}

}  // namespace gallery

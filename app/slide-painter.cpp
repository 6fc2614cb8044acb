#include "slide-painter.hpp"

#include <pb-util-resource.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace gallery {
namespace {

constexpr int kPlayMark = 105;
constexpr int kTorn = 905;
constexpr int kTextMargin = 24;

using Size = Zoom::Size;

/// A preview is as large as its picture will be: it fills the box when it was scaled down.
double scale_for(const Slide &slide, Size picture, Size box) {
  constexpr double kThumbnail = 148;
  const double fit = std::min(box.width / picture.width, box.height / picture.height);
  const bool enlarge = slide.is_preview && std::max(picture.width, picture.height) >= kThumbnail;
  return enlarge ? fit : std::min(fit, 1.0);
}

void paint_pixbuf(cairo_t *cairo, GdkPixbuf *pixbuf, double x, double y, double scale) {
  cairo_save(cairo);
  cairo_translate(cairo, x, y);
  cairo_scale(cairo, scale, scale);
  gdk_cairo_set_source_pixbuf(cairo, pixbuf, 0, 0);
  // Beyond its edge an enlarged picture would fade into the ground.
  cairo_pattern_set_extend(cairo_get_source(cairo), CAIRO_EXTEND_PAD);
  cairo_rectangle(cairo, 0, 0, gdk_pixbuf_get_width(pixbuf), gdk_pixbuf_get_height(pixbuf));
  cairo_fill(cairo);
  cairo_restore(cairo);
}

Size size_of(GdkPixbuf *pixbuf) {
  return {static_cast<double>(gdk_pixbuf_get_width(pixbuf)),
          static_cast<double>(gdk_pixbuf_get_height(pixbuf))};
}

struct Point {
  double x;
  double y;
};

/// Whole pixels keep a picture at its own size sharp.
Point corner_of(Size picture, double scale, Size box) {
  return {static_cast<double>(static_cast<int>((box.width - picture.width * scale) / 2)),
          static_cast<double>(static_cast<int>((box.height - picture.height * scale) / 2))};
}

void paint_centred(cairo_t *cairo, GdkPixbuf *pixbuf, double scale, Size box) {
  const Point corner = corner_of(size_of(pixbuf), scale, box);
  paint_pixbuf(cairo, pixbuf, corner.x, corner.y, scale);
}

void paint_sentence(cairo_t *cairo, GtkWidget *widget, const std::string &sentence, double top,
                    Size box) {
  const auto layout = pb::Ref<PangoLayout>::adopt(gtk_widget_create_pango_layout(widget, nullptr));
  pango_layout_set_text(layout.get(), sentence.c_str(), -1);
  pango_layout_set_width(layout.get(),
                         static_cast<int>((box.width - 2 * kTextMargin) * PANGO_SCALE));
  pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
  pango_layout_set_alignment(layout.get(), PANGO_ALIGN_CENTER);
  cairo_set_source_rgb(cairo, 0.85, 0.85, 0.87);
  cairo_move_to(cairo, kTextMargin, top);
  pango_cairo_show_layout(cairo, layout.get());
}

void paint_bitmap_and_sentence(cairo_t *cairo, GtkWidget *widget, const std::string &sentence,
                               Size box) {
  const auto torn = pb::Ref<GdkPixbuf>::adopt(pb_get_pixbuf(kTorn));
  const double above = box.height * 0.38;
  double below = above;
  if (torn) {
    const Size size = size_of(torn.get());
    paint_pixbuf(cairo, torn.get(), static_cast<int>((box.width - size.width) / 2),
                 static_cast<int>(above - size.height / 2), 1);
    below = above + size.height / 2 + kTextMargin;
  }
  paint_sentence(cairo, widget, sentence, below, box);
}

}  // namespace

cairo_surface_t *SentPictures::get(cairo_surface_t *target, GdkPixbuf *picture) {
  const auto known = std::find_if(sent_.begin(), sent_.end(), [picture](const Sent &sent) {
    return sent.picture.get() == picture;
  });
  if (known != sent_.end()) return known->surface.get();

  const auto content =
      gdk_pixbuf_get_has_alpha(picture) ? CAIRO_CONTENT_COLOR_ALPHA : CAIRO_CONTENT_COLOR;
  SurfacePtr surface(cairo_surface_create_similar(target, content, gdk_pixbuf_get_width(picture),
                                                  gdk_pixbuf_get_height(picture)));
  cairo_t *cairo = cairo_create(surface.get());
  gdk_cairo_set_source_pixbuf(cairo, picture, 0, 0);
  cairo_paint(cairo);
  cairo_destroy(cairo);
  sent_.push_back({pb::Ref<GdkPixbuf>::share(picture), std::move(surface)});
  return sent_.back().surface.get();
}

void SentPictures::keep_only(std::initializer_list<const Slide *> slides) {
  std::erase_if(sent_, [&slides](const Sent &sent) {
    return std::none_of(slides.begin(), slides.end(), [&sent](const Slide *slide) {
      return slide != nullptr && slide->picture.get() == sent.picture.get();
    });
  });
}

Zoom::Size fitted_size(const Slide &slide, int width, int height) {
  if (!slide.picture) return {};
  const Size picture = size_of(slide.picture.get());
  const double scale =
      scale_for(slide, picture, {static_cast<double>(width), static_cast<double>(height)});
  return {picture.width * scale, picture.height * scale};
}

void paint_enlarged(cairo_t *cairo, GdkPixbuf *picture, const Zoom::Place &place, int width,
                    int height) {
  const Size size = size_of(picture);
  const int left = std::max(0, static_cast<int>(std::floor(place.x)));
  const int top = std::max(0, static_cast<int>(std::floor(place.y)));
  const int right = std::min(width, static_cast<int>(std::ceil(place.x + place.width)));
  const int bottom = std::min(height, static_cast<int>(std::ceil(place.y + place.height)));
  if (right <= left || bottom <= top) return;
  // Only what is in the window is scaled, whatever the size of the picture.
  const auto seen = pb::Ref<GdkPixbuf>::adopt(gdk_pixbuf_new(
      GDK_COLORSPACE_RGB, gdk_pixbuf_get_has_alpha(picture), 8, right - left, bottom - top));
  if (!seen) return;
  gdk_pixbuf_scale(picture, seen.get(), 0, 0, right - left, bottom - top, place.x - left,
                   place.y - top, place.width / size.width, place.height / size.height,
                   GDK_INTERP_BILINEAR);
  gdk_cairo_set_source_pixbuf(cairo, seen.get(), left, top);
  cairo_paint(cairo);
}

void paint_slide(cairo_t *cairo, GtkWidget *widget, SentPictures &sent, const Slide &slide,
                 int width, int height) {
  const Size box{static_cast<double>(width), static_cast<double>(height)};
  if (!slide.picture) {
    if (!slide.sentence.empty()) paint_bitmap_and_sentence(cairo, widget, slide.sentence, box);
    return;
  }
  const Size picture = size_of(slide.picture.get());
  const double scale = scale_for(slide, picture, box);
  if (scale == 1) {
    const Point corner = corner_of(picture, scale, box);
    cairo_set_source_surface(cairo, sent.get(cairo_get_target(cairo), slide.picture.get()),
                             corner.x, corner.y);
    cairo_paint(cairo);
  } else {
    paint_centred(cairo, slide.picture.get(), scale, box);
  }
  if (slide.has_play_mark) {
    const auto mark = pb::Ref<GdkPixbuf>::adopt(pb_get_pixbuf(kPlayMark));
    if (mark) paint_centred(cairo, mark.get(), 2, box);
  }
  if (slide.sentence.empty()) return;
  const double bottom = (box.height + picture.height * scale) / 2 + kTextMargin;
  paint_sentence(cairo, widget, slide.sentence, std::min(bottom, box.height - 3.0 * kTextMargin),
                 box);
}

}  // namespace gallery

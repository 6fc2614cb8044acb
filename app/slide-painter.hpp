/// Drawing of slides.
#pragma once

#include <cairo.h>
#include <gtk/gtk.h>

#include <glib-ptr.hpp>
#include <initializer_list>
#include <memory>
#include <vector>

#include "slide.hpp"
#include "zoom.hpp"

namespace gallery {

/// Pictures that lie on the X server already, so that moving them costs a copy there. A picture
/// of a whole screen takes longer to send than a frame lasts.
class SentPictures {
 public:
  /// (transfer none) The picture as a surface like the target's, sent when it has not been.
  cairo_surface_t *get(cairo_surface_t *target, GdkPixbuf *picture);
  /// Forgets all others.
  void keep_only(std::initializer_list<const Slide *> slides);

 private:
  using SurfacePtr = std::unique_ptr<cairo_surface_t, pb::FreeWith<cairo_surface_destroy>>;
  struct Sent {
    pb::Ref<GdkPixbuf> picture;
    SurfacePtr surface;
  };
  std::vector<Sent> sent_;
};

/// How large a slide's picture is when it fits into a box; nothing for a slide without one.
Zoom::Size fitted_size(const Slide &slide, int width, int height);

/// Draws an enlarged picture.
void paint_enlarged(cairo_t *cairo, GdkPixbuf *picture, const Zoom::Place &place, int width,
                    int height);

/// Draws a slide into a box of the given size at the origin, in the middle of it.
void paint_slide(cairo_t *cairo, GtkWidget *widget, SentPictures &sent, const Slide &slide,
                 int width, int height);

}  // namespace gallery

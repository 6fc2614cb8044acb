/// Drawing of slides.
#pragma once

#include <cairo.h>
#include <gtk/gtk.h>

#include "canvas.hpp"

namespace gallery {

/// Draws a slide into a box of the given size at the origin, in the middle of it.
void paint_slide(cairo_t *cairo, GtkWidget *widget, const Slide &slide, int width, int height);

}  // namespace gallery

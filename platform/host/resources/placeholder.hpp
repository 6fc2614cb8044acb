/// What is shown where a bitmap is missing.
#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>

#include "glib-ptr.hpp"

namespace phone::resources {

/// The side in pixels of what stands for a bitmap: that of a cell of the grid, or of a small mark.
int placeholder_side(int id);

/// Draws a crossed box, which nobody takes for a picture.
pb::Ref<GdkPixbuf> make_placeholder(int side);

}  // namespace phone::resources

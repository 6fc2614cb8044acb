/// What is to be seen of one picture.
#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <glib-ptr.hpp>
#include <string>

namespace gallery {

struct Slide {
  pb::Ref<GdkPixbuf> picture;  ///< NULL for none
  bool is_preview = false;     ///< a thumbnail: shown as large as the picture will be
  bool has_play_mark = false;
  std::string sentence;  ///< under the picture, or in its place
};

}  // namespace gallery

/// Decoding of one picture, for the decoder process. What is here may hang, grow or crash on a
/// bad file; the process around it is what makes that harmless.
#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <glib-ptr.hpp>

#include "pictures/header-reader.hpp"
#include "pictures/wire.hpp"

namespace phone::pictures {

using PixbufRef = pb::Ref<GdkPixbuf>;

struct Size {
  int width = 0;
  int height = 0;
};

/// How a picture is wanted.
struct Order {
  Size box;
  bool upright = false;
  bool enlarge = false;
  bool preview = false;
  bool opaque = false;
  /// Drawings are decoded here.
  bool drawings = false;
};

struct Decoded {
  wire::Status status = wire::Status::kDamaged;
  PixbufRef pixbuf;
  gint64 thumbnail_mtime = -1;
  /// The orientation that a picture inside the file tells where the header tells none.
  int orientation = 0;
};

/// Decodes an open file as ordered.
Decoded decode(int fd, const Order &order);

/// The size of a picture in a box: proportions kept, at least one pixel each way.
Size fit(Size picture, Size box, bool enlarge);

/// The picture at a size.
PixbufRef scaled(const PixbufRef &pixbuf, Size wanted);

/// The picture turned by an EXIF orientation, 1 to 8.
PixbufRef turned(const PixbufRef &pixbuf, int orientation);
/// The orientation that undoes another.
int opposite(int orientation);

/// Decodes a JPEG at the smallest scale that is not below `wanted`, which has the file's own
/// orientation. Nothing when it is damaged.
PixbufRef decode_jpeg(int fd, Size wanted);
PixbufRef decode_jpeg(std::span<const std::byte> data, Size wanted);

/// The preview inside a JPEG if it shows the same picture and is at least of the wanted size.
PixbufRef decode_preview(int fd, const Header &header, Size wanted);

/// Decodes HEIF and AVIF, upright, by an embedded thumbnail where that is large enough.
Decoded decode_heif(int fd, Size wanted);

/// Decodes what is left with gdk-pixbuf's loader for the format. The picture comes out in the
/// file's own orientation.
Decoded decode_with_loader(int fd, const Header &header);

/// Decodes the largest picture for looking at that a raw file holds; one made from the sensor's
/// data would take seconds. In the file's own orientation.
Decoded decode_raw(int fd, const Header &header, Size wanted);

/// Paints an SVG drawing at a size.
Decoded decode_drawing(int fd, Size wanted);

/// Loads every loader that decode() may need, so that nothing has to be opened afterwards.
void load_decoders();

/// The same for drawings: their loader and the fonts, many times as large.
void load_drawing_decoder();

}  // namespace phone::pictures

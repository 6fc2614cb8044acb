/// Writers of the small files that the sample library consists of.
#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <string>
#include <vector>

namespace samples {

using Bytes = std::vector<unsigned char>;

/// A JPEG of the picture, with an EXIF block when orientation is 1 to 8.
/// @param taken "YYYY:MM:DD HH:MM:SS", or empty for no date
Bytes jpeg(GdkPixbuf *picture, int orientation, const std::string &taken);

/// A GIF of equally sized frames of at most 128 colours from a fixed cube, shown in a loop.
Bytes gif(const std::vector<GdkPixbuf *> &frames);

Bytes webp(GdkPixbuf *picture);

/// A QuickTime film of JPEG frames, 5 a second.
Bytes film(const std::vector<Bytes> &frames, int width, int height);

/// Writes to a hidden name first, then renames.
void write_file(const std::string &path, const Bytes &bytes);

}  // namespace samples

/// Small pictures for tests.
#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <cstdint>
#include <iosfwd>
#include <string>

#include "glib-ptr.hpp"

namespace support {

/// A colour of a pixel; alpha is 255 in a pixbuf without alpha.
struct Rgba {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  std::uint8_t alpha = 255;

  bool operator==(const Rgba &) const = default;
};
void PrintTo(const Rgba &colour, std::ostream *out);

inline constexpr Rgba kRed{255, 0, 0};
inline constexpr Rgba kGreen{0, 255, 0};
inline constexpr Rgba kBlue{0, 0, 255};
inline constexpr Rgba kWhite{255, 255, 255};
inline constexpr Rgba kBlack{0, 0, 0};

using PixbufPtr = pb::Ref<GdkPixbuf>;

/// A pixbuf of one colour. It has an alpha channel when asked for, or when the colour is not
/// opaque.
PixbufPtr solid_pixbuf(int width, int height, Rgba colour, bool has_alpha = false);
/// A pixbuf whose four quarters have four colours: red and green above, blue and white below.
/// Tells every turn and mirroring from every other.
PixbufPtr quartered_pixbuf(int width, int height, bool has_alpha = false);
/// The colour at a place; fails the test for a place outside.
Rgba pixel_at(const GdkPixbuf *pixbuf, int x, int y);
/// Writes a file as "png", "jpeg" or "bmp" and returns its path.
std::string save_pixbuf(const GdkPixbuf *pixbuf, const std::string &path, const char *type = "png");
/// Writes a picture of one colour and returns its path.
std::string save_picture(const std::string &path, int width, int height, Rgba colour = kRed,
                         const char *type = "png");

}  // namespace support

#include "support/pixbufs.hpp"

#include <gtest/gtest.h>

#include <array>
#include <ostream>

namespace support {
namespace {

constexpr int kBitsPerSample = 8;

guint32 pixel_of(Rgba colour) {
  return static_cast<guint32>(colour.red) << 24 | static_cast<guint32>(colour.green) << 16 |
         static_cast<guint32>(colour.blue) << 8 | colour.alpha;
}

PixbufPtr empty_pixbuf(int width, int height, bool has_alpha) {
  return PixbufPtr::adopt(
      gdk_pixbuf_new(GDK_COLORSPACE_RGB, has_alpha, kBitsPerSample, width, height));
}

void fill_part(const PixbufPtr &pixbuf, int x, int y, int width, int height, Rgba colour) {
  if (width <= 0 || height <= 0) return;
  const auto part = PixbufPtr::adopt(gdk_pixbuf_new_subpixbuf(pixbuf.get(), x, y, width, height));
  gdk_pixbuf_fill(part.get(), pixel_of(colour));
}

}  // namespace

void PrintTo(const Rgba &colour, std::ostream *out) {
  *out << "rgba(" << int{colour.red} << ", " << int{colour.green} << ", " << int{colour.blue}
       << ", " << int{colour.alpha} << ")";
}

PixbufPtr solid_pixbuf(int width, int height, Rgba colour, bool has_alpha) {
  PixbufPtr pixbuf = empty_pixbuf(width, height, has_alpha || colour.alpha != 255);
  gdk_pixbuf_fill(pixbuf.get(), pixel_of(colour));
  return pixbuf;
}

PixbufPtr quartered_pixbuf(int width, int height, bool has_alpha) {
  PixbufPtr pixbuf = empty_pixbuf(width, height, has_alpha);
  const int left = width / 2;
  const int top = height / 2;
  fill_part(pixbuf, 0, 0, left, top, kRed);
  fill_part(pixbuf, left, 0, width - left, top, kGreen);
  fill_part(pixbuf, 0, top, left, height - top, kBlue);
  fill_part(pixbuf, left, top, width - left, height - top, kWhite);
  return pixbuf;
}

Rgba pixel_at(const GdkPixbuf *pixbuf, int x, int y) {
  if (x < 0 || y < 0 || x >= gdk_pixbuf_get_width(pixbuf) || y >= gdk_pixbuf_get_height(pixbuf)) {
    ADD_FAILURE() << "(" << x << ", " << y << ") lies outside " << gdk_pixbuf_get_width(pixbuf)
                  << "x" << gdk_pixbuf_get_height(pixbuf);
    return {};
  }
  const int channels = gdk_pixbuf_get_n_channels(pixbuf);
  const guint8 *at = gdk_pixbuf_read_pixels(pixbuf) +
                     static_cast<gsize>(y) * gdk_pixbuf_get_rowstride(pixbuf) +
                     static_cast<gsize>(x) * channels;
  return {at[0], at[1], at[2], channels == 4 ? at[3] : std::uint8_t{255}};
}

std::string save_pixbuf(const GdkPixbuf *pixbuf, const std::string &path, const char *type) {
  pb::ErrorPtr error;
  const gboolean saved = gdk_pixbuf_savev(const_cast<GdkPixbuf *>(pixbuf), path.c_str(), type,
                                          nullptr, nullptr, pb::out(error));
  if (!saved) ADD_FAILURE() << path << ": " << (error ? error->message : "not written");
  return path;
}

std::string save_picture(const std::string &path, int width, int height, Rgba colour,
                         const char *type) {
  return save_pixbuf(solid_pixbuf(width, height, colour).get(), path, type);
}

}  // namespace support

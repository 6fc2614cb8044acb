/// Writes the sample library: photobrowser-samples FOLDER [FILES IN THE LARGE ALBUM]
#include <fcntl.h>
#include <gdk/gdk.h>
#include <glib/gstdio.h>
#include <pango/pangocairo.h>
#include <sys/stat.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "glib-ptr.hpp"
#include "writers.hpp"

namespace {

using samples::Bytes;
using Pixbuf = pb::Ref<GdkPixbuf>;

constexpr gint64 kFirstDay = 1767268800;  // 2026-01-01 12:00 UTC
constexpr int kDefaultLarge = 10000;

struct Colour {
  double red, green, blue;
};

Colour colour_of(int number) {
  const double turn = std::fmod(number * 0.618034, 1.0) * 6.283185;
  return {0.55 + 0.35 * std::cos(turn), 0.55 + 0.35 * std::cos(turn - 2.0944),
          0.55 + 0.35 * std::cos(turn + 2.0944)};
}

void draw_text(cairo_t *cr, const std::string &text, double x, double y, int size) {
  PangoLayout *layout = pango_cairo_create_layout(cr);
  const pb::Ref<PangoLayout> owner = pb::Ref<PangoLayout>::adopt(layout);
  PangoFontDescription *font = pango_font_description_from_string("DejaVu Sans Bold");
  pango_font_description_set_absolute_size(font, size * PANGO_SCALE);
  pango_layout_set_font_description(layout, font);
  pango_font_description_free(font);
  pango_layout_set_text(layout, text.c_str(), -1);
  int width = 0;
  int height = 0;
  pango_layout_get_pixel_size(layout, &width, &height);
  cairo_move_to(cr, x - width / 2.0, y - height / 2.0);
  pango_cairo_show_layout(cr, layout);
}

/// Hills under a sun, so that up and down can be told, with a caption.
Pixbuf landscape(int number, int width, int height, const std::string &caption) {
  cairo_surface_t *surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
  cairo_t *cr = cairo_create(surface);
  const Colour sky = colour_of(number);
  cairo_pattern_t *gradient = cairo_pattern_create_linear(0, 0, 0, height);
  cairo_pattern_add_color_stop_rgb(gradient, 0, sky.red * 0.6, sky.green * 0.6, sky.blue * 0.9);
  cairo_pattern_add_color_stop_rgb(gradient, 1, sky.red, sky.green, sky.blue);
  cairo_set_source(cr, gradient);
  cairo_paint(cr);
  cairo_pattern_destroy(gradient);

  cairo_set_source_rgb(cr, 1.0, 0.93, 0.6);
  cairo_arc(cr, width * (0.2 + 0.6 * std::fmod(number * 0.37, 1.0)), height * 0.22,
            std::min(width, height) * 0.09, 0, 6.2832);
  cairo_fill(cr);
  for (int ridge = 0; ridge < 3; ++ridge) {
    const Colour hill = colour_of(number + 3 + ridge);
    const double shade = 0.65 - 0.18 * ridge;
    cairo_set_source_rgb(cr, hill.red * shade, hill.green * shade, hill.blue * shade);
    cairo_move_to(cr, 0, height);
    for (int x = 0; x <= width; x += 8) {
      const double wave = std::sin(x * (2.5 + ridge) / width * 3.1 + number * 1.7 + ridge);
      cairo_line_to(cr, x, height * (0.55 + 0.13 * ridge) + wave * height * 0.07);
    }
    cairo_line_to(cr, width, height);
    cairo_fill(cr);
  }
  cairo_set_source_rgb(cr, 1, 1, 1);
  if (!caption.empty()) draw_text(cr, caption, width / 2.0, height * 0.42, height / 8);
  cairo_destroy(cr);

  Pixbuf result = Pixbuf::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height));
  const unsigned char *from = cairo_image_surface_get_data(surface);
  for (int y = 0; y < height; ++y) {
    const auto *line = reinterpret_cast<const guint32 *>(
        from + static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(surface));
    guchar *to = gdk_pixbuf_get_pixels(result.get()) +
                 static_cast<std::ptrdiff_t>(y) * gdk_pixbuf_get_rowstride(result.get());
    for (int x = 0; x < width; ++x) {
      *to++ = static_cast<guchar>(line[x] >> 16);
      *to++ = static_cast<guchar>(line[x] >> 8);
      *to++ = static_cast<guchar>(line[x]);
    }
  }
  cairo_surface_destroy(surface);
  return result;
}

/// The picture as a camera held in this orientation stores it.
Pixbuf stored_for(const Pixbuf &upright, int orientation) {
  const auto turn = [](const Pixbuf &p, GdkPixbufRotation by) {
    return Pixbuf::adopt(gdk_pixbuf_rotate_simple(p.get(), by));
  };
  const auto mirror = [](const Pixbuf &p, bool horizontal) {
    return Pixbuf::adopt(gdk_pixbuf_flip(p.get(), horizontal));
  };
  switch (orientation) {
    case 2:
      return mirror(upright, true);
    case 3:
      return turn(upright, GDK_PIXBUF_ROTATE_UPSIDEDOWN);
    case 4:
      return mirror(upright, false);
    case 5:
      return mirror(turn(upright, GDK_PIXBUF_ROTATE_CLOCKWISE), true);
    case 6:
      return turn(upright, GDK_PIXBUF_ROTATE_COUNTERCLOCKWISE);
    case 7:
      return mirror(turn(upright, GDK_PIXBUF_ROTATE_COUNTERCLOCKWISE), true);
    case 8:
      return turn(upright, GDK_PIXBUF_ROTATE_CLOCKWISE);
    default:
      return upright;
  }
}

std::string taken_on(int day) {
  GDateTime *when = g_date_time_new_from_unix_utc(kFirstDay + static_cast<gint64>(day) * 86400);
  const pb::StringPtr text(g_date_time_format(when, "%Y:%m:%d %H:%M:%S"));
  g_date_time_unref(when);
  return text.get();
}

std::string folder(const std::string &root, const char *name) {
  std::string path = root + "/" + name;
  if (g_mkdir_with_parents(path.c_str(), 0755) != 0) {
    std::fprintf(stderr, "%s cannot be made.\n", path.c_str());
    std::exit(1);
  }
  return path;
}

void write_holiday(const std::string &root) {
  const std::string place = folder(root, "Holiday");
  for (int i = 1; i <= 24; ++i) {
    const bool tall = i % 5 == 0;
    const Pixbuf view = landscape(i, tall ? 900 : 1600, tall ? 1600 : 1000, "");
    std::array<char, 32> name{};
    g_snprintf(name.data(), name.size(), "/IMG_%04d.jpg", i);
    samples::write_file(place + name.data(), samples::jpeg(view.get(), 1, taken_on(200 + i)));
  }
}

void write_orientations(const std::string &root) {
  const std::string place = folder(root, "Turned camera");
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const Pixbuf upright =
        landscape(40 + orientation, 1200, 800, "turned " + std::to_string(orientation));
    const Pixbuf stored = stored_for(upright, orientation);
    samples::write_file(place + "/turned-" + std::to_string(orientation) + ".jpg",
                        samples::jpeg(stored.get(), orientation, taken_on(240 + orientation)));
  }
}

void write_formats(const std::string &root) {
  const std::string place = folder(root, "Formats");
  const Pixbuf png = landscape(61, 800, 600, "PNG");
  pb::ErrorPtr error;
  if (!gdk_pixbuf_save(png.get(), (place + "/drawing.png").c_str(), "png", pb::out(error),
                       nullptr)) {
    std::fprintf(stderr, "%s\n", error->message);
    std::exit(1);
  }
  std::array<Pixbuf, 6> frames;
  std::vector<GdkPixbuf *> borrowed;
  std::vector<Bytes> film_frames;
  for (int i = 0; i < 6; ++i) {
    frames[i] = landscape(62 + i, 320, 240, "frame " + std::to_string(i + 1));
    borrowed.push_back(frames[i].get());
    film_frames.push_back(samples::jpeg(frames[i].get(), 0, ""));
  }
  samples::write_file(place + "/moving.gif", samples::gif(borrowed));
  samples::write_file(place + "/modern.webp", samples::webp(landscape(70, 800, 600, "WebP").get()));
  samples::write_file(place + "/film.mov", samples::film(film_frames, 320, 240));

  const Bytes whole = samples::jpeg(landscape(71, 1600, 1200, "cut").get(), 1, taken_on(250));
  samples::write_file(place + "/cut off.jpg", Bytes(whole.begin(), whole.begin() + 300));
  samples::write_file(place + "/empty.jpg", {});
  samples::write_file(place + "/\"quoted\" name\nin two lines.jpg",
                      samples::jpeg(landscape(72, 640, 480, "quoted").get(), 1, taken_on(251)));
  samples::write_file(place + "/f\xfcnf.jpg",
                      samples::jpeg(landscape(73, 640, 480, "bytes").get(), 1, taken_on(252)));
}

void write_large(const std::string &root, int files) {
  const std::string place = folder(root, "Ten thousand");
  constexpr int kDistinct = 96;
  std::vector<Bytes> pictures;
  for (int i = 0; i < kDistinct; ++i) {
    pictures.push_back(samples::jpeg(landscape(100 + i, 320, 240, "").get(), 0, ""));
  }
  for (int i = 0; i < files; ++i) {
    std::array<char, 32> name{};
    g_snprintf(name.data(), name.size(), "/P%06d.jpg", i);
    const std::string path = place + name.data();
    samples::write_file(path, pictures[i % kDistinct]);
    const std::array<timespec, 2> times{{{kFirstDay - i * 600L, 0}, {kFirstDay - i * 600L, 0}}};
    if (utimensat(AT_FDCWD, path.c_str(), times.data(), 0) != 0) {
      std::fprintf(stderr, "The time of %s cannot be set.\n", path.c_str());
      std::exit(1);
    }
  }
}

}  // namespace

int main(int argc, char **argv) {
  if (argc < 2) {
    std::fprintf(stderr, "Usage: photobrowser-samples FOLDER [FILES IN THE LARGE ALBUM]\n");
    return 2;
  }
  const std::string root = argv[1];
  const int large = argc > 2 ? std::atoi(argv[2]) : kDefaultLarge;
  write_holiday(root);
  write_orientations(root);
  write_formats(root);
  if (large > 0) write_large(root, large);
  return 0;
}

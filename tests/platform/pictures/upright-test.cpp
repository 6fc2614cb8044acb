#include <picture-loader.h>
#include <sys/stat.h>
#include <thumbnail-manager.h>

#include <cstdlib>

#include "file-bytes.hpp"
#include "main-loop.hpp"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"
#include "thumbnail/disk.hpp"

namespace phone::pictures {
namespace {

using support::PixbufPtr;
using test::Bytes;
using test::run_until;

struct Point {
  int x;
  int y;
};

/// A scene without symmetries that looks the same at every size.
support::Rgba colour_of_scene(double across, double down) {
  return {static_cast<std::uint8_t>(30 + 200 * across), static_cast<std::uint8_t>(30 + 200 * down),
          static_cast<std::uint8_t>(30 + 200 * across * (1 - down))};
}

void set_pixel(GdkPixbuf *pixbuf, Point at, support::Rgba colour) {
  guchar *pixel = gdk_pixbuf_get_pixels(pixbuf) +
                  static_cast<ptrdiff_t>(at.y) * gdk_pixbuf_get_rowstride(pixbuf) +
                  static_cast<ptrdiff_t>(at.x) * 3;
  pixel[0] = colour.red;
  pixel[1] = colour.green;
  pixel[2] = colour.blue;
}

/// Where a pixel of the upright picture lies in a file of an orientation.
Point place_in_file(Point upright, int width, int height, int orientation) {
  const auto [x, y] = upright;
  const int last_x = width - 1;
  const int last_y = height - 1;
  const Point places[] = {{x, y},          {x, y}, {last_x - x, y}, {last_x - x, last_y - y},
                          {x, last_y - y}, {y, x}, {y, last_x - x}, {last_y - y, last_x - x},
                          {last_y - y, x}};
  return places[orientation];
}

/// The scene as a file of an orientation holds it.
PixbufPtr scene(int width, int height, int orientation) {
  const bool lying = orientation > 4;
  PixbufPtr stored = support::solid_pixbuf(lying ? height : width, lying ? width : height, {});
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      set_pixel(stored.get(), place_in_file({x, y}, width, height, orientation),
                colour_of_scene((x + 0.5) / width, (y + 0.5) / height));
    }
  }
  return stored;
}

struct Difference {
  double mean = 0;
  int largest = 0;
};

/// How far a picture is from the upright scene.
Difference difference_from_scene(const GdkPixbuf *pixbuf) {
  const int width = gdk_pixbuf_get_width(pixbuf);
  const int height = gdk_pixbuf_get_height(pixbuf);
  Difference difference;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const support::Rgba is = support::pixel_at(pixbuf, x, y);
      const support::Rgba wanted = colour_of_scene((x + 0.5) / width, (y + 0.5) / height);
      for (const int off : {is.red - wanted.red, is.green - wanted.green, is.blue - wanted.blue}) {
        difference.mean += std::abs(off);
        difference.largest = std::max(difference.largest, std::abs(off));
      }
    }
  }
  difference.mean /= 3.0 * width * height;
  return difference;
}

/// One kind of file that can carry an orientation.
struct Kind {
  const char *name;
  int width;
  int height;
  Bytes (*make)(int width, int height, int orientation);
};

void PrintTo(const Kind &kind, std::ostream *out) { *out << kind.name; }

Bytes jpeg_with(int width, int height, int orientation, const Bytes &preview) {
  return test::with_exif(test::jpeg_of(scene(width, height, orientation).get()),
                         {.orientation = orientation, .preview = preview});
}

const Kind kKinds[] = {
    {"jpeg", 320, 240, [](int w, int h, int o) { return jpeg_with(w, h, o, {}); }},
    {"jpeg_with_preview", 640, 480,
     [](int w, int h, int o) {
       return jpeg_with(w, h, o, test::jpeg_of(scene(160, 120, o).get()));
     }},
    {"large_jpeg", 1184, 888, [](int w, int h, int o) { return jpeg_with(w, h, o, {}); }},
    {"png", 320, 240,
     [](int w, int h, int o) {
       return test::with_png_chunk(test::saved_as(scene(w, h, o).get(), "png"), "eXIf",
                                   test::exif_block({.orientation = o}));
     }},
    {"webp", 320, 240,
     [](int w, int h, int o) {
       return test::webp_with_exif(scene(w, h, o).get(), test::exif_block({.orientation = o}));
     }},
    {"tiff", 320, 240, [](int w, int h, int o) { return test::tiff_of(scene(w, h, o).get(), o); }},
    {"heif", 320, 240,
     [](int w, int h, int o) { return test::heif_of(scene(w, h, o).get(), "heif", o); }},
    {"avif", 320, 240,
     [](int w, int h, int o) { return test::heif_of(scene(w, h, o).get(), "avif", o); }},
    {"raw", 640, 480,
     [](int w, int h, int o) {
       const bool lying = o > 4;
       return test::dng_of(test::jpeg_of(scene(w / 2, h / 2, o).get()), (lying ? h : w) / 2,
                           (lying ? w : h) / 2, lying ? h : w, lying ? w : h, o);
     }},
};

class UprightPicture : public support::GlibTest,
                       public testing::WithParamInterface<std::tuple<Kind, int>> {
 protected:
  void SetUp() override {
    const auto &[kind, orientation] = GetParam();
    const Bytes bytes = kind.make(kind.width, kind.height, orientation);
    if (bytes.empty()) GTEST_SKIP() << "no encoder for " << kind.name;
    path_ = dir_.write("picture", bytes);
  }
  void TearDown() override {
    picture_loader_shutdown();
    thumbnail_manager_shutdown();
  }

  static void expect_the_scene(const GdkPixbuf *pixbuf, int width, int height) {
    ASSERT_NE(pixbuf, nullptr);
    EXPECT_EQ(gdk_pixbuf_get_width(pixbuf), width);
    EXPECT_EQ(gdk_pixbuf_get_height(pixbuf), height);
    const Difference difference = difference_from_scene(pixbuf);
    EXPECT_LT(difference.mean, 3);
    EXPECT_LT(difference.largest, 20);
  }
  struct stat info() const {
    struct stat info {};
    EXPECT_EQ(lstat(path_.c_str(), &info), 0);
    return info;
  }

  support::TempDir dir_;
  std::string path_;
};

TEST_P(UprightPicture, IsSeenInTheGrid) {
  PixbufRef pixbuf;
  run_until([&] {
    GdkPixbuf *ready = nullptr;
    fm_svc_thumb_mgr_get_thumbnail(1, 0, path_.c_str(), FALSE, 0, &ready);
    pixbuf = PixbufRef::adopt(ready);
    return static_cast<bool>(pixbuf);
  });

  expect_the_scene(pixbuf.get(), 148, 111);
}

TEST_P(UprightPicture, IsSeenOnACover) {
  thumbnail::request(path_);
  ASSERT_TRUE(run_until([this] { return thumbnail::is_stored(info()); }));

  const PixbufRef cover = thumbnail::load_stored(thumbnail::stored_path(info()));

  expect_the_scene(cover.get(), 148, 111);
}

TEST_P(UprightPicture, IsSeenInTheViewer) {
  PixbufRef pixbuf;
  bool told = false;
  struct Place {
    PixbufRef &pixbuf;
    bool &told;
  } place{pixbuf, told};
  picture_loader_load(
      path_.c_str(), 300, 225,
      [](guint, GdkPixbuf *loaded, const gchar *, gpointer user_data) {
        auto *to = static_cast<Place *>(user_data);
        if (loaded != nullptr) to->pixbuf = PixbufRef::share(loaded);
        to->told = true;
      },
      &place);
  ASSERT_TRUE(run_until([&told] { return told; }));

  expect_the_scene(pixbuf.get(), 300, 225);
}

std::string case_name(const testing::TestParamInfo<std::tuple<Kind, int>> &one) {
  return std::string(std::get<0>(one.param).name) + "_" + std::to_string(std::get<1>(one.param));
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, UprightPicture,
                         testing::Combine(testing::ValuesIn(kKinds), testing::Range(1, 9)),
                         case_name);

}  // namespace
}  // namespace phone::pictures

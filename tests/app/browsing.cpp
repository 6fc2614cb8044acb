#include "app/browsing.hpp"

#include <gtk/gtk.h>
#include <sys/stat.h>
#include <sys/time.h>

// X11 names a macro None, which the test framework does not bear.
#include <gdk/gdkx.h>

#include <X11/extensions/XTest.h>

#include <algorithm>
#include <cstdlib>

namespace gallery_test {
namespace {

constexpr int kTolerance = 14;  // thumbnails are JPEG files
constexpr GdkRectangle kScreen{0, 0, 480, 800};
constexpr time_t kNewest = 1767268800;  // 2026-01-01 12:00 UTC

bool is_near(const guchar *pixel, support::Rgba colour) {
  return std::abs(pixel[0] - colour.red) <= kTolerance &&
         std::abs(pixel[1] - colour.green) <= kTolerance &&
         std::abs(pixel[2] - colour.blue) <= kTolerance;
}

}  // namespace

void Browsing::make_older(const std::string &path) {
  const time_t time = kNewest - 3600L * files_++;
  const struct timeval times[2] = {{time, 0}, {time, 0}};
  EXPECT_EQ(utimes(path.c_str(), times), 0);
}

std::string Browsing::add_picture(const std::string &name, support::Rgba colour, int width,
                                  int height) {
  const std::string folder =
      name.substr(0, name.rfind('/') == std::string::npos ? 0 : name.rfind('/'));
  if (!folder.empty() && !support::exists(library_.path(folder))) library_.make_dir(folder);
  const std::string path = library_.path(name);
  support::save_picture(path, width, height, colour);
  make_older(path);
  return path;
}

std::string Browsing::add_file(const std::string &name, const std::string &bytes) {
  const std::string path = library_.write(name, bytes);
  make_older(path);
  return path;
}

void Browsing::start(std::vector<std::string> places) {
  if (places.empty()) places.push_back(library_.path());
  program_ = std::make_unique<Program>(display_, places);
  ASSERT_TRUE(screen_.wait_for_window(10000)) << "it says: " << program_->stop().err;
}

std::string Browsing::stop() {
  const Outcome outcome = program_->stop();
  program_.reset();
  EXPECT_EQ(outcome.exit_code, 0) << outcome.err;
  return outcome.err;
}

void Browsing::TearDown() {
  if (program_) stop();
}

void Browsing::hold(int from_x, int to_x) const {
  Display *display = gdk_x11_get_default_xdisplay();
  XTestFakeMotionEvent(display, -1, from_x, 400, 0);
  tour::pause(30);
  XTestFakeButtonEvent(display, 1, True, 0);
  for (int i = 1; i <= 10; ++i) {
    XTestFakeMotionEvent(display, -1, from_x + (to_x - from_x) * i / 10, 400, 0);
    tour::pause(10);
  }
}

bool Browsing::has_title(const std::string &title) const {
  const bool has = eventually([&] { return screen_.title() == title; });
  if (!has) ADD_FAILURE() << "the title is " << screen_.title();
  return has;
}

Patch Browsing::look_within(const GdkRectangle &area, support::Rgba colour) const {
  const auto photograph = screen_.photograph();
  GdkPixbuf *picture = photograph.get();
  const int channels = gdk_pixbuf_get_n_channels(picture);
  const guchar *pixels = gdk_pixbuf_read_pixels(picture);
  const int stride = gdk_pixbuf_get_rowstride(picture);
  Patch patch{gdk_pixbuf_get_width(picture), gdk_pixbuf_get_height(picture), -1, -1, 0};
  for (int y = area.y; y < area.y + area.height; ++y) {
    for (int x = area.x; x < area.x + area.width; ++x) {
      if (!is_near(pixels + static_cast<std::ptrdiff_t>(y) * stride + x * channels, colour))
        continue;
      patch = {std::min(patch.left, x), std::min(patch.top, y), std::max(patch.right, x),
               std::max(patch.bottom, y), patch.pixels + 1};
    }
  }
  return patch;
}

std::optional<Patch> Browsing::find(support::Rgba colour, int pixels) const {
  Patch patch{};
  const bool found = eventually([&] {
    patch = look_within(kScreen, colour);
    return patch.pixels >= pixels;
  });
  if (!found) return std::nullopt;
  return patch;
}

bool Browsing::is_gone(support::Rgba colour) const {
  return eventually([&] { return look_within(kScreen, colour).pixels < 50; });
}

}  // namespace gallery_test

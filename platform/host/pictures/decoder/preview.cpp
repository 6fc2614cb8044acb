#include <unistd.h>

#include <cmath>
#include <vector>

#include "pictures/decoder/decode.hpp"

namespace phone::pictures {
namespace {

constexpr gint64 kLargestPreview = 256 * 1024;
/// Previews are rounded to whole pixels and blocks.
constexpr double kSameProportions = 0.02;
constexpr int kDark = 40;

bool is_dark(const GdkPixbuf *pixbuf, int x, int y, int width, int height) {
  const guchar *pixels = gdk_pixbuf_read_pixels(pixbuf);
  const int stride = gdk_pixbuf_get_rowstride(pixbuf);
  const int channels = gdk_pixbuf_get_n_channels(pixbuf);
  for (int row = y; row < y + height; ++row) {
    const guchar *line = pixels + static_cast<std::ptrdiff_t>(row) * stride;
    for (int i = x * channels; i < (x + width) * channels; ++i) {
      if (line[i] > kDark) return false;
    }
  }
  return true;
}

/// Cameras put wide pictures into a preview of fixed proportions, between dark bars. Returns the
/// picture between them, or nothing when what is cut off is not dark.
PixbufRef without_bars(const PixbufRef &preview, Size main) {
  const int width = gdk_pixbuf_get_width(preview.get());
  const int height = gdk_pixbuf_get_height(preview.get());
  const Size inner = fit(main, {width, height}, true);
  const int x = (width - inner.width) / 2;
  const int y = (height - inner.height) / 2;
  const bool dark = x > 0 ? is_dark(preview.get(), 0, 0, x, height) &&
                                is_dark(preview.get(), width - x, 0, x, height)
                          : is_dark(preview.get(), 0, 0, width, y) &&
                                is_dark(preview.get(), 0, height - y, width, y);
  // The compression has smeared the bars over the picture's edge.
  constexpr int kSmeared = 2;
  if (!dark || inner.width <= 2 * kSmeared || inner.height <= 2 * kSmeared) return {};
  const int dx = x > 0 ? kSmeared : 0;
  const int dy = y > 0 ? kSmeared : 0;
  return PixbufRef::adopt(gdk_pixbuf_new_subpixbuf(preview.get(), x + dx, y + dy,
                                                   inner.width - 2 * dx, inner.height - 2 * dy));
}

bool same_proportions(Size one, Size other) {
  const double ratio = static_cast<double>(one.width) * other.height /
                       (static_cast<double>(one.height) * other.width);
  return std::abs(ratio - 1) <= kSameProportions;
}

}  // namespace

PixbufRef decode_preview(int fd, const Header &header, Size wanted) {
  if (header.preview_length <= 0 || header.preview_length > kLargestPreview) return {};
  std::vector<std::byte> data(static_cast<size_t>(header.preview_length));
  if (pread(fd, data.data(), data.size(), header.preview_offset) !=
      static_cast<ssize_t>(data.size())) {
    return {};
  }
  const auto inner = read_header(data);
  if (!inner || inner->format != Format::kJpeg || inner->refused) return {};
  const Size size{inner->width, inner->height};
  if (size.width < wanted.width || size.height < wanted.height) return {};
  PixbufRef preview = decode_jpeg(data, size);
  const Size main{header.width, header.height};
  if (!preview || same_proportions(size, main)) return preview;
  preview = without_bars(preview, main);
  if (preview && (gdk_pixbuf_get_width(preview.get()) < wanted.width ||
                  gdk_pixbuf_get_height(preview.get()) < wanted.height)) {
    return {};
  }
  return preview;
}

}  // namespace phone::pictures

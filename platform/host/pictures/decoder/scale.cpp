#include <algorithm>
#include <cmath>
#include <vector>

#include "pictures/decoder/decode.hpp"

namespace phone::pictures {
namespace {

/// Weights are in 16384ths.
constexpr int kWeightBits = 14;
constexpr std::uint32_t kWhole = 1u << kWeightBits;
/// What is kept between the two directions: 8 bits before the point and 8 behind it.
constexpr int kKeptBits = 8;
constexpr int kChannels = 3;

/// For each place of a result along one direction, which places of the source it covers and by
/// how much.
class Coverage {
 public:
  Coverage(int source, int result) : begins_(static_cast<size_t>(result) + 1) {
    const double step = static_cast<double>(source) / result;
    for (int i = 0; i < result; ++i) {
      add(i * step, std::min((i + 1) * step, static_cast<double>(source)));
      begins_[static_cast<size_t>(i) + 1] = weights_.size();
    }
  }

  struct Part {
    int first = 0;
    std::span<const std::uint32_t> weights;
  };
  [[nodiscard]] Part at(int i) const {
    const auto place = static_cast<size_t>(i);
    return {firsts_[place],
            std::span(weights_).subspan(begins_[place], begins_[place + 1] - begins_[place])};
  }

 private:
  void add(double from, double to) {
    const int first = static_cast<int>(from);
    const int last = std::max(static_cast<int>(std::ceil(to)) - 1, first);
    firsts_.push_back(first);
    std::uint32_t left = kWhole;
    for (int i = first; i < last; ++i) {
      const double covered = std::min(i + 1.0, to) - std::max(static_cast<double>(i), from);
      const auto weight =
          std::min(static_cast<std::uint32_t>(std::lround(covered / (to - from) * kWhole)), left);
      weights_.push_back(weight);
      left -= weight;
    }
    // The rest, so that the sum is exact.
    weights_.push_back(left);
  }

  std::vector<int> firsts_;
  std::vector<size_t> begins_;
  std::vector<std::uint32_t> weights_;
};

/// Adds a row of the source to the sums above one row of the result.
void add_row(const guchar *from, std::uint32_t weight, std::vector<std::uint32_t> &sums) {
  for (size_t i = 0; i < sums.size(); ++i) sums[i] += weight * from[i];
}

void sum_up_row(const std::vector<std::uint32_t> &sums, const Coverage &across, int width,
                guchar *to) {
  constexpr std::uint32_t kHalf = 1u << (kWeightBits + kKeptBits - 1);
  constexpr int kDropped = kWeightBits - kKeptBits;
  const auto rounded = [](std::uint32_t total) {
    return static_cast<guchar>(std::min(total >> (kWeightBits + kKeptBits), 255u));
  };
  for (int x = 0; x < width; ++x, to += kChannels) {
    const Coverage::Part part = across.at(x);
    const std::uint32_t *from = sums.data() + static_cast<size_t>(part.first) * kChannels;
    std::uint32_t red = kHalf, green = kHalf, blue = kHalf;
    for (const std::uint32_t weight : part.weights) {
      red += (from[0] >> kDropped) * weight;
      green += (from[1] >> kDropped) * weight;
      blue += (from[2] >> kDropped) * weight;
      from += kChannels;
    }
    to[0] = rounded(red);
    to[1] = rounded(green);
    to[2] = rounded(blue);
  }
}

/// Each pixel of the result is the mean of what it covers.
PixbufRef reduced(const PixbufRef &pixbuf, Size from, Size to) {
  PixbufRef result =
      PixbufRef::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, to.width, to.height));
  if (!result) return {};
  const Coverage across(from.width, to.width);
  const Coverage down(from.height, to.height);
  const guchar *source = gdk_pixbuf_read_pixels(pixbuf.get());
  const std::ptrdiff_t source_stride = gdk_pixbuf_get_rowstride(pixbuf.get());
  guchar *target = gdk_pixbuf_get_pixels(result.get());
  const std::ptrdiff_t target_stride = gdk_pixbuf_get_rowstride(result.get());
  std::vector<std::uint32_t> sums(static_cast<size_t>(from.width) * kChannels);
  for (int y = 0; y < to.height; ++y) {
    std::fill(sums.begin(), sums.end(), 0);
    const Coverage::Part part = down.at(y);
    const guchar *row = source + part.first * source_stride;
    for (const std::uint32_t weight : part.weights) {
      add_row(row, weight, sums);
      row += source_stride;
    }
    sum_up_row(sums, across, to.width, target + y * target_stride);
  }
  return result;
}

}  // namespace

PixbufRef scaled(const PixbufRef &pixbuf, Size wanted) {
  const Size size{gdk_pixbuf_get_width(pixbuf.get()), gdk_pixbuf_get_height(pixbuf.get())};
  if (size.width == wanted.width && size.height == wanted.height) return pixbuf;
  const bool smaller = size.width >= wanted.width && size.height >= wanted.height;
  if (smaller && !gdk_pixbuf_get_has_alpha(pixbuf.get())) return reduced(pixbuf, size, wanted);
  return PixbufRef::adopt(
      gdk_pixbuf_scale_simple(pixbuf.get(), wanted.width, wanted.height, GDK_INTERP_BILINEAR));
}

}  // namespace phone::pictures

#include "quarters.hpp"

#include <cstdlib>

#include "support/pixbufs.hpp"

namespace test {
namespace {

/// Lossy formats come close to a colour, not up to it.
char letter_of(support::Rgba colour) {
  constexpr int kNear = 48;
  const std::pair<char, support::Rgba> known[] = {
      {'R', support::kRed}, {'G', support::kGreen}, {'B', support::kBlue}, {'W', support::kWhite}};
  for (const auto &[letter, other] : known) {
    if (std::abs(colour.red - other.red) < kNear && std::abs(colour.green - other.green) < kNear &&
        std::abs(colour.blue - other.blue) < kNear) {
      return letter;
    }
  }
  return '?';
}

}  // namespace

std::string quarters(const GdkPixbuf *pixbuf) {
  const int width = gdk_pixbuf_get_width(pixbuf);
  const int height = gdk_pixbuf_get_height(pixbuf);
  std::string letters;
  for (const int y : {height / 4, height * 3 / 4}) {
    for (const int x : {width / 4, width * 3 / 4}) {
      letters += letter_of(support::pixel_at(pixbuf, x, y));
    }
  }
  return letters;
}

}  // namespace test

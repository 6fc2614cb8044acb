// Draws the picture of something under way, a ring of dots that a bright one runs around, as an
// animated GIF: indicator FILE
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <map>
#include <numbers>
#include <string>
#include <utility>

namespace {

constexpr int kSide = 44;  // pixels
constexpr int kDots = 12;  // and as many frames
constexpr int kFrameHundredths = 8;
constexpr double kRing = 17;
constexpr double kLargestDot = 4;
constexpr double kSmallestDot = 1.7;
constexpr int kColourBits = 4;
constexpr int kTransparent = 0;  // index of the colour

using Frame = std::array<std::uint8_t, std::size_t{kSide} * kSide>;

void add_word(std::string &out, int word) {
  out += static_cast<char>(word & 0xff);
  out += static_cast<char>(word >> 8);
}

/// How far behind the bright dot a dot is, from 0 to 1.
double age_of(int dot, int frame) {
  return static_cast<double>((frame - dot + kDots) % kDots) / (kDots - 1);
}

/// The dots fade from blue to grey, which both stand out on light and dark.
std::string palette() {
  constexpr std::array<int, 3> kBright{0x2a, 0x74, 0xd5};
  constexpr std::array<int, 3> kFaded{0x96, 0x9c, 0xa3};
  std::string colours(3, '\0');
  for (int step = 0; step < (1 << kColourBits) - 1; ++step) {
    const double age = std::min(1.0, static_cast<double>(step) / (kDots - 1));
    for (std::size_t channel = 0; channel < kBright.size(); ++channel) {
      colours += static_cast<char>(std::lround(std::lerp(kBright[channel], kFaded[channel], age)));
    }
  }
  return colours;
}

Frame draw(int frame) {
  Frame pixels{};
  for (int dot = 0; dot < kDots; ++dot) {
    const double turn = 2 * std::numbers::pi * dot / kDots;
    const double x = kSide / 2.0 + kRing * std::sin(turn);
    const double y = kSide / 2.0 - kRing * std::cos(turn);
    const double radius = std::lerp(kLargestDot, kSmallestDot, age_of(dot, frame));
    const int colour = 1 + (frame - dot + kDots) % kDots;
    for (int row = 0; row < kSide; ++row) {
      for (int column = 0; column < kSide; ++column) {
        if (std::hypot(column + 0.5 - x, row + 0.5 - y) > radius) continue;
        pixels[static_cast<std::size_t>(row) * kSide + static_cast<std::size_t>(column)] =
            static_cast<std::uint8_t>(colour);
      }
    }
  }
  return pixels;
}

/// Writes codes of growing width, lowest bit first, in blocks of at most 255 bytes.
class Blocks {
 public:
  explicit Blocks(std::string &out) : out_(out) {}
  void add(int code, int width) {
    bits_ |= static_cast<std::uint32_t>(code) << filled_;
    for (filled_ += width; filled_ >= 8; filled_ -= 8, bits_ >>= 8) add_byte();
  }
  void end() {
    if (filled_ > 0) add_byte();
    end_block();
    out_ += '\0';
  }

 private:
  void add_byte() {
    block_ += static_cast<char>(bits_ & 0xff);
    if (block_.size() == 255) end_block();
  }
  void end_block() {
    if (block_.empty()) return;
    out_ += static_cast<char>(block_.size());
    out_ += block_;
    block_.clear();
  }

  std::string &out_;
  std::string block_;
  std::uint32_t bits_ = 0;
  int filled_ = 0;
};

void compress(const Frame &pixels, std::string &out) {
  constexpr int kClear = 1 << kColourBits;
  constexpr int kEnd = kClear + 1;
  constexpr int kMostCodes = 4096;
  out += static_cast<char>(kColourBits);
  Blocks blocks(out);
  std::map<std::pair<int, int>, int> longer;  // a known run and the pixel behind it
  int next = kEnd + 1;
  int width = kColourBits + 1;
  blocks.add(kClear, width);
  int run = pixels[0];
  for (std::size_t i = 1; i < pixels.size(); ++i) {
    const auto known = longer.find({run, pixels[i]});
    if (known != longer.end()) {
      run = known->second;
      continue;
    }
    blocks.add(run, width);
    if (next < kMostCodes) {
      // The reader learns a code one step later, so the width grows one step later too.
      if (next == 1 << width) ++width;
      longer[{run, pixels[i]}] = next++;
    }
    run = pixels[i];
  }
  blocks.add(run, width);
  if (next == 1 << width && next < kMostCodes) ++width;
  blocks.add(kEnd, width);
  blocks.end();
}

std::string make_gif() {
  std::string gif = "GIF89a";
  add_word(gif, kSide);
  add_word(gif, kSide);
  gif += static_cast<char>(0x80 | (kColourBits - 1));
  gif += std::string(2, '\0');
  gif += palette();
  gif += std::string("\x21\xff\x0bNETSCAPE2.0\x03\x01\0\0\0", 19);  // for ever
  for (int frame = 0; frame < kDots; ++frame) {
    gif += std::string("\x21\xf9\x04\x09", 4);  // cleared behind itself, with transparency
    add_word(gif, kFrameHundredths);
    gif += static_cast<char>(kTransparent);
    gif += '\0';
    gif += std::string("\x2c\0\0\0\0", 5);
    add_word(gif, kSide);
    add_word(gif, kSide);
    gif += '\0';
    compress(draw(frame), gif);
  }
  return gif + ';';
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 2) {
    std::fputs("Usage: indicator FILE\n", stderr);
    return 2;
  }
  std::ofstream file(argv[1], std::ios::binary);
  file << make_gif();
  file.close();
  if (!file) {
    std::fprintf(stderr, "%s cannot be written.\n", argv[1]);
    return 1;
  }
  return 0;
}

/// The bits of the entropy-coded data of a JPEG.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>

namespace phone::pictures {

/// Reads bits, most significant first, without the zeros that are stuffed behind bytes of all
/// ones. At a marker and at the end of the data it stays and delivers zeros; overrun() tells
/// afterwards whether any of these have been used.
class BitReader {
 public:
  explicit BitReader(std::span<const std::uint8_t> data)
      : at_(data.data()), end_(data.data() + data.size()) {}

  /// Has at least 56 bits ready.
  void fill() {
    if (end_ - at_ >= 8) {
      std::uint64_t next;
      std::memcpy(&next, at_, sizeof next);
      next = __builtin_bswap64(next);
      const bool any_of_all_ones = ((~next - kOnes) & next & kTops) != 0;
      if (!any_of_all_ones) {
        // Bits of a byte that fits partly come again with the next filling, the same ones.
        bits_ |= next >> count_;
        const int bytes = (63 - count_) >> 3;
        at_ += bytes;
        count_ += bytes * 8;
        return;
      }
    }
    fill_bytewise();
  }

  /// The next bits, 1 to 32 of them; fill() has been called for them.
  [[nodiscard]] std::uint32_t peek(int count) const {
    return static_cast<std::uint32_t>(bits_ >> (64 - count));
  }
  void skip(int count) {
    bits_ <<= count;
    count_ -= count;
  }

  [[nodiscard]] bool overrun() const { return count_ < made_up_; }

  /// Steps over the restart marker of a number, if it stands where the bits end.
  bool restart(int number) {
    fill();
    const bool only_padding = made_up_ > 0 && count_ - made_up_ < 8;
    if (overrun() || !only_padding || end_ - at_ < 2 || at_[0] != 0xff || at_[1] != 0xd0 + number) {
      return false;
    }
    at_ += 2;
    bits_ = 0;
    count_ = 0;
    made_up_ = 0;
    return true;
  }

 private:
  static constexpr std::uint64_t kOnes = 0x0101010101010101;
  static constexpr std::uint64_t kTops = 0x8080808080808080;

  void fill_bytewise() {
    // What the quick way has put there beyond the count would be mixed with made-up zeros.
    bits_ = count_ == 0 ? 0 : bits_ & (~std::uint64_t{0} << (64 - count_));
    while (count_ < 56) {
      std::uint64_t byte = 0;
      const bool stuffed = end_ - at_ >= 2 && at_[0] == 0xff && at_[1] == 0;
      if (stuffed || (at_ < end_ && at_[0] != 0xff)) {
        byte = at_[0];
        at_ += stuffed ? 2 : 1;
      } else {
        made_up_ += 8;
      }
      bits_ |= byte << (56 - count_);
      count_ += 8;
    }
  }

  const std::uint8_t *at_;
  const std::uint8_t *end_;
  std::uint64_t bits_ = 0;
  int count_ = 0;
  int made_up_ = 0;
};

}  // namespace phone::pictures

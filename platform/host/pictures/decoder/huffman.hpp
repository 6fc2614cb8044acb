/// The Huffman codes of a JPEG, for reading the first value of each block and stepping over the
/// others.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "pictures/decoder/bit-reader.hpp"

namespace phone::pictures {

/// The codes of one table as a file tells them: how many there are of each length, 1 to 16, and
/// their symbols.
class HuffmanCodes {
 public:
  /// @return nothing when there are more codes of a length than there can be
  static std::optional<HuffmanCodes> from(std::span<const std::uint8_t, 16> counts,
                                          std::span<const std::uint8_t> symbols);

  struct Match {
    int length = 0;  ///< 0 for no code
    std::uint8_t symbol = 0;
  };
  /// The code at the beginning of 16 bits.
  [[nodiscard]] Match match(std::uint32_t bits) const;

 private:
  std::array<std::uint32_t, 17> first_code_{};
  std::array<std::uint32_t, 17> end_code_{};
  std::array<int, 17> first_symbol_{};
  std::array<std::uint8_t, 256> symbols_{};
};

/// Reads the differences between the first values of blocks.
class FirstValueTable {
 public:
  explicit FirstValueTable(const HuffmanCodes &codes);

  /// @return nothing for bits that are no code
  std::optional<int> read(BitReader &bits) const {
    const HuffmanCodes::Match quick = quick_[bits.peek(kWindow)];
    const HuffmanCodes::Match found = quick.length != 0 ? quick : codes_.match(bits.peek(16));
    if (found.length == 0 || found.symbol > 15) return std::nullopt;
    bits.skip(found.length);
    const int size = found.symbol;
    if (size == 0) return 0;
    const int value = static_cast<int>(bits.peek(size));
    bits.skip(size);
    // The lower half of a size stands for negative numbers.
    return value < 1 << (size - 1) ? value - (1 << size) + 1 : value;
  }

 private:
  static constexpr int kWindow = 9;

  HuffmanCodes codes_;
  std::array<HuffmanCodes::Match, 1 << kWindow> quick_;
};

/// Steps over the other 63 values of a block, several at a time.
class OtherValuesTable {
 public:
  explicit OtherValuesTable(const HuffmanCodes &codes);

  /// @return false for bits that are no code
  bool skip_block(BitReader &bits) const {
    int place = 1;
    while (place < kBlock) {
      bits.fill();
      // Two steps need less than one filling gives.
      for (int i = 0; i < 2; ++i) {
        const unsigned steps = several_[bits.peek(kWindow)];
        const int next = place + static_cast<int>(steps >> kPlacesShift);
        // Beyond the end of the block other codes would hold.
        if (steps == 0 || next > kBlock) return skip_singly(bits, place);
        bits.skip(static_cast<int>(steps & kBitsMask));
        if ((steps & kEnds) != 0) return true;
        place = next;
      }
    }
    return true;
  }

 private:
  static constexpr int kWindow = 13;
  static constexpr int kBlock = 64;

  /// What some codes with their values come to.
  struct Steps {
    int bits = 0;
    int places = 0;
    bool ends = false;  ///< whether the last of them is the end of the block
  };
  // The same in a table: the end of the block takes a place, so that it is never taken for one
  // in a block that is full without it.
  static constexpr unsigned kBitsMask = 0x3f;
  static constexpr unsigned kEnds = 0x40;
  static constexpr int kPlacesShift = 7;

  [[nodiscard]] static Steps steps_of(HuffmanCodes::Match match);
  bool skip_singly(BitReader &bits, int place) const;

  HuffmanCodes codes_;
  std::array<std::uint16_t, 1 << kWindow> several_;
};

}  // namespace phone::pictures

/// Bytes of a file by position, for the header parsers.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace phone::pictures {

using Bytes = std::span<const std::byte>;

/// Gives small pieces of a file by position: from its first bytes, which are in memory, or by
/// further reads, of which there is a fixed number. So whatever the lengths in a file claim, the
/// cost of one header is bounded.
class Source {
 public:
  explicit Source(Bytes head, int fd = -1) : head_(head), fd_(fd) {}

  /// The same file as if it began at `base`: for a file within a file.
  [[nodiscard]] Source from(std::uint64_t base) const;

  /// The bytes that are in memory.
  [[nodiscard]] Bytes head() const { return head_; }

  /// `size` bytes at `offset`, valid until the next call; empty when the file ends before, the
  /// piece is larger than kLargestPiece or too much has been read already.
  Bytes at(std::uint64_t offset, std::size_t size);

  static constexpr std::size_t kLargestPiece = 1024;

 private:
  static constexpr int kMostReads = 256;

  Bytes head_;
  int fd_;
  std::uint64_t base_ = 0;
  int reads_ = 0;
  std::array<std::byte, kLargestPiece> piece_{};
  std::uint64_t piece_offset_ = 0;
  std::size_t piece_size_ = 0;
};

inline std::uint8_t byte_at(Bytes bytes, std::size_t i) {
  return std::to_integer<std::uint8_t>(bytes[i]);
}

inline std::uint32_t big16(Bytes bytes, std::size_t i) {
  return static_cast<std::uint32_t>(byte_at(bytes, i)) << 8 | byte_at(bytes, i + 1);
}

inline std::uint32_t big32(Bytes bytes, std::size_t i) {
  return big16(bytes, i) << 16 | big16(bytes, i + 2);
}

inline std::uint64_t big64(Bytes bytes, std::size_t i) {
  return static_cast<std::uint64_t>(big32(bytes, i)) << 32 | big32(bytes, i + 4);
}

inline std::uint32_t little16(Bytes bytes, std::size_t i) {
  return static_cast<std::uint32_t>(byte_at(bytes, i + 1)) << 8 | byte_at(bytes, i);
}

inline std::uint32_t little24(Bytes bytes, std::size_t i) {
  return static_cast<std::uint32_t>(byte_at(bytes, i + 2)) << 16 | little16(bytes, i);
}

inline std::uint32_t little32(Bytes bytes, std::size_t i) {
  return little16(bytes, i + 2) << 16 | little16(bytes, i);
}

/// Whether the text stands at a place of the bytes.
inline bool has_text(Bytes bytes, std::size_t i, std::string_view text) {
  return i <= bytes.size() && bytes.size() - i >= text.size() &&
         std::memcmp(bytes.data() + i, text.data(), text.size()) == 0;
}

}  // namespace phone::pictures

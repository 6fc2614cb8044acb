/// The boxes of ISO base media files: HEIF, AVIF, MP4 and QuickTime.
#pragma once

#include <cstdint>
#include <optional>

#include "pictures/headers/source.hpp"

namespace phone::pictures {

constexpr std::uint32_t box_type(const char (&name)[5]) {
  std::uint32_t type = 0;
  for (int i = 0; i < 4; ++i) type = type << 8 | static_cast<unsigned char>(name[i]);
  return type;
}

/// One box: its type and where its contents lie in the file.
struct Box {
  std::uint32_t type = 0;
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
};

/// Walks the boxes between two positions of a file. The number of boxes is bounded for the
/// whole file, not for one walk, so nested boxes cannot multiply it.
class BoxWalk {
 public:
  BoxWalk(Source &source, std::uint64_t begin, std::uint64_t end, int &budget)
      : source_(source), at_(begin), end_(end), budget_(budget) {}

  std::optional<Box> next();

 private:
  Source &source_;
  std::uint64_t at_;
  std::uint64_t end_;
  int &budget_;
};

inline constexpr int kMostBoxes = 4096;
inline constexpr std::uint64_t kEndOfFile = UINT64_MAX;

}  // namespace phone::pictures

#include "pictures/headers/boxes.hpp"

#include <algorithm>

namespace phone::pictures {

std::optional<Box> BoxWalk::next() {
  if (at_ >= end_ || budget_-- <= 0) return std::nullopt;
  const Bytes head = source_.at(at_, 8);
  if (head.empty()) return std::nullopt;
  std::uint64_t size = big32(head, 0);
  std::uint64_t head_size = 8;
  const std::uint32_t type = big32(head, 4);
  if (size == 1) {
    const Bytes large = source_.at(at_ + 8, 8);
    if (large.empty()) return std::nullopt;
    size = big64(large, 0);
    head_size = 16;
  } else if (size == 0) {
    size = end_ - at_;  // the last box may leave its length out
  }
  if (size < head_size || size > kEndOfFile - at_) return std::nullopt;
  const Box box{type, at_ + head_size, std::min(at_ + size, end_)};
  at_ += size;
  return box;
}

}  // namespace phone::pictures

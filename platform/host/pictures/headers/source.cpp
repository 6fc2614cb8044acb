#include "pictures/headers/source.hpp"

#include <unistd.h>

#include <cerrno>
#include <limits>

namespace phone::pictures {

Source Source::from(std::uint64_t base) const {
  Source inner(base < head_.size() ? head_.subspan(static_cast<std::size_t>(base)) : Bytes(), fd_);
  inner.base_ = base_ + base;
  inner.reads_ = reads_;
  return inner;
}

Bytes Source::at(std::uint64_t offset, std::size_t size) {
  if (size == 0 || size > kLargestPiece) return {};
  if (offset <= head_.size() && size <= head_.size() - offset) {
    return head_.subspan(static_cast<std::size_t>(offset), size);
  }
  if (fd_ < 0) return {};
  if (offset >= piece_offset_ && offset - piece_offset_ <= piece_size_ &&
      size <= piece_size_ - (offset - piece_offset_)) {
    return Bytes(piece_).subspan(static_cast<std::size_t>(offset - piece_offset_), size);
  }
  constexpr auto kLast =
      static_cast<std::uint64_t>(std::numeric_limits<off_t>::max()) - kLargestPiece;
  if (base_ > kLast || offset > kLast - base_) return {};
  if (reads_++ >= kMostReads) return {};
  ssize_t got;
  do {
    got = pread(fd_, piece_.data(), piece_.size(), static_cast<off_t>(base_ + offset));
  } while (got < 0 && errno == EINTR);
  piece_offset_ = offset;
  piece_size_ = got > 0 ? static_cast<std::size_t>(got) : 0;
  if (piece_size_ < size) return {};
  return Bytes(piece_).first(size);
}

}  // namespace phone::pictures

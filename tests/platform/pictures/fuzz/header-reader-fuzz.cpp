/// Feeds the header reader with whatever bytes, from memory and from a file.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

#include "pictures/header-reader.hpp"

namespace {

using namespace phone::pictures;

void check(const Header &header) {
  const bool oriented = header.orientation >= 1 && header.orientation <= 8;
  const gint64 pixels = static_cast<gint64>(header.width) * header.height;
  const bool within = header.width <= kMaxSide && header.height <= kMaxSide && pixels <= kMaxPixels;
  const bool sized = pixels > 0 || header.refused || header.format == Format::kVideo;
  const bool placed = header.preview_length >= 0 && header.preview_offset >= 0;
  if (!oriented || (!within && !header.refused) || !sized || !placed || header.duration_ms < 0) {
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static const int file = memfd_create("fuzz", MFD_CLOEXEC);
  const auto bytes = std::as_bytes(std::span(data, size));
  const auto header = read_header(bytes);
  if (header) check(*header);
  // The first read of a file ends after 4 KB; only longer ones take another way.
  constexpr std::size_t kFirstRead = 4096;
  if (size <= kFirstRead || ftruncate(file, 0) != 0 ||
      pwrite(file, data, size, 0) != static_cast<ssize_t>(size)) {
    return 0;
  }
  const auto from_file = read_header_of_file(file);
  if (from_file) check(*from_file);
  return 0;
}

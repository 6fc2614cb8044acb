/// Feeds the quick decoder of large photographs with whatever bytes that the header reader lets
/// through.
#include <cstdint>
#include <cstdlib>

#include "pictures/decoder/coarse-jpeg.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace phone::pictures;
  const auto bytes = std::as_bytes(std::span(data, size));
  const auto header = read_header(bytes);
  // Large sizes only cost time here.
  constexpr int kLargest = 2048;
  if (!header || header->refused || header->width > kLargest || header->height > kLargest) return 0;
  const PixbufRef pixbuf = decode_coarse_jpeg(bytes);
  if (pixbuf && gdk_pixbuf_get_width(pixbuf.get()) != (header->width + 7) / 8) std::abort();
  return 0;
}

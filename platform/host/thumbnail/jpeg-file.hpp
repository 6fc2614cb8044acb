/// The bytes of stored pictures.
#pragma once

#include <span>
#include <vector>

#include "pictures/result.hpp"

namespace phone::thumbnail {

/// Encodes an opaque RGB picture. Empty when memory is short.
std::vector<std::byte> encode_jpeg(GdkPixbuf *pixbuf);

/// Decodes what encode_jpeg() made, of at most so many pixels a side. Nothing when it is anything
/// else.
pictures::PixbufRef decode_own_jpeg(std::span<const std::byte> bytes, int most_side);

}  // namespace phone::thumbnail

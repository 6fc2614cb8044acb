/// The bytes of a stored thumbnail.
#pragma once

#include <span>
#include <vector>

#include "pictures/result.hpp"

namespace phone::thumbnail {

/// Encodes an opaque RGB picture. Empty when memory is short.
std::vector<std::byte> encode_jpeg(GdkPixbuf *pixbuf);

/// Decodes what encode_jpeg() made. Nothing when it is anything else.
pictures::PixbufRef decode_thumbnail(std::span<const std::byte> bytes);

}  // namespace phone::thumbnail

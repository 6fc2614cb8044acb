/// A file's bytes, for decoders that want them all at once.
#pragma once

#include <cstddef>
#include <vector>

namespace phone::pictures {

/// Files above this are left to decoders that read piece by piece.
inline constexpr std::size_t kLargestWholeFile = 256u << 20;

/// Empty for a file that is larger or cannot be read.
std::vector<std::byte> read_whole_file(int fd);

}  // namespace phone::pictures

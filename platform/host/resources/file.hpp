/// Reading a resource file whole.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace phone::resources {

/// Reads a regular file of at most `limit` bytes into memory, so that nobody who changes the
/// file later changes what was checked. Nothing when it is larger, empty, of another kind or
/// cannot be read.
std::optional<std::string> read_whole(const char *path, std::size_t limit);

}  // namespace phone::resources

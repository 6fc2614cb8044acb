/// The files in a resource bundle as glib-compile-resources writes it.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace phone::resources {

/// Finds the uncompressed files of a bundle by the last part of their names. GLib's own reader
/// believes what the tables of a bundle say, so a damaged one makes it allocate without bounds;
/// this one checks every place and length against the bytes that are there.
///
/// @param bytes the whole bundle; the result points into it
/// @return nothing when the bytes are no bundle; an entry that does not hold together is left out
std::optional<std::map<std::string, std::string_view>> read_bundle(std::string_view bytes);

}  // namespace phone::resources

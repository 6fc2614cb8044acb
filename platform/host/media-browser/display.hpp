/// Names of files as text for people.
#pragma once

#include <string>
#include <string_view>

namespace phone::media {

/// Valid UTF-8 without control characters: bytes that are neither are shown as U+FFFD, control
/// characters as a blank.
std::string display_text(std::string_view bytes);

/// A path in quotation marks for a sentence, shortened in the middle when it is long.
std::string display_name(std::string_view path);

/// Cuts valid UTF-8 to at most a number of bytes, between two characters.
std::string_view cut_text(std::string_view text, std::size_t most);

}  // namespace phone::media

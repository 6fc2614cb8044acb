/// The order of names as people read them.
#pragma once

#include <string_view>

namespace phone::media {

/// Compares file names: numbers by value ("IMG_9" before "IMG_10"), letters without regard to case
/// and accents. Names that differ in nothing else are ordered by their bytes, so 0 means equal
/// bytes. Names need not be valid UTF-8; stray bytes come after all characters.
/// @return less than, equal to or more than 0
int compare_naturally(std::string_view a, std::string_view b);

}  // namespace phone::media

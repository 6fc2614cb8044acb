/// What a name says about a file, before its content is looked at.
#pragma once

#include <string>
#include <string_view>

namespace phone::media {

/// What follows the last dot, in small letters; empty when there is no dot or it comes first.
std::string extension_of(std::string_view name);

/// kPicture or kVideo by the extension; 0 for a file that is not worth opening.
int kind_by_name(std::string_view name);

/// Whether a folder of this name, or anything in it, is hidden from galleries.
bool is_hidden(std::string_view name);

/// A file of this name hides its folder and all below.
inline constexpr const char *kNoMedia = ".nomedia";

/// Whether a path goes through a folder of the name that cameras use.
bool is_camera_folder(std::string_view path);

}  // namespace phone::media

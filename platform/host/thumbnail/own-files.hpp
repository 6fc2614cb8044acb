/// Which files may be thrown away because they can be made again.
#pragma once

#include <string>

namespace phone::thumbnail {

/// Whether a path leads to a plain file in one of the caches of thumbnails, ours or the one that
/// desktops share, and to none of people's pictures. Any thread.
bool is_replaceable(const std::string &path);

/// Tells is_replaceable() which files are people's pictures, wherever they lie.
/// @param check called on any thread with the path as it was given and without its links; NULL
///        when nobody knows of pictures
void set_picture_check(bool (*check)(const std::string &path));

}  // namespace phone::thumbnail

/// The thumbnails on disk: JPEG files of at most 148 by 148 pixels, upright, each named by what
/// its picture's contents are known by. Any thread may call what is here.
#pragma once

#include <sys/stat.h>

#include <string>

namespace phone::thumbnail {

/// Pixels of the longer side.
inline constexpr int kSide = 148;

/// Where the thumbnail of a file is or will be: an absolute path of less than 256 bytes below
/// the cache folder. Empty when the cache folder's own path is too long for that.
std::string stored_path(const struct stat &info);

/// Whether the thumbnail of a file is there.
bool is_stored(const struct stat &info);

/// Removes what is stored of a file that is not there any more, or not with these contents.
void forget(const struct stat &info);

/// Queues the making of a file's thumbnail, behind those that are wanted for the screen. The
/// listeners of the thumbnail manager hear when it is there.
void request(const std::string &path);

}  // namespace phone::thumbnail

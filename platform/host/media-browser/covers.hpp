/// Thumbnails of files as covers. What is handed out lies in our cache and never is an original.
#pragma once

#include <string>

#include "media-browser/file-state.hpp"

namespace phone::media {

/// Path of a file's cached thumbnail; empty when there is none.
/// @param path looked at only where the file system has no inodes that last
std::string cached_thumbnail(const std::string &path, guint64 device, const FileState &state);
/// Removes the thumbnail of a file that has gone, or has changed since.
/// @param path the file's last one
void forget_thumbnail(const std::string &path, guint64 device, const FileState &state);
/// Has a thumbnail made for later.
void request_thumbnail(const std::string &path);

}  // namespace phone::media

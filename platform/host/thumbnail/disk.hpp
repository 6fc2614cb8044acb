/// Reading and writing of the thumbnails on disk.
#pragma once

#include <optional>
#include <string>

#include "pictures/result.hpp"
#include "thumbnail/store.hpp"

namespace phone::thumbnail {

using pictures::PixbufRef;

/// The folder of the thumbnails; it need not exist.
std::string store_folder();

/// Whether a path lies in that folder.
bool is_in_store(const std::string &path);

/// Pixels of the longer side of a stored frame of a video.
inline constexpr int kFrameSide = 800;

/// Where the frame of a video is or will be. Empty as stored_path().
std::string stored_frame_path(const struct stat &info);

/// Reads a stored thumbnail or frame; decoded in this process, since only this program writes
/// there, and only after its header has been found harmless. A file that does not decode is
/// removed.
PixbufRef load_stored(const std::string &path);

/// Puts a thumbnail or frame in its place: written to a hidden file beside it, then renamed.
/// @return false when it cannot be written; said once in the log
bool save(const std::string &path, GdkPixbuf *picture);

/// Notes that no thumbnail can be made of a file, for the next runs of the program.
void save_failure(const struct stat &info, pictures::Problem problem);

/// The noted problem of a file. One of time or memory may have been the machine's fault that
/// day, and is forgotten after a day.
std::optional<pictures::Problem> load_failure(const struct stat &info);

/// Removes the thumbnails used longest ago once there are more bytes than the limit, and what
/// writers that are no more have left behind. Cheap unless there is something to remove.
void keep_within_limit();

/// The limit in bytes, for a store smaller or larger than usual.
void set_limit(gint64 bytes);

}  // namespace phone::thumbnail

/// What keeps the thumbnails on disk within their limit.
#pragma once

#include <glib.h>

#include <string>

namespace phone::thumbnail {

/// A hidden name for a file that is being written, which tells by whom.
std::string temporary_name(const std::string &name);

/// Adds to what the store is known to hold.
void count_written(gint64 bytes);

}  // namespace phone::thumbnail

/// What the host's other services tell the index.
#pragma once

#include <string>

namespace phone::media {

/// A file has been removed, by us: no list shows it any more, whenever the index thread comes to
/// it. Any thread.
void note_removed(const std::string &path);

}  // namespace phone::media

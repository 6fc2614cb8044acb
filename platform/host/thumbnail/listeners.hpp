/// Who hears of thumbnails that have been made.
#pragma once

namespace phone::thumbnail {

/// Has the listeners called from the main loop in a moment, once for all that is announced until
/// then. Any thread.
void announce_thumbnails();

/// Drops an announcement that has not been made. Main loop only.
void withdraw_announcement();

}  // namespace phone::thumbnail

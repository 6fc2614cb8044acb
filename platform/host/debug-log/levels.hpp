/// Which lines of the debug log are written.
#pragma once

#include <glib.h>

namespace phone::debug_log {

inline constexpr guint32 kError = 0x1000000;
inline constexpr guint32 kWarning = 0x2000000;

/// Takes PHOTOBROWSER_DEBUG from the environment. Runs once when the library is loaded, so that
/// a line whose level is off costs no look-up; call it again only while no other thread logs.
void read_levels();

}  // namespace phone::debug_log

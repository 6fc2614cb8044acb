/// Where the phone's literal paths lie on this machine.
#pragma once

#include <string>
#include <string_view>

namespace pb {

/// Tells whether a directory may stand in front of the phone's paths: absolute, without ".."
/// components, and made of bytes that mean nothing to a shell.
bool is_usable_root(std::string_view directory);

/// The phone's path (absolute, "/usr/apps/...", "/mnt/...", "/tmp/mb_...") as it is to be
/// opened: below PHOTOBROWSER_ROOT when that is set, else as it stands. The variable is read
/// once; one that is not usable is logged as an error and ignored. Any thread.
std::string phone_path(std::string_view path);

}  // namespace pb

/// What main() of the test programs sets up, in this order.
#pragma once

namespace support {

/// Makes the process's directory and points the environment at it. Called before any static
/// object is made, so nothing has read the environment by then.
void enter_private_environment();
/// Removes the process's directory.
void leave_private_environment();
/// Records GLib's log, and fails tests that leave a warning.
void record_glib_log();

}  // namespace support

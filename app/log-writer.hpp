/// Keeps what is no news to anybody off the terminal.
#pragma once

namespace gallery {

/// Counts the library's warning about a thumbnail that is not there yet, which comes for every
/// cell of a folder that is seen for the first time, and writes it with PHOTOBROWSER_DEBUG=1
/// only. Everything else goes where GLib would write it. Call it once, first of all.
void install_log_writer();

/// Warnings that were counted and not written. Any thread.
unsigned hidden_warnings();

}  // namespace gallery

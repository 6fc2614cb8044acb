/// Keeps what is no news to anybody off the terminal.
#pragma once

#include <glib.h>

namespace gallery {

/// A log writer that counts the library's warning about a thumbnail that is not there yet, which
/// comes for every cell of a folder that is seen for the first time, and writes it with
/// PHOTOBROWSER_DEBUG=1 only. Everything else goes where GLib would write it. Any thread.
GLogWriterOutput write_log_line(GLogLevelFlags level, const GLogField *fields, gsize n_fields,
                                gpointer data);

/// Warnings that were counted and not written. Any thread.
unsigned hidden_warnings();

}  // namespace gallery

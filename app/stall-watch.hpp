/// How long the main loop keeps the user waiting.
#pragma once

namespace gallery {

/// Watches the default main loop from here on: what is measured is the time between two waits for
/// events, in which nothing that the user does is seen. Main loop only.
void watch_for_stalls();

/// Writes what was seen as JSON into the file that PHOTOBROWSER_REPORT names, if it names one.
void write_report();

}  // namespace gallery

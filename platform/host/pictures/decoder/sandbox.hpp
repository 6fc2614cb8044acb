/// What a decoder process gives up before it looks at a file of someone else's.
#pragma once

namespace phone::pictures {

/// Limits on memory and on what a crash leaves behind; makes this process the first to go when
/// the system runs out of memory. @return false when a limit could not be set
bool limit_resources();

/// From here on the process opens nothing by name, talks to nobody new, starts no process and
/// changes nothing in the file system. @return false when the kernel refuses to promise that
bool enter_sandbox();

/// The weaker promise for the program that takes pictures out of videos, which has to open
/// libraries and its output: no network, no tracing, limited memory, time and output.
bool enter_video_sandbox();

}  // namespace phone::pictures

/// Text for one line of a log.
#pragma once

#include <string>
#include <string_view>

namespace phone::debug_log {

/// File names reach the log as they are on the disk. What does not print in a terminal (control
/// and format characters, bytes that are not UTF-8) is written as \xNN, so a name can neither
/// begin a line of its own nor steer the terminal. One newline at the end is dropped.
std::string printable(std::string_view text);

}  // namespace phone::debug_log

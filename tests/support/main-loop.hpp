/// The main loop, for tests of what is announced there.
#pragma once

#include <functional>

namespace support {

/// Runs the main loop until something holds, and tells whether it did in time. It sleeps until
/// there is news: what nobody announces is not noticed.
bool run_until(const std::function<bool()> &holds);

}  // namespace support

/// What a test can see of its own process from outside.
#pragma once

#include <sys/types.h>

#include <functional>
#include <vector>

namespace test {

/// The processes that this one has started and that have not ended.
std::vector<pid_t> children();
/// How many descriptors are open.
int open_descriptors();
/// Waits for what another process does in its own time; tells whether it came to hold within
/// some seconds.
bool eventually(const std::function<bool()> &holds);

}  // namespace test

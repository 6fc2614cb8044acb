/// What a test can see of its own process from outside.
#pragma once

#include <sys/types.h>

#include <vector>

namespace test {

/// The processes that this one has started and that have not ended.
std::vector<pid_t> children();
/// How many descriptors are open.
int open_descriptors();

}  // namespace test

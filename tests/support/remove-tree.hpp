/// Removal of a directory with what tests have left in it.
#pragma once

#include <string>

namespace support {

/// Removes a directory and everything in it, folders without permissions included. Links are
/// removed, not followed. Tells whether it is gone.
bool remove_tree(const std::string &path);

}  // namespace support

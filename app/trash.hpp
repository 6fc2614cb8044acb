/// The desktop's trash, and the way back out of it.
#pragma once

#include <optional>
#include <string>

namespace gallery {

/// A file that lies in a trash.
struct Trashed {
  std::string path;  ///< where it was
  std::string file;  ///< where it is
  std::string info;  ///< what the trash has noted about it
};

/// Moves a file into the trash of its disk.
/// @param problem set to the reason when it stays where it is
std::optional<Trashed> move_to_trash(const std::string &path, std::string &problem);

/// Puts a file back where it was, but never over another one.
/// @param problem set to the reason when it stays in the trash
bool put_back(const Trashed &trashed, std::string &problem);

}  // namespace gallery

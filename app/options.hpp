/// What the command line asks for.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace gallery {

inline constexpr int kExitUsage = 2;
inline constexpr int kExitNoDisplay = 2;
inline constexpr int kExitBroken = 1;

struct Options {
  std::vector<std::string> roots;     ///< full paths of the folders to look through
  std::string file;                   ///< full path of the file to open; "" for none
  std::vector<std::string> problems;  ///< a sentence for each argument that cannot be read
};

struct Start {
  std::optional<int> exit_code;  ///< set when there is nothing more to do
  Options options;
};

/// Reads the arguments and says on the terminal what --help, --version and a wrong option ask
/// for. Without arguments the user's pictures folder is looked through.
Start read_arguments(int argc, char **argv);

}  // namespace gallery

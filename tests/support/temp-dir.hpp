/// Directories for tests. Each process has a private environment from its first instruction on:
/// HOME, the XDG directories, TMPDIR and PHOTOBROWSER_ROOT lie in a directory of its own (mode
/// 0700), which goes when the process ends.
#pragma once

#include <string>
#include <string_view>

namespace support {

/// The directory of the process.
const std::string &private_dir();
/// Where the phone's literal paths begin: the value of PHOTOBROWSER_ROOT.
const std::string &photobrowser_root();

/// An empty directory of its own, removed with all that is in it.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir &) = delete;
  TempDir &operator=(const TempDir &) = delete;

  [[nodiscard]] const std::string &path() const { return path_; }
  /// Full path of a name in the directory; nothing is made.
  [[nodiscard]] std::string path(std::string_view name) const;
  /// Makes a directory, missing parents included, and returns its full path.
  std::string make_dir(std::string_view name) const;
  /// Writes a file, missing parents included, and returns its full path.
  std::string write(std::string_view name, std::string_view bytes) const;

 private:
  std::string path_;
};

/// The bytes of a file; fails the test and returns "" when it cannot be read.
std::string read_file(const std::string &path);
/// Whether there is something of this name, dangling links included.
bool exists(const std::string &path);

}  // namespace support

/// Folders by descriptor: nothing below a root is ever reached through a link.
#pragma once

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "media-browser/file-state.hpp"

namespace phone::media {

/// Owns a descriptor.
class Fd {
 public:
  Fd() = default;
  explicit Fd(int fd) : fd_(fd) {}
  Fd(Fd &&other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Fd &operator=(Fd &&other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  ~Fd() {
    if (fd_ >= 0) close(fd_);
  }
  [[nodiscard]] int get() const { return fd_; }
  explicit operator bool() const { return fd_ >= 0; }

 private:
  int fd_ = -1;
};

using FdPtr = std::shared_ptr<const Fd>;

/// Opens a root; the path itself may go through links. @return an empty Fd with errno
Fd open_root(const std::string &path);
/// Opens a folder in a folder; a link is refused. @return an empty Fd with errno
Fd open_folder_in(int folder, const char *name);
/// Opens a folder at or below a root. No part of the path below the root may be a link, be hidden
/// by its name, or lie in a folder that hides what is in it; such a folder is as good as missing.
Fd open_shown_folder(const std::string &root, const std::string &path);

/// What an entry is, without following a link.
struct Entry {
  bool regular = false;
  bool folder = false;
  guint64 links = 0;
  gint64 born = 0;  ///< nanoseconds; 0 where the file system does not say
  FileState state;
};

/// One statx. @return nothing with errno
/// @param stable whether the file system gives a file the same inode every time; else it is 0
std::optional<Entry> look_at(int folder, const char *name, bool stable = true);

/// Whether the file system of a folder gives a file the same inode every time: those of cards,
/// and those that are programs, make numbers up as they go.
bool has_stable_inodes(int folder);

struct CloseDir {
  void operator()(DIR *dir) const { closedir(dir); }
};
using DirPtr = std::unique_ptr<DIR, CloseDir>;

/// Reads the entries of an open folder from the start. @return NULL with errno
DirPtr entries_of(int folder);

}  // namespace phone::media

/// What tells a file apart from others and from its earlier self.
#pragma once

#include <glib.h>

#include <string>
#include <string_view>

struct statx;

namespace phone::media {

/// A file whose three values are as before is taken to be unchanged; one that has them under
/// another name is taken to be the same file, renamed.
struct FileState {
  guint64 inode = 0;  ///< 0 where the file system has none that last
  gint64 size = 0;
  gint64 mtime = 0;  ///< nanoseconds

  bool operator==(const FileState &) const = default;
};

/// A folder's path and a name in it as one path.
inline std::string join(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (path.empty() || path.back() != '/') path += '/';
  path += name;
  return path;
}

}  // namespace phone::media

/// What the scanner tells the index thread.
#pragma once

#include <memory>
#include <string>

#include "media-browser/file-state.hpp"

namespace phone::media {

/// A folder that has been looked through.
struct Folder {
  std::string path;
  guint64 device = 0;
  guint64 inode = 0;
  gint64 born = 0;      ///< nanoseconds; tells a folder from a later one with its inode
  bool camera = false;  ///< lies in a folder of the name that cameras use
};

using FolderPtr = std::shared_ptr<const Folder>;

inline constexpr int kHasGps = 1;
inline constexpr int kRefused = 2;  ///< nothing may decode it

/// A picture or video that is new or has changed.
struct Found {
  FolderPtr folder;
  std::string name;
  FileState state;
  int kind = 0;
  gint64 date = 0;  ///< Unix seconds
  int width = 0;
  int height = 0;
  int orientation = 1;
  gint64 duration = 0;  ///< milliseconds
  int traits = 0;
};

/// A file that is not where it was.
struct Lost {
  gint32 id;
  gint32 album;
  std::string name;
};

}  // namespace phone::media

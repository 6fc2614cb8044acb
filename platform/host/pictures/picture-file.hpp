/// Files in, pixels out: what the services of this platform decode pictures and videos with.
#pragma once

#include <sys/stat.h>

#include "pictures/cancellation.hpp"
#include "pictures/descriptor.hpp"
#include "pictures/pool.hpp"
#include "pictures/result.hpp"

namespace phone::pictures {

/// An open regular file, or the reason why there is none.
struct OpenFile {
  Problem problem = Problem::kMissing;
  Descriptor fd;
  struct stat info {};
};

/// Opens a picture or video without following a link and without waiting.
OpenFile open_picture(const char *path);

/// How a picture is wanted.
struct Wish {
  int width = 0;  ///< the box
  int height = 0;
  std::uint32_t flags = 0;  ///< of wire::Flag
  Priority priority = Priority::kInteractive;
  TimeLimit time_limit;
  TimeLimit video_time_limit;
  const Cancellation *cancellation = nullptr;
};

/// Decodes an open picture, or takes a picture out of an open video, in another process. Blocks
/// up to the longest time, for a video up to both. A failure that lies in the file is remembered,
/// and answered at once the next time. Any thread.
Result decode_picture(const OpenFile &file, const Wish &wish);

/// Whether decode_picture() would answer from memory that the file does not decode.
bool is_known_to_fail(const struct stat &info, int width, int height);

/// Has decode_picture() answer so for as long as the file does not change.
void remember_failure(const struct stat &info, int width, int height, Problem problem);

}  // namespace phone::pictures

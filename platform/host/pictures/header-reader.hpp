/// What the first bytes of a picture or video tell, read without a decoder. This is the gate for
/// everything that is decoded: the format is decided by content, never by a name.
#pragma once

#include <glib.h>

#include <cstddef>
#include <optional>
#include <span>

namespace phone::pictures {

enum class Format {
  kUnknown,
  kJpeg,
  kPng,
  kGif,
  kBmp,
  kWebp,
  kTiff,
  kHeif,
  kAvif,
  kRaw,      ///< what a camera's sensor saw, with pictures for looking at beside it
  kDrawing,  ///< SVG
  kVideo,
};

/// The largest side and the largest area that anything here agrees to decode.
inline constexpr int kMaxSide = 65535;
inline constexpr gint64 kMaxPixels = 178'000'000;

struct Header {
  Format format = Format::kUnknown;
  /// Size in the file's own orientation, in pixels. HEIF, AVIF and videos are turned by their
  /// loaders, so theirs is the size after the turn. 0 when the data ends before the size is told,
  /// or for a video that does not say.
  int width = 0;
  int height = 0;
  /// The turn that makes the picture upright, 1 to 8; 1 where the loader turns by itself.
  int orientation = 1;
  /// When it was taken, Unix seconds; 0 when unknown. A date without an offset is taken as local.
  gint64 date_taken = 0;
  /// 1 when date_taken comes from a time with a stated offset from UTC.
  int utc_offset_known = 0;
  /// Length of a video; 0 for pictures or when unknown.
  gint64 duration_ms = 0;
  bool has_gps = false;
  /// EXIF data is there, and it says which orientation.
  bool has_exif = false;
  bool has_orientation = false;
  /// The size or coding is outside the limits, or the data ends before a picture's size is told:
  /// nothing may decode it outside a worker, and nothing should.
  bool refused = false;
  /// A JPEG preview inside the EXIF data of a JPEG: its place in the file. Length 0 when there is
  /// none. Nothing but the place has been checked.
  gint64 preview_offset = 0;
  gint64 preview_length = 0;
};

/// Reads what the first bytes tell; data need not be the whole file. Never allocates by claimed
/// sizes.
/// @return nothing for a format that is not on the list
std::optional<Header> read_header(std::span<const std::byte> head);

/// Reads the header of an open regular file: 4 KB first, then only what it needs, a few small
/// reads by position. The descriptor's own position is neither used nor moved. A caller that has
/// a path opens it with open_regular_file().
/// @return nothing for a format that is not on the list, for what is not a regular file, and
/// when reading fails (errno tells why)
std::optional<Header> read_header_of_file(int fd);

/// Opens a file for reading without following a link in the last part of its name, without
/// waiting on a pipe or device, and only if it is a regular file.
/// @return a descriptor that the caller closes, or -1 with errno (ELOOP for a link, EINVAL for
/// what is not a regular file)
int open_regular_file(const char *path);

}  // namespace phone::pictures

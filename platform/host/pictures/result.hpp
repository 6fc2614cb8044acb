/// What became of a request for a picture.
#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <glib-ptr.hpp>

namespace phone::pictures {

using PixbufRef = pb::Ref<GdkPixbuf>;

enum class Problem {
  kNone,
  kMissing,      ///< no file of that name
  kNotReadable,  ///< no permission, or reading failed
  kNotAFile,     ///< a directory, link, pipe or device
  kDamaged,      ///< does not decode
  kTooLarge,     ///< outside the limits on size or memory
  kTooSlow,      ///< outside the limit on time
  kUnknown,      ///< a format or coding that is not decoded here
  kNoVideos,     ///< the program that takes pictures out of videos is not installed
  kNoDecoder,    ///< the decoder program is not installed or does not start
  kBusy,         ///< no descriptors, memory or processor for it at the moment
  kCancelled,
};

/// Whether the problem lies in the file, so that asking again is of no use until it changes.
[[nodiscard]] inline bool is_lasting(Problem problem) {
  switch (problem) {
    case Problem::kDamaged:
    case Problem::kTooLarge:
    case Problem::kTooSlow:
    case Problem::kUnknown:
      return true;
    default:
      return false;
  }
}

/// A sentence for the user; a static string.
const char *sentence(Problem problem);

struct Result {
  Problem problem = Problem::kDamaged;
  /// Set exactly when the problem is kNone.
  PixbufRef pixbuf;
  /// The time of the picture that a thumbnail of the desktop's shared cache was made from; -1
  /// when the file is no such thumbnail.
  gint64 thumbnail_mtime = -1;
};

}  // namespace phone::pictures

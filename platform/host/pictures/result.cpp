#include "pictures/result.hpp"

namespace phone::pictures {

const char *sentence(Problem problem) {
  switch (problem) {
    case Problem::kMissing:
      return "The file is no longer there.";
    case Problem::kNotReadable:
      return "This file cannot be read.";
    case Problem::kNotAFile:
      return "This is not a picture file.";
    case Problem::kDamaged:
      return "This picture is damaged and cannot be shown.";
    case Problem::kTooLarge:
      return "This picture is too large to be shown safely.";
    case Problem::kTooSlow:
      return "This picture takes too long to open.";
    case Problem::kUnknown:
      return "This kind of picture cannot be shown.";
    case Problem::kNoVideos:
      return "Previews of videos need the program ffmpegthumbnailer.";
    case Problem::kNoDecoder:
      return "Pictures cannot be shown: a part of this program is missing.";
    case Problem::kBusy:
      return "This picture cannot be shown at the moment.";
    case Problem::kNone:
    case Problem::kCancelled:
      break;
  }
  return "";
}

}  // namespace phone::pictures

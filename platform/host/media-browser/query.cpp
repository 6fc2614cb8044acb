#include "media-browser/query.hpp"

namespace phone::media {

Sort sort_of(gint number) {
  switch (number) {
    case 0:
      return {SortKey::kName, false};
    case 1:
      return {SortKey::kName, true};
    case 2:
      return {SortKey::kDate, false};
    case 4:
      return {SortKey::kAdded, true};
    case 5:
      return {SortKey::kSize, true};
    default:
      return {SortKey::kDate, true};
  }
}

ClassMask classes_of(gint64 filter) {
  if (filter == -1) filter = 3;
  if (filter == -2) filter = 0x13;
  gint64 kinds = filter & 3;
  if (kinds == 0) kinds = 3;
  ClassMask mask = 0;
  for (std::size_t at = 0; at < kClasses.size(); ++at) {
    const bool camera = (kClasses[at] & kCameraClass) != 0;
    if ((filter & kCameraClass) != 0 && !camera) continue;
    if ((kClasses[at] & kinds) != 0) mask |= 1u << at;
  }
  return mask;
}

bool lets_through(ClassMask mask, int file_class) {
  for (std::size_t at = 0; at < kClasses.size(); ++at) {
    if (kClasses[at] == file_class) return (mask >> at & 1) != 0;
  }
  return false;
}

}  // namespace phone::media

/// The numbers by which callers ask for orders and filters.
#pragma once

#include <glib.h>

#include <array>
#include <compare>

namespace phone::media {

/// Kinds of media, as records name them.
inline constexpr int kPicture = 1;
inline constexpr int kVideo = 2;
/// Added to the kind: the class of a file in a camera folder. A file that has gone has class 0.
inline constexpr int kCameraClass = 0x10;

/// Every class that a listed file can have.
inline constexpr std::array<int, 4> kClasses{kPicture, kVideo, kPicture | kCameraClass,
                                             kVideo | kCameraClass};

enum class SortKey { kName, kDate, kAdded, kSize };

/// What the rows of a list are ordered by, and from which end. Each key ends in the id, so an
/// order is total and its reverse is exact.
struct Sort {
  SortKey key;
  bool reversed;
};

/// Orders of files: 0 name, 1 name descending, 2 oldest first, 3 newest first, 4 added last
/// first, 5 largest first; anything else is newest first.
Sort sort_of(gint number);

/// Which classes a filter lets through, as bits in the order of kClasses. Bits 1 and 2 choose
/// kinds (neither means both), 0x10 leaves camera folders only, -1 stands for 3 and -2 for 0x13.
using ClassMask = unsigned;
ClassMask classes_of(gint64 filter);
inline constexpr ClassMask kAllClasses = 0xf;

/// Whether a mask lets a class through.
bool lets_through(ClassMask mask, int file_class);

/// One list of files of the whole index.
struct OrderKey {
  SortKey key;
  ClassMask mask;
  auto operator<=>(const OrderKey &) const = default;
};

}  // namespace phone::media

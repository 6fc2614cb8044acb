/// What each step through a list has to do, said in a few lines.
#pragma once

#include <algorithm>
#include <vector>

#include "browsing-fixture.hpp"

/// What the browsing state should hold.
struct BrowsingModel {
  std::vector<gint> rows;  ///< ids of the rows of the list, kEmptyRow for an empty one
  gint length = 0;         ///< rows that the list presents; removal does not lower it
  gint count = 0;          ///< rows at the time when the list was installed
  gint index = 0;
  int notified = 0;

  [[nodiscard]] gint at(gint64 row) const {
    const bool inside = row >= 0 && row < static_cast<gint64>(rows.size());
    return inside ? rows[static_cast<std::size_t>(row)] : kEmptyRow;
  }
  [[nodiscard]] bool has_next() const {
    return length == 0 || gint64{index} + 1 <= gint64{length} - 1;
  }
  [[nodiscard]] bool has_previous() const {
    if (index < 1) return false;
    return index > 1 || at(0) != kEmptyRow;
  }
  bool go(gint row) {
    if (row < 0) row = index;
    if (row < 0 || row >= count) return false;
    index = row;
    ++notified;
    return true;
  }
  bool back() {
    for (gint row = std::min(index, length) - 1; row >= 0; --row) {
      if (at(row) != kEmptyRow) return go(row);
    }
    return false;
  }
  bool forward() {
    for (gint row = index + 1; row < length; ++row) {
      if (at(row) != kEmptyRow) return go(row);
    }
    return false;
  }
  gint nth_from_current(gint offset) {
    const gint64 row = gint64{index} + offset;
    if (row < 0 || row >= count) return kEmptyRow;
    if (at(row) != kEmptyRow) return at(row);
    ++index;
    return at(row + 1);
  }
  [[nodiscard]] gint nth(gint row) const { return row >= 0 && row < length ? at(row) : kEmptyRow; }
};

#pragma once

namespace phone::gtk {

/// Rows first to last, both included; none when last is before first.
struct RowRange {
  int first = 0;
  int last = -1;
  [[nodiscard]] bool empty() const { return last < first; }
  [[nodiscard]] bool contains(int row) const { return row >= first && row <= last; }
  bool operator==(const RowRange &) const = default;
};

}  // namespace phone::gtk

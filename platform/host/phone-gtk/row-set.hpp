/// A set of rows kept as ranges: a million selected rows cost as much as one.
#pragma once

#include <cstdint>
#include <map>

#include "phone-gtk/row-range.hpp"

namespace phone::gtk {

class RowSet {
 public:
  [[nodiscard]] bool contains(int row) const;
  [[nodiscard]] std::int64_t size() const;
  [[nodiscard]] bool empty() const { return ranges_.empty(); }
  void add(RowRange range);
  void remove(RowRange range);
  void clear() { ranges_.clear(); }
  /// A row came in: later ones move up, the row itself does not belong to the set.
  void insert_row(int row);
  /// A row went: later ones move down. True when it belonged to the set.
  bool delete_row(int row);
  bool operator==(const RowSet &) const = default;

  /// Calls f(row) for each row in order. The set must not change meanwhile.
  template <typename F>
  void for_each(F f) const {
    for (const auto &[first, last] : ranges_) {
      for (int row = first; row <= last; ++row) f(row);
    }
  }

 private:
  /// Makes a range begin at this row if one covers it.
  void cut_at(int row);

  std::map<int, int> ranges_;  // first to last, apart from each other by at least one row
};

}  // namespace phone::gtk

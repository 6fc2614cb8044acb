#include "phone-gtk/row-set.hpp"

#include <algorithm>
#include <iterator>

namespace phone::gtk {

bool RowSet::contains(int row) const {
  const auto behind = ranges_.upper_bound(row);
  return behind != ranges_.begin() && std::prev(behind)->second >= row;
}

std::int64_t RowSet::size() const {
  std::int64_t count = 0;
  for (const auto &[first, last] : ranges_) count += std::int64_t{last} - first + 1;
  return count;
}

void RowSet::cut_at(int row) {
  const auto behind = ranges_.lower_bound(row);
  if (behind == ranges_.begin()) return;
  const auto range = std::prev(behind);
  if (range->second < row) return;
  ranges_.emplace(row, range->second);
  range->second = row - 1;
}

void RowSet::remove(RowRange range) {
  if (range.empty()) return;
  cut_at(range.first);
  cut_at(range.last + 1);
  ranges_.erase(ranges_.lower_bound(range.first), ranges_.upper_bound(range.last));
}

void RowSet::add(RowRange range) {
  if (range.empty()) return;
  remove(range);
  auto here = ranges_.emplace(range.first, range.last).first;
  const auto next = std::next(here);
  if (next != ranges_.end() && next->first == here->second + 1) {
    here->second = next->second;
    ranges_.erase(next);
  }
  if (here == ranges_.begin()) return;
  const auto before = std::prev(here);
  if (before->second + 1 != here->first) return;
  before->second = here->second;
  ranges_.erase(here);
}

void RowSet::insert_row(int row) {
  if (ranges_.empty() || ranges_.rbegin()->second < row) return;
  cut_at(row);
  std::map<int, int> moved(ranges_.begin(), ranges_.lower_bound(row));
  for (auto range = ranges_.lower_bound(row); range != ranges_.end(); ++range) {
    moved.emplace(range->first + 1, range->second + 1);
  }
  ranges_ = std::move(moved);
}

bool RowSet::delete_row(int row) {
  if (ranges_.empty() || ranges_.rbegin()->second < row) return false;
  const bool had = contains(row);
  remove({row, row});
  RowSet moved;
  for (const auto &[first, last] : ranges_) {
    const int shift = first > row ? 1 : 0;
    moved.add({first - shift, last - shift});
  }
  ranges_ = std::move(moved.ranges_);
  return had;
}

}  // namespace phone::gtk

#include "phone-gtk/grid-geometry.hpp"

#include <algorithm>
#include <cmath>

namespace phone::gtk {
namespace {

constexpr int kMinHandleLength = 64;
/// Fewer screens than that are scrolled faster by hand.
constexpr int kScreensOfALongList = 4;

}  // namespace

int GridGeometry::columns() const {
  return std::max(1, (width + column_spacing) / std::max(1, cell_width + column_spacing));
}

int GridGeometry::lines() const {
  return static_cast<int>((static_cast<std::int64_t>(rows) + columns() - 1) / columns());
}

std::int64_t GridGeometry::top_of_line(int line) const {
  return margin + static_cast<std::int64_t>(line) * pitch();
}

std::int64_t GridGeometry::total_height() const {
  if (rows == 0) return 0;
  return top_of_line(lines()) - row_spacing + margin;
}

GridPoint GridGeometry::place_of(int row) const {
  const int count = columns();
  const int logical = row % count;
  const int column = mirrored ? count - 1 - logical : logical;
  const int left = static_cast<int>(static_cast<std::int64_t>(width) * column / count);
  const int right = static_cast<int>(static_cast<std::int64_t>(width) * (column + 1) / count);
  return {left + (right - left - cell_width) / 2, top_of_line(row / count)};
}

int GridGeometry::row_at(GridPoint point) const {
  if (point.y < margin) return -1;
  const std::int64_t line = (point.y - margin) / pitch();
  if (line >= lines()) return -1;
  const int first = static_cast<int>(line) * columns();
  const int end = static_cast<int>(std::min<std::int64_t>(first + std::int64_t{columns()}, rows));
  for (int row = first; row < end; ++row) {
    const GridPoint place = place_of(row);
    if (point.x >= place.x && point.x < place.x + cell_width && point.y < place.y + cell_height) {
      return row;
    }
  }
  return -1;
}

RowRange GridGeometry::rows_from(std::int64_t offset) const {
  if (rows == 0 || offset + height <= margin) return {};
  const std::int64_t above = std::max<std::int64_t>(offset - margin, 0);
  std::int64_t first = above / pitch();
  if (above % pitch() >= cell_height) ++first;  // only the spacing below that line is seen
  const std::int64_t last = (offset + height - 1 - margin) / pitch();
  const std::int64_t first_row = first * columns();
  const std::int64_t last_row = std::min<std::int64_t>((last + 1) * columns(), rows) - 1;
  if (first_row > last_row) return {};
  return {static_cast<int>(first_row), static_cast<int>(last_row)};
}

bool QuickHandle::shown() const {
  return track > kMinHandleLength && total > std::int64_t{kScreensOfALongList} * track;
}

int QuickHandle::length() const {
  if (total <= 0) return track;
  const auto share = static_cast<std::int64_t>(track) * track / total;
  return static_cast<int>(std::clamp<std::int64_t>(share, kMinHandleLength, track));
}

int QuickHandle::position_of(double offset) const {
  const auto range = static_cast<double>(total - track);
  if (range <= 0) return 0;
  return static_cast<int>(std::lround(std::clamp(offset / range, 0.0, 1.0) * (track - length())));
}

double QuickHandle::offset_of(int position) const {
  const int room = track - length();
  if (room <= 0) return 0;
  const double share = std::clamp(static_cast<double>(position) / room, 0.0, 1.0);
  return share * static_cast<double>(std::max<std::int64_t>(total - track, 0));
}

}  // namespace phone::gtk

/// Where the cells of a grid lie. Heights are 64-bit: a long list is higher than any window.
#pragma once

#include <cstdint>

#include "phone-gtk/row-range.hpp"

namespace phone::gtk {

/// A place in the whole grid, in pixels from its top left.
struct GridPoint {
  int x;
  std::int64_t y;
  bool operator==(const GridPoint &) const = default;
};

/// A grid of equal cells. Columns share the width evenly, each cell is centred in its column;
/// mirrored, the first column is the right one.
struct GridGeometry {
  int rows = 0;
  int cell_width = 148;
  int cell_height = 148;
  int row_spacing = 0;
  int column_spacing = 0;
  int margin = 0;  ///< above the first line and below the last
  int width = 1;   ///< of the viewport, as is height
  int height = 1;
  bool mirrored = false;

  [[nodiscard]] int columns() const;
  [[nodiscard]] int lines() const;
  /// From the top of one line to the top of the next.
  [[nodiscard]] int pitch() const { return cell_height + row_spacing; }
  [[nodiscard]] int line_of(int row) const { return row / columns(); }
  [[nodiscard]] std::int64_t total_height() const;
  [[nodiscard]] std::int64_t top_of_line(int line) const;
  [[nodiscard]] GridPoint place_of(int row) const;
  /// The row whose cell covers a point; -1 between and beside cells.
  [[nodiscard]] int row_at(GridPoint point) const;
  /// All rows of the lines that are seen in part or whole below an offset.
  [[nodiscard]] RowRange rows_from(std::int64_t offset) const;
};

/// The handle that scrolls a long list in one movement of the thumb.
struct QuickHandle {
  int track = 0;           ///< height of the viewport
  std::int64_t total = 0;  ///< height of the grid

  [[nodiscard]] bool shown() const;
  [[nodiscard]] int length() const;
  /// Top of the handle for an offset of the grid.
  [[nodiscard]] int position_of(double offset) const;
  /// Offset of the grid for a top of the handle; beyond the ends the nearest.
  [[nodiscard]] double offset_of(int position) const;
};

}  // namespace phone::gtk

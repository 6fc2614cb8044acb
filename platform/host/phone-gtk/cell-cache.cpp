#include "phone-gtk/cell-cache.hpp"

#include <iterator>
#include <utility>

namespace phone::gtk {
namespace {

/// Surfaces kept beyond those of drawn cells: about two lines of a grid.
constexpr std::size_t kSpares = 8;

}  // namespace

GdkPixmap *CellCache::find(int row) const {
  const auto cell = cells_.find(row);
  return cell == cells_.end() || cell->second.stale ? nullptr : cell->second.surface.get();
}

GdkPixmap *CellCache::find_outdated(int row) const {
  const auto cell = cells_.find(row);
  return cell == cells_.end() ? nullptr : cell->second.surface.get();
}

GdkPixmap *CellCache::prepare(int row, GdkWindow *window, int width, int height) {
  Cell &cell = cells_[row];
  cell.stale = false;
  if (cell.surface) return cell.surface.get();
  if (spare_.empty()) {
    cell.surface = pb::Ref<GdkPixmap>::adopt(gdk_pixmap_new(window, width, height, -1));
  } else {
    cell.surface = std::move(spare_.back());
    spare_.pop_back();
  }
  return cell.surface.get();
}

void CellCache::mark_stale(int row) {
  const auto cell = cells_.find(row);
  if (cell != cells_.end()) cell->second.stale = true;
}

void CellCache::mark_all_stale() {
  for (auto &[row, cell] : cells_) cell.stale = true;
}

void CellCache::give_up(Cell &cell) {
  if (spare_.size() < kSpares) spare_.push_back(std::move(cell.surface));
}

void CellCache::keep_only(RowRange rows) {
  for (auto cell = cells_.begin(); cell != cells_.end();) {
    if (rows.contains(cell->first)) {
      ++cell;
      continue;
    }
    give_up(cell->second);
    cell = cells_.erase(cell);
  }
}

void CellCache::insert_row(int row) {
  if (cells_.empty() || cells_.rbegin()->first < row) return;
  std::map<int, Cell> moved;
  for (auto &[number, cell] : cells_) {
    moved.emplace(number < row ? number : number + 1, std::move(cell));
  }
  cells_ = std::move(moved);
}

void CellCache::delete_row(int row) {
  if (cells_.empty() || cells_.rbegin()->first < row) return;
  std::map<int, Cell> moved;
  for (auto &[number, cell] : cells_) {
    if (number == row) {
      give_up(cell);
    } else {
      moved.emplace(number < row ? number : number - 1, std::move(cell));
    }
  }
  cells_ = std::move(moved);
}

void CellCache::clear() {
  cells_.clear();
  spare_.clear();
}

}  // namespace phone::gtk

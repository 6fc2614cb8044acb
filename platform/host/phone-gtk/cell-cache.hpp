/// Drawn cells, kept on the server's side so that a repaint only copies them.
#pragma once

#include <gtk/gtk.h>

#include <map>
#include <vector>

#include "glib-ptr.hpp"
#include "phone-gtk/row-range.hpp"

namespace phone::gtk {

class CellCache {
 public:
  /// The picture of a row; nullptr when it has to be drawn (again).
  [[nodiscard]] GdkPixmap *find(int row) const;
  /// The same, or what the row looked like before; nullptr when it was never drawn.
  [[nodiscard]] GdkPixmap *find_outdated(int row) const;
  /// A surface for drawing a row, which counts as drawn from now on.
  GdkPixmap *prepare(int row, GdkWindow *window, int width, int height);
  void mark_stale(int row);
  void mark_all_stale();
  /// Gives up the cells outside a range; some of their surfaces are kept for the next cells.
  void keep_only(RowRange rows);
  void insert_row(int row);
  void delete_row(int row);
  /// Gives everything back to the server.
  void clear();
  [[nodiscard]] std::size_t size() const { return cells_.size(); }

 private:
  struct Cell {
    pb::Ref<GdkPixmap> surface;
    bool stale = false;
  };
  void give_up(Cell &cell);

  std::map<int, Cell> cells_;
  std::vector<pb::Ref<GdkPixmap>> spare_;
};

}  // namespace phone::gtk

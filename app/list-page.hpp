/// A grid with what stands in for it while it is empty.
#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <glib-ptr.hpp>
#include <string>

#include "empty-page.hpp"
#include "grid.hpp"
#include "navigator.hpp"

namespace gallery {

/// Shows one category of the library. The library has one current list, so at any time one page
/// at most is open.
class ListPage {
 public:
  struct Source {
    gint category;
    gint album_id;           ///< of category 3, else 0
    Grid::FindRow find_row;  ///< row of an id in the list
  };

  ListPage(const char *name, Grid::Cells cells, Source source, Grid::Activated activated);

  [[nodiscard]] GtkWidget *widget() const { return stack_.get(); }
  [[nodiscard]] GtkWidget *view() const { return grid_.view(); }
  [[nodiscard]] EmptyPage &empty_page() { return empty_; }
  [[nodiscard]] bool is_empty() const { return empty_shown_; }

  /// Makes the list current and shows it where it was left.
  void open();
  /// Remembers where somebody is and lets go of the list.
  void close();
  /// Builds the list again and keeps the place.
  void refresh();
  /// Moves the cursor to the library's current item, which the viewer may have changed.
  void follow_current_item();
  void redraw();
  /// Ctrl with plus or minus: larger or smaller pictures. @return true for these keys
  bool zoom_key(const GdkEventKey &event);
  /// Path of the file with the cursor; "" when there is none.
  [[nodiscard]] std::string path_at_cursor() const;

 private:
  bool build(bool same_view);
  void show_list(bool filled);

  Source source_;
  Grid grid_;
  EmptyPage empty_;
  pb::Ref<GtkWidget> stack_;
  Place place_;
  bool empty_shown_ = false;
};

}  // namespace gallery

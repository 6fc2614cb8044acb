/// A grid of items: the phone's icon view with what the gallery adds to it.
#pragma once

#include <gtk/gtk.h>
#include <pb-item-list.h>

#include <functional>
#include <glib-ptr.hpp>

namespace gallery {

/// Where somebody is in a list, told by items and not by rows, so that it holds when rows come
/// and go above.
struct Place {
  gint cursor_id = 0;  ///< id of the item with the cursor; 0 for the first row
  gint first_id = 0;   ///< id of the first item in view; 0 for the very beginning
  double offset = 0;   ///< pixels of its row that lie above the view
};

class Grid {
 public:
  enum class Cells { kFiles, kAlbums };
  using Activated = std::function<void(int row)>;
  using FindRow = std::function<int(gint id)>;

  Grid(const char *name, Cells cells, Activated activated);
  ~Grid();
  Grid(const Grid &) = delete;
  Grid &operator=(const Grid &) = delete;

  /// What to put into a form.
  [[nodiscard]] GtkWidget *widget() const { return scroller_.get(); }
  /// The icon view, for the focus and for the library.
  [[nodiscard]] GtkWidget *view() const { return view_.get(); }
  [[nodiscard]] GtkAdjustment *adjustment() const { return adjustment_.get(); }

  /// Shows a list from its beginning.
  void show(PbItemList *list);
  /// Shows a list where somebody was; an item that is not listed any more leaves its row's number
  /// as a hint.
  void show(PbItemList *list, const Place &place, const FindRow &find);
  /// Lets go of the list.
  void clear();

  [[nodiscard]] Place place() const;
  [[nodiscard]] int cursor() const;
  void set_cursor(int row);
  /// Makes the pictures of all grids larger or smaller; what is at the top stays there.
  void zoom(bool larger);
  /// Draws what is in view again.
  void redraw();

 private:
  static void on_activated(GtkIconView *view, GtkTreePath *path, gpointer self);
  static void on_scrolled(GtkAdjustment *adjustment, gpointer self);
  static gboolean on_wheel(GtkWidget *view, GdkEventScroll *event, gpointer self);
  static void on_resized(GtkWidget *widget, GtkAllocation *allocation, gpointer self);
  static gboolean make_missing_items_idle(gpointer self);
  void take_tile_size();
  void scroll_to(double goal);
  void make_missing_items_soon();
  void make_missing_items();
  [[nodiscard]] double row_height() const;

  pb::Ref<GtkAdjustment> adjustment_;
  pb::Ref<GtkWidget> view_;
  pb::Ref<GtkWidget> scroller_;
  Activated activated_;
  bool albums_;
  int tile_ = 0;
  pb::Ref<PbItemList> list_;
  pb::SourceId missing_items_;
};

}  // namespace gallery

#include "grid.hpp"

#include <icon-view.h>
#include <pb-app-common.h>
#include <virtual-list-store.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "cell.hpp"
#include "rows.hpp"
#include "text.hpp"
#include "tile-size.hpp"
#include "widgets.hpp"

namespace gallery {
namespace {

/// Three tiles and the space around them fill 480 pixels.
constexpr int kGap = 9;

bool has_item(PbItemList *list, int row) {
  GtkTreeIter iter;
  if (!gtk_virtual_list_store_iter_nth(GTK_VIRTUAL_LIST_STORE(list), &iter, row)) return true;
  GValue value = G_VALUE_INIT;
  gtk_tree_model_get_value(GTK_TREE_MODEL(list), &iter, 0, &value);
  const bool has = g_value_get_object(&value) != nullptr;
  g_value_unset(&value);
  return has;
}

/// What a screen reader says of a row.
gchar *spoken_name(PhoneIconView *view, gint row, gpointer /*data*/) {
  const PbItem *item = item_at(PB_ITEM_LIST(phone_icon_view_get_model(view)), row);
  if (item == nullptr) return nullptr;
  if (item->is_cluster == 0) {
    return g_strdup(display_name(item->filename != nullptr ? item->filename : "").c_str());
  }
  const std::string name = one_line(item->name != nullptr ? item->name : "");
  return g_strdup_printf("%s (%d)", name.c_str(), item->count);
}

}  // namespace

Grid::Grid(const char *name, Cells cells, Activated activated)
    : adjustment_(
          pb::Ref<GtkAdjustment>::sink(GTK_ADJUSTMENT(gtk_adjustment_new(0, 0, 0, 0, 0, 0)))),
      view_(pb::Ref<GtkWidget>::sink(phone_icon_view_new())),
      scroller_(pb::Ref<GtkWidget>::sink(gtk_scrolled_window_new(nullptr, adjustment()))),
      activated_(std::move(activated)),
      albums_(cells == Cells::kAlbums) {
  gtk_widget_set_name(view_.get(), name);
  auto *icons = GTK_ICON_VIEW(view_.get());
  gtk_icon_view_set_margin(icons, kGap);
  gtk_icon_view_set_row_spacing(icons, kGap);
  gtk_icon_view_set_column_spacing(icons, kGap);
  gtk_icon_view_set_item_padding(icons, 0);
  auto *view = PHONE_ICON_VIEW(view_.get());
  phone_icon_view_set_cell(view, make_cell(albums_), "item", 0);
  take_tile_size();

  // The view has a handle of its own, so a bar would only take room.
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller_.get()), GTK_POLICY_NEVER,
                                 GTK_POLICY_NEVER);
  gtk_container_add(GTK_CONTAINER(scroller_.get()), view_.get());

  g_signal_connect(view_.get(), "item-activated", G_CALLBACK(on_activated), this);
  phone_icon_view_set_name_func(view, spoken_name, nullptr, nullptr);
  g_signal_connect(view_.get(), "scroll-event", G_CALLBACK(on_wheel), this);
  g_signal_connect(view_.get(), "size-allocate", G_CALLBACK(on_resized), this);
  g_signal_connect(adjustment(), "value-changed", G_CALLBACK(on_scrolled), this);
}

Grid::~Grid() {
  clear();
  g_signal_handlers_disconnect_by_data(adjustment(), this);
  g_signal_handlers_disconnect_by_data(view_.get(), this);
}

double Grid::row_height() const {
  return gtk_icon_view_get_icon_height(GTK_ICON_VIEW(view_.get())) +
         gtk_icon_view_get_row_spacing(GTK_ICON_VIEW(view_.get()));
}

void Grid::take_tile_size() {
  const int tile = albums_ ? kTile : tile_size();
  if (tile == tile_) return;
  tile_ = tile;
  phone_icon_view_set_cell_size(PHONE_ICON_VIEW(view_.get()), tile,
                                albums_ ? kAlbumCellHeight : tile);
}

void Grid::zoom(bool larger) {
  if (albums_) return;
  auto *view = PHONE_ICON_VIEW(view_.get());
  int first = 0;
  int last = 0;
  const bool seen = phone_icon_view_get_visible_rows(view, &first, &last) != FALSE;
  const int held = cursor();
  set_tile_size(larger ? kLargeTile : kSmallTile);
  take_tile_size();
  // What somebody looks at is what the cursor is on, if it is in view at all.
  if (seen) phone_icon_view_scroll_to_row(view, first, 0);
  if (held >= first && held <= last) set_cursor(held);
  if (first == 0) scroll_to(0);
  make_missing_items_soon();
}

void Grid::show(PbItemList *list) {
  take_tile_size();
  list_ = pb::Ref<PbItemList>::share(list);
  phone_icon_view_set_model(PHONE_ICON_VIEW(view_.get()), GTK_TREE_MODEL(list));
  make_missing_items_soon();
}

void Grid::show(PbItemList *list, const Place &place, const FindRow &find) {
  const int old_cursor = cursor();
  show(list);
  const int length = pb_item_list_get_length(list);
  if (length == 0) return;

  const int row = place.cursor_id != 0 ? find(place.cursor_id) : 0;
  set_cursor(row >= 0 ? row : std::clamp(old_cursor, 0, length - 1));
  // The cursor may be out of view: what was in view counts.
  const int first = place.first_id != 0 ? find(place.first_id) : 0;
  if (first > 0) {
    phone_icon_view_scroll_to_row(PHONE_ICON_VIEW(view_.get()), first, 0);
    scroll_to(gtk_adjustment_get_value(adjustment()) + place.offset);
  } else if (first == 0) {
    scroll_to(0);
  }
}

void Grid::scroll_to(double goal) {
  GtkAdjustment *scroll = adjustment();
  const double end = gtk_adjustment_get_upper(scroll) - gtk_adjustment_get_page_size(scroll);
  gtk_adjustment_set_value(scroll, std::clamp(goal, 0.0, std::max(0.0, end)));
}

void Grid::clear() {
  missing_items_.remove();
  if (!list_) return;
  list_.reset();
  phone_icon_view_set_model(PHONE_ICON_VIEW(view_.get()), nullptr);
}

Place Grid::place() const {
  Place place;
  const double value = gtk_adjustment_get_value(adjustment());
  const double top = gtk_icon_view_get_top_margin(GTK_ICON_VIEW(view_.get()));
  const bool at_top = value <= top;
  // Somebody at the very beginning sees what is newest, and stays with that.
  if (!list_ || (at_top && cursor() <= 0)) return place;
  if (const PbItem *item = item_at(list_.get(), cursor())) place.cursor_id = id_of(item);
  int first = 0;
  if (at_top || !phone_icon_view_get_visible_rows(PHONE_ICON_VIEW(view_.get()), &first, nullptr)) {
    return place;
  }
  if (const PbItem *item = item_at(list_.get(), first)) place.first_id = id_of(item);
  if (row_height() > 0) place.offset = std::fmod(value - top, row_height());
  return place;
}

int Grid::cursor() const { return phone_icon_view_get_cursor_row(PHONE_ICON_VIEW(view_.get())); }

void Grid::set_cursor(int row) {
  phone_icon_view_set_cursor_row(PHONE_ICON_VIEW(view_.get()), row);
}

void Grid::redraw() { phone_icon_view_invalidate_cells(PHONE_ICON_VIEW(view_.get())); }

void Grid::on_activated(GtkIconView * /*view*/, GtkTreePath *path, gpointer self) {
  // The grid may go with what the row opens.
  const Activated activated = static_cast<Grid *>(self)->activated_;
  activated(gtk_tree_path_get_indices(path)[0]);
}

void Grid::on_scrolled(GtkAdjustment * /*adjustment*/, gpointer self) {
  static_cast<Grid *>(self)->make_missing_items_soon();
}

gboolean Grid::on_wheel(GtkWidget * /*view*/, GdkEventScroll *event, gpointer self) {
  auto *grid = static_cast<Grid *>(self);
  if (event->direction != GDK_SCROLL_UP && event->direction != GDK_SCROLL_DOWN) return FALSE;
  if ((event->state & GDK_CONTROL_MASK) != 0) {
    grid->zoom(event->direction == GDK_SCROLL_UP);
    return TRUE;
  }
  const double step = event->direction == GDK_SCROLL_UP ? -grid->row_height() : grid->row_height();
  grid->scroll_to(gtk_adjustment_get_value(grid->adjustment()) + step);
  return TRUE;
}

void Grid::on_resized(GtkWidget * /*widget*/, GtkAllocation * /*allocation*/, gpointer self) {
  static_cast<Grid *>(self)->make_missing_items_soon();
}

/// The library makes the first twelve items of a list and refreshes as many rows as a phone
/// shows; a larger window has more in view.
void Grid::make_missing_items_soon() {
  if (missing_items_.pending()) return;
  missing_items_ = pb::SourceId(
      gdk_threads_add_idle_full(G_PRIORITY_HIGH_IDLE, make_missing_items_idle, this, nullptr));
}

gboolean Grid::make_missing_items_idle(gpointer self) {
  auto *grid = static_cast<Grid *>(self);
  grid->missing_items_.forget();
  grid->make_missing_items();
  return G_SOURCE_REMOVE;
}

void Grid::make_missing_items() {
  int first = 0;
  int last = 0;
  if (!list_ || !phone_icon_view_get_visible_rows(PHONE_ICON_VIEW(view_.get()), &first, &last)) {
    return;
  }
  auto *store = GTK_VIRTUAL_LIST_STORE(list_.get());
  for (int row = first; row <= last; ++row) {
    // A row that is not filled is filled when it is drawn.
    if (!gtk_virtual_list_store_row_is_filled(store, row) || has_item(list_.get(), row)) continue;
    item_at(list_.get(), row);
  }
}

}  // namespace gallery

#include "list-page.hpp"

#include <gdk/gdkkeysyms.h>
#include <pb-app-common.h>

#include <utility>

#include "rows.hpp"
#include "widgets.hpp"

namespace gallery {

ListPage::ListPage(const char *name, Grid::Cells cells, Source source, Grid::Activated activated)
    : source_(std::move(source)),
      grid_(name, cells, std::move(activated)),
      stack_(pb::Ref<GtkWidget>::sink(gtk_vbox_new(FALSE, 0))) {
  gtk_box_pack_start(GTK_BOX(stack_.get()), grid_.widget(), TRUE, TRUE, 0);
  gtk_box_pack_start(GTK_BOX(stack_.get()), empty_.widget(), TRUE, TRUE, 0);
  set_shown(empty_.widget(), false);
}

void ListPage::open() {
  const bool filled = build(false);
  grid_.show(pb_app_common_get_item_list(), place_, source_.find_row);
  show_list(filled);
}

void ListPage::close() {
  place_ = grid_.place();
  grid_.clear();
  pb_app_common_vls_disconnect_signal();
  pb_app_common_set_adjustment(nullptr, nullptr);
}

void ListPage::refresh() {
  const Place place = grid_.place();
  const PbAppCommon *state = pb_app_common_get_instance();
  const PbItem *current = item_at(pb_app_common_get_item_list(), state->item_index);
  const gint current_id = current != nullptr ? id_of(current) : 0;

  const bool filled = build(true);
  grid_.show(pb_app_common_get_item_list(), place, source_.find_row);
  show_list(filled);
  const int row = current_id != 0 ? source_.find_row(current_id) : -1;
  if (row >= 0 && row != state->item_index) pb_app_common_navigate_item_by_index(row);
}

bool ListPage::build(bool same_view) {
  pb_app_common_set_adjustment(grid_.view(), grid_.adjustment());
  // The album of category 3 is known here; the library would take it from the current item.
  if (source_.category == kCategoryAlbum) {
    return pb_app_common_build_item_list(kCategoryAlbum, source_.album_id);
  }
  return same_view ? pb_app_common_resync_current_category()
                   : pb_app_common_set_category(source_.category, TRUE);
}

void ListPage::show_list(bool filled) {
  if (filled == !empty_shown_) return;
  empty_shown_ = !filled;
  set_shown(empty_.widget(), !filled);
  set_shown(grid_.widget(), filled);
  // A grid that was hidden has lost the keyboard.
  if (filled && gtk_widget_get_mapped(stack_.get())) gtk_widget_grab_focus(grid_.view());
}

void ListPage::follow_current_item() {
  const int row = pb_app_common_get_instance()->item_index;
  if (row != grid_.cursor()) grid_.set_cursor(row);
}

bool ListPage::zoom_key(const GdkEventKey &event) {
  if ((event.state & GDK_CONTROL_MASK) == 0) return false;
  switch (event.keyval) {
    case GDK_KEY_plus:
    case GDK_KEY_equal:
    case GDK_KEY_KP_Add:
      grid_.zoom(true);
      return true;
    case GDK_KEY_minus:
    case GDK_KEY_KP_Subtract:
      grid_.zoom(false);
      return true;
    default:
      return false;
  }
}

std::string ListPage::path_at_cursor() const {
  const PbItem *item = item_at(pb_app_common_get_item_list(), grid_.cursor());
  return item != nullptr && item->is_cluster == 0 && item->filename != nullptr ? item->filename
                                                                               : "";
}

void ListPage::redraw() { grid_.redraw(); }

}  // namespace gallery

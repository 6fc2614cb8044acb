#include <icon-view.h>
#include <pb-item-list.h>
#include <pb-item.h>
#include <pb-util-file.h>
#include <check.hpp>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "private.hpp"

using pb::item_list::private_of;

namespace {

constexpr gint kIdlePriority = 130;  // after drawing and input
constexpr gint kFirstFillItems = 12;

/// The first fill counts from the adjustment alone, without the view's top margin.
gint first_row_without_margin(const PbItemListPrivate &priv) {
  if (!(priv.row_height > 0)) return 0;
  return pb::item_list::row_at_height(gtk_adjustment_get_value(priv.vadjustment.get()),
                                      priv.row_height, priv.columns);
}

void start_idle(PbItemList *list) {
  PbItemListPrivate &priv = private_of(list);
  pb::item_list::remove_idle_source(priv);
  priv.refresh_remaining = priv.refresh_count;
  priv.refresh_progress = 0;
  pb_random_list_init(&priv.refresh_order, priv.batch_size);
  priv.idle_source = static_cast<gint>(gdk_threads_add_idle_full(
      kIdlePriority, pb_item_list_icon_refresh_at_idle_cb, list, nullptr));
}

/// Ends a refresh. A main loop that is in a call of the pending source does not mind its removal;
/// for any other caller the source would stay and run once more.
gboolean end_refresh(PbItemListPrivate &priv) {
  priv.refresh_running = 0;
  pb::item_list::remove_idle_source(priv);
  return FALSE;
}

void fill_first_row(const char *entry, PbItemList *list, gint row) {
  PbItemListPrivate &priv = private_of(list);
  if (row >= kFirstFillItems) {
    pb::item_list::set_row(list, row, nullptr, priv.default_pixbuf.get());
    return;
  }
  const MbItem *record = pb::item_list::held_record(list, row);
  if (record == nullptr) {
    LOG_FOR(entry, PB_LOG_WARNING, "mbitem NULL\n");
    priv.refresh_running = 0;
    return;
  }
  const auto item = pb::item_list::make_marked_item(*record);
  const auto pixbuf = pb::Ref<GdkPixbuf>::adopt(pb_item_get_render_pixbuf(item.get()));
  pb::item_list::set_row(list, row, item.get(), pixbuf.get());
}

/// Draws the next number of the order, and frees its storage, which drawing leaves to the caller.
gint draw(GList **order) {
  std::vector<gpointer> numbers;
  for (const GList *link = *order; link != nullptr; link = link->next) {
    numbers.push_back(link->data);
  }
  const gint number = pb_get_random_index(order);
  std::size_t drawn = 0;  // what is left keeps its order: the first that differs is gone
  for (const GList *link = *order; link != nullptr && link->data == numbers[drawn];
       link = link->next) {
    ++drawn;
  }
  if (drawn < numbers.size()) std::free(numbers[drawn]);
  return number;
}

/// Chooses the row of one call. FALSE when the order has run dry.
bool choose_row(const char *entry, PbItemListPrivate &priv, gint start, gint *row) {
  const gint half = priv.refresh_count - priv.batch_size;
  if (priv.refresh_remaining > half) {
    priv.refresh_progress = draw(&priv.refresh_order);
    if (priv.refresh_progress < 0) {
      LOG_FOR(entry, PB_LOG_ERROR, "Error: random index = %d\n", priv.refresh_progress);
      return false;
    }
    *row = priv.view_start + priv.refresh_progress;
    return true;
  }
  if (priv.refresh_remaining == half) priv.refresh_progress = 0;
  *row = priv.scroll_direction == 1 ? start + priv.batch_size + priv.refresh_progress
                                    : priv.view_start + priv.refresh_progress - half;
  return true;
}

/// A row without any pixbuf has only been asked for what lay ready: it is not loaded either.
bool needs_thumbnail(const PbItemListPrivate &priv, GdkPixbuf *pixbuf) {
  return pixbuf == nullptr || pixbuf == priv.default_pixbuf.get();
}

/// Loads the thumbnail of a row that has none. FALSE when the row has neither item nor record.
bool refresh_row(const char *entry, PbItemList *list, GtkTreeIter *iter, gint row) {
  PbItemListPrivate &priv = private_of(list);
  PbItem *read_item = nullptr;
  GdkPixbuf *read_pixbuf = nullptr;
  gtk_tree_model_get(GTK_TREE_MODEL(list), iter, 0, &read_item, 3, &read_pixbuf, -1);
  auto item = pb::Ref<PbItem>::adopt(read_item);
  auto pixbuf = pb::Ref<GdkPixbuf>::adopt(read_pixbuf);
  if (!item) {
    const MbItem *record = pb::item_list::held_record(list, row);
    if (record == nullptr) {
      LOG_FOR(entry, PB_LOG_WARNING, "mbitem NULL\n");
      priv.refresh_running = 0;
      return false;
    }
    item = pb::item_list::make_marked_item(*record);
  }
  if (!needs_thumbnail(priv, pixbuf.get())) return true;
  const auto thumbnail = pb::Ref<GdkPixbuf>::adopt(pb_item_get_render_pixbuf(item.get()));
  if (!thumbnail && !pixbuf && read_item != nullptr) return true;
  if (thumbnail) pixbuf = thumbnail;
  gtk_virtual_list_store_set(GTK_VIRTUAL_LIST_STORE(list), iter, 0, item.get(), 3, pixbuf.get(),
                             -1);
  return true;
}

}  // namespace

namespace pb::item_list {

gint row_at_height(gdouble y, gdouble row_height, gint columns) {
  const gdouble limit = G_MAXINT / 2.0 / columns;
  const gdouble line = std::clamp(y / row_height, -limit, limit);
  return static_cast<gint>(line) * columns;
}

gint first_visible_row(GtkIconView *view, GtkAdjustment *adjustment, gdouble row_height,
                       gint columns) {
  if (view == nullptr || adjustment == nullptr || !(row_height > 0)) return 0;
  return row_at_height(gtk_adjustment_get_value(adjustment) - gtk_icon_view_get_top_margin(view),
                       row_height, columns);
}

gint first_visible_row(const PbItemListPrivate &priv) {
  return first_visible_row(priv.icon_view.get(), priv.vadjustment.get(), priv.row_height,
                           priv.columns);
}

}  // namespace pb::item_list

void pb_item_list_set_adjustment_cb(PbItemList *list, GtkWidget *icon_view,
                                    GtkAdjustment *adjustment, gboolean no_thumbnails) {
  PB_CHECK(PB_IS_ITEM_LIST(list));
  PB_LOG(PB_LOG_INFO, "\n");
  PbItemListPrivate &priv = private_of(list);
  if (GTK_IS_ICON_VIEW(icon_view)) {
    GtkIconView *view = GTK_ICON_VIEW(icon_view);
    priv.icon_view.set(view);
    priv.row_height = gtk_icon_view_get_icon_height(view) + gtk_icon_view_get_row_spacing(view);
  } else {
    PB_LOG(PB_LOG_WARNING, "iconview is not ready\n");
  }
  priv.loads_thumbnails = no_thumbnails ? 0 : 1;
  if (GTK_IS_ADJUSTMENT(adjustment)) {
    // Followed twice, a scroll up would look like one that did not move.
    pb::item_list::release_adjustment(list);
    priv.vadjustment.set(adjustment);
    g_signal_connect(adjustment, "notify::value", G_CALLBACK(pb_item_list_vadjustment_cb), list);
  } else {
    PB_LOG(PB_LOG_WARNING, "adjustment is not ready\n");
  }
}

void pb_item_list_icon_refresh_when_start(PbItemList *list) {
  PB_CHECK(PB_IS_ITEM_LIST(list));
  PB_LOG(PB_LOG_INFO, "VLS init\n");
  PbItemListPrivate &priv = private_of(list);
  if (priv.icon_view.get() == nullptr) {
    PB_LOG(PB_LOG_WARNING, "iconview is not set yet, return\n");
    return;
  }
  if (priv.vadjustment.get() == nullptr) {
    PB_LOG(PB_LOG_WARNING, "adjustment is not set yet, return\n");
    return;
  }
  if (priv.loads_thumbnails == 0) return;

  const gint rows = std::min(priv.row_count, pb::item_list::kPage);
  priv.first_fill_busy = 1;
  for (gint row = 0; row < rows; ++row) fill_first_row(__func__, list, row);
  priv.first_fill_busy = 0;

  priv.view_start = first_row_without_margin(priv);
  PB_LOG(PB_LOG_INFO, "priv->icon_refresh_idle_start=%d\n", priv.view_start);
  start_idle(list);
}

void pb_item_list_vadjustment_cb(GObject * /*object*/, GParamSpec * /*pspec*/, PbItemList *list) {
  PB_CHECK(PB_IS_ITEM_LIST(list));
  PbItemListPrivate &priv = private_of(list);
  const gint start = pb::item_list::first_visible_row(priv);
  priv.scroll_direction = start < priv.view_start ? 0 : 1;
  priv.view_start = start;
  start_idle(list);
  GtkAdjustment *adjustment = priv.vadjustment.get();
  PB_LOG(PB_LOG_INFO, "idle cb set : current_value =%f, current_view_start=%d\n",
         adjustment == nullptr ? 0.0 : gtk_adjustment_get_value(adjustment), priv.view_start);
}

void pb_item_list_rsync_current_icons(PbItemList *list) {
  PB_CHECK(PB_IS_ITEM_LIST(list));
  PB_LOG(PB_LOG_INFO, "\n");
  if (private_of(list).refresh_running != 0) return;
  pb_item_list_vadjustment_cb(nullptr, nullptr, list);
}

gboolean pb_item_list_icon_refresh_at_idle_cb(gpointer list) {
  PB_CHECK(PB_IS_ITEM_LIST(list), FALSE);
  // A row that changes may make the application drop the list.
  const auto self = pb::Ref<PbItemList>::share(PB_ITEM_LIST(list));
  PbItemListPrivate &priv = private_of(self.get());
  const gint source = priv.idle_source;
  priv.refresh_running = 1;
  const gint start = pb::item_list::first_visible_row(priv);
  if (start != priv.view_start) {
    PB_LOG(PB_LOG_INFO, "start index changed (prev:%d, curr:%d), return\n", priv.view_start, start);
    priv.view_start = start;
    priv.refresh_progress = 0;
    return end_refresh(priv);
  }
  gint row = 0;
  if (!choose_row(__func__, priv, start, &row)) return end_refresh(priv);

  const gint half = priv.refresh_count - priv.batch_size;
  GtkTreeIter iter;
  const bool positioned = gtk_virtual_list_store_iter_nth(GTK_VIRTUAL_LIST_STORE(list), &iter, row);
  const bool refreshed = positioned && refresh_row(__func__, self.get(), &iter, row);
  // A row that changes may have scrolled the view: another pass has taken over.
  if (priv.idle_source != source) return FALSE;
  if (!refreshed) {
    const bool inside = row >= 0 && row < priv.row_count;
    if (!inside && priv.refresh_remaining <= half) return end_refresh(priv);
    if (inside && !positioned) PB_LOG(PB_LOG_WARNING, "ITEM NOT FOUND!!! [%d]\n", row);
  }

  priv.refresh_remaining -= 1;
  if (priv.refresh_remaining < half) priv.refresh_progress += 1;
  if (priv.refresh_remaining >= 1) return TRUE;
  return end_refresh(priv);
}

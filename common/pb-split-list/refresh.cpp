#include <icon-view.h>
#include <pb-debug.h>
#include <pb-item.h>
#include <pb-split-list.h>
#include <pb-view-manager.h>
#include <check.hpp>

#include <algorithm>

#include "private.hpp"

using pb::split_list::point;
using pb::split_list::private_of;

namespace {

constexpr gint kIdlePriority = 130;  // after drawing and input

struct View {
  gint first;
  gint rows;
  bool operator==(const View &) const = default;
};

/// The columns that a view says or has room for; the list's own number while it has no size.
gint count_columns(const PbSplitListPrivate &priv, GtkIconView *view) {
  if (gtk_icon_view_get_columns(view) > 0) return gtk_icon_view_get_columns(view);
  GtkAllocation size;
  gtk_widget_get_allocation(GTK_WIDGET(view), &size);
  if (!gtk_widget_get_realized(GTK_WIDGET(view)) || size.width <= 1) return priv.columns;
  // Icons are as wide as high unless the view says otherwise.
  const gint told = gtk_icon_view_get_item_width(view);
  const gint cell = std::max(told > 0 ? told : gtk_icon_view_get_icon_height(view), 1);
  const gint spacing = std::max(gtk_icon_view_get_column_spacing(view), 0);
  return std::max((size.width + spacing) / (cell + spacing), 1);
}

void read_geometry(PbSplitListPrivate &priv) {
  GtkIconView *view = priv.icon_view.get();
  if (view == nullptr) return;
  priv.row_height = gtk_icon_view_get_icon_height(view) + gtk_icon_view_get_row_spacing(view);
  priv.columns = count_columns(priv, view);
}

View visible_rows(const PbSplitListPrivate &priv) {
  const gint first = pb::item_list::first_visible_row(priv.icon_view.get(), priv.vadjustment.get(),
                                                      priv.row_height, priv.columns);
  View view{std::max(first, 0), priv.rows_in_view};
  if (priv.vadjustment.get() == nullptr || priv.row_height <= 0) return view;
  const gdouble page = gtk_adjustment_get_page_size(priv.vadjustment.get());
  const gint lines = pb::item_list::row_at_height(page, priv.row_height, 1) + 2;
  view.rows =
      std::max(view.rows, static_cast<gint>(std::min<gint64>(gint64{lines} * priv.columns,
                                                             pb::split_list::kMostIcons / 2)));
  return view;
}

void begin_pass(PbSplitListPrivate &priv, const View &view) {
  priv.view_start = view.first;
  priv.refresh_count = view.rows;
  priv.refresh_remaining = view.rows;
  priv.refresh_progress = 0;
}

/// The row of the next step: those in view, then those where the scroll goes.
gint row_of_step(const PbSplitListPrivate &priv) {
  const bool ahead = priv.refresh_progress >= priv.refresh_count;
  if (ahead && priv.scroll_direction == 0) {
    return priv.view_start - 1 - (priv.refresh_progress - priv.refresh_count);
  }
  return priv.view_start + priv.refresh_progress;
}

/// A thumbnail in the size of icons; smaller ones stay as they are.
pb::Ref<GdkPixbuf> make_icon(PbItem *item) {
  const auto thumbnail = pb::Ref<GdkPixbuf>::adopt(pb_item_get_render_pixbuf(item));
  if (!thumbnail) return nullptr;
  const gint width = gdk_pixbuf_get_width(thumbnail.get());
  const gint height = gdk_pixbuf_get_height(thumbnail.get());
  if (std::max(width, height) <= pb::split_list::kIconSize) return thumbnail;
  gint icon_width = width;
  gint icon_height = height;
  pb_calc_scaled_size(width, height, pb::split_list::kIconSize, pb::split_list::kIconSize,
                      PB_SCALE_FIT_WIDTH | PB_SCALE_FIT_HEIGHT, &icon_width, &icon_height);
  // The short side of a long strip comes out as 0.
  return pb::Ref<GdkPixbuf>::adopt(gdk_pixbuf_scale_simple(
      thumbnail.get(), std::max(icon_width, 1), std::max(icon_height, 1), GDK_INTERP_BILINEAR));
}

/// Keeps the number of thumbnails within bounds: those farthest from the view go.
void drop_far_icons(PbSplitList *list) {
  PbSplitListPrivate &priv = private_of(list);
  while (priv.icon_rows.size() > pb::split_list::kMostIcons) {
    const gint before = priv.view_start - *priv.icon_rows.begin();
    const gint after = *priv.icon_rows.rbegin() - priv.view_start;
    const auto farthest = before > after ? priv.icon_rows.begin() : --priv.icon_rows.end();
    const gint row = *farthest;
    priv.icon_rows.erase(farthest);
    GtkTreeIter iter;
    if (!point(list, &iter, row)) continue;
    gtk_list_store_set(GTK_LIST_STORE(list), &iter, 3, priv.default_icon.get(), -1);
  }
}

/// Loads the thumbnail of a row that shows the placeholder.
void refresh_row(PbSplitList *list, gint row) {
  PbSplitListPrivate &priv = private_of(list);
  GtkTreeIter iter;
  if (!point(list, &iter, row)) return;
  PbItem *read_item = nullptr;
  GdkPixbuf *read_icon = nullptr;
  gtk_tree_model_get(GTK_TREE_MODEL(list), &iter, 0, &read_item, 3, &read_icon, -1);
  const auto item = pb::Ref<PbItem>::adopt(read_item);
  const auto shown = pb::Ref<GdkPixbuf>::adopt(read_icon);
  if (!item || shown.get() != priv.default_icon.get()) return;
  const auto icon = make_icon(item.get());
  if (!icon) return;
  priv.icon_rows.insert(row);
  gtk_list_store_set(GTK_LIST_STORE(list), &iter, 3, icon.get(), -1);
  drop_far_icons(list);
}

template <typename Widget>
bool disconnect(pb::item_list::Weak<Widget> &widget, gpointer handler, PbSplitList *list) {
  if (widget.get() == nullptr) return false;
  g_signal_handlers_disconnect_by_func(widget.get(), handler, list);
  widget.set(nullptr);
  return true;
}

}  // namespace

static gboolean pb_split_list_icon_refresh_at_idle_cb(gpointer data) {
  // A row that changes may make the application drop the list.
  const auto self = pb::Ref<PbSplitList>::share(PB_SPLIT_LIST(data));
  PbSplitListPrivate &priv = private_of(self.get());
  const gint source = priv.refresh_source;
  // A view that is laid out anew has not said so to anybody.
  read_geometry(priv);
  const View view = visible_rows(priv);
  if (view != View{priv.view_start, priv.refresh_count}) begin_pass(priv, view);
  refresh_row(self.get(), row_of_step(priv));
  // A row that changes may have scrolled the view: another pass has taken over.
  if (priv.refresh_source != source) return FALSE;
  priv.refresh_progress += 1;
  priv.refresh_remaining = std::max(priv.refresh_remaining - 1, 0);
  if (priv.refresh_progress < priv.refresh_count + priv.rows_ahead) return TRUE;
  priv.refresh_source = pb::split_list::kNoSource;
  return FALSE;
}

namespace pb::split_list {

void start_refresh(PbSplitList *list) {
  PbSplitListPrivate &priv = private_of(list);
  stop_refresh(priv);
  read_geometry(priv);
  const View view = visible_rows(priv);
  priv.scroll_direction = view.first < priv.view_start ? 0 : 1;
  begin_pass(priv, view);
  if (priv.icon_view.get() == nullptr || priv.loads_thumbnails == 0) return;
  priv.refresh_source = static_cast<gint>(gdk_threads_add_idle_full(
      kIdlePriority, pb_split_list_icon_refresh_at_idle_cb, list, nullptr));
}

void stop_refresh(PbSplitListPrivate &priv) {
  if (priv.refresh_source > 0) g_source_remove(static_cast<guint>(priv.refresh_source));
  priv.refresh_source = kNoSource;
}

void follow_widgets(PbSplitList *list) {
  PbSplitListPrivate &priv = private_of(list);
  GtkWidget *view = nullptr;
  GtkAdjustment *adjustment = nullptr;
  GtkWidget *paned = nullptr;
  pb_split_list_get_adjustment_widget(&view, &adjustment, &paned);
  if (view != nullptr) priv.icon_view.set(GTK_ICON_VIEW(view));
  if (adjustment != nullptr) {
    release_adjustment(list);
    priv.vadjustment.set(adjustment);
    g_signal_connect(adjustment, "notify::value", G_CALLBACK(pb_split_list_vadjustment_cb), list);
  }
  if (paned != nullptr) {
    release_paned(list);
    priv.hpaned.set(GTK_PANED(paned));
    g_signal_connect(paned, "notify::position", G_CALLBACK(pb_split_list_hpaned_cb), list);
  }
}

bool release_adjustment(PbSplitList *list) {
  return disconnect(private_of(list).vadjustment,
                    reinterpret_cast<gpointer>(pb_split_list_vadjustment_cb), list);
}

bool release_paned(PbSplitList *list) {
  return disconnect(private_of(list).hpaned, reinterpret_cast<gpointer>(pb_split_list_hpaned_cb),
                    list);
}

}  // namespace pb::split_list

void pb_split_list_vadjustment_cb(GObject * /*object*/, GParamSpec * /*pspec*/, PbSplitList *list) {
  PB_CHECK(PB_IS_SPLIT_LIST(list));
  pb::split_list::start_refresh(list);
  PB_LOG(PB_LOG_INFO, "current_view_start=%d\n", private_of(list).view_start);
}

void pb_split_list_hpaned_cb(GObject * /*object*/, GParamSpec * /*pspec*/, PbSplitList *list) {
  PB_CHECK(PB_IS_SPLIT_LIST(list));
  pb::split_list::start_refresh(list);
  PB_LOG(PB_LOG_INFO, "columns=%d, current_view_start=%d\n", private_of(list).columns,
         private_of(list).view_start);
}

void pb_split_list_icon_refresh_when_start(PbSplitList *list) {
  PB_CHECK(PB_IS_SPLIT_LIST(list));
  PB_LOG(PB_LOG_INFO, "\n");
  pb::split_list::follow_widgets(list);
  // What a view shows at its start is there at once.
  if (pb::split_list::row_count(list) == 0) pb::split_list::fill_slice(__func__, list);
  if (pb::split_list::has_more_rows(list)) pb::split_list::start_filling(list);
  pb::split_list::start_refresh(list);
}

#include <algorithm>

#include "check.hpp"
#include "phone-gtk/drawing-pass.hpp"
#include "phone-gtk/virtual-list-private.hpp"

namespace phone::gtk {
namespace {

/// Cache-size rows around the visible ones, pushed back into the list at its ends. The visible
/// rows always belong to it.
RowRange window_around(const GtkVirtualListStorePrivate &priv) {
  if (priv.cache_size == 0) return {};
  const int first = std::max(priv.view.first, 0);
  const int last = std::min(priv.view.last, priv.length - 1);
  if (last < first) return {};
  const int visible = last - first + 1;
  const int size = std::min(std::max(priv.cache_size, visible), priv.length);
  const int start = std::clamp(first - (size - visible) / 2, 0, priv.length - size);
  return {start, start + size - 1};
}

void drop_what_left_the_window(GtkVirtualListStorePrivate &priv) {
  priv.owes_move = false;
  priv.outside = 0;
  priv.moved_at = ++priv.clock;
  const auto dropped = priv.rows.take_unpinned_outside(priv.window.first, priv.window.last);
}

void drop_oldest_outside(GtkVirtualListStorePrivate &priv) {
  auto rows = priv.rows.unpinned_outside(priv.window.first, priv.window.last);
  const auto keep = static_cast<std::size_t>(priv.cache_size);
  priv.outside = std::min(priv.outside, priv.cache_size);
  if (rows.size() <= keep) return;
  const auto end = rows.begin() + static_cast<std::ptrdiff_t>(rows.size() - keep);
  std::nth_element(rows.begin(), end, rows.end());
  DroppedRows dropped;
  for (auto row = rows.begin(); row != end; ++row) dropped.push_back(priv.rows.take(row->second));
}

bool owes_eviction(const GtkVirtualListStorePrivate &priv) {
  return priv.cache_size != 0 && (priv.owes_move || priv.outside > priv.cache_size);
}

gboolean evict_at_idle(gpointer data) {
  auto &priv = private_of(GTK_VIRTUAL_LIST_STORE(data));
  priv.eviction.forget();
  // A handler may run the main loop within a request or a set, whose end schedules this again.
  if (priv.emitting || priv.setting > 0 || !owes_eviction(priv)) return G_SOURCE_REMOVE;
  if (priv.owes_move) {
    drop_what_left_the_window(priv);
  } else {
    drop_oldest_outside(priv);
  }
  return G_SOURCE_REMOVE;
}

bool in_pass(const GtkVirtualListStorePrivate &priv) {
  return priv.burst.passes > 0 || priv.burst.closer.pending();
}

void close_burst(GtkVirtualListStore *store) {
  auto &priv = private_of(store);
  if (!priv.burst.open || in_pass(priv) || priv.emitting) return;
  const auto alive = pb::Ref<GtkVirtualListStore>::share(store);
  priv.burst.open = false;
  priv.emitting = true;
  g_signal_emit(store, cache_signal(kFinalizeCache), 0, priv.burst.last_row);
  priv.emitting = false;
}

gboolean end_pass_at_idle(gpointer data) {
  auto *store = GTK_VIRTUAL_LIST_STORE(data);
  private_of(store).burst.closer.forget();
  close_burst(store);
  return G_SOURCE_REMOVE;
}

void move_window(GtkVirtualListStore *store, int first, int last) {
  auto &priv = private_of(store);
  priv.view = {first, last};
  const RowRange window = window_around(priv);
  if (window == priv.window) return;
  priv.window = window;
  if (priv.cache_size == 0) return;
  if (priv.emitting || priv.setting > 0) {
    priv.owes_move = true;
    schedule_eviction(store);
    return;
  }
  drop_what_left_the_window(priv);
}

}  // namespace

void schedule_eviction(GtkVirtualListStore *store) {
  auto &priv = private_of(store);
  if (priv.eviction.pending() || !owes_eviction(priv)) return;
  priv.eviction = pb::SourceId(
      gdk_threads_add_idle_full(G_PRIORITY_DEFAULT_IDLE, evict_at_idle, store, nullptr));
}

FilledRow &fill(GtkVirtualListStore *store, int row, bool pinned) {
  auto &priv = private_of(store);
  const bool outside = !pinned && !priv.window.contains(row);
  auto &filled =
      priv.rows.insert(row, std::make_unique<FilledRow>(priv.types, pinned, outside, ++priv.clock));
  if (outside) {
    ++priv.outside;
    schedule_eviction(store);
  }
  return filled;
}

void forget_outside(GtkVirtualListStorePrivate &priv, const FilledRow *row) {
  if (row != nullptr && row->outside && row->age > priv.moved_at) --priv.outside;
}

void request(GtkVirtualListStore *store, int row) {
  auto &priv = private_of(store);
  if (priv.emitting) return;
  if (!g_signal_has_handler_pending(store, cache_signal(kFillCache), 0, FALSE)) return;
  const auto alive = pb::Ref<GtkVirtualListStore>::share(store);

  priv.emitting = true;
  if (!priv.burst.open) {
    priv.burst.open = true;
    g_signal_emit(store, cache_signal(kInitializeCache), 0, row);
  }
  priv.burst.last_row = row;
  const RowRange asked =
      priv.window.contains(row)
          ? RowRange{priv.window.first, std::min(priv.window.last, priv.length - 1)}
          : RowRange{row, row};
  g_signal_emit(store, cache_signal(kFillCache), 0, asked.first, asked.last, row);
  priv.emitting = false;

  close_burst(store);
  schedule_eviction(store);
}

DrawingPass::DrawingPass(GtkTreeModel *model, int first, int last) {
  if (!GTK_IS_VIRTUAL_LIST_STORE(model)) return;
  store_ = pb::Ref<GtkVirtualListStore>::share(GTK_VIRTUAL_LIST_STORE(model));
  auto &burst = private_of(store_.get()).burst;
  burst.closer.remove();
  ++burst.passes;
  move_window(store_.get(), first, last);
}

DrawingPass::~DrawingPass() {
  if (!store_) return;
  --private_of(store_.get()).burst.passes;
  close_burst(store_.get());
}

}  // namespace phone::gtk

void gtk_virtual_list_store_set_view_range(GtkVirtualListStore *store, gint first, gint last) {
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store));
  auto &priv = phone::gtk::private_of(store);
  if (!phone::gtk::in_pass(priv)) {
    priv.burst.closer = pb::SourceId(
        gdk_threads_add_idle_full(G_PRIORITY_HIGH, phone::gtk::end_pass_at_idle, store, nullptr));
  }
  phone::gtk::move_window(store, first, last);
}

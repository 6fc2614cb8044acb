/// What the files of GtkVirtualListStore share: its state, its iterators (virtual-list-model.cpp)
/// and the filling and dropping of rows (virtual-list-cache.cpp).
#pragma once

#include <gtk/gtk.h>
#include <virtual-list-store.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "glib-ptr.hpp"
#include "phone-gtk/row-range.hpp"
#include "phone-gtk/sparse-rows.hpp"

namespace phone::gtk {

/// What old iterators have to know: one row went, or all rows from one on.
struct RowLoss {
  int row;
  bool and_all_behind;
};

/// A burst begins with the first request of a pass and ends with the pass.
struct Burst {
  int passes = 0;       ///< open ones of the host's views
  pb::SourceId closer;  ///< ends the pass of a view that only moved the window
  bool open = false;
  int last_row = 0;
};

}  // namespace phone::gtk

/// Private part of a GtkVirtualListStore.
struct GtkVirtualListStorePrivate {
  std::vector<GType> types;
  int length = 0;
  phone::gtk::SparseRows rows;
  std::vector<phone::gtk::RowLoss> losses;
  gint stamp = static_cast<gint>(g_random_int() | 1U);

  int cache_size = 0;
  phone::gtk::RowRange view;
  phone::gtk::RowRange window;
  std::uint64_t clock = 0;     ///< grows with every fill and every move of the window
  std::uint64_t moved_at = 0;  ///< what was filled outside before that has been dropped
  int outside = 0;             ///< rows filled outside since then that may be dropped
  bool owes_move = false;      ///< the window moved while a row was being asked for
  pb::SourceId eviction;

  bool emitting = false;  ///< a handler of the cache signals runs
  int setting = 0;        ///< sets whose "row-changed" is being emitted
  phone::gtk::Burst burst;
};

namespace phone::gtk {

enum CacheSignal { kFillCache, kInitializeCache, kFinalizeCache, kCacheSignalCount };

GtkVirtualListStorePrivate &private_of(GtkVirtualListStore *store);
guint cache_signal(CacheSignal signal);

void tree_model_init(GtkTreeModelIface *iface);
/// Makes an iterator for a row of the list.
void name_row(const GtkVirtualListStorePrivate &priv, GtkTreeIter *iter, int row);
/// As name_row; an iterator that names nothing and false for a number outside the list.
bool position(const GtkVirtualListStorePrivate &priv, GtkTreeIter *iter, int row);
/// The present number of the row that an iterator names; -1 when it names none any more.
int row_of(const GtkVirtualListStorePrivate &priv, const GtkTreeIter *iter);

/// Gives an unfilled row empty values.
FilledRow &fill(GtkVirtualListStore *store, int row, bool pinned);
/// Asks the handlers for one unfilled row.
void request(GtkVirtualListStore *store, int row);
/// Tells the accounts that a row was taken out; nullptr for an unfilled one.
void forget_outside(GtkVirtualListStorePrivate &priv, const FilledRow *row);
/// Drops rows from an idle when there are more of them than the cache may hold.
void schedule_eviction(GtkVirtualListStore *store);

}  // namespace phone::gtk

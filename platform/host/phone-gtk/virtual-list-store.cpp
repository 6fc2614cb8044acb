#include "virtual-list-store.h"

#include <gobject/gvaluecollector.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <vector>

#include "check.hpp"
#include "glib-ptr.hpp"
#include "phone-gtk/drawing-pass.hpp"
#include "phone-gtk/sparse-rows.hpp"

using phone::gtk::FilledRow;
using phone::gtk::RowValues;
using phone::gtk::SparseRows;

namespace {

/// Rows first to last, both included; none when last is before first.
struct Range {
  int first = 0;
  int last = -1;
  [[nodiscard]] bool contains(int row) const { return row >= first && row <= last; }
  bool operator==(const Range &) const = default;
};

/// What old iterators have to know: one row went, or all rows from one on.
struct Loss {
  int row;
  bool and_all_behind;
};

/// A burst begins with the first request of a pass and ends with the pass.
struct Burst {
  int passes = 0;       // explicit ones, of the host's views
  pb::SourceId closer;  // ends the pass of a view that only moved the window
  bool open = false;
  int last_row = 0;
};

struct GtkVirtualListStorePrivate {
  std::vector<GType> types;
  int length = 0;
  SparseRows rows;
  std::vector<Loss> losses;
  gint stamp = static_cast<gint>(g_random_int() | 1U);

  int cache_size = 0;
  Range view;
  Range window;
  std::uint64_t clock = 0;     // grows with every fill and every move of the window
  std::uint64_t moved_at = 0;  // rows filled outside before that have been dropped
  int outside = 0;             // rows filled outside since then that may be dropped
  bool owes_move = false;      // the window moved while rows were being asked for
  pb::SourceId eviction;

  bool emitting = false;
  Burst burst;
};

enum Signal { kFillCache, kInitializeCache, kFinalizeCache, kSignalCount };
guint signals[kSignalCount];

void tree_model_init(GtkTreeModelIface *iface);

}  // namespace

G_DEFINE_TYPE_WITH_CODE(GtkVirtualListStore, gtk_virtual_list_store, G_TYPE_OBJECT,
                        G_ADD_PRIVATE(GtkVirtualListStore)
                            G_IMPLEMENT_INTERFACE(GTK_TYPE_TREE_MODEL, tree_model_init))

static GtkVirtualListStorePrivate &private_of(GtkVirtualListStore *store) {
  return *static_cast<GtkVirtualListStorePrivate *>(
      gtk_virtual_list_store_get_instance_private(store));
}

static void gtk_virtual_list_store_finalize(GObject *object) {
  std::destroy_at(&private_of(GTK_VIRTUAL_LIST_STORE(object)));
  G_OBJECT_CLASS(gtk_virtual_list_store_parent_class)->finalize(object);
}

static void gtk_virtual_list_store_class_init(GtkVirtualListStoreClass *klass) {
  G_OBJECT_CLASS(klass)->finalize = gtk_virtual_list_store_finalize;
  const GType type = G_TYPE_FROM_CLASS(klass);
  signals[kFillCache] = g_signal_new("fill-cache", type, G_SIGNAL_RUN_LAST, 0, nullptr, nullptr,
                                     nullptr, G_TYPE_NONE, 3, G_TYPE_INT, G_TYPE_INT, G_TYPE_INT);
  signals[kInitializeCache] = g_signal_new("initialize-cache", type, G_SIGNAL_RUN_LAST, 0, nullptr,
                                           nullptr, nullptr, G_TYPE_NONE, 1, G_TYPE_INT);
  signals[kFinalizeCache] = g_signal_new("finalize-cache", type, G_SIGNAL_RUN_LAST, 0, nullptr,
                                         nullptr, nullptr, G_TYPE_NONE, 1, G_TYPE_INT);
}

static void gtk_virtual_list_store_init(GtkVirtualListStore *store) {
  new (gtk_virtual_list_store_get_instance_private(store)) GtkVirtualListStorePrivate{};
}

namespace {

void name_row(const GtkVirtualListStorePrivate &priv, GtkTreeIter *iter, int row) {
  iter->stamp = priv.stamp;
  iter->user_data = GINT_TO_POINTER(row);
  iter->user_data2 = GSIZE_TO_POINTER(priv.losses.size());
  iter->user_data3 = nullptr;
}

/// The present number of the row that an iterator names; -1 when it names none any more.
int row_of(const GtkVirtualListStorePrivate &priv, const GtkTreeIter *iter) {
  if (iter == nullptr || iter->stamp != priv.stamp) return -1;
  int row = GPOINTER_TO_INT(iter->user_data);
  for (std::size_t i = GPOINTER_TO_SIZE(iter->user_data2); i < priv.losses.size(); ++i) {
    const Loss &loss = priv.losses[i];
    if (row < loss.row) continue;
    if (row == loss.row || loss.and_all_behind) return -1;
    --row;
  }
  return row;
}

bool position(const GtkVirtualListStorePrivate &priv, GtkTreeIter *iter, int row) {
  if (row < 0 || row >= priv.length) {
    *iter = GtkTreeIter{};
    return false;
  }
  name_row(priv, iter, row);
  return true;
}

using PathPtr = std::unique_ptr<GtkTreePath, pb::FreeWith<gtk_tree_path_free>>;

PathPtr path_of(int row) { return PathPtr(gtk_tree_path_new_from_indices(row, -1)); }

bool has_listener(GtkVirtualListStore *store, const char *signal) {
  return g_signal_has_handler_pending(store, g_signal_lookup(signal, GTK_TYPE_TREE_MODEL), 0,
                                      FALSE) != FALSE;
}

/// Cache-size rows around the visible ones, pushed back into the list at its ends. The visible
/// rows always belong to it.
Range window_around(const GtkVirtualListStorePrivate &priv) {
  if (priv.cache_size == 0) return {};
  const int first = std::max(priv.view.first, 0);
  const int last = std::min(priv.view.last, priv.length - 1);
  if (last < first) return {};
  const int size = std::min(std::max(priv.cache_size, last - first + 1), priv.length);
  const int margin = (size - (last - first + 1)) / 2;
  const int start = std::clamp(first - margin, 0, priv.length - size);
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
  if (rows.size() <= keep) return;
  const auto end = rows.begin() + static_cast<std::ptrdiff_t>(rows.size() - keep);
  std::nth_element(rows.begin(), end, rows.end());
  phone::gtk::DroppedRows dropped;
  for (auto row = rows.begin(); row != end; ++row) dropped.push_back(priv.rows.take(row->second));
  priv.outside = priv.cache_size;
}

bool owes_eviction(const GtkVirtualListStorePrivate &priv) {
  if (priv.cache_size == 0) return false;
  return priv.owes_move || priv.outside > priv.cache_size;
}

gboolean evict_at_idle(gpointer data) {
  auto &priv = private_of(GTK_VIRTUAL_LIST_STORE(data));
  priv.eviction.forget();
  // A handler may run the main loop while it fills a row; its end schedules this again.
  if (priv.emitting || !owes_eviction(priv)) return G_SOURCE_REMOVE;
  if (priv.owes_move) {
    drop_what_left_the_window(priv);
  } else {
    drop_oldest_outside(priv);
  }
  return G_SOURCE_REMOVE;
}

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

void close_burst(GtkVirtualListStore *store) {
  auto &priv = private_of(store);
  if (!priv.burst.open) return;
  priv.burst.open = false;
  priv.emitting = true;
  g_signal_emit(store, signals[kFinalizeCache], 0, priv.burst.last_row);
  priv.emitting = false;
}

bool in_pass(const GtkVirtualListStorePrivate &priv) {
  return priv.burst.passes > 0 || priv.burst.closer.pending();
}

/// Asks the handlers for one unfilled row.
void request(GtkVirtualListStore *store, int row) {
  auto &priv = private_of(store);
  if (priv.emitting) return;
  if (!g_signal_has_handler_pending(store, signals[kFillCache], 0, FALSE)) return;
  const auto alive = pb::Ref<GtkVirtualListStore>::share(store);

  priv.emitting = true;
  if (!priv.burst.open) {
    priv.burst.open = true;
    g_signal_emit(store, signals[kInitializeCache], 0, row);
  }
  priv.burst.last_row = row;
  const Range asked = priv.window.contains(row)
                          ? Range{priv.window.first, std::min(priv.window.last, priv.length - 1)}
                          : Range{row, row};
  g_signal_emit(store, signals[kFillCache], 0, asked.first, asked.last, row);
  priv.emitting = false;
  if (!in_pass(priv)) close_burst(store);
  schedule_eviction(store);
}

gboolean end_pass_at_idle(gpointer data) {
  auto *store = GTK_VIRTUAL_LIST_STORE(data);
  auto &priv = private_of(store);
  const auto alive = pb::Ref<GtkVirtualListStore>::share(store);
  priv.burst.closer.forget();
  if (!in_pass(priv) && !priv.emitting) close_burst(store);
  return G_SOURCE_REMOVE;
}

/// Drops the rows from n on; whoever listens hears of each while the length says the same.
void shorten(GtkVirtualListStore *store, int n) {
  auto &priv = private_of(store);
  while (priv.length > n && has_listener(store, "row-deleted")) {
    const int row = --priv.length;
    priv.losses.push_back({row, true});
    const auto dropped = priv.rows.take(row);
    forget_outside(priv, dropped.get());
    gtk_tree_model_row_deleted(GTK_TREE_MODEL(store), path_of(row).get());
  }
  if (priv.length <= n) return;
  priv.length = n;
  priv.losses.push_back({n, true});
  const auto dropped = priv.rows.take_from(n);
  for (const auto &row : dropped) forget_outside(priv, row.get());
}

void announce_new_row(GtkVirtualListStore *store, int row) {
  GtkTreeIter iter;
  name_row(private_of(store), &iter, row);
  gtk_tree_model_row_inserted(GTK_TREE_MODEL(store), path_of(row).get(), &iter);
}

GtkTreeModelFlags get_flags(GtkTreeModel *) { return GTK_TREE_MODEL_LIST_ONLY; }

gint get_n_columns(GtkTreeModel *model) {
  return static_cast<gint>(private_of(GTK_VIRTUAL_LIST_STORE(model)).types.size());
}

GType get_column_type(GtkTreeModel *model, gint column) {
  const auto &types = private_of(GTK_VIRTUAL_LIST_STORE(model)).types;
  PB_CHECK(column >= 0 && static_cast<std::size_t>(column) < types.size(), G_TYPE_INVALID);
  return types[static_cast<std::size_t>(column)];
}

gboolean get_iter(GtkTreeModel *model, GtkTreeIter *iter, GtkTreePath *path) {
  if (gtk_tree_path_get_depth(path) != 1) {
    *iter = GtkTreeIter{};
    return FALSE;
  }
  return position(private_of(GTK_VIRTUAL_LIST_STORE(model)), iter,
                  gtk_tree_path_get_indices(path)[0]);
}

GtkTreePath *get_path(GtkTreeModel *model, GtkTreeIter *iter) {
  const int row = row_of(private_of(GTK_VIRTUAL_LIST_STORE(model)), iter);
  PB_CHECK(row >= 0, nullptr);
  return gtk_tree_path_new_from_indices(row, -1);
}

void get_value(GtkTreeModel *model, GtkTreeIter *iter, gint column, GValue *value) {
  auto *store = GTK_VIRTUAL_LIST_STORE(model);
  auto &priv = private_of(store);
  PB_CHECK(column >= 0 && static_cast<std::size_t>(column) < priv.types.size());
  const auto index = static_cast<std::size_t>(column);
  g_value_init(value, priv.types[index]);
  const int row = row_of(priv, iter);
  PB_CHECK(row >= 0);

  FilledRow *filled = priv.rows.find(row);
  if (filled == nullptr) {
    // The handlers may remove rows; the iterator still finds its own.
    const auto alive = pb::Ref<GtkVirtualListStore>::share(store);
    request(store, row);
    const int row_after = row_of(priv, iter);
    filled = row_after < 0 ? nullptr : priv.rows.find(row_after);
    if (filled != nullptr) g_value_copy(&filled->values[index], value);
    return;
  }
  g_value_copy(&filled->values[index], value);
}

gboolean iter_next(GtkTreeModel *model, GtkTreeIter *iter) {
  const auto &priv = private_of(GTK_VIRTUAL_LIST_STORE(model));
  const int row = row_of(priv, iter);
  return position(priv, iter, row < 0 ? -1 : row + 1);
}

gboolean iter_nth_child(GtkTreeModel *model, GtkTreeIter *iter, GtkTreeIter *parent, gint n) {
  return position(private_of(GTK_VIRTUAL_LIST_STORE(model)), iter, parent == nullptr ? n : -1);
}

gboolean iter_children(GtkTreeModel *model, GtkTreeIter *iter, GtkTreeIter *parent) {
  return iter_nth_child(model, iter, parent, 0);
}

gboolean iter_has_child(GtkTreeModel *, GtkTreeIter *) { return FALSE; }

gint iter_n_children(GtkTreeModel *model, GtkTreeIter *iter) {
  return iter == nullptr ? private_of(GTK_VIRTUAL_LIST_STORE(model)).length : 0;
}

gboolean iter_parent(GtkTreeModel *, GtkTreeIter *iter, GtkTreeIter *) {
  *iter = GtkTreeIter{};
  return FALSE;
}

void tree_model_init(GtkTreeModelIface *iface) {
  iface->get_flags = get_flags;
  iface->get_n_columns = get_n_columns;
  iface->get_column_type = get_column_type;
  iface->get_iter = get_iter;
  iface->get_path = get_path;
  iface->get_value = get_value;
  iface->iter_next = iter_next;
  iface->iter_children = iter_children;
  iface->iter_has_child = iter_has_child;
  iface->iter_n_children = iter_n_children;
  iface->iter_nth_child = iter_nth_child;
  iface->iter_parent = iter_parent;
}

/// Values that were replaced; releasing them may run finalizers that read the store, so they go
/// when the row is whole again.
class ReplacedValues {
 public:
  ReplacedValues() = default;
  ~ReplacedValues() {
    for (GValue &value : values_) g_value_unset(&value);
  }
  ReplacedValues(const ReplacedValues &) = delete;
  ReplacedValues &operator=(const ReplacedValues &) = delete;
  void add(const GValue &value) { values_.push_back(value); }

 private:
  std::vector<GValue> values_;
};

}  // namespace

void gtk_virtual_list_store_set_column_types(GtkVirtualListStore *store, gint n, GType *types) {
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store));
  PB_CHECK(n > 0 && types != nullptr);
  auto &priv = private_of(store);
  PB_CHECK(priv.rows.empty());
  priv.types.assign(types, types + n);
}

void gtk_virtual_list_store_set_cache_size(GtkVirtualListStore *store, gint n) {
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store));
  PB_CHECK(n >= 0);
  private_of(store).cache_size = n;
  schedule_eviction(store);
}

void gtk_virtual_list_store_set_total_size(GtkVirtualListStore *store, gint n) {
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store));
  PB_CHECK(n >= 0);
  auto &priv = private_of(store);
  const auto alive = pb::Ref<GtkVirtualListStore>::share(store);
  shorten(store, n);
  while (priv.length < n && has_listener(store, "row-inserted")) {
    announce_new_row(store, priv.length++);
  }
  priv.length = std::max(priv.length, n);
}

gboolean gtk_virtual_list_store_iter_nth(GtkVirtualListStore *store, GtkTreeIter *iter, gint n) {
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store), FALSE);
  PB_CHECK(iter != nullptr, FALSE);
  return position(private_of(store), iter, n);
}

void gtk_virtual_list_store_append(GtkVirtualListStore *store, GtkTreeIter *iter) {
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store));
  PB_CHECK(iter != nullptr);
  auto &priv = private_of(store);
  PB_CHECK(priv.length < INT_MAX);
  const int row = priv.length++;
  fill(store, row, true);
  name_row(priv, iter, row);
  announce_new_row(store, row);
}

void gtk_virtual_list_store_set(GtkVirtualListStore *store, GtkTreeIter *iter, ...) {
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store));
  auto &priv = private_of(store);
  const int row = row_of(priv, iter);
  PB_CHECK_AS("iter names a row of the store", row >= 0);

  FilledRow *filled = priv.rows.find(row);
  if (filled == nullptr) filled = &fill(store, row, false);
  ReplacedValues replaced;
  va_list args;
  va_start(args, iter);
  for (int column = va_arg(args, int); column != -1; column = va_arg(args, int)) {
    if (column < 0 || static_cast<std::size_t>(column) >= priv.types.size()) {
      g_warning("%s: there is no column %d", __func__, column);
      break;
    }
    const auto index = static_cast<std::size_t>(column);
    GValue value = G_VALUE_INIT;
    gchar *problem = nullptr;
    G_VALUE_COLLECT_INIT(&value, priv.types[index], args, 0, &problem);
    if (problem != nullptr) {
      // The value is in an unknown state and left alone, as every collector of values does.
      const pb::StringPtr text(problem);
      g_warning("%s: %s", __func__, text.get());
      break;
    }
    replaced.add(std::exchange(filled->values[index], value));
  }
  va_end(args);

  GtkTreeIter here;
  name_row(priv, &here, row);
  gtk_tree_model_row_changed(GTK_TREE_MODEL(store), path_of(row).get(), &here);
}

gboolean gtk_virtual_list_store_remove(GtkVirtualListStore *store, GtkTreeIter *iter) {
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store), FALSE);
  auto &priv = private_of(store);
  const int row = row_of(priv, iter);
  if (row < 0) return FALSE;
  const auto alive = pb::Ref<GtkVirtualListStore>::share(store);
  const auto removed = priv.rows.take_and_renumber(row);
  forget_outside(priv, removed.get());
  --priv.length;
  priv.losses.push_back({row, false});
  gtk_tree_model_row_deleted(GTK_TREE_MODEL(store), path_of(row).get());
  return TRUE;
}

gboolean gtk_virtual_list_store_row_is_filled(GtkVirtualListStore *store, gint row) {
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store), FALSE);
  return private_of(store).rows.find(row) != nullptr;
}

void gtk_virtual_list_store_set_view_range(GtkVirtualListStore *store, gint first, gint last) {
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store));
  auto &priv = private_of(store);
  if (!in_pass(priv)) {
    priv.burst.closer =
        pb::SourceId(gdk_threads_add_idle_full(G_PRIORITY_HIGH, end_pass_at_idle, store, nullptr));
  }
  priv.view = {first, last};
  const Range window = window_around(priv);
  if (window == priv.window) return;
  priv.window = window;
  if (priv.cache_size == 0) return;
  if (priv.emitting) {
    priv.owes_move = true;
    schedule_eviction(store);
    return;
  }
  drop_what_left_the_window(priv);
}

namespace phone::gtk {

DrawingPass::DrawingPass(GtkTreeModel *model, int first, int last) {
  if (!GTK_IS_VIRTUAL_LIST_STORE(model)) return;
  store_ = pb::Ref<GtkVirtualListStore>::share(GTK_VIRTUAL_LIST_STORE(model));
  ++private_of(store_.get()).burst.passes;
  gtk_virtual_list_store_set_view_range(store_.get(), first, last);
}

DrawingPass::~DrawingPass() {
  if (!store_) return;
  auto &priv = private_of(store_.get());
  --priv.burst.passes;
  if (!in_pass(priv) && !priv.emitting) close_burst(store_.get());
}

}  // namespace phone::gtk

#include <virtual-list-store.h>

#include <gobject/gvaluecollector.h>

#include <algorithm>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include "check.hpp"
#include "fakes/journal.hpp"
#include "glib-ptr.hpp"

namespace {

/// The values of a filled row.
class Values {
 public:
  explicit Values(const std::vector<GType> &types) : values_(types.size(), GValue{}) {
    for (std::size_t column = 0; column < types.size(); ++column) {
      g_value_init(&values_[column], types[column]);
    }
  }
  ~Values() {
    for (GValue &value : values_) g_value_unset(&value);
  }
  Values(const Values &) = delete;
  Values &operator=(const Values &) = delete;

  GValue &operator[](std::size_t column) { return values_[column]; }

 private:
  std::vector<GValue> values_;
};

struct Row {
  guint64 id = 0;                  // never used twice in a store
  std::unique_ptr<Values> values;  // nothing for an unfilled row
  bool pinned = false;
  guint64 filled_at = 0;  // counts fills
};

struct StoreState {
  std::vector<GType> types;
  std::vector<Row> rows;
  int cache_size = 0;
  int window_first = 0;
  int window_last = -1;
  bool emitting = false;
  bool owes_move = false;  // the window moved within an emission
  bool burst_is_open = false;
  int burst_row = 0;
  guint64 next_id = 1;
  guint64 fills = 0;
  pb::SourceId pass;      // its end is the end of a drawing pass
  pb::SourceId eviction;  // drops rows outside the window
};

enum { kFillCache, kInitializeCache, kFinalizeCache, kSignalCount };
guint signals[kSignalCount];

void tree_model_init(GtkTreeModelIface *iface);

}  // namespace

struct GtkVirtualListStorePrivate {
  StoreState *state;
};

G_DEFINE_TYPE_WITH_CODE(GtkVirtualListStore, gtk_virtual_list_store, G_TYPE_OBJECT,
                        G_ADD_PRIVATE(GtkVirtualListStore)
                            G_IMPLEMENT_INTERFACE(GTK_TYPE_TREE_MODEL, tree_model_init))

static StoreState &state_of(gpointer store) {
  auto *priv = static_cast<GtkVirtualListStorePrivate *>(
      gtk_virtual_list_store_get_instance_private(static_cast<GtkVirtualListStore *>(store)));
  return *priv->state;
}

static void gtk_virtual_list_store_finalize(GObject *object) {
  delete &state_of(object);
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
  auto *priv =
      static_cast<GtkVirtualListStorePrivate *>(gtk_virtual_list_store_get_instance_private(store));
  priv->state = new StoreState;
}

namespace {

using PathPtr = std::unique_ptr<GtkTreePath, pb::FreeWith<gtk_tree_path_free>>;

int length_of(const StoreState &state) { return static_cast<int>(state.rows.size()); }

bool is_row(const StoreState &state, int row) { return row >= 0 && row < length_of(state); }

PathPtr path_of(int row) { return PathPtr(gtk_tree_path_new_from_indices(row, -1)); }

gboolean point(const StoreState &state, GtkTreeIter *iter, int row) {
  *iter = {};
  if (!is_row(state, row)) return FALSE;
  iter->stamp = 1;
  iter->user_data = GSIZE_TO_POINTER(state.rows[row].id);
  iter->user_data2 = GINT_TO_POINTER(row);
  return TRUE;
}

/// The number of an iterator's row, -1 when the row is gone. The number that the iterator
/// remembers may be old.
int row_of(const StoreState &state, const GtkTreeIter *iter) {
  if (iter == nullptr || iter->stamp != 1) return -1;
  const guint64 id = GPOINTER_TO_SIZE(iter->user_data);
  const int remembered = GPOINTER_TO_INT(iter->user_data2);
  if (is_row(state, remembered) && state.rows[remembered].id == id) return remembered;
  const auto found = std::ranges::find(state.rows, id, &Row::id);
  return found == state.rows.end() ? -1 : static_cast<int>(found - state.rows.begin());
}

bool in_window(const StoreState &state, int row) {
  return row >= state.window_first && row <= state.window_last;
}

bool may_go(const StoreState &state, int row) {
  return state.rows[row].values != nullptr && !state.rows[row].pinned && !in_window(state, row);
}

/// Drops the oldest rows outside the window until so many are left.
void evict(StoreState &state, std::size_t keep) {
  std::vector<int> outside;
  for (int row = 0; row < length_of(state); ++row) {
    if (may_go(state, row)) outside.push_back(row);
  }
  std::ranges::sort(outside, {}, [&](int row) { return state.rows[row].filled_at; });
  while (outside.size() > keep) {
    const auto dropped = std::move(state.rows[outside.front()].values);
    outside.erase(outside.begin());
  }
}

/// Cache-size rows around the visible ones, pushed back into the list at its ends.
std::pair<int, int> window_around(const StoreState &state, int first, int last) {
  const int length = length_of(state);
  const int from = std::max(first, 0);
  const int to = std::min(last, length - 1);
  if (to < from) return {0, -1};
  const int visible = to - from + 1;
  const int size = std::min(std::max(state.cache_size, visible), length);
  const int start = std::clamp(from - (size - visible) / 2, 0, length - size);
  return {start, start + size - 1};
}

gboolean evict_at_idle(gpointer store) {
  StoreState &state = state_of(store);
  state.eviction.forget();
  const bool moved = std::exchange(state.owes_move, false);
  evict(state, moved ? 0 : static_cast<std::size_t>(state.cache_size));
  return G_SOURCE_REMOVE;
}

void schedule_eviction(GtkVirtualListStore *store) {
  StoreState &state = state_of(store);
  if (state.cache_size == 0 || state.eviction.pending()) return;
  int outside = 0;
  for (int row = 0; row < length_of(state); ++row) outside += may_go(state, row) ? 1 : 0;
  if (outside <= state.cache_size && !state.owes_move) return;
  state.eviction =
      pb::SourceId(gdk_threads_add_idle_full(G_PRIORITY_LOW, evict_at_idle, store, nullptr));
}

Row &fill(StoreState &state, int row) {
  Row &filled = state.rows[row];
  if (filled.values == nullptr) {
    filled.values = std::make_unique<Values>(state.types);
    filled.filled_at = ++state.fills;
  }
  return filled;
}

void close_burst(GtkVirtualListStore *store) {
  StoreState &state = state_of(store);
  if (!state.burst_is_open || state.pass.pending()) return;
  state.burst_is_open = false;
  state.emitting = true;
  g_signal_emit(store, signals[kFinalizeCache], 0, state.burst_row);
  state.emitting = false;
}

gboolean end_pass_at_idle(gpointer data) {
  auto *store = GTK_VIRTUAL_LIST_STORE(data);
  state_of(store).pass.forget();
  close_burst(store);
  return G_SOURCE_REMOVE;
}

/// Asks for an unfilled row.
void request(GtkVirtualListStore *store, int row) {
  StoreState &state = state_of(store);
  if (state.emitting) return;
  if (!g_signal_has_handler_pending(store, signals[kFillCache], 0, FALSE)) return;
  const auto alive = pb::Ref<GtkVirtualListStore>::share(store);

  state.emitting = true;
  if (!std::exchange(state.burst_is_open, true)) {
    g_signal_emit(store, signals[kInitializeCache], 0, row);
  }
  state.burst_row = row;
  const bool whole_window = in_window(state, row);
  g_signal_emit(store, signals[kFillCache], 0, whole_window ? state.window_first : row,
                whole_window ? std::min(state.window_last, length_of(state) - 1) : row, row);
  state.emitting = false;

  close_burst(store);
  schedule_eviction(store);
}

GtkTreeModelFlags get_flags(GtkTreeModel *) { return GTK_TREE_MODEL_LIST_ONLY; }

gint get_n_columns(GtkTreeModel *model) { return static_cast<gint>(state_of(model).types.size()); }

GType get_column_type(GtkTreeModel *model, gint column) {
  const auto &types = state_of(model).types;
  g_return_val_if_fail(column >= 0 && static_cast<std::size_t>(column) < types.size(),
                       G_TYPE_INVALID);
  return types[column];
}

gboolean get_iter(GtkTreeModel *model, GtkTreeIter *iter, GtkTreePath *path) {
  if (gtk_tree_path_get_depth(path) != 1) return FALSE;
  return point(state_of(model), iter, gtk_tree_path_get_indices(path)[0]);
}

GtkTreePath *get_path(GtkTreeModel *model, GtkTreeIter *iter) {
  const int row = row_of(state_of(model), iter);
  return row < 0 ? nullptr : path_of(row).release();
}

void get_value(GtkTreeModel *model, GtkTreeIter *iter, gint column, GValue *value) {
  StoreState &state = state_of(model);
  g_return_if_fail(column >= 0 && static_cast<std::size_t>(column) < state.types.size());
  g_value_init(value, state.types[column]);
  int row = row_of(state, iter);
  g_return_if_fail(row >= 0);
  if (state.rows[row].values == nullptr) {
    request(GTK_VIRTUAL_LIST_STORE(model), row);
    row = row_of(state, iter);
  }
  if (row < 0 || state.rows[row].values == nullptr) return;
  g_value_copy(&(*state.rows[row].values)[column], value);
}

gboolean iter_next(GtkTreeModel *model, GtkTreeIter *iter) {
  const int row = row_of(state_of(model), iter);
  return point(state_of(model), iter, row < 0 ? -1 : row + 1);
}

gboolean iter_children(GtkTreeModel *model, GtkTreeIter *iter, GtkTreeIter *parent) {
  return point(state_of(model), iter, parent == nullptr ? 0 : -1);
}

gboolean iter_has_child(GtkTreeModel *, GtkTreeIter *) { return FALSE; }

gint iter_n_children(GtkTreeModel *model, GtkTreeIter *iter) {
  return iter == nullptr ? length_of(state_of(model)) : 0;
}

gboolean iter_nth_child(GtkTreeModel *model, GtkTreeIter *iter, GtkTreeIter *parent, gint n) {
  return point(state_of(model), iter, parent == nullptr ? n : -1);
}

gboolean iter_parent(GtkTreeModel *, GtkTreeIter *iter, GtkTreeIter *) {
  *iter = {};
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

void add_row(GtkVirtualListStore *store) {
  StoreState &state = state_of(store);
  state.rows.emplace_back().id = state.next_id++;
}

/// Lists are long, and mostly nobody listens yet when they get their length.
void announce_row(GtkVirtualListStore *store, int row) {
  static const guint row_inserted = g_signal_lookup("row-inserted", GTK_TYPE_TREE_MODEL);
  if (!g_signal_has_handler_pending(store, row_inserted, 0, FALSE)) return;
  GtkTreeIter iter;
  point(state_of(store), &iter, row);
  gtk_tree_model_row_inserted(GTK_TREE_MODEL(store), path_of(row).get(), &iter);
}

}  // namespace

void gtk_virtual_list_store_set_column_types(GtkVirtualListStore *store, gint n, GType *types) {
  fake::record("gtk_virtual_list_store_set_column_types", n);
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store));
  PB_CHECK(n > 0 && types != nullptr);
  PB_CHECK(state_of(store).rows.empty());
  state_of(store).types.assign(types, types + n);
}

void gtk_virtual_list_store_set_cache_size(GtkVirtualListStore *store, gint n) {
  fake::record("gtk_virtual_list_store_set_cache_size", n);
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store));
  PB_CHECK(n >= 0);
  state_of(store).cache_size = n;
  schedule_eviction(store);
}

void gtk_virtual_list_store_set_total_size(GtkVirtualListStore *store, gint n) {
  fake::record("gtk_virtual_list_store_set_total_size", n);
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store));
  PB_CHECK(n >= 0);
  StoreState &state = state_of(store);
  while (length_of(state) > n) {
    const Row dropped = std::move(state.rows.back());
    state.rows.pop_back();
    gtk_tree_model_row_deleted(GTK_TREE_MODEL(store), path_of(length_of(state)).get());
  }
  while (length_of(state) < n) {
    add_row(store);
    announce_row(store, length_of(state) - 1);
  }
}

gboolean gtk_virtual_list_store_iter_nth(GtkVirtualListStore *store, GtkTreeIter *iter, gint n) {
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store), FALSE);
  PB_CHECK(iter != nullptr, FALSE);
  return point(state_of(store), iter, n);
}

void gtk_virtual_list_store_append(GtkVirtualListStore *store, GtkTreeIter *iter) {
  fake::record("gtk_virtual_list_store_append");
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store));
  PB_CHECK(iter != nullptr);
  StoreState &state = state_of(store);
  add_row(store);
  const int row = length_of(state) - 1;
  fill(state, row).pinned = true;
  point(state, iter, row);
  announce_row(store, row);
}

void gtk_virtual_list_store_set(GtkVirtualListStore *store, GtkTreeIter *iter, ...) {
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store));
  StoreState &state = state_of(store);
  const int row = row_of(state, iter);
  PB_CHECK_AS("iter names a row of the store", row >= 0);

  Row &filled = fill(state, row);
  va_list arguments;
  va_start(arguments, iter);
  for (int column = va_arg(arguments, int); column != -1; column = va_arg(arguments, int)) {
    if (column < 0 || static_cast<std::size_t>(column) >= state.types.size()) {
      g_warning("%s: there is no column %d", __func__, column);
      break;
    }
    GValue value = G_VALUE_INIT;
    gchar *problem = nullptr;
    G_VALUE_COLLECT_INIT(&value, state.types[column], arguments, 0, &problem);
    if (problem != nullptr) {
      const pb::StringPtr text(problem);
      g_warning("%s: %s", __func__, text.get());
      break;
    }
    g_value_copy(&value, &(*filled.values)[column]);
    g_value_unset(&value);
  }
  va_end(arguments);

  GtkTreeIter here;
  point(state, &here, row);
  gtk_tree_model_row_changed(GTK_TREE_MODEL(store), path_of(row).get(), &here);
  schedule_eviction(store);
}

gboolean gtk_virtual_list_store_remove(GtkVirtualListStore *store, GtkTreeIter *iter) {
  fake::record("gtk_virtual_list_store_remove");
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store), FALSE);
  StoreState &state = state_of(store);
  const int row = row_of(state, iter);
  if (row < 0) return FALSE;
  const auto alive = pb::Ref<GtkVirtualListStore>::share(store);
  const Row removed = std::move(state.rows[row]);
  state.rows.erase(state.rows.begin() + row);
  gtk_tree_model_row_deleted(GTK_TREE_MODEL(store), path_of(row).get());
  return TRUE;
}

gboolean gtk_virtual_list_store_row_is_filled(GtkVirtualListStore *store, gint row) {
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store), FALSE);
  const StoreState &state = state_of(store);
  return is_row(state, row) && state.rows[row].values != nullptr;
}

void gtk_virtual_list_store_set_view_range(GtkVirtualListStore *store, gint first, gint last) {
  PB_CHECK(GTK_IS_VIRTUAL_LIST_STORE(store));
  StoreState &state = state_of(store);
  if (state.pass.pending()) {
    state.pass.remove();
    close_burst(store);
  }
  state.pass =
      pb::SourceId(gdk_threads_add_idle_full(G_PRIORITY_HIGH, end_pass_at_idle, store, nullptr));
  if (state.cache_size == 0) return;

  const auto old_window = std::pair(state.window_first, state.window_last);
  std::tie(state.window_first, state.window_last) = window_around(state, first, last);
  if (std::pair(state.window_first, state.window_last) == old_window) return;
  if (state.emitting) {
    state.owes_move = true;
    schedule_eviction(store);
  } else {
    evict(state, 0);
  }
}

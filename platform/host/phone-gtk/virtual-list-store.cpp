#include "virtual-list-store.h"

#include <gobject/gvaluecollector.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <vector>

#include "check.hpp"
#include "phone-gtk/virtual-list-private.hpp"

using phone::gtk::fill;
using phone::gtk::FilledRow;
using phone::gtk::forget_outside;
using phone::gtk::name_row;
using phone::gtk::private_of;
using phone::gtk::row_of;

namespace {

guint signals[phone::gtk::kCacheSignalCount];

}  // namespace

G_DEFINE_TYPE_WITH_CODE(GtkVirtualListStore, gtk_virtual_list_store, G_TYPE_OBJECT,
                        G_ADD_PRIVATE(GtkVirtualListStore)
                            G_IMPLEMENT_INTERFACE(GTK_TYPE_TREE_MODEL, phone::gtk::tree_model_init))

GtkVirtualListStorePrivate &phone::gtk::private_of(GtkVirtualListStore *store) {
  return *static_cast<GtkVirtualListStorePrivate *>(
      gtk_virtual_list_store_get_instance_private(store));
}

guint phone::gtk::cache_signal(CacheSignal signal) { return signals[signal]; }

static void gtk_virtual_list_store_finalize(GObject *object) {
  std::destroy_at(&private_of(GTK_VIRTUAL_LIST_STORE(object)));
  G_OBJECT_CLASS(gtk_virtual_list_store_parent_class)->finalize(object);
}

static void gtk_virtual_list_store_class_init(GtkVirtualListStoreClass *klass) {
  G_OBJECT_CLASS(klass)->finalize = gtk_virtual_list_store_finalize;
  const GType type = G_TYPE_FROM_CLASS(klass);
  signals[phone::gtk::kFillCache] =
      g_signal_new("fill-cache", type, G_SIGNAL_RUN_LAST, 0, nullptr, nullptr, nullptr, G_TYPE_NONE,
                   3, G_TYPE_INT, G_TYPE_INT, G_TYPE_INT);
  signals[phone::gtk::kInitializeCache] =
      g_signal_new("initialize-cache", type, G_SIGNAL_RUN_LAST, 0, nullptr, nullptr, nullptr,
                   G_TYPE_NONE, 1, G_TYPE_INT);
  signals[phone::gtk::kFinalizeCache] =
      g_signal_new("finalize-cache", type, G_SIGNAL_RUN_LAST, 0, nullptr, nullptr, nullptr,
                   G_TYPE_NONE, 1, G_TYPE_INT);
}

static void gtk_virtual_list_store_init(GtkVirtualListStore *store) {
  new (gtk_virtual_list_store_get_instance_private(store)) GtkVirtualListStorePrivate{};
}

namespace {

using PathPtr = std::unique_ptr<GtkTreePath, pb::FreeWith<gtk_tree_path_free>>;

PathPtr path_of(int row) { return PathPtr(gtk_tree_path_new_from_indices(row, -1)); }

bool has_listener(GtkVirtualListStore *store, const char *signal) {
  return g_signal_has_handler_pending(store, g_signal_lookup(signal, GTK_TYPE_TREE_MODEL), 0,
                                      FALSE) != FALSE;
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
  phone::gtk::schedule_eviction(store);
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
  return phone::gtk::position(private_of(store), iter, n);
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
  const auto alive = pb::Ref<GtkVirtualListStore>::share(store);
  ++priv.setting;
  gtk_tree_model_row_changed(GTK_TREE_MODEL(store), path_of(row).get(), &here);
  --priv.setting;
  phone::gtk::schedule_eviction(store);
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

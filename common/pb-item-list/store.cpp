#include <media-browser.h>
#include <pb-item-list.h>
#include <pb-util-resource.h>
#include <check.hpp>

#include <memory>
#include <new>

#include "private.hpp"

using pb::item_list::private_of;

gint pb_item_list_count = 0;

G_DEFINE_TYPE_WITH_PRIVATE(PbItemList, pb_item_list, GTK_TYPE_VIRTUAL_LIST_STORE)

namespace {

PbItemListPrivate *instance_private(PbItemList *list) {
  return static_cast<PbItemListPrivate *>(pb_item_list_get_instance_private(list));
}

/// Reads the item of a row, which may make the store ask for it.
pb::Ref<PbItem> item_at(PbItemList *list, GtkTreeIter *iter) {
  PbItem *item = nullptr;
  gtk_tree_model_get(GTK_TREE_MODEL(list), iter, 0, &item, -1);
  return pb::Ref<PbItem>::adopt(item);
}

pb::Ref<PbItem> item_of_row(PbItemList *list, gint row) {
  GtkTreeIter iter;
  if (!gtk_virtual_list_store_iter_nth(GTK_VIRTUAL_LIST_STORE(list), &iter, row)) return nullptr;
  return item_at(list, &iter);
}

/// Makes the item of a row and gives it to the row alone, so the result is borrowed.
PbItem *make_item_in_row(PbItemList *list, GtkTreeIter *iter, const MbItem &record) {
  const auto item = pb::item_list::make_item(record);
  gtk_virtual_list_store_set(GTK_VIRTUAL_LIST_STORE(list), iter, 0, item.get(), -1);
  return item.get();
}

}  // namespace

namespace pb::item_list {

PbItemListPrivate &private_of(PbItemList *list) { return *instance_private(list); }

}  // namespace pb::item_list

static void pb_item_list_finalize(GObject *object) {
  PB_LOG(PB_LOG_INFO, "\n");
  PbItemList *list = PB_ITEM_LIST(object);
  PbItemListPrivate &priv = private_of(list);
  priv.database_connected = FALSE;
  priv.records.clear();
  priv.files.clear();
  priv.page_records.clear();
  priv.default_pixbuf.reset();
  pb::item_list::remove_idle_source(priv);
  if (priv.vadjustment.get() != nullptr) {
    PB_LOG(PB_LOG_INFO, "vadjustment_cb disconnected (item_list=0x%x)\n", GPOINTER_TO_UINT(list));
    pb::item_list::release_adjustment(list);
  }
  if (priv.refresh_order != nullptr) fm_svc_mb_glist_free(&priv.refresh_order, TRUE);
  pb_item_list_count -= 1;
  PB_LOG(PB_LOG_INFO, "==============pb_item_list_finalize(0x%x), count=%d================\n",
         GPOINTER_TO_UINT(list), pb_item_list_count);
  std::destroy_at(&priv);
  G_OBJECT_CLASS(pb_item_list_parent_class)->finalize(object);
}

static void pb_item_list_class_init(PbItemListClass *klass) {
  G_OBJECT_CLASS(klass)->finalize = pb_item_list_finalize;
}

static void pb_item_list_init(PbItemList *list) {
  new (instance_private(list)) PbItemListPrivate{};
  private_of(list).default_pixbuf =
      pb::Ref<GdkPixbuf>::adopt(pb_get_pixbuf(pb::item_list::kPlaceholderId));
  GType types[] = {PB_TYPE_ITEM, G_TYPE_STRING, G_TYPE_INT, GDK_TYPE_PIXBUF};
  gtk_virtual_list_store_set_column_types(GTK_VIRTUAL_LIST_STORE(list), G_N_ELEMENTS(types), types);
}

PbItemList *pb_item_list_new() {
  auto *list = PB_ITEM_LIST(g_object_new(PB_TYPE_ITEM_LIST, nullptr));
  pb_item_list_count += 1;
  PB_LOG(PB_LOG_INFO, "==============pb_item_list_new(0x%x), count=%d================\n",
         GPOINTER_TO_UINT(list), pb_item_list_count);
  return list;
}

void pb_item_list_add(PbItemList *list, PbItem *item, gint index, const gchar *title) {
  PB_CHECK(PB_IS_ITEM_LIST(list));
  PB_CHECK(PB_IS_ITEM(item));
  GtkVirtualListStore *store = GTK_VIRTUAL_LIST_STORE(list);
  GtkTreeIter iter;
  gtk_virtual_list_store_append(store, &iter);
  if (index == -1) {
    gtk_virtual_list_store_set(store, &iter, 0, nullptr, 1, title, -1);
  } else {
    gtk_virtual_list_store_set(store, &iter, 0, item, 1, nullptr, 2, index, -1);
  }
  private_of(list).row_count += 1;
}

gint pb_item_list_get_length(PbItemList *list) {
  if (list == nullptr) {
    PB_LOG(PB_LOG_WARNING, "item list is null\n");
    return 0;
  }
  PB_CHECK(PB_IS_ITEM_LIST(list), 0);
  return private_of(list).row_count;
}

PbItem *pb_item_list_get_first(PbItemList *list) {
  PB_CHECK(PB_IS_ITEM_LIST(list), nullptr);
  auto first = item_of_row(list, 0);
  PbItem *item = first.get();
  PB_CHECK(PB_IS_ITEM(item), nullptr);
  return first.release();
}

PbItem *pb_item_list_get_last(PbItemList *list) {
  PB_CHECK(PB_IS_ITEM_LIST(list), nullptr);
  const gint length = private_of(list).row_count;
  // The item of a list of one row is not its last: callers rely on it.
  if (length <= 1) return nullptr;
  return item_of_row(list, length - 1).release();
}

PbItem *pb_item_list_get_by_index(PbItemList *list, gint index) {
  PB_CHECK(PB_IS_ITEM_LIST(list), nullptr);
  PB_CHECK(index >= 0, nullptr);
  PB_CHECK(index < pb_item_list_get_length(list), nullptr);
  PbItem *item = pb_item_list_vls_get_item_by_index(list, index);
  PB_CHECK(PB_IS_ITEM(item), nullptr);
  return item;
}

PbItem *pb_item_list_vls_get_item_by_index(PbItemList *list, gint index) {
  PB_CHECK(PB_IS_ITEM_LIST(list), nullptr);
  GtkTreeIter iter;
  if (!gtk_virtual_list_store_iter_nth(GTK_VIRTUAL_LIST_STORE(list), &iter, index)) {
    PB_LOG(PB_LOG_WARNING, "ITEM NOT FOUND\n");
    return nullptr;
  }
  auto item = item_at(list, &iter);
  if (item) return item.release();
  PB_LOG(PB_LOG_INFO, "ITEM NULL\n");
  const MbItem *record = pb::item_list::held_record(list, index);
  if (record == nullptr) {
    const PbItemListPrivate &priv = private_of(list);
    PB_LOG(PB_LOG_WARNING, "mbitem NULL: index=%d, record_list (%d, %d)\n", index, priv.page_start,
           priv.page_end);
    return nullptr;
  }
  return make_item_in_row(list, &iter, *record);
}

PbItem *__pb_item_list_peek_item(PbItemList *list, gint index) {
  if (!PB_IS_ITEM_LIST(list)) return nullptr;
  GtkTreeIter iter;
  if (!gtk_virtual_list_store_iter_nth(GTK_VIRTUAL_LIST_STORE(list), &iter, index)) return nullptr;
  const auto item = item_at(list, &iter);
  if (item) return item.get();
  const MbItem *record = pb::item_list::held_record(list, index);
  return record == nullptr ? nullptr : make_item_in_row(list, &iter, *record);
}

gboolean pb_item_list_remove_by_index(PbItemList *list, gint index) {
  PB_CHECK(PB_IS_ITEM_LIST(list), FALSE);
  GtkTreeIter iter;
  const std::unique_ptr<GtkTreePath, pb::FreeWith<gtk_tree_path_free>> path(
      index < 0 ? gtk_tree_path_new() : gtk_tree_path_new_from_indices(index, -1));
  if (index < 0 || !gtk_tree_model_get_iter(GTK_TREE_MODEL(list), &iter, path.get())) {
    PB_LOG(PB_LOG_WARNING, "item not found:%d\n", index);
    return FALSE;
  }
  const auto owned = item_at(list, &iter);
  PbItem *item = owned.get();
  PB_CHECK(PB_IS_ITEM(item), FALSE);
  pb_item_set_deleted(item, TRUE);
  return gtk_virtual_list_store_remove(GTK_VIRTUAL_LIST_STORE(list), &iter);
}

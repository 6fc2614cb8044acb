#include <file-explorer.h>
#include <pb-item-list.h>
#include <check.hpp>

#include "private.hpp"

using pb::item_list::disconnect_fill_handlers;
using pb::item_list::private_of;

static void pb_item_list_initialize_cache(GtkVirtualListStore *store, gint /*row*/,
                                          gpointer /*data*/) {
  PB_CHECK(PB_IS_ITEM_LIST(PB_ITEM_LIST(store)));
  PbItemList *list = PB_ITEM_LIST(store);
  PbItemListPrivate &priv = private_of(list);
  if (priv.database_connected) return;
  gint handle = 0;
  if (fexplorer_initialize(&handle)) {
    priv.database_connected = TRUE;
    PB_LOG(PB_LOG_INFO, "***connect to the filemanager database*** \n");
  } else {
    g_signal_handlers_disconnect_matched(list, G_SIGNAL_MATCH_FUNC, 0, 0, nullptr,
                                         reinterpret_cast<gpointer>(pb_item_list_insert_data),
                                         nullptr);
    PB_LOG(PB_LOG_ERROR, "***Failed to connect to the filemanager database*** \n");
  }
}

static void pb_item_list_finalize_cache(GtkVirtualListStore *store, gint /*row*/,
                                        gpointer /*data*/) {
  PB_CHECK(PB_IS_ITEM_LIST(PB_ITEM_LIST(store)));
  if (fexplorer_finalize()) {
    private_of(PB_ITEM_LIST(store)).database_connected = FALSE;
    PB_LOG(PB_LOG_INFO, "***disconnect the filemanager database*** \n");
  } else {
    PB_LOG(PB_LOG_ERROR, "***Failed to disconnect the filemanager database*** \n");
  }
}

namespace {

void disconnect(PbItemList *list, GCallback handler) {
  g_signal_handlers_disconnect_matched(list, G_SIGNAL_MATCH_FUNC, 0, 0, nullptr,
                                       reinterpret_cast<gpointer>(handler), nullptr);
}

}  // namespace

namespace pb::item_list {

void connect_store(PbItemList *list, GCallback fill, gint total) {
  // A list that is built a second time must not make each row twice.
  disconnect_fill_handlers(list, fill);
  disconnect(list, G_CALLBACK(pb_item_list_finalize_cache));
  g_signal_connect(list, "fill-cache", fill, nullptr);
  g_signal_connect(list, "initialize-cache", G_CALLBACK(pb_item_list_initialize_cache), nullptr);
  g_signal_connect(list, "finalize-cache", G_CALLBACK(pb_item_list_finalize_cache), nullptr);
  GtkVirtualListStore *store = GTK_VIRTUAL_LIST_STORE(list);
  gtk_virtual_list_store_set_cache_size(store, kCacheSize);
  gtk_virtual_list_store_set_total_size(store, total);
}

void disconnect_fill_handlers(PbItemList *list, GCallback fill) {
  disconnect(list, fill);
  disconnect(list, G_CALLBACK(pb_item_list_initialize_cache));
}

void remove_idle_source(PbItemListPrivate &priv) {
  if (priv.idle_source > 0) g_source_remove(static_cast<guint>(priv.idle_source));
  priv.idle_source = kNoSource;
}

void release_adjustment(PbItemList *list) {
  PbItemListPrivate &priv = private_of(list);
  if (priv.vadjustment.get() == nullptr) return;
  g_signal_handlers_disconnect_by_func(
      priv.vadjustment.get(), reinterpret_cast<gpointer>(pb_item_list_vadjustment_cb), list);
  priv.vadjustment.set(nullptr);
}

}  // namespace pb::item_list

void pb_item_sub_list_disconnect_signal(PbItemList *item_list) {
  PB_CHECK(PB_IS_ITEM_LIST(item_list));
  disconnect_fill_handlers(item_list, G_CALLBACK(pb_item_list_sub_insert_data));
  PB_LOG(PB_LOG_INFO, "item_list: 0x%x signal disconnected.\n", GPOINTER_TO_UINT(item_list));
}

void pb_item_share_list_disconnect_signal(PbItemList *item_list) {
  PB_CHECK(PB_IS_ITEM_LIST(item_list));
  disconnect_fill_handlers(item_list, G_CALLBACK(pb_item_list_share_insert_data));
  PB_LOG(PB_LOG_INFO, "item_list: 0x%x signal disconnected.\n", GPOINTER_TO_UINT(item_list));
}

void pb_item_list_vls_disconnect_signal(PbItemList *item_list) {
  PB_CHECK(PB_IS_ITEM_LIST(item_list));
  disconnect_fill_handlers(item_list, G_CALLBACK(pb_item_list_insert_data));
  pb::item_list::remove_idle_source(private_of(item_list));
  private_of(item_list).refresh_running = 0;
  pb::item_list::release_adjustment(item_list);
  PB_LOG(PB_LOG_INFO, "item_list: 0x%x signal disconnected.\n", GPOINTER_TO_UINT(item_list));
}

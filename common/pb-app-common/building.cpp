#include <pb-debug.h>
#include <check.hpp>

#include "private.hpp"

using pb::app_common::Private;
using pb::app_common::private_of;

namespace {

void notify_category(PbAppCommon *thiz, gint category) {
  g_object_set(thiz, "category-type", category, nullptr);
}

/// The lists whose rows load their thumbnails as the view scrolls.
bool loads_on_scroll(gint category) {
  return category == pb::app_common::kFiles || category == pb::app_common::kOtherFiles ||
         category == pb::app_common::kAlbumContents;
}

}  // namespace

gboolean pb_app_common_build_item_list(gint category, gint album_id) {
  PB_LOG(PB_LOG_INFO, "======== pb_app_common_build_item_list ========== %d\n", category);
  PbAppCommon *thiz = pb_app_common_get_instance();
  Private *priv = private_of(thiz);
  if (priv == nullptr) return FALSE;

  if (category == pb::app_common::kAlbumContents && album_id == 0) {
    const PbItem *album = pb_app_common_get_nth_item_from_current(0);
    if (album == nullptr) {
      priv->n_entire_items = 0;
      notify_category(thiz, category);
      return FALSE;
    }
    album_id = album->album_id;
    PB_LOG(PB_LOG_INFO, "album_id:%d\n", album_id);
  }

  // The view may hold the old list for a while; it must not read the service any more.
  if (priv->item_list != nullptr) pb_item_list_vls_disconnect_signal(priv->item_list);
  pb::app_common::replace_list(priv, nullptr);
  priv->item_list = pb_item_list_new();
  if (loads_on_scroll(category)) {
    pb_item_list_set_adjustment_cb(priv->item_list, priv->iconview, priv->adjustment, priv->resync);
  }
  priv->n_entire_items = pb_item_list_build(priv->item_list, category, album_id);
  if (priv->n_entire_items == 0) {
    notify_category(thiz, category);
    return FALSE;
  }
  PB_LOG(PB_LOG_INFO, "======== CATEGORY CHANGED ==========\n");
  PB_LOG(PB_LOG_INFO, "category-type:%d\n", category);
  PB_LOG(PB_LOG_INFO, "n_entire_items:%d\n", priv->n_entire_items);
  notify_category(thiz, category);
  return TRUE;
}

gboolean pb_app_common_resync_current_category(void) {
  PB_LOG(PB_LOG_INFO, "\n");
  PbAppCommon *thiz = pb_app_common_get_instance();
  if (thiz == nullptr) {
    PB_LOG(PB_LOG_WARNING, "pb_app_common_resync_current_category : object = NULL\n");
    return FALSE;
  }
  Private *priv = private_of(thiz);
  priv->resync = TRUE;
  const gboolean built = pb_app_common_build_item_list(thiz->category_type, 0);
  priv->resync = FALSE;
  return built;
}

void pb_app_common_reset_list_index(PbItemList *list) {
  PbAppCommon *thiz = pb_app_common_get_instance();
  if (thiz == nullptr) {
    PB_LOG(PB_LOG_WARNING, "thiz = NULL\n");
    return;
  }
  PB_CHECK_AS("PB_IS_ITEM_LIST(list)", list == nullptr || PB_IS_ITEM_LIST(list));

  Private *priv = private_of(thiz);
  thiz->item_index = 0;
  priv->n_entire_items = pb_item_list_get_length(list);
  // The new reference comes first: the list may be the one that is installed.
  if (list != nullptr) g_object_ref(list);
  pb::app_common::replace_list(priv, list);
  PB_LOG(PB_LOG_INFO, "\nReset Indx = %d, no of items = %d\n\n", thiz->item_index,
         priv->n_entire_items);
}

void pb_app_common_resync_current_icons(void) {
  const Private *priv = private_of(pb_app_common_get_instance());
  if (priv == nullptr || priv->item_list == nullptr) return;
  pb_item_list_rsync_current_icons(priv->item_list);
}

void pb_app_common_vls_disconnect_signal(void) {
  const Private *priv = private_of(pb_app_common_get_instance());
  if (priv == nullptr || priv->item_list == nullptr) return;
  pb_item_list_vls_disconnect_signal(priv->item_list);
}

#include <algorithm>

#include <pb-debug.h>
#include <check.hpp>
#include <common/pb-item-list/private.hpp>

#include "private.hpp"

using pb::app_common::peek_item;
using pb::app_common::Private;
using pb::app_common::private_of;

namespace {

gint length_of(const Private *priv) {
  return priv != nullptr ? pb_item_list_get_length(priv->item_list) : 0;
}

/// Whether a row lies after the current one. Of an empty list "length - 1" wraps to the largest
/// number, and the answer is yes.
bool has_row_after(const PbAppCommon *thiz, gint length) {
  return static_cast<guint>(thiz->item_index) + 1U <= static_cast<guint>(length) - 1U;
}

}  // namespace

PbItem *pb_app_common_get_nth_item_from_list(PbItemList *list, gint nth) {
  const gint n_items = pb_item_list_get_length(list);
  PB_LOG(PB_LOG_INFO, "nth = %d, n_items = %d \n", nth, n_items);
  if (nth < 0 || nth >= n_items) {
    PB_LOG(PB_LOG_WARNING, "ITEM NOT FOUND\n");
    return nullptr;
  }
  PB_LOG(PB_LOG_INFO, "ITEM FOUND\n");
  return __pb_item_list_peek_item(list, nth);
}

PbItem *pb_app_common_get_nth_item_from_current(gint offset) {
  PbAppCommon *thiz = pb_app_common_get_instance();
  PB_CHECK(thiz, nullptr);
  PB_LOG(PB_LOG_INFO, "nth = %d, Current = %d \n", offset, thiz->item_index);
  const Private *priv = private_of(thiz);
  const PbItemList *item_list = priv->item_list;
  PB_CHECK(item_list, nullptr);

  const gint64 index = gint64{thiz->item_index} + offset;
  if (index < 0 || index >= priv->n_entire_items) {
    PB_LOG(PB_LOG_WARNING, "ITEM NOT FOUND\n");
    return nullptr;
  }
  PB_LOG(PB_LOG_INFO, "ITEM FOUND\n");
  if (PbItem *item = peek_item(priv, static_cast<gint>(index))) return item;
  // A viewer that asks for an empty row lands on the next one.
  if (thiz->item_index < G_MAXINT) thiz->item_index += 1;
  return peek_item(priv, static_cast<gint>(index + 1));
}

gboolean pb_app_common_check_previous_item_exist(void) {
  const PbAppCommon *thiz = pb_app_common_get_instance();
  if (thiz == nullptr) return FALSE;
  PB_LOG(PB_LOG_INFO, "item idx:%d\n", thiz->item_index);
  if (thiz->item_index < 1) {
    PB_LOG(PB_LOG_INFO, "Operation Failed\n");
    return FALSE;
  }
  if (thiz->item_index > 1) return TRUE;
  return peek_item(private_of(pb_app_common_get_instance()), 0) != nullptr;
}

gboolean pb_app_common_check_next_item_exist(void) {
  PbAppCommon *thiz = pb_app_common_get_instance();
  if (thiz == nullptr) return FALSE;
  if (has_row_after(thiz, length_of(private_of(thiz)))) return TRUE;
  PB_LOG(PB_LOG_INFO, "Operation Failed\n");
  return FALSE;
}

gboolean pb_app_common_navigate_item_by_index(gint index) {
  PB_LOG(PB_LOG_INFO, "ITEM Indx:%d\n", index);
  PbAppCommon *thiz = pb_app_common_get_instance();
  if (thiz == nullptr) {
    PB_LOG(PB_LOG_ERROR, "fail to get PbAppCommon object\n");
    return FALSE;
  }
  const Private *priv = private_of(thiz);
  if (priv == nullptr) {
    PB_LOG(PB_LOG_ERROR, "fail to get priv\n");
    return FALSE;
  }
  if (!PB_IS_ITEM_LIST(priv->item_list)) return FALSE;

  if (index < 0) index = thiz->item_index;
  g_object_freeze_notify(G_OBJECT(thiz));
  const gboolean valid = index >= 0 && index < priv->n_entire_items;
  if (valid) {
    thiz->item_index = index;
    g_object_notify(G_OBJECT(thiz), "item-index");
  } else {
    PB_LOG(PB_LOG_WARNING, "Invalid item-index:%d\n", index);
  }
  g_object_thaw_notify(G_OBJECT(thiz));
  return valid;
}

gboolean pb_app_common_navigate_item_backward(void) {
  PbAppCommon *thiz = pb_app_common_get_instance();
  if (thiz == nullptr) return FALSE;
  PB_LOG(PB_LOG_INFO, "item idx:%d\n", thiz->item_index);
  if (thiz->item_index < 1) {
    PB_LOG(PB_LOG_INFO, "Operation Failed\n");
    return FALSE;
  }
  const Private *priv = private_of(thiz);
  // Rows past the end of the list are empty: a stale index need not walk over them.
  for (gint i = std::min(thiz->item_index, length_of(priv)) - 1; i >= 0; --i) {
    if (peek_item(priv, i) != nullptr) return pb_app_common_navigate_item_by_index(i);
  }
  return FALSE;
}

gboolean pb_app_common_navigate_item_forward(void) {
  PB_LOG(PB_LOG_INFO, "\n");
  PbAppCommon *thiz = pb_app_common_get_instance();
  if (thiz == nullptr) return FALSE;
  const Private *priv = private_of(thiz);
  const gint length = length_of(priv);
  if (!has_row_after(thiz, length)) {
    PB_LOG(PB_LOG_INFO, "Operation Failed\n");
    return FALSE;
  }
  for (gint64 i = gint64{thiz->item_index} + 1; i <= gint64{length} - 1; ++i) {
    const gint row = static_cast<gint>(i);
    if (peek_item(priv, row) != nullptr) return pb_app_common_navigate_item_by_index(row);
  }
  return FALSE;
}

gboolean pb_app_common_navigate_cluster_by_index(gint cluster_index) {
  PB_LOG(PB_LOG_INFO, "cluster-index:%d\n", cluster_index);
  return pb_app_common_navigate_item_by_index(0);
}

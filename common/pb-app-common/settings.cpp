#include <pb-debug.h>
#include <check.hpp>

#include "private.hpp"

using pb::app_common::Private;
using pb::app_common::private_of;

gint pb_app_common_get_category(void) {
  const PbAppCommon *thiz = pb_app_common_get_instance();
  return thiz != nullptr ? thiz->category_type : 0;
}

gboolean pb_app_common_set_category(gint category, gboolean force) {
  PB_LOG(PB_LOG_INFO, "CATE:%d\n", category);
  PbAppCommon *thiz = pb_app_common_get_instance();
  if (thiz == nullptr) return FALSE;

  const bool keep = !force && category == thiz->category_type;
  if (keep || pb_app_common_build_item_list(category, 0)) {
    thiz->item_index = 0;
    thiz->category_type = category;
    return TRUE;
  }
  thiz->category_type = category;
  g_object_notify(G_OBJECT(thiz), "category-type");
  PB_LOG(PB_LOG_INFO, "return FALSE\n");
  return FALSE;
}

void pb_app_common_get_icon_size(gint *size) {
  PB_CHECK(size);
  const Private *priv = private_of(pb_app_common_get_instance());
  if (priv == nullptr) {
    PB_LOG(PB_LOG_WARNING, "priv == NULL !!!\n");
    *size = 0;
    return;
  }
  *size = priv->icon_size;
}

void pb_app_common_set_icon_size(gint size) {
  Private *priv = private_of(pb_app_common_get_instance());
  if (priv == nullptr) {
    PB_LOG(PB_LOG_WARNING, "priv == NULL !!!\n");
    return;
  }
  priv->icon_size = size;
}

void pb_app_common_get_filter_sort_type(gint *sort, gint64 *filter) {
  const Private *priv = private_of(pb_app_common_get_instance());
  if (sort != nullptr) *sort = priv != nullptr ? priv->sort : 0;
  if (filter != nullptr) *filter = priv != nullptr ? priv->filter : 0;
}

void pb_app_common_set_filter_sort_type(gint sort, gint64 filter) {
  PB_LOG(PB_LOG_INFO, " sort=%d, filter=%lld\n", sort, static_cast<long long>(filter));
  Private *priv = private_of(pb_app_common_get_instance());
  if (priv == nullptr) return;
  priv->sort = sort;
  priv->filter = filter;
}

void pb_app_common_get_album_filter_sort_type(gint *sort, gint *filter) {
  const Private *priv = private_of(pb_app_common_get_instance());
  const gint album_sort = priv != nullptr ? priv->album_sort : 0;
  const gint album_filter = priv != nullptr ? priv->album_filter : 0;
  if (sort != nullptr) *sort = album_sort;
  if (filter != nullptr) *filter = album_filter;
  PB_LOG(PB_LOG_INFO, " **sort=%d, **filter=%d\n", album_sort, album_filter);
}

void pb_app_common_set_album_filter_sort_type(gint sort, gint filter) {
  PB_LOG(PB_LOG_INFO, " sort=%d, filter=%d\n", sort, filter);
  Private *priv = private_of(pb_app_common_get_instance());
  if (priv == nullptr) return;
  priv->album_sort = sort;
  priv->album_filter = filter;
}

PbItemList *pb_app_common_get_item_list(void) {
  const Private *priv = private_of(pb_app_common_get_instance());
  if (priv == nullptr) return nullptr;
  PB_CHECK(PB_IS_ITEM_LIST(priv->item_list), nullptr);
  return priv->item_list;
}

void pb_app_common_set_adjustment(GtkWidget *iconview, GtkAdjustment *adjustment) {
  Private *priv = private_of(pb_app_common_get_instance());
  if (priv == nullptr) {
    PB_LOG(PB_LOG_WARNING, "priv == NULL !!!\n");
    return;
  }
  g_set_weak_pointer(&priv->iconview, iconview);
  g_set_weak_pointer(&priv->adjustment, adjustment);
}

void pb_app_common_get_adjustment_widget(GtkWidget **iconview, GtkAdjustment **adjustment) {
  PB_CHECK_AS("iconview&&adjustment", iconview && adjustment);
  *iconview = nullptr;
  *adjustment = nullptr;
  const Private *priv = private_of(pb_app_common_get_instance());
  if (priv == nullptr) return;
  *iconview = priv->iconview;
  *adjustment = priv->adjustment;
}

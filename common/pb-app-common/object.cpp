#include <pb-app-common.h>

#include <pb-debug.h>
#include <common/pb-item-list/private.hpp>

#include "private.hpp"

using pb::app_common::Private;
using pb::app_common::private_of;

namespace {

enum { kPropCategoryType = 1, kPropItemIndex = 2, kPropEvtDeliveryHandle = 3 };

constexpr gint kHighestCategory = 5;
constexpr gint kDefaultSort = 4;
constexpr gint kNoFilter = -1;
constexpr gint kDefaultAlbumSort = 2;
constexpr gint kDefaultIconSize = 148;

PbAppCommon *g_app_common_instance = nullptr;

}  // namespace

using PbAppCommonPrivate = Private;
G_DEFINE_TYPE_WITH_PRIVATE(PbAppCommon, pb_app_common, G_TYPE_OBJECT)

Private *pb::app_common::private_of(PbAppCommon *thiz) {
  if (thiz == nullptr) return nullptr;
  return static_cast<Private *>(pb_app_common_get_instance_private(thiz));
}

void pb::app_common::replace_list(Private *priv, PbItemList *list) {
  PbItemList *old = priv->item_list;
  priv->item_list = list;
  g_clear_object(&old);
}

PbItem *pb::app_common::peek_item(const Private *priv, gint row) {
  if (!PB_IS_ITEM_LIST(priv->item_list)) return nullptr;
  return __pb_item_list_peek_item(priv->item_list, row);
}

static gint *field_of(PbAppCommon *thiz, guint id) {
  switch (id) {
    case kPropCategoryType:
      return &thiz->category_type;
    case kPropItemIndex:
      return &thiz->item_index;
    case kPropEvtDeliveryHandle:
      return &thiz->evt_delivery_handle;
    default:
      return nullptr;
  }
}

static void pb_app_common_set_property(GObject *object, guint id, const GValue *value,
                                       GParamSpec *pspec) {
  gint *field = field_of(PB_APP_COMMON(object), id);
  if (field == nullptr) {
    G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, pspec);
    return;
  }
  *field = g_value_get_int(value);
}

static void pb_app_common_get_property(GObject *object, guint id, GValue *value,
                                       GParamSpec *pspec) {
  const gint *field = field_of(PB_APP_COMMON(object), id);
  if (field == nullptr) {
    G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, pspec);
    return;
  }
  g_value_set_int(value, *field);
}

static void pb_app_common_object_finalize(GObject *object) {
  PbAppCommon *thiz = PB_APP_COMMON(object);
  Private *priv = private_of(thiz);
  g_clear_object(&priv->item_list);
  g_clear_weak_pointer(&priv->iconview);
  g_clear_weak_pointer(&priv->adjustment);
  G_OBJECT_CLASS(pb_app_common_parent_class)->finalize(object);
  if (g_app_common_instance == thiz) g_app_common_instance = nullptr;
}

static void pb_app_common_class_init(PbAppCommonClass *klass) {
  GObjectClass *object_class = G_OBJECT_CLASS(klass);
  object_class->set_property = pb_app_common_set_property;
  object_class->get_property = pb_app_common_get_property;
  object_class->finalize = pb_app_common_object_finalize;

  constexpr auto kReadWrite = static_cast<GParamFlags>(G_PARAM_READWRITE);
  g_object_class_install_property(
      object_class, kPropCategoryType,
      g_param_spec_int("category-type", "Category Type", "The current category", -1,
                       kHighestCategory, -1, kReadWrite));
  g_object_class_install_property(
      object_class, kPropItemIndex,
      g_param_spec_int("item-index", "Item Index", "The row of the current item", -1, G_MAXINT, -1,
                       kReadWrite));
  g_object_class_install_property(
      object_class, kPropEvtDeliveryHandle,
      g_param_spec_int("evt-delivery-handle", "Event Delivery Handle",
                       "The application's registration for events", -1, G_MAXINT, -1, kReadWrite));
}

static void pb_app_common_init(PbAppCommon *thiz) {
  thiz->category_type = pb::app_common::kNone;
  Private *priv = private_of(thiz);
  priv->sort = kDefaultSort;
  priv->filter = kNoFilter;
  priv->album_sort = kDefaultAlbumSort;
  priv->icon_size = kDefaultIconSize;
}

void pb_app_common_initialize(void) {
  PB_LOG(PB_LOG_INFO, "+ Create PbAppCommon Object +\n");
  g_app_common_instance = PB_APP_COMMON(g_object_new(PB_TYPE_APP_COMMON, nullptr));
}

void pb_app_common_finalize(void) {
  PbAppCommon *thiz = pb_app_common_get_instance();
  if (!PB_IS_APP_COMMON(thiz)) {
    PB_LOG(PB_LOG_ERROR, "fail to get PbAppCommon object\n");
    return;
  }
  g_object_unref(thiz);
}

PbAppCommon *pb_app_common_get_instance(void) {
  if (g_app_common_instance == nullptr) {
    PB_LOG(PB_LOG_ERROR, "pb_app_common_get_instance : g_app_common_instance == NULL\n");
    return nullptr;
  }
  if (!PB_IS_APP_COMMON(g_app_common_instance)) {
    PB_LOG(PB_LOG_ERROR, "fail to get PbAppCommon object\n");
    return nullptr;
  }
  return g_app_common_instance;
}

#include <media-browser.h>
#include <pb-app-common.h>
#include <pb-debug.h>
#include <pb-split-list.h>
#include <pb-util-resource.h>
#include <check.hpp>

#include <memory>
#include <new>

#include "private.hpp"

using pb::split_list::private_of;

gint pb_split_list_count = 0;

G_DEFINE_TYPE_WITH_PRIVATE(PbSplitList, pb_split_list, GTK_TYPE_LIST_STORE)

namespace {

PbSplitListPrivate *instance_private(PbSplitList *list) {
  return static_cast<PbSplitListPrivate *>(pb_split_list_get_instance_private(list));
}

pb::Ref<GdkPixbuf> load_default_icon() {
  const auto bitmap = pb::Ref<GdkPixbuf>::adopt(pb_get_pixbuf(pb::item_list::kPlaceholderId));
  if (!bitmap) return nullptr;
  return pb::Ref<GdkPixbuf>::adopt(gdk_pixbuf_scale_simple(
      bitmap.get(), pb::split_list::kIconSize, pb::split_list::kIconSize, GDK_INTERP_BILINEAR));
}

}  // namespace

namespace pb::split_list {

PbSplitListPrivate &private_of(PbSplitList *list) { return *instance_private(list); }

}  // namespace pb::split_list

static void pb_split_list_finalize(GObject *object) {
  auto *split_list = reinterpret_cast<PbSplitList *>(object);
  PB_CHECK(PB_IS_SPLIT_LIST(split_list));
  PbSplitListPrivate &priv = private_of(split_list);
  if (priv.record_list != nullptr) {
    PB_LOG(PB_LOG_INFO, "record_list free\n");
    fm_svc_mb_glist_free(&priv.record_list, TRUE);
    PB_LOG(PB_LOG_INFO, "done\n");
  }
  priv.default_icon.reset();
  pb::split_list::stop_refresh(priv);
  pb::split_list::stop_filling(priv);
  if (pb::split_list::release_adjustment(split_list)) {
    PB_LOG(PB_LOG_INFO, "vadjustment_cb disconnected (item_list=0x%x)\n",
           GPOINTER_TO_UINT(split_list));
  }
  if (pb::split_list::release_paned(split_list)) {
    PB_LOG(PB_LOG_INFO, "paned_cb disconnected (item_list=0x%x)\n", GPOINTER_TO_UINT(split_list));
  }
  if (priv.sub_record_list != nullptr) fm_svc_mb_glist_free(&priv.sub_record_list, TRUE);
  pb_split_list_count -= 1;
  PB_LOG(PB_LOG_INFO, "==============pb_split_list_finalize(0x%x), count=%d================\n",
         GPOINTER_TO_UINT(split_list), pb_split_list_count);
  std::destroy_at(&priv);
  G_OBJECT_CLASS(pb_split_list_parent_class)->finalize(object);
}

static void pb_split_list_class_init(PbSplitListClass *klass) {
  G_OBJECT_CLASS(klass)->finalize = pb_split_list_finalize;
}

static void pb_split_list_init(PbSplitList *list) {
  new (instance_private(list)) PbSplitListPrivate{};
  PB_LOG(PB_LOG_INFO, "iconview_type: %d\n", pb_split_get_view_type());
  private_of(list).default_icon = load_default_icon();
  GType types[] = {PB_TYPE_ITEM, G_TYPE_STRING, G_TYPE_INT, GDK_TYPE_PIXBUF};
  gtk_list_store_set_column_types(GTK_LIST_STORE(list), G_N_ELEMENTS(types), types);
}

PbSplitList *pb_split_list_new() {
  auto *list = PB_SPLIT_LIST(g_object_new(PB_TYPE_SPLIT_LIST, nullptr));
  pb_split_list_count += 1;
  PB_LOG(PB_LOG_INFO, "==============pb_split_list_new(0x%x), count=%d================\n",
         GPOINTER_TO_UINT(list), pb_split_list_count);
  return list;
}

gint pb_split_list_get_length(PbSplitList *list) {
  if (list == nullptr) PB_LOG(PB_LOG_WARNING, "split list is null\n");
  PB_CHECK(list, 0);
  PB_CHECK(PB_IS_SPLIT_LIST(list), 0);
  return private_of(list).count;
}

GList *pb_split_list_get_records(PbSplitList *list) {
  PB_CHECK(PB_IS_SPLIT_LIST(list), nullptr);
  pb::split_list::fetch_records(list, G_MAXINT);
  return private_of(list).record_list;
}

void pb_split_clear_record_list(PbSplitList *item_list) {
  PB_CHECK(PB_IS_SPLIT_LIST(item_list));
  PbSplitListPrivate &priv = private_of(item_list);
  priv.record_list = nullptr;
  pb::split_list::stop_fetching(priv);
  PB_LOG(PB_LOG_INFO, "item_list: 0x%x record_list cleared.\n", GPOINTER_TO_UINT(item_list));
}

gboolean pb_split_get_full_record_list(PbSplitList *list) {
  PB_CHECK(PB_IS_SPLIT_LIST(list), FALSE);
  PbSplitListPrivate &priv = private_of(list);
  if (priv.count <= 0) return FALSE;
  gint sort = 0;
  gint64 filter = 0;
  pb_app_common_get_filter_sort_type(&sort, &filter);
  PB_LOG(PB_LOG_INFO, "sort_type = %d, filter = %d\n", sort, pb::item_list::low_word(filter));
  auto records =
      pb::item_list::fetch_files(sort, pb::split_list::resolve_filter(filter), 0, priv.count - 1);
  if (records.length() != priv.count) return FALSE;
  pb::split_list::stop_fetching(priv);
  if (priv.record_list != nullptr) fm_svc_mb_glist_free(&priv.record_list, TRUE);
  priv.record_list = records.release();
  priv.record_first = 0;
  priv.record_last = priv.count - 1;
  const gint rows = std::min(pb::split_list::row_count(list), priv.count);
  priv.last_made = rows == 0 ? nullptr : g_list_nth_data(priv.record_list, rows - 1);
  PB_LOG(PB_LOG_INFO, "Split new record list created: (%d, %d)\n", priv.record_first,
         priv.record_last);
  return TRUE;
}

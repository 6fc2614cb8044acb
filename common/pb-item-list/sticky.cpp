#include <file-explorer.h>
#include <pb-item-list.h>
#include <pb-item.h>
#include <check.hpp>
#include <util/pb-util/private.hpp>

#include "private.hpp"

namespace {

constexpr gint kLockedTitle = 1059;
constexpr gint kOthersTitle = 1099;

/// A file whose lock cannot be read counts as unlocked.
bool is_locked(const PbItem *item) {
  if (item->filename == nullptr) return false;
  gboolean locked = FALSE;
  gint error = 0;
  return fexplorer_get_file_lock_status(item->filename, &locked, &error) && locked;
}

/// Adds the items of one group, with a header row before the first.
void add_group(PbItemList *list, PbItemList *grouped, bool locked, gint title) {
  bool titled = false;
  const gint length = pb_item_list_get_length(list);
  for (gint index = 0; index < length; ++index) {
    PbItem *item = __pb_item_list_peek_item(list, index);
    if (item == nullptr || is_locked(item) != locked) continue;
    if (!titled) pb_item_list_add(grouped, item, -1, pb::util::copy_res_string(title).get());
    titled = true;
    pb_item_list_add(grouped, item, index, nullptr);
  }
}

}  // namespace

PbItemList *pb_item_get_sticky_sub_list(PbItemList *list) {
  PB_CHECK(PB_IS_ITEM_LIST(list), nullptr);
  PB_LOG(PB_LOG_INFO, "\n");
  PbItemList *grouped = pb_item_list_new();
  gtk_virtual_list_store_set_cache_size(GTK_VIRTUAL_LIST_STORE(grouped), pb::item_list::kCacheSize);
  add_group(list, grouped, true, kLockedTitle);
  add_group(list, grouped, false, kOthersTitle);
  // The caller drops two references.
  return PB_ITEM_LIST(g_object_ref(grouped));
}

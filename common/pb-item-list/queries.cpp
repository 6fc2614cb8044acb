#include <media-browser.h>
#include <pb-app-common.h>
#include <pb-item-list.h>

#include <unordered_set>

#include "private.hpp"

using pb::item_list::low_word;
using pb::item_list::private_of;
using pb::item_list::RecordList;

namespace {

/// Order and filter of the whole library as the settings have them.
struct Settings {
  gint sort = 0;
  gint64 filter = 0;
};

Settings read_settings() {
  Settings settings;
  pb_app_common_get_filter_sort_type(&settings.sort, &settings.filter);
  return settings;
}

/// What a sub-list is made of: the service's count, and the records that it has.
struct SubList {
  gint count = 0;
  RecordList records;
};

SubList fetch_sub_list(const char *entry) {
  const Settings settings = read_settings();
  if (settings.filter == pb::item_list::kDefaultFilter) {
    LOG_FOR(entry, PB_LOG_INFO, " FILTER = -1\n");
  } else if (settings.filter == pb::item_list::kCameraFilter) {
    LOG_FOR(entry, PB_LOG_INFO, " FILTER = -2\n");
  } else {
    LOG_FOR(entry, PB_LOG_INFO, " FILTER \n");
  }
  const gint64 filter = pb::item_list::resolve_filter(settings.filter);
  SubList sub;
  sub.count = pb::item_list::count_files(filter);
  sub.records = pb::item_list::fetch_files(settings.sort, filter, 0, sub.count);
  LOG_FOR(entry, PB_LOG_INFO, "sub list record =%d\n", sub.records.length());
  return sub;
}

/// Gives a sub-list its records and handlers.
void hold(PbItemList *list, RecordList &&records) {
  PbItemListPrivate &priv = private_of(list);
  priv.page_records.clear();
  priv.records = std::move(records);
  priv.row_count = priv.records.length();
  pb::item_list::connect_store(list, G_CALLBACK(pb_item_list_sub_insert_data), priv.row_count);
}

std::unordered_set<gint> ids_of(GList *selected) {
  std::unordered_set<gint> ids;
  for (GList *link = selected; link != nullptr; link = link->next) {
    ids.insert(GPOINTER_TO_INT(link->data));
  }
  return ids;
}

/// Removes the selected files, in one walk, and gives the ids that are gone, in order.
std::vector<gint> remove_selected(RecordList &records, GList *selected) {
  const auto ids = ids_of(selected);
  std::vector<gint> removed;
  for (GList *link = records.get(); link != nullptr;) {
    GList *next = link->next;
    const auto *record = static_cast<const MbItem *>(link->data);
    if (record != nullptr && ids.contains(record->id)) {
      removed.push_back(record->id);
      records.remove(link);
    }
    link = next;
  }
  return removed;
}

/// Whether a file has a copy on the web-album server.
bool has_web_copy(gint id, gint *nfid) {
  FmMediaRecord media{};
  gint error = 0;
  if (!fm_svc_mb_get_record_by_index(id, &media, &error)) return false;
  *nfid = low_word(media.nfid);
  return *nfid > 0;
}

}  // namespace

PbItemList *pb_item_get_album_list(gint album_id) {
  PB_LOG(PB_LOG_INFO, "\n");
  pb::item_list::FileList files;
  if (!pb::item_list::fetch_album_files(album_id, pb::item_list::read_album_settings(), files)) {
    PB_LOG(PB_LOG_ERROR, "  [Media Manager - TestApp] : fm_svc_mb_album_get_all_files failed  \n");
  }
  PB_LOG(PB_LOG_INFO, "Album list record count=%d\n", files.count());
  PbItemList *list = pb_item_list_new();
  if (files.empty()) return list;
  PbItemListPrivate &priv = private_of(list);
  priv.files = std::move(files);
  priv.row_count = priv.files.count();
  priv.album_id = album_id;
  priv.album_web_id = pb::item_list::read_album_web_id(album_id);
  pb::item_list::connect_store(list, G_CALLBACK(pb_item_list_album_insert_data), priv.row_count);
  return list;
}

PbItemList *pb_item_get_sub_list(PbItemList *previous) {
  PB_LOG(PB_LOG_INFO, "\n");
  if (previous != nullptr) pb_item_sub_list_disconnect_signal(previous);
  SubList sub = fetch_sub_list(__func__);
  PbItemList *list = pb_item_list_new();
  if (!sub.records.empty()) hold(list, std::move(sub.records));
  return list;
}

PbItemList *pb_item_get_sub_sorted_list(PbItemList *previous, GList *selected) {
  PB_LOG(PB_LOG_INFO, "\n");
  if (previous != nullptr) pb_item_sub_list_disconnect_signal(previous);
  SubList sub = fetch_sub_list(__func__);
  PbItemList *list = pb_item_list_new();
  if (sub.records.empty()) return list;
  if (selected == nullptr) PB_LOG(PB_LOG_INFO, "************ SELETCTED LIST is NULL\n");
  for (const gint id : remove_selected(sub.records, selected)) {
    PB_LOG(PB_LOG_INFO, "********* Remove Id = %d\n", id);
  }
  hold(list, std::move(sub.records));
  return list;
}

PbItemList *pb_item_get_sorted_sub_list(PbItemList *previous, GList *selected) {
  PB_LOG(PB_LOG_INFO, "\n");
  if (previous != nullptr) pb_item_sub_list_disconnect_signal(previous);
  SubList sub = fetch_sub_list(__func__);
  PB_LOG(PB_LOG_INFO, " ####Count = %d \n", sub.count);
  PB_LOG(PB_LOG_INFO, "create_album_selected_items =%d\n", g_list_length(selected));
  for (GList *link = selected; link != nullptr; link = link->next) {
    PB_LOG(PB_LOG_INFO, "selected id = %d\n", GPOINTER_TO_INT(link->data));
  }
  PbItemList *list = pb_item_list_new();
  if (selected == nullptr) PB_LOG(PB_LOG_INFO, "************ SELETCTED LIST is NULL\n");
  for (const gint id : remove_selected(sub.records, selected)) PB_LOG(PB_LOG_INFO, "Id = %d\n", id);
  hold(list, std::move(sub.records));
  return list;
}

PbItemList *pb_item_get_sub_backup_list() {
  PB_LOG(PB_LOG_INFO, "\n");
  const Settings settings = read_settings();
  // The camera sentinel goes to the service as it is.
  const gint64 filter = pb::item_list::resolve_default_filter(settings.filter);
  const gint count = pb::item_list::count_files(filter);
  RecordList records = pb::item_list::fetch_files(settings.sort, filter, 0, count);
  const gint fetched = records.length();
  PbItemList *list = pb_item_list_new();
  gint kept = 0;
  for (GList *link = records.get(); link != nullptr;) {
    GList *next = link->next;
    const auto *record = static_cast<const MbItem *>(link->data);
    gint nfid = 0;
    if (record != nullptr && has_web_copy(record->id, &nfid)) {
      PB_LOG(PB_LOG_INFO, "record.nfid  = %d\n", nfid);
      kept += 1;
    } else {
      records.remove(link);
    }
    link = next;
  }
  if (kept != fetched) {
    PB_LOG(PB_LOG_WARNING, "manual backup list record list error, count=%d, list len=%d\n", kept,
           fetched);
  }
  hold(list, std::move(records));
  return list;
}

PbItemList *pb_item_get_refresh_sub_list(PbItemList *previous) {
  PB_LOG(PB_LOG_INFO, "\n");
  if (previous != nullptr) pb_item_sub_list_disconnect_signal(previous);
  const Settings settings = read_settings();
  PB_LOG(PB_LOG_INFO, "sort=%d, filter=%d\n", settings.sort, low_word(settings.filter));
  PbItemList *list = pb_item_list_new();
  list->category = pb::item_list::kAllFiles;
  PbItemListPrivate &priv = private_of(list);
  priv.filter = pb::item_list::resolve_filter(settings.filter);
  GtkWidget *icon_view = nullptr;
  GtkAdjustment *adjustment = nullptr;
  pb_app_common_get_adjustment_widget(&icon_view, &adjustment);
  pb_item_list_set_adjustment_cb(list, icon_view, adjustment, FALSE);
  const gint total = pb::item_list::count_files(priv.filter);
  PB_LOG(PB_LOG_INFO, "All/Camera list total count =%d\n", total);
  if (total == 0) return list;
  pb::item_list::hold_first_page(__func__, list);
  priv.row_count = total;
  pb::item_list::connect_store(list, G_CALLBACK(pb_item_list_insert_data), total);
  pb_item_list_icon_refresh_when_start(list);
  return list;
}

#include <pb-app-common.h>
#include <pb-item-list.h>
#include <check.hpp>

#include "private.hpp"

using pb::item_list::private_of;
using pb::item_list::RecordList;

namespace {

/// Empties a list that was filled before, so that a build that fails leaves it empty.
void make_empty(PbItemList *list) {
  PbItemListPrivate &priv = private_of(list);
  priv.row_count = 0;
  priv.records.clear();
  priv.files.clear();
  priv.page_start = 0;
  priv.page_end = 0;
  gtk_virtual_list_store_set_total_size(GTK_VIRTUAL_LIST_STORE(list), 0);
}

gint build_albums(const char *entry, PbItemList *list) {
  RecordList albums;
  if (!pb::item_list::load_albums(entry, albums)) return 0;
  PbItemListPrivate &priv = private_of(list);
  priv.records = std::move(albums);
  return priv.records.length();
}

gint build_album_files(const char *entry, PbItemList *list, gint album_id) {
  pb::item_list::FileList files;
  if (!pb::item_list::load_album_files(entry, album_id, files)) return 0;
  PbItemListPrivate &priv = private_of(list);
  priv.files = std::move(files);
  priv.album_id = album_id;
  priv.album_web_id = pb::item_list::read_album_web_id(album_id);
  return priv.files.count();
}

gint build_web_only_files(const char *entry, PbItemList *list) {
  pb::item_list::FileList files;
  if (!pb::item_list::load_web_only_files(entry, files)) return 0;
  PbItemListPrivate &priv = private_of(list);
  priv.files = std::move(files);
  return priv.files.count();
}

gint build_first_page(const char *entry, PbItemList *list) {
  LOG_FOR(entry, PB_LOG_INFO, "======== pb_item_list_build ==========\n");
  gint sort = 0;
  gint64 filter = 0;
  pb_app_common_get_filter_sort_type(&sort, &filter);
  LOG_FOR(entry, PB_LOG_INFO, "sort=%d, filter=%d\n", sort, pb::item_list::low_word(filter));
  PbItemListPrivate &priv = private_of(list);
  priv.filter = pb::item_list::resolve_filter(filter);
  const gint total = pb::item_list::count_files(priv.filter);
  LOG_FOR(entry, PB_LOG_INFO, "All/Camera list total count =%d\n", total);
  if (total == 0) return 0;
  pb::item_list::hold_first_page(entry, list);
  return total;
}

}  // namespace

gint pb_item_list_build(PbItemList *list, gint category, gint album_id) {
  PB_CHECK(PB_IS_ITEM_LIST(list), 0);
  PB_LOG(PB_LOG_INFO, "category:%d\n", category);
  list->category = category;
  PbItemListPrivate &priv = private_of(list);
  if (priv.row_count > 0) make_empty(list);

  bool paged = false;
  switch (category) {
    case pb::item_list::kAlbums:
      priv.row_count = build_albums(__func__, list);
      break;
    case pb::item_list::kAlbumFiles:
      priv.row_count = build_album_files(__func__, list, album_id);
      break;
    case pb::item_list::kWebOnlyFiles:
      priv.row_count = build_web_only_files(__func__, list);
      break;
    default:
      priv.row_count = build_first_page(__func__, list);
      paged = true;
  }
  if (priv.row_count == 0) return 0;
  pb::item_list::connect_store(list, G_CALLBACK(pb_item_list_insert_data), priv.row_count);
  if (paged) pb_item_list_icon_refresh_when_start(list);
  return priv.row_count;
}

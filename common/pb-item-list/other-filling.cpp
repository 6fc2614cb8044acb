#include <media-browser.h>
#include <pb-app-common.h>
#include <pb-item-list.h>
#include <pb-item.h>
#include <check.hpp>

#include "private.hpp"

using pb::item_list::private_of;
using pb::item_list::RecordList;

namespace {

/// Fetches every file of the current filter.
RecordList fetch_sub_list() {
  gint sort = 0;
  gint64 filter = 0;
  pb_app_common_get_filter_sort_type(&sort, &filter);
  filter = pb::item_list::resolve_default_filter(filter);
  return pb::item_list::fetch_files(sort, filter, 0, pb::item_list::count_files(filter));
}

/// Makes the item of one file of an album; none when either record cannot be read.
pb::Ref<PbItem> make_album_item(const PbItemListPrivate &priv, gint row) {
  const gint id = pb::item_list::low_word(priv.files.id(row));
  FmMediaRecord media{};
  FmFileRecord file{};
  gint error = 0;
  if (!fm_svc_mb_get_record_by_index(id, &media, &error)) return nullptr;
  if (!fm_svc_mb_get_item_by_database_index(id, &file, &error)) return nullptr;
  auto item = pb::item_list::make_file_item(file.item, pb::item_list::low_word(media.nfid));
  item->album_id = priv.album_id;
  return item;
}

void share_album(const char *entry, PbItemList *list, gint row) {
  PbItemListPrivate &priv = private_of(list);
  if (priv.records.empty()) {
    RecordList albums;
    if (!pb::item_list::select_shared_albums(entry, albums)) return;
    priv.records = std::move(albums);
  }
  pb::item_list::fill_album_row(entry, list, row);
}

void share_album_file(const char *entry, PbItemList *list, gint row) {
  PbItemListPrivate &priv = private_of(list);
  if (priv.files.empty()) {
    pb::item_list::FileList files;
    const auto selection = pb::item_list::select_shared_files(entry, priv.album_id, files);
    if (selection != pb::item_list::FileSelection::kSelected) return;
    priv.files = std::move(files);
  }
  pb::item_list::fill_album_file_row(entry, list, row, pb::item_list::Thumbnail::kLoad);
}

void share_file(const char *entry, PbItemList *list, gint row) {
  PbItemListPrivate &priv = private_of(list);
  if (priv.records.empty()) {
    RecordList records;
    if (!pb::item_list::select_shared_records(entry, list, records)) return;
    priv.records = std::move(records);
  }
  pb::item_list::fill_record_row(entry, list, row);
}

}  // namespace

void pb_item_list_sub_insert_data(GtkVirtualListStore *store, gint first, gint last, gint row) {
  PB_CHECK(PB_IS_ITEM_LIST(PB_ITEM_LIST(store)));
  PB_LOG(PB_LOG_INFO, " sub list:  (%d,%d) row=%d\n", first, last, row);
  PbItemList *list = PB_ITEM_LIST(store);
  PbItemListPrivate &priv = private_of(list);
  if (priv.records.empty()) {
    priv.records = fetch_sub_list();
    priv.row_count = priv.records.length();
    PB_LOG(PB_LOG_INFO, "sub list record count=%d\n", priv.row_count);
  }
  pb::item_list::fill_record_row(__func__, list, row);
}

void pb_item_list_album_insert_data(GtkVirtualListStore *store, gint first, gint last, gint row) {
  PB_CHECK(PB_IS_ITEM_LIST(PB_ITEM_LIST(store)));
  PB_LOG(PB_LOG_INFO, " album list:  (%d,%d) row=%d\n", first, last, row);
  PbItemList *list = PB_ITEM_LIST(store);
  PbItemListPrivate &priv = private_of(list);
  if (priv.files.empty()) {
    if (!pb::item_list::fetch_album_files(priv.album_id, pb::item_list::read_album_settings(),
                                          priv.files)) {
      PB_LOG(PB_LOG_ERROR,
             "  [Media Manager - TestApp] : fm_svc_mb_album_get_all_files failed  \n");
    }
    priv.row_count = priv.files.count();
    PB_LOG(PB_LOG_INFO, "album list file count = %d\n", priv.row_count);
  }
  if (row < 0 || row >= priv.files.count()) return;
  const auto item = make_album_item(priv, row);
  if (!item) return;
  PB_LOG(PB_LOG_INFO, "**** %s\n", item->filename);
  const auto pixbuf = pb::Ref<GdkPixbuf>::adopt(pb_item_get_render_pixbuf(item.get()));
  pb::item_list::set_row(list, row, item.get(), pixbuf.get());
}

void pb_item_list_share_insert_data(GtkVirtualListStore *store, gint first, gint last, gint row) {
  PB_CHECK(PB_IS_ITEM_LIST(PB_ITEM_LIST(store)));
  PB_LOG(PB_LOG_INFO, " share list:  (%d,%d) row=%d\n", first, last, row);
  PbItemList *list = PB_ITEM_LIST(store);
  switch (list->category) {
    case pb::item_list::kAlbums:
      share_album(__func__, list, row);
      break;
    case pb::item_list::kAlbumFiles:
      share_album_file(__func__, list, row);
      break;
    default:
      share_file(__func__, list, row);
  }
}

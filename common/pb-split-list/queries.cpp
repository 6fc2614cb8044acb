#include <media-browser.h>
#include <pb-app-common.h>
#include <pb-debug.h>
#include <pb-split-list.h>
#include <check.hpp>

#include "private.hpp"

using pb::item_list::FileList;
using pb::item_list::FileSelection;
using pb::item_list::RecordList;
using pb::split_list::private_of;

namespace {

/// A list that is replaced does no more work.
void retire(PbSplitList *previous) {
  if (previous == nullptr) return;
  PbSplitListPrivate &priv = private_of(previous);
  pb::split_list::stop_refresh(priv);
  pb::split_list::stop_filling(priv);
  pb::split_list::release_adjustment(previous);
  pb::split_list::release_paned(previous);
}

PbSplitList *show(PbSplitList *list) {
  pb_split_list_icon_refresh_when_start(list);
  return list;
}

PbSplitList *show_albums(RecordList &&albums) {
  PbSplitList *list = pb_split_list_new();
  PbSplitListPrivate &priv = private_of(list);
  priv.count = albums.length();
  priv.sub_record_list = albums.release();
  return show(list);
}

/// Lists files of the whole library, page by page.
PbSplitList *show_library(const char *entry, gint sort, gint64 filter) {
  PbSplitList *list = pb_split_list_new();
  PbSplitListPrivate &priv = private_of(list);
  const gint total = pb::item_list::count_files(filter);
  LOG_FOR(entry, PB_LOG_INFO, "sort=%d, filter=%d, count=%d\n", sort,
          pb::item_list::low_word(filter), total);
  priv.count = total;
  priv.source.pending = total > 0;
  priv.source.sort = sort;
  priv.source.filter = filter;
  priv.source.total = total;
  return show(list);
}

PbSplitList *show_files(FileList &&files, gint album_id) {
  PbSplitList *list = pb_split_list_new();
  PbSplitListPrivate &priv = private_of(list);
  priv.album_id = album_id;
  priv.count = files.count();
  priv.source.pending = !files.empty();
  priv.source.total = files.count();
  priv.source.files = std::move(files);
  return show(list);
}

/// Lists files of the whole library that have a copy on the server, as their records say.
PbSplitList *show_shared_library(const char *entry, gint category, gint sorted) {
  const gint64 filter =
      pb::split_list::narrow(pb::item_list::shared_filter(entry, category, sorted));
  const gint total = pb::item_list::count_files(filter);
  RecordList records;
  if (total > 0) {
    records = pb::item_list::fetch_files(pb::item_list::kPageSort, filter, 0, total - 1);
  }
  LOG_FOR(entry, PB_LOG_INFO, "record_list ori len = %d\n", records.length());
  for (GList *link = records.get(); link != nullptr;) {
    GList *next = link->next;
    const auto *record = static_cast<const MbItem *>(link->data);
    if (record == nullptr || record->nfid <= 0) records.remove(link);
    link = next;
  }
  PbSplitList *list = pb_split_list_new();
  PbSplitListPrivate &priv = private_of(list);
  priv.count = records.length();
  priv.record_last = priv.count - 1;
  priv.record_list = records.release();
  return show(list);
}

}  // namespace

PbSplitList *pb_split_get_list(PbSplitList *previous) {
  PB_CHECK(previous == nullptr || PB_IS_SPLIT_LIST(previous), nullptr);
  PB_LOG(PB_LOG_INFO, "\n");
  retire(previous);
  if (pb_split_get_view_type() == PB_SPLIT_VIEW_ALBUMS) {
    RecordList albums;
    if (!pb::item_list::load_albums(__func__, albums)) albums.clear();
    return show_albums(std::move(albums));
  }
  gint sort = 0;
  gint64 filter = 0;
  pb_app_common_get_filter_sort_type(&sort, &filter);
  return show_library(__func__, sort, pb::split_list::resolve_filter(filter));
}

PbSplitList *pb_split_get_filter_list(PbSplitList *previous) {
  PB_CHECK(previous == nullptr || PB_IS_SPLIT_LIST(previous), nullptr);
  PB_LOG(PB_LOG_INFO, "filter_type=%d\n", pb_split_get_filter_type());
  retire(previous);
  gint sort = 0;
  gint64 filter = 0;
  pb_app_common_get_filter_sort_type(&sort, &filter);
  return show_library(__func__, sort,
                      pb::split_list::narrow(pb::split_list::resolve_filter(filter)));
}

PbSplitList *pb_split_get_share_list(gint cate_type, gint album_id, gint sorted) {
  PB_LOG(PB_LOG_INFO, "cate_type=%d, sorted=%d\n", cate_type, sorted);
  if (cate_type == pb::item_list::kAlbums) {
    RecordList albums;
    if (!pb::item_list::select_shared_albums(__func__, albums)) albums.clear();
    return show_albums(std::move(albums));
  }
  if (cate_type != pb::item_list::kAlbumFiles) {
    return show_shared_library(__func__, cate_type, sorted);
  }
  PB_LOG(PB_LOG_INFO, "album_id = %d\n", album_id);
  FileList files;
  if (album_id != 0) {
    const auto selection = pb::item_list::select_shared_files(__func__, album_id, files);
    if (selection == FileSelection::kNoMemory) return nullptr;
  }
  return show_files(std::move(files), album_id);
}

PbSplitList *pb_split_get_album_contents_list(gint album_id) {
  PB_LOG(PB_LOG_INFO, "album_id = %d\n", album_id);
  auto settings = pb::item_list::read_album_settings();
  settings.filter = pb::item_list::low_word(
      pb::split_list::narrow(pb::item_list::resolve_default_filter(settings.filter)));
  FileList files;
  if (!pb::item_list::fetch_album_files(album_id, settings, files)) {
    PB_LOG(PB_LOG_ERROR, "fm_svc_mb_album_get_all_files fail\n");
  }
  return show_files(std::move(files), album_id);
}

PbSplitList *pb_split_get_server_only_share_list() {
  PB_LOG(PB_LOG_INFO, "\n");
  FileList files;
  if (!pb::item_list::load_web_only_files(__func__, files)) files.clear();
  return show_files(std::move(files), 0);
}

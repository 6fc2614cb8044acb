#include <media-browser.h>
#include <pb-app-common.h>
#include <pb-item-list.h>

#include <cstdlib>
#include <vector>

#include "private.hpp"

using pb::item_list::FileList;
using pb::item_list::FileSelection;
using pb::item_list::low_word;
using pb::item_list::private_of;
using pb::item_list::RecordList;

namespace {

constexpr gint kCameraFiles = 1;  // category with the camera's filter

bool read_record(gint id, FmMediaRecord *media, gint *error) {
  *media = FmMediaRecord{};
  *error = 0;
  return fm_svc_mb_get_record_by_index(id, media, error);
}

bool is_shareable(const FileList &files, gint position) {
  const gint64 id = files.id(position);
  if (files.type(position) == FM_FILE_WEB_ONLY) return id > 0;
  if (files.type(position) != FM_FILE_LOCAL) return false;
  FmMediaRecord media;
  gint error = 0;
  return read_record(low_word(id), &media, &error) && low_word(media.nfid) > 0;
}

std::vector<gint> shareable_positions(const FileList &files) {
  std::vector<gint> positions;
  for (gint i = 0; i < files.count(); ++i) {
    if (is_shareable(files, i)) positions.push_back(i);
  }
  return positions;
}

/// Copies some of the files. Both arrays come from calloc(), as the service frees them with
/// free(). FALSE when memory ran out.
bool copy_files(const char *entry, const FileList &all, const std::vector<gint> &positions,
                FileList &files) {
  FmFileList copy{};
  copy.ids = static_cast<gint64 *>(std::calloc(positions.size(), sizeof *copy.ids));
  if (copy.ids == nullptr) {
    LOG_FOR(entry, PB_LOG_ERROR, ": file_list.ids malloc ERROR\n");
    return false;
  }
  copy.types = static_cast<gint32 *>(std::calloc(positions.size(), sizeof *copy.types));
  if (copy.types == nullptr) {
    LOG_FOR(entry, PB_LOG_ERROR, ": file_list.types malloc ERROR\n");
    std::free(copy.ids);
    return false;
  }
  for (const gint position : positions) {
    copy.ids[copy.count] = all.id(position);
    copy.types[copy.count] = all.type(position);
    copy.count += 1;
  }
  LOG_FOR(entry, PB_LOG_INFO, "j = %d\n", copy.count);
  files = FileList(copy);
  return true;
}

/// Removes the files without a web copy. A record that cannot be read is tried again.
void keep_web_copies(const char *entry, RecordList &records) {
  for (GList *link = records.get(); link != nullptr;) {
    const auto *record = static_cast<const MbItem *>(link->data);
    FmMediaRecord media;
    gint error = 0;
    if (record != nullptr && !read_record(record->id, &media, &error)) {
      LOG_FOR(entry, PB_LOG_ERROR, "\n fm_svc_mb_get_record_by_index failed with err = %d \n\n",
              error);
      continue;
    }
    GList *next = link->next;
    if (record == nullptr || low_word(media.nfid) <= 0) records.remove(link);
    link = next;
  }
}

}  // namespace

namespace pb::item_list {

gint64 shared_filter(const char *entry, gint category, gint sorted) {
  if (sorted == 0) return category == kCameraFiles ? 0x13 : 3;
  gint sort = 0;
  gint64 filter = 0;
  pb_app_common_get_filter_sort_type(&sort, &filter);
  LOG_FOR(entry, PB_LOG_INFO, "sort_type=%d, filter=%d\n", sort, low_word(filter));
  // The camera sentinel goes to the service as it is.
  return resolve_default_filter(filter);
}

bool select_shared_albums(const char *entry, RecordList &albums) {
  if (!fetch_albums(albums)) {
    LOG_FOR(entry, PB_LOG_ERROR, "fm_svc_mb_get_all_albums fail!\n");
    return false;
  }
  if (albums.empty()) {
    LOG_FOR(entry, PB_LOG_WARNING, "record_list=NULL\n");
    return false;
  }
  for (GList *link = albums.get(); link != nullptr;) {
    const auto *album = static_cast<const FmAlbumRecord *>(link->data);
    if (album == nullptr) {
      LOG_FOR(entry, PB_LOG_ERROR, "album_record=NULL\n");
      return false;
    }
    LOG_FOR(entry, PB_LOG_INFO, "album name = %s, naid = %lld\n", text_of(album->name).get(),
            static_cast<long long>(album->naid));
    GList *next = link->next;
    if (album->naid <= 0) albums.remove(link);
    link = next;
  }
  LOG_FOR(entry, PB_LOG_INFO, "album list record count = %d\n", albums.length());
  return !albums.empty();
}

FileSelection select_shared_files(const char *entry, gint album_id, FileList &files) {
  const AlbumSettings settings = read_album_settings();
  LOG_FOR(entry, PB_LOG_INFO, "sort_type=%d, filter=%d \n", settings.sort, settings.filter);
  if (settings.filter == kDefaultFilter) {
    LOG_FOR(entry, PB_LOG_INFO, "-1 == album_filter \n");
  } else {
    LOG_FOR(entry, PB_LOG_INFO, "album_filter \n");
  }
  FileList all;
  if (!fetch_album_files(album_id, settings, all)) {
    LOG_FOR(entry, PB_LOG_ERROR, "fm_svc_mb_album_get_all_files fail\n");
    return FileSelection::kNothing;
  }
  LOG_FOR(entry, PB_LOG_INFO, "ori_file_list count = %d\n", all.count());
  const auto positions = shareable_positions(all);
  LOG_FOR(entry, PB_LOG_INFO, "album store share list file count = %d\n",
          static_cast<gint>(positions.size()));
  if (positions.empty()) return FileSelection::kNothing;
  return copy_files(entry, all, positions, files) ? FileSelection::kSelected
                                                  : FileSelection::kNoMemory;
}

bool select_shared_records(const char *entry, PbItemList *list, RecordList &records) {
  const gint64 filter = shared_filter(entry, list->category, private_of(list).sorted);
  records = fetch_files(kPageSort, filter, 0, count_files(filter));
  if (records.empty()) {
    LOG_FOR(entry, PB_LOG_WARNING, "record_list=NULL\n");
    return false;
  }
  LOG_FOR(entry, PB_LOG_INFO, "record_list ori len = %d\n", records.length());
  keep_web_copies(entry, records);
  LOG_FOR(entry, PB_LOG_INFO, "All/Camera share list record count=%d\n", records.length());
  return !records.empty();
}

}  // namespace pb::item_list

namespace {

FileSelection hold_shared_files(const char *entry, PbItemList *list, gint album_id) {
  LOG_FOR(entry, PB_LOG_INFO, "album_id = %d\n", album_id);
  PbItemListPrivate &priv = private_of(list);
  priv.album_id = album_id;
  if (album_id == 0) return FileSelection::kNothing;
  priv.album_web_id = pb::item_list::read_album_web_id(album_id);
  FileList files;
  const auto selection = pb::item_list::select_shared_files(entry, album_id, files);
  if (selection == FileSelection::kSelected) {
    priv.files = std::move(files);
    priv.row_count = priv.files.count();
  }
  return selection;
}

}  // namespace

PbItemList *pb_item_get_share_list(gint cate_type, gint album_id, gint sorted) {
  PB_LOG(PB_LOG_INFO, "cate_type=%d, sorted=%d\n", cate_type, sorted);
  PbItemList *list = pb_item_list_new();
  list->category = cate_type;
  PbItemListPrivate &priv = private_of(list);
  priv.sorted = sorted;
  priv.row_count = 0;

  if (cate_type == pb::item_list::kAlbumFiles) {
    // Without memory nothing more is touched, the half-made list included.
    if (hold_shared_files(__func__, list, album_id) == FileSelection::kNoMemory) return nullptr;
  } else {
    RecordList records;
    const bool any = cate_type == pb::item_list::kAlbums
                         ? pb::item_list::select_shared_albums(__func__, records)
                         : pb::item_list::select_shared_records(__func__, list, records);
    if (any) {
      priv.records = std::move(records);
      priv.row_count = priv.records.length();
    }
  }
  if (priv.row_count != 0) {
    pb::item_list::connect_store(list, G_CALLBACK(pb_item_list_share_insert_data), priv.row_count);
  }
  return list;
}

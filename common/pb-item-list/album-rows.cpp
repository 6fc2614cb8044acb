#include <media-browser.h>
#include <media-mirror.h>
#include <pb-item.h>

#include <algorithm>
#include <cstring>

#include "private.hpp"

namespace pb::item_list {

namespace {

/// A local album is shown with the file that came last; without one it keeps the cover it has.
void take_last_added_cover(FmAlbumRecord *album) {
  FmVeskFileRecord file{};
  gint error = 0;
  if (!fm_svc_mb_album_get_last_added_file(album->album_id, &file, &error)) return;
  const gsize length = std::min(strnlen(file.name, sizeof file.name), sizeof album->cover_path - 1);
  if (length == 0) return;
  std::memcpy(album->cover_path, file.name, length);
  album->cover_path[length] = '\0';
}

gint count_album(const char *entry, const FmAlbumRecord *album) {
  gint count = 0;
  gint error = 0;
  if (fm_svc_mb_album_get_files_count(album->album_id, &count, &error)) return count;
  LOG_FOR(entry, PB_LOG_ERROR, "fm_svc_mb_album_get_files_count failed  \n");
  return 0;
}

Ref<GdkPixbuf> thumbnail_of(PbItem *item, Thumbnail thumbnail) {
  return Ref<GdkPixbuf>::adopt(thumbnail == Thumbnail::kOnlyCached
                                   ? pb_item_get_only_cached_render_pixbuf(item)
                                   : pb_item_get_render_pixbuf(item));
}

/// Makes the item of a file that the phone has; none when the service cannot read it.
Ref<PbItem> make_local_item(const char *entry, gint id) {
  FmMediaRecord media{};
  gint error = 0;
  if (!fm_svc_mb_get_record_by_index(id, &media, &error)) return nullptr;
  FmFileRecord file{};
  if (!fm_svc_mb_get_item_by_database_index(id, &file, &error)) {
    LOG_FOR(entry, PB_LOG_ERROR,
            "\n fm_svc_mb_get_item_by_database_index failed with err = %d \n\n", error);
    return nullptr;
  }
  auto item = make_file_item(file.item, low_word(media.nfid));
  set_marks(item.get(), file.item);
  return item;
}

}  // namespace

Ref<PbItem> make_server_item(const char *entry, gint64 id) {
  FmVeskFileRecord record{};
  gint error = 0;
  if (!fm_svc_vesk_get_vesk_file(id, &record, &error)) return nullptr;
  LOG_FOR(entry, PB_LOG_INFO,
          "**** NFID =  %lld *** FILENAME = %s ** THUMBPATH = %s ** URL = %s, ARCHIVE = %d\n",
          static_cast<long long>(record.nfid), text_of(record.name).get(),
          text_of(record.thumbnail_path).get(), text_of(record.bytes_url).get(),
          record.storage_kind);
  if (record.database_index > 0) return make_local_item(entry, record.database_index);
  return make_web_item(record);
}

Ref<PbItem> make_album(const char *entry, FmAlbumRecord *album) {
  gint count = album->web_file_count;
  if (album->kind == 0) {
    count = count_album(entry, album);
    take_last_added_cover(album);
  }
  auto item = Ref<PbItem>::adopt(pb_item_new());
  pb_item_set_album_info_ex(item.get(), album->album_id, text_of(album->name).get(),
                            text_of(album->cover_path).get(), album->naid, count, album->attribute);
  return item;
}

void fill_album_row(const char *entry, PbItemList *list, gint row) {
  auto *album = private_of(list).records.at<FmAlbumRecord>(row);
  if (album == nullptr) {
    LOG_FOR(entry, PB_LOG_WARNING, "album_record is null when row=%d\n", row);
    return;
  }
  const auto item = make_album(entry, album);
  set_row(list, row, item.get(), thumbnail_of(item.get(), Thumbnail::kLoad).get());
}

void fill_album_file_row(const char *entry, PbItemList *list, gint row, Thumbnail thumbnail) {
  const PbItemListPrivate &priv = private_of(list);
  if (row < 0 || row >= priv.files.count()) return;
  const gint32 type = priv.files.type(row);
  LOG_FOR(entry, PB_LOG_INFO, "file_list.types  = %d\n", type);
  Ref<PbItem> item;
  if (type == FM_FILE_LOCAL) item = make_local_item(entry, low_word(priv.files.id(row)));
  if (type == FM_FILE_WEB_ONLY) item = make_server_item(entry, priv.files.id(row));
  if (!item) return;
  item->album_id = priv.album_id;
  set_row(list, row, item.get(), thumbnail_of(item.get(), thumbnail).get());
}

void fill_record_row(const char *entry, PbItemList *list, gint row) {
  const MbItem *record = private_of(list).records.at<MbItem>(row);
  if (record == nullptr) {
    LOG_FOR(entry, PB_LOG_WARNING, "mbitem NULL\n");
    return;
  }
  const auto item = make_item(*record);
  set_row(list, row, item.get(), thumbnail_of(item.get(), Thumbnail::kLoad).get());
}

}  // namespace pb::item_list

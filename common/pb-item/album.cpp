#include <pb-item.h>

#include <media-browser.h>
#include <media-mirror.h>

#include <pb-debug.h>
#include <pb-util.h>
#include <check.hpp>
#include <glib-ptr.hpp>

namespace {

constexpr gint kWebAlbumId = -1;
constexpr gint kVideo = 2;
/// Database index of the record that stands for the cover of an album without files.
constexpr gint kEmptyAlbumCover = 0;

/// The files of an album, freed with the scope.
struct AlbumFiles {
  AlbumFiles() = default;
  AlbumFiles(const AlbumFiles &) = delete;
  AlbumFiles &operator=(const AlbumFiles &) = delete;
  ~AlbumFiles() { fm_svc_sync_list_free(&list); }

  FmFileList list{};
};

/// Copies a text field of a record; nothing behind the field is read when its NUL is missing.
template <gsize Size>
pb::StringPtr text_of(const gchar (&field)[Size]) {
  return pb::StringPtr(g_strndup(field, Size));
}

void set_album(PbItem *item, gint album_id, const gchar *name, gint64 naid, gint count) {
  item->album_id = album_id;
  item->name = g_strdup(name);
  item->is_cluster = 1;
  item->count = count;
  item->naid = naid;
}

bool set_cover_of_empty_album(PbItem *item, gint *error) {
  FmMediaRecord record{};
  if (!fm_svc_mb_get_record_by_index(kEmptyAlbumCover, &record, error)) return false;
  pb_item_set_info(item, record.id, text_of(record.thumbnail_path).get(), "",
                   text_of(record.extension).get(), record.attribute);
  return true;
}

bool set_web_cover(PbItem *item, gint64 nfid, gint *error) {
  FmVeskFileRecord record{};
  if (!fm_svc_vesk_get_vesk_file(nfid, &record, error)) return false;
  // Of a file that is only on the web the thumbnail is what this phone has.
  const pb::StringPtr path = text_of(record.thumbnail_path);
  pb_item_set_info(item, static_cast<gint>(nfid), path.get(), path.get(), "jpg", record.attribute);
  return true;
}

void set_local_cover(PbItem *item, const FmMediaRecord &record, const FmFileRecord &file,
                     const gchar *path) {
  if (record.media_type == kVideo) item->media_type = kVideo;
  pb_item_set_info(item, file.item.id, text_of(file.item.thumbnail_path).get(), path,
                   text_of(file.item.extension).get(), file.item.attribute);
}

}  // namespace

void pb_item_set_album_info_ex(PbItem *item, gint album_id, const gchar *name,
                               const gchar *thumb_path, gint64 naid, gint count, gint attr) {
  PB_CHECK(PB_IS_ITEM(item));

  set_album(item, album_id, name, naid, count);
  PB_LOG(PB_LOG_INFO, "album_id:%d, name:%s, count:%d, naid=%lld\n", album_id,
         name != nullptr ? name : "(null)", count, static_cast<long long>(naid));
  pb_item_set_info(item, kWebAlbumId, thumb_path, nullptr, nullptr, attr);
}

void pb_item_set_album_info(PbItem *item, gint /*ignored1*/, gint /*ignored2*/, gint album_id,
                            const gchar *name, gint /*ignored3*/, gint naid, gint /*ignored4*/,
                            gint count) {
  PB_CHECK(PB_IS_ITEM(item));

  set_album(item, album_id, name, naid, count);
  PB_LOG(PB_LOG_INFO,
         "CLUSTER ITEM [%d], cate_type %d,  start_item_index:%d, name:%s, count:%d, naid:%lld\n",
         item->cluster_index, item->cate_type, item->album_id, name != nullptr ? name : "(null)",
         item->count, static_cast<long long>(item->naid));

  gint error = 0;
  AlbumFiles files;
  if (!fm_svc_mb_album_get_all_files(album_id, &files.list, &error)) {
    PB_LOG(PB_LOG_ERROR,
           "\n [Media Manager - TestApp] : fm_svc_mb_album_get_all_files failed \n\n");
  }

  const bool empty =
      files.list.count <= 0 || files.list.ids == nullptr || files.list.types == nullptr;
  if (empty) {
    PB_LOG(PB_LOG_INFO, "======== pb_cluster_item_set_info Empty Album==========\n");
    if (!set_cover_of_empty_album(item, &error)) {
      PB_LOG(PB_LOG_ERROR, "\n fm_svc_mb_get_record_by_index failed with err = %d \n\n", error);
    }
    return;
  }
  if (files.list.types[0] == FM_FILE_WEB_ONLY) {
    PB_LOG(PB_LOG_INFO, "======== Not Empty Album && FV_SYNC_ID_TYPE_NFID ==========\n");
    if (!set_web_cover(item, files.list.ids[0], &error)) {
      PB_LOG(PB_LOG_ERROR, "fm_svc_vesk_get_vesk_file failed with err = %d\n", error);
    }
    return;
  }

  const gint index = static_cast<gint>(files.list.ids[0]);
  FmMediaRecord record{};
  if (!fm_svc_mb_get_record_by_index(index, &record, &error)) {
    PB_LOG(PB_LOG_ERROR, "\n fm_svc_mb_get_record_by_index failed with err = %d \n\n", error);
    return;
  }
  FmFileRecord file{};
  if (!fm_svc_mb_get_item_by_database_index(index, &file, &error)) {
    PB_LOG(PB_LOG_ERROR, "\n fm_svc_mb_get_item_by_database_index failed with err = %d \n\n",
           error);
    return;
  }
  gchar path[PB_FULL_PATH_SIZE] = {};
  mb_util_get_full_path_by_record(text_of(record.folder).get(), text_of(record.name).get(),
                                  record.storage, path);
  PB_LOG(PB_LOG_INFO, "%s %d %s\n", text_of(file.item.thumbnail_path).get(), file.item.id, path);
  set_local_cover(item, record, file, path);
}

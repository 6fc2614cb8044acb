#include <media-browser.h>

#include <cstdlib>
#include <cstring>
#include <ranges>

#include "fakes/journal.hpp"

namespace fake {

void set_media_defaults(Platform &phone) {
  phone.fm_svc_mb_get_albums_count = [](gint *count, gint, gint *) {
    answer(count, 0);
    return TRUE;
  };
  phone.fm_svc_mb_get_all_albums_ex = [](gint, guint32, GList **albums, gint *) {
    answer(albums, nullptr);
    return TRUE;
  };
  phone.fm_svc_mb_album_get_all_files_ex = [](gint, gint, gint, FmFileList *list, gint *) {
    *list = {};
    return TRUE;
  };
  phone.fm_svc_mb_album_get_all_files = [](gint, FmFileList *list, gint *) {
    *list = {};
    return TRUE;
  };
  phone.fm_svc_mb_album_get_files_count = [](gint, gint *count, gint *) {
    answer(count, 0);
    return TRUE;
  };
  phone.fm_svc_mb_album_get_last_added_file = [](gint, FmVeskFileRecord *record, gint *) {
    *record = {};
    return FALSE;
  };
  phone.fm_svc_mb_album_set_thumb_path_by_naid = [](gint64, const gchar *, gint *) { return TRUE; };
  phone.fm_svc_mb_get_album = [](gint album_id, FmAlbumRecord *record, gint *) {
    *record = {};
    record->album_id = album_id;
    return TRUE;
  };
  phone.fm_svc_mb_get_album_id_by_naid = [](gint64, gint *album_id, gint *) {
    answer(album_id, 0);
    return FALSE;
  };
  phone.fm_svc_mb_get_drovo_album = [](FmAlbumRecord *record, gint *) {
    *record = {};
    return FALSE;
  };
  phone.fm_svc_mb_get_all_sub_file_count = [](const gchar *, gint, gint64, gint *count, gint *) {
    answer(count, 0);
    return TRUE;
  };
  phone.fm_svc_mb_get_list = [](const gchar *, gint, gint, gint64, gint, GList **list, gint, gint,
                                gint *) {
    answer(list, nullptr);
    return TRUE;
  };
  phone.fm_svc_mb_get_record_by_index = [](gint, FmMediaRecord *record, gint *) {
    *record = {};
    return TRUE;
  };
  phone.fm_svc_mb_get_item_by_database_index = [](gint, FmFileRecord *record, gint *) {
    *record = {};
    return TRUE;
  };
}

MbItem make_item(int id, std::string_view path) {
  MbItem item{};
  item.id = id;
  set_text(item.path, path);
  return item;
}

FmAlbumRecord make_album(int album_id, std::string_view name, gint64 naid) {
  FmAlbumRecord album{};
  album.album_id = album_id;
  album.naid = naid;
  set_text(album.name, name);
  return album;
}

void fill_file_list(FmFileList *list, const std::vector<gint64> &ids,
                    const std::vector<gint32> &types) {
  *list = {};
  if (ids.empty()) return;
  list->ids = static_cast<gint64 *>(std::calloc(ids.size(), sizeof(gint64)));
  list->types = static_cast<gint32 *>(std::calloc(ids.size(), sizeof(gint32)));
  std::ranges::copy(ids, list->ids);
  std::ranges::copy(types | std::views::take(ids.size()), list->types);
  list->count = static_cast<gint32>(ids.size());
}

namespace {

/// The folder and the name in a path.
std::pair<std::string, std::string> split_path(const std::string &path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return {"", path};
  if (slash == 0) return {"/", path.substr(1)};
  return {path.substr(0, slash), path.substr(slash + 1)};
}

FmMediaRecord media_record_of(const MbItem &item) {
  FmMediaRecord record{};
  const auto [folder, name] = split_path(item.path);
  record.id = item.id;
  record.media_type = item.media_type;
  record.attribute = item.attribute;
  set_text(record.folder, folder);
  set_text(record.name, name);
  std::memcpy(record.thumbnail_path, item.thumbnail_path, sizeof(record.thumbnail_path));
  std::memcpy(record.extension, item.extension, sizeof(record.extension));
  record.nfid = item.nfid;
  return record;
}

FmFileRecord file_record_of(const MbItem &item) {
  FmFileRecord record{};
  const auto [folder, name] = split_path(item.path);
  record.item = item;
  set_text(record.folder, folder);
  set_text(record.name, name);
  return record;
}

/// The rows first to last of a list, both included; last is clamped.
std::vector<MbItem> rows_of(const std::vector<MbItem> &files, gint first, gint last) {
  std::vector<MbItem> rows;
  const auto count = static_cast<gint>(files.size());
  for (gint row = std::max(first, 0); row <= last && row < count; ++row) rows.push_back(files[row]);
  return rows;
}

const MbItem *find_file(const std::vector<MbItem> &files, gint id) {
  const auto found = std::ranges::find(files, id, &MbItem::id);
  return found == files.end() ? nullptr : &*found;
}

}  // namespace

void serve_files(const std::vector<MbItem> &files) {
  Platform &phone = platform();
  phone.fm_svc_mb_get_all_sub_file_count = [files](const gchar *, gint, gint64, gint *count,
                                                   gint *) {
    answer(count, static_cast<gint>(files.size()));
    return TRUE;
  };
  phone.fm_svc_mb_get_list = [files](const gchar *, gint, gint, gint64, gint, GList **list,
                                     gint first, gint last, gint *) {
    *list = record_list(rows_of(files, first, last));
    return TRUE;
  };
  phone.fm_svc_mb_get_record_by_index = [files](gint id, FmMediaRecord *record, gint *) {
    const MbItem *file = find_file(files, id);
    *record = file != nullptr ? media_record_of(*file) : FmMediaRecord{};
    return TRUE;
  };
  phone.fm_svc_mb_get_item_by_database_index = [files](gint id, FmFileRecord *record, gint *) {
    const MbItem *file = find_file(files, id);
    *record = file != nullptr ? file_record_of(*file) : FmFileRecord{};
    return TRUE;
  };
}

}  // namespace fake

gboolean fm_svc_mb_get_albums_count(gint *count, gint web, gint *error) {
  fake::record("fm_svc_mb_get_albums_count", web);
  return fake::platform().fm_svc_mb_get_albums_count(count, web, error);
}

gboolean fm_svc_mb_get_all_albums_ex(gint sort, guint32 flags, GList **albums, gint *error) {
  fake::record("fm_svc_mb_get_all_albums_ex", sort, flags);
  return fake::platform().fm_svc_mb_get_all_albums_ex(sort, flags, albums, error);
}

gboolean fm_svc_mb_album_get_all_files_ex(gint album_id, gint sort, gint filter, FmFileList *list,
                                          gint *error) {
  fake::record("fm_svc_mb_album_get_all_files_ex", album_id, sort, filter);
  return fake::platform().fm_svc_mb_album_get_all_files_ex(album_id, sort, filter, list, error);
}

gboolean fm_svc_mb_album_get_all_files(gint album_id, FmFileList *list, gint *error) {
  fake::record("fm_svc_mb_album_get_all_files", album_id);
  return fake::platform().fm_svc_mb_album_get_all_files(album_id, list, error);
}

gboolean fm_svc_mb_album_get_files_count(gint album_id, gint *count, gint *error) {
  fake::record("fm_svc_mb_album_get_files_count", album_id);
  return fake::platform().fm_svc_mb_album_get_files_count(album_id, count, error);
}

gboolean fm_svc_mb_album_get_last_added_file(gint album_id, FmVeskFileRecord *record, gint *error) {
  fake::record("fm_svc_mb_album_get_last_added_file", album_id);
  return fake::platform().fm_svc_mb_album_get_last_added_file(album_id, record, error);
}

gboolean fm_svc_mb_album_set_thumb_path_by_naid(gint64 naid, const gchar *path, gint *error) {
  fake::record("fm_svc_mb_album_set_thumb_path_by_naid", naid, path);
  return fake::platform().fm_svc_mb_album_set_thumb_path_by_naid(naid, path, error);
}

gboolean fm_svc_mb_get_album(gint album_id, FmAlbumRecord *record, gint *error) {
  fake::record("fm_svc_mb_get_album", album_id);
  return fake::platform().fm_svc_mb_get_album(album_id, record, error);
}

gboolean fm_svc_mb_get_album_id_by_naid(gint64 naid, gint *album_id, gint *error) {
  fake::record("fm_svc_mb_get_album_id_by_naid", naid);
  return fake::platform().fm_svc_mb_get_album_id_by_naid(naid, album_id, error);
}

gboolean fm_svc_mb_get_drovo_album(FmAlbumRecord *record, gint *error) {
  fake::record("fm_svc_mb_get_drovo_album");
  return fake::platform().fm_svc_mb_get_drovo_album(record, error);
}

gboolean fm_svc_mb_get_all_sub_file_count(const gchar *path, gint depth, gint64 filter, gint *count,
                                          gint *error) {
  fake::record("fm_svc_mb_get_all_sub_file_count", path, depth, filter);
  return fake::platform().fm_svc_mb_get_all_sub_file_count(path, depth, filter, count, error);
}

gboolean fm_svc_mb_get_list(const gchar *path, gint depth, gint sort, gint64 filter, gint reserved,
                            GList **list, gint first, gint last, gint *error) {
  fake::record("fm_svc_mb_get_list", path, depth, sort, filter, reserved, first, last);
  return fake::platform().fm_svc_mb_get_list(path, depth, sort, filter, reserved, list, first, last,
                                             error);
}

gboolean fm_svc_mb_get_record_by_index(gint id, FmMediaRecord *record, gint *error) {
  fake::record("fm_svc_mb_get_record_by_index", id);
  return fake::platform().fm_svc_mb_get_record_by_index(id, record, error);
}

gboolean fm_svc_mb_get_item_by_database_index(gint id, FmFileRecord *record, gint *error) {
  fake::record("fm_svc_mb_get_item_by_database_index", id);
  return fake::platform().fm_svc_mb_get_item_by_database_index(id, record, error);
}

void fm_svc_mb_glist_free(GList **list, gboolean free_data) {
  fake::record("fm_svc_mb_glist_free", free_data);
  if (list == nullptr) return;
  for (GList *link = *list; free_data && link != nullptr; link = link->next) std::free(link->data);
  g_list_free(*list);
  *list = nullptr;
}

void fm_svc_sync_list_free(FmFileList *list) {
  fake::record("fm_svc_sync_list_free");
  if (list == nullptr) return;
  std::free(list->ids);
  std::free(list->types);
  *list = {};
}

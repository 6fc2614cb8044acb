#include <media-browser.h>
#include <media-mirror.h>
#include <pb-app-common.h>
#include <pb-util-settings.h>

#include "private.hpp"

namespace pb::item_list {

namespace {

constexpr gint kWholeTree = 2;
constexpr gint64 kAllFilesFilter = 3;
constexpr gint64 kCameraFilesFilter = 0x13;

}  // namespace

gint64 resolve_default_filter(gint64 filter) {
  return filter == kDefaultFilter ? kAllFilesFilter : filter;
}

gint64 resolve_filter(gint64 filter) {
  return filter == kCameraFilter ? kCameraFilesFilter : resolve_default_filter(filter);
}

gint count_files(gint64 filter) {
  gint count = 0;
  gint error = 0;
  const bool counted =
      fm_svc_mb_get_all_sub_file_count("/", kWholeTree, filter, &count, &error) && count > 0;
  return counted ? count : 0;
}

RecordList fetch_files(gint sort, gint64 filter, gint first, gint last) {
  GList *records = nullptr;
  gint error = 0;
  fm_svc_mb_get_list("/", kWholeTree, sort, filter, 0, &records, first, last, &error);
  return RecordList(records);
}

bool fetch_albums(RecordList &albums) {
  const guint32 flags = mb_util_is_vesk_login_present() != 0 ? 0 : FM_ALBUMS_WITHOUT_WEB;
  GList *records = nullptr;
  gint error = 0;
  const bool listed = fm_svc_mb_get_all_albums_ex(kAlbumSort, flags, &records, &error);
  albums = RecordList(records, RecordKind::kAlbums);
  return listed;
}

AlbumSettings read_album_settings() {
  AlbumSettings settings;
  pb_app_common_get_album_filter_sort_type(&settings.sort, &settings.filter);
  return settings;
}

bool fetch_album_files(gint album_id, const AlbumSettings &settings, FileList &files) {
  files.clear();
  gint error = 0;
  const bool listed = fm_svc_mb_album_get_all_files_ex(
      album_id, settings.sort, static_cast<gint>(resolve_default_filter(settings.filter)),
      files.fill(), &error);
  if (!listed) files.clear();
  return listed;
}

bool fetch_web_only_files(FileList &files, gint &error) {
  files.clear();
  error = 0;
  const bool listed = fm_svc_vesk_get_server_only_vesk_files_without_delete(G_GINT64_CONSTANT(-1),
                                                                            files.fill(), &error);
  if (!listed) files.clear();
  return listed;
}

gint read_album_web_id(gint album_id) {
  FmAlbumRecord album{};
  gint error = 0;
  return fm_svc_mb_get_album(album_id, &album, &error) ? low_word(album.naid) : 0;
}

bool load_albums(const char *entry, RecordList &albums) {
  if (!fetch_albums(albums)) {
    LOG_FOR(entry, PB_LOG_ERROR,
            "  [Media Manager - TestApp] : fm_svc_mb_get_all_albums failed  \n");
    return false;
  }
  if (albums.empty()) {
    LOG_FOR(entry, PB_LOG_WARNING, "  [Media Manager - TestApp] : album_list == NULL  \n");
    return false;
  }
  LOG_FOR(entry, PB_LOG_INFO, "g_list_length:%d\n", albums.length());
  LOG_FOR(entry, PB_LOG_INFO, "album list record count = %d\n", albums.length());
  return true;
}

bool load_album_files(const char *entry, gint album_id, FileList &files) {
  if (!fetch_album_files(album_id, read_album_settings(), files)) {
    LOG_FOR(entry, PB_LOG_ERROR,
            "  [Media Manager - TestApp] : fm_svc_mb_album_get_all_files failed  \n");
    return false;
  }
  if (files.empty()) return false;
  LOG_FOR(entry, PB_LOG_INFO, "album store list file count = %d\n", files.count());
  return true;
}

bool load_web_only_files(const char *entry, FileList &files) {
  gint error = 0;
  if (!fetch_web_only_files(files, error)) {
    LOG_FOR(entry, PB_LOG_ERROR,
            "  [MB_service] : fm_svc_vesk_get_server_only_vesk_files_without_delete failed err = "
            "%d  \n",
            error);
    return false;
  }
  if (files.empty()) return false;
  LOG_FOR(entry, PB_LOG_INFO, "server only list file count = %d\n", files.count());
  return true;
}

}  // namespace pb::item_list

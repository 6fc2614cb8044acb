#include "rows.hpp"

#include <media-browser.h>
#include <media-index.h>
#include <pb-app-common.h>
#include <pb-util-settings.h>

namespace gallery {
namespace {

constexpr gint kNewestFirst = 3;  // the order of the library's list of all files
constexpr gint kEverything = FM_FILTER_PICTURES | FM_FILTER_VIDEOS;
constexpr gint kAlbumOrder = 2;  // the order of the library's album list

/// The ids of an album's files, owned.
struct Files {
  FmFileList list{};
  Files() = default;
  ~Files() { fm_svc_sync_list_free(&list); }
  Files(const Files &) = delete;
  Files &operator=(const Files &) = delete;
};

/// The records of albums, owned.
struct Albums {
  GList *list = nullptr;
  Albums() = default;
  ~Albums() { fm_svc_mb_glist_free(&list, TRUE); }
  Albums(const Albums &) = delete;
  Albums &operator=(const Albums &) = delete;
};

}  // namespace

gint id_of(const PbItem *item) { return item->is_cluster != 0 ? item->album_id : item->id; }

PbItem *item_at(PbItemList *list, int row) {
  if (list == nullptr || row < 0 || row >= pb_item_list_get_length(list)) return nullptr;
  return pb_app_common_get_nth_item_from_list(list, row);
}

int row_of_file(gint id) {
  gint sort = 0;
  gint64 filter = 0;
  pb_app_common_get_filter_sort_type(&sort, &filter);
  return media_index_get_position(kNewestFirst, filter == -1 ? kEverything : filter, id);
}

int row_of_album_file(gint album_id, gint id) {
  gint sort = 0;
  gint filter = 0;
  pb_app_common_get_album_filter_sort_type(&sort, &filter);
  Files files;
  if (!fm_svc_mb_album_get_all_files_ex(album_id, sort, filter == -1 ? kEverything : filter,
                                        &files.list, nullptr)) {
    return -1;
  }
  for (gint row = 0; row < files.list.count; ++row) {
    if (files.list.types[row] == FM_FILE_LOCAL && files.list.ids[row] == id) return row;
  }
  return -1;
}

int row_of_album(gint album_id) {
  const guint32 flags = mb_util_is_vesk_login_present() != 0 ? 0 : FM_ALBUMS_WITHOUT_WEB;
  Albums albums;
  if (!fm_svc_mb_get_all_albums_ex(kAlbumOrder, flags, &albums.list, nullptr)) return -1;
  int row = 0;
  for (const GList *link = albums.list; link != nullptr; link = link->next, ++row) {
    if (static_cast<const FmAlbumRecord *>(link->data)->album_id == album_id) return row;
  }
  return -1;
}

}  // namespace gallery

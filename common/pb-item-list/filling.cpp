#include <pb-item-list.h>
#include <pb-item.h>
#include <pb-util-resource.h>
#include <check.hpp>

#include "private.hpp"

using pb::item_list::private_of;
using pb::item_list::RecordList;

namespace {

/// Says that a row is being made, until every exit.
class Busy {
 public:
  explicit Busy(gint &flag) : flag_(flag) { flag_ = 1; }
  ~Busy() { flag_ = 0; }
  Busy(const Busy &) = delete;
  Busy &operator=(const Busy &) = delete;

 private:
  gint &flag_;
};

void insert_album(const char *entry, PbItemList *list, gint row) {
  PbItemListPrivate &priv = private_of(list);
  if (priv.records.empty()) {
    RecordList albums;
    if (!pb::item_list::load_albums(entry, albums)) {
      LOG_FOR(entry, PB_LOG_WARNING, "album_list == NULL\n");
      return;
    }
    priv.records = std::move(albums);
  }
  pb::item_list::fill_album_row(entry, list, row);
}

void insert_album_file(const char *entry, PbItemList *list, gint row) {
  PbItemListPrivate &priv = private_of(list);
  if (priv.files.empty()) {
    pb::item_list::FileList files;
    if (!pb::item_list::load_album_files(entry, priv.album_id, files)) return;
    priv.files = std::move(files);
  }
  pb::item_list::fill_album_file_row(entry, list, row, pb::item_list::Thumbnail::kOnlyCached);
}

void insert_web_only_file(const char *entry, PbItemList *list, gint row) {
  PbItemListPrivate &priv = private_of(list);
  if (priv.files.empty()) {
    pb::item_list::FileList files;
    if (!pb::item_list::load_web_only_files(entry, files)) return;
    priv.files = std::move(files);
  }
  pb::item_list::fill_web_only_row(entry, list, row);
}

/// Rows on the screen get the thumbnail that lies ready, all others the placeholder.
pb::Ref<GdkPixbuf> pixbuf_of_paged_row(const char *entry, PbItemList *list, PbItem *item,
                                       gint row) {
  PbItemListPrivate &priv = private_of(list);
  const gint first = pb::item_list::first_visible_row(priv);
  if (row >= first && row < first + pb::item_list::kBatch) {
    LOG_FOR(entry, PB_LOG_INFO, "ROW=%d\n", row);
    return pb::Ref<GdkPixbuf>::adopt(pb_item_get_only_cached_render_pixbuf(item));
  }
  LOG_FOR(entry, PB_LOG_INFO, "ROW=%d, set default image\n", row);
  if (!GDK_IS_PIXBUF(priv.default_pixbuf.get())) {
    LOG_FOR(entry, PB_LOG_ERROR, "Error: default icon was freed!\n");
    priv.default_pixbuf = pb::Ref<GdkPixbuf>::adopt(pb_get_pixbuf(pb::item_list::kPlaceholderId));
  }
  return priv.default_pixbuf;
}

void insert_paged_file(const char *entry, PbItemList *list,
                       const pb::item_list::RowRequest &request) {
  RecordList single;
  const auto record = pb::item_list::find_paged_record(entry, list, request, single);
  if (!record) return;
  if (*record == nullptr) {
    LOG_FOR(entry, PB_LOG_WARNING, "mbitem NULL\n");
    return;
  }
  const auto item = pb::item_list::make_marked_item(**record);
  const auto pixbuf = pixbuf_of_paged_row(entry, list, item.get(), request.row);
  pb::item_list::set_row(list, request.row, item.get(), pixbuf.get());
}

}  // namespace

void pb_item_list_insert_data(GtkVirtualListStore *store, gint first, gint last, gint row) {
  PB_CHECK(PB_IS_ITEM_LIST(PB_ITEM_LIST(store)));
  PbItemList *list = PB_ITEM_LIST(store);
  PbItemListPrivate &priv = private_of(list);
  if (priv.first_fill_busy != 0) return;
  PB_LOG(PB_LOG_INFO, "pb_item_list(%d): (%d,%d), row=%d\n", list->category, first, last, row);
  const Busy busy(priv.insertion_busy);
  switch (list->category) {
    case pb::item_list::kAlbums:
      insert_album(__func__, list, row);
      break;
    case pb::item_list::kAlbumFiles:
      insert_album_file(__func__, list, row);
      break;
    case pb::item_list::kWebOnlyFiles:
      insert_web_only_file(__func__, list, row);
      break;
    default:
      insert_paged_file(__func__, list, {first, last, row});
  }
}

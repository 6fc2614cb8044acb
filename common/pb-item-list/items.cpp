#include <media-browser.h>
#include <pb-item.h>

#include "private.hpp"

namespace pb::item_list {

Ref<PbItem> make_file_item(const MbItem &record, gint nfid) {
  auto item = Ref<PbItem>::adopt(pb_item_new());
  item->nfid = nfid;
  item->is_cluster = 0;
  item->id = record.id;
  item->filename = text_of(record.path).release();
  item->thumb_path = text_of(record.thumbnail_path).release();
  item->attr = record.attribute;
  item->extension = text_of(record.extension).release();
  item->media_type = record.media_type;
  return item;
}

Ref<PbItem> make_item(const MbItem &record) {
  FmMediaRecord media{};
  gint error = 0;
  const bool read = fm_svc_mb_get_record_by_index(record.id, &media, &error);
  return make_file_item(record, read ? low_word(media.nfid) : record.nfid);
}

Ref<PbItem> make_marked_item(const MbItem &record) {
  auto item = make_item(record);
  set_marks(item.get(), record);
  return item;
}

void set_marks(PbItem *item, const MbItem &record) {
  item->favourite = (record.flags & 1u) != 0 ? 1 : 0;
  item->mark = record.unmarked == 0 ? 1 : 0;
}

Ref<PbItem> make_web_item(const FmVeskFileRecord &record) {
  auto item = Ref<PbItem>::adopt(pb_item_new());
  item->nfid = low_word(record.nfid);
  item->filename = text_of(record.name).release();
  item->thumb_path = text_of(record.thumbnail_path).release();
  item->attr = record.attribute;
  item->extension = g_strdup("jpg");
  item->aux_text = text_of(record.bytes_url).release();
  return item;
}

const MbItem *held_record(PbItemList *list, gint row) {
  const PbItemListPrivate &priv = private_of(list);
  return priv.records.at<MbItem>(row - priv.page_start);
}

void set_row(PbItemList *list, gint row, PbItem *item, GdkPixbuf *pixbuf) {
  GtkVirtualListStore *store = GTK_VIRTUAL_LIST_STORE(list);
  GtkTreeIter iter;
  if (!gtk_virtual_list_store_iter_nth(store, &iter, row)) return;
  gtk_virtual_list_store_set(store, &iter, 0, item, 1, nullptr, 2, row, 3, pixbuf, -1);
}

}  // namespace pb::item_list

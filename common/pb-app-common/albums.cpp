#include <media-browser.h>

#include <pb-debug.h>
#include <pb-util.h>
#include <glib-ptr.hpp>

#include "private.hpp"

using pb::app_common::Private;
using pb::app_common::private_of;

namespace {

constexpr guint32 kHideWebAlbums = 0x10000;

void free_records(GList *records) { fm_svc_mb_glist_free(&records, TRUE); }
using RecordsPtr = std::unique_ptr<GList, pb::FreeWith<free_records>>;

/// Copies a text field of a record; nothing behind the field is read when its NUL is missing.
template <gsize Size>
pb::StringPtr text_of(const gchar (&field)[Size]) {
  return pb::StringPtr(g_strndup(field, Size));
}

void append_album(PbItemList *list, const FmAlbumRecord &record, gint count, gint index) {
  const auto item = pb::Ref<PbItem>::adopt(pb_item_new());
  pb_item_set_album_info_ex(item.get(), record.album_id, text_of(record.name).get(),
                            text_of(record.cover_path).get(), record.naid, count, record.attribute);
  pb_item_list_add(list, item.get(), index, nullptr);
}

}  // namespace

gboolean pb_app_common_sort_albums(gint sort_type) {
  PB_LOG(PB_LOG_INFO, "======== pb_app_common_sort_albums ==========\n");
  Private *priv = private_of(pb_app_common_get_instance());
  if (priv == nullptr) return FALSE;

  pb::app_common::replace_list(priv, nullptr);
  priv->item_list = pb_item_list_new();
  priv->n_entire_items = 0;

  gint error = 0;
  RecordsPtr albums;
  const guint32 flags = mb_util_is_vesk_login_present() ? 0 : kHideWebAlbums;
  if (!fm_svc_mb_get_all_albums_ex(sort_type, flags, pb::out(albums), &error)) {
    PB_LOG(PB_LOG_ERROR, "fm_svc_mb_get_all_albums_ex failed with err = %d\n", error);
    return FALSE;
  }
  if (!albums) {
    PB_LOG(PB_LOG_WARNING, "album_list == NULL\n");
    return FALSE;
  }
  const gint length = static_cast<gint>(g_list_length(albums.get()));
  PB_LOG(PB_LOG_INFO, "g_list_length:%d\n", length);

  gint i = 0;
  for (const FmAlbumRecord *record : pb::each<FmAlbumRecord>(albums.get())) {
    gint count = 0;
    if (!fm_svc_mb_album_get_files_count(record->album_id, &count, &error)) {
      PB_LOG(PB_LOG_ERROR, "fm_svc_mb_album_get_files_count failed with err = %d\n", error);
      count = 0;
    }
    PB_LOG(PB_LOG_INFO, "$$$$$$$$ Album name = %s $$$$$$$$\n", text_of(record->name).get());
    PB_LOG(PB_LOG_INFO, "$$$$$$$$ UID = %d $$$$$$$$\n", record->album_id);
    append_album(priv->item_list, *record, count, i++);
  }
  priv->n_entire_items = length;
  return TRUE;
}

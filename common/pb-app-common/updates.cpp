#include <pb-debug.h>
#include <glib-ptr.hpp>

#include "private.hpp"

using pb::app_common::peek_item;
using pb::app_common::Private;
using pb::app_common::private_of;

namespace {

enum Column : gint { kItemColumn = 0, kIconColumn = 3 };

enum UpdateType : gint {
  kFavouriteChanged = 1,
  kWebIdChanged = 2,
  kPictureChanged = 3,
  kPathChanged = 4,
  kMarkRemoved = 5,
};

bool position(const Private *priv, gint row, GtkTreeIter *iter) {
  return gtk_virtual_list_store_iter_nth(GTK_VIRTUAL_LIST_STORE(priv->item_list), iter, row);
}

/// What a row holds without being read from the service.
struct DrawnRow {
  GtkTreeIter iter{};
  pb::Ref<PbItem> item;
  pb::Ref<GdkPixbuf> icon;
};

DrawnRow drawn_row(const Private *priv, gint row) {
  DrawnRow result;
  auto *store = GTK_VIRTUAL_LIST_STORE(priv->item_list);
  if (!gtk_virtual_list_store_row_is_filled(store, row) || !position(priv, row, &result.iter)) {
    return result;
  }
  PbItem *item = nullptr;
  GdkPixbuf *icon = nullptr;
  gtk_tree_model_get(GTK_TREE_MODEL(store), &result.iter, kItemColumn, &item, kIconColumn, &icon,
                     -1);
  result.item = pb::Ref<PbItem>::adopt(item);
  result.icon = pb::Ref<GdkPixbuf>::adopt(icon);
  return result;
}

/// Web ids are compared in 32 bits, files and albums alike.
bool has_web_id(const PbItem *item, gint32 id) { return item->nfid == id || item->naid == id; }

bool is_file(const PbItem *item, gint fid, gint nfid) {
  return (item->nfid > 0 && item->nfid == nfid) || (item->id != 0 && item->id == fid);
}

void renew_icon(const Private *priv, gint row, PbItem *item) {
  GtkTreeIter iter;
  if (!position(priv, row, &iter)) return;
  const auto icon = pb::Ref<GdkPixbuf>::adopt(pb_item_get_render_pixbuf(item));
  gtk_virtual_list_store_set(GTK_VIRTUAL_LIST_STORE(priv->item_list), &iter, kIconColumn,
                             icon.get(), -1);
}

void store_item(const Private *priv, gint row, PbItem *item) {
  GtkTreeIter iter;
  if (!position(priv, row, &iter)) return;
  gtk_virtual_list_store_set(GTK_VIRTUAL_LIST_STORE(priv->item_list), &iter, kItemColumn, item, -1);
}

const gchar *printable(const gchar *text) { return text != nullptr ? text : "(null)"; }

}  // namespace

gboolean mb_app_common_update_iter_index_after_build(gint fid, gint nfid) {
  PB_LOG(PB_LOG_INFO, "FID = %d, NFID = %d\n", fid, nfid);
  PbAppCommon *thiz = pb_app_common_get_instance();
  if (thiz == nullptr) {
    PB_LOG(PB_LOG_ERROR, "fail to get PbAppCommon object\n");
    return FALSE;
  }
  const Private *priv = private_of(thiz);
  if (priv == nullptr) {
    PB_LOG(PB_LOG_ERROR, "fail to get priv\n");
    return FALSE;
  }
  if (fid < 1 && nfid < 1) {
    PB_LOG(PB_LOG_WARNING, "Invalid file id\n");
    return FALSE;
  }
  if (thiz->category_type != pb::app_common::kFiles &&
      thiz->category_type != pb::app_common::kOtherFiles) {
    PB_LOG(PB_LOG_WARNING, " Not a correct Category \n");
    return FALSE;
  }
  for (gint row = 0; row < priv->n_entire_items; ++row) {
    const PbItem *item = peek_item(priv, row);
    if (item == nullptr) continue;
    PB_LOG(PB_LOG_INFO, "item->id = %d, item->nfid = %d\n", item->id, item->nfid);
    if (!is_file(item, fid, nfid)) continue;
    thiz->item_index = row;
    return TRUE;
  }
  return FALSE;
}

gboolean mb_app_common_update_content_cover_after_download(gint64 id, const gchar *cover_path) {
  PB_LOG(PB_LOG_INFO, "id = %lld, cover_path = %s\n", static_cast<long long>(id),
         printable(cover_path));
  PbAppCommon *thiz = pb_app_common_get_instance();
  if (thiz == nullptr) {
    PB_LOG(PB_LOG_ERROR, "fail to get PbAppCommon object\n");
    return FALSE;
  }
  const Private *priv = private_of(thiz);
  if (priv == nullptr) {
    PB_LOG(PB_LOG_ERROR, "fail to get priv\n");
    return FALSE;
  }
  if (id <= 0 || cover_path == nullptr) {
    PB_LOG(PB_LOG_ERROR, "invalid parameter\n");
    return FALSE;
  }
  if (thiz->category_type != pb::app_common::kAlbums &&
      thiz->category_type != pb::app_common::kAlbumContents) {
    PB_LOG(PB_LOG_WARNING, " Not a correct Category \n");
    return FALSE;
  }
  if (!PB_IS_ITEM_LIST(priv->item_list)) return FALSE;

  const gint32 low_word = static_cast<gint32>(id);
  for (gint row = 0; row < priv->n_entire_items; ++row) {
    DrawnRow drawn = drawn_row(priv, row);
    PbItem *item = drawn.item.get();
    if (item == nullptr || !drawn.icon || !has_web_id(item, low_word)) continue;
    PB_LOG(PB_LOG_INFO, "Passed id = %d, curr naid = %d and curr nfid = %d\n", low_word,
           static_cast<gint>(item->naid), item->nfid);
    // The old path is not freed: a row that is being drawn may hold it.
    item->thumb_path = g_strdup(cover_path);
    drawn.icon = pb::Ref<GdkPixbuf>::adopt(pb_item_get_render_pixbuf(item));
    gtk_virtual_list_store_set(GTK_VIRTUAL_LIST_STORE(priv->item_list), &drawn.iter, kItemColumn,
                               item, kIconColumn, drawn.icon.get(), -1);
    return TRUE;
  }
  return FALSE;
}

PbItem *pb_app_common_update_item_pixbuf(const gchar *file_full_path, gint update_type,
                                         gboolean favourite, gint nfid, const gchar *new_path) {
  PB_LOG(PB_LOG_WARNING,
         "********* update_type = %d, favourite = %d, nfid = %d new_path = %s**********\n",
         update_type, favourite, nfid, printable(new_path));
  PbAppCommon *thiz = pb_app_common_get_instance();
  if (thiz == nullptr) {
    PB_LOG(PB_LOG_ERROR, "fail to get PbAppCommon object\n");
    return nullptr;
  }
  const Private *priv = private_of(thiz);
  if (priv == nullptr) {
    PB_LOG(PB_LOG_ERROR, "fail to get priv\n");
    return nullptr;
  }
  const gint row = thiz->item_index;
  PB_LOG(PB_LOG_INFO, "file_full_path: %s, prop_item_index=%d\n", printable(file_full_path), row);
  if (!PB_IS_ITEM_LIST(priv->item_list)) return nullptr;
  if (row < 0 || row >= priv->n_entire_items) {
    PB_LOG(PB_LOG_WARNING, "ITEM NOT FOUND\n");
    return nullptr;
  }
  PbItem *item = peek_item(priv, row);
  if (item == nullptr) {
    PB_LOG(PB_LOG_WARNING, "ITEM NOT FOUND\n");
    return nullptr;
  }
  PB_LOG(PB_LOG_INFO, "item filename: %s\n", printable(item->filename));
  if (g_strcmp0(file_full_path, item->filename) != 0) {
    PB_LOG(PB_LOG_WARNING, "ITEM NOT FOUND\n");
    return item;
  }
  PB_LOG(PB_LOG_INFO, "ITEM FOUND\n");

  if (update_type == kFavouriteChanged) item->favourite = favourite != 0;
  if (update_type == kWebIdChanged) item->nfid = nfid;
  // The old path is not freed: a row that is being drawn may hold it.
  if (update_type == kPathChanged) item->filename = g_strdup(new_path);
  if (update_type == kMarkRemoved) item->mark = 0;

  if (update_type == kMarkRemoved) store_item(priv, row, item);
  if (update_type >= kFavouriteChanged && update_type <= kPathChanged) renew_icon(priv, row, item);
  return item;
}

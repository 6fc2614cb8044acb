#include <image-headers.h>
#include <media-mirror.h>
#include <pb-item.h>
#include <pb-util-resource.h>

#include <algorithm>

#include "private.hpp"

namespace pb::item_list {

namespace {

constexpr gint kThumbnailSize = 148;  // pixels, both ways
constexpr gint kArchivedMarkId = 55;  // bitmap

/// Loads a downloaded thumbnail. What the header reader refuses is not given to the decoder.
Ref<GdkPixbuf> load_thumbnail(const gchar *path) {
  gint width = 0;
  gint height = 0;
  if (*path == '\0' || !wink_parse_from_file(path, &width, &height)) return nullptr;
  const auto picture = Ref<GdkPixbuf>::adopt(gdk_pixbuf_new_from_file(path, nullptr));
  if (!picture) return nullptr;
  return Ref<GdkPixbuf>::adopt(
      gdk_pixbuf_scale_simple(picture.get(), kThumbnailSize, kThumbnailSize, GDK_INTERP_BILINEAR));
}

/// Gives a copy of a thumbnail with the mark of an archived file in its middle.
Ref<GdkPixbuf> with_mark(const Ref<GdkPixbuf> &thumbnail) {
  const auto mark = Ref<GdkPixbuf>::adopt(pb_get_pixbuf(kArchivedMarkId));
  if (!mark) return thumbnail;
  auto marked = Ref<GdkPixbuf>::adopt(gdk_pixbuf_add_alpha(thumbnail.get(), FALSE, 0, 0, 0));
  const gint left = (kThumbnailSize - gdk_pixbuf_get_width(mark.get())) / 2;
  const gint top = (kThumbnailSize - gdk_pixbuf_get_height(mark.get())) / 2;
  const gint x = std::max(left, 0);
  const gint y = std::max(top, 0);
  gdk_pixbuf_composite(mark.get(), marked.get(), x, y,
                       std::min(gdk_pixbuf_get_width(mark.get()), kThumbnailSize),
                       std::min(gdk_pixbuf_get_height(mark.get()), kThumbnailSize), left, top, 1.0,
                       1.0, GDK_INTERP_BILINEAR, 255);
  return marked;
}

}  // namespace

void fill_web_only_row(const char *entry, PbItemList *list, gint row) {
  PbItemListPrivate &priv = private_of(list);
  if (row < 0 || row >= priv.files.count()) return;
  FmVeskFileRecord record{};
  gint error = 0;
  if (!fm_svc_vesk_get_vesk_file(priv.files.id(row), &record, &error)) {
    LOG_FOR(entry, PB_LOG_ERROR, "fm_svc_vesk_get_vesk_file failed with err = %d\n", error);
    return;
  }
  LOG_FOR(entry, PB_LOG_INFO,
          "\nITEMM NFID = %lld \nITEM ID = %d \nrecord.name= %s \nrecord.thumb_path = %s "
          "\nrecord.bytes_url = %s\n\n",
          static_cast<long long>(record.nfid), record.database_index, text_of(record.name).get(),
          text_of(record.thumbnail_path).get(), text_of(record.bytes_url).get());
  const auto item = make_web_item(record);
  auto pixbuf = load_thumbnail(item->thumb_path);
  if (!pixbuf) {
    pixbuf = priv.default_pixbuf;
  } else if (record.storage_kind == FM_STORAGE_ARCHIVED) {
    pixbuf = with_mark(pixbuf);
  }
  set_row(list, row, item.get(), pixbuf.get());
}

}  // namespace pb::item_list

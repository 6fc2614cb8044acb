#include <pb-item-cache.h>

#include <file-explorer.h>
#include <sys/stat.h>
#include <thumbnail-manager.h>

#include <cerrno>
#include <cstdio>

#include <mb-util-content.h>
#include <pb-debug.h>
#include <check.hpp>

namespace {

/// Both sides of the box that a list thumbnail fits.
constexpr gint kThumbnailSize = 148;
constexpr gint kThumbnailKind = 1;

bool has_text(const gchar *text) { return text != nullptr && *text != '\0'; }

bool is_same_file(const struct stat &status, const gchar *path) {
  struct stat other {};
  return has_text(path) && stat(path, &other) == 0 && other.st_dev == status.st_dev &&
         other.st_ino == status.st_ino;
}

/// Whether a thumbnail file that did not load is worth nothing: its content is broken for good,
/// and it is a file of its own. Lack of memory or a card that stopped answering says nothing
/// about the file, and a thumbnail path can lead to the very picture.
bool may_remove(const gchar *thumb_path, const gchar *picture, int load_error) {
  if (load_error != 0 && load_error != EBADMSG) return false;
  struct stat status {};
  return lstat(thumb_path, &status) == 0 && S_ISREG(status.st_mode) &&
         !is_same_file(status, picture);
}

}  // namespace

GdkPixbuf *pb_item_cache_get_thumbnail(PbItem *item, gboolean only_cached) {
  if (item == nullptr) {
    PB_LOG(PB_LOG_WARNING, "item == NULL\n");
    return nullptr;
  }
  PB_CHECK(PB_IS_ITEM(item), nullptr);

  GdkPixbuf *pixbuf = nullptr;
  if (has_text(item->thumb_path)) {
    errno = 0;
    pixbuf = fm_svc_thumb_create_pixbuf_by_path(item->thumb_path, kThumbnailSize, kThumbnailSize);
    const int load_error = errno;
    if (pixbuf != nullptr) return pixbuf;
    if (mb_util_content_is_exist(item->thumb_path) == 1 &&
        may_remove(item->thumb_path, item->filename, load_error)) {
      PB_LOG(PB_LOG_WARNING, " ***** REMOVED FILE = %s ************\n", item->thumb_path);
      remove(item->thumb_path);
    }
  }

  if (!only_cached && item->filename != nullptr) {
    if (item->id == 0) {
      PB_LOG(PB_LOG_INFO, "No filename, filename = %s\n", item->filename);
      pixbuf = fm_svc_thumb_create_pixbuf_by_path(item->filename, kThumbnailSize, kThumbnailSize);
      if (pixbuf == nullptr) PB_LOG(PB_LOG_INFO, "No thumbnail, filename = %s\n", item->filename);
    } else {
      PB_LOG(PB_LOG_INFO, "filename = %s\n", item->filename);
      if (!fm_svc_thumb_mgr_get_thumbnail(kThumbnailKind, 0, item->filename,
                                          fexplorer_is_mmc_database_index(item->id),
                                          item->media_type, &pixbuf)) {
        PB_LOG(PB_LOG_INFO, "No thumbnail, filename = %s\n", item->filename);
        pixbuf = nullptr;
      }
    }
  }
  PB_CHECK(GDK_IS_PIXBUF(pixbuf), nullptr);
  return pixbuf;
}

#include <thumbnail-manager.h>

#include <algorithm>
#include <cerrno>
#include <check.hpp>
#include <utility>

#include "pictures/picture-file.hpp"
#include "thumbnail/disk.hpp"
#include "thumbnail/listeners.hpp"
#include "thumbnail/making.hpp"
#include "thumbnail/own-files.hpp"

namespace phone::thumbnail {
namespace {

using pictures::OpenFile;
using pictures::Problem;

/// Small results for covers and the like are asked for at every drawing.
constexpr int kLargestKept = 256;

/// What can be had without decoding anyone else's file.
PixbufRef ready_thumbnail(const struct stat &info) {
  const CacheKey key = thumbnail_key(info);
  if (PixbufRef kept = memory_cache().get(key)) return kept;
  const std::string path = stored_path(info);
  if (path.empty()) return {};
  PixbufRef stored = load_stored(path);
  if (!stored) return {};
  memory_cache().put(key, stored);
  return PixbufRef::adopt(gdk_pixbuf_copy(stored.get()));
}

/// Why there is no picture, as the callers of this service are told. Whoever hears EBADMSG may
/// remove the file.
int error_of(Problem problem, const char *path) {
  switch (problem) {
    case Problem::kDamaged:
    case Problem::kUnknown:
      return is_replaceable(path) ? EBADMSG : EPERM;
    case Problem::kMissing:
      return ENOENT;
    case Problem::kNotReadable:
      return EIO;
    case Problem::kNotAFile:
      return EINVAL;
    case Problem::kTooLarge:
      return EFBIG;
    case Problem::kTooSlow:
      return ETIMEDOUT;
    case Problem::kCancelled:
      return ECANCELED;
    default:
      return EAGAIN;
  }
}

/// Decodes into a box in the file's own orientation. Our own thumbnails are decoded here, as
/// long as they need no enlarging; everything else in another process.
PixbufRef decode_into_box(const OpenFile &file, const char *path, int width, int height) {
  pictures::Wish wish;
  wish.width = width;
  wish.height = height;
  wish.flags = pictures::wire::kEnlarge;
  if (is_in_store(path)) {
    const PixbufRef stored = load_stored(path);
    if (!stored) {
      errno = error_of(Problem::kDamaged, path);
      return {};
    }
    const double scale =
        std::min(static_cast<double>(width) / gdk_pixbuf_get_width(stored.get()),
                 static_cast<double>(height) / gdk_pixbuf_get_height(stored.get()));
    const auto side = [scale](int length, int most) {
      return std::clamp(static_cast<int>(length * scale + 0.5), 1, most);
    };
    return PixbufRef::adopt(gdk_pixbuf_scale_simple(
        stored.get(), side(gdk_pixbuf_get_width(stored.get()), width),
        side(gdk_pixbuf_get_height(stored.get()), height), GDK_INTERP_BILINEAR));
  }
  pictures::Result result = pictures::decode_picture(file, wish);
  if (!result.pixbuf) errno = error_of(result.problem, path);
  return std::move(result.pixbuf);
}

}  // namespace

void request(const std::string &path) { Making::shared().add_for_later(path); }

}  // namespace phone::thumbnail

GdkPixbuf *fm_svc_thumb_create_pixbuf_by_path(const gchar *path, gint width, gint height) {
  PB_CHECK(path != NULL, NULL);
  PB_CHECK(width > 0 && height > 0, NULL);
  using namespace phone::thumbnail;
  const OpenFile file = phone::pictures::open_picture(path);
  if (file.problem != Problem::kNone) {
    errno = error_of(file.problem, path);
    return nullptr;
  }
  const CacheKey key{phone::pictures::Identity::of(file.info), width, height};
  const bool kept = std::max(width, height) <= kLargestKept;
  if (kept) {
    if (PixbufRef known = memory_cache().get(key)) return known.release();
  }
  PixbufRef pixbuf = decode_into_box(file, path, width, height);
  if (!pixbuf || !kept) return pixbuf.release();
  memory_cache().put(key, pixbuf);
  return gdk_pixbuf_copy(pixbuf.get());
}

gint fm_svc_thumb_mgr_get_thumbnail(gint, gint, const gchar *path, gboolean, gint,
                                    GdkPixbuf **pixbuf) {
  PB_CHECK(pixbuf != NULL, 0);
  *pixbuf = nullptr;
  PB_CHECK(path != NULL, 0);
  using namespace phone::thumbnail;
  struct stat info;
  if (lstat(path, &info) != 0 || !S_ISREG(info.st_mode)) return 0;
  PixbufRef thumbnail = ready_thumbnail(info);
  if (!thumbnail) {
    if (!phone::pictures::is_known_to_fail(info, kSide, kSide)) {
      Making::shared().add_for_screen(path);
    }
    return 0;
  }
  *pixbuf = thumbnail.release();
  return 1;
}

void thumbnail_manager_shutdown(void) {
  using namespace phone::thumbnail;
  Making::shared().stop();
  withdraw_announcement();
  phone::pictures::Pool::shared().shutdown();
}

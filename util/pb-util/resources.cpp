#include <pthread.h>
#include <resource-manager.h>

#include <cerrno>

#include "pb-debug.h"
#include "pb-util-resource.h"
#include "util/paths.hpp"
#include "util/pb-util/private.hpp"

namespace {

constexpr const char *kBitmapFile =
    "/usr/apps/com.velmora.photobrowser/res/bitmap/pb-res-bitmap-wvga.rbm";
constexpr const char *kStringFile =
    "/usr/apps/com.velmora.photobrowser/res/string/pb-res-string.rsr";

constexpr gint kClosed = -1;
constexpr gint kFirstOwnString = 1000;
constexpr gint kLastOwnString = 1220;

/// One resource file. Its handle is guarded by its mutex, which finds a second locking by the
/// same thread instead of waiting for ever; a look-up then goes on without it.
struct ResourceFile {
  pthread_mutex_t mutex = PTHREAD_ERRORCHECK_MUTEX_INITIALIZER_NP;
  gint handle = kClosed;
};

ResourceFile g_bitmaps;
ResourceFile g_strings;

/// Guards opening and closing against look-ups of other threads. A failure cannot be helped
/// here and does not matter on the main loop, which holds neither mutex across a call.
class QuietLock {
 public:
  explicit QuietLock(ResourceFile &file)
      : file_(file), locked_(pthread_mutex_lock(&file.mutex) == 0) {}
  ~QuietLock() {
    if (locked_) pthread_mutex_unlock(&file_.mutex);
  }
  QuietLock(const QuietLock &) = delete;
  QuietLock &operator=(const QuietLock &) = delete;

 private:
  ResourceFile &file_;
  bool locked_;
};

gint open_bitmaps() { return rsrc_open_rbm(pb::phone_path(kBitmapFile).c_str()); }

gint open_strings() { return rsrc_open_rsr(pb::phone_path(kStringFile).c_str()); }

bool strings_are_open() {
  const QuietLock lock(g_strings);
  return g_strings.handle != kClosed;
}

const gchar *find_string(gint handle, gint id) {
  if (handle == kClosed) return nullptr;
  if (id >= kFirstOwnString && id <= kLastOwnString) {
    return rsrc_get_string(handle, id - kFirstOwnString);
  }
  return rsrc_get_system_string(id);
}

}  // namespace

namespace pb::util {

ResourceScope::ResourceScope() : opened_(!strings_are_open()) {
  if (opened_) pb_res_open();
}

ResourceScope::~ResourceScope() {
  if (opened_) pb_res_close();
}

StringPtr copy_res_string(gint id) {
  const ResourceScope scope;
  const gchar *text = pb_get_res_string(id);
  return StringPtr(text == nullptr ? g_strdup_printf("%d", id) : g_strdup(text));
}

}  // namespace pb::util

void pb_res_open(void) {
  PB_LOG(PB_LOG_INFO, "pb_res_open\n");
  {
    const QuietLock lock(g_bitmaps);
    if (g_bitmaps.handle == kClosed) g_bitmaps.handle = open_bitmaps();
    if (g_bitmaps.handle == kClosed) {
      PB_LOG(PB_LOG_ERROR, "fail to open bitmap resource-mananger\n");
    }
  }
  const QuietLock lock(g_strings);
  if (g_strings.handle == kClosed) g_strings.handle = open_strings();
  if (g_strings.handle == kClosed) {
    PB_LOG(PB_LOG_ERROR, "fail to open string resource-mananger\n");
  }
}

void pb_res_close(void) {
  PB_LOG(PB_LOG_INFO, "pb_res_close\n");
  {
    const QuietLock lock(g_bitmaps);
    if (g_bitmaps.handle != kClosed) {
      pb::util::drop_cached_frame();
      rsrc_close_rbm(g_bitmaps.handle);
      g_bitmaps.handle = kClosed;
    }
  }
  const QuietLock lock(g_strings);
  if (g_strings.handle != kClosed) {
    rsrc_close_rsr(g_strings.handle);
    g_strings.handle = kClosed;
  }
  rsrc_free_strings();
}

const gchar *pb_get_res_string(gint id) {
  const int lock_error = pthread_mutex_lock(&g_strings.mutex);
  if (lock_error == EDEADLK) {
    PB_LOG(PB_LOG_ERROR, "Mutex is already locked by the same thread \n\n");
  } else if (lock_error != 0) {
    PB_LOG(PB_LOG_ERROR, "Error locking mutex %d \n\n", lock_error);
  }

  const gchar *text = find_string(g_strings.handle, id);

  // What this call did not lock is not its to unlock.
  const int unlock_error = lock_error == 0 ? pthread_mutex_unlock(&g_strings.mutex) : 0;
  if (unlock_error != 0) PB_LOG(PB_LOG_ERROR, "Error unlocking mutex %d \n\n", unlock_error);
  return text;
}

GdkPixbuf *pb_get_pixbuf(gint id) {
  if (id == -1) {
    PB_LOG(PB_LOG_ERROR, "bitmap id -> (-1)\n");
    return nullptr;
  }
  const int lock_error = pthread_mutex_lock(&g_bitmaps.mutex);
  if (lock_error == EDEADLK) {
    PB_LOG(PB_LOG_ERROR, "Mutex is already locked by the same thread \n\n");
  } else if (lock_error != 0) {
    PB_LOG(PB_LOG_ERROR, "Error locking mutex %d \n\n", lock_error);
  }

  if (g_bitmaps.handle == kClosed) g_bitmaps.handle = open_bitmaps();
  if (g_bitmaps.handle == kClosed) {
    PB_LOG(PB_LOG_ERROR, "fail to open bitmap resource-mananger\n");
  }
  GdkPixbuf *pixbuf = rsrc_get_image(g_bitmaps.handle, id);

  const int unlock_error = lock_error == 0 ? pthread_mutex_unlock(&g_bitmaps.mutex) : 0;
  if (unlock_error != 0) PB_LOG(PB_LOG_ERROR, "Error unlocking mutex %d \n\n", unlock_error);
  return pixbuf;
}

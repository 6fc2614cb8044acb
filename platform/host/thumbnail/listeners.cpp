#include "thumbnail/listeners.hpp"

#include <gdk/gdk.h>
#include <thumbnail-manager.h>

#include <algorithm>
#include <mutex>
#include <vector>

namespace phone::thumbnail {
namespace {

/// Thumbnails that arrive within this time are drawn together.
constexpr guint kBatchMs = 25;

struct Listener {
  guint id;
  thumbnail_ready_cb callback;
  gpointer user_data;
};

// Touched by the main loop only.
std::vector<Listener> listeners;
guint last_id = 0;

std::mutex mutex;
guint announcement = 0;  // guarded by mutex: the source that will call them, 0 for none

/// A listener may add or remove others while it is called.
void call_listeners() {
  const std::vector<Listener> called = listeners;
  for (const Listener &listener : called) {
    const bool still_there =
        std::any_of(listeners.begin(), listeners.end(),
                    [&](const Listener &other) { return other.id == listener.id; });
    if (still_there) listener.callback(listener.user_data);
  }
}

gboolean tell_listeners(gpointer) {
  {
    const std::scoped_lock lock(mutex);
    announcement = 0;
  }
  call_listeners();
  return G_SOURCE_REMOVE;
}

}  // namespace

void announce_thumbnails() {
  const std::scoped_lock lock(mutex);
  if (announcement == 0) announcement = gdk_threads_add_timeout(kBatchMs, tell_listeners, nullptr);
}

void withdraw_announcement() {
  const std::scoped_lock lock(mutex);
  if (announcement != 0) g_source_remove(announcement);
  announcement = 0;
}

}  // namespace phone::thumbnail

guint thumbnail_manager_add_listener(thumbnail_ready_cb callback, gpointer user_data) {
  using namespace phone::thumbnail;
  if (++last_id == 0) ++last_id;
  listeners.push_back({last_id, callback, user_data});
  return last_id;
}

void thumbnail_manager_remove_listener(guint id) {
  std::erase_if(phone::thumbnail::listeners,
                [id](const phone::thumbnail::Listener &listener) { return listener.id == id; });
}

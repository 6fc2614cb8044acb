#include "video-player.hpp"

#include <gdk/gdk.h>

#include <array>
#include <glib-ptr.hpp>
#include <memory>
#include <utility>

namespace gallery {
namespace {

using Failed = std::function<void()>;

void on_opener_ended(GPid opener, gint status, gpointer data) {
  g_spawn_close_pid(opener);
  if (g_spawn_check_wait_status(status, nullptr)) return;
  gdk_threads_enter();
  (*static_cast<Failed *>(data))();
  gdk_threads_leave();
}

gboolean fail(gpointer data) {
  (*static_cast<Failed *>(data))();
  return G_SOURCE_REMOVE;
}

void forget(gpointer data) { delete static_cast<Failed *>(data); }

}  // namespace

void play_video(const std::string &path, Failed failed) {
  auto data = std::make_unique<Failed>(std::move(failed));
  std::string program = "xdg-open";
  std::string file = path;
  std::array<gchar *, 3> command{program.data(), file.data(), nullptr};
  GPid opener = 0;
  const auto flags =
      static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD |
                               G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL);
  if (g_spawn_async(nullptr, command.data(), nullptr, flags, nullptr, nullptr, &opener, nullptr)) {
    g_child_watch_add_full(G_PRIORITY_DEFAULT, opener, on_opener_ended, data.release(), forget);
  } else {
    gdk_threads_add_idle_full(G_PRIORITY_DEFAULT_IDLE, fail, data.release(), forget);
  }
}

}  // namespace gallery

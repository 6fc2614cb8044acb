// Forbids sleep until its input ends, for a test that looks what is left behind.
#include <gio/gio.h>
#include <glib-unix.h>
#include <unistd.h>

#include "power-management.h"

namespace {

gboolean end(gint /*fd*/, GIOCondition /*condition*/, gpointer loop) {
  g_main_loop_quit(static_cast<GMainLoop *>(loop));
  return G_SOURCE_REMOVE;
}

}  // namespace

int main() {
  GMainLoop *loop = g_main_loop_new(nullptr, FALSE);
  pm_control(4, 0);
  g_unix_fd_add(STDIN_FILENO, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP), end, loop);
  g_main_loop_run(loop);
  g_main_loop_unref(loop);
  return 0;
}

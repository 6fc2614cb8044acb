#include "support/main-loop.hpp"

#include <glib.h>

namespace support {

bool run_until(const std::function<bool()> &holds) {
  constexpr int kSeconds = 20;
  bool late = false;
  const guint guard = g_timeout_add_seconds(
      kSeconds,
      [](gpointer data) -> gboolean {
        *static_cast<bool *>(data) = true;
        return TRUE;
      },
      &late);
  bool held = holds();
  while (!held && !late) {
    g_main_context_iteration(nullptr, TRUE);
    held = holds();
  }
  g_source_remove(guard);
  return held;
}

}  // namespace support

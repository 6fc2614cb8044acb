#include "stall-watch.hpp"

#include <glib.h>

#include <algorithm>
#include <array>
#include <glib-ptr.hpp>

#include "log-writer.hpp"

namespace gallery {
namespace {

/// Everything the user does should be answered within one frame of a slow screen.
constexpr gint64 kNoticeableUs = 16000;

struct Watch {
  GPollFunc poll = nullptr;
  gint64 busy_since = 0;  // 0 before the first wait
  gint64 longest = 0;
  unsigned noticeable = 0;
};

Watch &watch() {
  static Watch instance;
  return instance;
}

gint wait_for_events(GPollFD *fds, guint n_fds, gint timeout_ms) {
  Watch &seen = watch();
  if (seen.busy_since != 0) {
    const gint64 busy = g_get_monotonic_time() - seen.busy_since;
    seen.longest = std::max(seen.longest, busy);
    if (busy > kNoticeableUs) ++seen.noticeable;
  }
  const gint ready = seen.poll(fds, n_fds, timeout_ms);
  seen.busy_since = g_get_monotonic_time();
  return ready;
}

}  // namespace

void watch_for_stalls() {
  GMainContext *context = g_main_context_default();
  watch().poll = g_main_context_get_poll_func(context);
  g_main_context_set_poll_func(context, wait_for_events);
}

double longest_stall_ms() { return static_cast<double>(watch().longest) / 1000; }

void write_report() {
  const gchar *path = g_getenv("PHOTOBROWSER_REPORT");
  if (path == nullptr) return;
  std::array<char, G_ASCII_DTOSTR_BUF_SIZE> longest{};
  g_ascii_formatd(longest.data(), longest.size(), "%.1f", longest_stall_ms());
  const pb::StringPtr text(
      g_strdup_printf("{\"longest_stall_ms\": %s, \"stalls_over_16_ms\": %u, "
                      "\"missing_thumbnails\": %u}\n",
                      longest.data(), watch().noticeable, hidden_warnings()));
  pb::ErrorPtr error;
  if (!g_file_set_contents(path, text.get(), -1, pb::out(error))) {
    g_printerr("photobrowser: %s\n", error->message);
  }
}

}  // namespace gallery

#include "stall-watch.hpp"

#include <glib.h>
#include <time.h>

#include <algorithm>
#include <array>
#include <glib-ptr.hpp>
#include <string>

#include "log-writer.hpp"

namespace gallery {
namespace {

/// Everything the user does should be answered within one frame of a slow screen.
constexpr gint64 kNoticeableUs = 16000;

struct Watch {
  GPollFunc poll = nullptr;
  gint64 busy_since = 0;  // 0 before the first wait
  gint64 cpu_since = 0;
  gint64 longest = 0;
  gint64 longest_cpu = 0;
  unsigned noticeable = 0;
};

/// Processor time of this thread: on a busy machine it tells our work from waiting for a core.
gint64 cpu_time_us() {
  struct timespec now {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return now.tv_sec * G_USEC_PER_SEC + now.tv_nsec / 1000;
}

Watch &watch() {
  static Watch instance;
  return instance;
}

gint wait_for_events(GPollFD *fds, guint n_fds, gint timeout_ms) {
  Watch &seen = watch();
  if (seen.busy_since != 0) {
    const gint64 busy = g_get_monotonic_time() - seen.busy_since;
    seen.longest = std::max(seen.longest, busy);
    seen.longest_cpu = std::max(seen.longest_cpu, cpu_time_us() - seen.cpu_since);
    if (busy > kNoticeableUs) ++seen.noticeable;
  }
  const gint ready = seen.poll(fds, n_fds, timeout_ms);
  seen.busy_since = g_get_monotonic_time();
  seen.cpu_since = cpu_time_us();
  return ready;
}

}  // namespace

void watch_for_stalls() {
  GMainContext *context = g_main_context_default();
  watch().poll = g_main_context_get_poll_func(context);
  g_main_context_set_poll_func(context, wait_for_events);
}

void write_report() {
  const gchar *path = g_getenv("PHOTOBROWSER_REPORT");
  if (path == nullptr) return;
  const auto in_ms = [](gint64 us) {
    std::array<char, G_ASCII_DTOSTR_BUF_SIZE> text{};
    return std::string(
        g_ascii_formatd(text.data(), text.size(), "%.1f", static_cast<double>(us) / 1000));
  };
  const Watch &seen = watch();
  const std::string text = "{\"longest_stall_ms\": " + in_ms(seen.longest) +
                           ", \"longest_stall_cpu_ms\": " + in_ms(seen.longest_cpu) +
                           ", \"stalls_over_16_ms\": " + std::to_string(seen.noticeable) +
                           ", \"missing_thumbnails\": " + std::to_string(hidden_warnings()) + "}\n";
  pb::ErrorPtr error;
  if (!g_file_set_contents(path, text.c_str(), -1, pb::out(error))) {
    g_printerr("photobrowser: %s\n", error->message);
  }
}

}  // namespace gallery

#include "log-writer.hpp"

#include <glib.h>

#include <atomic>
#include <string_view>

namespace gallery {
namespace {

constexpr std::string_view kNoThumbnail =
    "pb_item_cache_get_thumbnail: assertion 'GDK_IS_PIXBUF(pixbuf)' failed";

std::atomic<unsigned> g_hidden = 0;
bool g_everything = false;  // set before there is a second thread

std::string_view message_of(const GLogField *fields, gsize n) {
  for (gsize i = 0; i < n; ++i) {
    if (std::string_view(fields[i].key) != "MESSAGE") continue;
    const auto *message = static_cast<const char *>(fields[i].value);
    return fields[i].length < 0
               ? std::string_view(message)
               : std::string_view(message, static_cast<std::size_t>(fields[i].length));
  }
  return {};
}

GLogWriterOutput write(GLogLevelFlags level, const GLogField *fields, gsize n, gpointer data) {
  if (!g_everything && (level & G_LOG_LEVEL_CRITICAL) != 0 &&
      message_of(fields, n) == kNoThumbnail) {
    ++g_hidden;
    return G_LOG_WRITER_HANDLED;
  }
  return g_log_writer_default(level, fields, n, data);
}

}  // namespace

void install_log_writer() {
  g_everything = g_strcmp0(g_getenv("PHOTOBROWSER_DEBUG"), "1") == 0;
  g_log_set_writer_func(write, nullptr, nullptr);
}

unsigned hidden_warnings() { return g_hidden; }

}  // namespace gallery

#include "log-writer.hpp"

#include <atomic>
#include <string_view>

namespace gallery {
namespace {

constexpr std::string_view kNoThumbnail =
    "pb_item_cache_get_thumbnail: assertion 'GDK_IS_PIXBUF(pixbuf)' failed";

std::atomic<unsigned> g_hidden = 0;

bool everything_wanted() {
  static const bool wanted = g_strcmp0(g_getenv("PHOTOBROWSER_DEBUG"), "1") == 0;
  return wanted;
}

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

}  // namespace

GLogWriterOutput write_log_line(GLogLevelFlags level, const GLogField *fields, gsize n_fields,
                                gpointer data) {
  const bool expected =
      (level & G_LOG_LEVEL_CRITICAL) != 0 && message_of(fields, n_fields) == kNoThumbnail;
  if (!expected || everything_wanted()) return g_log_writer_default(level, fields, n_fields, data);
  ++g_hidden;
  return G_LOG_WRITER_HANDLED;
}

unsigned hidden_warnings() { return g_hidden; }

}  // namespace gallery

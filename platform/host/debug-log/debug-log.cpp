#include "debug-log.h"

#include <array>
#include <cstdarg>
#include <string>

#include "debug-log/levels.hpp"
#include "debug-log/printable.hpp"
#include "debug-log/repeats.hpp"
#include "glib-ptr.hpp"

namespace phone::debug_log {
namespace {

constinit guint32 g_written_levels = kError | kWarning;

[[gnu::constructor]] void read_levels_at_load() { read_levels(); }

/// GLib's default writer drops debug and info lines unless a variable of its own names the
/// domain, so every line goes out as a message; the journal's priority tells them apart.
const char *priority_of(guint32 level) {
  if (level == kError) return "3";
  if (level == kWarning) return "4";
  return "7";
}

GLogField field(const char *key, const std::string &value) {
  return {key, value.data(), static_cast<gssize>(value.size())};
}

void write(int line, const char *file, guint32 module, guint32 level, const std::string &message) {
  std::array<char, 12> module_text{};
  g_snprintf(module_text.data(), module_text.size(), "0x%08x", module);
  const std::string line_text = std::to_string(line);
  const std::array<GLogField, 6> fields{
      field("MESSAGE", message),
      GLogField{"PRIORITY", priority_of(level), -1},
      GLogField{"GLIB_DOMAIN", "photobrowser", -1},
      GLogField{"CODE_FILE", file != nullptr ? file : "", -1},
      field("CODE_LINE", line_text),
      GLogField{"PHOTOBROWSER_MODULE", module_text.data(), -1},
  };
  g_log_structured_array(G_LOG_LEVEL_MESSAGE, fields.data(), fields.size());
}

Repeats &repeats() {
  static Repeats instance;
  return instance;
}

}  // namespace

void read_levels() {
  const bool everything = g_strcmp0(g_getenv("PHOTOBROWSER_DEBUG"), "1") == 0;
  g_written_levels = everything ? G_MAXUINT32 : kError | kWarning;
}

}  // namespace phone::debug_log

int _debug_message(int line, const char *file, guint32 module, guint32 level, const char *format,
                   ...) {
  using namespace phone::debug_log;
  if ((level & g_written_levels) == 0) return 0;

  va_list args;
  va_start(args, format);
  const pb::StringPtr text(g_strdup_vprintf(format, args));
  va_end(args);
  const std::string_view raw(text.get());
  const std::string message = printable(raw);

  const Repeats::Verdict verdict = repeats().admit(line, message, g_get_monotonic_time());
  if (verdict.left_out > 0) {
    write(line, file, module, level,
          std::to_string(verdict.left_out) + " more times: " + verdict.left_out_text);
  }
  if (verdict.write) write(line, file, module, level, message);
  return static_cast<int>(raw.size());
}

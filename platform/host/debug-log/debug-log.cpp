#include "debug-log.h"

#include <array>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr guint32 kError = 0x1000000;
constexpr guint32 kWarning = 0x2000000;

bool traces_wanted() {
  static const bool wanted = g_strcmp0(g_getenv("PHOTOBROWSER_DEBUG"), "1") == 0;
  return wanted;
}

/// One line a call, whatever bytes a file name brings in: control characters are escaped.
std::string printable(const char *text) {
  std::string line;
  for (const char *p = text; *p != '\0'; ++p) {
    const auto byte = static_cast<unsigned char>(*p);
    if (byte >= 0x20 && byte != 0x7f) {
      line += *p;
      continue;
    }
    if (byte == '\n' && p[1] == '\0') break;
    std::array<char, 5> escape{};
    g_snprintf(escape.data(), escape.size(), "\\x%02x", byte);
    line += escape.data();
  }
  return line;
}

}  // namespace

int _debug_message(int line, const char *file, guint32 module, guint32 level, const char *format,
                   ...) {
  const bool serious = level == kError || level == kWarning;
  if (!serious && !traces_wanted()) return 0;

  va_list args;
  va_start(args, format);
  gchar *text = g_strdup_vprintf(format, args);
  va_end(args);
  const std::string message = printable(text);
  const int length = static_cast<int>(strlen(text));
  g_free(text);

  const std::string line_text = std::to_string(line);
  std::array<char, 12> module_text{};
  g_snprintf(module_text.data(), module_text.size(), "0x%08x", module);
  const GLogLevelFlags flags = level == kError     ? G_LOG_LEVEL_MESSAGE
                               : level == kWarning ? G_LOG_LEVEL_MESSAGE
                                                   : G_LOG_LEVEL_DEBUG;
  g_log_structured("photobrowser", flags, "CODE_FILE", file, "CODE_LINE", line_text.c_str(),
                   "PHOTOBROWSER_MODULE", module_text.data(), "MESSAGE", "%s", message.c_str());
  return length;
}

#include <debug-log.h>

#include <cstdarg>

#include "fakes/journal.hpp"
#include "glib-ptr.hpp"

int _debug_message(int line, const char *file, guint32 module, guint32 level, const char *format,
                   ...) {
  va_list arguments;
  va_start(arguments, format);
  const pb::StringPtr text(g_strdup_vprintf(format, arguments));
  va_end(arguments);

  const fake::LogLine log_line{level, module, file, line, text.get()};
  fake::add_log_line(log_line);
  return fake::platform()._debug_message(log_line);
}

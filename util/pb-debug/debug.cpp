#include "pb-debug.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdarg>

namespace {

constexpr std::size_t kMessageSize = 1024;
constexpr std::size_t kLineSize = 2048;

bool is_forwarded(guint32 level) {
  return level == PB_LOG_ERROR || level == PB_LOG_WARNING || level == PB_LOG_INFO;
}

}  // namespace

int pb_debug_message(guint32 level, const char *file, const char *function, int line,
                     const char *format, ...) {
  std::array<char, kMessageSize> message{};
  va_list args;
  va_start(args, format);
  g_vsnprintf(message.data(), message.size(), format, args);
  va_end(args);

  std::array<char, kLineSize> text{};
  const int length = g_snprintf(text.data(), text.size(), "[%s:%s]  %d %s\n", file, function, line,
                                message.data());
  if (!is_forwarded(level)) return length;
  return _debug_message(__LINE__, __FILE__, PB_LOG_MODULE, level, "%s", text.data());
}

int pb_util_system(const char *command) {
  if (command == nullptr) return 1;

  // Built before the fork: nothing but execve runs in the child.
  std::array<char, 3> shell{'s', 'h', '\0'};
  std::array<char, 3> option{'-', 'c', '\0'};
  std::array<char *, 4> arguments{shell.data(), option.data(), const_cast<char *>(command),
                                  nullptr};
  const pid_t child = fork();
  if (child == -1) return -1;
  if (child == 0) {
    execve("/bin/sh", arguments.data(), nullptr);
    _exit(127);
  }

  int status = 0;
  while (waitpid(child, &status, 0) == -1) {
    if (errno != EINTR) return -1;
  }
  return status;
}

#include "pictures/decoder/check.hpp"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "pictures/decoder/decode.hpp"
#include "pictures/decoder/sandbox.hpp"

namespace phone::pictures {
namespace {

/// One thing that must not work. `attempt` returns what the call returned.
struct Attempt {
  const char *name;
  long (*attempt)();
};

const Attempt kAttempts[] = {
    {"read a file by name", [] { return static_cast<long>(open("/proc/self/status", O_RDONLY)); }},
    {"write a file by name",
     [] { return static_cast<long>(open("/dev/null", O_WRONLY | O_CLOEXEC)); }},
    {"create a file", [] { return static_cast<long>(creat("photobrowser-check", 0600)); }},
    {"remove a file", [] { return static_cast<long>(unlink("photobrowser-check")); }},
    {"rename a file", [] { return static_cast<long>(rename("photobrowser-check", "x")); }},
    {"make a directory", [] { return static_cast<long>(mkdir("photobrowser-check", 0700)); }},
    {"make a socket", [] { return static_cast<long>(socket(AF_INET, SOCK_STREAM, 0)); }},
    {"make a local socket", [] { return static_cast<long>(socket(AF_UNIX, SOCK_STREAM, 0)); }},
    {"start a program",
     [] {
       char name[] = "/bin/true";
       char *arguments[] = {name, nullptr};
       char *environment[] = {nullptr};
       return static_cast<long>(execve(name, arguments, environment));
     }},
    {"fork",
     [] {
       const pid_t child = fork();
       if (child == 0) _exit(0);
       if (child > 0) waitpid(child, nullptr, 0);
       return static_cast<long>(child);
     }},
    {"signal the owner", [] { return static_cast<long>(kill(getppid(), 0)); }},
    {"trace the owner", [] { return ptrace(PTRACE_ATTACH, getppid(), nullptr, nullptr); }},
    {"take limits off the owner",
     [] { return static_cast<long>(prlimit(getppid(), RLIMIT_CORE, nullptr, nullptr)); }},
};

}  // namespace

int check_sandbox() {
  load_decoders();
  if (!limit_resources() || !enter_sandbox()) {
    std::printf("sandbox: not available\n");
    return EXIT_FAILURE;
  }
  int allowed = 0;
  for (const Attempt &attempt : kAttempts) {
    const bool refused = attempt.attempt() == -1 && errno == EPERM;
    std::printf("%s: %s\n", attempt.name, refused ? "refused" : "ALLOWED");
    if (!refused) ++allowed;
  }
  std::fflush(stdout);
  return allowed == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace phone::pictures

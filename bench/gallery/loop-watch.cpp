/// Preloaded into the gallery: measures how long the main thread stays away from poll(), that
/// is, how long one turn of the main loop takes. At exit, and whenever SIGUSR2 arrives, writes
/// to the file named by LOOP_WATCH: turns, the longest, and how many were over 4, 8 and 16 ms;
/// SIGUSR2 also starts the count again.
#include <dlfcn.h>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

struct Turns {
  std::atomic<long> count{0};
  std::atomic<long> longest_us{0};
  std::atomic<long> over_4{0};
  std::atomic<long> over_8{0};
  std::atomic<long> over_16{0};
};

Turns turns;
std::atomic<long> last_return_us{0};

long now_us() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * 1000000L + now.tv_nsec / 1000;
}

void report() {
  const char *path = getenv("LOOP_WATCH");
  FILE *file = path == nullptr ? nullptr : fopen(path, "w");
  if (file == nullptr) return;
  fprintf(file, "turns %ld longest_ms %.2f over_4ms %ld over_8ms %ld over_16ms %ld\n",
          turns.count.load(), static_cast<double>(turns.longest_us.load()) / 1000,
          turns.over_4.load(), turns.over_8.load(), turns.over_16.load());
  fclose(file);
}

std::atomic<bool> report_wanted{false};

void note_turn(long us) {
  ++turns.count;
  turns.longest_us = std::max(turns.longest_us.load(), us);
  if (us > 4000) ++turns.over_4;
  if (us > 8000) ++turns.over_8;
  if (us > 16000) ++turns.over_16;
}

__attribute__((constructor)) void start() {
  signal(SIGUSR2, [](int) { report_wanted = true; });
  atexit(report);
}

}  // namespace

extern "C" int poll(pollfd *descriptors, nfds_t count, int timeout) {
  using Poll = int (*)(pollfd *, nfds_t, int);
  static const auto real = reinterpret_cast<Poll>(dlsym(RTLD_NEXT, "poll"));
  const bool main_thread = syscall(SYS_gettid) == getpid();
  if (!main_thread) return real(descriptors, count, timeout);

  if (last_return_us != 0) note_turn(now_us() - last_return_us);
  if (report_wanted.exchange(false)) {
    report();
    turns.count = 0;
    turns.longest_us = 0;
    turns.over_4 = 0;
    turns.over_8 = 0;
    turns.over_16 = 0;
  }
  const int result = real(descriptors, count, timeout);
  last_return_us = now_us();
  return result;
}

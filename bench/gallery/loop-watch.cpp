/// Preloaded into the gallery: measures how long the main thread stays away from poll(), that
/// is, how long one turn of the main loop takes. At exit, and whenever SIGUSR2 arrives, writes
/// to the file named by LOOP_WATCH: turns, the longest, and how many were over 4, 8 and 16 ms;
/// SIGUSR2 also starts the count again. A turn that reaches LOOP_WATCH_MS has what the main
/// thread does at that moment appended to the file of that name with ".stacks" behind it.
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

namespace {

struct Turns {
  std::atomic<long> count{0};
  std::atomic<long> longest_us{0};
  std::atomic<long> longest_cpu_us{0};
  std::atomic<long> over_4{0};
  std::atomic<long> over_8{0};
  std::atomic<long> over_16{0};
};

Turns turns;
std::atomic<long> last_return_us{0};
long last_return_cpu_us = 0;

long time_us(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return now.tv_sec * 1000000L + now.tv_nsec / 1000;
}

/// Looks into a turn that lasts.
class StackTimer {
 public:
  StackTimer() {
    const char *limit = getenv("LOOP_WATCH_MS");
    const char *path = getenv("LOOP_WATCH");
    if (limit == nullptr || path == nullptr) return;
    limit_us_ = atol(limit) * 1000;
    file = open((std::string(path) + ".stacks").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC,
                0600);
    void *unused[1];
    backtrace(unused, 1);  // loads what it needs now, not in the handler
    signal(SIGPROF, write_stack);
    sigevent event{};
    event.sigev_notify = SIGEV_THREAD_ID;
    event.sigev_signo = SIGPROF;
    event._sigev_un._tid = static_cast<pid_t>(syscall(SYS_gettid));
    running_ = timer_create(CLOCK_MONOTONIC, &event, &timer_) == 0;
  }
  void start() { set(limit_us_); }
  void stop() { set(0); }

 private:
  void set(long us) {
    if (!running_) return;
    itimerspec due{};
    due.it_value.tv_nsec = us * 1000;
    timer_settime(timer_, 0, &due, nullptr);
  }
  static void write_stack(int) {
    void *frames[64];
    const int depth = backtrace(frames, 64);
    if (write(file, "--\n", 3) == 3) backtrace_symbols_fd(frames, depth, file);
  }

  static int file;
  long limit_us_ = 0;
  bool running_ = false;
  timer_t timer_{};
};

int StackTimer::file = -1;

void report() {
  const char *path = getenv("LOOP_WATCH");
  FILE *file = path == nullptr ? nullptr : fopen(path, "w");
  if (file == nullptr) return;
  fprintf(
      file,
      "turns %ld longest_ms %.2f (of a processor %.2f) over_4ms %ld over_8ms %ld over_16ms %ld\n",
      turns.count.load(), static_cast<double>(turns.longest_us.load()) / 1000,
      static_cast<double>(turns.longest_cpu_us.load()) / 1000, turns.over_4.load(),
      turns.over_8.load(), turns.over_16.load());
  fclose(file);
}

std::atomic<bool> report_wanted{false};

void note_turn(long us, long cpu_us) {
  ++turns.count;
  turns.longest_us = std::max(turns.longest_us.load(), us);
  turns.longest_cpu_us = std::max(turns.longest_cpu_us.load(), cpu_us);
  if (us > 4000) ++turns.over_4;
  if (us > 8000) ++turns.over_8;
  if (us > 16000) ++turns.over_16;
}

__attribute__((constructor)) void start() {
  signal(SIGUSR2, [](int) { report_wanted = true; });
  atexit(report);
}

}  // namespace

extern "C" [[gnu::visibility("default")]] int poll(pollfd *descriptors, nfds_t count, int timeout) {
  using Poll = int (*)(pollfd *, nfds_t, int);
  static const auto real = reinterpret_cast<Poll>(dlsym(RTLD_NEXT, "poll"));
  const bool main_thread = syscall(SYS_gettid) == getpid();
  if (!main_thread) return real(descriptors, count, timeout);

  static StackTimer stack_timer;
  stack_timer.stop();
  if (last_return_us != 0) {
    note_turn(time_us(CLOCK_MONOTONIC) - last_return_us,
              time_us(CLOCK_THREAD_CPUTIME_ID) - last_return_cpu_us);
  }
  if (report_wanted.exchange(false)) {
    report();
    turns.count = 0;
    turns.longest_us = 0;
    turns.longest_cpu_us = 0;
    turns.over_4 = 0;
    turns.over_8 = 0;
    turns.over_16 = 0;
  }
  const int result = real(descriptors, count, timeout);
  last_return_us = time_us(CLOCK_MONOTONIC);
  last_return_cpu_us = time_us(CLOCK_THREAD_CPUTIME_ID);
  stack_timer.start();
  return result;
}

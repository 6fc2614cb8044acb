/// What the measuring programs of the index share.
#pragma once

#include <glib.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

namespace bench {

/// Time that this thread has worked: on a busy machine it says what a quiet one would take.
inline double thread_ms() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// The same of all threads together.
inline double process_ms() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

inline double now_ms() { return static_cast<double>(g_get_monotonic_time()) / 1000; }

/// A line of /proc/self/status in kilobytes: "VmRSS", "VmHWM".
inline long memory_kb(const std::string &name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name + ":")) return std::stol(line.substr(name.size() + 1));
  }
  return 0;
}

/// Times of one thing that is done many times.
class Times {
 public:
  template <typename Function>
  void measure(Function function) {
    const double wall = now_ms();
    const double work = thread_ms();
    function();
    work_.push_back(thread_ms() - work);
    wall_.push_back(now_ms() - wall);
  }
  void print(const char *name) {
    std::sort(wall_.begin(), wall_.end());
    std::sort(work_.begin(), work_.end());
    std::printf("%-24s work: median %7.4f  99 %% %7.4f  worst %7.4f ms   wall: median %7.4f ms\n",
                name, work_[work_.size() / 2], work_[work_.size() * 99 / 100], work_.back(),
                wall_[wall_.size() / 2]);
  }

 private:
  std::vector<double> wall_;
  std::vector<double> work_;
};

}  // namespace bench

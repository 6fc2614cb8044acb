/// What the measuring programs of the index share.
#pragma once

#include <glib.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace bench {

inline double now_ms() { return static_cast<double>(g_get_monotonic_time()) / 1000; }

/// A line of /proc/self/status in kilobytes: "VmRSS", "VmHWM".
inline long memory_kb(const std::string &name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name + ":")) return std::stol(line.substr(name.size() + 1));
  }
  return 0;
}

/// Times of one thing that was done many times, in milliseconds.
class Times {
 public:
  void add(double ms) { times_.push_back(ms); }
  void print(const char *name) {
    std::sort(times_.begin(), times_.end());
    std::printf("%-42s median %8.4f ms  99 %% %8.4f ms  worst %8.4f ms  (%zu runs)\n", name,
                times_[times_.size() / 2], times_[times_.size() * 99 / 100], times_.back(),
                times_.size());
  }

 private:
  std::vector<double> times_;
};

}  // namespace bench

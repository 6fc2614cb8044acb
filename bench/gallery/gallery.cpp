/// Measures the real gallery from outside:
///   bench-gallery start START BUILD PICTURES [RUNS]  exec to the finished first screen, memory
///   bench-gallery scroll START BUILD PICTURES WATCH  turns of the main loop while scrolling
/// WATCH is loop-watch.so. Needs an X display of 480x800 and a private home (tools/with-display).
#include <gtk/gtk.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "screen.hpp"

namespace {

constexpr int kTimeoutMs = 60000;

GPid start(char **words) {
  GPid pid = 0;
  pb::ErrorPtr error;
  if (!g_spawn_async(
          nullptr, words, nullptr,
          static_cast<GSpawnFlags>(G_SPAWN_DO_NOT_REAP_CHILD | G_SPAWN_STDERR_TO_DEV_NULL), nullptr,
          nullptr, &pid, pb::out(error))) {
    std::fprintf(stderr, "%s\n", error->message);
    std::exit(1);
  }
  return pid;
}

void stop(const tour::Screen &screen, GPid pid) {
  screen.press("ctrl+q");
  for (int waited = 0; waited < 5000; waited += 20) {
    tour::pause(20);
    if (waitpid(pid, nullptr, WNOHANG) == pid) return;
  }
  kill(pid, SIGKILL);
  waitpid(pid, nullptr, 0);
}

long memory_kb(GPid pid, const char *field) {
  std::ifstream status("/proc/" + std::to_string(pid) + "/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind(field, 0) == 0) return std::atol(line.c_str() + std::strlen(field) + 1);
  }
  return -1;
}

/// Whether two pictures of the screen are alike, the line that tells of a scan left out.
bool same(const pb::Ref<GdkPixbuf> &a, const pb::Ref<GdkPixbuf> &b) {
  constexpr int kScanLine = 64;
  const int rows = gdk_pixbuf_get_height(a.get()) - kScanLine;
  const auto bytes = static_cast<size_t>(rows) * gdk_pixbuf_get_rowstride(a.get());
  return std::memcmp(gdk_pixbuf_read_pixels(a.get()), gdk_pixbuf_read_pixels(b.get()), bytes) == 0;
}

int measure_start(char **words, int runs) {
  tour::Screen screen;
  const auto first_look = [&] {
    screen.wait_for_window(kTimeoutMs);
    screen.settle(1500, kTimeoutMs);
    return screen.photograph();
  };
  // The first run fills index and thumbnails, the second shows what a warm start ends with.
  for (int i = 0; i < 2; ++i) {
    const GPid warm_up = start(words);
    first_look();
    stop(screen, warm_up);
  }
  const GPid model = start(words);
  const pb::Ref<GdkPixbuf> finished = first_look();
  stop(screen, model);

  std::vector<double> times;
  long peak = 0;
  for (int i = 0; i < runs; ++i) {
    const gint64 begun = g_get_monotonic_time();
    const GPid pid = start(words);
    double taken = -1;
    while (g_get_monotonic_time() - begun < kTimeoutMs * G_GINT64_CONSTANT(1000)) {
      if (same(screen.photograph(), finished)) {
        taken = static_cast<double>(g_get_monotonic_time() - begun) / 1000;
        break;
      }
      tour::pause(2);
    }
    peak = std::max(peak, memory_kb(pid, "VmHWM:"));
    screen.wait_for_window(1000);
    stop(screen, pid);
    times.push_back(taken);
  }
  std::sort(times.begin(), times.end());
  std::printf("first screen ms: median %.0f, best %.0f, worst %.0f; peak memory %ld kB\n",
              times[times.size() / 2], times.front(), times.back(), peak);
  return times.front() < 0 ? 1 : 0;
}

std::string watched(GPid pid, const std::string &path) {
  std::remove(path.c_str());
  kill(pid, SIGUSR2);
  std::string line;
  for (int i = 0; i < 100 && line.empty(); ++i) {
    tour::pause(20);
    std::ifstream file(path);
    std::getline(file, line);
  }
  return line;
}

int measure_scroll(char **words, const char *watch) {
  tour::Screen screen;
  const std::string report = std::string(g_get_home_dir()) + "/loop-watch.txt";
  g_setenv("LOOP_WATCH", report.c_str(), TRUE);
  g_setenv("LD_PRELOAD", watch, TRUE);
  const GPid pid = start(words);
  g_unsetenv("LD_PRELOAD");
  screen.wait_for_window(kTimeoutMs);
  screen.settle(1500, kTimeoutMs);
  std::printf("start:            %s\n", watched(pid, report).c_str());
  for (int i = 0; i < 40; ++i) screen.drag(240, 700, 240, 200);
  std::printf("dragging, cold:   %s\n", watched(pid, report).c_str());
  screen.settle(1500, kTimeoutMs);
  watched(pid, report);
  for (int i = 0; i < 10; ++i) screen.drag(240, 200, 240, 700);
  std::printf("dragging, warm:   %s\n", watched(pid, report).c_str());
  for (int i = 0; i < 60; ++i) {
    screen.press("Page_Down");
    tour::pause(50);
  }
  std::printf("page down, cold:  %s\n", watched(pid, report).c_str());
  for (int i = 0; i < 20; ++i) {
    screen.press(i % 2 == 0 ? "End" : "Home");
    tour::pause(200);
  }
  std::printf("ends, cold:       %s\n", watched(pid, report).c_str());
  stop(screen, pid);
  return 0;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc < 5 || !gtk_init_check(nullptr, nullptr)) {
    std::fprintf(stderr,
                 "Usage: bench-gallery start START BUILD PICTURES [RUNS]\n"
                 "       bench-gallery scroll START BUILD PICTURES WATCH\n");
    return 2;
  }
  std::vector<char *> words = {argv[2], argv[3], argv[4], nullptr};
  if (std::strcmp(argv[1], "start") == 0) {
    return measure_start(words.data(), argc > 5 ? std::atoi(argv[5]) : 10);
  }
  if (argc < 6) return 2;
  return measure_scroll(words.data(), argv[5]);
}

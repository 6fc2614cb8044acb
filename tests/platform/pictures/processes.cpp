#include "processes.hpp"

#include <dirent.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "glib-ptr.hpp"

namespace test {
namespace {

/// Calls with each name in a directory.
template <typename Visit>
void each_name(const char *path, Visit visit) {
  DIR *folder = opendir(path);
  if (folder == nullptr) return;
  while (const dirent *entry = readdir(folder)) visit(entry->d_name);
  closedir(folder);
}

bool is_living_child(const char *process) {
  const std::string file = std::string("/proc/") + process + "/stat";
  pb::StringPtr text;
  if (!g_file_get_contents(file.c_str(), pb::out(text), nullptr, nullptr)) return false;
  const char *after_name = std::strrchr(text.get(), ')');
  char state = 0;
  int parent = 0;
  return after_name != nullptr && std::sscanf(after_name, ") %c %d", &state, &parent) == 2 &&
         parent == getpid() && state != 'Z';
}

}  // namespace

std::vector<pid_t> children() {
  std::vector<pid_t> found;
  each_name("/proc", [&found](const char *name) {
    if (g_ascii_isdigit(name[0]) && is_living_child(name)) found.push_back(std::atoi(name));
  });
  return found;
}

int open_descriptors() {
  int count = 0;
  each_name("/proc/self/fd", [&count](const char *) { ++count; });
  return count;
}

bool eventually(const std::function<bool()> &holds) {
  const gint64 deadline = g_get_monotonic_time() + 10 * G_TIME_SPAN_SECOND;
  while (!holds() && g_get_monotonic_time() < deadline) g_usleep(G_TIME_SPAN_MILLISECOND);
  return holds();
}

}  // namespace test

#include "thumbnail/eviction.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <vector>

#include "pictures/descriptor.hpp"
#include "thumbnail/disk.hpp"

namespace phone::thumbnail {
namespace {

constexpr gint64 kUsualLimit = gint64{1} << 30;
/// A temporary file of this age belongs to nobody, whoever has that process number by now.
constexpr time_t kStale = 10 * 60;
/// Files take whole blocks.
constexpr gint64 kBlock = 4096;

std::mutex mutex;  // NOLINT: guards the three below
gint64 limit = kUsualLimit;
gint64 held = 0;
bool counted = false;

struct CloseFolder {
  void operator()(DIR *folder) const { closedir(folder); }
};
using FolderPtr = std::unique_ptr<DIR, CloseFolder>;

FolderPtr open_folder(const std::string &path) {
  const int fd = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (fd < 0) return nullptr;
  DIR *folder = fdopendir(fd);
  if (folder == nullptr) close(fd);
  return FolderPtr(folder);
}

gint64 disk_size(gint64 bytes) { return (bytes + kBlock - 1) / kBlock * kBlock; }

struct StoredFile {
  std::string path;
  gint64 size = 0;
  timespec used{};
};

/// Whether a temporary file's writer is gone. Names end in the number of the process.
bool is_forsaken(const char *name, const struct stat &info) {
  if (time(nullptr) - info.st_mtim.tv_sec > kStale) return true;
  const char *dot = std::strrchr(name, '.');
  const long process = dot == nullptr ? 0 : std::strtol(dot + 1, nullptr, 10);
  return process > 0 && kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH;
}

void list_folder(const std::string &path, std::vector<StoredFile> &files) {
  const FolderPtr folder = open_folder(path);
  if (!folder) return;
  while (const dirent *entry = readdir(folder.get())) {
    struct stat info;
    const int fd = dirfd(folder.get());
    if (fstatat(fd, entry->d_name, &info, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(info.st_mode)) {
      continue;
    }
    if (entry->d_name[0] == '.') {
      if (is_forsaken(entry->d_name, info)) unlinkat(fd, entry->d_name, 0);
      continue;
    }
    files.push_back({path + "/" + entry->d_name, disk_size(info.st_size), info.st_mtim});
  }
}

std::vector<StoredFile> list_store() {
  std::vector<StoredFile> files;
  const std::string top = store_folder();
  for (unsigned i = 0; i < 256; ++i) {
    char name[4];
    g_snprintf(name, sizeof name, "/%02x", i);
    list_folder(top + name, files);
  }
  return files;
}

gint64 sum_of(const std::vector<StoredFile> &files) {
  gint64 sum = 0;
  for (const StoredFile &file : files) sum += file.size;
  return sum;
}

/// Removes down to nine tenths of the limit, so that the next few files need no listing.
gint64 remove_oldest(std::vector<StoredFile> files, gint64 sum, gint64 most) {
  std::sort(files.begin(), files.end(), [](const StoredFile &a, const StoredFile &b) {
    return std::pair(a.used.tv_sec, a.used.tv_nsec) < std::pair(b.used.tv_sec, b.used.tv_nsec);
  });
  for (const StoredFile &file : files) {
    if (sum <= most / 10 * 9) break;
    if (unlink(file.path.c_str()) == 0) sum -= file.size;
  }
  return sum;
}

}  // namespace

std::string temporary_name(const std::string &name) {
  static std::atomic<unsigned> number = 0;
  return "." + name + "." + std::to_string(++number) + "." + std::to_string(getpid());
}

void count_written(gint64 bytes) {
  const std::scoped_lock lock(mutex);
  held += disk_size(bytes);
}

void set_limit(gint64 bytes) {
  const std::scoped_lock lock(mutex);
  limit = bytes;
}

void keep_within_limit() {
  const std::scoped_lock lock(mutex);
  if (counted && held <= limit) return;
  std::vector<StoredFile> files = list_store();
  held = sum_of(files);
  counted = true;
  if (held > limit) held = remove_oldest(std::move(files), held, limit);
}

}  // namespace phone::thumbnail

#include "thumbnail/disk.hpp"

#include <fcntl.h>
#include <glib/gstdio.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cinttypes>
#include <ctime>
#include <string_view>
#include <utility>
#include <vector>

#include "pictures/descriptor.hpp"
#include "pictures/header-reader.hpp"
#include "pictures/identity.hpp"
#include "thumbnail/eviction.hpp"
#include "thumbnail/jpeg-file.hpp"
#include "thumbnail/own-files.hpp"

namespace phone::thumbnail {
namespace {

using pictures::Descriptor;
using pictures::Identity;
using pictures::Problem;

constexpr size_t kLongestPath = 255;
constexpr size_t kLargestFile = 1024 * 1024;
/// A thumbnail in use is marked so once in this time.
constexpr time_t kDay = 24 * 60 * 60;

std::string name_of(const Identity &identity) {
  char name[128];
  g_snprintf(name, sizeof name,
             "%02x/%" PRIx64 "-%" PRIx64 "-%" PRIx64 "-%" PRIx64 ".%09" PRId64 ".jpg",
             static_cast<unsigned>(pictures::IdentityHash()(identity) & 0xff), identity.device,
             identity.inode, identity.size, static_cast<std::uint64_t>(identity.seconds),
             identity.nanoseconds);
  return name;
}

/// Eviction goes by the file's time, so reading renews it, but not at every reading.
void mark_as_used(int fd, const struct stat &info) {
  if (time(nullptr) - info.st_mtim.tv_sec < kDay) return;
  // On a cache that cannot be written nothing is evicted either.
  if (futimens(fd, nullptr) != 0) errno = 0;
}

/// A file of another kind beside the thumbnail.
std::string beside_thumbnail(const struct stat &info, const char *extension) {
  constexpr std::string_view kOwn = ".jpg";
  std::string path = stored_path(info);
  if (!path.empty()) path.replace(path.size() - kOwn.size(), kOwn.size(), extension);
  return path.size() > kLongestPath ? std::string() : path;
}

std::string failure_path(const struct stat &info) { return beside_thumbnail(info, ".bad"); }

/// Problems as they stand in the file, one letter each.
constexpr std::pair<char, Problem> kLetters[] = {{'d', Problem::kDamaged},
                                                 {'l', Problem::kTooLarge},
                                                 {'s', Problem::kTooSlow},
                                                 {'u', Problem::kUnknown}};

bool write_all(int fd, const std::vector<std::byte> &bytes) {
  for (size_t done = 0; done < bytes.size();) {
    const ssize_t written = write(fd, bytes.data() + done, bytes.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    done += static_cast<size_t>(written);
  }
  return true;
}

/// Writes beside the final place and renames. On failure nothing is left there, and errno tells.
bool write_file(const std::string &path, const std::vector<std::byte> &bytes) {
  const size_t slash = path.rfind('/');
  const std::string folder = path.substr(0, slash);
  const std::string temporary = folder + "/" + temporary_name(path.substr(slash + 1));
  constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  Descriptor file(open(temporary.c_str(), kFlags, 0600));
  if (!file && errno == ENOENT && g_mkdir_with_parents(folder.c_str(), 0700) == 0) {
    file = Descriptor(open(temporary.c_str(), kFlags, 0600));
  }
  if (!file) return false;
  if (write_all(file.get(), bytes) && rename(temporary.c_str(), path.c_str()) == 0) return true;
  const int error = errno;
  unlink(temporary.c_str());
  errno = error;
  return false;
}

void report_once(const std::string &path, int error) {
  static std::atomic<bool> reported = false;
  if (reported.exchange(true)) return;
  g_message("Thumbnails are not kept: %s cannot be written: %s", path.c_str(), g_strerror(error));
}

}  // namespace

std::string store_folder() {
  return std::string(g_get_user_cache_dir()) + "/photobrowser/thumbnails";
}

bool is_in_store(const std::string &path) {
  const std::string folder = store_folder() + "/";
  return path.starts_with(folder) && path.find("/../") == std::string::npos;
}

std::string stored_path(const struct stat &info) {
  std::string path = store_folder() + "/" + name_of(Identity::of(info));
  return path.size() > kLongestPath ? std::string() : path;
}

std::string stored_frame_path(const struct stat &info) {
  return beside_thumbnail(info, ".frame.jpg");
}

bool is_stored(const struct stat &info) {
  const std::string path = stored_path(info);
  struct stat stored;
  return !path.empty() && lstat(path.c_str(), &stored) == 0 && S_ISREG(stored.st_mode) &&
         stored.st_size > 0;
}

void forget(const struct stat &info) {
  for (const std::string &path : {stored_path(info), stored_frame_path(info), failure_path(info)}) {
    if (!path.empty() && is_replaceable(path)) unlink(path.c_str());
  }
}

PixbufRef load_stored(const std::string &path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
  struct stat info;
  if (!file || fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode)) return {};
  const size_t size = std::min(static_cast<size_t>(info.st_size), kLargestFile);
  std::vector<std::byte> bytes(size);
  const ssize_t got = read(file.get(), bytes.data(), bytes.size());
  if (got < 0) return {};
  PixbufRef picture = decode_own_jpeg({bytes.data(), static_cast<size_t>(got)}, kFrameSide);
  if (picture) {
    mark_as_used(file.get(), info);
  } else if (is_replaceable(path)) {
    // Cut off by a power failure, or not ours: in either case it is made anew.
    unlink(path.c_str());
  }
  return picture;
}

void save_failure(const struct stat &info, Problem problem) {
  const std::string path = failure_path(info);
  for (const auto &[letter, meaning] : kLetters) {
    if (meaning != problem || path.empty()) continue;
    if (write_file(path, {std::byte(letter)})) count_written(1);
  }
}

std::optional<Problem> load_failure(const struct stat &info) {
  const std::string path = failure_path(info);
  const Descriptor file(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
  struct stat noted;
  char letter = 0;
  if (!file || fstat(file.get(), &noted) != 0 || read(file.get(), &letter, 1) != 1) {
    return std::nullopt;
  }
  const bool fresh = time(nullptr) - noted.st_mtim.tv_sec < kDay;
  for (const auto &[known, problem] : kLetters) {
    const bool of_the_file = problem == Problem::kDamaged || problem == Problem::kUnknown;
    if (known == letter && (fresh || of_the_file)) return problem;
  }
  return std::nullopt;
}

bool save(const std::string &path, GdkPixbuf *picture) {
  if (path.empty()) {
    report_once(store_folder(), ENAMETOOLONG);
    return false;
  }
  const std::vector<std::byte> bytes = encode_jpeg(picture);
  if (bytes.empty()) return false;
  if (!write_file(path, bytes)) {
    report_once(path, errno);
    return false;
  }
  count_written(static_cast<gint64>(bytes.size()));
  return true;
}

}  // namespace phone::thumbnail

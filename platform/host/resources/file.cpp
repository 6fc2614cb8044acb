#include "resources/file.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

namespace phone::resources {
namespace {

/// Closes a descriptor with its scope.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ != -1) close(fd_);
  }
  Descriptor(const Descriptor &) = delete;
  Descriptor &operator=(const Descriptor &) = delete;
  [[nodiscard]] int get() const { return fd_; }

 private:
  int fd_;
};

}  // namespace

std::optional<std::string> read_whole(const char *path, std::size_t limit) {
  // A pipe in the file's place must not hold the caller up.
  const Descriptor fd(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat info {};
  if (fd.get() == -1 || fstat(fd.get(), &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
  if (info.st_size <= 0 || static_cast<std::uint64_t>(info.st_size) > limit) return std::nullopt;

  std::string bytes(static_cast<std::size_t>(info.st_size), '\0');
  std::size_t filled = 0;
  while (filled < bytes.size()) {
    const ssize_t got = read(fd.get(), bytes.data() + filled, bytes.size() - filled);
    if (got == -1 && errno == EINTR) continue;
    if (got <= 0) return std::nullopt;
    filled += static_cast<std::size_t>(got);
  }
  return bytes;
}

}  // namespace phone::resources

#include "pictures/decoder/whole-file.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace phone::pictures {

std::vector<std::byte> read_whole_file(int fd) {
  struct stat info;
  if (fstat(fd, &info) != 0 || info.st_size <= 0 ||
      static_cast<std::size_t>(info.st_size) > kLargestWholeFile) {
    return {};
  }
  std::vector<std::byte> data(static_cast<std::size_t>(info.st_size));
  std::size_t filled = 0;
  while (filled < data.size()) {
    const ssize_t got =
        pread(fd, data.data() + filled, data.size() - filled, static_cast<off_t>(filled));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return {};
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  data.resize(filled);
  return data;
}

}  // namespace phone::pictures

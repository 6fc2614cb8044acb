/// What a file's contents are known by.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <functional>

namespace phone::pictures {

/// A file as it was at one moment. Contents that change take another size or time, a file that
/// is replaced another number.
struct Identity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::uint64_t size = 0;
  std::int64_t seconds = 0;
  std::int64_t nanoseconds = 0;

  static Identity of(const struct stat &info) {
    return {info.st_dev, info.st_ino, static_cast<std::uint64_t>(info.st_size), info.st_mtim.tv_sec,
            info.st_mtim.tv_nsec};
  }
  bool operator==(const Identity &) const = default;
};

struct IdentityHash {
  std::size_t operator()(const Identity &identity) const {
    std::uint64_t hash = 0x9e3779b97f4a7c15;
    for (const std::uint64_t part : {identity.device, identity.inode, identity.size,
                                     static_cast<std::uint64_t>(identity.seconds),
                                     static_cast<std::uint64_t>(identity.nanoseconds)}) {
      hash = (hash ^ part) * 0xff51afd7ed558ccd;
      hash ^= hash >> 32;
    }
    return static_cast<std::size_t>(hash);
  }
};

}  // namespace phone::pictures

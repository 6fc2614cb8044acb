/// Thumbnails that were used lately, decoded.
#pragma once

#include <list>
#include <mutex>
#include <unordered_map>

#include "pictures/identity.hpp"
#include "pictures/result.hpp"

namespace phone::thumbnail {

/// What a decoded picture is known by: a file's contents and the box, 0 by 0 for the upright
/// thumbnail.
struct CacheKey {
  pictures::Identity identity;
  int width = 0;
  int height = 0;

  bool operator==(const CacheKey &) const = default;
};

struct CacheKeyHash {
  std::size_t operator()(const CacheKey &key) const {
    return pictures::IdentityHash()(key.identity) ^
           static_cast<std::size_t>(key.width) * 0x9e3779b1u ^
           static_cast<std::size_t>(key.height) * 0x85ebca6bu;
  }
};

/// Keeps the pictures used last within a number of bytes. Any thread.
class MemoryCache {
 public:
  explicit MemoryCache(std::size_t most_bytes) : most_bytes_(most_bytes) {}

  /// @return a copy of the caller's own, or nothing
  [[nodiscard]] pictures::PixbufRef get(const CacheKey &key);
  /// Keeps a picture that nobody else will write to. One larger than a quarter of the cache is
  /// not kept.
  void put(const CacheKey &key, const pictures::PixbufRef &pixbuf);
  void clear();
  [[nodiscard]] std::size_t bytes() const;

 private:
  struct Entry {
    CacheKey key;
    pictures::PixbufRef pixbuf;
    std::size_t bytes;
  };
  using Entries = std::list<Entry>;

  void remove(Entries::iterator entry);

  const std::size_t most_bytes_;
  mutable std::mutex mutex_;
  // All guarded by mutex_.
  Entries newest_first_;
  std::unordered_map<CacheKey, Entries::iterator, CacheKeyHash> places_;
  std::size_t bytes_ = 0;
};

}  // namespace phone::thumbnail

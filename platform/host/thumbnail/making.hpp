/// The making of thumbnails in advance, on threads of its own.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "pictures/cancellation.hpp"
#include "thumbnail/memory-cache.hpp"
#include "thumbnail/retries.hpp"
#include "thumbnail/wish-queue.hpp"

namespace phone::thumbnail {

/// The decoded thumbnails of this process; never destroyed.
MemoryCache &memory_cache();

/// The upright thumbnails in memory are kept under this key.
inline CacheKey thumbnail_key(const struct stat &info) {
  return {pictures::Identity::of(info), 0, 0};
}

/// Makes thumbnails for the store and for memory.
class Making {
 public:
  /// The one of this process; never destroyed.
  static Making &shared();

  void add_for_screen(const std::string &path);
  void add_for_later(const std::string &path);
  /// Drops all wishes, ends the decode under way and the threads. Main loop only.
  void stop();

 private:
  void start_threads();
  std::optional<std::string> next();
  void run(const pictures::Cancellation *cancellation);

  std::mutex mutex_;
  std::condition_variable work_;
  // All guarded by mutex_.
  WishQueue wishes_;
  Retries retries_;
  std::vector<std::thread> threads_;
  std::shared_ptr<pictures::Cancellation> cancellation_;
  bool stopping_ = false;
};

}  // namespace phone::thumbnail

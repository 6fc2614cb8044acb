/// The making of thumbnails in advance, on threads of its own.
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_set>
#include <vector>

#include "pictures/cancellation.hpp"
#include "thumbnail/memory-cache.hpp"

namespace phone::thumbnail {

/// The decoded thumbnails of this process; never destroyed.
MemoryCache &memory_cache();

/// The upright thumbnails in memory are kept under this key.
inline CacheKey thumbnail_key(const struct stat &info) {
  return {pictures::Identity::of(info), 0, 0};
}

/// Makes thumbnails for the store and for memory, newest wish first, since that is what is on
/// the screen. Of wishes for the screen only the newest are kept: what has scrolled far away is
/// asked for again when it comes back.
class Making {
 public:
  /// The one of this process; never destroyed.
  static Making &shared();

  void add_for_screen(const std::string &path);
  /// For later, in the order of the wishes.
  void add_for_later(const std::string &path);
  /// Drops all wishes, ends the decode under way and the threads.
  void stop();

  static constexpr std::size_t kMostForScreen = 200;
  static constexpr std::size_t kMostForLater = 4096;

 private:
  void start_threads();
  bool next(std::string &path);
  void run(const pictures::Cancellation *cancellation);

  std::mutex mutex_;
  std::condition_variable work_;
  // All guarded by mutex_.
  std::deque<std::string> for_screen_;
  std::deque<std::string> for_later_;
  std::unordered_set<std::string> wanted_for_later_;
  std::unordered_set<std::string> under_way_;
  std::vector<std::thread> threads_;
  std::shared_ptr<pictures::Cancellation> cancellation_;
  bool stopping_ = false;
};

}  // namespace phone::thumbnail

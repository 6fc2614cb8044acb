#include "thumbnail/making.hpp"

#include <chrono>

#include "pictures/picture-file.hpp"
#include "thumbnail/disk.hpp"
#include "thumbnail/listeners.hpp"
#include "thumbnail/shared-cache.hpp"

namespace phone::thumbnail {
namespace {

using pictures::Cancellation;
using pictures::OpenFile;
using pictures::Problem;
using pictures::Wish;

constexpr std::size_t kMemory = 16 * 1024 * 1024;

/// Nobody waits here, and what runs here gives way to everything else on the machine.
constexpr pictures::TimeLimit kTimeLimit{2 * G_TIME_SPAN_SECOND, 20 * G_TIME_SPAN_SECOND};
/// Videos are slow to look into.
constexpr pictures::TimeLimit kVideoTimeLimit{5 * G_TIME_SPAN_SECOND, 20 * G_TIME_SPAN_SECOND};

Wish wish_for_thumbnail(const Cancellation *cancellation) {
  Wish wish;
  wish.width = kSide;
  wish.height = kSide;
  wish.flags = pictures::wire::kUpright | pictures::wire::kOpaque | pictures::wire::kPreview;
  wish.priority = pictures::Priority::kBackground;
  wish.time_limit = kTimeLimit;
  wish.video_time_limit = kVideoTimeLimit;
  wish.cancellation = cancellation;
  return wish;
}

/// Whether a file is still what it was when it was opened.
bool is_unchanged(const OpenFile &file) {
  struct stat info;
  return fstat(file.fd.get(), &info) == 0 &&
         pictures::Identity::of(info) == pictures::Identity::of(file.info);
}

/// Whether this or an earlier run has found that there is nothing to be made of a file.
bool is_hopeless(const struct stat &info) {
  if (pictures::is_known_to_fail(info, kSide, kSide)) return true;
  const auto problem = load_failure(info);
  if (problem) pictures::remember_failure(info, kSide, kSide, *problem);
  return problem.has_value();
}

/// What has come of a wish.
enum class Made {
  kNothing,
  kThumbnail,  ///< one that was not there before
  kNotForNow,  ///< another try may do better
};

pictures::Result make(const std::string &path, const OpenFile &file,
                      const Cancellation *cancellation) {
  const Wish wish = wish_for_thumbnail(cancellation);
  if (PixbufRef shared = find_shared(path, file.info, wish)) return {Problem::kNone, shared};
  pictures::Result result = pictures::decode_picture(file, wish);
  // What is to be seen in it by then belongs to other contents.
  if (!is_unchanged(file)) return {Problem::kBusy, {}};
  if (pictures::is_lasting(result.problem)) save_failure(file.info, result.problem);
  return result;
}

Made make_one(const std::string &path, const Cancellation *cancellation) {
  const OpenFile file = pictures::open_picture(path.c_str());
  if (file.problem == Problem::kBusy) return Made::kNotForNow;
  if (file.problem != Problem::kNone || is_stored(file.info) || is_hopeless(file.info)) {
    return Made::kNothing;
  }
  const pictures::Result result = make(path, file, cancellation);
  if (result.problem == Problem::kBusy) return Made::kNotForNow;
  if (!result.pixbuf) return Made::kNothing;
  // Even if the disk is full or may not be written, the thumbnail is there for a while.
  memory_cache().put(thumbnail_key(file.info), result.pixbuf);
  if (save(stored_path(file.info), result.pixbuf.get())) keep_within_limit();
  return Made::kThumbnail;
}

}  // namespace

MemoryCache &memory_cache() {
  static MemoryCache &cache = *new MemoryCache(kMemory);
  return cache;
}

Making &Making::shared() {
  static Making &making = *new Making;
  return making;
}

void Making::add_for_screen(const std::string &path) {
  {
    const std::scoped_lock lock(mutex_);
    if (retries_.is_waiting(path)) return;
    wishes_.add_for_screen(path);
    start_threads();
  }
  work_.notify_one();
}

void Making::add_for_later(const std::string &path) {
  {
    const std::scoped_lock lock(mutex_);
    if (retries_.is_waiting(path)) return;
    wishes_.add_for_later(path);
    start_threads();
  }
  work_.notify_one();
}

void Making::start_threads() {
  if (!threads_.empty()) return;
  stopping_ = false;
  cancellation_ = std::make_shared<Cancellation>();
  const int count = pictures::Pool::shared().background_limit();
  for (int i = 0; i < count; ++i) {
    threads_.emplace_back([this, cancellation = cancellation_] { run(cancellation.get()); });
  }
}

std::optional<std::string> Making::next() {
  std::unique_lock lock(mutex_);
  while (!stopping_) {
    // What may fail again does not keep anything else waiting.
    if (wishes_.empty()) {
      if (const auto due = retries_.take(g_get_monotonic_time())) wishes_.add_for_screen(*due);
    }
    if (auto path = wishes_.take()) return path;
    if (const auto next = retries_.next()) {
      work_.wait_for(lock, std::chrono::microseconds(*next - g_get_monotonic_time()));
    } else {
      work_.wait(lock);
    }
  }
  return std::nullopt;
}

void Making::run(const Cancellation *cancellation) {
  while (const auto path = next()) {
    const Made made = make_one(*path, cancellation);
    {
      const std::scoped_lock lock(mutex_);
      wishes_.done(*path);
      if (made == Made::kNotForNow) {
        retries_.failed(*path, g_get_monotonic_time());
      } else {
        retries_.done(*path);
      }
    }
    if (made == Made::kThumbnail) announce_thumbnails();
  }
}

void Making::stop() {
  std::vector<std::thread> threads;
  {
    const std::scoped_lock lock(mutex_);
    wishes_.clear();
    retries_.clear();
    stopping_ = true;
    if (cancellation_) cancellation_->cancel();
    threads.swap(threads_);
  }
  work_.notify_all();
  for (std::thread &thread : threads) thread.join();
}

}  // namespace phone::thumbnail

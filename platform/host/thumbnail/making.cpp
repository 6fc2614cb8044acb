#include "thumbnail/making.hpp"

#include <algorithm>
#include <cerrno>

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

/// Videos are slow to look into, and nobody waits here.
constexpr gint64 kVideoTimeLimit = 5 * G_TIME_SPAN_SECOND;

Wish wish_for_thumbnail(const Cancellation *cancellation) {
  Wish wish;
  wish.width = kSide;
  wish.height = kSide;
  wish.flags = pictures::wire::kUpright | pictures::wire::kOpaque | pictures::wire::kPreview;
  wish.priority = pictures::Priority::kBackground;
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

PixbufRef make(const std::string &path, const OpenFile &file, const Cancellation *cancellation) {
  const Wish wish = wish_for_thumbnail(cancellation);
  if (PixbufRef shared = find_shared(path, file.info, wish)) return shared;
  const pictures::Result result = pictures::decode_picture(file, wish);
  if (!is_unchanged(file)) return {};
  if (pictures::is_lasting(result.problem)) save_failure(file.info, result.problem);
  return result.pixbuf;
}

/// @return whether there is a thumbnail now that was not there before
bool make_one(const std::string &path, const Cancellation *cancellation) {
  const OpenFile file = pictures::open_picture(path.c_str());
  if (file.problem != Problem::kNone || is_stored(file.info) || is_hopeless(file.info)) {
    return false;
  }
  const PixbufRef thumbnail = make(path, file, cancellation);
  if (!thumbnail) return false;
  // Even if the disk is full or may not be written, the thumbnail is there for a while.
  memory_cache().put(thumbnail_key(file.info), thumbnail);
  if (save(stored_path(file.info), thumbnail.get())) keep_within_limit();
  return true;
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
    if (under_way_.contains(path)) return;
    const auto earlier = std::find(for_screen_.begin(), for_screen_.end(), path);
    if (earlier != for_screen_.end()) for_screen_.erase(earlier);
    for_screen_.push_back(path);
    if (for_screen_.size() > kMostForScreen) for_screen_.pop_front();
    start_threads();
  }
  work_.notify_one();
}

void Making::add_for_later(const std::string &path) {
  {
    const std::scoped_lock lock(mutex_);
    if (under_way_.contains(path) || for_later_.size() >= kMostForLater ||
        !wanted_for_later_.insert(path).second) {
      return;
    }
    for_later_.push_back(path);
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

bool Making::next(std::string &path) {
  std::unique_lock lock(mutex_);
  under_way_.erase(path);
  work_.wait(lock, [this] { return stopping_ || !for_screen_.empty() || !for_later_.empty(); });
  if (stopping_) return false;
  if (!for_screen_.empty()) {
    path = std::move(for_screen_.back());
    for_screen_.pop_back();
  } else {
    path = std::move(for_later_.front());
    for_later_.pop_front();
    wanted_for_later_.erase(path);
  }
  under_way_.insert(path);
  return true;
}

void Making::run(const Cancellation *cancellation) {
  std::string path;
  while (next(path)) {
    if (make_one(path, cancellation)) announce_thumbnails();
  }
}

void Making::stop() {
  std::vector<std::thread> threads;
  {
    const std::scoped_lock lock(mutex_);
    for_screen_.clear();
    for_later_.clear();
    wanted_for_later_.clear();
    stopping_ = true;
    if (cancellation_) cancellation_->cancel();
    threads.swap(threads_);
  }
  work_.notify_all();
  for (std::thread &thread : threads) thread.join();
  const std::scoped_lock lock(mutex_);
  under_way_.clear();
}

}  // namespace phone::thumbnail

#include "thumbnail/memory-cache.hpp"

namespace phone::thumbnail {

using pictures::PixbufRef;

PixbufRef MemoryCache::get(const CacheKey &key) {
  PixbufRef kept;
  {
    const std::scoped_lock lock(mutex_);
    const auto place = places_.find(key);
    if (place == places_.end()) return {};
    newest_first_.splice(newest_first_.begin(), newest_first_, place->second);
    kept = place->second->pixbuf;
  }
  return PixbufRef::adopt(gdk_pixbuf_copy(kept.get()));
}

void MemoryCache::put(const CacheKey &key, const PixbufRef &pixbuf) {
  const std::size_t bytes = gdk_pixbuf_get_byte_length(pixbuf.get());
  if (bytes > most_bytes_ / 4) return;
  const std::scoped_lock lock(mutex_);
  const auto place = places_.find(key);
  if (place != places_.end()) remove(place->second);
  newest_first_.push_front({key, pixbuf, bytes});
  places_.emplace(key, newest_first_.begin());
  bytes_ += bytes;
  while (bytes_ > most_bytes_) remove(std::prev(newest_first_.end()));
}

void MemoryCache::remove(Entries::iterator entry) {
  bytes_ -= entry->bytes;
  places_.erase(entry->key);
  newest_first_.erase(entry);
}

void MemoryCache::clear() {
  const std::scoped_lock lock(mutex_);
  places_.clear();
  newest_first_.clear();
  bytes_ = 0;
}

std::size_t MemoryCache::bytes() const {
  const std::scoped_lock lock(mutex_);
  return bytes_;
}

}  // namespace phone::thumbnail

#include "thumbnail/wish-queue.hpp"

#include <algorithm>

namespace phone::thumbnail {

void WishQueue::add_for_screen(const std::string &path) {
  if (under_way_.contains(path)) return;
  const auto earlier = std::find(for_screen_.begin(), for_screen_.end(), path);
  if (earlier != for_screen_.end()) for_screen_.erase(earlier);
  for_screen_.push_back(path);
  if (for_screen_.size() > kMostForScreen) for_screen_.pop_front();
}

void WishQueue::add_for_later(const std::string &path) {
  if (under_way_.contains(path) || for_later_.size() >= kMostForLater) return;
  if (wished_for_later_.insert(path).second) for_later_.push_back(path);
}

std::optional<std::string> WishQueue::take() {
  std::string path;
  if (!for_screen_.empty()) {
    path = std::move(for_screen_.back());
    for_screen_.pop_back();
  } else if (!for_later_.empty()) {
    path = std::move(for_later_.front());
    for_later_.pop_front();
    wished_for_later_.erase(path);
  } else {
    return std::nullopt;
  }
  under_way_.insert(path);
  return path;
}

void WishQueue::clear() {
  for_screen_.clear();
  for_later_.clear();
  wished_for_later_.clear();
}

}  // namespace phone::thumbnail

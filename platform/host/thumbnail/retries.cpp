#include "thumbnail/retries.hpp"

#include <algorithm>
#include <iterator>

namespace phone::thumbnail {

void Retries::failed(const std::string &path, gint64 now) {
  const auto known = waiting_.find(path);
  if (known == waiting_.end() && waiting_.size() >= kMost) return;
  const std::size_t number = known == waiting_.end() ? 0 : known->second.number + 1;
  if (number == std::size(kPauses)) {
    waiting_.erase(path);
  } else {
    waiting_[path] = {number, now + kPauses[number]};
  }
}

bool Retries::is_waiting(const std::string &path) const {
  const auto known = waiting_.find(path);
  return known != waiting_.end() && !known->second.under_way;
}

std::optional<std::string> Retries::take(gint64 now) {
  const auto due = std::find_if(waiting_.begin(), waiting_.end(), [now](const auto &file) {
    return !file.second.under_way && file.second.due <= now;
  });
  if (due == waiting_.end()) return std::nullopt;
  due->second.under_way = true;
  return due->first;
}

std::optional<gint64> Retries::next() const {
  std::optional<gint64> first;
  for (const auto &[path, one] : waiting_) {
    if (!one.under_way && (!first || one.due < *first)) first = one.due;
  }
  return first;
}

}  // namespace phone::thumbnail

#include "pictures/failures.hpp"

namespace phone::pictures {

Failures &Failures::shared() {
  static Failures &failures = *new Failures;
  return failures;
}

void Failures::remember(const Identity &identity, bool small, Problem problem) {
  const std::scoped_lock lock(mutex_);
  const auto [place, added] = problems_.try_emplace(identity);
  (small ? place->second.of_small : place->second.of_full) = problem;
  if (!added) return;
  oldest_first_.push_back(identity);
  if (oldest_first_.size() <= kMost) return;
  problems_.erase(oldest_first_.front());
  oldest_first_.pop_front();
}

std::optional<Problem> Failures::find(const Identity &identity, bool small) const {
  const std::scoped_lock lock(mutex_);
  const auto place = problems_.find(identity);
  if (place == problems_.end()) return std::nullopt;
  const Problem problem = small ? place->second.of_small : place->second.of_full;
  return problem == Problem::kNone ? std::nullopt : std::optional(problem);
}

}  // namespace phone::pictures

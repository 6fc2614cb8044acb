/// Files that are known not to decode, so that each costs its time once.
#pragma once

#include <deque>
#include <mutex>
#include <optional>
#include <unordered_map>

#include "pictures/identity.hpp"
#include "pictures/result.hpp"

namespace phone::pictures {

/// Any thread.
class Failures {
 public:
  /// The one of this process; never destroyed.
  static Failures &shared();

  /// A small picture may succeed where the full one takes too long, so they are told apart.
  void remember(const Identity &identity, bool small, Problem problem);
  [[nodiscard]] std::optional<Problem> find(const Identity &identity, bool small) const;

 private:
  static constexpr std::size_t kMost = 8192;

  struct Problems {
    Problem of_small = Problem::kNone;
    Problem of_full = Problem::kNone;
  };

  mutable std::mutex mutex_;
  // Guarded by mutex_.
  std::unordered_map<Identity, Problems, IdentityHash> problems_;
  std::deque<Identity> oldest_first_;
};

}  // namespace phone::pictures

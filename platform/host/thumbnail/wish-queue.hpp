/// Which thumbnail is made next.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <unordered_set>

namespace phone::thumbnail {

/// The files whose thumbnails are wished for. Has no lock of its own.
class WishQueue {
 public:
  /// Wishes for the screen come first, the newest of them at the front, since that is what is
  /// looked at. Only the newest are kept: what has scrolled far away is wished for again when it
  /// comes back.
  void add_for_screen(const std::string &path);
  /// Wishes for later are granted in their order; beyond a number they are not taken.
  void add_for_later(const std::string &path);

  /// The next file, which is under way from now on, and not added again until done().
  std::optional<std::string> take();
  void done(const std::string &path) { under_way_.erase(path); }

  /// Drops all wishes.
  void clear();
  [[nodiscard]] bool empty() const { return for_screen_.empty() && for_later_.empty(); }

  static constexpr std::size_t kMostForScreen = 200;
  static constexpr std::size_t kMostForLater = 4096;

 private:
  std::deque<std::string> for_screen_;
  std::deque<std::string> for_later_;
  std::unordered_set<std::string> wished_for_later_;
  std::unordered_set<std::string> under_way_;
};

}  // namespace phone::thumbnail

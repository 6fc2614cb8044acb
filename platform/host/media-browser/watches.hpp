/// Notices of the kernel about folders that change. Scanner thread.
#pragma once

#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "media-browser/file-state.hpp"
#include "media-browser/folder-fd.hpp"

struct inotify_event;

namespace phone::media {

/// What may have changed.
struct Changes {
  /// Names in folders.
  std::map<std::string, std::set<std::string>> names;
  /// Folders with everything below them.
  std::set<std::string> trees;
  /// Notices were lost: anything may have changed.
  bool everything = false;

  [[nodiscard]] bool empty() const { return names.empty() && trees.empty() && !everything; }
};

class Watches {
 public:
  /// @param most folders that are watched; of the others only their time of change is looked at,
  ///        when poll() is called
  explicit Watches(std::size_t most);

  /// The descriptor that becomes readable with a notice; -1 when there are none to be had.
  [[nodiscard]] int descriptor() const { return inotify_.get(); }
  /// Watches a folder. Called before its entries are read, so that nothing falls in between.
  void add(const std::string &path, gint64 mtime);
  [[nodiscard]] bool knows(const std::string &path) const;
  /// Stops watching folders at or below a path that are not where they were.
  void drop_missing(const std::string &path);

  /// Takes the notices that have arrived.
  void read(Changes &changes);
  /// Whether there are folders that poll() has to look at.
  [[nodiscard]] bool must_poll() const { return !polled_.empty(); }
  /// Looks for folders that have changed, among those that are not watched.
  void poll(Changes &changes);

  /// Half of what the system allows one user, at most 8192: each costs the kernel about 1 KB.
  static std::size_t most_by_default();

 private:
  void take(const inotify_event &event, Changes &changes);
  void forget(int watch);

  Fd inotify_;
  std::size_t most_;
  std::unordered_map<int, std::string> path_of_;
  std::map<std::string, int> watch_of_;
  std::map<std::string, gint64> polled_;
};

}  // namespace phone::media

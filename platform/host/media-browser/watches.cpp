#include "media-browser/watches.hpp"

#include <fcntl.h>
#include <sys/inotify.h>

#include <algorithm>
#include <array>
#include <fstream>

#include "media-browser/media-names.hpp"

namespace phone::media {

namespace {

constexpr std::size_t kMostWatches = 8192;
constexpr guint32 kNotices = IN_CLOSE_WRITE | IN_MOVED_FROM | IN_MOVED_TO | IN_CREATE | IN_DELETE |
                             IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR |
                             IN_DONT_FOLLOW | IN_EXCL_UNLINK;

/// Whether a new file may be looked at: one that is being written gets a notice at its end, a
/// second name of an old file does not.
bool is_second_name(const std::string &folder, const std::string &name) {
  const auto entry = look_at(AT_FDCWD, join(folder, name).c_str());
  return entry && entry->regular && entry->links > 1;
}

bool is_below(const std::string &path, const std::string &folder) {
  return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

}  // namespace

std::size_t Watches::most_by_default() {
  std::ifstream limit("/proc/sys/fs/inotify/max_user_watches");
  std::size_t allowed = 0;
  limit >> allowed;
  return std::min(kMostWatches, allowed / 2);
}

Watches::Watches(std::size_t most)
    : inotify_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), most_(inotify_ ? most : 0) {}

void Watches::add(const std::string &path, gint64 mtime) {
  if (watch_of_.size() < most_ || watch_of_.contains(path)) {
    const int watch = inotify_add_watch(inotify_.get(), path.c_str(), kNotices);
    if (watch >= 0) {
      // A folder that was renamed keeps its watch, and another one may have its old name.
      const auto old = path_of_.find(watch);
      if (old != path_of_.end() && watch_of_[old->second] == watch) watch_of_.erase(old->second);
      if (const auto other = watch_of_.find(path); other != watch_of_.end()) {
        path_of_.erase(other->second);
      }
      path_of_[watch] = path;
      watch_of_[path] = watch;
      polled_.erase(path);
      return;
    }
  }
  polled_[path] = mtime;
}

bool Watches::knows(const std::string &path) const {
  return watch_of_.contains(path) || polled_.contains(path);
}

void Watches::forget(int watch) {
  const auto found = path_of_.find(watch);
  if (found == path_of_.end()) return;
  watch_of_.erase(found->second);
  path_of_.erase(found);
}

void Watches::drop_missing(const std::string &path) {
  std::vector<std::string> missing;
  for (auto at = watch_of_.lower_bound(path); at != watch_of_.end() && at->first.starts_with(path);
       ++at) {
    if (!is_below(at->first, path)) continue;
    const auto entry = look_at(AT_FDCWD, at->first.c_str());
    if (!entry || !entry->folder) missing.push_back(at->first);
  }
  for (const std::string &folder : missing) {
    const int watch = watch_of_.at(folder);
    inotify_rm_watch(inotify_.get(), watch);
    forget(watch);
  }
  std::erase_if(polled_, [&](const auto &entry) {
    const auto there = look_at(AT_FDCWD, entry.first.c_str());
    return is_below(entry.first, path) && (!there || !there->folder);
  });
}

void Watches::take(const inotify_event &event, Changes &changes) {
  if ((event.mask & IN_Q_OVERFLOW) != 0) {
    changes.everything = true;
    return;
  }
  const auto found = path_of_.find(event.wd);
  if (found == path_of_.end()) return;
  const std::string folder = found->second;
  if ((event.mask & (IN_IGNORED | IN_UNMOUNT)) != 0) {
    forget(event.wd);
    changes.trees.insert(folder);
    return;
  }
  if (event.len == 0) {
    changes.trees.insert(folder);
    return;
  }
  const std::string name(event.name);
  if (name == kNoMedia) {
    changes.trees.insert(folder);
  } else if ((event.mask & IN_ISDIR) != 0) {
    if (!is_hidden(name)) changes.trees.insert(join(folder, name));
  } else if (!is_hidden(name) && kind_by_name(name) != 0) {
    if ((event.mask & IN_CREATE) == 0 || is_second_name(folder, name)) {
      changes.names[folder].insert(name);
    }
  }
}

void Watches::read(Changes &changes) {
  alignas(inotify_event) std::array<char, 16384> buffer;
  while (true) {
    const ssize_t length = ::read(inotify_.get(), buffer.data(), buffer.size());
    if (length <= 0) return;
    for (ssize_t at = 0; at < length;) {
      const auto *event = reinterpret_cast<const inotify_event *>(buffer.data() + at);
      take(*event, changes);
      at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
    }
  }
}

void Watches::poll(Changes &changes) {
  for (const auto &[path, mtime] : polled_) {
    const auto entry = look_at(AT_FDCWD, path.c_str());
    if (!entry || entry->state.mtime != mtime) changes.trees.insert(path);
  }
}

}  // namespace phone::media

#include "media-browser/walker.hpp"

#include <poll.h>
#include <sys/eventfd.h>

#include <array>
#include <cerrno>

#include "media-browser/display.hpp"

namespace phone::media {

namespace {

/// Changes come in groups: a program that saves a file touches it several times.
constexpr int kQuietMs = 100;
/// A group that never ends is followed all the same.
constexpr int kLongestGroupMs = 1000;
/// Folders without notices, and an index that could not take everything, are tried this often.
constexpr int kPollMs = 60'000;
/// More names than this and looking through the folder is cheaper.
constexpr std::size_t kMostNames = 1000;

bool is_below(const std::string &path, const std::string &folder) {
  if (folder == "/") return true;
  return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

/// Lets one thread wait for a job of another, and for the end of both.
class Done {
 public:
  void set() {
    const std::scoped_lock lock(mutex_);
    done_ = true;
    changed_.notify_all();
  }
  void wait(const std::atomic<bool> &stopping) {
    constexpr std::chrono::milliseconds kLook{20};
    std::unique_lock lock(mutex_);
    while (!done_ && !stopping) changed_.wait_for(lock, kLook);
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool done_ = false;
};

}  // namespace

Walker::Walker(std::vector<std::string> roots, const IndexStorage &storage, Shared &shared,
               Writer &writer, ProbePool &pool)
    : roots_(std::move(roots)),
      storage_(storage),
      shared_(shared),
      writer_(writer),
      pool_(pool),
      wakeup_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      watches_(Watches::most_by_default()) {}

void Walker::wake() {
  const guint64 one = 1;
  [[maybe_unused]] const ssize_t written = write(wakeup_.get(), &one, sizeof one);
}

void Walker::rescan() {
  rescan_ = true;
  wake();
}

void Walker::run() {
  while (!shared_.stopping) {
    if (rescan_.exchange(false)) {
      scan_everything();
      continue;
    }
    Changes changes;
    wait_for_changes(changes);
    if (shared_.stopping) break;
    if (changes.everything) {
      rescan_ = true;
    } else if (!changes.empty()) {
      follow(changes);
    }
  }
  known_.reset();
}

void Walker::wait_for_changes(Changes &changes) {
  std::array<pollfd, 2> sources{pollfd{wakeup_.get(), POLLIN, 0},
                                pollfd{watches_.descriptor(), POLLIN, 0}};
  gint64 start = 0;
  while (!shared_.stopping && !rescan_) {
    int longest = -1;
    if (!changes.empty()) {
      longest = kQuietMs;
    } else if (watches_.must_poll() || !writer_complete_) {
      longest = kPollMs;
    }
    const int ready = ::poll(sources.data(), sources.size(), longest);
    if ((sources[0].revents & POLLIN) != 0) {
      guint64 count = 0;
      [[maybe_unused]] const ssize_t length = read(wakeup_.get(), &count, sizeof count);
    }
    if ((sources[1].revents & POLLIN) != 0) watches_.read(changes);
    const gint64 now = g_get_monotonic_time();
    if (changes.empty() || start == 0) start = now;
    const bool late = now - start > kLongestGroupMs * G_TIME_SPAN_MILLISECOND;
    if (!changes.empty() && (ready == 0 || late)) return;
    if (ready == 0) {
      watches_.poll(changes);
      if (!writer_complete_) rescan_ = true;
      return;
    }
  }
}

void Walker::reopen_if_made_anew() {
  const guint64 version = shared_.file_version;
  if (database_.is_open() && version == file_version_) return;
  file_version_ = version;
  known_.reset();
  album_by_path_ = {};
  album_by_identity_ = {};
  all_albums_ = {};
  [[maybe_unused]] const int code = storage_.open_for_reading(database_);
  album_by_path_ = database_.prepare("SELECT id, device, inode, born FROM albums WHERE path = ?");
  album_by_identity_ = database_.prepare(
      "SELECT id, path FROM albums WHERE inode = ? AND device = ? AND born = ? "
      "AND coalesce(path, '') != ?");
  all_albums_ = database_.prepare("SELECT id, path FROM albums WHERE pictures + videos > 0");
  known_ = std::make_unique<KnownFiles>(database_);
}

void Walker::settle() {
  pool_.wait_until_idle();
  const auto done = std::make_shared<Done>();
  const auto complete = std::make_shared<std::atomic<bool>>(true);
  writer_.post([done, complete](Writer &writer) {
    // Waited for even when storing fails, or the scanner would wait for ever.
    struct Finally {
      Done &done;
      ~Finally() { done.set(); }
    } const finally{*done};
    *complete = false;
    writer.settle();
    *complete = writer.is_complete();
  });
  done->wait(shared_.stopping);
  writer_complete_ = *complete;
  reopen_if_made_anew();
}

void Walker::scan_everything() {
  shared_.progress.begin();
  Announcer::instance().announce(MEDIA_INDEX_PROGRESS);
  writer_.post([](Writer &writer) { writer.begin_scan(); });
  reopen_if_made_anew();
  Pass pass;
  for (const std::string &root : roots_) {
    if (shared_.stopping) return;
    Fd descriptor = open_root(root);
    if (descriptor) {
      visit(std::move(descriptor), root, pass);
    } else {
      report(root, errno, &pass);
    }
  }
  finish(pass, {"/"});
  if (shared_.stopping) return;
  writer_.post([](Writer &writer) { writer.end_scan(); });
  settle();
  shared_.progress.end();
  shared_.set_ready();
  Announcer::instance().announce(MEDIA_INDEX_SCAN_FINISHED | MEDIA_INDEX_PROGRESS);
}

void Walker::follow(const Changes &changes) {
  reopen_if_made_anew();
  Pass pass;
  std::vector<std::string> trees;
  for (const std::string &tree : changes.trees) {
    if (shared_.stopping) return;
    scan_tree(tree, pass);
    trees.push_back(tree);
  }
  for (const auto &[folder, names] : changes.names) {
    if (shared_.stopping) return;
    if (pass.paths.contains(folder)) continue;
    if (names.size() > kMostNames) {
      Pass shallow;
      shallow.deep = false;
      scan_tree(folder, shallow);
    } else {
      scan_names(folder, names);
    }
  }
  finish(pass, trees);
  for (const std::string &tree : trees) watches_.drop_missing(tree);
}

void Walker::finish(Pass &pass, const std::vector<std::string> &trees) {
  settle();
  pass.at_the_end = true;
  for (const std::string &path : std::exchange(pass.replaced, {})) scan_tree(path, pass);
  settle();
  if (shared_.stopping || trees.empty()) return;
  std::vector<gint32> lost;
  for (Cursor row(all_albums_); row.next();) {
    const std::string path(row.text(1));
    const auto covers = [&path](const std::string &tree) { return is_below(path, tree); };
    const bool concerned = path.empty() || std::any_of(trees.begin(), trees.end(), covers);
    const bool unread = std::any_of(pass.unread.begin(), pass.unread.end(), covers);
    if (concerned && !unread && !pass.paths.contains(path)) lost.push_back(row.number(0));
  }
  if (lost.empty()) return;
  writer_.post([lost](Writer &writer) {
    for (const gint32 album : lost) writer.lose_folder(album);
  });
  settle();
}

Fd Walker::open_shown(const std::string &path) const {
  errno = ENOENT;
  for (const std::string &root : roots_) {
    if (!is_below(path, root)) continue;
    if (Fd folder = open_shown_folder(root, path)) return folder;
  }
  return {};
}

void Walker::scan_tree(const std::string &path, Pass &pass) {
  if (pass.paths.contains(path)) return;
  Fd descriptor = open_shown(path);
  if (descriptor) {
    visit(std::move(descriptor), path, pass);
  } else if (errno != ENOENT && errno != ENOTDIR && errno != ELOOP) {
    report(path, errno, &pass);
  }
}

void Walker::report(const std::string &path, int code, Pass *pass) {
  // What is not there has gone; what cannot be read may come back.
  if (pass != nullptr && code != ENOENT && code != ENOTDIR) pass->unread.push_back(path);
  shared_.progress.problem("The folder " + display_name(path) +
                           " cannot be read: " + g_strerror(code) + ".");
}

}  // namespace phone::media

#include "media-browser/index.hpp"

#include <pthread.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>

#include "media-browser/display.hpp"
#include "media-browser/media-names.hpp"
#include "media-browser/removed.hpp"
#include "media-browser/user-data-file.hpp"
#include "thumbnail/own-files.hpp"

namespace phone::media {

namespace {

/// A thread that hangs on a dead disk is left behind after this time.
constexpr std::chrono::milliseconds kLongestStop{3000};
constexpr std::chrono::milliseconds kStopStep{2};
/// Looking through folders gives way to drawing.
constexpr int kBackground = 10;
constexpr unsigned kMostReaders = 4;

std::mutex g_current_mutex;

std::shared_ptr<Index> &current_index() {
  static auto *index = new std::shared_ptr<Index>;
  return *index;
}

/// Signals are for the main loop's thread.
class BlockedSignals {
 public:
  BlockedSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &old_);
  }
  ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &old_, nullptr); }
  BlockedSignals(const BlockedSignals &) = delete;
  BlockedSignals &operator=(const BlockedSignals &) = delete;

 private:
  sigset_t old_{};
};

std::vector<std::string> without_links(const std::vector<std::string> &roots) {
  struct FreeMemory {
    void operator()(char *text) const { std::free(text); }
  };
  std::vector<std::string> real;
  for (const std::string &root : roots) {
    const std::unique_ptr<char, FreeMemory> path(realpath(root.c_str(), nullptr));
    if (path) real.emplace_back(path.get());
  }
  return real;
}

/// Whether a path lies below a folder, and on the way there is nothing hidden.
bool shows(const std::string &folder, const std::string &path) {
  const std::string start = folder == "/" ? folder : folder + "/";
  if (!path.starts_with(start)) return false;
  for (std::size_t at = start.size(); at < path.size();) {
    const std::size_t slash = std::min(path.find('/', at), path.size());
    if (is_hidden(std::string_view(path).substr(at, slash - at))) return false;
    at = slash + 1;
  }
  return true;
}

bool is_listed_picture(const std::string &path) {
  const auto index = Index::current();
  return index != nullptr && index->covers(path);
}

}  // namespace

std::shared_ptr<Index> Index::current() {
  const std::scoped_lock lock(g_current_mutex);
  return current_index();
}

void Index::set_current(std::shared_ptr<Index> index) {
  const std::scoped_lock lock(g_current_mutex);
  current_index() = std::move(index);
}

Index::Index(const std::vector<std::string> &roots, std::string &user_problem)
    : roots_(roots),
      real_roots_(without_links(roots)),
      storage_(roots),
      user_data_(user_problem),
      reader_(storage_, shared_) {}

std::shared_ptr<Index> Index::open(const std::vector<std::string> &roots, std::string &problem) {
  std::string user_problem;
  auto index = std::make_shared<Index>(canonical_roots(roots), user_problem);
  Database database;
  const int code = index->storage_.open_for_writing(database);
  if (code != SQLITE_OK) {
    problem = "The list of pictures cannot be made in " + display_name(data_folder()) + ": " +
              sqlite3_errstr(code) + ".";
    return nullptr;
  }
  for (const std::string &sentence : index->storage_.problems()) {
    index->shared_.progress.lasting_problem(sentence);
  }
  if (!user_problem.empty()) index->shared_.progress.lasting_problem(user_problem);
  index->writer_ = std::make_unique<Writer>(index->storage_, std::move(database), index->user_data_,
                                            index->shared_);
  index->pool_ = std::make_unique<ProbePool>(index->shared_, *index->writer_);
  index->walker_ = std::make_unique<Walker>(index->roots_, index->storage_, index->shared_,
                                            *index->writer_, *index->pool_);
  return index;
}

template <typename Function>
void Index::run_thread(const char *name, int nice, Function function) {
  Worker worker;
  worker.ended = std::make_shared<std::atomic<bool>>(false);
  worker.thread = std::thread([self = shared_from_this(), ended = worker.ended, nice, function] {
    if (nice != 0) setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), nice);
    function(*self);
    *ended = true;
  });
  pthread_setname_np(worker.thread.native_handle(), name);
  workers_.push_back(std::move(worker));
}

bool Index::covers(const std::string &path) const {
  const auto shows_path = [&path](const std::string &root) { return shows(root, path); };
  return std::any_of(roots_.begin(), roots_.end(), shows_path) ||
         std::any_of(real_roots_.begin(), real_roots_.end(), shows_path);
}

void Index::start() {
  thumbnail::set_picture_check(is_listed_picture);
  Shared::set_unready();
  if (reader_.count(kAllClasses).value_or(0) > 0) shared_.set_ready();
  // The order that a gallery opens with.
  shared_.views.read({SortKey::kDate, kAllClasses});
  shared_.views.set_wanted_hook([writer = writer_.get()] { writer->wake(); });
  writer_->set_made_anew_hook([walker = walker_.get()] { walker->rescan(); });
  shared_.progress.begin();

  const BlockedSignals blocked;
  run_thread("media-index", 0, [](Index &self) { self.writer_->run(); });
  run_thread("media-scan", kBackground, [](Index &self) { self.walker_->run(); });
  const unsigned readers = std::clamp(std::thread::hardware_concurrency(), 1u, kMostReaders);
  for (unsigned number = 0; number < readers; ++number) {
    run_thread("media-headers", kBackground, [](Index &self) { self.pool_->run(); });
  }
}

void Index::stop() {
  shared_.stopping = true;
  writer_->wake();
  pool_->wake();
  walker_->wake();
  const auto deadline = std::chrono::steady_clock::now() + kLongestStop;
  for (Worker &worker : workers_) {
    while (!*worker.ended && std::chrono::steady_clock::now() < deadline) {
      std::this_thread::sleep_for(kStopStep);
    }
    if (*worker.ended) {
      worker.thread.join();
    } else {
      worker.thread.detach();
    }
  }
  workers_.clear();
}

void Index::check_after_reading() {
  if (reader_.take_damage()) writer_->post([](Writer &writer) { writer.check_file(); });
}

bool Index::change_user_data(gint32 id, const std::function<void(UserData::File &)> &change) {
  const std::scoped_lock lock(user_mutex_);
  const auto file = reader_.file(id);
  if (!file || file->gone() || file->folder.empty()) return false;
  UserData::File known{file->user_flags, file->nfid};
  change(known);
  const gint64 generation = user_data_.set(join(file->folder, file->name), file->state, known);
  if (generation < 0) return false;
  const guint64 ticket = shared_.views.mark(id, {known.flags, known.nfid});
  writer_->post([id, known, generation, ticket](Writer &writer) {
    writer.set_user_data(id, known, generation);
    writer.show_user_data(id, ticket);
  });
  return true;
}

bool Index::set_flag(gint32 id, int flag, bool on) {
  return change_user_data(id, [flag, on](UserData::File &file) {
    file.flags = on ? file.flags | flag : file.flags & ~flag;
  });
}

bool Index::set_nfid(gint32 id, gint64 nfid) {
  return change_user_data(id, [nfid](UserData::File &file) { file.nfid = nfid; });
}

bool Index::import_user_data(const std::string &path, std::string &problem) {
  const std::scoped_lock lock(user_mutex_);
  if (!media::import_user_data(user_data_, path, problem)) return false;
  writer_->post([](Writer &writer) { writer.take_user_data(); });
  return true;
}

void Index::note_removed(const std::string &path) {
  const gint32 id = reader_.id_of_path(path);
  if (id == 0) return;
  shared_.views.hide(id);
  writer_->post([path, id](Writer &writer) { writer.lose_path(path, id); });
  Announcer::instance().announce(MEDIA_INDEX_ROWS_CHANGED);
}

void note_removed(const std::string &path) {
  if (const auto index = Index::current()) index->note_removed(path);
}

}  // namespace phone::media

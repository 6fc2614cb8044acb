#include "media-browser/writer.hpp"

#include <algorithm>

#include "media-browser/schema.hpp"

namespace phone::media {

namespace {

using std::chrono::milliseconds;

/// Changes of one transaction.
constexpr std::size_t kPortion = 1000;
/// The first files of an empty index show before a whole portion is there.
constexpr std::size_t kFirstPortion = 64;
constexpr milliseconds kLongestTransaction{100};
/// Work that may wait before scanners have to.
constexpr std::size_t kMostJobs = 64;
constexpr milliseconds kPublishPause{100};
/// SQLite asks this often, in steps of its machine, whether a check goes on.
constexpr int kCheckSteps = 10'000;
constexpr const char *kUserGeneration = "user_generation";
constexpr const char *kLastId = "last_id";
constexpr gint64 kTombstoneDays = 30;

std::string sentence_for(int code) {
  if ((code & 0xff) == SQLITE_FULL) {
    return "The disk is full, so new pictures cannot be added to the list.";
  }
  return std::string("New pictures cannot be added to the list: ") + sqlite3_errstr(code) + ".";
}

}  // namespace

Writer::Writer(IndexStorage &storage, Database database, UserData &user_data, Shared &shared)
    : storage_(storage), user_data_(user_data), shared_(shared), database_(std::move(database)) {}

Writer::~Writer() = default;

void Writer::post(Job job) {
  const std::scoped_lock lock(mutex_);
  jobs_.push_back(std::move(job));
  work_.notify_one();
}

void Writer::post_when_due(Job job) {
  std::unique_lock lock(mutex_);
  room_.wait(lock, [this] { return jobs_.size() < kMostJobs || shared_.stopping; });
  jobs_.push_back(std::move(job));
  work_.notify_one();
}

void Writer::wake() {
  const std::scoped_lock lock(mutex_);
  woken_ = true;
  work_.notify_one();
  room_.notify_all();
}

bool Writer::wait_for_work() {
  std::unique_lock lock(mutex_);
  const auto ready = [this] { return !jobs_.empty() || woken_ || shared_.stopping; };
  if (in_transaction_) {
    work_.wait_until(lock, began_ + kLongestTransaction, ready);
  } else if (!touched_.empty()) {
    work_.wait_for(lock, kPublishPause, ready);
  } else {
    work_.wait(lock, ready);
  }
  woken_ = false;
  return !jobs_.empty();
}

void Writer::run() {
  database_.run("PRAGMA cache_size = -8000");
  work([](Writer &self) { self.prepare(); });
  while (!shared_.stopping) {
    if (wait_for_work()) {
      Job job;
      {
        const std::scoped_lock lock(mutex_);
        job = std::move(jobs_.front());
        jobs_.pop_front();
        room_.notify_one();
      }
      work(job);
    }
    work([](Writer &self) {
      self.commit_if_due();
      if (self.publish_is_due()) self.publish();
      self.make_wanted_orders();
    });
  }
  work([](Writer &self) { self.commit(); });
  tables_.reset();
  orders_.reset();
  database_.close();
}

void Writer::work(const Job &job) {
  try {
    job(*this);
  } catch (const IndexFailure &failure) {
    fail(failure);
  }
}

void Writer::prepare() {
  tables_ = std::make_unique<Tables>(database_);
  orders_ = std::make_unique<OrderBuilder>(database_);
  reload();
  tell_ready();
  make_wanted_orders();
  check_file();
  follow_user_data();
  purge_tombstones();
  commit();
  if (!touched_.empty()) publish();
}

void Writer::check_file() {
  const auto stop = [](void *shared) { return static_cast<Shared *>(shared)->stopping ? 1 : 0; };
  sqlite3_progress_handler(database_.get(), kCheckSteps, stop, &shared_);
  const int code = quick_check(database_);
  sqlite3_progress_handler(database_.get(), 0, nullptr, nullptr);
  if (is_damage(code)) throw IndexFailure{code};
}

void Writer::reload() {
  albums_.clear();
  album_of_path_.clear();
  changed_albums_.clear();
  stale_albums_.clear();
  for (AlbumRow &album : tables_->albums()) {
    if (!album.path.empty()) album_of_path_[album.path] = album.id;
    albums_[album.id] = std::move(album);
  }
  gint64 files = 0;
  for (const int file_class : kClasses) {
    files += counts_[file_class] = tables_->files_of_class(file_class);
  }
  shared_.progress.set_media_files(static_cast<guint64>(files));
  const auto known = static_cast<gint32>(tables_->meta(kLastId, 0));
  last_id_ = std::max({last_id_, known, tables_->largest_id()});
}

void Writer::follow_user_data() {
  const gint64 generation = user_data_.generation();
  if (generation < 0 || tables_->meta(kUserGeneration, -1) == generation) return;
  begin();
  user_data_.each([this](std::string_view path, const UserData::File &known) {
    const std::size_t slash = path.rfind('/');
    const auto album = album_of_path_.find(std::string(path.substr(0, slash)));
    if (album == album_of_path_.end()) return;
    const auto file = tables_->by_name(album->second, path.substr(slash + 1));
    if (!file || (file->user_flags == known.flags && file->nfid == known.nfid)) return;
    tables_->set_user_data(file->id, known.flags, known.nfid);
    ++changes_;
  });
  tables_->set_meta(kUserGeneration, generation);
}

void Writer::purge_tombstones() {
  begin();
  tables_->purge(g_get_real_time() / G_USEC_PER_SEC - kTombstoneDays * 24 * 60 * 60);
}

void Writer::begin() {
  if (in_transaction_) return;
  const int code = database_.run("BEGIN IMMEDIATE");
  if (code != SQLITE_OK) throw IndexFailure{code};
  in_transaction_ = true;
  changes_ = 0;
  began_ = Clock::now();
}

bool Writer::commit_is_due() const {
  if (!in_transaction_) return false;
  if (!scanning_ || changes_ >= kPortion) return true;
  if (!shared_.ready && changes_ >= kFirstPortion) return true;
  return Clock::now() >= began_ + kLongestTransaction;
}

void Writer::commit_if_due() {
  if (!commit_is_due()) return;
  if (!scanning_) {
    const std::scoped_lock lock(mutex_);
    if (!jobs_.empty() && changes_ < kPortion) return;
  }
  commit();
}

void Writer::commit() {
  if (!in_transaction_) return;
  store_albums();
  for (const auto &[file_class, files] : counts_) tables_->store_count(file_class, files);
  tables_->set_meta(kLastId, last_id_);
  // First, because a scan finds a renamed file again, but nothing tells whose favourite it was.
  if (!user_news_.empty()) user_data_.follow(std::exchange(user_news_, {}));
  const int code = database_.run("COMMIT");
  if (code != SQLITE_OK) throw IndexFailure{code};
  in_transaction_ = false;
  if (std::exchange(folders_moved_, false)) ++shared_.folders_version;
  gint64 files = 0;
  for (const auto &[file_class, number] : counts_) files += number;
  shared_.progress.set_media_files(static_cast<guint64>(files));
}

void Writer::fail(const IndexFailure &failure) {
  database_.run("ROLLBACK");
  in_transaction_ = false;
  user_news_ = {};
  left_thumbnails_.clear();
  // Readers go on without these files, although the index could not forget them.
  buried_for_readers_.clear();
  if (is_damage(failure.code)) {
    make_anew();
    return;
  }
  if (refusal_ == 0) shared_.progress.problem(sentence_for(failure.code));
  refusal_ = failure.code;
  try {
    reload();
  } catch (const IndexFailure &again) {
    if (is_damage(again.code)) make_anew();
  }
}

void Writer::make_anew() {
  shared_.progress.lasting_problem("The list of pictures was damaged. It is being made anew.");
  tables_.reset();
  orders_.reset();
  database_.keep_log_on_close();
  database_.close();
  storage_.set_aside();
  const int code = storage_.open_for_writing(database_);
  // Without a file every statement is empty, and each use of one fails with SQLITE_MISUSE.
  tables_ = std::make_unique<Tables>(database_);
  orders_ = std::make_unique<OrderBuilder>(database_);
  shared_.views.clear();
  ++shared_.file_version;
  ++shared_.folders_version;
  touched_.clear();
  refusal_ = code;
  if (code == SQLITE_OK) {
    try {
      reload();
    } catch (const IndexFailure &failure) {
      refusal_ = failure.code;
    }
  }
  Announcer::instance().announce(MEDIA_INDEX_ROWS_CHANGED);
  if (made_anew_) made_anew_();
}

void Writer::begin_scan() {
  scanning_ = true;
  refusal_ = 0;
}

void Writer::end_scan() {
  scanning_ = false;
  settle();
  // What a long scan has gathered is of no use to the next small change, nor to the next start.
  database_.run("PRAGMA wal_checkpoint(PASSIVE)");
  sqlite3_db_release_memory(database_.get());
}

void Writer::settle() {
  store_replacements();
  commit();
  publish();
  drop_thumbnails();
}

}  // namespace phone::media

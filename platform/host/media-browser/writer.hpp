/// The index thread: the only one that writes the index.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "media-browser/order-builder.hpp"
#include "media-browser/shared.hpp"
#include "media-browser/storage.hpp"
#include "media-browser/tables.hpp"
#include "media-browser/user-data.hpp"

namespace phone::media {

class Writer {
 public:
  using Job = std::function<void(Writer &)>;

  /// Takes over the open index.
  Writer(IndexStorage &storage, Database database, UserData &user_data, Shared &shared);
  ~Writer();

  /// Called on the index thread when the index was made anew and everything must be found again.
  void set_made_anew_hook(std::function<void()> hook) { made_anew_ = std::move(hook); }
  /// The thread's function: works until Shared::stopping, then stores what it has.
  void run();
  /// Wakes the thread, e.g. to see that it has to stop. Any thread.
  void wake();

  /// Adds work for the index thread. Any thread.
  void post(Job job);
  /// The same for a scanner: waits while there is a lot of work.
  void post_when_due(Job job);

  // For jobs, on the index thread.

  void store(const std::vector<Found> &files);
  void lose(const std::vector<Lost> &files);
  /// All files of a folder have gone.
  void lose_folder(gint32 album);
  /// A folder is on another device.
  void refresh_folder(gint32 album, const Folder &folder);
  /// A folder has been renamed.
  void move_folder(gint32 album, const Folder &folder);
  /// A file has been removed by us; readers do not list it any more.
  void lose_path(const std::string &path, gint32 id);
  /// @param generation of the user's data, of which the index then has everything
  void set_user_data(gint32 id, const UserData::File &known, gint64 generation);
  /// Takes everything that has been said about files by others meanwhile, and shows it.
  void take_user_data();
  /// Readers take from now on from the index what they were told ahead of it.
  void show_user_data(gint32 id, guint64 ticket);
  /// Between the two, changes are gathered into larger portions.
  void begin_scan();
  void end_scan();
  /// Looks through the file; one that is damaged is set aside and made anew.
  void check_file();
  /// Stores and shows everything up to here.
  void settle();
  /// Whether the index has taken everything since the last begin_scan().
  [[nodiscard]] bool is_complete() const { return refusal_ == 0; }

 private:
  using Clock = std::chrono::steady_clock;

  bool wait_for_work();
  void work(const Job &job);
  void prepare();
  void reload();
  void follow_user_data();
  void purge_tombstones();
  void begin();
  void commit();
  void commit_if_due();
  [[nodiscard]] bool commit_is_due() const;
  void fail(const IndexFailure &failure);
  void make_anew();

  void publish();
  [[nodiscard]] bool publish_is_due() const;
  void make_wanted_orders();
  void tell_ready();

  AlbumRow &album_of(const Folder &folder);
  void take_identity(AlbumRow &album, const Folder &folder);
  void displace(AlbumRow &album);
  void count_in(AlbumRow &album, int kind, gint64 date, gint32 id);
  void count_out(AlbumRow &album, const FileRow &file);
  /// Takes an album's files out of the numbers of files of each class.
  void leave_counts(const AlbumRow &album);
  void store_albums();
  [[nodiscard]] std::string path_of(const FileRow &file) const;

  void store_one(const Found &found);
  void store_replacements();
  void add(AlbumRow &album, const Found &found);
  /// What people have said of a file that is new here, wherever they said it.
  UserData::File told_of(const std::string &path, const FileState &state);
  void replace(const FileRow &row, AlbumRow &album, const Found &found);
  void bury(const FileRow &row);
  /// Has the thumbnail of a file as it was removed, unless the file is found again.
  void leave_thumbnail(const FileRow &row);
  void drop_thumbnails();
  [[nodiscard]] std::optional<FileRow> moved_from(const Found &found) const;

  IndexStorage &storage_;
  UserData &user_data_;
  Shared &shared_;
  std::function<void()> made_anew_;

  std::mutex mutex_;
  std::condition_variable work_;
  std::condition_variable room_;
  std::deque<Job> jobs_;
  bool woken_ = false;

  Database database_;
  std::unique_ptr<Tables> tables_;
  std::unique_ptr<OrderBuilder> orders_;
  std::unordered_map<gint32, AlbumRow> albums_;
  std::unordered_map<std::string, gint32> album_of_path_;
  std::map<int, gint64> counts_;
  gint32 last_id_ = 0;

  bool in_transaction_ = false;
  std::size_t changes_ = 0;
  Clock::time_point began_;
  bool folders_moved_ = false;
  /// Files in whose place the index knows others: stored when those have been found under their
  /// new names or not at all.
  std::vector<Found> replacements_;
  bool at_the_end_ = false;
  /// Files that have gone or changed since the last settle(), with their last paths.
  std::vector<std::pair<std::string, FileRow>> left_thumbnails_;
  std::set<gint32> changed_albums_;
  std::set<gint32> stale_albums_;
  UserData::News user_news_;

  bool scanning_ = false;
  /// SQLite's code for why nothing is stored until the next scan; 0 when it is.
  int refusal_ = 0;
  std::vector<gint32> touched_;
  std::vector<gint32> buried_for_readers_;
  Clock::time_point last_publish_{};
  Clock::duration publish_cost_{};
};

}  // namespace phone::media

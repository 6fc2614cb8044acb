/// The index that is open: its files, its threads and what reads it.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "media-browser/probe.hpp"
#include "media-browser/reader.hpp"
#include "media-browser/walker.hpp"
#include "media-browser/writer.hpp"

namespace phone::media {

/// Error codes of the service's functions.
enum ServiceError : int {
  kNotRunning = 1,   ///< no index is open
  kNotFound = 2,     ///< nothing has this id or path
  kBadArgument = 3,  ///< an argument that the service does not know
  kNotWritten = 4,   ///< the change could not be stored
  kNotRead = 5,      ///< the index could not be read
};

/// Threads hold a reference, so an index whose scanner hangs on a dead disk can be left behind.
class Index : public std::enable_shared_from_this<Index> {
 public:
  /// Opens the index of some roots. @return NULL with a sentence for the user on failure
  static std::shared_ptr<Index> open(const std::vector<std::string> &roots, std::string &problem);
  /// The index that is open; NULL when none is. Any thread.
  static std::shared_ptr<Index> current();
  static void set_current(std::shared_ptr<Index> index);

  Index(const std::vector<std::string> &roots, std::string &user_problem);

  void start();
  void stop();
  void rescan() { walker_->rescan(); }
  [[nodiscard]] Reader &reader() { return reader_; }
  [[nodiscard]] UserData &user_data() { return user_data_; }
  [[nodiscard]] Shared &shared() { return shared_; }
  /// Has the file looked through when a reading has met something damaged.
  void check_after_reading();

  /// Sets or clears kFavourite or kMarked. @return false when it could not be stored
  [[nodiscard]] bool set_flag(gint32 id, int flag, bool on);
  [[nodiscard]] bool set_nfid(gint32 id, gint64 nfid);
  /// As phone::media::import_user_data(); the lists show it soon.
  [[nodiscard]] bool import_user_data(const std::string &path, std::string &problem);
  /// Whether a path is where this index lists pictures.
  [[nodiscard]] bool covers(const std::string &path) const;
  /// A file has been removed; it is listed no more from now on.
  void note_removed(const std::string &path);

 private:
  struct Worker {
    std::thread thread;
    std::shared_ptr<std::atomic<bool>> ended;
  };

  template <typename Function>
  void run_thread(const char *name, int nice, Function function);
  [[nodiscard]] bool change_user_data(gint32 id,
                                      const std::function<void(UserData::File &)> &change);

  std::vector<std::string> roots_;
  /// The same with their links followed.
  std::vector<std::string> real_roots_;
  Shared shared_;
  IndexStorage storage_;
  UserData user_data_;
  std::mutex user_mutex_;
  Reader reader_;
  std::unique_ptr<Writer> writer_;
  std::unique_ptr<ProbePool> pool_;
  std::unique_ptr<Walker> walker_;
  std::vector<Worker> workers_;
};

}  // namespace phone::media

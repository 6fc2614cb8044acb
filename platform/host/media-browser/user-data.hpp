/// What people have said about their files. No scan can make it again, so it has a file of its
/// own, is synced with every commit, and names files by path and identity instead of by id.
#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "media-browser/file-state.hpp"
#include "media-browser/sqlite.hpp"

namespace phone::media {

inline constexpr int kFavourite = 1;
inline constexpr int kMarked = 2;

/// Any thread.
class UserData {
 public:
  struct File {
    int flags = 0;
    gint64 nfid = 0;

    [[nodiscard]] bool empty() const { return flags == 0 && nfid == 0; }
    bool operator==(const File &) const = default;
  };
  struct Change {
    std::string old_path;
    guint64 old_inode;
    std::string new_path;
    FileState new_state;
  };

  /// @param problem set to a sentence for the user when something is wrong, else empty
  explicit UserData(std::string &problem);

  /// What is known of a file. A file is known by its identity, wherever it lies, and by its path
  /// unless it has been seen to go from there.
  [[nodiscard]] File find(std::string_view path, const FileState &state) const;
  /// What is known of a file, and where it was when it became known.
  struct Known {
    File file;
    std::string path;
    guint64 inode = 0;
    bool copied = false;  ///< known by name, size and time only: moved to another file system
  };
  /// As find(), for a file that has just been found.
  [[nodiscard]] Known look_up(std::string_view path, const FileState &state) const;
  /// Whether nothing is known of any file.
  [[nodiscard]] bool empty() const;
  /// @return the generation from then on; -1 when it could not be written, and nothing has changed
  [[nodiscard]] gint64 set(std::string_view path, const FileState &state, const File &file);

  /// What has happened to files and folders since people said something about them.
  struct News {
    std::vector<Change> changes;    ///< files that were renamed or changed
    std::vector<Change> copies;     ///< files that were moved from another file system
    std::vector<std::string> gone;  ///< files
    std::vector<std::pair<std::string, std::string>> folders;  ///< old and new paths

    [[nodiscard]] bool empty() const {
      return changes.empty() && copies.empty() && gone.empty() && folders.empty();
    }
  };
  bool follow(const News &news);
  /// Runs a function that adds to what is known, in a transaction that is kept when it returns
  /// true. Those who have read before see that they have to read again.
  [[nodiscard]] bool add(const std::function<bool(const Database &)> &function);

  /// Walks everything that is known of files that have not gone.
  void each(const std::function<void(std::string_view path, const File &file)> &visit) const;
  /// Grows with every change of what is said about files.
  [[nodiscard]] gint64 generation() const;

  /// Runs a function alone on the connection; it is closed when the file cannot be used.
  template <typename Function>
  auto with(Function function) const {
    const std::scoped_lock lock(mutex_);
    return function(database_);
  }
  /// As with(), in a transaction that is kept when the function returns true.
  bool change(const std::function<bool(const Database &)> &function) const;

 private:
  [[nodiscard]] Known find_locked(std::string_view path, const FileState &state) const;
  bool change_locked(const std::function<bool(const Database &)> &function) const;

  mutable std::mutex mutex_;
  Database database_;
  Statement by_path_;
  Statement by_identity_;
  Statement by_time_;
  bool empty_ = true;
};

}  // namespace phone::media

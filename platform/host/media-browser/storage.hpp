/// Where the database files lie, and what is done with broken ones.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "media-browser/sqlite.hpp"

namespace phone::media {

/// Our folder in the user's data home; made (mode 0700) when it is missing and can be made.
std::string data_folder();

/// Roots made absolute, sorted, without repeats and final slashes. Links are left as they are: a
/// root is where the user says it is.
std::vector<std::string> canonical_roots(const std::vector<std::string> &roots);

/// Name of the index of a set of canonical roots: another set has another index.
std::string index_name(const std::vector<std::string> &roots);

/// The index file of a set of roots, held against other processes for as long as this lives.
class IndexStorage {
 public:
  /// Finds a place where the index can be kept. When the data home cannot be written, or another
  /// process has this index, the index lies in a private temporary folder and goes with this
  /// object.
  /// @param roots canonical roots
  explicit IndexStorage(const std::vector<std::string> &roots);
  ~IndexStorage();
  IndexStorage(const IndexStorage &) = delete;
  IndexStorage &operator=(const IndexStorage &) = delete;

  /// Opens the index for writing. A broken or foreign file is set aside and a new one made.
  /// @return SQLITE_OK, or SQLite's code when there can be no index at all
  [[nodiscard]] int open_for_writing(Database &database);
  /// Opens the index for reading.
  [[nodiscard]] int open_for_reading(Database &database) const;
  /// Renames the index, so that the next opening makes a new one. Connections that have it open
  /// keep it until they close.
  void set_aside() const;

  [[nodiscard]] const std::string &path() const { return path_; }
  /// Sentences for the user about what went wrong so far, oldest first.
  [[nodiscard]] const std::vector<std::string> &problems() const { return problems_; }

 private:
  bool hold(const std::string &path);
  void use_temporary_folder(const std::string &why);
  int open_once(Database &database, bool &damaged);

  std::string path_;
  std::string temporary_folder_;
  int lock_ = -1;
  std::vector<std::string> problems_;
};

/// Opens the file of the user's data for reading and writing. A broken one is set aside.
/// @param problem set to a sentence for the user when something is wrong, else empty
/// @return whether it is open
[[nodiscard]] bool open_user_data(Database &database, std::string &problem);

}  // namespace phone::media

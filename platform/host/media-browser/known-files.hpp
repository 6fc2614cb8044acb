/// What the index has of one folder, in few bytes a file.
#pragma once

#include <vector>

#include "media-browser/found.hpp"
#include "media-browser/sqlite.hpp"

namespace phone::media {

/// The scanner's reading side of the index.
class KnownFiles {
 public:
  explicit KnownFiles(const Database &database);

  /// Loads a folder's files; an album of 0 has none. @return false when reading fails
  [[nodiscard]] bool load(gint32 album);

  enum class Answer { kUnchanged, kChanged, kUnknown };
  /// Compares a file with what is known, and remembers that it is there.
  Answer see(std::string_view name, const FileState &state);
  /// A file that is there but cannot be looked at.
  void keep(std::string_view name);
  /// Files that have not been seen since load().
  [[nodiscard]] std::vector<Lost> unseen() const;

  /// A single file of an album. @return its row; id 0 when it is not known
  struct Single {
    gint32 id = 0;
    FileState state;
  };
  [[nodiscard]] Single find(gint32 album, std::string_view name) const;

 private:
  struct Known {
    std::size_t name;   ///< hash
    std::size_t state;  ///< hash
    gint32 id;
    bool seen;
  };

  Known *find_loaded(std::string_view name);

  Statement of_album_;
  Statement name_of_;
  Statement single_;
  gint32 album_ = 0;
  std::vector<Known> files_;
};

}  // namespace phone::media

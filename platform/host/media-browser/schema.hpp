/// The tables of the two database files, and their versions.
#pragma once

#include "media-browser/sqlite.hpp"

namespace phone::media {

/// Version of the index that this program writes.
inline constexpr int kIndexVersion = 2;
/// Version of the user's data that this program writes.
inline constexpr int kUserVersion = 2;

enum class Prepared {
  kReady,
  kNewer,    ///< written by a later program, and left as it is
  kForeign,  ///< a database, but not one of ours
  kFailed,
};

/// Brings an index file to the current version. What a scan can make again is synced seldom.
/// @param code set to SQLite's code for kFailed
[[nodiscard]] Prepared prepare_index(const Database &database, int &code);

/// Brings the file of the user's data to the current version. Each commit is on the disk when it
/// returns.
/// @param code set to SQLite's code for kFailed
[[nodiscard]] Prepared prepare_user_data(const Database &database, int &code);

/// Looks through the whole file. @return SQLITE_OK, SQLITE_CORRUPT, or why it could not be told
[[nodiscard]] int quick_check(const Database &database);

}  // namespace phone::media

#include "media-browser/schema.hpp"

#include <array>
#include <span>
#include <string>

namespace phone::media {

namespace {

/// What takes a file from a version to the next one; element n leads to version n + 1.
using Migrations = std::span<const char *const>;

// files_by_date and files_by_size hold all that a page of rows shows, so that a page is read from
// one place.
// class: 0 for a file that has gone, else the kind with 16 added in a camera folder.
constexpr std::array<const char *, kIndexVersion> kIndexMigrations{R"sql(
CREATE TABLE meta(key TEXT PRIMARY KEY, value) WITHOUT ROWID;
CREATE TABLE albums(
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  path TEXT UNIQUE,
  device INTEGER NOT NULL,
  inode INTEGER NOT NULL,
  born INTEGER NOT NULL,
  camera INTEGER NOT NULL,
  pictures INTEGER NOT NULL DEFAULT 0,
  videos INTEGER NOT NULL DEFAULT 0,
  newest INTEGER NOT NULL DEFAULT 0,
  oldest INTEGER NOT NULL DEFAULT 0,
  last_added INTEGER NOT NULL DEFAULT 0);
CREATE INDEX albums_by_inode ON albums(inode);
CREATE TABLE counts(class INTEGER PRIMARY KEY, files INTEGER NOT NULL);
CREATE TABLE files(
  id INTEGER PRIMARY KEY,
  album INTEGER NOT NULL,
  class INTEGER NOT NULL,
  kind INTEGER NOT NULL,
  name TEXT NOT NULL,
  date INTEGER NOT NULL,
  size INTEGER NOT NULL,
  mtime INTEGER NOT NULL,
  inode INTEGER NOT NULL,
  width INTEGER NOT NULL,
  height INTEGER NOT NULL,
  orientation INTEGER NOT NULL,
  duration INTEGER NOT NULL,
  traits INTEGER NOT NULL,
  user_flags INTEGER NOT NULL DEFAULT 0,
  nfid INTEGER NOT NULL DEFAULT 0,
  gone INTEGER NOT NULL DEFAULT 0);
CREATE INDEX files_by_name ON files(name COLLATE filename, album, class);
CREATE INDEX files_by_date ON files(class, date, id, album, name, user_flags, nfid);
CREATE INDEX files_by_size ON files(class, size);
CREATE INDEX files_by_album ON files(album, class, date);
CREATE INDEX files_by_inode ON files(inode);
)sql",
                                                                   R"sql(
DROP INDEX files_by_size;
CREATE INDEX files_by_size ON files(class, size, id, album, name, user_flags, nfid);
)sql"};

// Paths and identities instead of ids: an index that is made anew gives other ids.
constexpr std::array<const char *, kUserVersion> kUserMigrations{R"sql(
CREATE TABLE meta(key TEXT PRIMARY KEY, value) WITHOUT ROWID;
INSERT INTO meta VALUES('generation', 0);
CREATE TABLE files(
  path TEXT PRIMARY KEY,
  inode INTEGER NOT NULL,
  size INTEGER NOT NULL,
  mtime INTEGER NOT NULL,
  flags INTEGER NOT NULL DEFAULT 0,
  nfid INTEGER NOT NULL DEFAULT 0,
  gone INTEGER NOT NULL DEFAULT 0) WITHOUT ROWID;
CREATE INDEX files_by_inode ON files(inode);
CREATE TABLE albums(path TEXT PRIMARY KEY, naid INTEGER NOT NULL) WITHOUT ROWID;
CREATE TABLE web_albums(
  id INTEGER PRIMARY KEY AUTOINCREMENT,
  naid INTEGER NOT NULL UNIQUE,
  kind INTEGER NOT NULL,
  name TEXT NOT NULL,
  cover TEXT NOT NULL,
  attribute INTEGER NOT NULL,
  files INTEGER NOT NULL);
CREATE TABLE web_files(
  nfid INTEGER PRIMARY KEY,
  attribute INTEGER NOT NULL,
  storage INTEGER NOT NULL,
  name TEXT NOT NULL,
  thumbnail TEXT NOT NULL,
  url TEXT NOT NULL,
  deleting INTEGER NOT NULL DEFAULT 0);
CREATE TABLE web_album_files(
  naid INTEGER NOT NULL,
  nfid INTEGER NOT NULL,
  PRIMARY KEY(naid, nfid)) WITHOUT ROWID;
)sql",
                                                                 R"sql(
CREATE INDEX files_by_time ON files(mtime, size);
)sql"};

struct Kind {
  int application;
  Migrations migrations;
  const char *pragmas;
};

constexpr Kind kIndex{0x50684d69, kIndexMigrations,
                      "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL;"
                      "PRAGMA wal_autocheckpoint = 4000; PRAGMA journal_size_limit = 16777216;"};
constexpr Kind kUserData{0x50684d75, kUserMigrations,
                         "PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL;"};

int migrate(const Database &database, const Kind &kind, int version) {
  for (auto next = static_cast<std::size_t>(version); next < kind.migrations.size(); ++next) {
    const std::string sql = "BEGIN IMMEDIATE;" + std::string(kind.migrations[next]) +
                            "PRAGMA application_id = " + std::to_string(kind.application) +
                            "; PRAGMA user_version = " + std::to_string(next + 1) + "; COMMIT;";
    const int code = database.run(sql.c_str());
    if (code != SQLITE_OK) {
      database.run("ROLLBACK");
      return code;
    }
  }
  return SQLITE_OK;
}

Prepared prepare(const Database &database, const Kind &kind, int &code) {
  code = database.run("SELECT count(*) FROM sqlite_schema");
  if (code != SQLITE_OK) return Prepared::kFailed;
  if (sqlite3_db_readonly(database.get(), "main") != 0) {
    code = SQLITE_READONLY;
    return Prepared::kFailed;
  }
  const gint64 application = database.ask("PRAGMA application_id", 0);
  const gint64 version = database.ask("PRAGMA user_version", 0);
  const bool empty = database.ask("SELECT count(*) FROM sqlite_schema", 1) == 0;
  if (application != kind.application && !(empty && application == 0 && version == 0)) {
    return Prepared::kForeign;
  }
  if (version > static_cast<gint64>(kind.migrations.size())) return Prepared::kNewer;
  if (version < 0) return Prepared::kForeign;
  code = database.run(kind.pragmas);
  if (code == SQLITE_OK) code = migrate(database, kind, static_cast<int>(version));
  return code == SQLITE_OK ? Prepared::kReady : Prepared::kFailed;
}

/// Whether somebody has changed the tables behind our back.
bool has_all_columns(const Database &database) {
  return database.prepare("SELECT key, value FROM meta") &&
         database.prepare("SELECT class, files FROM counts") &&
         database.prepare(
             "SELECT id, path, device, inode, born, camera, pictures, videos, newest, oldest, "
             "last_added "
             "FROM albums INDEXED BY albums_by_inode WHERE inode = 0") &&
         database.prepare(
             "SELECT id, album, class, kind, name, date, size, mtime, inode, width, height, "
             "orientation, duration, traits, user_flags, nfid, gone "
             "FROM files INDEXED BY files_by_inode WHERE inode = 0") &&
         database.prepare("SELECT id FROM files INDEXED BY files_by_date WHERE class = 0") &&
         database.prepare("SELECT id FROM files INDEXED BY files_by_size WHERE class = 0") &&
         database.prepare("SELECT id FROM files INDEXED BY files_by_album WHERE album = 0") &&
         database.prepare(
             "SELECT id FROM files INDEXED BY files_by_name WHERE name = '' COLLATE filename");
}

}  // namespace

Prepared prepare_index(const Database &database, int &code) {
  const Prepared result = prepare(database, kIndex, code);
  if (result != Prepared::kReady) return result;
  if (!has_all_columns(database)) return Prepared::kForeign;
  // The order of names is GLib's knowledge of letters; the index by name must follow it.
  const auto letters = static_cast<gint64>(glib_major_version * 1000 + glib_minor_version);
  if (database.ask("SELECT value FROM meta WHERE key = 'letters'", 0) == letters) return result;
  const std::string sql =
      "BEGIN IMMEDIATE; REINDEX files_by_name;"
      "INSERT OR REPLACE INTO meta VALUES('letters', " +
      std::to_string(letters) + "); COMMIT;";
  code = database.run(sql.c_str());
  if (code == SQLITE_OK) return result;
  database.run("ROLLBACK");
  return Prepared::kFailed;
}

Prepared prepare_user_data(const Database &database, int &code) {
  return prepare(database, kUserData, code);
}

int quick_check(const Database &database) {
  const Statement statement = database.prepare("PRAGMA quick_check(1)");
  Cursor row(statement);
  if (!row.next()) return row.failed() ? row.result() : SQLITE_CORRUPT;
  return row.text(0) == "ok" ? SQLITE_OK : SQLITE_CORRUPT;
}

}  // namespace phone::media

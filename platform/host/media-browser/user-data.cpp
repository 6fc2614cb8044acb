#include "media-browser/user-data.hpp"

#include <sys/stat.h>

#include "media-browser/storage.hpp"

namespace phone::media {

namespace {

constexpr const char *kCountUp = "UPDATE meta SET value = value + 1 WHERE key = 'generation'";

constexpr const char *kGeneration = "SELECT value FROM meta WHERE key = 'generation'";

UserData::File file_of(const Cursor &row) { return {row.number(0), row.integer(1)}; }

UserData::Known known_of(const Cursor &row) {
  return {file_of(row), std::string(row.text(2)), static_cast<guint64>(row.integer(3)), false};
}

std::string_view name_of(std::string_view path) { return path.substr(path.rfind('/') + 1); }

}  // namespace

UserData::UserData(std::string &problem) {
  if (!open_user_data(database_, problem)) return;
  by_path_ =
      database_.prepare("SELECT flags, nfid, path, inode FROM files WHERE path = ? AND gone = 0");
  by_identity_ = database_.prepare(
      "SELECT flags, nfid, path, inode FROM files WHERE inode = ? AND size = ? AND mtime = ?");
  by_time_ = database_.prepare(
      "SELECT flags, nfid, path, inode FROM files INDEXED BY files_by_time "
      "WHERE mtime = ? AND size = ?");
  empty_ = database_.ask("SELECT count(*) FROM (SELECT 1 FROM files LIMIT 1)", 0) == 0;
}

UserData::File UserData::find(std::string_view path, const FileState &state) const {
  const std::scoped_lock lock(mutex_);
  return find_locked(path, state).file;
}

UserData::Known UserData::find_locked(std::string_view path, const FileState &state) const {
  if (Cursor row(by_identity_, state.inode, state.size, state.mtime); row.next()) {
    return known_of(row);
  }
  if (Cursor row(by_path_, path); row.next()) return known_of(row);
  return {};
}

UserData::Known UserData::look_up(std::string_view path, const FileState &state) const {
  const std::scoped_lock lock(mutex_);
  Known known = find_locked(path, state);
  if (!known.path.empty()) return known;
  // A move to another file system keeps the name and the time of change to the nanosecond.
  Cursor row(by_time_, state.mtime, state.size);
  while (row.next()) {
    struct stat info;
    const std::string old_path(row.text(2));
    if (name_of(old_path) != name_of(path) || lstat(old_path.c_str(), &info) == 0) continue;
    known = known_of(row);
    known.copied = true;
    return known;
  }
  return known;
}

bool UserData::empty() const {
  const std::scoped_lock lock(mutex_);
  return empty_;
}

bool UserData::change_locked(const std::function<bool(const Database &)> &function) const {
  if (database_.run("BEGIN IMMEDIATE") != SQLITE_OK) return false;
  if (function(database_) && database_.run("COMMIT") == SQLITE_OK) return true;
  database_.run("ROLLBACK");
  return false;
}

bool UserData::change(const std::function<bool(const Database &)> &function) const {
  const std::scoped_lock lock(mutex_);
  return change_locked(function);
}

gint64 UserData::set(std::string_view path, const FileState &state, const File &file) {
  const std::scoped_lock lock(mutex_);
  gint64 generation = -1;
  const bool kept = change_locked([&](const Database &database) {
    const Statement statement = database.prepare(
        "INSERT OR REPLACE INTO files(path, inode, size, mtime, flags, nfid) "
        "VALUES(?, ?, ?, ?, ?, ?)");
    Cursor row(statement, path, state.inode, state.size, state.mtime, file.flags, file.nfid);
    if (!row.run() || database.run(kCountUp) != SQLITE_OK) return false;
    generation = database.ask(kGeneration, -1);
    return true;
  });
  if (!kept) return -1;
  empty_ = false;
  return generation;
}

bool UserData::follow(const News &news) {
  const std::scoped_lock lock(mutex_);
  return change_locked([&](const Database &database) {
    // Two files may swap their names, so every row leaves its path before any takes its new one.
    const Statement leave = database.prepare(
        "UPDATE OR REPLACE files SET path = ':' || ?1 || path "
        "WHERE path = ?2 AND inode = ?3");
    const Statement arrive = database.prepare(
        "UPDATE OR REPLACE files SET path = ?3, inode = ?4, size = ?5, mtime = ?6, gone = 0 "
        "WHERE path = ':' || ?1 || ?2");
    const Statement go = database.prepare("UPDATE files SET gone = 1 WHERE path = ?");
    bool good = true;
    const Statement copy = database.prepare(
        "INSERT OR IGNORE INTO files(path, inode, size, mtime, flags, nfid) "
        "SELECT ?2, ?3, ?4, ?5, flags, nfid FROM files WHERE path = ?1");
    for (const Change &change : news.copies) {
      good =
          good && Cursor(copy, std::string_view(change.old_path), std::string_view(change.new_path),
                         change.new_state.inode, change.new_state.size, change.new_state.mtime)
                      .run();
    }
    for (const std::string &path : news.gone) good = good && Cursor(go, path).run();
    int number = 0;
    for (const Change &change : news.changes) {
      good = good &&
             Cursor(leave, ++number, std::string_view(change.old_path), change.old_inode).run();
    }
    number = 0;
    for (const Change &change : news.changes) {
      good = good && Cursor(arrive, ++number, std::string_view(change.old_path),
                            std::string_view(change.new_path), change.new_state.inode,
                            change.new_state.size, change.new_state.mtime)
                         .run();
    }
    const Statement folder =
        database.prepare("UPDATE OR REPLACE albums SET path = ?2 WHERE path = ?1");
    for (const auto &[old_path, new_path] : news.folders) {
      good = good && Cursor(folder, std::string_view(old_path), std::string_view(new_path)).run();
    }
    return good && database.run(kCountUp) == SQLITE_OK;
  });
}

bool UserData::add(const std::function<bool(const Database &)> &function) {
  const std::scoped_lock lock(mutex_);
  const bool kept = change_locked([&function](const Database &database) {
    return function(database) && database.run(kCountUp) == SQLITE_OK;
  });
  if (kept) empty_ = false;
  return kept;
}

void UserData::each(
    const std::function<void(std::string_view path, const File &file)> &visit) const {
  const std::scoped_lock lock(mutex_);
  const Statement all = database_.prepare("SELECT flags, nfid, path FROM files WHERE gone = 0");
  for (Cursor row(all); row.next();) visit(row.text(2), file_of(row));
}

gint64 UserData::generation() const {
  const std::scoped_lock lock(mutex_);
  return database_.ask(kGeneration, -1);
}

}  // namespace phone::media

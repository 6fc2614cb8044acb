#include "media-browser/tables.hpp"

#include "media-browser/query.hpp"

namespace phone::media {

namespace {

#define FILE_COLUMNS \
  "id, album, class, kind, name, date, inode, size, mtime, user_flags, nfid FROM files "

FileRow file_of(const Cursor &row) {
  FileRow file;
  file.id = row.number(0);
  file.album = row.number(1);
  file.file_class = row.number(2);
  file.kind = row.number(3);
  file.name = row.text(4);
  file.date = row.integer(5);
  file.state = {static_cast<guint64>(row.integer(6)), row.integer(7), row.integer(8)};
  file.user_flags = row.number(9);
  file.nfid = row.integer(10);
  return file;
}

void check(const Cursor &row) {
  if (row.failed()) throw IndexFailure{row.result()};
}

void run(Cursor &&row) {
  if (!row.run()) throw IndexFailure{row.result()};
}

}  // namespace

int class_in(const AlbumRow &album, int kind) { return kind | (album.camera ? kCameraClass : 0); }

Tables::Tables(const Database &database)
    : albums_(database.prepare(
          "SELECT id, path, device, inode, born, camera, pictures, videos, newest, "
          "oldest, last_added FROM albums")),
      add_album_(database.prepare("INSERT INTO albums(path, device, inode, born, camera) VALUES(?, "
                                  "?, ?, ?, ?) RETURNING id")),
      store_album_(database.prepare(
          "UPDATE albums SET path = ?2, device = ?3, inode = ?4, born = ?5, camera = ?6, "
          "pictures = ?7, videos = ?8, newest = ?9, oldest = ?10, last_added = ?11 WHERE id = ?1")),
      first_date_(database.prepare("SELECT date FROM files INDEXED BY files_by_album "
                                   "WHERE album = ? AND class = ? ORDER BY date LIMIT 1")),
      last_date_(database.prepare("SELECT date FROM files INDEXED BY files_by_album "
                                  "WHERE album = ? AND class = ? ORDER BY date DESC LIMIT 1")),
      last_added_(database.prepare("SELECT max(id) FROM files INDEXED BY files_by_album "
                                   "WHERE album = ? AND class != 0")),
      by_id_(database.prepare("SELECT " FILE_COLUMNS "WHERE id = ?")),
      by_name_(database.prepare("SELECT " FILE_COLUMNS "INDEXED BY files_by_name "
                                "WHERE name = ? COLLATE filename AND album = ? AND class > 0")),
      by_identity_(database.prepare("SELECT " FILE_COLUMNS "INDEXED BY files_by_inode "
                                    "WHERE inode = ? AND size = ? AND mtime = ? "
                                    "ORDER BY class = 0 DESC LIMIT 16")),
      ids_of_album_(database.prepare("SELECT id FROM files INDEXED BY files_by_album "
                                     "WHERE album = ? AND class > 0")),
      told_of_album_(database.prepare("SELECT " FILE_COLUMNS
                                      "INDEXED BY files_by_album WHERE album = ? AND class > 0 "
                                      "AND (user_flags != 0 OR nfid != 0)")),
      bury_album_(database.prepare("UPDATE files INDEXED BY files_by_album SET class = 0, "
                                   "gone = ?2 WHERE album = ?1 AND class > 0")),
      set_camera_(database.prepare("UPDATE files INDEXED BY files_by_album SET class = kind | ?2 "
                                   "WHERE album = ?1 AND class > 0")),
      add_file_(database.prepare(
          "INSERT INTO files(id, album, class, kind, name, date, inode, size, mtime, width, "
          "height, orientation, duration, traits, user_flags, nfid) "
          "VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")),
      store_file_(database.prepare(
          "UPDATE files SET album = ?2, class = ?3, kind = ?4, name = ?5, date = ?6, inode = ?7, "
          "size = ?8, mtime = ?9, width = ?10, height = ?11, orientation = ?12, duration = ?13, "
          "traits = ?14, gone = 0 WHERE id = ?1")),
      set_class_(database.prepare("UPDATE files SET class = ?2, gone = ?3 WHERE id = ?1")),
      set_user_data_(database.prepare("UPDATE files SET user_flags = ?2, nfid = ?3 WHERE id = ?1")),
      count_(database.prepare("SELECT files FROM counts WHERE class = ?")),
      store_count_(database.prepare("INSERT OR REPLACE INTO counts VALUES(?, ?)")),
      meta_(database.prepare("SELECT value FROM meta WHERE key = ?")),
      set_meta_(database.prepare("INSERT OR REPLACE INTO meta VALUES(?, ?)")),
      largest_id_(database.prepare("SELECT max(id) FROM files")),
      purge_(database.prepare("DELETE FROM files WHERE class = 0 AND gone < ?")) {}

std::vector<AlbumRow> Tables::albums() const {
  std::vector<AlbumRow> all;
  Cursor row(albums_);
  while (row.next()) {
    AlbumRow album;
    album.id = row.number(0);
    album.path = row.text(1);
    album.device = static_cast<guint64>(row.integer(2));
    album.inode = static_cast<guint64>(row.integer(3));
    album.born = row.integer(4);
    album.camera = row.number(5) != 0;
    album.pictures = row.integer(6);
    album.videos = row.integer(7);
    album.newest = row.integer(8);
    album.oldest = row.integer(9);
    album.last_added = row.number(10);
    all.push_back(std::move(album));
  }
  check(row);
  return all;
}

gint32 Tables::add_album(const AlbumRow &album) {
  Cursor row(add_album_, std::string_view(album.path), album.device, album.inode, album.born,
             album.camera ? 1 : 0);
  if (!row.next()) throw IndexFailure{row.result()};
  const gint32 id = row.number(0);
  row.next();
  check(row);
  return id;
}

void Tables::store_album(const AlbumRow &album) {
  const auto store = [&](const auto &path) {
    run(Cursor(store_album_, album.id, path, album.device, album.inode, album.born,
               album.camera ? 1 : 0, album.pictures, album.videos, album.newest, album.oldest,
               album.last_added));
  };
  if (album.path.empty()) {
    store(nullptr);
  } else {
    store(std::string_view(album.path));
  }
}

void Tables::recount(AlbumRow &album) const {
  bool any = false;
  album.newest = 0;
  album.oldest = 0;
  for (const int file_class : kClasses) {
    Cursor first(first_date_, album.id, file_class);
    if (!first.next()) {
      check(first);
      continue;
    }
    Cursor last(last_date_, album.id, file_class);
    last.next();
    check(last);
    album.oldest = any ? std::min(album.oldest, first.integer(0)) : first.integer(0);
    album.newest = any ? std::max(album.newest, last.integer(0)) : last.integer(0);
    any = true;
  }
  Cursor added(last_added_, album.id);
  added.next();
  check(added);
  album.last_added = added.number(0);
}

std::optional<FileRow> Tables::by_id(gint32 id) const {
  Cursor row(by_id_, id);
  if (row.next()) return file_of(row);
  check(row);
  return std::nullopt;
}

std::optional<FileRow> Tables::by_name(gint32 album, std::string_view name) const {
  Cursor row(by_name_, name, album);
  if (row.next()) return file_of(row);
  check(row);
  return std::nullopt;
}

std::vector<FileRow> Tables::by_identity(const FileState &state) const {
  std::vector<FileRow> files;
  Cursor row(by_identity_, state.inode, state.size, state.mtime);
  while (row.next()) files.push_back(file_of(row));
  check(row);
  return files;
}

std::vector<gint32> Tables::ids_of_album(gint32 album) const {
  std::vector<gint32> ids;
  Cursor row(ids_of_album_, album);
  while (row.next()) ids.push_back(row.number(0));
  check(row);
  return ids;
}

std::vector<FileRow> Tables::told_of_album(gint32 album) const {
  std::vector<FileRow> files;
  Cursor row(told_of_album_, album);
  while (row.next()) files.push_back(file_of(row));
  check(row);
  return files;
}

void Tables::bury_album(gint32 album, gint64 gone) { run(Cursor(bury_album_, album, gone)); }

void Tables::set_camera(gint32 album, bool camera) {
  run(Cursor(set_camera_, album, camera ? kCameraClass : 0));
}

void Tables::add_file(gint32 id, gint32 album, int file_class, const Found &found, int user_flags,
                      gint64 nfid) {
  run(Cursor(add_file_, id, album, file_class, found.kind, std::string_view(found.name), found.date,
             found.state.inode, found.state.size, found.state.mtime, found.width, found.height,
             found.orientation, found.duration, found.traits, user_flags, nfid));
}

void Tables::store_file(gint32 id, gint32 album, int file_class, const Found &found) {
  run(Cursor(store_file_, id, album, file_class, found.kind, std::string_view(found.name),
             found.date, found.state.inode, found.state.size, found.state.mtime, found.width,
             found.height, found.orientation, found.duration, found.traits));
}

void Tables::set_class(gint32 id, int file_class, gint64 gone) {
  run(Cursor(set_class_, id, file_class, gone));
}

void Tables::set_user_data(gint32 id, int flags, gint64 nfid) {
  run(Cursor(set_user_data_, id, flags, nfid));
}

gint64 Tables::files_of_class(int file_class) const {
  Cursor row(count_, file_class);
  if (row.next()) return row.integer(0);
  check(row);
  return 0;
}

void Tables::store_count(int file_class, gint64 files) {
  run(Cursor(store_count_, file_class, files));
}

gint64 Tables::meta(const char *key, gint64 fallback) const {
  Cursor row(meta_, std::string_view(key));
  if (row.next()) return row.integer(0);
  check(row);
  return fallback;
}

void Tables::set_meta(const char *key, gint64 value) {
  run(Cursor(set_meta_, std::string_view(key), value));
}

gint32 Tables::largest_id() const {
  Cursor row(largest_id_);
  row.next();
  check(row);
  return row.number(0);
}

void Tables::purge(gint64 before) { run(Cursor(purge_, before)); }

}  // namespace phone::media

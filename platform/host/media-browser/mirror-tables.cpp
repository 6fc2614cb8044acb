#include "media-browser/mirror.hpp"

namespace phone::media::mirror {

namespace {

#define WEB_ALBUMS "SELECT id, naid, kind, name, cover, attribute, files FROM web_albums "

Album album_from(const Cursor &row) {
  Album album;
  album.number = row.number(0);
  album.naid = row.integer(1);
  album.kind = row.number(2);
  album.name = row.text(3);
  album.cover = row.text(4);
  album.attribute = row.number(5);
  album.files = row.number(6);
  return album;
}

template <typename... Values>
std::vector<Album> albums_where(const UserData &data, const char *sql, const Values &...values) {
  return data.with([&](const Database &database) {
    std::vector<Album> all;
    const Statement statement = database.prepare(sql);
    for (Cursor row(statement, values...); row.next();) all.push_back(album_from(row));
    return all;
  });
}

template <typename... Values>
std::optional<Album> album_where(const UserData &data, const char *sql, const Values &...values) {
  const std::vector<Album> found = albums_where(data, sql, values...);
  return found.empty() ? std::nullopt : std::optional(found.front());
}

template <typename... Values>
std::vector<gint64> ids_where(const UserData &data, const char *sql, const Values &...values) {
  return data.with([&](const Database &database) {
    std::vector<gint64> ids;
    const Statement statement = database.prepare(sql);
    for (Cursor row(statement, values...); row.next();) ids.push_back(row.integer(0));
    return ids;
  });
}

}  // namespace

std::vector<Album> albums(const UserData &data) { return albums_where(data, WEB_ALBUMS); }

std::optional<Album> album(const UserData &data, gint32 number) {
  return album_where(data, WEB_ALBUMS "WHERE id = ?", number);
}

std::optional<Album> album_by_naid(const UserData &data, gint64 naid) {
  return album_where(data, WEB_ALBUMS "WHERE naid = ?", naid);
}

std::optional<Album> drovo_album(const UserData &data) {
  return album_where(data, WEB_ALBUMS "WHERE kind = ?", kDrovoAlbum);
}

bool put_album(const UserData &data, const Album &album) {
  return data.change([&](const Database &database) {
    const Statement statement = database.prepare(
        "INSERT INTO web_albums(naid, kind, name, cover, attribute, files) "
        "VALUES(?1, ?2, ?3, ?4, ?5, ?6) ON CONFLICT(naid) DO UPDATE SET "
        "kind = ?2, name = ?3, cover = ?4, attribute = ?5, files = ?6");
    return Cursor(statement, album.naid, album.kind, std::string_view(album.name),
                  std::string_view(album.cover), album.attribute, album.files)
        .run();
  });
}

bool set_cover(const UserData &data, gint64 naid, std::string_view path) {
  return data.change([&](const Database &database) {
    const Statement statement = database.prepare("UPDATE web_albums SET cover = ? WHERE naid = ?");
    return Cursor(statement, path, naid).run() && sqlite3_changes(database.get()) == 1;
  });
}

std::optional<File> file(const UserData &data, gint64 nfid) {
  return data.with([&](const Database &database) -> std::optional<File> {
    const Statement statement = database.prepare(
        "SELECT attribute, storage, name, thumbnail, url, deleting FROM web_files WHERE nfid = ?");
    Cursor row(statement, nfid);
    if (!row.next()) return std::nullopt;
    File result;
    result.nfid = nfid;
    result.attribute = row.number(0);
    result.storage = row.number(1);
    result.name = row.text(2);
    result.thumbnail = row.text(3);
    result.url = row.text(4);
    result.deleting = row.number(5) != 0;
    return result;
  });
}

bool put_file(const UserData &data, const File &file, const std::vector<gint64> &naids) {
  return data.change([&](const Database &database) {
    const Statement put =
        database.prepare("INSERT OR REPLACE INTO web_files VALUES(?, ?, ?, ?, ?, ?, ?)");
    bool good =
        Cursor(put, file.nfid, file.attribute, file.storage, std::string_view(file.name),
               std::string_view(file.thumbnail), std::string_view(file.url), file.deleting ? 1 : 0)
            .run();
    const Statement join = database.prepare("INSERT OR IGNORE INTO web_album_files VALUES(?, ?)");
    for (const gint64 naid : naids) good = good && Cursor(join, naid, file.nfid).run();
    return good;
  });
}

std::vector<gint64> files(const UserData &data, gint64 naid) {
  if (naid == -1) {
    return ids_where(data, "SELECT nfid FROM web_files WHERE deleting = 0 ORDER BY nfid DESC");
  }
  return ids_where(data,
                   "SELECT nfid FROM web_album_files JOIN web_files USING(nfid) "
                   "WHERE naid = ? AND deleting = 0 ORDER BY nfid DESC",
                   naid);
}

bool remove_files(const UserData &data, gint64 naid, const std::vector<gint64> &nfids) {
  return data.change([&](const Database &database) {
    const Statement leave =
        database.prepare("DELETE FROM web_album_files WHERE naid = ? AND nfid = ?");
    const Statement forget = database.prepare(
        "DELETE FROM web_files WHERE nfid = ?1 AND NOT EXISTS"
        "(SELECT 1 FROM web_album_files WHERE nfid = ?1)");
    bool good = true;
    for (const gint64 nfid : nfids) {
      good = good && Cursor(leave, naid, nfid).run() && Cursor(forget, nfid).run();
    }
    return good;
  });
}

std::vector<gint64> local_copies(const UserData &data) {
  return ids_where(data, "SELECT nfid FROM files WHERE nfid > 0 AND gone = 0");
}

std::string local_path(const UserData &data, gint64 nfid) {
  return data.with([&](const Database &database) {
    const Statement statement =
        database.prepare("SELECT path FROM files WHERE nfid = ? AND gone = 0");
    Cursor row(statement, nfid);
    return row.next() ? std::string(row.text(0)) : std::string();
  });
}

std::unordered_map<std::string, gint64> naids_of_folders(const UserData &data) {
  return data.with([](const Database &database) {
    std::unordered_map<std::string, gint64> naids;
    const Statement statement = database.prepare("SELECT path, naid FROM albums");
    for (Cursor row(statement); row.next();) naids.emplace(row.text(0), row.integer(1));
    return naids;
  });
}

bool set_naid_of_folder(const UserData &data, std::string_view path, gint64 naid) {
  return data.change([&](const Database &database) {
    const Statement statement = database.prepare("INSERT OR REPLACE INTO albums VALUES(?, ?)");
    return Cursor(statement, path, naid).run();
  });
}

}  // namespace phone::media::mirror

#include <algorithm>

#include "media-browser/natural-order.hpp"
#include "media-browser/reader-statements.hpp"

namespace phone::media {

namespace {

#define ALBUM_COLUMNS                                                                         \
  "id, path, device, inode, born, camera, pictures, videos, newest, oldest, last_added FROM " \
  "albums "

struct Named {
  std::string name;
  gint32 id;
};

std::vector<gint32> ids_by_name(std::vector<Named> files) {
  std::sort(files.begin(), files.end(), [](const Named &a, const Named &b) {
    const int order = compare_naturally(a.name, b.name);
    return order != 0 ? order < 0 : a.id < b.id;
  });
  std::vector<gint32> ids(files.size());
  std::transform(files.begin(), files.end(), ids.begin(),
                 [](const Named &file) { return file.id; });
  return ids;
}

std::vector<gint32> ids_by_number(std::vector<std::pair<gint64, gint32>> files) {
  std::sort(files.begin(), files.end());
  std::vector<gint32> ids(files.size());
  std::transform(files.begin(), files.end(), ids.begin(),
                 [](const auto &file) { return file.second; });
  return ids;
}

/// @param column of an index that holds all that a page of rows shows
void prepare_walks(const Database &database, const std::string &column, Walks &walks) {
  const std::string select = "SELECT " + column +
                             ", id, album, name, user_flags, nfid FROM files INDEXED BY files_by_" +
                             column + " WHERE class = ?1 AND (" + column + ", id) ";
  for (std::size_t at = 0; at < kClasses.size(); ++at) {
    walks.from[at] = database.prepare((select + ">= (?2, ?3) ORDER BY " + column + ", id").c_str());
    walks.back_from[at] =
        database.prepare((select + "<= (?2, ?3) ORDER BY " + column + " DESC, id DESC").c_str());
  }
  walks.number_of_id =
      database.prepare(("SELECT " + column + " FROM files WHERE id = ? AND class > 0").c_str());
}

}  // namespace

Reader::Statements::Statements(const Database &database)
    : counts(database.prepare("SELECT class, files FROM counts")),
      file(database.prepare("SELECT album, class, kind, name, inode, size, mtime, user_flags, nfid "
                            "FROM files WHERE id = ?")),
      place(database.prepare("SELECT path, device FROM albums WHERE id = ?")),
      album_of_path(database.prepare("SELECT id FROM albums WHERE path = ?")),
      file_of_name(database.prepare("SELECT id FROM files INDEXED BY files_by_name "
                                    "WHERE name = ? COLLATE filename AND album = ? AND class > 0")),
      newest(database.prepare("SELECT date, id FROM files INDEXED BY files_by_date "
                              "WHERE class = ? ORDER BY date DESC, id DESC LIMIT ?")),
      oldest(database.prepare("SELECT date, id FROM files INDEXED BY files_by_date "
                              "WHERE class = ? ORDER BY date, id LIMIT ?")),
      largest(database.prepare("SELECT size, id FROM files INDEXED BY files_by_size "
                               "WHERE class = ? ORDER BY size DESC, id DESC LIMIT ?")),
      smallest(database.prepare("SELECT size, id FROM files INDEXED BY files_by_size "
                                "WHERE class = ? ORDER BY size, id LIMIT ?")),
      first_names(database.prepare("SELECT id, class FROM files INDEXED BY files_by_name "
                                   "ORDER BY name COLLATE filename, album, class, id")),
      last_names(
          database.prepare("SELECT id, class FROM files INDEXED BY files_by_name "
                           "ORDER BY name COLLATE filename DESC, album DESC, class DESC, id DESC")),
      first_added(database.prepare("SELECT id, class FROM files ORDER BY id")),
      last_added(database.prepare("SELECT id, class FROM files ORDER BY id DESC")),
      albums(database.prepare("SELECT " ALBUM_COLUMNS "WHERE pictures + videos > 0")),
      album(database.prepare("SELECT " ALBUM_COLUMNS "WHERE id = ?")),
      album_dates(database.prepare("SELECT id, class, date FROM files INDEXED BY files_by_album "
                                   "WHERE album = ? AND class > 0")),
      album_sizes(database.prepare("SELECT id, class, size FROM files INDEXED BY files_by_album "
                                   "WHERE album = ? AND class > 0")),
      album_names(database.prepare("SELECT id, class, name FROM files INDEXED BY files_by_album "
                                   "WHERE album = ? AND class > 0")) {
  prepare_walks(database, "date", by_date);
  prepare_walks(database, "size", by_size);
}

AlbumRow Reader::album_from(const Cursor &row) const {
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
  return album;
}

void Reader::leave_out_hidden(AlbumRow &album) {
  for (const gint32 id : ahead_.hidden) {
    const auto file = read_file(id);
    if (!file || file->gone() || file->album != album.id) continue;
    --(file->kind == kVideo ? album.videos : album.pictures);
    if (id != album.last_added) continue;
    const auto rest = read_album_files(album.id, {SortKey::kAdded, true}, kAllClasses);
    album.last_added = rest && !rest->empty() ? rest->front() : 0;
  }
}

std::optional<std::vector<AlbumRow>> Reader::albums() {
  const Reading reading(*this);
  if (!reading) return std::nullopt;
  std::vector<AlbumRow> all;
  {
    Cursor row(statements_->albums);
    while (row.next()) all.push_back(album_from(row));
    if (!good(row)) return std::nullopt;
  }
  for (AlbumRow &album : all) leave_out_hidden(album);
  std::erase_if(all, [](const AlbumRow &album) { return album.empty(); });
  return all;
}

std::optional<AlbumRow> Reader::album(gint32 id) {
  const Reading reading(*this);
  if (!reading) return std::nullopt;
  std::optional<AlbumRow> album;
  {
    Cursor row(statements_->album, id);
    if (row.next()) album = album_from(row);
    good(row);
  }
  if (album) leave_out_hidden(*album);
  return album;
}

std::optional<std::vector<gint32>> Reader::album_files(gint32 album, const Sort &sort,
                                                       ClassMask mask) {
  const Reading reading(*this);
  if (!reading) return std::nullopt;
  return read_album_files(album, sort, mask);
}

std::optional<std::vector<gint32>> Reader::read_album_files(gint32 album, const Sort &sort,
                                                            ClassMask mask) {
  const std::set<gint32> &hidden = ahead_.hidden;
  std::vector<std::pair<gint64, gint32>> numbered;
  std::vector<Named> named;
  const Statement &statement = sort.key == SortKey::kName   ? statements_->album_names
                               : sort.key == SortKey::kSize ? statements_->album_sizes
                                                            : statements_->album_dates;
  Cursor row(statement, album);
  while (row.next()) {
    const gint32 id = row.number(0);
    if (!lets_through(mask, row.number(1)) || hidden.contains(id)) continue;
    if (sort.key == SortKey::kName) {
      named.push_back({std::string(row.text(2)), id});
    } else {
      numbered.emplace_back(sort.key == SortKey::kAdded ? id : row.integer(2), id);
    }
  }
  if (!good(row)) return std::nullopt;
  std::vector<gint32> ids = sort.key == SortKey::kName ? ids_by_name(std::move(named))
                                                       : ids_by_number(std::move(numbered));
  if (sort.reversed) std::reverse(ids.begin(), ids.end());
  return ids;
}

}  // namespace phone::media

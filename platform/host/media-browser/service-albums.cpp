#include <algorithm>

#include "media-browser.h"
#include "media-browser/covers.hpp"
#include "media-browser/display.hpp"
#include "media-browser/mirror.hpp"
#include "media-browser/natural-order.hpp"
#include "media-browser/service.hpp"

using namespace phone::media;

namespace phone::media {

namespace {

/// An album of a list, with what lists are ordered by.
struct SortedAlbum {
  ListedAlbum album;
  gint64 newest = 0;
  gint64 oldest = 0;
  gint64 files = 0;
};

std::string name_of_folder(const std::string &path) {
  const std::size_t slash = path.rfind('/');
  const bool whole = slash == std::string::npos || slash + 1 == path.size();
  return display_text(whole ? path : path.substr(slash + 1));
}

std::string cover_of(Index &index, const AlbumRow &album) {
  const auto file = index.reader().file(album.last_added);
  if (!file || file->gone()) return {};
  return cached_thumbnail(join(file->folder, file->name), file->device, file->state);
}

using Naids = std::unordered_map<std::string, gint64>;

ListedAlbum listed(Index &index, const AlbumRow &row, const Naids &naids) {
  ListedAlbum album;
  album.id = row.id;
  if (const auto naid = naids.find(row.path); naid != naids.end()) album.naid = naid->second;
  album.name = name_of_folder(row.path);
  album.cover = cover_of(index, row);
  return album;
}

ListedAlbum listed(const mirror::Album &row) {
  ListedAlbum album;
  album.id = kFirstWebAlbum + row.number;
  album.naid = row.naid;
  album.kind = row.kind;
  album.name = display_text(row.name);
  album.cover = row.cover;
  album.attribute = row.attribute;
  album.web_files = row.files;
  return album;
}

bool before(const SortedAlbum &a, const SortedAlbum &b, gint sort) {
  const auto by = [&a, &b](auto x, auto y) { return x != y ? x < y : a.album.id < b.album.id; };
  switch (sort) {
    case 0:
      return by(compare_naturally(a.album.name, b.album.name), 0);
    case 1:
      return by(0, compare_naturally(a.album.name, b.album.name));
    case 3:
      return by(a.oldest, b.oldest);
    case 4:
      return by(b.files, a.files);
    default:
      return by(b.newest, a.newest);
  }
}

/// Reads an album's place in the mirror, or in the index.
std::optional<ListedAlbum> find_album(Index &index, gint id) {
  if (id > kFirstWebAlbum) {
    const auto row = mirror::album(index.user_data(), id - kFirstWebAlbum);
    return row ? std::optional(listed(*row)) : std::nullopt;
  }
  const auto row = index.reader().album(id);
  return row && !row->path.empty()
             ? std::optional(listed(index, *row, mirror::naids_of_folders(index.user_data())))
             : std::nullopt;
}

}  // namespace

}  // namespace phone::media

gboolean fm_svc_mb_get_albums_count(gint *count, gint web, gint *error) {
  if (count == nullptr) return fail(error, kBadArgument);
  *count = 0;
  const auto index = Index::current();
  if (index == nullptr) return fail(error, kNotRunning);
  const auto albums = index->reader().albums();
  index->check_after_reading();
  if (!albums) return fail(error, kNotRead);
  *count = static_cast<gint>(albums->size());
  if (web != 0) *count += static_cast<gint>(mirror::albums(index->user_data()).size());
  return TRUE;
}

gboolean fm_svc_mb_get_all_albums_ex(gint sort, guint32 flags, GList **albums, gint *error) {
  if (albums == nullptr) return fail(error, kBadArgument);
  *albums = nullptr;
  const auto index = Index::current();
  if (index == nullptr) return fail(error, kNotRunning);
  const auto rows = index->reader().albums();
  index->check_after_reading();
  if (!rows) return fail(error, kNotRead);
  const Naids naids = mirror::naids_of_folders(index->user_data());
  std::vector<SortedAlbum> all;
  for (const AlbumRow &row : *rows) {
    all.push_back({listed(*index, row, naids), row.newest, row.oldest, row.pictures + row.videos});
  }
  if ((flags & FM_ALBUMS_WITHOUT_WEB) == 0) {
    for (const mirror::Album &row : mirror::albums(index->user_data())) {
      all.push_back({listed(row), 0, 0, row.files});
    }
  }
  std::sort(all.begin(), all.end(),
            [sort](const SortedAlbum &a, const SortedAlbum &b) { return before(a, b, sort); });
  std::vector<FmAlbumRecord> records(all.size());
  for (std::size_t at = 0; at < all.size(); ++at) fill(records[at], all[at].album);
  *albums = list_of(records);
  return TRUE;
}

gboolean fm_svc_mb_get_album(gint album_id, FmAlbumRecord *record, gint *error) {
  if (record == nullptr) return fail(error, kBadArgument);
  std::memset(record, 0, sizeof *record);
  const auto index = Index::current();
  if (index == nullptr) return fail(error, kNotRunning);
  const auto album = find_album(*index, album_id);
  index->check_after_reading();
  if (!album) return fail(error, kNotFound);
  fill(*record, *album);
  return TRUE;
}

gboolean fm_svc_mb_album_get_files_count(gint album_id, gint *count, gint *error) {
  if (count == nullptr) return fail(error, kBadArgument);
  *count = 0;
  const auto index = Index::current();
  if (index == nullptr) return fail(error, kNotRunning);
  if (album_id > kFirstWebAlbum) {
    const auto album = mirror::album(index->user_data(), album_id - kFirstWebAlbum);
    if (!album) return fail(error, kNotFound);
    *count = album->files;
    return TRUE;
  }
  const auto album = index->reader().album(album_id);
  index->check_after_reading();
  if (!album) return fail(error, kNotFound);
  *count = static_cast<gint>(album->pictures + album->videos);
  return TRUE;
}

gboolean fm_svc_mb_album_get_all_files_ex(gint album_id, gint sort, gint filter, FmFileList *list,
                                          gint *error) {
  if (list == nullptr) return fail(error, kBadArgument);
  *list = {};
  const auto index = Index::current();
  if (index == nullptr) return fail(error, kNotRunning);
  const auto album = find_album(*index, album_id);
  if (!album) return fail(error, kNotFound);
  std::vector<gint64> ids;
  if (album->kind == 0) {
    const auto files = index->reader().album_files(album_id, sort_of(sort), classes_of(filter));
    index->check_after_reading();
    if (!files) return fail(error, kNotRead);
    ids.assign(files->begin(), files->end());
  }
  std::vector<gint32> types(ids.size(), FM_FILE_LOCAL);
  if (album->naid > 0) {
    const std::vector<gint64> others = web_only(*index, album->naid);
    ids.insert(ids.end(), others.begin(), others.end());
    types.resize(ids.size(), FM_FILE_WEB_ONLY);
  }
  return fill(*list, ids, types) ? TRUE : fail(error, kNotRead);
}

gboolean fm_svc_mb_album_get_all_files(gint album_id, FmFileList *list, gint *error) {
  return fm_svc_mb_album_get_all_files_ex(album_id, 0, 0, list, error);
}

gboolean fm_svc_mb_album_get_last_added_file(gint album_id, FmVeskFileRecord *record, gint *error) {
  if (record == nullptr) return fail(error, kBadArgument);
  std::memset(record, 0, sizeof *record);
  const auto index = Index::current();
  if (index == nullptr) return fail(error, kNotRunning);
  const auto album = index->reader().album(album_id);
  const auto file = album ? index->reader().file(album->last_added) : std::nullopt;
  index->check_after_reading();
  if (!file || file->gone()) return fail(error, kNotFound);
  const std::string path = join(file->folder, file->name);
  const std::string cover = cached_thumbnail(path, file->device, file->state);
  if (cover.empty()) request_thumbnail(path);
  record->nfid = file->nfid;
  record->database_index = album->last_added;
  put(record->name, cover);
  put(record->thumbnail_path, cover);
  return TRUE;
}

gboolean fm_svc_mb_album_set_thumb_path_by_naid(gint64 naid, const gchar *path, gint *error) {
  if (path == nullptr || std::strlen(path) >= sizeof FmAlbumRecord::cover_path) {
    return fail(error, kBadArgument);
  }
  const auto index = Index::current();
  if (index == nullptr) return fail(error, kNotRunning);
  return mirror::set_cover(index->user_data(), naid, path) ? TRUE : fail(error, kNotFound);
}

gboolean fm_svc_mb_get_album_id_by_naid(gint64 naid, gint *album_id, gint *error) {
  if (album_id == nullptr) return fail(error, kBadArgument);
  *album_id = 0;
  const auto index = Index::current();
  if (index == nullptr) return fail(error, kNotRunning);
  const auto album = mirror::album_by_naid(index->user_data(), naid);
  if (!album) return fail(error, kNotFound);
  *album_id = kFirstWebAlbum + album->number;
  return TRUE;
}

gboolean fm_svc_mb_get_drovo_album(FmAlbumRecord *record, gint *error) {
  if (record == nullptr) return fail(error, kBadArgument);
  std::memset(record, 0, sizeof *record);
  const auto index = Index::current();
  if (index == nullptr) return fail(error, kNotRunning);
  const auto album = mirror::drovo_album(index->user_data());
  if (!album) return fail(error, kNotFound);
  fill(*record, listed(*album));
  return TRUE;
}

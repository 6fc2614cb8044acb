#include "media-browser/records.hpp"

#include <cstring>

#include "media-browser/display.hpp"
#include "media-browser/file-state.hpp"
#include "media-browser/media-names.hpp"
#include "media-browser/user-data.hpp"

namespace phone::media {

namespace {

/// Where a path begins in a record: folders are given from the root of the file system.
constexpr int kStorage = FM_STORAGE_PHONE;

/// The field for extensions is the one text that is cut: nothing is opened by it.
template <std::size_t N>
void put_extension(gchar (&field)[N], std::string_view name) {
  const std::string extension = extension_of(name);
  put(field, std::string_view(extension).substr(0, N - 1));
}

}  // namespace

bool folder_fits_records(std::string_view folder) {
  return folder.size() < sizeof FmMediaRecord::folder;
}

bool fits_records(std::string_view folder, std::string_view name) {
  return folder_fits_records(folder) && name.size() < sizeof FmMediaRecord::name &&
         join(folder, name).size() < sizeof MbItem::path;
}

void fill(MbItem &record, const ListedFile &file, int row) {
  std::memset(&record, 0, sizeof record);
  record.id = file.id;
  put(record.path, join(file.folder, file.name));
  put(record.thumbnail_path, file.thumbnail);
  put_extension(record.extension, file.name);
  record.media_type = file.kind;
  record.db_idx = row;
  record.nfid = static_cast<gint32>(file.nfid);
  record.flags = static_cast<guint32>(file.user_flags & kFavourite);
  record.unmarked = (file.user_flags & kMarked) != 0 ? 0 : 1;
}

void fill(FmMediaRecord &record, const ListedFile &file) {
  std::memset(&record, 0, sizeof record);
  record.id = file.id;
  record.storage = kStorage;
  record.media_type = file.kind;
  put(record.folder, file.folder);
  put(record.name, file.name);
  put(record.thumbnail_path, file.thumbnail);
  put_extension(record.extension, file.name);
  record.nfid = file.nfid;
}

void fill(FmFileRecord &record, const ListedFile &file) {
  std::memset(&record, 0, sizeof record);
  fill(record.item, file, 0);
  put(record.folder, file.folder);
  put(record.name, file.name);
  record.storage = kStorage;
}

void fill(FmAlbumRecord &record, const ListedAlbum &album) {
  std::memset(&record, 0, sizeof record);
  record.album_id = album.id;
  record.naid = album.naid;
  record.kind = album.kind;
  put(record.name, cut_text(album.name, sizeof record.name - 1));
  put(record.cover_path, album.cover);
  record.attribute = album.attribute;
  record.web_file_count = album.web_files;
}

}  // namespace phone::media

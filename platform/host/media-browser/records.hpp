/// The service's records and how they are filled.
#pragma once

#include <media-records.h>

#include <string>
#include <string_view>

namespace phone::media {

/// Whether every record that names a file has room for it. A file that does not fit is left out
/// of the index: a cut path would name another file.
bool fits_records(std::string_view folder, std::string_view name);
/// Whether a folder can hold files that fit.
bool folder_fits_records(std::string_view folder);

/// A listed file, as the records tell it.
struct ListedFile {
  gint32 id = 0;
  std::string_view folder;
  std::string_view name;
  int kind = 0;
  int user_flags = 0;
  gint64 nfid = 0;
  std::string thumbnail;  ///< of the cache, or empty
};

void fill(MbItem &record, const ListedFile &file, int row);
void fill(FmMediaRecord &record, const ListedFile &file);
void fill(FmFileRecord &record, const ListedFile &file);

/// An album, as the records tell it.
struct ListedAlbum {
  gint32 id = 0;
  gint64 naid = 0;
  int kind = 0;
  std::string name;   ///< for people: valid UTF-8
  std::string cover;  ///< of the cache, or empty
  int attribute = 0;
  int web_files = 0;
};

void fill(FmAlbumRecord &record, const ListedAlbum &album);

/// Writes a text with its NUL; one that does not fit leaves the field empty.
template <std::size_t N>
void put(gchar (&field)[N], std::string_view text) {
  if (text.size() < N) text.copy(field, text.size());
  field[text.size() < N ? text.size() : 0] = '\0';
}

}  // namespace phone::media

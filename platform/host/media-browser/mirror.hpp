/// The mirror of the web albums: what the server holds, kept beside what people have said about
/// their files. Any thread.
#pragma once

#include <media-mirror.h>

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "media-browser/user-data.hpp"

namespace phone::media::mirror {

/// Kind words of web albums in album records.
inline constexpr int kWebAlbum = 1;
inline constexpr int kDrovoAlbum = 2;

struct Album {
  gint32 number = 0;  ///< counts from 1 in the mirror
  gint64 naid = 0;
  int kind = kWebAlbum;
  std::string name;
  std::string cover;
  int attribute = 0;
  int files = 0;
};

struct File {
  gint64 nfid = 0;
  int attribute = 0;
  int storage = 0;
  std::string name;
  std::string thumbnail;
  std::string url;
  bool deleting = false;
};

std::vector<Album> albums(const UserData &data);
std::optional<Album> album(const UserData &data, gint32 number);
std::optional<Album> album_by_naid(const UserData &data, gint64 naid);
std::optional<Album> drovo_album(const UserData &data);
/// Adds an album, or replaces the one of the same web id.
[[nodiscard]] bool put_album(const UserData &data, const Album &album);
[[nodiscard]] bool set_cover(const UserData &data, gint64 naid, std::string_view path);

std::optional<File> file(const UserData &data, gint64 nfid);
/// Adds a file, or replaces the one of the same web id, and puts it into albums.
[[nodiscard]] bool put_file(const UserData &data, const File &file,
                            const std::vector<gint64> &naids);
/// Ids of files that are not being deleted; an album of -1 means all.
std::vector<gint64> files(const UserData &data, gint64 naid);
/// Takes files out of an album; those that are in no other leave the mirror.
[[nodiscard]] bool remove_files(const UserData &data, gint64 naid,
                                const std::vector<gint64> &nfids);
/// Web ids of files that have a local copy.
std::vector<gint64> local_copies(const UserData &data);
/// Path of the local copy; empty when there is none.
std::string local_path(const UserData &data, gint64 nfid);

/// The web albums that folders belong to, by their paths.
std::unordered_map<std::string, gint64> naids_of_folders(const UserData &data);
[[nodiscard]] bool set_naid_of_folder(const UserData &data, std::string_view path, gint64 naid);

/// Tells the registered callbacks. Called on the service's thread, with no lock held.
void notify(const gchar *message, const VeskNotiField *fields, gint n_fields);

}  // namespace phone::media::mirror

/// The rows of the index and the statements that change them. Index thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "media-browser/found.hpp"
#include "media-browser/sqlite.hpp"

namespace phone::media {

/// A file as the index has it. Class 0: it has gone.
struct FileRow {
  gint32 id = 0;
  gint32 album = 0;
  int file_class = 0;
  int kind = 0;
  std::string name;
  gint64 date = 0;
  FileState state;
  int user_flags = 0;
  gint64 nfid = 0;

  [[nodiscard]] bool has_user_data() const { return user_flags != 0 || nfid != 0; }
};

/// A folder with what is known of its files.
struct AlbumRow {
  gint32 id = 0;
  std::string path;  ///< empty when another folder has taken its path
  guint64 device = 0;
  guint64 inode = 0;
  gint64 born = 0;
  bool camera = false;
  gint64 pictures = 0;
  gint64 videos = 0;
  gint64 newest = 0;
  gint64 oldest = 0;
  gint32 last_added = 0;

  [[nodiscard]] bool empty() const { return pictures + videos == 0; }
};

/// The class of a file of a kind in an album.
int class_in(const AlbumRow &album, int kind);

/// Thrown when the index cannot be read or written; never leaves the index thread.
struct IndexFailure {
  int code;
};

class Tables {
 public:
  explicit Tables(const Database &database);

  [[nodiscard]] std::vector<AlbumRow> albums() const;
  gint32 add_album(const AlbumRow &album);
  void store_album(const AlbumRow &album);
  /// Reads newest, oldest and last_added again.
  void recount(AlbumRow &album) const;

  [[nodiscard]] std::optional<FileRow> by_id(gint32 id) const;
  /// The file of a name that has not gone.
  [[nodiscard]] std::optional<FileRow> by_name(gint32 album, std::string_view name) const;
  /// Files with this identity, those that have gone included.
  [[nodiscard]] std::vector<FileRow> by_identity(const FileState &state) const;
  /// Ids of the files of an album that have not gone.
  [[nodiscard]] std::vector<gint32> ids_of_album(gint32 album) const;
  /// Those of them that people have said something about.
  [[nodiscard]] std::vector<FileRow> told_of_album(gint32 album) const;
  /// All files of an album have gone.
  void bury_album(gint32 album, gint64 gone);
  /// An album lies in a camera folder, or not any more.
  void set_camera(gint32 album, bool camera);
  void add_file(gint32 id, gint32 album, int file_class, const Found &found, int user_flags,
                gint64 nfid);
  void store_file(gint32 id, gint32 album, int file_class, const Found &found);
  void set_class(gint32 id, int file_class, gint64 gone);
  void set_user_data(gint32 id, int flags, gint64 nfid);

  [[nodiscard]] gint64 files_of_class(int file_class) const;
  void store_count(int file_class, gint64 files);
  [[nodiscard]] gint64 meta(const char *key, gint64 fallback) const;
  void set_meta(const char *key, gint64 value);
  [[nodiscard]] gint32 largest_id() const;
  /// Forgets files that went before a time.
  void purge(gint64 before);

 private:
  Statement albums_;
  Statement add_album_;
  Statement store_album_;
  Statement first_date_;
  Statement last_date_;
  Statement last_added_;
  Statement by_id_;
  Statement by_name_;
  Statement by_identity_;
  Statement ids_of_album_;
  Statement told_of_album_;
  Statement bury_album_;
  Statement set_camera_;
  Statement add_file_;
  Statement store_file_;
  Statement set_class_;
  Statement set_user_data_;
  Statement count_;
  Statement store_count_;
  Statement meta_;
  Statement set_meta_;
  Statement largest_id_;
  Statement purge_;
};

}  // namespace phone::media

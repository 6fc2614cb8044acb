/// Reads the index for the service's functions.
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "media-browser/query.hpp"
#include "media-browser/records.hpp"
#include "media-browser/shared.hpp"
#include "media-browser/storage.hpp"
#include "media-browser/tables.hpp"

namespace phone::media {

/// One connection for all readers; any thread, one at a time. A reading that fails reads as
/// nothing, and the index thread hears of a damaged file.
class Reader {
 public:
  Reader(const IndexStorage &storage, Shared &shared);
  ~Reader();

  /// Files that a filter lets through. Later pages show the rows that were counted here.
  [[nodiscard]] std::optional<gint64> count(ClassMask mask);
  /// Ids of the rows first to last of an order.
  [[nodiscard]] std::vector<gint32> page(const Sort &sort, ClassMask mask, gint64 first,
                                         gint64 last);
  /// Row of a file in an order, as its pages show it.
  [[nodiscard]] std::optional<gint64> row_of(const Sort &sort, ClassMask mask, gint32 id);

  /// A file as it is listed; a file that has gone as it was last, and an unknown id as nothing.
  struct File {
    gint32 album = 0;
    std::string folder;  ///< empty when another folder has its path
    std::string name;
    int file_class = 0;
    int kind = 0;
    guint64 device = 0;
    FileState state;
    int user_flags = 0;
    gint64 nfid = 0;

    [[nodiscard]] bool gone() const { return file_class == 0; }
  };
  [[nodiscard]] std::optional<File> file(gint32 id);
  /// Files of a page, without device and state. Cheapest for pages in the order of dates.
  [[nodiscard]] std::vector<std::optional<File>> files(const Sort &sort, ClassMask mask,
                                                       const std::vector<gint32> &ids);
  /// @return 0 when it is not known
  [[nodiscard]] gint32 id_of_path(std::string_view path);

  /// Folders that have files, in no order.
  [[nodiscard]] std::optional<std::vector<AlbumRow>> albums();
  /// A folder, with files or without.
  [[nodiscard]] std::optional<AlbumRow> album(gint32 id);
  /// Ids of an album's files in an order.
  [[nodiscard]] std::optional<std::vector<gint32>> album_files(gint32 album, const Sort &sort,
                                                               ClassMask mask);

  /// Set by a reading that met a damaged file; taken by who can do something about it.
  [[nodiscard]] bool take_damage();

 private:
  struct Statements;

  /// One reading: the connection is this thread's, and shows one state of the index throughout.
  class Reading {
   public:
    explicit Reading(Reader &reader);
    ~Reading();
    Reading(const Reading &) = delete;
    Reading &operator=(const Reading &) = delete;
    explicit operator bool() const { return open_; }

   private:
    Reader &reader_;
    std::unique_lock<std::mutex> lock_;
    bool open_;
  };

  bool open();
  bool good(const Cursor &row);
  [[nodiscard]] std::optional<File> read_file(gint32 id);
  void show_marks(gint32 id, File &file) const;
  void read_by_number(const Sort &sort, ClassMask mask, const std::vector<gint32> &ids,
                      std::vector<std::optional<File>> &files);
  [[nodiscard]] std::optional<gint64> counted(ClassMask mask);
  [[nodiscard]] std::vector<gint32> first_rows(const Sort &sort, ClassMask mask, gint64 count);
  [[nodiscard]] std::vector<gint32> first_by_number(const Statement &statement, bool reversed,
                                                    ClassMask mask, gint64 count);
  [[nodiscard]] std::vector<gint32> first_by_walk(const Statement &statement, ClassMask mask,
                                                  gint64 count);
  void leave_out_hidden(AlbumRow &album);
  [[nodiscard]] std::optional<std::vector<gint32>> read_album_files(gint32 album, const Sort &sort,
                                                                    ClassMask mask);
  struct Place {
    std::string path;
    guint64 device = 0;
  };
  const Place &place_of(gint32 album);
  [[nodiscard]] AlbumRow album_from(const Cursor &row) const;

  const IndexStorage &storage_;
  Shared &shared_;
  std::mutex mutex_;
  Database database_;
  std::unique_ptr<Statements> statements_;
  guint64 file_version_ = 0;
  guint64 folders_version_ = 0;
  std::unordered_map<gint32, Place> places_;
  bool damaged_ = false;
  /// Of the reading that is under way.
  Views::Ahead ahead_;
};

}  // namespace phone::media

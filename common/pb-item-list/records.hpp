/// Owners of what the media-browser service hands out for a list, with quick look-up by position.
#pragma once

#include <glib.h>
#include <media-browser.h>
#include <glib-ptr.hpp>

#include <cstddef>
#include <cstring>
#include <type_traits>
#include <utility>
#include <vector>

namespace pb::item_list {

/// Copies a text field of a record, which ends in NUL or with the field.
template <std::size_t Size>
[[nodiscard]] StringPtr text_of(const gchar (&field)[Size]) {
  return StringPtr(g_strndup(field, strnlen(field, Size)));
}

enum class RecordKind { kFiles, kAlbums };

/// A list of records from the service, all of one kind. Positions are found through an index
/// that is made when it is first needed, because lists of all files have 100,000 records.
class RecordList {
 public:
  RecordList() = default;
  /// Takes over the list and its records (transfer full).
  explicit RecordList(GList *records, RecordKind kind = RecordKind::kFiles)
      : list_(records), kind_(kind) {}
  RecordList(RecordList &&other) noexcept
      : list_(std::exchange(other.list_, nullptr)),
        kind_(other.kind_),
        index_(std::exchange(other.index_, {})) {}
  RecordList &operator=(RecordList &&other) noexcept;
  RecordList(const RecordList &) = delete;
  RecordList &operator=(const RecordList &) = delete;
  ~RecordList() { clear(); }

  void clear();
  [[nodiscard]] bool empty() const { return list_ == nullptr; }
  [[nodiscard]] gint length() const;
  /// Borrowed. Remove links through remove() only.
  [[nodiscard]] GList *get() const { return list_; }
  /// Hands the list and its records to the caller (transfer full).
  [[nodiscard]] GList *release() {
    index_ = {};
    return std::exchange(list_, nullptr);
  }
  /// Borrowed; NULL outside the list, and when the records are not of that kind.
  template <typename Record>
  [[nodiscard]] Record *at(gint position) const {
    constexpr auto kKind =
        std::is_same_v<Record, FmAlbumRecord> ? RecordKind::kAlbums : RecordKind::kFiles;
    return kKind == kind_ ? static_cast<Record *>(data_at(position)) : nullptr;
  }

  void append(RecordList &&records);
  void prepend(RecordList &&records);
  void drop_first(gint count);
  void drop_last(gint count);
  /// Removes one link of this list and frees its record.
  void remove(GList *link);

 private:
  void make_index() const;
  [[nodiscard]] gpointer data_at(gint position) const;
  /// Cuts the list before a position and gives the second part.
  [[nodiscard]] GList *cut_at(gint position);

  GList *list_ = nullptr;
  RecordKind kind_ = RecordKind::kFiles;
  mutable std::vector<GList *> index_;  // empty: not made
};

/// The ids and kinds of the files of a list.
class FileList {
 public:
  FileList() = default;
  /// Takes over the arrays (transfer full).
  explicit FileList(const FmFileList &files) : files_(files) {}
  FileList(FileList &&other) noexcept : files_(std::exchange(other.files_, FmFileList{})) {}
  FileList &operator=(FileList &&other) noexcept {
    clear();
    files_ = std::exchange(other.files_, FmFileList{});
    return *this;
  }
  FileList(const FileList &) = delete;
  FileList &operator=(const FileList &) = delete;
  ~FileList() { clear(); }

  void clear();
  /// For the service to fill; the list must be empty.
  [[nodiscard]] FmFileList *fill() { return &files_; }
  [[nodiscard]] gint count() const {
    return files_.ids == nullptr || files_.types == nullptr ? 0 : files_.count;
  }
  [[nodiscard]] bool empty() const { return count() <= 0; }
  /// The row must be below count().
  [[nodiscard]] gint64 id(gint row) const { return files_.ids[row]; }
  [[nodiscard]] gint32 type(gint row) const { return files_.types[row]; }

 private:
  FmFileList files_{};
};

/// The low word of a 64-bit id, as the library compares and keeps web ids.
[[nodiscard]] inline gint low_word(gint64 id) {
  return static_cast<gint>(static_cast<guint32>(static_cast<guint64>(id) & 0xFFFFFFFFu));
}

}  // namespace pb::item_list

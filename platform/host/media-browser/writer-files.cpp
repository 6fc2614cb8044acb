#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

#include "media-browser/covers.hpp"
#include "media-browser/query.hpp"
#include "media-browser/writer.hpp"

namespace phone::media {

namespace {

/// Files that wait for the end of a scan.
constexpr std::size_t kMostReplacements = 10'000;
/// Thumbnails that are removed at once; others go when the store is full.
constexpr std::size_t kMostThumbnails = 10'000;

/// Whether a path still names the file of an identity.
bool is_still_at(const std::string &path, guint64 inode) {
  struct stat info;
  return lstat(path.c_str(), &info) == 0 && info.st_ino == inode;
}

}  // namespace

std::string Writer::path_of(const FileRow &file) const {
  const auto album = albums_.find(file.album);
  if (album == albums_.end() || album->second.path.empty()) return {};
  return join(album->second.path, file.name);
}

void Writer::store(const std::vector<Found> &files) {
  for (const Found &found : files) {
    if (refusal_ != 0) return;
    begin();
    store_one(found);
    ++changes_;
  }
}

void Writer::store_one(const Found &found) {
  AlbumRow &album = album_of(*found.folder);
  const std::optional<FileRow> present = tables_->by_name(album.id, found.name);
  if (present && present->state.inode == found.state.inode) {
    replace(*present, album, found);
    return;
  }
  const std::optional<FileRow> moved = moved_from(found);
  if (moved) {
    if (present) bury(*present);
    replace(*moved, album, found);
  } else if (!present) {
    add(album, found);
  } else if (at_the_end_ || replacements_.size() >= kMostReplacements) {
    // A program that saves a file writes another one and gives it the name: it is the same
    // picture to people.
    replace(*present, album, found);
  } else {
    replacements_.push_back(found);
  }
}

void Writer::store_replacements() {
  if (replacements_.empty()) return;
  // Reset even when storing fails.
  const struct End {
    bool &flag;
    ~End() { flag = false; }
  } end{at_the_end_};
  at_the_end_ = true;
  store(std::exchange(replacements_, {}));
}

std::optional<FileRow> Writer::moved_from(const Found &found) const {
  if (found.state.inode == 0) return std::nullopt;
  for (const FileRow &candidate : tables_->by_identity(found.state)) {
    if (candidate.file_class == 0) return candidate;
    const std::string path = path_of(candidate);
    // A second name of a file that is still there is another picture.
    if (path.empty() || !is_still_at(path, found.state.inode)) return candidate;
  }
  return std::nullopt;
}

UserData::File Writer::told_of(const std::string &path, const FileState &state) {
  if (user_data_.empty()) return {};
  UserData::Known known = user_data_.look_up(path, state);
  if (known.path.empty() || known.file.empty()) return known.file;
  if (known.copied) {
    user_news_.copies.push_back({known.path, known.inode, path, state});
  } else if (known.path != path && !is_still_at(known.path, state.inode)) {
    user_news_.changes.push_back({known.path, known.inode, path, state});
  }
  return known.file;
}

void Writer::add(AlbumRow &album, const Found &found) {
  const UserData::File known = told_of(join(album.path, found.name), found.state);
  const gint32 id = last_id_ + 1;
  const int file_class = class_in(album, found.kind);
  tables_->add_file(id, album.id, file_class, found, known.flags, known.nfid);
  last_id_ = id;
  ++counts_[file_class];
  count_in(album, found.kind, found.date, id);
  touched_.push_back(id);
}

void Writer::replace(const FileRow &row, AlbumRow &album, const Found &found) {
  const int file_class = class_in(album, found.kind);
  if (row.has_user_data()) {
    std::string old_path = path_of(row);
    std::string new_path = join(album.path, found.name);
    if (old_path.empty()) old_path = new_path;
    user_news_.changes.push_back(
        {std::move(old_path), row.state.inode, std::move(new_path), found.state});
  }
  if (row.state != found.state) leave_thumbnail(row);
  tables_->store_file(row.id, album.id, file_class, found);
  if (row.file_class != 0) {
    --counts_[row.file_class];
    count_out(albums_.at(row.album), row);
  }
  ++counts_[file_class];
  count_in(album, found.kind, found.date, row.id);
  touched_.push_back(row.id);
}

void Writer::bury(const FileRow &row) {
  if (row.has_user_data()) user_news_.gone.push_back(path_of(row));
  leave_thumbnail(row);
  tables_->set_class(row.id, 0, g_get_real_time() / G_USEC_PER_SEC);
  --counts_[row.file_class];
  count_out(albums_.at(row.album), row);
  touched_.push_back(row.id);
  ++changes_;
}

void Writer::leave_thumbnail(const FileRow &row) {
  if (row.file_class == 0 || left_thumbnails_.size() >= kMostThumbnails) return;
  left_thumbnails_.emplace_back(path_of(row), row);
}

void Writer::drop_thumbnails() {
  for (const auto &[path, row] : std::exchange(left_thumbnails_, {})) {
    const auto files = tables_->by_identity(row.state);
    const bool is_listed = std::any_of(files.begin(), files.end(),
                                       [](const FileRow &file) { return file.file_class != 0; });
    const auto album = albums_.find(row.album);
    if (is_listed || album == albums_.end()) continue;
    forget_thumbnail(path, album->second.device, row.state);
  }
}

void Writer::lose(const std::vector<Lost> &files) {
  for (const Lost &lost : files) {
    const std::optional<FileRow> row = tables_->by_id(lost.id);
    // It may have been found under another name since it was missed here.
    if (!row || row->file_class == 0 || row->album != lost.album || row->name != lost.name)
      continue;
    begin();
    bury(*row);
  }
}

void Writer::lose_path(const std::string &path, gint32 id) {
  buried_for_readers_.push_back(id);
  touched_.push_back(id);
  const std::optional<FileRow> row = tables_->by_id(id);
  if (!row || row->file_class == 0 || path_of(*row) != path) return;
  begin();
  bury(*row);
}

void Writer::set_user_data(gint32 id, const UserData::File &known, gint64 generation) {
  begin();
  tables_->set_user_data(id, known.flags, known.nfid);
  tables_->set_meta("user_generation", generation);
  ++changes_;
}

void Writer::take_user_data() {
  follow_user_data();
  commit();
  Announcer::instance().announce(MEDIA_INDEX_ROWS_CHANGED);
}

void Writer::show_user_data(gint32 id, guint64 ticket) {
  commit();
  shared_.views.stored_marks(id, ticket);
  Announcer::instance().announce(MEDIA_INDEX_ROWS_CHANGED);
}

}  // namespace phone::media

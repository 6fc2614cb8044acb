#include <algorithm>

#include "media-browser/query.hpp"
#include "media-browser/writer.hpp"

namespace phone::media {

namespace {

gint64 &number_of_kind(AlbumRow &album, int kind) {
  return kind == kVideo ? album.videos : album.pictures;
}

bool is_same(const AlbumRow &album, const Folder &folder) {
  return album.inode == folder.inode && album.device == folder.device && album.born == folder.born;
}

}  // namespace

void Writer::take_identity(AlbumRow &album, const Folder &folder) {
  album.device = folder.device;
  album.inode = folder.inode;
  album.born = folder.born;
  changed_albums_.insert(album.id);
}

AlbumRow &Writer::album_of(const Folder &folder) {
  if (const auto found = album_of_path_.find(folder.path); found != album_of_path_.end()) {
    AlbumRow &album = albums_.at(found->second);
    if (!is_same(album, folder)) take_identity(album, folder);
    return album;
  }
  AlbumRow album;
  album.path = folder.path;
  album.device = folder.device;
  album.inode = folder.inode;
  album.born = folder.born;
  album.camera = folder.camera;
  album.id = tables_->add_album(album);
  album_of_path_[folder.path] = album.id;
  return albums_[album.id] = album;
}

/// Takes a folder's path away, because another folder has it now.
void Writer::displace(AlbumRow &album) {
  album_of_path_.erase(album.path);
  album.path.clear();
  tables_->store_album(album);
}

void Writer::refresh_folder(gint32 id, const Folder &folder) {
  const auto found = albums_.find(id);
  if (found == albums_.end()) return;
  begin();
  take_identity(found->second, folder);
  folders_moved_ = true;
}

void Writer::move_folder(gint32 id, const Folder &folder) {
  const auto found = albums_.find(id);
  if (found == albums_.end() || found->second.path == folder.path) return;
  begin();
  if (const auto holder = album_of_path_.find(folder.path); holder != album_of_path_.end()) {
    displace(albums_.at(holder->second));
  }
  AlbumRow &album = found->second;
  const std::string old_path = album.path;
  album_of_path_.erase(old_path);
  album.path = folder.path;
  take_identity(album, folder);
  album_of_path_[folder.path] = id;
  tables_->store_album(album);
  if (!old_path.empty()) user_news_.folders.emplace_back(old_path, folder.path);
  const std::vector<gint32> ids = tables_->ids_of_album(id);
  touched_.insert(touched_.end(), ids.begin(), ids.end());
  for (const FileRow &file : tables_->told_of_album(id)) {
    user_news_.changes.push_back(
        {join(old_path, file.name), file.state.inode, join(folder.path, file.name), file.state});
  }
  if (album.camera != folder.camera) {
    leave_counts(album);
    album.camera = folder.camera;
    tables_->set_camera(id, album.camera);
    tables_->store_album(album);
    counts_[class_in(album, kPicture)] += album.pictures;
    counts_[class_in(album, kVideo)] += album.videos;
  }
  ++changes_;
  folders_moved_ = true;
}

void Writer::count_in(AlbumRow &album, int kind, gint64 date, gint32 id) {
  const bool first = album.empty();
  ++number_of_kind(album, kind);
  album.newest = first ? date : std::max(album.newest, date);
  album.oldest = first ? date : std::min(album.oldest, date);
  album.last_added = first ? id : std::max(album.last_added, id);
  changed_albums_.insert(album.id);
}

void Writer::count_out(AlbumRow &album, const FileRow &file) {
  --number_of_kind(album, file.kind);
  changed_albums_.insert(album.id);
  if (file.date == album.newest || file.date == album.oldest || file.id == album.last_added) {
    stale_albums_.insert(album.id);
  }
}

void Writer::store_albums() {
  for (const gint32 id : stale_albums_) tables_->recount(albums_.at(id));
  stale_albums_.clear();
  for (const gint32 id : changed_albums_) tables_->store_album(albums_.at(id));
  changed_albums_.clear();
}

void Writer::leave_counts(const AlbumRow &album) {
  counts_[class_in(album, kPicture)] -= album.pictures;
  counts_[class_in(album, kVideo)] -= album.videos;
}

void Writer::lose_folder(gint32 id) {
  const auto found = albums_.find(id);
  if (found == albums_.end() || found->second.empty()) return;
  begin();
  AlbumRow &album = found->second;
  const std::vector<gint32> ids = tables_->ids_of_album(id);
  touched_.insert(touched_.end(), ids.begin(), ids.end());
  for (const FileRow &file : tables_->told_of_album(id)) user_news_.gone.push_back(path_of(file));
  for (const gint32 file : ids) {
    if (const auto row = tables_->by_id(file)) leave_thumbnail(*row);
  }
  tables_->bury_album(id, g_get_real_time() / G_USEC_PER_SEC);
  leave_counts(album);
  album.pictures = album.videos = 0;
  stale_albums_.insert(id);
  changed_albums_.insert(id);
  ++changes_;
}

}  // namespace phone::media

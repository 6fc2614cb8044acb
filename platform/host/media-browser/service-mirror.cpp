#include <algorithm>
#include <condition_variable>

#include "media-browser.h"
#include "media-browser/display.hpp"
#include "media-browser/mirror.hpp"
#include "media-browser/service.hpp"
#include "media-mirror.h"

using namespace phone::media;

namespace phone::media::mirror {

namespace {

/// Callbacks and who is in them, so that a removed one is not called any more.
struct Listeners {
  std::mutex mutex;
  std::condition_variable left;
  std::vector<vesk_noti_cb> callbacks;
  std::vector<std::pair<vesk_noti_cb, std::thread::id>> running;

  static Listeners &instance() {
    static auto *listeners = new Listeners;
    return *listeners;
  }

  [[nodiscard]] bool contains(vesk_noti_cb callback) const {
    return std::find(callbacks.begin(), callbacks.end(), callback) != callbacks.end();
  }
  [[nodiscard]] bool runs_elsewhere(vesk_noti_cb callback) const {
    return std::any_of(running.begin(), running.end(), [callback](const auto &run) {
      return run.first == callback && run.second != std::this_thread::get_id();
    });
  }
};

}  // namespace

void notify(const gchar *message, const VeskNotiField *fields, gint n_fields) {
  Listeners &all = Listeners::instance();
  std::unique_lock lock(all.mutex);
  const std::vector<vesk_noti_cb> callbacks = all.callbacks;
  for (const vesk_noti_cb callback : callbacks) {
    if (!all.contains(callback)) continue;
    const auto run = std::pair(callback, std::this_thread::get_id());
    all.running.push_back(run);
    lock.unlock();
    callback(message, fields, n_fields);
    lock.lock();
    all.running.erase(std::find(all.running.begin(), all.running.end(), run));
    all.left.notify_all();
  }
}

}  // namespace phone::media::mirror

namespace phone::media {

std::vector<gint64> web_only(Index &index, gint64 naid) {
  std::vector<gint64> ids = mirror::files(index.user_data(), naid);
  std::vector<gint64> local = mirror::local_copies(index.user_data());
  std::sort(local.begin(), local.end());
  std::erase_if(ids,
                [&local](gint64 id) { return std::binary_search(local.begin(), local.end(), id); });
  return ids;
}

}  // namespace phone::media

namespace {

using mirror::Listeners;

/// The web id says which album a folder record means; the local id says which folder belongs to
/// it.
bool store_folder(Index &index, const FmAlbumRecord &folder) {
  if (folder.kind == 0 && folder.album_id > 0 && folder.album_id < kFirstWebAlbum) {
    const auto album = index.reader().album(folder.album_id);
    if (!album || album->path.empty()) return false;
    return mirror::set_naid_of_folder(index.user_data(), album->path, folder.naid);
  }
  if (folder.naid <= 0) return false;
  mirror::Album album;
  album.naid = folder.naid;
  album.kind = folder.kind == mirror::kDrovoAlbum ? mirror::kDrovoAlbum : mirror::kWebAlbum;
  album.name = std::string(folder.name, strnlen(folder.name, sizeof folder.name));
  album.cover =
      std::string(folder.cover_path, strnlen(folder.cover_path, sizeof folder.cover_path));
  album.attribute = folder.attribute;
  album.files = folder.web_file_count;
  return mirror::put_album(index.user_data(), album);
}

}  // namespace

gint fm_svc_vesk_registration(vesk_noti_cb callback, gint *error) {
  if (callback == nullptr) return fail(error, kBadArgument);
  Listeners &all = Listeners::instance();
  const std::scoped_lock lock(all.mutex);
  if (!all.contains(callback)) all.callbacks.push_back(callback);
  return 1;
}

gint fm_svc_vesk_unregistration_callback(vesk_noti_cb callback, gint *error) {
  Listeners &all = Listeners::instance();
  std::unique_lock lock(all.mutex);
  if (std::erase(all.callbacks, callback) == 0) return fail(error, kNotFound);
  all.left.wait(lock, [&all, callback] { return !all.runs_elsewhere(callback); });
  return 1;
}

gboolean fm_svc_vesk_get_vesk_file(gint64 nfid, FmVeskFileRecord *record, gint *error) {
  if (record == nullptr) return fail(error, kBadArgument);
  std::memset(record, 0, sizeof *record);
  const auto index = Index::current();
  if (index == nullptr) return fail(error, kNotRunning);
  const auto file = mirror::file(index->user_data(), nfid);
  if (!file) return fail(error, kNotFound);
  record->nfid = nfid;
  record->database_index = index->reader().id_of_path(mirror::local_path(index->user_data(), nfid));
  record->attribute = file->attribute;
  record->storage_kind = file->storage;
  put(record->name, file->name);
  put(record->thumbnail_path, file->thumbnail);
  put(record->bytes_url, file->url);
  return TRUE;
}

gboolean fm_svc_vesk_get_server_only_vesk_files_without_delete(gint64 album, FmFileList *list,
                                                               gint *error) {
  if (list == nullptr) return fail(error, kBadArgument);
  *list = {};
  const auto index = Index::current();
  if (index == nullptr) return fail(error, kNotRunning);
  const std::vector<gint64> ids = web_only(*index, album);
  return fill(*list, ids, std::vector<gint32>(ids.size(), FM_FILE_WEB_ONLY))
             ? TRUE
             : fail(error, kNotRead);
}

gboolean fm_svc_vesk_get_folder(gint folder_id, FmAlbumRecord *folder, gint *error) {
  return fm_svc_mb_get_album(folder_id, folder, error);
}

gboolean fm_svc_vesk_update_folder(const FmAlbumRecord *folder, gint *error) {
  if (folder == nullptr) return fail(error, kBadArgument);
  const auto index = Index::current();
  if (index == nullptr) return fail(error, kNotRunning);
  return store_folder(*index, *folder) ? TRUE : fail(error, kNotWritten);
}

gboolean fm_svc_vesk_update_nfid_of_file(gint fid, gint64 nfid, gint *error) {
  const auto index = Index::current();
  if (index == nullptr) return fail(error, kNotRunning);
  return index->set_nfid(fid, nfid) ? TRUE : fail(error, kNotWritten);
}

gboolean fm_svc_vesk_sync_album_remove_vesk_files(gint64 naid, const gint64 *ids, gint count,
                                                  gint *error) {
  if (count < 0 || (ids == nullptr && count > 0)) return fail(error, kBadArgument);
  const auto index = Index::current();
  if (index == nullptr) return fail(error, kNotRunning);
  const std::vector<gint64> nfids(ids, ids + count);
  return mirror::remove_files(index->user_data(), naid, nfids) ? TRUE : fail(error, kNotWritten);
}

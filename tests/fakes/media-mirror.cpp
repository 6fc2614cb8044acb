#include <media-mirror.h>

#include "fakes/journal.hpp"

void fake::set_mirror_defaults(Platform &phone) {
  phone.fm_svc_vesk_registration = [](vesk_noti_cb callback, gint *) {
    platform().notification_callbacks.push_back(callback);
    return 1;
  };
  phone.fm_svc_vesk_unregistration_callback = [](vesk_noti_cb callback, gint *) {
    return std::erase(platform().notification_callbacks, callback) > 0 ? 1 : 0;
  };
  phone.fm_svc_vesk_get_vesk_file = [](gint64 nfid, FmVeskFileRecord *record, gint *) {
    *record = {};
    record->nfid = nfid;
    return TRUE;
  };
  phone.fm_svc_vesk_get_server_only_vesk_files_without_delete = [](gint64, FmFileList *list,
                                                                   gint *) {
    *list = {};
    return TRUE;
  };
  phone.fm_svc_vesk_get_folder = [](gint folder_id, FmAlbumRecord *folder, gint *) {
    *folder = {};
    folder->album_id = folder_id;
    return TRUE;
  };
  phone.fm_svc_vesk_update_folder = [](const FmAlbumRecord *, gint *) { return TRUE; };
  phone.fm_svc_vesk_update_nfid_of_file = [](gint, gint64, gint *) { return TRUE; };
  phone.fm_svc_vesk_sync_album_remove_vesk_files = [](gint64, const gint64 *, gint, gint *) {
    return TRUE;
  };
}

gint fm_svc_vesk_registration(vesk_noti_cb callback, gint *error) {
  fake::record("fm_svc_vesk_registration");
  return fake::platform().fm_svc_vesk_registration(callback, error);
}

gint fm_svc_vesk_unregistration_callback(vesk_noti_cb callback, gint *error) {
  fake::record("fm_svc_vesk_unregistration_callback");
  return fake::platform().fm_svc_vesk_unregistration_callback(callback, error);
}

gboolean fm_svc_vesk_get_vesk_file(gint64 nfid, FmVeskFileRecord *record, gint *error) {
  fake::record("fm_svc_vesk_get_vesk_file", nfid);
  return fake::platform().fm_svc_vesk_get_vesk_file(nfid, record, error);
}

gboolean fm_svc_vesk_get_server_only_vesk_files_without_delete(gint64 album, FmFileList *list,
                                                               gint *error) {
  fake::record("fm_svc_vesk_get_server_only_vesk_files_without_delete", album);
  return fake::platform().fm_svc_vesk_get_server_only_vesk_files_without_delete(album, list, error);
}

gboolean fm_svc_vesk_get_folder(gint folder_id, FmAlbumRecord *folder, gint *error) {
  fake::record("fm_svc_vesk_get_folder", folder_id);
  return fake::platform().fm_svc_vesk_get_folder(folder_id, folder, error);
}

gboolean fm_svc_vesk_update_folder(const FmAlbumRecord *folder, gint *error) {
  fake::record("fm_svc_vesk_update_folder", *folder);
  return fake::platform().fm_svc_vesk_update_folder(folder, error);
}

gboolean fm_svc_vesk_update_nfid_of_file(gint fid, gint64 nfid, gint *error) {
  fake::record("fm_svc_vesk_update_nfid_of_file", fid, nfid);
  return fake::platform().fm_svc_vesk_update_nfid_of_file(fid, nfid, error);
}

gboolean fm_svc_vesk_sync_album_remove_vesk_files(gint64 naid, const gint64 *ids, gint count,
                                                  gint *error) {
  fake::record("fm_svc_vesk_sync_album_remove_vesk_files", naid, fake::array_of(ids, count));
  return fake::platform().fm_svc_vesk_sync_album_remove_vesk_files(naid, ids, count, error);
}

#include <dirent.h>
#include <mb-vesk-api.h>
#include <media-mirror.h>
#include <online-content.h>
#include <pb-debug.h>

#include <memory>
#include <string>

#include "private.hpp"
#include "util/paths.hpp"

using pb::vesk::handle_or_own;
using pb::vesk::kAccepted;
using pb::vesk::UserData;

namespace {

constexpr const char *kDownloadDirectories[] = {
    "/mnt/ums/.temp/com.velmora.photobrowser/.mb_album_cover",
    "/mnt/ums/.temp/com.velmora.photobrowser/.mb_album_content_thumb",
    "/mnt/ums/.temp/com.velmora.photobrowser/.mb_album_content_file",
};

using DirectoryPtr = std::unique_ptr<DIR, pb::FreeWith<closedir>>;
using FilterPtr = std::unique_ptr<VeskFilter, pb::FreeWith<g_free>>;

}  // namespace

gint mb_vesk_get_web_albums(guint32 handle, gpointer user_data, gint start, gint count) {
  PB_LOG(PB_LOG_INFO, " mb_vesk_get_web_albums ***********\n");
  if (mb_vesk_check_user_credential(handle) == 0) {
    PB_LOG(PB_LOG_WARNING, "mb_vesk_check_user_credential : false  \n");
    return 0;
  }
  for (const char *directory : kDownloadDirectories) {
    const std::string path = pb::phone_path(directory);
    if (const DirectoryPtr opened(opendir(path.c_str())); opened != nullptr) {
      PB_LOG(PB_LOG_INFO, "dir path is already exist\n\n");
    } else {
      PB_LOG(PB_LOG_INFO, "dir path is not  exist,need to create!!!!!! \n");
      pb_util_system(("mkdir -p " + path).c_str());
    }
  }
  const FilterPtr filter(static_cast<VeskFilter *>(g_try_malloc0(sizeof(VeskFilter))));
  if (filter == nullptr) {
    PB_LOG(PB_LOG_ERROR, " file_filter_info malloc failed \n");
    return 0;
  }
  *filter = pb::vesk::range_filter(VESK_FILTER_RANGE, start, count);
  const pb::vesk::Sent sent(handle_or_own(handle), UserData::Kind::kDownload, user_data);
  const gint status =
      vesk_svc_content_album_get(handle_or_own(handle), 0, 0, 1, filter.get(), sent.number());
  PB_LOG(PB_LOG_INFO, " DWNLD Index from %d to %d \n", pb::vesk::first_of(start),
         pb::vesk::last_of(start, count));
  if (status != kAccepted) {
    PB_LOG(PB_LOG_ERROR, " Vp_status failed for vesk_svc_content_album_get = %d \n", status);
    sent.take_back();
    return 0;
  }
  PB_LOG(PB_LOG_INFO, " Vp_status passed for vesk_svc_content_album_get = %d \n", status);
  return 1;
}

void mb_vesk_get_hidden_album_id(guint32 handle) {
  PB_LOG(PB_LOG_INFO, "\n");
  mb_vesk_check_user_credential(handle);
  if (handle == 0) return;
  const VeskFilter filter = pb::vesk::name_filter(pb::vesk::kQuickPostAlbum);
  const gint status = vesk_svc_content_album_get(handle, 0, 0, 1, &filter, nullptr);
  if (status == kAccepted) {
    PB_LOG(PB_LOG_INFO, "  Operation Successfull\n");
  } else {
    PB_LOG(PB_LOG_ERROR, "  Operation Error:%d\n", status);
  }
}

void mb_vesk_update_web_album(guint32 handle, gint64 album_id, const gchar *name) {
  PB_LOG(PB_LOG_INFO, "\n");
  if (name == nullptr) return;
  mb_vesk_check_user_credential(handle);
  VeskAlbum album{};
  album.album_id = album_id;
  pb::vesk::set_text(album.name, name);
  if (vesk_svc_content_album_update(handle_or_own(handle), 1, &album, nullptr) == kAccepted) {
    PB_LOG(PB_LOG_INFO, "mb_vesk_update_web_album request SUCCESS\n");
  } else {
    PB_LOG(PB_LOG_ERROR, "mb_vesk_update_web_album request FAILED\n");
  }
}

void mb_vesk_delete_web_album(guint32 handle, GList *album_ids) {
  PB_LOG(PB_LOG_INFO, "\n");
  if (album_ids == nullptr) return;
  mb_vesk_check_user_credential(handle);
  gint count = 0;
  const pb::vesk::IdsPtr ids = pb::vesk::ids_of(album_ids, &count);
  if (ids == nullptr) {
    PB_LOG(PB_LOG_ERROR, ": deletelist malloc ERROR\n");
    return;
  }
  for (gint i = 0; i < count; ++i) {
    PB_LOG(PB_LOG_INFO, "To be Deleted Naid[%d] = %lld\n", i, static_cast<long long>(ids.get()[i]));
  }
  if (vesk_svc_content_album_remove(handle_or_own(handle), count, ids.get(), nullptr) ==
      kAccepted) {
    PB_LOG(PB_LOG_INFO, "vesk_svc_content_album_remove request SUCCESS\n");
  } else {
    PB_LOG(PB_LOG_ERROR, "vesk_svc_content_album_remove request FAILED\n");
  }
}

gint mb_vesk_vesk_upload_album(guint32 handle, gint folder_id) {
  PB_LOG(PB_LOG_INFO, "\n");
  mb_vesk_check_user_credential(handle);
  FmAlbumRecord folder{};
  gint error = 0;
  if (!fm_svc_vesk_get_folder(folder_id, &folder, &error)) {
    PB_LOG(PB_LOG_ERROR, "_fm_svc_vesk_db_get_folder_record_by_aid failed \n\n");
    return 0;
  }
  const pb::StringPtr name(g_strndup(folder.name, sizeof folder.name));
  VeskAlbum album{};
  pb::vesk::set_text(album.name, name.get());
  const gint status = vesk_svc_content_album_add(handle_or_own(handle), 1, &album, nullptr);
  PB_LOG(PB_LOG_INFO, "###### mb_vesk_vesk_upload_album : err=%d\n\n", status);
  return 1;
}

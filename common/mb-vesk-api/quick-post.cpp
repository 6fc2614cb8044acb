#include <mb-vesk-api.h>
#include <online-content.h>
#include <pb-debug.h>
#include <pb-util-dialog.h>
#include <pb-util-resource.h>
#include <pb-util-settings.h>

#include "private.hpp"

using pb::vesk::kAccepted;
using pb::vesk::UserData;

namespace {

constexpr const char *kAlbumKey = "/Apps/vesk-service/content/drovosharealbumId";
constexpr int kDecimal = 10;

gpointer copy_of(gconstpointer id, gpointer /*user_data*/) { return g_memdup2(id, sizeof(gint64)); }

}  // namespace

gint mb_vesk_media_quick_post(guint32 handle, GList *content_ids) {
  PB_LOG(PB_LOG_INFO, "\n");
  if (handle != 0) {
    PB_LOG(PB_LOG_ERROR, " Handle should be not be passed for this function \n");
    return 0;
  }
  mb_vesk_check_user_credential(handle);
  const pb::StringPtr setting(mb_gconf_get_string(kAlbumKey));
  const gint64 album_id =
      setting != nullptr ? g_ascii_strtoll(setting.get(), nullptr, kDecimal) : 0;
  PB_LOG(PB_LOG_INFO, "NAID str=%s, value=%lld\n", setting != nullptr ? setting.get() : "(null)",
         static_cast<long long>(album_id));

  pb::vesk::DownloadPtr record(mb_util_content_download_new());
  if (record == nullptr) {
    PB_LOG(PB_LOG_ERROR, " : download_data NULL ERROR\n");
    return 0;
  }
  record->kind = MB_DOWNLOAD_KIND_QUICK_POST;
  record->content_ids = g_list_copy_deep(content_ids, copy_of, nullptr);
  const guint count = g_list_length(record->content_ids);
  const VeskFilter filter = pb::vesk::name_filter(pb::vesk::kQuickPostAlbum);
  const pb::vesk::Sent sent(veskMediaHandle, UserData::Kind::kDownload, record.get());
  const gint status = vesk_svc_content_album_get(veskMediaHandle, 0, 0, 1, &filter, sent.number());
  if (status != kAccepted) {
    PB_LOG(PB_LOG_ERROR, "  Operation Error:%d\n", status);
    sent.take_back();
    return 0;
  }
  [[maybe_unused]] const MbDownloadData *replys = record.release();
  PB_LOG(PB_LOG_INFO, "  Operation Successfull\n");
  pb::vesk::arm_guard(pb::vesk::kRequestGuardMs);
  mb_util_create_waiting_popup(
      pb_get_res_string(count > 1 ? pb::vesk::kSharingSeveralText : pb::vesk::kSharingAlbumText));
  return 1;
}

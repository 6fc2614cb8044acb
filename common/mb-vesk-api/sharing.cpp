#include <gdk/gdk.h>
#include <mb-vesk-api.h>
#include <online-content.h>
#include <online-core.h>
#include <online-share.h>
#include <pb-debug.h>
#include <pb-util-dialog.h>
#include <pb-util-resource.h>
#include <pb-view-manager.h>

#include "private.hpp"

using pb::vesk::handle_or_own;
using pb::vesk::kAccepted;

namespace {

constexpr gint kUnshareCategories[] = {VESK_CATEGORY_CONTENT};
constexpr guint kMessageMs = 1000;
/// There is no string for it in the resources.
constexpr const char *kCannotUnshareText = "Cannot Unshare Albums";

gint waiting_text(bool is_album, gint count) {
  if (is_album) return pb::vesk::kSharingAlbumText;
  return count > 1 ? pb::vesk::kSharingSeveralText : pb::vesk::kSharingOneText;
}

gboolean show_message_timeout(gpointer text) {
  mb_show_popup(pb_view_manager_get_window(), static_cast<const gchar *>(text));
  mb_vesk_media_destroy_timer();
  return FALSE;
}

}  // namespace

void mb_vesk_media_share_content_sns_group(guint32 handle, GList *ids, gboolean is_album,
                                           const gchar *group) {
  PB_LOG(PB_LOG_INFO, "\n");
  if (ids == nullptr || group == nullptr) return;
  mb_vesk_check_user_credential(handle);
  gint count = 0;
  const pb::vesk::IdsPtr array = pb::vesk::ids_of(ids, &count);
  if (array == nullptr) {
    PB_LOG(PB_LOG_ERROR, ": malloc ERROR\n");
    return;
  }
  const auto publish = is_album ? vesk_svc_content_album_publish : vesk_svc_content_file_publish;
  pb::vesk::note_asked(VESK_CONTENT_REQ_FILE_PUBLISH, count);
  const gint status = publish(handle_or_own(handle), count, array.get(), group, nullptr);
  PB_LOG(status == kAccepted ? PB_LOG_INFO : PB_LOG_ERROR, " Vp_status = %d \n", status);
  if (status != kAccepted) return;
  pb::vesk::arm_guard(pb::vesk::kRequestGuardMs);
  mb_util_create_waiting_popup(pb_get_res_string(waiting_text(is_album != FALSE, count)));
}

void mb_vesk_tools_get_shared_album_gids(guint32 handle, GList *album_ids) {
  PB_LOG(PB_LOG_INFO, "\n");
  mb_vesk_check_user_credential(handle);
  gint index = 0;
  bool sent = false;
  for (const gint64 *album_id : pb::each<gint64>(album_ids)) {
    if (album_id == nullptr) continue;
    PB_LOG(PB_LOG_INFO, "Naid[%d] = %lld\n", index++, static_cast<long long>(*album_id));
    const gint status = vesk_svc_share_shared_with(handle_or_own(handle), *album_id, nullptr);
    if (status == kAccepted) {
      PB_LOG(PB_LOG_INFO, "  Operation Successfull\n");
      sent = true;
    } else {
      PB_LOG(PB_LOG_ERROR, "  Operation Error:%d\n", status);
    }
  }
  if (!sent) return;
  pb::vesk::arm_guard(pb::vesk::kRequestGuardMs);
  mb_util_create_waiting_popup(pb_get_res_string(pb::vesk::kReadingGroupsText));
}

void mb_vesk_media_unshare_album(guint32 handle, GList *album_ids) {
  PB_LOG(PB_LOG_INFO, " mb_vesk_media_unshare_album\n");
  mb_vesk_check_user_credential(handle);
  gint index = 0;
  for (const gint64 *album_id : pb::each<gint64>(album_ids)) {
    if (album_id == nullptr) continue;
    PB_LOG(PB_LOG_INFO, "Naid[%d] = %lld\n", index++, static_cast<long long>(*album_id));
  }
  if (veskMediaHandle == 0) {
    PB_LOG(PB_LOG_INFO, " REGISTER\n");
    gint error = -1;
    const gint result = vesk_svc_core_app_registration(
        kUnshareCategories, 1, mb_vesk_media_svc_notification_cb, &error, &veskMediaHandle);
    if (result != kAccepted) {
      PB_LOG(PB_LOG_ERROR, "  MEDIA_SHARE Noti Registration FAILED Error:%d\n", result);
      return;
    }
  }
  bool sent = false;
  for (const gint64 *album_id : pb::each<gint64>(album_ids)) {
    if (album_id == nullptr) continue;
    const gint status =
        vesk_svc_share_deny_group_to_access_entities(handle_or_own(handle), *album_id, nullptr);
    if (status == kAccepted) {
      PB_LOG(PB_LOG_INFO, "  Operation Successfull\n");
      sent = true;
    } else {
      PB_LOG(PB_LOG_ERROR, "  Operation Error:%d\n", status);
    }
  }
  mb_util_create_waiting_popup(pb_get_res_string(pb::vesk::kUnsharingText));
  // No guard: the waiting popup stays until the reply.
  if (!sent) {
    gdk_threads_add_timeout(kMessageMs, show_message_timeout,
                            const_cast<gchar *>(kCannotUnshareText));
  }
}

gint mb_vesk_media_get_shared_album(guint32 handle, gint64 album_id) {
  PB_LOG(PB_LOG_INFO, "\n");
  mb_vesk_check_user_credential(handle);
  VeskSharedAlbumQuery query{};
  query.id = album_id;
  const gint status = vesk_svc_share_get_shared_album(handle_or_own(handle), &query, nullptr);
  if (status != kAccepted) {
    PB_LOG(PB_LOG_ERROR, "  Operation Error:%d\n", status);
    return 0;
  }
  PB_LOG(PB_LOG_INFO, "  Operation Successfull\n");
  pb::vesk::arm_guard(pb::vesk::kRequestGuardMs);
  return 1;
}

gint mb_vesk_media_get_shared_quick_post(guint32 handle) {
  PB_LOG(PB_LOG_INFO, "\n");
  mb_vesk_check_user_credential(handle);
  VeskSharedAlbumQuery query{};
  query.entry_count = 1;
  pb::vesk::set_text(query.owner, "system");
  pb::vesk::set_text(query.album_name, pb::vesk::kQuickPostAlbum);
  const gint status = vesk_svc_share_get_shared_album(handle_or_own(handle), &query, nullptr);
  if (status != kAccepted) {
    PB_LOG(PB_LOG_ERROR, "vesk_svc_share_get_shared_album : Operation Error:%d\n", status);
    return 0;
  }
  PB_LOG(PB_LOG_INFO, "  Operation Successfull\n");
  pb::vesk::arm_guard(pb::vesk::kRequestGuardMs);
  return 1;
}

gint mb_vesk_media_get_shared_content(guint32 handle, gint64 album_id, gint start, gint count) {
  PB_LOG(PB_LOG_INFO, "\n");
  mb_vesk_check_user_credential(handle);
  const std::string album = std::to_string(album_id);
  gchar range[16];
  pb::vesk::set_range(range, start, count);
  const gchar *const keys[] = {"albumid", "lids"};
  const gchar *const values[] = {album.c_str(), range};
  const gint status = vesk_svc_share_get_shared_content(
      handle_or_own(handle), static_cast<gint>(G_N_ELEMENTS(keys)), keys, values, nullptr);
  if (status != kAccepted) {
    PB_LOG(PB_LOG_ERROR, "  Operation Error:%d\n", status);
    return 0;
  }
  PB_LOG(PB_LOG_INFO, "  Operation Successfull\n");
  pb::vesk::arm_guard(pb::vesk::kRequestGuardMs);
  return 1;
}

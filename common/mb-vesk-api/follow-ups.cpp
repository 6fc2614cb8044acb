#include <gdk/gdk.h>
#include <mb-vesk-api.h>
#include <online-content.h>
#include <pb-app-common.h>
#include <pb-debug.h>
#include <pb-util-dialog.h>
#include <pb-util-settings.h>

#include <algorithm>

#include "private.hpp"

using pb::vesk::kAccepted;

namespace {

constexpr const char *kAlbumCountKey = "/Apps/MediaBrowser/WebAlbumCount";
constexpr gint kNoCategory = -1;

/// What a finished one-click share goes on with.
struct Upload {
  gint mode;
  gint64 content_id;
};

/// Main loop.
gpointer g_deletion_context = nullptr;
/// Main loop.
gchar g_share_group[256];

gint current_category() {
  PbAppCommon *browsing = pb_app_common_get_instance();
  gint category = kNoCategory;
  if (browsing != nullptr) g_object_get(browsing, "category-type", &category, nullptr);
  return category;
}

gboolean refresh_idle(gpointer /*data*/) {
  PB_LOG(PB_LOG_INFO, "category-type:%d\n", current_category());
  pb_app_common_resync_current_category();
  return FALSE;
}

gboolean resync_idle(gpointer /*data*/) {
  PB_LOG(PB_LOG_INFO, "category-type:%d\n", current_category());
  if (pb_dialog_check_exist()) pb_dialog_destroy();
  pb_app_common_resync_current_category();
  return FALSE;
}

gboolean rebuild_idle(gpointer /*data*/) {
  const gint category = current_category();
  const gint album_id = GPOINTER_TO_INT(std::exchange(g_deletion_context, nullptr));
  PB_LOG(PB_LOG_INFO, "category-type:%d, album_id:%d\n", category, album_id);
  pb_app_common_resync_current_category();
  pb_app_common_build_item_list(category, album_id);
  return FALSE;
}

gboolean lower_album_count_idle(gpointer removed) {
  const gint count = mb_gconf_get_int(kAlbumCountKey);
  PB_LOG(PB_LOG_INFO, "count:%d, removed:%d\n", count, GPOINTER_TO_INT(removed));
  if (count < 1) return FALSE;
  mb_gconf_set_int(kAlbumCountKey, std::max(count - GPOINTER_TO_INT(removed), 0));
  return FALSE;
}

void publish_to_group(gint64 content_id) {
  pb::vesk::note_asked(VESK_CONTENT_REQ_FILE_PUBLISH, 1);
  const gint status =
      vesk_svc_content_file_publish(veskMediaHandle, 1, &content_id, g_share_group, nullptr);
  VESK_NOTI_LOG(status == kAccepted ? PB_LOG_INFO : PB_LOG_ERROR, " Vp_status = %d \n", status);
}

void post_quickly(gint64 content_id) {
  const pb::ListSpinePtr ids(g_list_prepend(nullptr, &content_id));
  mb_vesk_media_quick_post(0, ids.get());
}

/// The user may have ended the share by closing its dialog; the upload stays.
gboolean follow_upload_idle(gpointer data) {
  const std::unique_ptr<Upload> upload(static_cast<Upload *>(data));
  const bool uploaded = upload->content_id >= 1;
  const bool goes_on = uploaded && pb_dialog_check_exist();
  if (goes_on && upload->mode == VESK_UPLOAD_QUICKPOST) {
    post_quickly(upload->content_id);
  } else if (goes_on && upload->mode == VESK_UPLOAD_GROUP) {
    publish_to_group(upload->content_id);
  } else {
    pb::vesk::close_dialog_later(pb::vesk::kResultPopupMs,
                                 uploaded ? pb::vesk::kUploadedText : pb::vesk::kUploadFailedText);
  }
  return FALSE;
}

}  // namespace

void pb::vesk::set_deletion_context(gpointer context) { g_deletion_context = context; }

void pb::vesk::set_share_group(const gchar *group) {
  std::fill(std::begin(g_share_group), std::end(g_share_group), '\0');
  set_text(g_share_group, group);
}

void pb::vesk::refresh_later() { gdk_threads_add_idle(refresh_idle, nullptr); }

void pb::vesk::resync_later() { gdk_threads_add_idle(resync_idle, nullptr); }

void pb::vesk::rebuild_later() { gdk_threads_add_idle(rebuild_idle, nullptr); }

void pb::vesk::lower_album_count_later(gint removed) {
  gdk_threads_add_idle(lower_album_count_idle, GINT_TO_POINTER(removed));
}

void pb::vesk::follow_upload_later(gint mode, gint64 content_id) {
  gdk_threads_add_idle(follow_upload_idle, new Upload{mode, content_id});
}

#include <mb-vesk-api.h>
#include <media-mirror.h>
#include <online-content.h>
#include <pb-debug.h>
#include <pb-util-dialog.h>
#include <pb-util-resource.h>

#include <algorithm>
#include <vector>

#include "private.hpp"

using pb::vesk::handle_or_own;
using pb::vesk::kAccepted;

namespace {

/// Web id of a local file while its upload is under way.
constexpr gint64 kPendingUpload = -2;

pb::vesk::IdsPtr widened(const gint *fids, gsize count) {
  pb::vesk::IdsPtr ids(
      static_cast<gint64 *>(g_try_malloc0_n(std::max<gsize>(count, 1), sizeof(gint64))));
  if (ids != nullptr) std::copy_n(fids, count, ids.get());
  return ids;
}

std::vector<gint> fids_of(GList *list) {
  std::vector<gint> fids;
  for (gpointer fid : pb::each<void>(list)) fids.push_back(GPOINTER_TO_INT(fid));
  return fids;
}

}  // namespace

void mb_vesk_upload_multiple_contents(guint32 handle, GList *fids) {
  PB_LOG(PB_LOG_INFO, "\n");
  if (fids == nullptr) return;
  mb_vesk_check_user_credential(handle);
  gint count = 0;
  const pb::vesk::IdsPtr ids = pb::vesk::numbers_of(fids, &count);
  if (ids == nullptr) {
    PB_LOG(PB_LOG_ERROR, ": tmp_fids malloc ERROR\n");
    return;
  }
  pb::vesk::note_asked(VESK_CONTENT_REQ_FILE_UPLOAD, count);
  if (vesk_svc_content_file_upload(handle_or_own(handle), count, ids.get(), VESK_UPLOAD_PLAIN) !=
      kAccepted) {
    PB_LOG(PB_LOG_ERROR, "vesk_svc_content_file_upload request FAILED\n");
    return;
  }
  PB_LOG(PB_LOG_INFO, "vesk_svc_content_file_upload request SUCCESS\n");
  pb::vesk::arm_guard(pb::vesk::kUploadGuardMs);
  mb_util_create_waiting_popup(pb_get_res_string(pb::vesk::kUploadingSeveralText));
}

gint mb_vesk_upload_fids(guint32 handle, const gint *fids, gint count, gint mode, gint *error) {
  PB_LOG(PB_LOG_INFO, "handle = %d, count = %d\n\n", static_cast<gint>(handle), count);
  mb_vesk_check_user_credential(handle);
  const gsize length = fids != nullptr && count > 0 ? static_cast<gsize>(count) : 0;
  const pb::vesk::IdsPtr ids = widened(fids, length);
  if (ids == nullptr) {
    PB_LOG(PB_LOG_ERROR, ": tmp_fids malloc ERROR\n");
    return 0;
  }
  pb::vesk::note_asked(VESK_CONTENT_REQ_FILE_UPLOAD, static_cast<gint>(length));
  const gint status = vesk_svc_content_file_upload(handle_or_own(handle), static_cast<gint>(length),
                                                   ids.get(), mode);
  for (gsize i = 0; status == kAccepted && i < length; ++i) {
    gint failure = 0;
    if (!fm_svc_vesk_update_nfid_of_file(fids[i], kPendingUpload, &failure)) {
      PB_LOG(PB_LOG_ERROR, "fm_svc_vesk_update_nfid_of_file failed\n\n");
    }
  }
  PB_LOG(PB_LOG_INFO, "err=%d\n\n", status);
  if (error != nullptr) *error = status;
  return 1;
}

gint mb_vesk_archieve_and_delete_local(guint32 handle, gint fid) {
  PB_LOG(PB_LOG_INFO, "\n");
  gint error = 0;
  if (mb_vesk_upload_fids(handle, &fid, 1, VESK_UPLOAD_ARCHIVE, &error) != 1) {
    PB_LOG(PB_LOG_ERROR, " mb_vesk_upload_fids failed %d\n\n", error);
    return 0;
  }
  PB_LOG(PB_LOG_INFO, "mb_vesk_upload_fids success\n\n");
  pb::vesk::arm_guard(pb::vesk::kUploadGuardMs);
  return 1;
}

gint mb_vesk_one_click_share(guint32 handle, gint fid, const gchar *group) {
  gint mode = VESK_UPLOAD_QUICKPOST;
  if (group != nullptr) {
    PB_LOG(PB_LOG_INFO, "SNS name=%s\n", group);
    pb::vesk::set_share_group(group);
    mode = VESK_UPLOAD_GROUP;
  }
  gint error = 0;
  if (mb_vesk_upload_fids(handle, &fid, 1, mode, &error) != 1) {
    PB_LOG(PB_LOG_ERROR, " mb_vesk_upload_fids failed %d\n\n", error);
    return 0;
  }
  PB_LOG(PB_LOG_INFO, "mb_vesk_upload_fids success\n\n");
  pb::vesk::arm_guard(pb::vesk::kUploadGuardMs);
  mb_util_create_waiting_popup(pb_get_res_string(pb::vesk::kUploadingOneText));
  return 1;
}

gint mb_vesk_file_manual_backup(guint32 handle, GList *fids) {
  PB_LOG(PB_LOG_INFO, "\n");
  const std::vector<gint> numbers = fids_of(fids);
  gint error = 0;
  if (mb_vesk_upload_fids(handle, numbers.data(), static_cast<gint>(numbers.size()),
                          VESK_UPLOAD_PLAIN, &error) != 1) {
    PB_LOG(PB_LOG_ERROR, " mb_vesk_upload_fids failed %d\n\n", error);
    return 1;
  }
  PB_LOG(PB_LOG_INFO, "mb_vesk_upload_fids success\n\n");
  pb::vesk::arm_guard(pb::vesk::kUploadGuardMs);
  mb_util_start_waiting_loop_animation(pb_get_res_string(
      numbers.size() > 1 ? pb::vesk::kUploadingSeveralText : pb::vesk::kUploadingOneText));
  return 1;
}

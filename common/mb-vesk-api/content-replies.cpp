#include <mb-vesk-api.h>
#include <media-browser.h>
#include <media-mirror.h>
#include <pb-debug.h>

#include <algorithm>
#include <cstring>

#include "reply.hpp"

using pb::vesk::ContentReply;

namespace {

constexpr gint32 kServiceRefused = 10;

void close_with(gint text) { pb::vesk::close_dialog_later(pb::vesk::kResultPopupMs, text); }

/// Ids below 1 stand for what failed.
bool is_done(gint64 id) { return id >= 1; }

gint count_done(const std::vector<gint64> &ids) {
  return static_cast<gint>(std::ranges::count_if(ids, is_done));
}

void handle_upload(const ContentReply &reply) {
  if (reply.user_data.mode) {
    const gint64 first = reply.ids.empty() ? 0 : reply.ids.front();
    pb::vesk::follow_upload_later(*reply.user_data.mode, first);
    pb::vesk::resync_later();
    return;
  }
  for (const gint64 id : reply.ids) {
    close_with(is_done(id) ? pb::vesk::kUploadedText : pb::vesk::kUploadFailedText);
  }
  if (count_done(reply.ids) > 0) pb::vesk::resync_later();
}

void handle_publish(const ContentReply &reply) {
  for (const gint64 id : reply.ids) {
    close_with(is_done(id) ? pb::vesk::kSharedText : pb::vesk::kNotSharedText);
  }
}

void log_ids(const ContentReply &reply) {
  gint index = 0;
  for (const gint64 id : reply.ids) {
    VESK_NOTI_LOG(PB_LOG_INFO, "Id[%d]:%lld\n", index++, static_cast<long long>(id));
  }
}

void handle_added(const ContentReply &reply) {
  const gint added = count_done(reply.ids);
  pb::vesk::close_dialog_later(
      pb::vesk::kClosingMs, added > 0 ? pb::vesk::kAddedText : pb::vesk::kNothingAddedText, added);
}

/// Brings the mirror's album up to date after contents of it were deleted.
void store_album(gint64 naid) {
  gint album_id = 0;
  gint error = 0;
  FmAlbumRecord album{};
  if (!fm_svc_mb_get_album_id_by_naid(naid, &album_id, &error) ||
      !fm_svc_mb_get_album(album_id, &album, &error)) {
    VESK_NOTI_LOG(PB_LOG_ERROR, "  fm_svc_mb_get_album FAILED \n");
    return;
  }
  if (!fm_svc_vesk_update_folder(&album, &error)) {
    VESK_NOTI_LOG(PB_LOG_ERROR, "fm_svc_vesk_update_folder failed %d\n", error);
  }
}

void handle_deleted(ContentReply reply) {
  std::erase_if(reply.ids, [](gint64 id) { return !is_done(id); });
  if (reply.ids.empty() || reply.user_data.album_id == nullptr) {
    VESK_NOTI_LOG(PB_LOG_ERROR, " VESK_CONTENT_REQ_ALBUM_DELETECONTENT FAILS\n");
    pb::vesk::close_dialog_later(pb::vesk::kClosingMs, pb::vesk::kNoText);
    return;
  }
  VESK_NOTI_LOG(PB_LOG_INFO, " VESK_CONTENT_REQ_ALBUM_DELETECONTENT SUCCCESS\n");
  const gint64 naid = *reply.user_data.album_id;
  gint error = 0;
  if (fm_svc_vesk_sync_album_remove_vesk_files(naid, reply.ids.data(),
                                               static_cast<gint>(reply.ids.size()), &error)) {
    VESK_NOTI_LOG(PB_LOG_INFO, "  fm_svc_vesk_sync_album_remove_vesk_files SUCCESS\n");
  } else {
    VESK_NOTI_LOG(PB_LOG_ERROR, "  fm_svc_vesk_sync_album_remove_vesk_files FAILED err = %d \n",
                  error);
  }
  store_album(naid);
  pb::vesk::close_dialog_later(pb::vesk::kClosingMs, pb::vesk::kNoText);
  pb::vesk::rebuild_later();
}

void handle_albums(ContentReply reply) {
  if (reply.user_data.record == nullptr) {
    VESK_NOTI_LOG(PB_LOG_INFO, "download_data == NULL\n");
    return;
  }
  // A record of another kind, or one without an album to go to, ends here.
  if (reply.user_data.record->kind != MB_DOWNLOAD_KIND_QUICK_POST) return;
  if (reply.ids.empty() || !is_done(reply.ids.front())) return;
  pb::vesk::add_to_album_later(reply.ids.front(), std::move(reply.user_data.record));
}

}  // namespace

void pb::vesk::handle_content_success(ContentReply reply) {
  switch (reply.event) {
    case VESK_CONTENT_REQ_FILE_UPLOAD:
      handle_upload(reply);
      break;
    case VESK_CONTENT_REQ_FILE_GET:
      update_drovo_cover(reply.ids.empty() ? 0 : reply.ids.front());
      break;
    case VESK_CONTENT_REQ_FILE_PUBLISH:
      handle_publish(reply);
      break;
    case VESK_CONTENT_REQ_ALBUM_UPDATE:
    case VESK_CONTENT_REQ_ALBUM_DELETE:
      log_ids(reply);
      break;
    case VESK_CONTENT_REQ_ALBUM_REMOVE:
      lower_album_count_later(count_done(reply.ids));
      break;
    case VESK_CONTENT_REQ_ALBUM_ADDCONTENT:
      handle_added(reply);
      break;
    case VESK_CONTENT_REQ_ALBUM_DELETECONTENT:
      handle_deleted(std::move(reply));
      break;
    case VESK_CONTENT_REQ_ALBUM_GET:
      handle_albums(std::move(reply));
      break;
    default:
      break;
  }
}

void pb::vesk::handle_content_failure(const VeskResponseHeader &header) {
  if (header.event_id == VESK_CONTENT_REQ_FILE_GET) {
    VESK_NOTI_LOG(PB_LOG_ERROR, "drovo Album cover updation failed..... \n");
    return;
  }
  if (header.event_id == VESK_CONTENT_REQ_FILE_UPLOAD) close_with(kUploadFailedText);
  close_with(header.error_id == kServiceRefused ? kRefusedText : kNoReplyText);
}

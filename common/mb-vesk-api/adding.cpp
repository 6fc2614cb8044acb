#include <gdk/gdk.h>
#include <mb-vesk-api.h>
#include <online-content.h>
#include <pb-debug.h>

#include "private.hpp"

using pb::vesk::kAccepted;

namespace {

constexpr gsize kBatch = 1000;

/// A quick post that has learned where it goes.
struct Post {
  gint64 album_id;
  pb::vesk::DownloadPtr record;
};

void log_refusal(gint status) {
  PB_LOG(PB_LOG_ERROR, "  vesk_svc_content_album_addcontent FAILED Error:%d\n", status);
}

void send_batch(gint64 album_id, std::vector<gint64> &batch) {
  pb::vesk::note_asked(VESK_CONTENT_REQ_ALBUM_ADDCONTENT, static_cast<gint>(batch.size()));
  const gint status = vesk_svc_content_album_addcontent(
      veskMediaHandle, static_cast<gint>(batch.size()), batch.data(), album_id, nullptr);
  if (status != kAccepted) log_refusal(status);
  batch.clear();
}

void free_contents(MbDownloadData *record) {
  g_list_free_full(std::exchange(record->content_ids, nullptr), g_free);
}

gboolean add_to_album_idle(gpointer data) {
  const std::unique_ptr<Post> post(static_cast<Post *>(data));
  if (post == nullptr || post->record == nullptr) {
    PB_LOG(PB_LOG_ERROR, " user_data is NULL \n");
    return FALSE;
  }
  // Freed here and now, as this is the main loop.
  MbDownloadData *record = post->record.release();
  if (record->content_ids == nullptr) {
    PB_LOG(PB_LOG_WARNING, " nelem is ZERO \n");
    mb_util_content_download_free(record);
    return FALSE;
  }
  std::vector<gint64> batch;
  for (const gint64 *id : pb::each<gint64>(record->content_ids)) {
    if (id == nullptr) continue;
    batch.push_back(*id);
    if (batch.size() < kBatch) continue;
    PB_LOG(PB_LOG_INFO, " Count = 30\n");
    send_batch(post->album_id, batch);
  }
  if (!batch.empty()) {
    PB_LOG(PB_LOG_INFO, " Count < 30\n");
    send_batch(post->album_id, batch);
  }
  free_contents(record);
  mb_util_content_download_free(record);
  return FALSE;
}

}  // namespace

void pb::vesk::add_to_album_later(gint64 album_id, DownloadPtr record) {
  gdk_threads_add_idle(add_to_album_idle, new Post{album_id, std::move(record)});
}

#include <mb-util-content.h>

#include <online-download.h>
#include <pb-debug.h>
#include <pb-util-dialog.h>

#include <glib-ptr.hpp>

namespace {

void abort_downloads(MbDownloadData *data) {
  if (data->entries == nullptr) return;
  for (gint i = 0; i < data->n_entries; ++i) {
    MbDownloadEntry &entry = data->entries[i];
    if (entry.request_id <= 0) continue;
    vesk_svc_download_util_abort_request(entry.request_id);
    entry.request_id = 0;
  }
}

}  // namespace

MbDownloadData *mb_util_content_download_new(void) {
  auto *data = static_cast<MbDownloadData *>(g_try_malloc0(sizeof(MbDownloadData)));
  if (data == nullptr) {
    PB_LOG(PB_LOG_ERROR, ": download_data malloc ERROR\n");
    return nullptr;
  }
  data->first_index = -1;
  data->last_index = -1;
  return data;
}

void mb_util_content_download_free(MbDownloadData *data) {
  if (data == nullptr) return;
  if (pb_dialog_check_exist()) pb_dialog_destroy();
  if (data->timer_tag > 0) {
    g_source_remove(data->timer_tag);
    data->timer_tag = 0;
  }
  abort_downloads(data);
  g_clear_pointer(&data->work1, g_free);
  g_clear_pointer(&data->work2, g_free);
  g_clear_pointer(&data->entries, g_free);
  g_list_free_full(data->content_ids, g_free);
  g_free(data);
}

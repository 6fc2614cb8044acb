#include <gdk/gdk.h>
#include <mb-vesk-api.h>
#include <pb-debug.h>
#include <pb-util-dialog.h>
#include <pb-util-resource.h>
#include <pb-view-manager.h>

#include <mutex>

#include "private.hpp"

namespace {

/// A plain tag, not a pb::SourceId: the source of a request that another one has followed stays
/// and fires. Main loop.
gint g_guard_tag = -1;

struct PendingText {
  std::mutex mutex;
  pb::StringPtr text;  // guarded by mutex
};

/// Never destroyed: replies may come while the process ends.
PendingText &pending_text() {
  static auto *instance = new PendingText;
  return *instance;
}

pb::StringPtr take_pending_text() {
  const std::scoped_lock lock(pending_text().mutex);
  return std::move(pending_text().text);
}

/// What a source that ends the waiting dialog shows afterwards.
struct Closing {
  pb::StringPtr text;
};

void free_closing(gpointer data) { delete static_cast<Closing *>(data); }

gboolean close_dialog_timeout(gpointer data) {
  // Taken out first: removing the guard may free what this source was given.
  const pb::StringPtr text = std::move(static_cast<Closing *>(data)->text);
  mb_vesk_media_destroy_timer();
  if (pb_dialog_check_exist()) pb_dialog_destroy();
  if (text != nullptr) mb_show_popup(pb_view_manager_get_window(), text.get());
  if (take_pending_text() != nullptr) {
    PB_LOG(PB_LOG_INFO, "   $$$$$$$$$$$$$ FREED $$$$$$$$$$$$  \n");
  }
  return FALSE;
}

guint add_closing(guint delay_ms, const gchar *text) {
  auto *closing = new Closing{pb::StringPtr(g_strdup(text))};
  return gdk_threads_add_timeout_full(G_PRIORITY_DEFAULT, delay_ms, close_dialog_timeout, closing,
                                      free_closing);
}

}  // namespace

void pb::vesk::arm_guard(guint interval_ms) {
  g_guard_tag = static_cast<gint>(add_closing(interval_ms, pb_get_res_string(kNoReplyText)));
}

void pb::vesk::close_dialog_later(guint delay_ms, const gchar *text) {
  add_closing(delay_ms, text);
}

void pb::vesk::set_pending_text(const gchar *text) {
  const std::scoped_lock lock(pending_text().mutex);
  pending_text().text.reset(g_strdup(text));
}

void mb_vesk_media_destroy_timer(void) {
  PB_LOG(PB_LOG_INFO, "mb_vesk_media_destroy_timer !!!\n");
  if (g_guard_tag <= 0) return;
  g_source_remove(static_cast<guint>(g_guard_tag));
  g_guard_tag = -1;
}

#include <gdk/gdk.h>
#include <mb-vesk-api.h>
#include <pb-debug.h>
#include <pb-util-dialog.h>
#include <pb-util-resource.h>
#include <pb-view-manager.h>

#include "private.hpp"

namespace {

/// A plain tag, not a pb::SourceId: the source of a request that another one has followed stays
/// and fires. Main loop.
gint g_guard_tag = -1;

/// Bytes of the text that counts what was added.
constexpr gsize kCountedLength = 20;

/// What a source that ends the waiting dialog shows afterwards. Numbers, so that a thread of the
/// service neither looks strings up nor keeps one.
struct Closing {
  gint text;
  gint count;
};

void free_closing(gpointer data) { delete static_cast<Closing *>(data); }

pb::StringPtr counted_text(gint count, const gchar *word) {
  const pb::StringPtr whole(g_strdup_printf("%d %s", count, word != nullptr ? word : ""));
  gchar text[kCountedLength + 1];
  pb::vesk::set_text(text, whole.get());
  return pb::StringPtr(g_strdup(text));
}

gboolean close_dialog_timeout(gpointer data) {
  // Copied first: removing the guard may free what this source was given.
  const Closing closing = *static_cast<const Closing *>(data);
  mb_vesk_media_destroy_timer();
  if (pb_dialog_check_exist()) pb_dialog_destroy();
  const gchar *text = closing.text != pb::vesk::kNoText ? pb_get_res_string(closing.text) : nullptr;
  pb::StringPtr pending;
  if (closing.count > 0) {
    pending = counted_text(closing.count, text);
    text = pending.get();
  }
  if (text != nullptr) mb_show_popup(pb_view_manager_get_window(), text);
  if (pending != nullptr) {
    pending.reset();
    PB_LOG(PB_LOG_INFO, "   $$$$$$$$$$$$$ FREED $$$$$$$$$$$$  \n");
  }
  return FALSE;
}

guint add_closing(guint delay_ms, gint text, gint count) {
  return gdk_threads_add_timeout_full(G_PRIORITY_DEFAULT, delay_ms, close_dialog_timeout,
                                      new Closing{text, count}, free_closing);
}

}  // namespace

void pb::vesk::arm_guard(guint interval_ms) {
  g_guard_tag = static_cast<gint>(add_closing(interval_ms, kNoReplyText, 0));
}

void pb::vesk::close_dialog_later(guint delay_ms, gint text, gint count) {
  add_closing(delay_ms, text, count);
}

void mb_vesk_media_destroy_timer(void) {
  PB_LOG(PB_LOG_INFO, "mb_vesk_media_destroy_timer !!!\n");
  if (g_guard_tag <= 0) return;
  g_source_remove(static_cast<guint>(g_guard_tag));
  g_guard_tag = -1;
}

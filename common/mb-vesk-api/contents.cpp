#include <mb-vesk-api.h>
#include <online-content.h>
#include <online-core.h>
#include <pb-debug.h>
#include <pb-util-dialog.h>

#include <algorithm>

#include "private.hpp"

using pb::vesk::handle_or_own;
using pb::vesk::kAccepted;
using pb::vesk::UserData;

namespace {

constexpr gint64 kNoAlbum = -1;
constexpr gint64 kAllContents = -1;
constexpr gint kUnfiltered = 1;
constexpr gint kFiltered = 2;
/// How the wait for a deletion is told; there is no string for it in the resources.
constexpr const char *kDeletingText = "Deleting contents.....";

VeskContentRequest album_request(gint64 album_id) {
  VeskContentRequest request{};
  request.kind = VESK_REQUEST_ALBUM;
  request.album_id = album_id;
  request.content_id = kAllContents;
  return request;
}

pb::vesk::AlbumIdPtr copy_of(gint64 album_id) {
  pb::vesk::AlbumIdPtr copy(static_cast<gint64 *>(g_try_malloc0(sizeof(gint64))));
  if (copy != nullptr) *copy = album_id;
  return copy;
}

/// Asks for the deletion. The copy of the album's id belongs to the reply when it is accepted.
gint delete_contents(guint32 handle, gint count, const gint64 *ids, pb::vesk::AlbumIdPtr copy) {
  const gint64 album_id = *copy;
  const pb::vesk::Sent sent(handle, UserData::Kind::kAlbumId, copy.get(),
                            static_cast<gsize>(count));
  const gint status =
      vesk_svc_content_album_deletecontent(handle, count, ids, album_id, sent.number());
  if (status == kAccepted) {
    [[maybe_unused]] const gint64 *replys = copy.release();
  } else {
    sent.take_back();
  }
  return status;
}

}  // namespace

gint mb_vesk_media_get_web_album_contents(guint32 handle, gint64 album_id, gint start, gint count,
                                          gpointer user_data) {
  PB_LOG(PB_LOG_INFO, "\n");
  mb_vesk_check_user_credential(handle);
  VeskContentRequest request = album_request(album_id);
  gint parts = kFiltered;
  if (album_id == kNoAlbum) {
    request.kind = VESK_REQUEST_CONTENT;
    parts = kUnfiltered;
  } else {
    request.filter = pb::vesk::range_filter(VESK_FILTER_RANGE, start, count);
  }
  const pb::vesk::Sent sent(handle_or_own(handle), UserData::Kind::kDownload, user_data);
  const gint status =
      vesk_svc_content_file_get(handle_or_own(handle), parts, &request, sent.number());
  if (status != kAccepted) {
    PB_LOG(PB_LOG_ERROR, "  Operation Error:%d\n", status);
    sent.take_back();
    return 0;
  }
  PB_LOG(PB_LOG_INFO, "  Operation Successfull\n");
  return 1;
}

gint mb_vesk_media_get_my_shared_content(guint32 handle, gint64 album_id, gboolean ranged,
                                         gint start, gint count, gpointer user_data) {
  PB_LOG(PB_LOG_INFO, "\n");
  mb_vesk_check_user_credential(handle);
  if (handle == 0) return 1;
  VeskContentRequest request = album_request(album_id);
  if (ranged) request.filter = pb::vesk::range_filter(VESK_FILTER_RANGE, start, count);
  const pb::vesk::Sent sent(handle, UserData::Kind::kDownload, user_data);
  const gint status =
      vesk_svc_content_file_get(handle, ranged ? kFiltered : kUnfiltered, &request, sent.number());
  if (status != kAccepted) {
    PB_LOG(PB_LOG_ERROR, "  Operation Error:%d\n", status);
    sent.take_back();
    return 0;
  }
  PB_LOG(PB_LOG_INFO, "  Operation Successfull\n");
  return 1;
}

void mb_vesk_get_content(guint32 handle, gint64 content_id) {
  PB_LOG(PB_LOG_INFO, "\n");
  mb_vesk_check_user_credential(handle);
  gint status = 0;
  if (handle != 0) {
    VeskContentRequest request = album_request(content_id);
    request.kind = VESK_REQUEST_CONTENT;
    status = vesk_svc_content_file_get(handle, kUnfiltered, &request, nullptr);
  }
  PB_LOG(PB_LOG_INFO, "  mb_vesk_get_content :%d \n", status);
  pb::vesk::arm_guard(pb::vesk::kRequestGuardMs);
}

gpointer mb_vesk_delete_web_album_contents(guint32 handle, gpointer deletion_context,
                                           gint64 album_id, GList *content_ids) {
  PB_LOG(PB_LOG_INFO, "\n");
  mb_vesk_check_user_credential(handle);
  pb::vesk::AlbumIdPtr copy = copy_of(album_id);
  if (copy == nullptr) {
    PB_LOG(PB_LOG_ERROR, ": naid  malloc ERROR\n");
    return nullptr;
  }
  gint count = 0;
  const pb::vesk::IdsPtr ids = pb::vesk::ids_of(content_ids, &count);
  if (ids == nullptr) {
    PB_LOG(PB_LOG_ERROR, ": deletelist malloc ERROR\n");
    return nullptr;
  }
  PB_LOG(PB_LOG_INFO, "Count = %d\n", count);
  for (gint i = 0; i < count; ++i) {
    PB_LOG(PB_LOG_INFO, "fids[%d] = %d\n", i, static_cast<gint>(ids.get()[i]));
  }
  if (delete_contents(handle_or_own(handle), count, ids.get(), std::move(copy)) != kAccepted) {
    PB_LOG(PB_LOG_ERROR, "vesk_svc_content_album_deletecontent request FAILED\n");
    return nullptr;
  }
  pb::vesk::set_deletion_context(deletion_context);
  PB_LOG(PB_LOG_INFO, "vesk_svc_content_album_deletecontent request SUCCESS\n");
  mb_util_start_waiting_loop_animation(kDeletingText);
  pb::vesk::arm_guard(pb::vesk::kRequestGuardMs);
  return GINT_TO_POINTER(1);
}

void mb_vesk_delete_content_cb(guint32 handle, gint64 content_id, gint64 album_id) {
  PB_LOG(PB_LOG_INFO, "\n");
  mb_vesk_check_user_credential(handle);
  pb::vesk::AlbumIdPtr copy = copy_of(album_id);
  if (copy == nullptr) {
    PB_LOG(PB_LOG_ERROR, ": naid  malloc ERROR\n");
    return;
  }
  const gint status = delete_contents(handle_or_own(handle), 1, &content_id, std::move(copy));
  if (status != kAccepted) {
    PB_LOG(PB_LOG_ERROR, "  Operation Error:%d\n", status);
    return;
  }
  PB_LOG(PB_LOG_INFO, "  Operation Successfull\n");
  pb::vesk::arm_guard(pb::vesk::kRequestGuardMs);
}

gint mb_vesk_media_add_content_to_web_album(guint32 handle, const gint64 *content_ids, gint count,
                                            gint64 album_id) {
  PB_LOG(PB_LOG_INFO, "\n");
  mb_vesk_check_user_credential(handle);
  const gsize length = content_ids != nullptr && count > 0 ? static_cast<gsize>(count) : 0;
  const pb::vesk::IdsPtr ids(
      static_cast<gint64 *>(g_try_malloc0_n(std::max<gsize>(length, 1), sizeof(gint64))));
  if (ids == nullptr) {
    PB_LOG(PB_LOG_ERROR, ": malloc ERROR\n");
    return 0;
  }
  std::copy_n(content_ids, length, ids.get());
  pb::vesk::note_asked(VESK_CONTENT_REQ_ALBUM_ADDCONTENT, static_cast<gint>(length));
  const gint status = vesk_svc_content_album_addcontent(
      handle_or_own(handle), static_cast<gint>(length), ids.get(), album_id, nullptr);
  if (status != kAccepted) {
    PB_LOG(PB_LOG_ERROR, "  vesk_svc_content_album_addcontent FAILED Error:%d\n", status);
    return 0;
  }
  PB_LOG(PB_LOG_INFO, "  Operation Successfull\n");
  return 1;
}

void mb_vesk_synchronize_details(guint32 handle) {
  PB_LOG(PB_LOG_INFO, "\n");
  mb_vesk_check_user_credential(handle);
  const gint status =
      vesk_svc_core_synchronize_details(handle_or_own(handle), VESK_SYNCHRONIZE_ALL);
  if (status == kAccepted) {
    PB_LOG(PB_LOG_INFO, "  Operation Successfull\n");
  } else {
    PB_LOG(PB_LOG_ERROR, "  Operation Error:%d\n", status);
  }
}

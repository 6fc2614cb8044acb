#include <mb-vesk-api.h>
#include <online-share.h>
#include <pb-debug.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "private.hpp"

using pb::vesk::handle_or_own;
using pb::vesk::kAccepted;

namespace {

/// What fills the parts of a record that say nothing.
constexpr int kUnset = 0xff;

using CommentPtr = std::unique_ptr<VeskComment, pb::FreeWith<g_free>>;

}  // namespace

void mb_vesk_media_get_comments(guint32 handle, gint64 content_id, gint64 album_id, gint start,
                                gint count) {
  PB_LOG(PB_LOG_INFO, "\n");
  mb_vesk_check_user_credential(handle);
  VeskCommentEntity entity;
  std::memset(&entity, kUnset, sizeof entity);
  entity.content_id = content_id;
  entity.album_id = album_id;
  entity.kind = VESK_ENTITY_CONTENT;
  const VeskFilter filter = pb::vesk::range_filter(VESK_FILTER_COMMENT_RANGE, start, count);
  const gint status = vesk_svc_comment_get_comments(handle_or_own(handle), 1, &entity, 1, &filter);
  if (status != kAccepted) {
    PB_LOG(PB_LOG_ERROR, "  Operation Error:%d\n", status);
    return;
  }
  PB_LOG(PB_LOG_INFO, "  Operation Successfull\n");
  pb::vesk::arm_guard(pb::vesk::kRequestGuardMs);
}

void mb_vesk_media_add_comments(guint32 handle, gint64 content_id, const gchar *text) {
  PB_LOG(PB_LOG_INFO, "\n");
  if (text == nullptr) return;
  mb_vesk_check_user_credential(handle);
  const CommentPtr comment(static_cast<VeskComment *>(g_try_malloc0(sizeof(VeskComment))));
  if (comment == nullptr) {
    PB_LOG(PB_LOG_ERROR, " Memory faild for tag info.operation aborted!!!! \n");
    return;
  }
  std::fill(std::begin(comment->unset), std::end(comment->unset), kUnset);
  comment->content_id = content_id;
  comment->kind = VESK_ENTITY_CONTENT;
  pb::vesk::set_text(comment->terminator, pb::vesk::kTerminator);
  pb::vesk::set_text(comment->text, text);
  const gint status = vesk_svc_comment_add_comments(handle_or_own(handle), 1, comment.get());
  if (status == kAccepted) {
    PB_LOG(PB_LOG_INFO, "  Operation Successfull\n");
  } else {
    PB_LOG(PB_LOG_ERROR, "  Operation Error:%d\n", status);
  }
}

void mb_vesk_media_delete_comments(guint32 handle, GList *comment_ids, gint owner_id) {
  PB_LOG(PB_LOG_INFO, "\n");
  if (comment_ids == nullptr) return;
  mb_vesk_check_user_credential(handle);
  gint count = 0;
  const pb::vesk::IdsPtr ids = pb::vesk::ids_of(comment_ids, &count);
  if (ids == nullptr) {
    PB_LOG(PB_LOG_ERROR, ": commentidlist mallco EROR\n");
    return;
  }
  const gint status =
      vesk_svc_comment_remove_comments(handle_or_own(handle), count, ids.get(), owner_id);
  if (status == kAccepted) {
    PB_LOG(PB_LOG_INFO, "  Operation Successfull\n");
  } else {
    PB_LOG(PB_LOG_ERROR, "  Operation Error:%d\n", status);
  }
}

#include <mb-vesk-api.h>
#include <pb-debug.h>

#include "reply.hpp"

using pb::vesk::Bytes;
using pb::vesk::Fields;

namespace {

constexpr gint kSuccess = 1;
constexpr gint32 kLastEvent = VESK_CONTENT_REQ_ALBUM_GET;

/// Places of the fields of a share reply.
enum { kMark, kOperation, kLength, kShareData, kElementCount };

void log_bad_field() { VESK_NOTI_LOG(PB_LOG_ERROR, "Error in noti parameter value\n\n"); }

void close_with(gint text) { pb::vesk::close_dialog_later(pb::vesk::kResultPopupMs, text); }

void handle_share_operation(gint32 operation, gint32 succeeded) {
  switch (operation) {
    case VESK_SHARE_SHARE_WITH_GROUP:
      VESK_NOTI_LOG(PB_LOG_INFO, "VESK_SHARE_SHARE_WITH_GROUP = %d\n", succeeded);
      if (succeeded >= 1) close_with(pb::vesk::kSharedText);
      break;
    case VESK_SHARE_UNSHARE_GROUP:
      VESK_NOTI_LOG(PB_LOG_INFO, "VESK_SHARE_UNSHARE_GROUP = %d\n", succeeded);
      if (succeeded >= 1) close_with(pb::vesk::kUnsharedText);
      break;
    case VESK_SHARE_SHARED_WITH:
      VESK_NOTI_LOG(PB_LOG_INFO, "VESK_SHARE_SHARED_WITH\n");
      break;
    default:
      break;
  }
}

void handle_share(Fields fields) {
  VESK_NOTI_LOG(PB_LOG_INFO, " #############################mb_vesk_share_svc_notification_cb \n");
  const std::optional<gint32> operation = pb::vesk::integer_field(fields, kOperation);
  const std::optional<gint32> length = pb::vesk::integer_field(fields, kLength);
  const std::optional<Bytes> data = pb::vesk::bytes_field(fields, kShareData);
  if (pb::vesk::integer_field(fields, kMark) != kSuccess || !operation || !length || !data) {
    log_bad_field();
    return;
  }
  if (*length < 0 || static_cast<gsize>(*length) != data->size) {
    VESK_NOTI_LOG(PB_LOG_ERROR, "Error in noti parameter value: data length is not proper\n\n");
    return;
  }
  if (!pb::vesk::integer_field(fields, kElementCount)) {
    VESK_NOTI_LOG(PB_LOG_ERROR, "Error in noti parameter value,nelem\n\n");
    return;
  }
  handle_share_operation(*operation, pb::vesk::first_word(*data));
}

void handle_content(Fields fields) {
  const std::optional<VeskResponseHeader> header = pb::vesk::header_field(fields);
  const bool upload = header && header->event_id == VESK_CONTENT_REQ_FILE_UPLOAD;
  // Taken in any case: a reply that is dropped frees what its request has left.
  pb::vesk::ReplyUserData user_data = pb::vesk::user_data_field(fields, upload);
  if (!header) {
    log_bad_field();
    return;
  }
  VESK_NOTI_LOG(PB_LOG_INFO, "rsp->errid:%d,rsp-appid:%d,resp->eventid:%d\n", header->error_id,
                header->application_id, header->event_id);
  if (header->error_id != kSuccess) {
    VESK_NOTI_LOG(PB_LOG_ERROR, "response is not SUCCESS\n");
    pb::vesk::handle_content_failure(*header);
    return;
  }
  const std::optional<Bytes> meta = pb::vesk::bytes_field(fields, 1);
  if (!meta) {
    log_bad_field();
    return;
  }
  VESK_NOTI_LOG(PB_LOG_INFO, " rsp meta data_size = %d\n \n", static_cast<gint>(meta->size));
  const std::optional<Bytes> data = pb::vesk::bytes_field(fields, 2);
  if (!data) {
    log_bad_field();
    return;
  }
  VESK_NOTI_LOG(PB_LOG_INFO, "rsp data_size = %d\n \n", static_cast<gint>(data->size));
  if (!user_data.valid) {
    log_bad_field();
    return;
  }
  if (header->event_id < 1 || header->event_id > kLastEvent) return;
  const gsize asked =
      user_data.asked > 0 ? user_data.asked : pb::vesk::most_asked(header->event_id);
  std::vector<gint64> ids = pb::vesk::ids_of(*meta, *data, asked);
  pb::vesk::handle_content_success({header->event_id, std::move(ids), std::move(user_data)});
}

}  // namespace

gint mb_vesk_media_svc_notification_cb(const gchar *message, const VeskNotiField *fields,
                                       gint n_fields) {
  const Fields all(fields, fields != nullptr && n_fields > 0 ? static_cast<gsize>(n_fields) : 0);
  if (g_strcmp0(message, VESK_MESSAGE_CONTENT) == 0) {
    handle_content(all);
  } else if (g_strcmp0(message, VESK_MESSAGE_SHARE) == 0) {
    handle_share(all);
  }
  return 1;
}

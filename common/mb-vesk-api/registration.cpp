#include <mb-vesk-api.h>

#include <media-mirror.h>
#include <online-core.h>
#include <pb-debug.h>
#include <pb-util-settings.h>

#include "private.hpp"

guint32 veskMediaHandle = 0;
guint32 veskShareHandle = 0;

namespace {

constexpr gint kCategories[] = {VESK_CATEGORY_CONTENT, VESK_CATEGORY_SHARE};
constexpr gint kCategoryCount = 2;

}  // namespace

guint32 pb::vesk::handle_or_own(guint32 handle) { return handle != 0 ? handle : veskMediaHandle; }

guint32 mb_get_vesk_service_media_handle(void) {
  PB_LOG(PB_LOG_INFO, " mb_get_vesk_service_handle  \n");
  return veskMediaHandle;
}

guint32 mb_get_vesk_service_share_handle(void) {
  PB_LOG(PB_LOG_INFO, " mb_get_vesk_service_handle  \n");
  return veskShareHandle;
}

gint mb_vesk_check_user_credential(guint32 handle) {
  PB_LOG(PB_LOG_INFO, "\n");
  const bool signed_in = vesk_svc_core_is_logout(handle) == 0;
  if (signed_in) {
    PB_LOG(PB_LOG_INFO, "login\n");
  } else {
    PB_LOG(PB_LOG_INFO, "logout\n");
  }
  mb_util_set_vesk_login_present(signed_in ? 1 : 0);
  return signed_in ? 1 : 0;
}

void mb_vesk_media_service_register(guint32 *handle, vesk_noti_cb callback) {
  PB_LOG(PB_LOG_INFO, " mb_vesk_media_service_register \n");
  if (mb_vesk_check_user_credential(0) == 0) {
    PB_LOG(PB_LOG_WARNING, "mb_vesk_check_user_credential : false  \n");
    return;
  }
  gint error = -1;
  const gint result =
      callback != nullptr
          ? vesk_svc_core_app_registration(kCategories, kCategoryCount, callback, &error, handle)
          : vesk_svc_core_app_registration(kCategories, kCategoryCount,
                                           mb_vesk_media_svc_notification_cb, &error,
                                           &veskMediaHandle);
  if (result != pb::vesk::kAccepted) {
    PB_LOG(PB_LOG_ERROR, "  MEDIA_SHARE Noti Registration FAILED Error:%d\n", result);
  }
  // Written after a failure as well: readers of the log match on the pair.
  PB_LOG(PB_LOG_INFO, "  MEDIA_SHARE Noti Registration is Successfull\n");
}

void mb_vesk_media_service_deregister_callback(guint32 handle, vesk_noti_cb callback) {
  PB_LOG(PB_LOG_INFO, " *********** mb_vesk_media_service_deregister_callback ********** \n");
  if (mb_vesk_check_user_credential(handle) == 0) {
    PB_LOG(PB_LOG_WARNING, "mb_vesk_check_user_credential : false  \n");
    return;
  }
  const gint result = vesk_svc_core_deregister_noti_callback(
      pb::vesk::handle_or_own(handle), kCategories, kCategoryCount,
      callback != nullptr ? callback : mb_vesk_media_svc_notification_cb);
  if (result != pb::vesk::kAccepted) {
    PB_LOG(PB_LOG_ERROR, "  Deregistration Callback Error:%d\n", result);
  }
  PB_LOG(PB_LOG_INFO, "  Deregistration Callback Successfull\n");
}

void mb_vesk_deregister_app(guint32 handle) {
  PB_LOG(PB_LOG_INFO, " mb_vesk_deregister_app \n");
  if (mb_vesk_check_user_credential(handle) == 0) {
    PB_LOG(PB_LOG_WARNING, "mb_vesk_check_user_credential : false  \n");
    return;
  }
  const guint32 registered = pb::vesk::handle_or_own(handle);
  const gint result = vesk_svc_core_deregister_app(registered);
  if (result != pb::vesk::kAccepted) {
    PB_LOG(PB_LOG_ERROR, "  Deregistration APP Error:%d\n", result);
  } else {
    pb::vesk::drop_user_data(registered);
  }
  PB_LOG(PB_LOG_INFO, "  Deregistration APP Successfull\n");
}

void mb_fm_vesk_media_service_register(void) {
  PB_LOG(PB_LOG_INFO, "\n");
  gint error = -1;
  if (mb_vesk_check_user_credential(0) == 0) {
    PB_LOG(PB_LOG_WARNING, "mb_vesk_check_user_credential : false  \n");
  } else if (mb_util_is_vesk_login_present() == 0) {
    PB_LOG(PB_LOG_WARNING, "mb_util_is_vesk_login_present : false  \n");
  } else if (fm_svc_vesk_registration(mb_vesk_media_svc_notification_cb, &error) != 0) {
    PB_LOG(PB_LOG_INFO, "fm_svc_vesk_registration success\n\n");
  } else {
    PB_LOG(PB_LOG_ERROR, "fm_svc_vesk_registration failed %x\n\n", static_cast<guint>(error));
  }
}

void mb_fm_vesk_media_service_deregister(void) {
  PB_LOG(PB_LOG_INFO, "\n");
  gint error = -1;
  if (mb_util_is_vesk_login_present() == 0) {
    PB_LOG(PB_LOG_WARNING, "mb_util_is_vesk_login_present : false  \n");
  } else if (fm_svc_vesk_unregistration_callback(mb_vesk_media_svc_notification_cb, &error) != 0) {
    PB_LOG(PB_LOG_INFO, "fm_svc_vesk_unregistration success\n\n");
  } else {
    PB_LOG(PB_LOG_ERROR, "fm_svc_vesk_unregistration failed %x\n\n", static_cast<guint>(error));
  }
}

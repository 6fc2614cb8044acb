#include <online-core.h>

#include "mb-vesk-api.h"
#include "pb-debug.h"
#include "pb-util-settings.h"

guint32 veskMediaHandle = 0;
guint32 veskShareHandle = 0;

gint mb_vesk_check_user_credential(guint32 handle) {
  pb_debug_message(PB_LOG_INFO, __FILE__, __func__, __LINE__, "[%s]\n", __func__);
  const bool signed_in = vesk_svc_core_is_logout(handle) == 0;
  if (signed_in) {
    PB_LOG(PB_LOG_INFO, "login\n");
  } else {
    PB_LOG(PB_LOG_INFO, "logout\n");
  }
  mb_util_set_vesk_login_present(signed_in ? 1 : 0);
  return signed_in ? 1 : 0;
}

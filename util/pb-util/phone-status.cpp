#include <application-manager.h>
#include <file-explorer.h>
#include <media-browser.h>
#include <phone-status.h>
#include <telephony.h>

#include "check.hpp"
#include "glib-ptr.hpp"
#include "mb-vesk-api.h"
#include "pb-debug.h"
#include "pb-util-dialog.h"
#include "pb-util-resource.h"
#include "pb-util-settings.h"
#include "util/pb-util/private.hpp"

namespace {

using ValuePtr = std::unique_ptr<GConfValue, pb::FreeWith<gconf_value_free>>;

constexpr const char *kPhoneInitKey = "/PhoneStatus/Application/FileManager/PhoneInit";
constexpr const char *kCardInitKey = "/PhoneStatus/Application/FileManager/MmcInit";

constexpr gint kNoticeDialog = 2;
constexpr gint kNoticeTimeoutMs = 2000;
constexpr gint kNotReadyTitle = 10035;
constexpr gint kNotReadyText = 10473;

/// Albums to count: all, or those of this phone alone.
constexpr gint kWithWebAlbums = -1;
constexpr gint kWithoutWebAlbums = 0;

gint g_login_present = PB_VESK_LOGIN_UNKNOWN;

bool is_card_supported() {
  gboolean supported = FALSE;
  return fexplorer_is_mmc_supported(&supported) && supported;
}

/// Whether the databases of the phone and of its card are complete. A status of the phone that
/// cannot be read counts as complete; one of the card leaves the phone's to decide.
bool is_media_data_ready() {
  gint value = -1;
  mb_get_int_phone_status(kPhoneInitKey, &value);
  if (value == 0) return false;
  if (!is_card_supported()) return true;
  mb_get_int_phone_status(kCardInitKey, &value);
  return value == 1;
}

}  // namespace

gboolean mb_get_int_phone_status(const gchar *key, gint *value) {
  PB_CHECK(key != NULL && value != NULL, FALSE);
  const ValuePtr status(gconf_value_new(GCONF_VALUE_INT));
  if (status == nullptr) return FALSE;
  if (!phonestatus_get(key, status.get())) {
    PB_LOG(PB_LOG_ERROR, "failed\n");
    return FALSE;
  }
  *value = gconf_value_get_int(status.get());
  PB_LOG(PB_LOG_INFO, "%s:%d\n", key, *value);
  return TRUE;
}

gboolean mb_set_int_phone_status(const gchar *key, gint value) {
  PB_CHECK(key, FALSE);
  const ValuePtr status(gconf_value_new(GCONF_VALUE_INT));
  if (status == nullptr) return FALSE;
  gconf_value_set_int(status.get(), value);
  if (!phonestatus_set(key, status.get())) {
    PB_LOG(PB_LOG_ERROR, "failed\n");
    return FALSE;
  }
  PB_LOG(PB_LOG_INFO, "%s:%d\n", key, value);
  return TRUE;
}

gint mb_util_is_vesk_login_present(void) {
  PB_LOG(PB_LOG_INFO, "\n PRESENT %d\n\n", g_login_present);
  return g_login_present;
}

void mb_util_set_vesk_login_present(gint present) {
  PB_LOG(PB_LOG_INFO, "\n PRESENT %d\n\n", present);
  g_login_present = present;
}

gboolean mb_sim_is_present(void) {
  gint card_type = 0;
  const gint error = TelTapiSimGetCardType(&card_type);
  if (error != 0) {
    PB_LOG(PB_LOG_ERROR, " tapi_sim_get_card_type api failed : err_code(%d) \n\n", error);
    return FALSE;
  }
  PB_LOG(PB_LOG_INFO, " SIM CARD TYPE = %d \n\n", card_type);
  return TRUE;
}

gboolean mb_util_is_gallery_app(void) {
  gint id = 0;
  const gint error = app_get_current_id(&id);
  if (error != 0) {
    PB_LOG(PB_LOG_ERROR, "app_get_current_id failed : %d\n", error);
    return FALSE;
  }
  return id == APP_ID_GALLERY;
}

gboolean mb_util_check_is_there_no_album(void) {
  const bool signed_in = mb_vesk_check_user_credential(0) != 0;
  gint count = 0;
  gint error = 0;
  if (!fm_svc_mb_get_albums_count(&count, signed_in ? kWithWebAlbums : kWithoutWebAlbums, &error)) {
    PB_LOG(PB_LOG_ERROR, "fm_svc_mb_get_albums_count failed\n");
    return TRUE;
  }
  // With a web account there is always the service's own album.
  return count <= (signed_in ? 1 : 0);
}

gboolean pb_check_data_init_status(void) {
  if (is_media_data_ready()) return TRUE;
  PB_LOG(PB_LOG_INFO, "DB initialization is doing, quit from the application.\n");
  pb_res_open();
  const pb::StringPtr title = pb::util::copy_res_string(kNotReadyTitle);
  const pb::StringPtr text = pb::util::copy_res_string(kNotReadyText);
  pb_util_show_dialog(kNoticeDialog, title.get(), text.get(), PB_DIALOG_BUTTONS_OK,
                      kNoticeTimeoutMs, nullptr);
  pb_res_close();
  return FALSE;
}

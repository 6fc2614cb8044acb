#include <phone-status.h>

#include "fakes/journal.hpp"

void fake::set_phone_service_defaults(Platform &phone) {
  phone.phonestatus_get = [](const gchar *key, GConfValue *value) -> gboolean {
    const auto found = platform().phone_status.find(key);
    if (found == platform().phone_status.end()) return FALSE;
    gconf_value_set_int(value, found->second);
    return TRUE;
  };
  phone.phonestatus_set = [](const gchar *key, GConfValue *value) {
    platform().phone_status[key] = gconf_value_get_int(value);
    return TRUE;
  };
  phone.settings_get_int = [](gint, gint *value) {
    answer(value, 0);
    return 0;
  };
  phone.pm_control = [](gint, gint) { return 0; };
  phone.pm_DVFS_control = [](gint) { return 0; };
  phone.TelTapiSimGetCardType = [](gint *card_type) {
    answer(card_type, 1);
    return 0;
  };
  phone.app_get_current_id = [](gint *app_id) {
    answer(app_id, APP_ID_GALLERY);
    return 0;
  };
  phone.EvtSysEventPublish = [](gint, gint, gpointer) { return 0; };
}

gboolean phonestatus_get(const gchar *key, GConfValue *value) {
  fake::record("phonestatus_get", key);
  return fake::platform().phonestatus_get(key, value);
}

gboolean phonestatus_set(const gchar *key, GConfValue *value) {
  const bool is_int = value != nullptr && value->type == GCONF_VALUE_INT;
  fake::record("phonestatus_set", key, is_int ? gconf_value_get_int(value) : 0);
  return fake::platform().phonestatus_set(key, value);
}

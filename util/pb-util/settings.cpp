#include <gconf/gconf-client.h>

#include "glib-ptr.hpp"
#include "pb-debug.h"
#include "pb-util-settings.h"
#include "util/pb-util/private.hpp"

namespace {

using pb::util::ClientRef;
using pb::util::default_client;

constexpr gint kUnreadable = -1;

/// GConf aborts the program for some texts that are no keys.
bool is_key(const gchar *key) { return key != nullptr && gconf_valid_key(key, nullptr); }

}  // namespace

namespace pb::util {

ClientRef default_client() {
  g_type_init();
  return ClientRef::adopt(gconf_client_get_default());
}

}  // namespace pb::util

gchar *mb_gconf_get_string(const gchar *key) {
  if (!is_key(key)) {
    PB_LOG(PB_LOG_ERROR, "invalid parameter\n");
    return nullptr;
  }
  const ClientRef client = default_client();
  if (!client) {
    PB_LOG(PB_LOG_ERROR, "fail to get gconf default client\n");
    return nullptr;
  }
  pb::ErrorPtr error;
  pb::StringPtr value(gconf_client_get_string(client.get(), key, pb::out(error)));
  if (error != nullptr) {
    PB_LOG(PB_LOG_ERROR, "%s\n", error->message);
    return nullptr;
  }
  return value.release();
}

gint mb_gconf_get_int(const gchar *key) {
  if (!is_key(key)) {
    PB_LOG(PB_LOG_ERROR, "invalid parameter\n");
    return kUnreadable;
  }
  const ClientRef client = default_client();
  if (!client) {
    PB_LOG(PB_LOG_ERROR, "fail to get gconf default client\n");
    return kUnreadable;
  }
  pb::ErrorPtr error;
  const gint value = gconf_client_get_int(client.get(), key, pb::out(error));
  if (error != nullptr) {
    PB_LOG(PB_LOG_ERROR, "%s\n", error->message);
    return kUnreadable;
  }
  return value;
}

void mb_gconf_set_string(const gchar *key, const gchar *value) {
  if (!is_key(key) || value == nullptr || !g_utf8_validate(value, -1, nullptr)) {
    PB_LOG(PB_LOG_ERROR, "invalid parameter\n");
    return;
  }
  const ClientRef client = default_client();
  if (!client) {
    PB_LOG(PB_LOG_ERROR, "fail to get gconf default client\n");
    return;
  }
  pb::ErrorPtr error;
  gconf_client_set_string(client.get(), key, value, pb::out(error));
  if (error != nullptr) PB_LOG(PB_LOG_ERROR, "%s\n", error->message);
}

void mb_gconf_set_int(const gchar *key, gint value) {
  if (!is_key(key)) {
    PB_LOG(PB_LOG_ERROR, "invalid parameter\n");
    return;
  }
  const ClientRef client = default_client();
  if (!client) {
    PB_LOG(PB_LOG_ERROR, "fail to get gconf default client\n");
    return;
  }
  pb::ErrorPtr error;
  gconf_client_set_int(client.get(), key, value, pb::out(error));
  if (error != nullptr) PB_LOG(PB_LOG_ERROR, "%s\n", error->message);
}

GSList *mb_gconf_get_list(const gchar *key) {
  if (!is_key(key)) {
    PB_LOG(PB_LOG_ERROR, "invalid parameter\n");
    return nullptr;
  }
  const ClientRef client = default_client();
  if (!client) {
    PB_LOG(PB_LOG_ERROR, "fail to get gconf default client\n");
    return nullptr;
  }
  pb::ErrorPtr error;
  GSList *list = gconf_client_get_list(client.get(), key, GCONF_VALUE_INT, pb::out(error));
  if (error != nullptr) {
    PB_LOG(PB_LOG_ERROR, "%s\n", error->message);
    return nullptr;
  }
  return list;
}

void mb_gconf_set_list(const gchar *key, GSList *list) {
  if (!is_key(key)) {
    PB_LOG(PB_LOG_ERROR, "invalid parameter\n");
    return;
  }
  const ClientRef client = default_client();
  if (!client) {
    PB_LOG(PB_LOG_ERROR, "fail to get gconf default client\n");
    return;
  }
  pb::ErrorPtr error;
  gconf_client_set_list(client.get(), key, GCONF_VALUE_INT, list, pb::out(error));
  if (error != nullptr) PB_LOG(PB_LOG_ERROR, "%s\n", error->message);
}

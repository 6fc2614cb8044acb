#include <online-core.h>

#include "fakes/journal.hpp"

void fake::set_online_core_defaults(Platform &phone) {
  phone.vesk_svc_core_is_logout = [](guint32) { return 1; };
  phone.vesk_svc_core_app_registration = [](const gint *, gint, vesk_noti_cb callback, gint *,
                                            guint32 *handle) {
    platform().notification_callbacks.push_back(callback);
    answer(handle, 1);
    return 1;
  };
  phone.vesk_svc_core_deregister_noti_callback = [](guint32, const gint *, gint,
                                                    vesk_noti_cb callback) {
    std::erase(platform().notification_callbacks, callback);
    return 1;
  };
  phone.vesk_svc_core_deregister_app = [](guint32) { return 1; };
  phone.vesk_svc_core_synchronize_details = [](guint32, gint) { return 1; };
}

gint fake::notify(const char *message, const std::vector<VeskNotiField> &fields) {
  gint result = 0;
  const std::vector<vesk_noti_cb> callbacks = platform().notification_callbacks;
  for (const vesk_noti_cb callback : callbacks) {
    result = callback(message, fields.data(), static_cast<gint>(fields.size()));
  }
  return result;
}

gint vesk_svc_core_is_logout(guint32 handle) {
  fake::record("vesk_svc_core_is_logout", handle);
  return fake::platform().vesk_svc_core_is_logout(handle);
}

gint vesk_svc_core_app_registration(const gint *categories, gint count, vesk_noti_cb callback,
                                    gint *error, guint32 *handle) {
  fake::record("vesk_svc_core_app_registration", fake::array_of(categories, count));
  return fake::platform().vesk_svc_core_app_registration(categories, count, callback, error,
                                                         handle);
}

gint vesk_svc_core_deregister_noti_callback(guint32 handle, const gint *categories, gint count,
                                            vesk_noti_cb callback) {
  fake::record("vesk_svc_core_deregister_noti_callback", handle, fake::array_of(categories, count));
  return fake::platform().vesk_svc_core_deregister_noti_callback(handle, categories, count,
                                                                 callback);
}

gint vesk_svc_core_deregister_app(guint32 handle) {
  fake::record("vesk_svc_core_deregister_app", handle);
  return fake::platform().vesk_svc_core_deregister_app(handle);
}

gint vesk_svc_core_synchronize_details(guint32 handle, gint what) {
  fake::record("vesk_svc_core_synchronize_details", handle, what);
  return fake::platform().vesk_svc_core_synchronize_details(handle, what);
}

#include "online-core.h"

#include "web-album/answers.hpp"

using namespace phone::web_album;

gint vesk_svc_core_is_logout(guint32 /*handle*/) { return kLoggedOut; }

gint vesk_svc_core_app_registration(const gint * /*categories*/, gint /*count*/,
                                    vesk_noti_cb /*callback*/, gint *error, guint32 * /*handle*/) {
  if (error != nullptr) *error = kNoAccount;
  return kNoAccount;
}

gint vesk_svc_core_deregister_noti_callback(guint32 /*handle*/, const gint * /*categories*/,
                                            gint /*count*/, vesk_noti_cb /*callback*/) {
  return kNoAccount;
}

gint vesk_svc_core_deregister_app(guint32 /*handle*/) { return kNoAccount; }

gint vesk_svc_core_synchronize_details(guint32 /*handle*/, gint /*what*/) { return kNoAccount; }

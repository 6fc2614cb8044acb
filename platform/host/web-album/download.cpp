#include "online-download.h"

#include <atomic>

#include "web-album/answers.hpp"

using namespace phone::web_album;

gint vesk_svc_download_util_init(gint /*reserved*/) { return kNoAccount; }

gint vesk_svc_download_util_generate_request_id(void) {
  static std::atomic<gint> last = 0;
  return ++last;
}

gint vesk_svc_download_util_download_url(const gchar * /*url*/, gint /*request_id*/,
                                         vesk_download_cb /*callback*/, gpointer /*user_data*/,
                                         const gchar * /*path*/) {
  return kNoAccount;
}

gint vesk_svc_download_util_abort_request(gint /*request_id*/) { return kNoSuchRequest; }

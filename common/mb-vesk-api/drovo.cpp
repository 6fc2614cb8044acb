#include <gdk/gdk.h>
#include <glib/gstdio.h>
#include <mb-vesk-api.h>
#include <media-browser.h>
#include <media-mirror.h>
#include <online-download.h>
#include <pb-debug.h>
#include <pb-item.h>

#include <cstring>

#include "private.hpp"
#include "util/paths.hpp"

using pb::vesk::kAccepted;

namespace {

constexpr const char *kCoverDirectory =
    "/mnt/ums/.temp/com.velmora.photobrowser/.mb_album_content_thumb";
constexpr gint kManyFilesType = 1;
constexpr gint kHttpOk = 200;
constexpr gsize kMimeSize = 100;

/// A cover that is to be fetched.
struct Cover {
  std::string url;
  std::string path;
};

template <gsize N>
std::string text_of(const gchar (&field)[N]) {
  return std::string(field, strnlen(field, N));
}

/// The type of a file by its name; "" when that says nothing.
std::string mime_of(const std::string &name) {
  const gsize dot = name.rfind('.');
  if (dot == std::string::npos) return {};
  gchar mime[kMimeSize] = "";
  const pb::StringPtr extension(g_ascii_strdown(name.c_str() + dot + 1, -1));
  pb_item_get_content_type_by_ext(0, mime, extension.get());
  return mime;
}

std::string cover_path(gint64 album_id, const std::string &name) {
  return pb::phone_path(kCoverDirectory) + "/" + std::to_string(album_id) + "." +
         mb_util_content_get_ext_by_mime(mime_of(name).c_str());
}

void cover_downloaded(const VeskDownloadResponse *response, gpointer user_data) {
  const std::unique_ptr<Cover> cover(static_cast<Cover *>(user_data));
  PB_LOG(PB_LOG_INFO,
         "i_reqid:%d, i_response_len:%d, i_hader_len:%d, pv_user_data:0x:%x, e_http_status:%d\n",
         response->request_id, response->response_length, response->header_length,
         static_cast<guint>(reinterpret_cast<guintptr>(user_data)), response->http_status);
  if (response->http_status == kHttpOk) {
    PB_LOG(PB_LOG_INFO, "drovo Album cover is downloaded !!!!!!!!!!\n");
  } else {
    PB_LOG(PB_LOG_WARNING, "Thumnail is not downloaded.......!!!!!!!!!!\n");
    // There may be a part of it, which would pass for the cover.
    g_unlink(cover->path.c_str());
  }
  vesk_svc_download_util_abort_request(response->request_id);
  pb::vesk::refresh_later();
}

bool is_startable(const Cover &cover) {
  return !cover.url.empty() && mb_util_check_dwndest_directory(
                                   pb::phone_path(kCoverDirectory).c_str(), kManyFilesType) != 0;
}

}  // namespace

gboolean __mb_vesk_dwld_drovo_album_cover(gpointer data) {
  std::unique_ptr<Cover> cover(static_cast<Cover *>(data));
  PB_LOG(PB_LOG_INFO, " __mb_vesk_dwld_drovo_album_cover ******\n");
  if (!is_startable(*cover)) return FALSE;
  if (vesk_svc_download_util_init(0) != kAccepted) {
    PB_LOG(PB_LOG_ERROR, "Failed !!!!!!1:vesk_svc_download_util_init\n");
    return FALSE;
  }
  const gint request_id = vesk_svc_download_util_generate_request_id();
  PB_LOG(PB_LOG_INFO, "File URL :%s\n", cover->url.c_str());
  PB_LOG(PB_LOG_INFO, "File Name :%s\n", cover->path.c_str());
  // The callback owns it from the moment of the call: it may come before this returns.
  Cover *sent = cover.release();
  const std::string url = sent->url;
  const std::string path = sent->path;
  const gint status = vesk_svc_download_util_download_url(url.c_str(), request_id, cover_downloaded,
                                                          sent, path.c_str());
  if (status != kAccepted) {
    PB_LOG(PB_LOG_ERROR, "vesk_svc_download_util_download_url failed %d\n", status);
    cover.reset(sent);
  }
  return FALSE;
}

void pb::vesk::update_drovo_cover(gint64 content_id) {
  FmAlbumRecord album{};
  gint error = 0;
  if (!fm_svc_mb_get_drovo_album(&album, &error)) {
    VESK_NOTI_LOG(PB_LOG_ERROR, "fm_svc_mb_get_drovo_album failed %d\n", error);
    return;
  }
  FmVeskFileRecord file{};
  if (content_id >= 1 && !fm_svc_vesk_get_vesk_file(content_id, &file, &error)) {
    VESK_NOTI_LOG(PB_LOG_ERROR, "fm_svc_vesk_get_vesk_file failed %d\n", error);
  }
  const std::string path = cover_path(album.naid, text_of(file.name));
  if (path.size() >= sizeof album.cover_path) {
    VESK_NOTI_LOG(PB_LOG_ERROR, "no room for the path %s\n", path.c_str());
    return;
  }
  set_text(album.cover_path, path.c_str());
  if (!fm_svc_vesk_update_folder(&album, &error)) {
    VESK_NOTI_LOG(PB_LOG_ERROR, "fm_svc_vesk_update_folder failed %d\n", error);
  }
  gdk_threads_add_idle(__mb_vesk_dwld_drovo_album_cover, new Cover{text_of(file.bytes_url), path});
}

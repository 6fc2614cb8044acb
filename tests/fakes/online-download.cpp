#include <online-download.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "fakes/journal.hpp"

namespace {

constexpr int kHttpOk = 200;
int last_request_id = 0;

void write_body(const std::string &path, std::string_view body) {
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(body.data(), static_cast<std::streamsize>(body.size()));
  out.close();
  if (!out) ADD_FAILURE() << path << " could not be written";
}

}  // namespace

void fake::set_online_download_defaults(Platform &phone) {
  last_request_id = 0;
  phone.vesk_svc_download_util_init = [](gint) { return 1; };
  phone.vesk_svc_download_util_generate_request_id = [] { return ++last_request_id; };
  phone.vesk_svc_download_util_download_url = [](const gchar *url, gint request_id,
                                                 vesk_download_cb callback, gpointer user_data,
                                                 const gchar *path) {
    platform().downloads.push_back({url, request_id, callback, user_data, path});
    return 1;
  };
  phone.vesk_svc_download_util_abort_request = [](gint request_id) {
    const auto same = [request_id](const Download &one) { return one.request_id == request_id; };
    return std::erase_if(platform().downloads, same) > 0 ? 1 : 0;
  };
}

void fake::finish_download(int request_id, int http_status, std::string_view body,
                           const char *header) {
  const auto found = std::ranges::find(platform().downloads, request_id, &Download::request_id);
  if (found == platform().downloads.end()) {
    ADD_FAILURE() << "no download " << request_id << " was started";
    return;
  }
  // By value: the callback may give the request up.
  const Download download = *found;
  if (http_status == kHttpOk) write_body(download.path, body);
  const VeskDownloadResponse response{
      request_id, static_cast<gint32>(body.size()),
      header != nullptr ? static_cast<gint32>(std::string_view(header).size()) : 0, http_status,
      header};
  download.callback(&response, download.user_data);
}

gint vesk_svc_download_util_init(gint reserved) {
  fake::record("vesk_svc_download_util_init", reserved);
  return fake::platform().vesk_svc_download_util_init(reserved);
}

gint vesk_svc_download_util_generate_request_id() {
  fake::record("vesk_svc_download_util_generate_request_id");
  return fake::platform().vesk_svc_download_util_generate_request_id();
}

gint vesk_svc_download_util_download_url(const gchar *url, gint request_id,
                                         vesk_download_cb callback, gpointer user_data,
                                         const gchar *path) {
  fake::record("vesk_svc_download_util_download_url", url, request_id, path);
  return fake::platform().vesk_svc_download_util_download_url(url, request_id, callback, user_data,
                                                              path);
}

gint vesk_svc_download_util_abort_request(gint request_id) {
  fake::record("vesk_svc_download_util_abort_request", request_id);
  return fake::platform().vesk_svc_download_util_abort_request(request_id);
}

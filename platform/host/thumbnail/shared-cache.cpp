#include "thumbnail/shared-cache.hpp"

#include <gio/gio.h>

namespace phone::thumbnail {
namespace {

using pictures::OpenFile;
using pictures::Problem;
using pictures::Result;

/// Those of the shared cache's sizes that cover ours, smallest first.
constexpr const char *kSizes[] = {"large", "x-large"};

std::string shared_name(const std::string &path) {
  const pb::StringPtr uri(g_filename_to_uri(path.c_str(), nullptr, nullptr));
  if (!uri) return {};
  const pb::StringPtr sum(g_compute_checksum_for_string(G_CHECKSUM_MD5, uri.get(), -1));
  return std::string(sum.get()) + ".png";
}

}  // namespace

pictures::PixbufRef find_shared(const std::string &path, const struct stat &info,
                                const pictures::Wish &wish) {
  const std::string name = shared_name(path);
  if (name.empty()) return {};
  const std::string folder = std::string(g_get_user_cache_dir()) + "/thumbnails/";
  for (const char *size : kSizes) {
    const OpenFile file = pictures::open_picture((folder + size + "/" + name).c_str());
    if (file.problem != Problem::kNone) continue;
    Result result = pictures::decode_picture(file, wish);
    if (result.problem == Problem::kNone && result.thumbnail_mtime == info.st_mtim.tv_sec) {
      return result.pixbuf;
    }
  }
  return {};
}

}  // namespace phone::thumbnail

#include <sys/statvfs.h>

#include <string>

#include "file-explorer.h"
#include "file-explorer/private.hpp"

namespace {

constexpr gint kPhone = 0;
/// Ids of files on a card; those of the phone are smaller, those of web albums larger.
constexpr gint kFirstCardId = 0x20000000;
constexpr gint kLastCardId = 0x3fffffff;

/// Where the phone keeps what the gallery downloads.
std::string phone_folder() {
  const gchar *root = g_getenv("PHOTOBROWSER_ROOT");
  return root != nullptr && root[0] == '/' ? root : g_get_home_dir();
}

}  // namespace

gboolean fexplorer_get_full_path(const gchar *rel_path, gint storage, gchar *full_path) {
  if (full_path == nullptr) return FALSE;
  full_path[0] = '\0';
  if (rel_path == nullptr || rel_path[0] == '\0' || storage != kPhone) return FALSE;
  // Folders of the phone are given from the root of the file system.
  const std::string path = rel_path[0] == '/' ? rel_path : std::string("/") + rel_path;
  if (path.size() >= FEXPLORER_PATH_SIZE) return FALSE;
  path.copy(full_path, path.size());
  full_path[path.size()] = '\0';
  return TRUE;
}

gboolean fexplorer_is_mmc_supported(gboolean *supported) {
  if (supported == nullptr) return FALSE;
  *supported = FALSE;
  return TRUE;
}

gboolean fexplorer_is_mmc_database_index(gint id) {
  return id >= kFirstCardId && id <= kLastCardId ? TRUE : FALSE;
}

gboolean fexplorer_get_available_memory_space(gint storage, gint64 *free_kb, gint *error) {
  if (free_kb == nullptr) return FALSE;
  struct statvfs info;
  if (storage != kPhone) {
    if (error != nullptr) *error = phone::files::kNoCard;
    return FALSE;
  }
  if (statvfs(phone_folder().c_str(), &info) != 0) {
    if (error != nullptr) *error = phone::files::kNotPossible;
    return FALSE;
  }
  constexpr guint64 kKilobyte = 1024;
  const guint64 blocks = info.f_bavail;
  // Blocks of less than a kilobyte would vanish in a division of their size.
  *free_kb = static_cast<gint64>(info.f_frsize >= kKilobyte ? blocks * (info.f_frsize / kKilobyte)
                                                            : blocks / (kKilobyte / info.f_frsize));
  return TRUE;
}

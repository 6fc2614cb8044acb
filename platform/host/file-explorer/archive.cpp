#include "file-explorer.h"
#include "file-explorer/private.hpp"
#include "media-browser.h"
#include "media-index.h"

namespace {

bool has_web_copy(const gchar *path) {
  FmMediaRecord record;
  const gint id = media_index_get_id_by_path(path);
  if (id == 0 || fm_svc_mb_get_record_by_index(id, &record, nullptr) == FALSE) return false;
  const gint64 nfid = record.nfid;
  return static_cast<gint32>(nfid) > 0;
}

}  // namespace

gint fexplorer_archive_file_only(const gchar *path) {
  if (path == nullptr) return FEXPLORER_ERROR_NO_FILE;
  if (!has_web_copy(path)) return phone::files::kNoWebCopy;
  return phone::files::trash(path);
}

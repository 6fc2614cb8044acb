#include <gio/gio.h>
#include <sys/stat.h>

#include <cerrno>
#include <glib-ptr.hpp>

#include "file-explorer.h"
#include "file-explorer/private.hpp"
#include "media-browser/removed.hpp"

namespace phone::files {

namespace {

int code_of_gio(const GError &error) {
  if (error.domain != G_IO_ERROR) return kNotPossible;
  switch (error.code) {
    case G_IO_ERROR_NOT_FOUND:
      return FEXPLORER_ERROR_NO_FILE;
    case G_IO_ERROR_PERMISSION_DENIED:
    case G_IO_ERROR_READ_ONLY:
      return FEXPLORER_ERROR_NO_ACCESS;
    case G_IO_ERROR_BUSY:
      return FEXPLORER_ERROR_IN_USE;
    default:
      return kNotPossible;
  }
}

}  // namespace

int code_of(int error_number) {
  switch (error_number) {
    case 0:
      return 0;
    case ENOENT:
    case ENOTDIR:
      return FEXPLORER_ERROR_NO_FILE;
    case EACCES:
    case EPERM:
    case EROFS:
      return FEXPLORER_ERROR_NO_ACCESS;
    case EBUSY:
    case ETXTBSY:
      return FEXPLORER_ERROR_IN_USE;
    default:
      return kNotPossible;
  }
}

int trash(const char *path) {
  struct stat info {};
  if (lstat(path, &info) != 0) return code_of(errno);
  if (!S_ISREG(info.st_mode) && !S_ISLNK(info.st_mode)) return kNotAFile;
  if (is_in_use(path) || protection_of(path) > 0) return FEXPLORER_ERROR_IN_USE;
  const auto file = pb::Ref<GFile>::adopt(g_file_new_for_path(path));
  pb::ErrorPtr error;
  if (g_file_trash(file.get(), nullptr, pb::out(error)) == FALSE) return code_of_gio(*error);
  media::note_removed(path);
  return 0;
}

}  // namespace phone::files

gint fexplorer_delete_file_only(const gchar *path) {
  if (path == nullptr) return FEXPLORER_ERROR_NO_FILE;
  return phone::files::trash(path);
}

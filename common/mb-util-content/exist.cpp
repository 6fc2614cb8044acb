#include <mb-util-content.h>

#include <sys/stat.h>

#include <pb-debug.h>

gint mb_util_content_is_exist(const gchar *path) {
  struct stat status {};
  if (path == nullptr || stat(path, &status) != 0) return 0;
  if (S_ISREG(status.st_mode)) {
    PB_LOG(PB_LOG_INFO, "Exist! %s is a regular file.\n", path);
    return 1;
  }
  if (S_ISDIR(status.st_mode)) PB_LOG(PB_LOG_INFO, "Exist! %s is a directory.\n", path);
  return 0;
}

#include <file-explorer.h>
#include <phone-settings.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "check.hpp"
#include "pb-debug.h"
#include "pb-util-file.h"

namespace {

constexpr std::size_t kGeneratedNameLength = 14;
constexpr std::size_t kGeneratedNameGap = 7;

enum DateFormat { kDayMonthYear, kMonthDayYear, kYearMonthDay, kYearDayMonth };

/// What follows the last "/".
const gchar *last_component(const gchar *path) {
  const gchar *slash = strrchr(path, '/');
  return slash == nullptr ? path : slash + 1;
}

gint date_format() {
  gint format = kDayMonthYear;
  return settings_get_int(SETTINGS_DATE_FORMAT, &format) == 0 ? format : kDayMonthYear;
}

/// The three fields of a date in the order of a format; false for an unknown one.
bool order_date(gint format, const tm &date, std::array<gint, 3> &fields) {
  const gint day = date.tm_mday;
  const gint month = date.tm_mon + 1;
  const gint year = date.tm_year + 1900;
  switch (format) {
    case kDayMonthYear:
      fields = {day, month, year};
      return true;
    case kMonthDayYear:
      fields = {month, day, year};
      return true;
    case kYearMonthDay:
      fields = {year, month, day};
      return true;
    case kYearDayMonth:
      fields = {year, day, month};
      return true;
    default:
      return false;
  }
}

}  // namespace

gboolean mb_util_check_default_generated_name(const gchar *name) {
  if (name == nullptr || strlen(name) != kGeneratedNameLength) return FALSE;
  if (name[0] != 'P' || !g_ascii_isdigit(name[1])) return FALSE;
  const gchar *gap = strchr(name + 2, '_');
  if (gap != name + kGeneratedNameGap || !g_ascii_isdigit(gap[1])) return FALSE;
  return strcspn(gap + 1, ".") == kGeneratedNameLength - kGeneratedNameGap - 1;
}

gchar *mb_util_trim_space(gchar *str) {
  if (str == nullptr) return nullptr;
  const gchar *start = str + strspn(str, " ");
  std::size_t length = strlen(start);
  while (length > 0 && start[length - 1] == ' ') --length;
  if (length == 0) return nullptr;
  memmove(str, start, length);
  str[length] = '\0';
  return strdup(str);
}

gchar *pb_get_file_ext_name(const gchar *path) {
  if (path == nullptr) return nullptr;
  const gchar *dot = strrchr(path, '.');
  if (dot == nullptr) return nullptr;
  PB_LOG(PB_LOG_INFO, "ext:%s\n", dot + 1);
  return const_cast<gchar *>(dot + 1);
}

gboolean pb_util_change_file_ext(const gchar *ext, gchar *path) {
  if (ext == nullptr || path == nullptr || strlen(path) < 2) return FALSE;
  gchar *name = path + (last_component(path) - path);
  gchar *dot = strrchr(name, '.');
  if (dot == nullptr || dot == path) return FALSE;
  strcpy(dot + 1, ext);
  return TRUE;
}

gboolean mb_get_file_name_with_ext(const gchar *path, gchar *name) {
  if (name == nullptr) return TRUE;
  g_strlcpy(name, path == nullptr ? "" : last_component(path), PB_FILE_NAME_SIZE);
  return TRUE;
}

void mb_get_filename_from_path(const gchar *path, gchar *name) {
  if (path == nullptr) {
    PB_LOG(PB_LOG_ERROR, "Path is NULL\n");
    return;
  }
  PB_CHECK(name);
  mb_get_file_name_with_ext(path, name);
  if (*name == '\0') {
    PB_LOG(PB_LOG_WARNING, "len <= 0\n");
    return;
  }
  gchar *dot = strrchr(name, '.');
  if (dot != nullptr) *dot = '\0';
  PB_LOG(PB_LOG_INFO, "filename=%s\n", name);
}

gboolean pb_get_file_dir_names(const gchar *file_path, gchar *file_name, gchar *dir_name,
                               gchar *dir_path) {
  PB_CHECK(file_path, FALSE);
  const gchar *slash = strrchr(file_path, '/');
  if (slash == nullptr) return FALSE;

  PB_LOG(PB_LOG_INFO, "File Name = %s\n", slash + 1);
  if (file_name != nullptr) strcpy(file_name, slash + 1);

  const auto dir_length = static_cast<std::size_t>(slash - file_path);
  if (dir_path != nullptr) {
    memcpy(dir_path, file_path, dir_length);
    // One place behind the end: callers pass a cleared buffer and rely on the rest of it.
    dir_path[dir_length + 1] = '\0';
  }

  const auto *parent =
      static_cast<const gchar *>(dir_length == 0 ? nullptr : memrchr(file_path, '/', dir_length));
  if (parent == nullptr) return TRUE;
  const auto name_length = static_cast<std::size_t>(slash - parent - 1);
  PB_LOG(PB_LOG_INFO, "Directory Name = %.*s\n", static_cast<int>(name_length), parent + 1);
  if (dir_name != nullptr) {
    memcpy(dir_name, parent + 1, name_length);
    dir_name[name_length] = '\0';
  }
  return TRUE;
}

gboolean mb_util_get_full_path_by_record(const gchar *folder, const gchar *name, gint storage,
                                         gchar *full_path) {
  PB_CHECK(folder != NULL && name != NULL && full_path != NULL, FALSE);
  std::array<gchar, PB_FULL_PATH_SIZE> relative{};
  const bool at_root = strcmp(folder, "/") == 0;
  const gint length = at_root ? g_snprintf(relative.data(), relative.size(), "/%s", name)
                              : g_snprintf(relative.data(), relative.size(), "%s/%s", folder, name);
  full_path[0] = '\0';
  if (length < 0 || static_cast<std::size_t>(length) >= relative.size()) {
    // Cut, it would name another file.
    PB_LOG(PB_LOG_ERROR, "path too long : %d\n", length);
    return FALSE;
  }
  return fexplorer_get_full_path(relative.data(), storage, full_path);
}

gboolean mb_util_get_date_string(time_t time, gchar *buffer) {
  if (buffer == nullptr) {
    PB_LOG(PB_LOG_ERROR, "pszDate=NULL\n");
    return FALSE;
  }
  std::array<gchar, PB_DATE_SIZE> text{};
  std::array<gint, 3> fields{};
  tm date{};
  tzset();
  if (localtime_r(&time, &date) != nullptr && order_date(date_format(), date, fields)) {
    g_snprintf(text.data(), text.size(), "%02d.%02d.%d", fields[0], fields[1], fields[2]);
  }
  memcpy(buffer, text.data(), text.size());
  return TRUE;
}

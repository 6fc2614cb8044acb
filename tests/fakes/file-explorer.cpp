#include <file-explorer.h>

#include "fakes/journal.hpp"

namespace {

constexpr gint64 kGigabyteInKb = 1024 * 1024;

}  // namespace

void fake::set_file_defaults(Platform &phone) {
  phone.fexplorer_initialize = [](gint *handle) {
    answer(handle, 1);
    return TRUE;
  };
  phone.fexplorer_finalize = [] { return TRUE; };
  phone.fexplorer_get_full_path = [](const gchar *rel_path, gint storage, gchar *full_path) {
    g_snprintf(full_path, FEXPLORER_PATH_SIZE, "%s/%s", storage == 0 ? "" : "/card",
               rel_path[0] == '/' ? rel_path + 1 : rel_path);
    return TRUE;
  };
  phone.fexplorer_get_exif_orientation = [](const gchar *, gint *orientation) {
    answer(orientation, 1);
    return TRUE;
  };
  phone.fexplorer_set_file_open_status = [](const gchar *, gint) { return TRUE; };
  phone.fexplorer_delete_file_only = [](const gchar *) { return 0; };
  phone.fexplorer_archive_file_only = [](const gchar *) { return 0; };
  phone.fexplorer_get_file_lock_status = [](const gchar *, gboolean *locked, gint *) {
    answer(locked, FALSE);
    return TRUE;
  };
  phone.fexplorer_is_mmc_supported = [](gboolean *supported) {
    answer(supported, FALSE);
    return TRUE;
  };
  phone.fexplorer_is_mmc_database_index = [](gint) { return FALSE; };
  phone.fexplorer_get_available_memory_space = [](gint, gint64 *free_kb, gint *) {
    answer(free_kb, kGigabyteInKb);
    return TRUE;
  };
}

gboolean fexplorer_initialize(gint *handle) {
  fake::record("fexplorer_initialize");
  const gboolean result = fake::platform().fexplorer_initialize(handle);
  if (result) ++fake::platform().fexplorer_connections;
  return result;
}

gboolean fexplorer_finalize() {
  fake::record("fexplorer_finalize");
  const gboolean result = fake::platform().fexplorer_finalize();
  if (result) --fake::platform().fexplorer_connections;
  return result;
}

gboolean fexplorer_get_full_path(const gchar *rel_path, gint storage, gchar *full_path) {
  fake::record("fexplorer_get_full_path", rel_path, storage);
  return fake::platform().fexplorer_get_full_path(rel_path, storage, full_path);
}

gboolean fexplorer_get_exif_orientation(const gchar *path, gint *orientation) {
  fake::record("fexplorer_get_exif_orientation", path);
  return fake::platform().fexplorer_get_exif_orientation(path, orientation);
}

gboolean fexplorer_set_file_open_status(const gchar *path, gint open) {
  fake::record("fexplorer_set_file_open_status", path, open);
  return fake::platform().fexplorer_set_file_open_status(path, open);
}

gint fexplorer_delete_file_only(const gchar *path) {
  fake::record("fexplorer_delete_file_only", path);
  return fake::platform().fexplorer_delete_file_only(path);
}

gint fexplorer_archive_file_only(const gchar *path) {
  fake::record("fexplorer_archive_file_only", path);
  return fake::platform().fexplorer_archive_file_only(path);
}

gboolean fexplorer_get_file_lock_status(const gchar *path, gboolean *locked, gint *error) {
  fake::record("fexplorer_get_file_lock_status", path);
  return fake::platform().fexplorer_get_file_lock_status(path, locked, error);
}

gboolean fexplorer_is_mmc_supported(gboolean *supported) {
  fake::record("fexplorer_is_mmc_supported");
  return fake::platform().fexplorer_is_mmc_supported(supported);
}

gboolean fexplorer_is_mmc_database_index(gint id) {
  fake::record("fexplorer_is_mmc_database_index", id);
  return fake::platform().fexplorer_is_mmc_database_index(id);
}

gboolean fexplorer_get_available_memory_space(gint storage, gint64 *free_kb, gint *error) {
  fake::record("fexplorer_get_available_memory_space", storage);
  return fake::platform().fexplorer_get_available_memory_space(storage, free_kb, error);
}

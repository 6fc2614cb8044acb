/** @file
 * The file explorer: where files lie, their state, and their deletion.
 *
 * Where nothing else is said a function gives TRUE for success and FALSE for failure, and leaves
 * its results alone when it fails. Any thread may call.
 */
#ifndef FILE_EXPLORER_H
#define FILE_EXPLORER_H

#include <phone-api.h>

PHONE_BEGIN_DECLS

#define FEXPLORER_PATH_SIZE 265 /**< bytes of a full path with its NUL */

#define FEXPLORER_ERROR_IN_USE 8     /**< the file is open or locked against changes */
#define FEXPLORER_ERROR_NO_FILE 10   /**< there is no such file */
#define FEXPLORER_ERROR_NO_ACCESS 23 /**< write-protected, or no right to remove it */

/**
 * Connects to the file explorer's database. Calls nest: each needs its fexplorer_finalize().
 *
 * @param handle (nullable) set to a number that names the connection
 * @return TRUE on success
 */
gboolean fexplorer_initialize(gint *handle);

/**
 * Ends one connection.
 *
 * @return TRUE on success; FALSE when there is none
 */
gboolean fexplorer_finalize(void);

/**
 * Makes a full path of a path relative to a storage.
 *
 * @param rel_path (transfer none) "folder/name"
 * @param storage 0 the phone, 1 the memory card
 * @param full_path the caller's buffer of FEXPLORER_PATH_SIZE bytes; empty on failure
 * @return TRUE on success; FALSE also for a path that does not fit
 */
gboolean fexplorer_get_full_path(const gchar *rel_path, gint storage, gchar *full_path);

/**
 * Reads how a picture must be turned to stand upright.
 *
 * @param path (transfer none) full path
 * @param orientation set to the EXIF value, 1 to 8; 1 when the picture does not say
 * @return TRUE on success
 */
gboolean fexplorer_get_exif_orientation(const gchar *path, gint *orientation);

/**
 * Tells the file explorer whether a file is in use.
 *
 * @param path (transfer none) full path
 * @param open 1 in use, 0 not
 * @return TRUE on success
 */
gboolean fexplorer_set_file_open_status(const gchar *path, gint open);

/**
 * Moves a file to the desktop's Trash, on the file's own volume. Nothing is deleted for good.
 *
 * @param path (transfer none) full path
 * @return 0 when it was deleted, else one of the codes above or another by cause (the volume
 *         has no Trash, the path is a folder); the file is then untouched
 */
gint fexplorer_delete_file_only(const gchar *path);

/**
 * Archives a file: its local copy goes, its web copy stays.
 *
 * @param path (transfer none) full path
 * @return 0 when it was archived, else an error code as of fexplorer_delete_file_only()
 */
gint fexplorer_archive_file_only(const gchar *path);

/**
 * Tells whether a file is locked against changes: nobody may write it, or it is immutable.
 *
 * @param path (transfer none) full path
 * @param locked set to the answer
 * @param error (nullable) set to a code on failure
 * @return TRUE on success
 */
gboolean fexplorer_get_file_lock_status(const gchar *path, gboolean *locked, gint *error);

/**
 * Tells whether the phone can have a memory card.
 *
 * @param supported set to the answer
 * @return TRUE on success
 */
gboolean fexplorer_is_mmc_supported(gboolean *supported);

/**
 * Tells where a file lies by its database index.
 *
 * @param id any number, -1 included
 * @return TRUE for the index of a file on the memory card
 */
gboolean fexplorer_is_mmc_database_index(gint id);

/**
 * Gives the free space of a storage.
 *
 * @param storage 0 the phone, 1 the memory card
 * @param free_kb set to the number of free kilobytes (1024 bytes)
 * @param error (nullable) set to a code on failure
 * @return TRUE on success
 */
gboolean fexplorer_get_available_memory_space(gint storage, gint64 *free_kb, gint *error);

PHONE_END_DECLS

#endif

/** @file
 * File names, dates, random order, lists and list views, and the deletion of files.
 *
 * Paths are byte strings with "/" between components. Main loop only where a function touches a
 * widget or deletes; the others may be called from any thread.
 */
#ifndef PB_UTIL_FILE_H
#define PB_UTIL_FILE_H

#include <glib.h>
#include <gtk/gtk.h>
#include <pb-export.h>
#include <time.h>

G_BEGIN_DECLS

/** Bytes that the caller provides for a file name, its terminator included. */
#define PB_FILE_NAME_SIZE 256
/** Bytes that the caller provides for a date. */
#define PB_DATE_SIZE 16
/** Bytes that the caller provides for a full path, its terminator included. */
#define PB_FULL_PATH_SIZE 265

/**
 * Tells whether a name looks as the camera makes them, such as "P100010_123456".
 *
 * @param name (transfer none) (nullable)
 * @return TRUE when it does; FALSE also for NULL
 */
PB_EXPORT gboolean mb_util_check_default_generated_name(const gchar *name);

/**
 * Removes the blanks before and after a text, in place.
 *
 * @param str (transfer none) (nullable) the text; left alone when it holds blanks only
 * @return (transfer full) (nullable) a copy of the result, freed with free(); NULL for a text
 *         that is empty or holds blanks only
 */
PB_EXPORT gchar *mb_util_trim_space(gchar *str);

/**
 * Finds the extension of a path.
 *
 * @param path (transfer none) (nullable)
 * @return (transfer none) (nullable) a pointer into @p path behind its last "."; NULL when there
 *         is none
 */
PB_EXPORT gchar *pb_get_file_ext_name(const gchar *path);

/**
 * Replaces the extension of the last component of a path, in place.
 *
 * @param ext (transfer none) (nullable) extension without "."
 * @param path (transfer none) (nullable) a buffer with room for the result
 * @return TRUE when it was replaced; FALSE, with @p path as it was, when there is nothing to
 *         replace
 */
PB_EXPORT gboolean pb_util_change_file_ext(const gchar *ext, gchar *path);

/**
 * Copies the last component of a path.
 *
 * @param path (transfer none) (nullable)
 * @param name (out) PB_FILE_NAME_SIZE bytes; receives at most 255 bytes and a terminator;
 *        empty for NULL
 * @return always TRUE
 */
PB_EXPORT gboolean mb_get_file_name_with_ext(const gchar *path, gchar *name);

/**
 * Copies the last component of a path without its extension.
 *
 * @param path (transfer none) (nullable) NULL is logged and leaves @p name as it was
 * @param name (out) PB_FILE_NAME_SIZE bytes
 */
PB_EXPORT void mb_get_filename_from_path(const gchar *path, gchar *name);

/**
 * Splits a path at its last "/".
 *
 * The outputs have to hold as much as @p file_path. Pass @p dir_path cleared: the byte behind
 * the copied characters is left as it was, the terminator follows it. @p dir_name is left as it
 * was when the path has only one "/".
 *
 * @param file_path (transfer none)
 * @param file_name (out) (nullable) receives what follows the last "/"
 * @param dir_name (out) (nullable) receives the component between the last two "/"
 * @param dir_path (out) (nullable) receives what stands before the last "/"
 * @return TRUE; FALSE when the path has no "/", and for NULL with a warning
 */
PB_EXPORT gboolean pb_get_file_dir_names(const gchar *file_path, gchar *file_name, gchar *dir_name,
                                         gchar *dir_path);

/**
 * Resolves a file of the media database to its place in the file system.
 *
 * @param folder (transfer none) folder of the record
 * @param name (transfer none) name of the record
 * @param storage number of the storage
 * @param full_path (out) PB_FULL_PATH_SIZE bytes; empty when it cannot be resolved
 * @return the file explorer's answer; FALSE also for a path that does not fit
 */
PB_EXPORT gboolean mb_util_get_full_path_by_record(const gchar *folder, const gchar *name,
                                                   gint storage, gchar *full_path);

/**
 * Writes the local date of a time in the order that the user chose.
 *
 * @param time seconds since the epoch
 * @param buffer (out) PB_DATE_SIZE bytes, all of them written; empty for an unknown order
 * @return TRUE; FALSE for a NULL buffer
 */
PB_EXPORT gboolean mb_util_get_date_string(time_t time, gchar *buffer);

/**
 * Makes the list from which pb_get_random_index() draws; an earlier one is freed.
 *
 * @param random_list (inout) (transfer full) the list, NULL or one made here; its elements
 *        point to integers 0 to @p length - 1
 * @param length number of elements; 0 or less for an empty list
 */
PB_EXPORT void pb_random_list_init(GList **random_list, gint length);

/**
 * Draws a number that was not drawn before from a list of pb_random_list_init().
 *
 * @param random_list (inout) the list, which loses the element
 * @return the number; -2 when nothing is left; -1 for NULL, with a warning
 */
PB_EXPORT gint pb_get_random_index(GList **random_list);

/**
 * Frees a list and its elements, each with free().
 *
 * @param list (transfer full) (nullable) elements may be NULL
 */
PB_EXPORT void mb_util_free_glist(GList *list);

/**
 * Tells whether the value of a selection button means "selected".
 *
 * @param value the value
 * @return TRUE for 1 and 4
 */
PB_EXPORT gboolean user_bt_select_check(gint value);

/**
 * Reads a text of a list view.
 *
 * @param tree_view (transfer none) (nullable) a GtkTreeView over a GtkListStore
 * @param row number of the row
 * @param column a text column
 * @return (transfer full) (nullable) the text, freed with g_free(); NULL when there is none
 */
PB_EXPORT gchar *pb_get_list_item_string(GtkWidget *tree_view, gint row, gint column);

/**
 * Reads an integer of a list view.
 *
 * @param tree_view (transfer none) (nullable) a GtkTreeView over a GtkListStore
 * @param row number of the row
 * @param column an integer column
 * @return the integer; -1 when there is none
 */
PB_EXPORT gint pb_get_list_item_data(GtkWidget *tree_view, gint row, gint column);

/**
 * Finds the selected row of a list view.
 *
 * @param tree_view (transfer none) (nullable) a GtkTreeView over a GtkListStore
 * @return number of the row; -1 when there is none
 */
PB_EXPORT gint pb_treeview_get_focused_list_index(GtkWidget *tree_view);

/**
 * Deletes a file, or moves it to the archive. A failure is shown to the user for two seconds,
 * in a nested main loop.
 *
 * Aborts when the file explorer does not start.
 *
 * @param path (transfer none) full path
 * @param archive TRUE to archive
 * @return TRUE when the file is gone
 */
PB_EXPORT gboolean pb_util_delete_file(const gchar *path, gboolean archive);

/**
 * Deletes a file that the editor made. A failure is shown to the user for two seconds, in a
 * nested main loop.
 *
 * @param path (transfer none) full path
 * @return TRUE when the file is gone
 */
PB_EXPORT gboolean pb_util_edit_delete_file(const gchar *path);

G_END_DECLS

#endif

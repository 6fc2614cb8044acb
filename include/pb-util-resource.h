/** @file
 * Localized strings and bitmaps of the application package.
 *
 * Opening and closing belong to the main loop; look-ups may come from any thread.
 */
#ifndef PB_UTIL_RESOURCE_H
#define PB_UTIL_RESOURCE_H

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <glib.h>
#include <pb-export.h>

G_BEGIN_DECLS

/**
 * Opens the string file and the bitmap file, whichever is not open yet. Main loop.
 *
 * A file that does not open is logged as an error and tried again by the next call. Calls are
 * not counted: one pb_res_close() ends any number of them.
 */
PB_EXPORT void pb_res_open(void);

/**
 * Closes both files, drops the cached frame of pb_get_cached_pixbuf() and frees every string
 * handed out so far. Main loop; may be called any number of times.
 */
PB_EXPORT void pb_res_close(void);

/**
 * Looks a string up. Any thread.
 *
 * The string file is not opened on demand. Copy a text that is kept across a turn of the main
 * loop: whoever calls pb_res_close() meanwhile frees it.
 *
 * @param id 1000 to 1220 for the application's own strings, any other number for a string of
 *        the phone
 * @return (transfer none) (nullable) the text, valid until pb_res_close(); NULL when the string
 *         file is not open or has no such text
 */
PB_EXPORT const gchar *pb_get_res_string(gint id);

/**
 * Looks a bitmap up, opening the bitmap file when it is closed. Any thread.
 *
 * @param id number of the bitmap; -1 is refused with a log line
 * @return (transfer full) (nullable) a pixbuf of the caller's own; NULL when there is none
 */
PB_EXPORT GdkPixbuf *pb_get_pixbuf(gint id);

G_END_DECLS

#endif

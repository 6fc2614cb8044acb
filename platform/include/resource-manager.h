/** @file
 * The resource manager: bitmaps and strings of the application package, by number.
 *
 * Any thread may call. A handle of -1 is allowed everywhere and has no resources.
 */
#ifndef RESOURCE_MANAGER_H
#define RESOURCE_MANAGER_H

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <phone-api.h>

PHONE_BEGIN_DECLS

/**
 * Opens a bitmap file.
 *
 * @param path (transfer none) the file
 * @return a handle, 0 or more; -1 on failure
 */
gint rsrc_open_rbm(const gchar *path);

/**
 * Opens a string file.
 *
 * @param path (transfer none) the file
 * @return a handle, 0 or more; -1 on failure
 */
gint rsrc_open_rsr(const gchar *path);

/**
 * Closes a bitmap file. Pixbufs that were handed out stay.
 *
 * @param handle from rsrc_open_rbm()
 */
void rsrc_close_rbm(gint handle);

/**
 * Closes a string file. Strings that were handed out stay until rsrc_free_strings().
 *
 * @param handle from rsrc_open_rsr()
 */
void rsrc_close_rsr(gint handle);

/**
 * Loads a bitmap.
 *
 * @param handle from rsrc_open_rbm(), or -1
 * @param id number of the bitmap
 * @return (transfer full) (nullable) a copy of the caller's own; NULL, or something that can be
 *         seen in its place, when there is none
 */
GdkPixbuf *rsrc_get_image(gint handle, gint id);

/**
 * Gives a string of the application.
 *
 * @param handle from rsrc_open_rsr(), or -1
 * @param index number of the string, from 0
 * @return (transfer none) (nullable) UTF-8, valid until rsrc_free_strings(); NULL, or the number
 *         in digits, when there is none
 */
const gchar *rsrc_get_string(gint handle, gint index);

/**
 * Gives a string of the phone's own.
 *
 * @param id number of the string
 * @return (transfer none) (nullable) UTF-8, valid until rsrc_free_strings(); NULL, or the number
 *         in digits, when there is none
 */
const gchar *rsrc_get_system_string(gint id);

/** Frees every string that was handed out. Safe to call twice. */
void rsrc_free_strings(void);

PHONE_END_DECLS

#endif

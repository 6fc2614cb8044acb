/** @file
 * Full pictures, decoded in a process of their own: a bad file cannot stop or hurt the caller.
 *
 * Main loop only.
 */
#ifndef PICTURE_LOADER_H
#define PICTURE_LOADER_H

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <phone-api.h>

PHONE_BEGIN_DECLS

/**
 * Told the end of a request, exactly once unless it was cancelled. Main loop, under the GDK lock,
 * never from within picture_loader_load().
 *
 * @param request id of the request
 * @param pixbuf (transfer none) (nullable) the upright picture; NULL on failure
 * @param problem (transfer none) (nullable) a sentence for the user in UTF-8; NULL on success
 * @param user_data (transfer none) what the request was given
 */
typedef void (*picture_loaded_cb)(guint request, GdkPixbuf *pixbuf, const gchar *problem,
                                  gpointer user_data);

/**
 * Asks for a picture, turned upright by any of the 8 orientations and scaled down to fit a box,
 * its proportions kept. A picture that fits is not enlarged.
 *
 * @param path (transfer none) full path; copied
 * @param width pixels of the box
 * @param height pixels of the box
 * @param callback told the end
 * @param user_data (transfer none) handed to the callback; the caller keeps it alive
 * @return id of the request, never 0
 */
guint picture_loader_load(const gchar *path, gint width, gint height, picture_loaded_cb callback,
                          gpointer user_data);

/**
 * Gives a request up. Its callback is not called any more.
 *
 * @param request the id; 0 or one that has ended is ignored
 */
void picture_loader_cancel(guint request);

/** Cancels every request and ends the worker processes. Safe to call twice. */
void picture_loader_shutdown(void);

PHONE_END_DECLS

#endif

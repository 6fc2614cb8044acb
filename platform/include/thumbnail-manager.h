/** @file
 * The thumbnail manager: small pictures of files, from its store or made anew.
 *
 * A pixbuf that it hands out is a copy of the caller's own: nobody else draws on it or reads it.
 */
#ifndef THUMBNAIL_MANAGER_H
#define THUMBNAIL_MANAGER_H

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <phone-api.h>

PHONE_BEGIN_DECLS

/** Told that some of the thumbnails that were queued are in the store. Main loop, under the GDK
 * lock, once for a batch. */
typedef void (*thumbnail_ready_cb)(gpointer user_data);

/**
 * Makes a small picture of a file, as it is stored: not turned by the orientation in its header.
 * Blocks until it is made. Any thread.
 *
 * @param path (transfer none) full path of a picture
 * @param width pixels of the box
 * @param height pixels of the box
 * @return (transfer full) (nullable) the picture, its proportions kept, filling the box in one
 *         direction and fitting it in the other; NULL when the file cannot be read. errno then
 *         says why: EBADMSG (or 0) when the content can never be decoded and the file is one of
 *         a cache of thumbnails, EPERM when it is another one, which nobody may remove for that,
 *         and another value when a later try may succeed (ENOENT, EACCES, EIO, ENOMEM, ETIMEDOUT
 *         for an ended worker). The library deletes a thumbnail file of the first kind.
 */
GdkPixbuf *fm_svc_thumb_create_pixbuf_by_path(const gchar *path, gint width, gint height);

/**
 * Gives a file's thumbnail if it can be had at once, and queues it otherwise: the listeners hear
 * when it is there. Never blocks on decoding. Main loop only.
 *
 * @param kind 1
 * @param reserved 0
 * @param path (transfer none) full path of a picture or a video
 * @param is_mmc TRUE: the file lies on the memory card
 * @param media_type kind of media
 * @param pixbuf (transfer full) set to the upright thumbnail of at most 148 by 148 pixels; NULL
 *        on failure
 * @return non-zero on success; 0 when there is none yet, or none can be made
 */
gint fm_svc_thumb_mgr_get_thumbnail(gint kind, gint reserved, const gchar *path, gboolean is_mmc,
                                    gint media_type, GdkPixbuf **pixbuf);

/**
 * Adds a listener for queued thumbnails. Main loop only.
 *
 * @param callback called once for each batch that arrived
 * @param user_data (transfer none) handed to the callback; the caller keeps it alive
 * @return an id for thumbnail_manager_remove_listener(), never 0
 */
guint thumbnail_manager_add_listener(thumbnail_ready_cb callback, gpointer user_data);

/**
 * Removes a listener. Its callback is not called any more. Main loop only.
 *
 * @param id from thumbnail_manager_add_listener(); 0 or an unknown id is ignored
 */
void thumbnail_manager_remove_listener(guint id);

/** Drops the queue and ends the workers. Safe to call twice; a later request starts them anew.
 * Main loop only. */
void thumbnail_manager_shutdown(void);

PHONE_END_DECLS

#endif

/** @file
 * Files that were, or are to be, downloaded from the web albums.
 */
#ifndef MB_UTIL_CONTENT_H
#define MB_UTIL_CONTENT_H

#include <glib.h>
#include <pb-export.h>

G_BEGIN_DECLS

/**
 * Tells whether a downloaded file is there. May be called on any thread.
 *
 * @param path (transfer none) (nullable) the file; links are followed
 * @return 1 when the path names a regular file; 0 when there is none, and for a directory or
 *         anything else
 */
PB_EXPORT gint mb_util_content_is_exist(const gchar *path);

G_END_DECLS

#endif

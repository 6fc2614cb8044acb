/// Decoding steps that other modules use too.
#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>

G_BEGIN_DECLS

/// Decodes a picture to fit a size, its aspect kept: from memory when data is given and length
/// is positive, else from the file. The result is the caller's; null with an error on failure.
GdkPixbuf *__pb_get_pixbuf_at_size_with_adjustment(const gchar *path, const guchar *data,
                                                   gssize length, gint width, gint height,
                                                   GError **error);

/// A bitmap of the resources, the caller's own; null when there is none.
GdkPixbuf *__mb_get_filter_theme_pixbuf(gint icon_id);

G_END_DECLS

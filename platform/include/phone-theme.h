/** @file
 * The phone's look: one set of widget styles with touch targets of at least 44 pixels, in a light
 * and a dark variant.
 *
 * Main loop only, under the GDK lock.
 */
#ifndef PHONE_THEME_H
#define PHONE_THEME_H

#include <gtk/gtk.h>
#include <phone-api.h>

PHONE_BEGIN_DECLS

/**
 * Gives all widgets of the program the phone's look, also those that exist already. May be called
 * again at any time to change the variant or the accent. Grids of pictures stay dark in both
 * variants, because their captions are white.
 *
 * Needs a display; without one it does nothing.
 *
 * @param dark TRUE for the dark variant
 * @param accent (transfer none) (nullable) the colour of what is selected, in a form that
 *        gdk_color_parse() knows, such as "#2f7de1"; NULL for the default. What is no colour gives
 *        a GLib warning and the default.
 */
void phone_theme_apply(gboolean dark, const gchar *accent);

PHONE_END_DECLS

#endif

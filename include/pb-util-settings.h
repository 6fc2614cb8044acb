/** @file
 * Persistent settings, phone status, theme colours, power mode, and what runs on this phone.
 *
 * Main loop only.
 */
#ifndef PB_UTIL_SETTINGS_H
#define PB_UTIL_SETTINGS_H

#include <glib.h>
#include <gtk/gtk.h>
#include <pb-export.h>

G_BEGIN_DECLS

/** Bytes that a colour string such as "#E31818" takes, its terminator included. */
#define PB_THEME_COLOR_SIZE 8

/**
 * Whether a user is signed in to the web-album service, before anybody has asked the service.
 * It counts as signed in wherever the flag is only tested for being non-zero.
 */
#define PB_VESK_LOGIN_UNKNOWN (-1)

/**
 * Reads a text setting.
 *
 * @param key (transfer none) (nullable) GConf key
 * @return (transfer full) (nullable) the value, freed with g_free(); NULL for a NULL key, an
 *         unset key, or when the settings cannot be read (logged)
 */
PB_EXPORT gchar *mb_gconf_get_string(const gchar *key);

/**
 * Reads an integer setting.
 *
 * @param key (transfer none) (nullable) GConf key
 * @return the value, 0 for an unset key; -1 for a NULL key or when the settings cannot be read
 *         (logged). A stored -1 cannot be told from a failure.
 */
PB_EXPORT gint mb_gconf_get_int(const gchar *key);

/**
 * Writes a text setting. A failure is logged and leaves the setting as it was.
 *
 * @param key (transfer none) (nullable) GConf key; NULL is only logged
 * @param value (transfer none) the text
 */
PB_EXPORT void mb_gconf_set_string(const gchar *key, const gchar *value);

/**
 * Writes an integer setting. A failure is logged and leaves the setting as it was.
 *
 * @param key (transfer none) (nullable) GConf key; NULL is only logged
 * @param value the number
 */
PB_EXPORT void mb_gconf_set_int(const gchar *key, gint value);

/**
 * Reads a setting that is a list of integers.
 *
 * @param key (transfer none) (nullable) GConf key
 * @return (transfer full) (nullable) a list of GINT_TO_POINTER() values, freed with
 *         g_slist_free(); NULL for a NULL key, an empty or unset list, or a failure (logged)
 */
PB_EXPORT GSList *mb_gconf_get_list(const gchar *key);

/**
 * Writes a setting that is a list of integers. A failure is logged and leaves it as it was.
 *
 * @param key (transfer none) (nullable) GConf key; NULL is only logged
 * @param list (transfer none) (nullable) GINT_TO_POINTER() values; NULL stores an empty list
 */
PB_EXPORT void mb_gconf_set_list(const gchar *key, GSList *list);

/**
 * Reads an integer of the phone-status store.
 *
 * @param key (transfer none) key of the store
 * @param value (out) receives the number; untouched on failure
 * @return TRUE when the number was read; FALSE after a logged failure
 */
PB_EXPORT gboolean mb_get_int_phone_status(const gchar *key, gint *value);

/**
 * Writes an integer of the phone-status store.
 *
 * @param key (transfer none) key of the store
 * @param value the number
 * @return TRUE when the number was written; FALSE after a logged failure
 */
PB_EXPORT gboolean mb_set_int_phone_status(const gchar *key, gint value);

/** @return the index of the phone's theme, 2 to 8 */
PB_EXPORT gint mb_get_current_theme_value(void);

/**
 * Copies the colour of the phone's theme, such as "#E31818".
 *
 * @param buffer (out) receives exactly PB_THEME_COLOR_SIZE bytes
 */
PB_EXPORT void mb_get_current_theme_value_string(gchar *buffer);

/**
 * Copies the darker companion of the theme's colour, which is for emphasis.
 *
 * @param buffer (out) receives exactly PB_THEME_COLOR_SIZE bytes
 */
PB_EXPORT void mb_get_current_theme_plus_value_string(gchar *buffer);

/**
 * Gives the theme's colour.
 *
 * @param color (out) receives the colour; its pixel is not allocated
 * @return whether the theme's colour string is a colour
 */
PB_EXPORT gboolean mb_util_get_themecolor_rgb_string(GdkColor *color);

/**
 * Gives the darker companion of the theme's colour.
 *
 * @param color (out) receives the colour; its pixel is not allocated
 * @return whether the theme's colour string is a colour
 */
PB_EXPORT gboolean mb_util_get_themeplus_color_rgb_string(GdkColor *color);

/** @return the theme's colour as 0xRRGGBB00, fit for gdk_pixbuf_fill() */
PB_EXPORT guint32 mb_util_get_theme_color_pixel(void);

/**
 * Gives a widget a font size and leaves the rest of its font alone.
 *
 * @param widget (transfer none) any widget
 * @param size in points
 */
PB_EXPORT void mb_set_label_font_size(GtkWidget *widget, gint size);

/** @return the last power mode that power management accepted, -1 before the first */
PB_EXPORT gint mb_util_get_power_mode(void);

/**
 * Asks power management for a mode; asking for the current one does nothing.
 *
 * @param mode 0, 1, 2 to hold a state, 3, 4, 5 to give the same states back; any other number
 *        is treated as 0 without the change of clock. A refusal is logged and keeps the current
 *        mode.
 */
PB_EXPORT void mb_util_set_power_mode(gint mode);

/** @return 1 signed in to the web-album service, 0 not, PB_VESK_LOGIN_UNKNOWN before the first
 *          check */
PB_EXPORT gint mb_util_is_vesk_login_present(void);

/**
 * Stores what mb_util_is_vesk_login_present() answers.
 *
 * @param present 1 or 0
 */
PB_EXPORT void mb_util_set_vesk_login_present(gint present);

/** @return TRUE when the phone has a SIM card that answers */
PB_EXPORT gboolean mb_sim_is_present(void);

/** @return TRUE when the gallery is the application in front; FALSE also when nobody can tell */
PB_EXPORT gboolean mb_util_is_gallery_app(void);

/**
 * Tells whether there is no album to show. The service's own album does not count while a user
 * is signed in. Asks the web-album service for the credential and so updates the sign-in flag.
 *
 * @return TRUE when there is none, or when the albums cannot be counted
 */
PB_EXPORT gboolean mb_util_check_is_there_no_album(void);

/**
 * Tells whether the media database is ready. While it is being built, shows a notice for two
 * seconds, in a nested main loop, and closes the resources.
 *
 * @return FALSE when the application has to quit because the database is being built
 */
PB_EXPORT gboolean pb_check_data_init_status(void);

G_END_DECLS

#endif

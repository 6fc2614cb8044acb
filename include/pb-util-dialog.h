/** @file
 * Messages, questions, popups and progress indicators over the main window.
 *
 * One dialog is current at a time; pb_dialog_destroy() takes it down from anywhere. Texts come
 * from the caller; labels of buttons come from the resource strings, so open those first
 * (pb_res_open()). Main loop only.
 */
#ifndef PB_UTIL_DIALOG_H
#define PB_UTIL_DIALOG_H

#include <glib.h>
#include <gtk/gtk.h>
#include <pb-export.h>

G_BEGIN_DECLS

/** Button sets of pb_util_show_dialog(). Any other number gives a dialog without buttons. */
enum {
  PB_DIALOG_BUTTONS_NONE = 0,
  PB_DIALOG_BUTTONS_OK = 1,        /**< OK (GTK_RESPONSE_OK) */
  PB_DIALOG_BUTTONS_YES_NO = 2,    /**< Yes (GTK_RESPONSE_YES), No (GTK_RESPONSE_NO) */
  PB_DIALOG_BUTTONS_DELETE = 3,    /**< Delete (GTK_RESPONSE_YES), Cancel (GTK_RESPONSE_NO) */
  PB_DIALOG_BUTTONS_OK_CANCEL = 4, /**< OK (GTK_RESPONSE_YES), Cancel (GTK_RESPONSE_NO) */
};

/**
 * Shows a modal dialog and returns when it is answered, times out or is taken down. Other
 * callbacks of the main loop run meanwhile.
 *
 * @param dialog_type style of the dialog: 1 for an error, 2 for a notice
 * @param title (transfer none) (nullable)
 * @param text (transfer none) (nullable)
 * @param buttons a PB_DIALOG_BUTTONS_ value
 * @param timeout_ms milliseconds after which the dialog goes by itself; 0 or less for never
 * @param response (out) (nullable) receives the GTK response; GTK_RESPONSE_NONE after a
 *        time-out, and when the dialog was hidden, taken down or could not be made
 * @return FALSE exactly when the response is GTK_RESPONSE_NONE
 */
PB_EXPORT gboolean pb_util_show_dialog(gint dialog_type, const gchar *title, const gchar *text,
                                       gint buttons, gint timeout_ms, gint *response);

/**
 * Asks whether to delete, in a nested main loop. While a user is signed in to the web-album
 * service there is a check box, read afterwards with pb_is_set_delete_dialog_check_box().
 *
 * @param dialog_type style of the dialog
 * @param title (transfer none) (nullable)
 * @param text (transfer none) (nullable)
 * @param timeout_ms milliseconds after which the dialog goes by itself; 0 or less for never
 * @param response (out) (nullable) receives GTK_RESPONSE_YES, GTK_RESPONSE_NO,
 *        GTK_RESPONSE_DELETE_EVENT or GTK_RESPONSE_NONE
 * @return always TRUE
 */
PB_EXPORT gboolean pb_show_delete_local_server_dialog(gint dialog_type, const gchar *title,
                                                      const gchar *text, gint timeout_ms,
                                                      gint *response);

/**
 * Asks whether to delete the copy on this phone and keep the one on the web, in a nested main
 * loop. Like pb_show_delete_local_server_dialog(), with a confirming and a cancelling button
 * and without the check box.
 *
 * @param dialog_type style of the dialog
 * @param title (transfer none) (nullable)
 * @param text (transfer none) (nullable)
 * @param timeout_ms milliseconds after which the dialog goes by itself; 0 or less for never
 * @param response (out) (nullable) receives the GTK response
 * @return TRUE when the user agreed (GTK_RESPONSE_YES)
 */
PB_EXPORT gboolean pb_menu_delete_archive_show_dialog(gint dialog_type, const gchar *title,
                                                      const gchar *text, gint timeout_ms,
                                                      gint *response);

/**
 * Takes down whatever is showing: the current dialog or popup, its time-out and its dim window.
 *
 * @return always TRUE
 */
PB_EXPORT gboolean pb_dialog_destroy(void);

/** @return TRUE while a dialog is current */
PB_EXPORT gboolean pb_dialog_check_exist(void);

/** @return TRUE while a popup of mb_show_popup() is on the screen */
PB_EXPORT gboolean mb_popup_check_exist(void);

/** @return TRUE when the check box of the last delete dialog was ticked; showing any dialog
 *          clears it */
PB_EXPORT gboolean pb_is_set_delete_dialog_check_box(void);

/**
 * Opens the progress dialog, a text with a running animation. Refused with a warning while a
 * dialog is current. Returns at once.
 *
 * @param title (transfer none) (nullable)
 * @param text (transfer none) (nullable)
 * @param response_handler (scope notified) (nullable) handler of the dialog's "response"
 *        signal, called as void (GtkDialog *, gint, gpointer) with NULL data, which has to take
 *        the dialog down; there is a Cancel button then. Without one there is an OK button,
 *        which takes the dialog down.
 */
PB_EXPORT void pb_util_start_progress_bar(const gchar *title, const gchar *text,
                                          GCallback response_handler);

/**
 * Changes the progress dialog's text and turns its button into OK. Does nothing without one.
 *
 * @param text (transfer none) (nullable) the text; NULL leaves it
 */
PB_EXPORT void pb_util_update_progress_bar(const gchar *text);

/**
 * Tells other applications of an event.
 *
 * @param event_id number of the event
 * @param data (transfer none) (nullable) what belongs to the event
 * @return TRUE on success; FALSE after a logged failure
 */
PB_EXPORT gboolean pb_util_noti_publish(gint event_id, gpointer data);

/**
 * Shows a short message in the theme's colour that goes by itself after two seconds, on a tap
 * or on Escape. It replaces an earlier popup and becomes the current dialog. Returns at once.
 *
 * @param parent (transfer none) (nullable) window to show it over; the main window when NULL
 * @param text (transfer none) (nullable) the message; NULL shows nothing
 */
PB_EXPORT void mb_show_popup(GtkWidget *parent, const gchar *text);

/** Moves the popup to its place over its window again, after the window moved, turned or changed
 *  its size. Does nothing without a popup. */
PB_EXPORT void mb_popup_reposition_popup_window(void);

/**
 * Shows a message with a running animation until pb_dialog_destroy(). It becomes the current
 * dialog in place of an earlier one. Returns at once.
 *
 * @param text (transfer none) (nullable) the message
 */
PB_EXPORT void mb_util_create_waiting_popup(const gchar *text);

/**
 * Dims the main window and shows a message with a running animation over it until
 * pb_dialog_destroy(). It becomes the current dialog in place of an earlier one. Returns at
 * once.
 *
 * @param text (transfer none) (nullable) the message
 */
PB_EXPORT void mb_util_start_waiting_loop_animation(const gchar *text);

/**
 * Shows a progress bar in a strip at the top of the main window, which leaves the rest of the
 * window usable, until it reaches 100 % or pb_dialog_destroy(). It becomes the current dialog in
 * place of an earlier one. Returns at once.
 *
 * @param text (transfer none) (nullable) what goes on
 */
PB_EXPORT void mb_util_start_noti_progress_bar(const gchar *text);

/**
 * Moves the progress bar of mb_util_start_noti_progress_bar(). Does nothing without one.
 *
 * @param percent 0 to 100, limited to that; 100 takes the bar down
 * @param text (transfer none) (nullable) what goes on; NULL leaves the text
 */
PB_EXPORT void pb_util_update_noti_progress_bar(gint percent, const gchar *text);

/**
 * Asks for the name and the password of an account of a video-sharing site, in a nested main
 * loop. Signing in needs both.
 *
 * @param user (out) (transfer full) (nullable) receives the name, freed with g_free(); NULL
 *        when the user gave up
 * @param password (out) (transfer full) (nullable) receives the password, freed with g_free()
 *        after it was cleared; NULL when the user gave up
 * @return TRUE when both were given
 */
PB_EXPORT gboolean pb_util_create_youtube_login_dialog(gchar **user, gchar **password);

/**
 * Reads the text of a button. For the library's own use.
 *
 * @param button (transfer none) (nullable) a button
 * @return (transfer none) (nullable) its text, owned by the button; NULL when it has none or is
 *         not a button
 */
PB_EXPORT const gchar *__pb_util_get_button_label(GtkWidget *button);

G_END_DECLS

#endif

/** @file
 * The phone's dialogs.
 *
 * Main loop only, under the GDK lock. An argument of the wrong type gives a GLib critical warning
 * and does nothing.
 */
#ifndef STYLE_DIALOG_H
#define STYLE_DIALOG_H

#include <gtk/gtk.h>
#include <phone-api.h>

PHONE_BEGIN_DECLS

/** Type of GtkStyleDialog. */
#define GTK_TYPE_STYLE_DIALOG (gtk_style_dialog_get_type())
/** Casts to GtkStyleDialog, checked. */
#define GTK_STYLE_DIALOG(obj) \
  (G_TYPE_CHECK_INSTANCE_CAST((obj), GTK_TYPE_STYLE_DIALOG, GtkStyleDialog))
/** Tells a GtkStyleDialog. */
#define GTK_IS_STYLE_DIALOG(obj) (G_TYPE_CHECK_INSTANCE_TYPE((obj), GTK_TYPE_STYLE_DIALOG))

/** A GtkDialog with a text, a content area below it and a row of buttons. */
typedef struct _GtkStyleDialog {
  GtkDialog parent; /**< base instance */
} GtkStyleDialog;

/** Class of GtkStyleDialog. */
typedef struct _GtkStyleDialogClass {
  GtkDialogClass parent_class; /**< base class */
} GtkStyleDialogClass;

/** @return the type of GtkStyleDialog, a GtkDialog */
GType gtk_style_dialog_get_type(void);

/**
 * Makes a dialog. It is not shown.
 *
 * @param style number of the dialog's look
 * @param parent (transfer none) (nullable) the window that it lies over
 * @param flags GtkDialogFlags
 * @return (transfer none) (nullable) a toplevel, which lives until gtk_widget_destroy(); NULL on
 *         failure
 */
GtkWidget *gtk_style_dialog_new(gint style, GtkWindow *parent, gint flags);

/**
 * Writes the title.
 *
 * @param dialog (transfer none) the dialog
 * @param title (transfer none) plain UTF-8; copied
 */
void gtk_style_dialog_set_title(GtkStyleDialog *dialog, const gchar *title);

/**
 * Writes the text, also while the dialog is shown.
 *
 * @param dialog (transfer none) the dialog
 * @param text (transfer none) plain UTF-8; copied
 */
void gtk_style_dialog_set_content_area_text(GtkStyleDialog *dialog, const gchar *text);

/**
 * Gives the area below the text, for more widgets.
 *
 * @param dialog (transfer none) the dialog
 * @return (transfer none) a GtkBox that lives as long as the dialog
 */
GtkWidget *gtk_style_dialog_get_content_area(GtkStyleDialog *dialog);

/**
 * Gives the label that shows the text.
 *
 * @param dialog (transfer none) the dialog
 * @return (transfer none) a GtkLabel that lives as long as the dialog
 */
GtkWidget *gtk_style_dialog_get_text_label(GtkStyleDialog *dialog);

/**
 * Adds a button.
 *
 * @param dialog (transfer none) the dialog
 * @param label (transfer none) (nullable) plain UTF-8; copied
 * @param response what "response" is emitted with
 * @return (transfer none) the button, which lives as long as the dialog
 */
GtkWidget *gtk_style_dialog_add_button(GtkStyleDialog *dialog, const gchar *label, gint response);

/**
 * Destroys the dialog after a time. A gtk_dialog_run() that waits then gives GTK_RESPONSE_NONE.
 *
 * @param dialog (transfer none) the dialog
 * @param timeout_ms milliseconds from this call, more than 0
 */
void gtk_style_dialog_set_destroy_timeout(GtkStyleDialog *dialog, guint timeout_ms);

PHONE_END_DECLS

#endif

/** @file
 * The phone's main window with its title bar, the forms in it and their effects.
 *
 * Main loop only, under the GDK lock. An argument of the wrong type gives a GLib critical warning
 * and does nothing.
 */
#ifndef MAIN_WINDOW_H
#define MAIN_WINDOW_H

#include <gtk/gtk.h>
#include <phone-api.h>

PHONE_BEGIN_DECLS

/** Type of GtkMainWindow. */
#define GTK_TYPE_MAIN_WINDOW (gtk_main_window_get_type())
/** Casts to GtkMainWindow, checked. */
#define GTK_MAIN_WINDOW(obj) \
  (G_TYPE_CHECK_INSTANCE_CAST((obj), GTK_TYPE_MAIN_WINDOW, GtkMainWindow))
/** Tells a GtkMainWindow. */
#define GTK_IS_MAIN_WINDOW(obj) (G_TYPE_CHECK_INSTANCE_TYPE((obj), GTK_TYPE_MAIN_WINDOW))

/** Type of GtkForm. */
#define GTK_TYPE_FORM (gtk_form_get_type())
/** Casts to GtkForm, checked. */
#define GTK_FORM(obj) (G_TYPE_CHECK_INSTANCE_CAST((obj), GTK_TYPE_FORM, GtkForm))
/** Tells a GtkForm. */
#define GTK_IS_FORM(obj) (G_TYPE_CHECK_INSTANCE_TYPE((obj), GTK_TYPE_FORM))

/** A toplevel window with a title bar; shows one of its forms at a time. */
typedef struct _GtkMainWindow {
  GtkWindow parent; /**< base instance */
} GtkMainWindow;

/** Class of GtkMainWindow. */
typedef struct _GtkMainWindowClass {
  GtkWindowClass parent_class; /**< base class */
} GtkMainWindowClass;

/** One screen of an application: a container for one child. */
typedef struct _GtkForm {
  GtkBin parent; /**< base instance */
} GtkForm;

/** Class of GtkForm. */
typedef struct _GtkFormClass {
  GtkBinClass parent_class; /**< base class */
} GtkFormClass;

/** The effect that slides a form in or out. */
#define GTK_EFFECT_MOTION_FORM 0x1000u

/** Looks of the title bar; any other number looks like PHONE_TITLE_BAR. */
enum {
  PHONE_TITLE_BAR = 0, /**< icon and title above the form */
  PHONE_TITLE_NONE = 1 /**< no title bar: the form has the whole window */
};

/** @return the type of GtkMainWindow, a GtkWindow */
GType gtk_main_window_get_type(void);

/**
 * Makes a main window. It is not shown.
 *
 * @param style a number of the application's, kept and handed back
 * @return (transfer none) a toplevel window, which lives until gtk_widget_destroy()
 */
GtkWidget *gtk_main_window_new(gint style);

/**
 * Puts a form into the window. The form is not shown until it is the current one.
 *
 * @param window (transfer none) the window
 * @param form (transfer none) the form; the window takes its floating reference
 */
void gtk_main_window_add_form(GtkMainWindow *window, GtkForm *form);

/**
 * Takes a form out of the window. This destroys the form unless somebody holds a reference. When
 * it was the current form, none is current.
 *
 * @param window (transfer none) the window
 * @param form (transfer none) a form of the window; any other is left alone
 */
void gtk_main_window_remove_form(GtkMainWindow *window, GtkForm *form);

/**
 * Shows one form and hides the others.
 *
 * @param window (transfer none) the window
 * @param form (transfer none) a form of the window
 */
void gtk_main_window_set_current_form(GtkMainWindow *window, GtkForm *form);

/**
 * Writes the title into the title bar.
 *
 * @param window (transfer none) the window
 * @param title (transfer none) plain UTF-8; copied
 */
void gtk_main_window_set_default_title(GtkMainWindow *window, const gchar *title);

/**
 * Puts an icon into the title bar.
 *
 * @param window (transfer none) the window
 * @param icon (transfer none) the icon; referenced
 */
void gtk_main_window_set_default_icon(GtkMainWindow *window, GdkPixbuf *icon);

/**
 * Chooses the look of the title bar.
 *
 * @param window (transfer none) the window
 * @param style PHONE_TITLE_BAR or PHONE_TITLE_NONE
 */
void gtk_main_window_set_title_style(GtkMainWindow *window, gint style);

/**
 * Gives the title bar's label, for instance to change its alignment.
 *
 * @param window (transfer none) the window
 * @return (transfer none) a GtkLabel that lives as long as the window
 */
GtkWidget *gtk_main_window_get_title_label(GtkMainWindow *window);

/**
 * Puts a widget of the application's into the title bar, for instance a back button.
 *
 * @param window (transfer none) the window
 * @param widget (transfer none) the widget; the title bar takes its floating reference
 * @param side GTK_PACK_START before the icon and the title, GTK_PACK_END behind them
 */
void phone_main_window_add_title_widget(GtkMainWindow *window, GtkWidget *widget, GtkPackType side);

/**
 * Puts a widget of the application's under the forms, where it stays whatever form is shown.
 *
 * @param window (transfer none) the window
 * @param widget (transfer none) the widget; the window takes its floating reference
 */
void phone_main_window_add_bottom_widget(GtkMainWindow *window, GtkWidget *widget);

/**
 * Gives the window's style.
 *
 * @param window (transfer none) the window
 * @return the number that gtk_main_window_new() or gtk_main_window_change_style() got last
 */
gint gtk_main_window_get_style(GtkMainWindow *window);

/**
 * Changes the window's style.
 *
 * @param window (transfer none) the window
 * @param style a number of the application's
 * @param reserved 0
 */
void gtk_main_window_change_style(GtkMainWindow *window, gint style, gint reserved);

/** @return the type of GtkForm, a GtkBin */
GType gtk_form_get_type(void);

/** @return (transfer none) a new form, with a floating reference */
GtkWidget *gtk_form_new(void);

/**
 * Switches a motion effect of a form on or off. A platform may have no motion at all, as the
 * host, where every form appears and goes at once.
 *
 * @param form (transfer none) the form
 * @param effect GTK_EFFECT_MOTION_FORM
 * @param on FALSE: the form appears and goes at once
 */
void gtk_effect_set_motion(GtkWidget *form, guint effect, gboolean on);

/**
 * Tells how the screen is turned.
 *
 * @param window (transfer none) (nullable) the main window
 * @return degrees: 0 or 180 upright, 90 or 270 on the side; 0 for NULL
 */
gint gtk_window_get_rotate(GtkWindow *window);

PHONE_END_DECLS

#endif

/** @file
 * The application's main window with its stack of forms, and the scaling of pictures to a box.
 *
 * There is one window and one stack. Main loop only; pb_calc_scaled_size(), pb_pixbuf_scale()
 * and pb_pixbuf_best_fit() may be called from any thread.
 */
#ifndef PB_VIEW_MANAGER_H
#define PB_VIEW_MANAGER_H

#include <glib.h>
#include <gtk/gtk.h>
#include <pb-export.h>

G_BEGIN_DECLS

/** Flags of pb_calc_scaled_size(). */
enum {
  PB_SCALE_FIT_WIDTH = 1,  /**< shrink until the width fits */
  PB_SCALE_FIT_HEIGHT = 2, /**< shrink until the height fits */
  PB_SCALE_ENLARGE = 4,    /**< with both of the above: fill the box with a smaller picture too */
};

/** A rectangle for pb_draw_rect(), pixels. */
typedef struct {
  gint x;
  gint y;
  gint width;
  gint height;
} PbRect;

/**
 * Makes and shows the main window, 480 by 608 pixels, unless there is one.
 *
 * @param style style of the window
 * @return (transfer none) the main window
 */
PB_EXPORT GtkWidget *pb_view_manager_create_window(gint style);

/**
 * Takes over a window of the application as the main window, 480 by 800 pixels, and shows it.
 *
 * @param widget (transfer none) (nullable) the window; ignored when it is not a widget. It must
 *        not be destroyed while it is the main window, except by
 *        pb_view_manager_destroy_window().
 */
PB_EXPORT void pb_view_manager_set_window(GtkWidget *widget);

/** @return (transfer none) (nullable) the main window */
PB_EXPORT GtkWidget *pb_view_manager_get_window(void);

/** Destroys all forms and then the main window. */
PB_EXPORT void pb_view_manager_destroy_window(void);

/**
 * Puts a form on top of the stack and shows it. There has to be a main window.
 *
 * @param form (transfer full) a GtkForm; the window takes its floating reference
 * @param focus_widget (transfer none) (nullable) widget of the form that gets the focus now and
 *        whenever the form comes back; it has to live as long as the form
 * @param title (transfer none) (nullable) title of the window while the form is on top
 */
PB_EXPORT void pb_view_manager_add_widget(GtkWidget *form, GtkWidget *focus_widget,
                                          const gchar *title);

/**
 * Takes the top form off the stack and brings back focus and title of the one below. The last
 * form stays.
 *
 * @param form (transfer none) a form with the name of the top form (gtk_widget_get_name(),
 *        without regard to case); nothing happens with another name, or when the top form was
 *        destroyed
 */
PB_EXPORT void pb_view_manager_remove_widget(GtkWidget *form);

/**
 * Takes off every form above a form.
 *
 * @param form (transfer none) a form of the stack; nothing happens with another
 */
PB_EXPORT void pb_view_manager_remove_widget_to_specify(GtkWidget *form);

/** Takes off all forms. Focus and title stay as they are. */
PB_EXPORT void pb_view_manager_destroy_all(void);

/** @return the number of forms */
PB_EXPORT gint pb_view_manager_get_count(void);

/** @return (transfer none) (nullable) the top form */
PB_EXPORT GtkWidget *pb_view_manager_get_current_widget(void);

/**
 * Changes the widget that gets the focus when a form comes back.
 *
 * @param form (transfer none) a form of the stack; nothing happens with another
 * @param focus_widget (transfer none) (nullable) the widget
 */
PB_EXPORT void pb_view_manager_set_focus_widget(GtkWidget *form, GtkWidget *focus_widget);

/**
 * Reads the widget that gets the focus when a form comes back.
 *
 * @param form (transfer none) a form of the stack
 * @return (transfer none) (nullable) the widget; NULL for an unknown form
 */
PB_EXPORT GtkWidget *pb_view_manager_get_focus_widget(GtkWidget *form);

/**
 * Sets the window's title and centres it. The form keeps the title it was added with.
 *
 * @param title (transfer none) (nullable) NULL changes nothing
 */
PB_EXPORT void pb_view_manager_set_title(const gchar *title);

/** Sets the window's title to the one that the top form was added with. */
PB_EXPORT void pb_view_manager_set_current_title(void);

/**
 * Sets the picture in the window's title.
 *
 * @param icon (transfer none) (nullable) NULL changes nothing
 */
PB_EXPORT void pb_view_manager_set_title_icon(GdkPixbuf *icon);

/**
 * Sets the style of the window's title.
 *
 * @param style a value of the main window
 */
PB_EXPORT void pb_view_manager_set_title_style(gint style);

/** @return the style of the window; 0 without one */
PB_EXPORT gint pb_view_manager_get_window_style(void);

/**
 * Changes the style of the window.
 *
 * @param style a value of the main window
 */
PB_EXPORT void pb_view_manager_set_window_style(gint style);

/**
 * Computes the size that a picture gets in a box, its aspect kept in single precision and every
 * size cut to whole pixels.
 *
 * @param img_w width of the picture
 * @param img_h height of the picture
 * @param canvas_w width of the box, positive
 * @param canvas_h height of the box, positive
 * @param flags PB_SCALE_ flags
 * @param out_w (out) (nullable) receives the width; untouched for a box that is not positive
 * @param out_h (out) (nullable) receives the height; untouched for a box that is not positive
 * @return TRUE when the size differs from the picture's; FALSE also for a box that is not
 *         positive, with a warning
 */
PB_EXPORT gboolean pb_calc_scaled_size(gint img_w, gint img_h, gint canvas_w, gint canvas_h,
                                       guint flags, gint *out_w, gint *out_h);

/**
 * Scales a picture by the rule of pb_calc_scaled_size(), bilinear.
 *
 * @param src (transfer none) the picture
 * @param canvas_w width of the box, positive
 * @param canvas_h height of the box, positive
 * @param flags PB_SCALE_ flags
 * @return (transfer full) (nullable) the scaled picture, or @p src with a reference added when
 *         nothing is to scale; NULL with a warning when an argument is wrong
 */
PB_EXPORT GdkPixbuf *pb_pixbuf_scale(GdkPixbuf *src, gint canvas_w, gint canvas_h, guint flags);

/**
 * Cuts a picture to the shape of a box and scales it to fill the box.
 *
 * Some shapes have no cut inside the picture; GdkPixbuf then warns and the result is NULL.
 *
 * @param src (transfer none) the picture
 * @param width of the result, positive
 * @param height of the result, positive
 * @return (transfer full) (nullable) a picture of exactly that size, @p src with a reference
 *         added when it has that size; NULL with a warning without a picture
 */
PB_EXPORT GdkPixbuf *pb_pixbuf_best_fit(GdkPixbuf *src, gint width, gint height);

/**
 * Draws a rectangle.
 *
 * @param drawable (transfer none) where to draw
 * @param gc (transfer none) how to draw
 * @param filled TRUE to fill it
 * @param rect (transfer none) the rectangle
 */
PB_EXPORT void pb_draw_rect(GdkDrawable *drawable, GdkGC *gc, gboolean filled, const PbRect *rect);

G_END_DECLS

#endif

/** @file
 * Icon views: what the phone adds to GtkIconView, and its own view for long lists.
 *
 * Main loop only, under the GDK lock.
 */
#ifndef ICON_VIEW_H
#define ICON_VIEW_H

#include <gtk/gtk.h>
#include <phone-api.h>

PHONE_BEGIN_DECLS

/** Type of PhoneIconView. */
#define PHONE_TYPE_ICON_VIEW (phone_icon_view_get_type())
/** Casts to PhoneIconView, checked. */
#define PHONE_ICON_VIEW(obj) \
  (G_TYPE_CHECK_INSTANCE_CAST((obj), PHONE_TYPE_ICON_VIEW, PhoneIconView))
/** Tells a PhoneIconView. */
#define PHONE_IS_ICON_VIEW(obj) (G_TYPE_CHECK_INSTANCE_TYPE((obj), PHONE_TYPE_ICON_VIEW))

/**
 * A grid of cells of one size. It reads the rows on screen only, so what it costs does not depend
 * on the length of the list. It keeps a model of its own: the GtkIconView below it never has one.
 *
 * A click or Return emits "item-activated" of GtkIconView with the row's path. Arrow keys, Home,
 * End and the page keys move the cursor; a drag scrolls with momentum; a handle at the edge
 * scrolls fast; cells have accessible names.
 */
typedef struct _PhoneIconView {
  GtkIconView parent; /**< base instance */
} PhoneIconView;

/** Class of PhoneIconView. */
typedef struct _PhoneIconViewClass {
  GtkIconViewClass parent_class; /**< base class */
} PhoneIconViewClass;

/**
 * Gives the height of one row of icons.
 *
 * @param view (transfer none) any GtkIconView
 * @return pixels, without the spacing between rows; 0 when not known
 */
gint gtk_icon_view_get_icon_height(GtkIconView *view);

/**
 * Gives the space above the first row of icons.
 *
 * @param view (transfer none) any GtkIconView
 * @return pixels; 0 when there is none
 */
gint gtk_icon_view_get_top_margin(GtkIconView *view);

/**
 * Tells a stock GtkIconView the height of its rows of icons, which it does not know itself. A
 * PhoneIconView answers with the height of its cells and needs no telling.
 *
 * @param view (transfer none) the view
 * @param pixels without the spacing between rows, 0 or more
 */
void phone_icon_view_set_icon_height(GtkIconView *view, gint pixels);

/**
 * Gives a view another space above its first row of icons than its margin.
 *
 * @param view (transfer none) any GtkIconView; a PhoneIconView lays its cells out by it
 * @param pixels 0 or more
 */
void phone_icon_view_set_top_margin(GtkIconView *view, gint pixels);

/** @return the type of PhoneIconView, a GtkIconView */
GType phone_icon_view_get_type(void);

/** @return (transfer none) a view without a model, with a floating reference */
GtkWidget *phone_icon_view_new(void);

/**
 * Gives the view its list. The cursor is lost and the view scrolls to the start.
 *
 * @param view (transfer none) the view
 * @param model (transfer none) (nullable) a list; referenced. A GtkVirtualListStore is told the
 *        visible rows before each drawing.
 */
void phone_icon_view_set_model(PhoneIconView *view, GtkTreeModel *model);

/**
 * Gives the view's list.
 *
 * @param view (transfer none) the view
 * @return (transfer none) (nullable) the list
 */
GtkTreeModel *phone_icon_view_get_model(PhoneIconView *view);

/**
 * Says how a cell is drawn. A cell is drawn once and kept until its row changes.
 *
 * @param view (transfer none) the view
 * @param renderer (transfer none) draws one cell; its floating reference is taken
 * @param property (transfer none) the renderer's property that gets the row's value; copied
 * @param column the column of that value
 */
void phone_icon_view_set_cell(PhoneIconView *view, GtkCellRenderer *renderer, const gchar *property,
                              gint column);

/**
 * Gives all cells their size.
 *
 * @param view (transfer none) the view
 * @param width pixels, more than 0
 * @param height pixels, more than 0
 */
void phone_icon_view_set_cell_size(PhoneIconView *view, gint width, gint height);

/**
 * Moves the cursor to a row and scrolls it into view.
 *
 * @param view (transfer none) the view
 * @param row number of the row; one outside the list is ignored
 */
void phone_icon_view_set_cursor_row(PhoneIconView *view, gint row);

/**
 * Gives the row with the cursor.
 *
 * @param view (transfer none) the view
 * @return number of the row; -1 when there is no cursor
 */
gint phone_icon_view_get_cursor_row(PhoneIconView *view);

/**
 * Scrolls a row into view.
 *
 * @param view (transfer none) the view
 * @param row number of the row; one outside the list is ignored
 * @param align where the row comes to lie: 0 at the top, 1 at the bottom
 */
void phone_icon_view_scroll_to_row(PhoneIconView *view, gint row, gfloat align);

/**
 * Gives the rows on screen, those that are seen in part included.
 *
 * @param view (transfer none) the view
 * @param first (nullable) set to the first row
 * @param last (nullable) set to the last row
 * @return FALSE when no row is visible; first and last are then left alone
 */
gboolean phone_icon_view_get_visible_rows(PhoneIconView *view, gint *first, gint *last);

/**
 * Finds the row at a point.
 *
 * @param view (transfer none) the view
 * @param x pixels from the widget's left edge
 * @param y pixels from the widget's top edge
 * @return number of the row; -1 between and beside cells
 */
gint phone_icon_view_get_row_at(PhoneIconView *view, gint x, gint y);

/**
 * Drops every drawn cell, so that the visible ones are drawn anew: thumbnails have arrived.
 *
 * @param view (transfer none) the view
 */
void phone_icon_view_invalidate_cells(PhoneIconView *view);

/**
 * Says how many rows can be selected, GTK_SELECTION_NONE at first. Emits "selection-changed" when
 * rows lose their selection by it.
 *
 * - GTK_SELECTION_NONE: a click or space opens a row.
 * - GTK_SELECTION_SINGLE and _BROWSE: the cursor's row is the selected one; a click opens it too.
 * - GTK_SELECTION_MULTIPLE: cells show a place to tick; a click or space ticks a row, with Shift
 *   all rows from the last ticked one; Return opens the row with the cursor.
 *
 * @param view (transfer none) the view
 * @param mode the mode
 */
void phone_icon_view_set_selection_mode(PhoneIconView *view, GtkSelectionMode mode);

/**
 * Gives the selection mode.
 *
 * @param view (transfer none) the view
 * @return the mode
 */
GtkSelectionMode phone_icon_view_get_selection_mode(PhoneIconView *view);

/**
 * Selects a row; unless the mode is GTK_SELECTION_MULTIPLE, the other rows lose their selection.
 * Emits "selection-changed" of GtkIconView when something changed, as the four that follow do.
 *
 * @param view (transfer none) the view
 * @param row number of the row; one outside the list is ignored
 */
void phone_icon_view_select_row(PhoneIconView *view, gint row);

/**
 * Takes a row out of the selection.
 *
 * @param view (transfer none) the view
 * @param row number of the row
 */
void phone_icon_view_unselect_row(PhoneIconView *view, gint row);

/**
 * Selects all rows, without reading any; only in GTK_SELECTION_MULTIPLE.
 *
 * @param view (transfer none) the view
 */
void phone_icon_view_select_all(PhoneIconView *view);

/**
 * Ends the selection of all rows.
 *
 * @param view (transfer none) the view
 */
void phone_icon_view_unselect_all(PhoneIconView *view);

/**
 * Tells whether a row is selected.
 *
 * @param view (transfer none) the view
 * @param row number of the row
 * @return TRUE for a selected row
 */
gboolean phone_icon_view_row_is_selected(PhoneIconView *view, gint row);

/**
 * Counts the selected rows.
 *
 * @param view (transfer none) the view
 * @return their number
 */
gint phone_icon_view_count_selected(PhoneIconView *view);

/**
 * Called for one row.
 *
 * @param view (transfer none) the view
 * @param row number of the row
 * @param user_data what the caller gave
 */
typedef void (*phone_icon_view_row_func)(PhoneIconView *view, gint row, gpointer user_data);

/**
 * Calls a function for each row that is selected at the time of the call, in order.
 *
 * @param view (transfer none) the view
 * @param function called for each row; it may change the selection
 * @param user_data given to the function
 */
void phone_icon_view_foreach_selected(PhoneIconView *view, phone_icon_view_row_func function,
                                      gpointer user_data);

/**
 * Gives the name of a row.
 *
 * @param view (transfer none) the view
 * @param row number of the row
 * @param user_data what the caller gave
 * @return (transfer full) (nullable) UTF-8
 */
typedef gchar *(*phone_icon_view_name_func)(PhoneIconView *view, gint row, gpointer user_data);

/**
 * Says how rows are called for a screen reader. Without it, or when it gives NULL, a row is called
 * by its number and the number of rows.
 *
 * @param view (transfer none) the view
 * @param name (nullable) gives the name of a row; called for rows on screen only
 * @param user_data given to the function
 * @param destroy (nullable) called with user_data when the function is not needed any more
 */
void phone_icon_view_set_name_func(PhoneIconView *view, phone_icon_view_name_func name,
                                   gpointer user_data, GDestroyNotify destroy);

PHONE_END_DECLS

#endif

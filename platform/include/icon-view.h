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

PHONE_END_DECLS

#endif

/** @file
 * A list model that knows its length but reads its rows only when somebody looks at them.
 *
 * A row is *unfilled* until it is set and *filled* from then on. Rows are numbered from 0; an
 * iterator names a row and is good until that row is removed. Looking up a position never reads
 * it: only gtk_tree_model_get_value() on an unfilled row does, by emitting "fill-cache", whose
 * handler calls gtk_virtual_list_store_set() for the rows it has. The model is a plain list
 * (GTK_TREE_MODEL_LIST_ONLY); its iterators do not persist.
 *
 * Signals, all emitted on the main loop:
 * - "fill-cache" (gint first, gint last, gint row): rows first..last, both included, are wanted,
 *   and row among them now. first..last is the cache window when row lies in it, else row alone.
 *   While a handler runs no second emission is made: what it reads of unfilled rows is NULL or 0.
 * - "initialize-cache" (gint row): before the first "fill-cache" of a burst.
 * - "finalize-cache" (gint row): after the last "fill-cache" of a burst. A burst is one drawing
 *   pass of a view, or one single read outside of it.
 *
 * Rows that leave the cache window lose their values without a signal. Rows read outside the
 * window stay until the window moves, or until there are more of them than the cache size; then
 * the oldest go, from an idle source. A read or a set never takes the values of any row away, so
 * a pointer got from one row survives the reading of another until the main loop runs.
 *
 * Main loop only. Finalising a store emits nothing.
 */
#ifndef VIRTUAL_LIST_STORE_H
#define VIRTUAL_LIST_STORE_H

#include <gtk/gtk.h>
#include <phone-api.h>

PHONE_BEGIN_DECLS

/** The type of GtkVirtualListStore; implements GtkTreeModel and may be subclassed. */
#define GTK_TYPE_VIRTUAL_LIST_STORE (gtk_virtual_list_store_get_type())

/** @return the type of GtkVirtualListStore */
GType gtk_virtual_list_store_get_type(void);

/** @cond */
G_DECLARE_DERIVABLE_TYPE(GtkVirtualListStore, gtk_virtual_list_store, GTK, VIRTUAL_LIST_STORE,
                         GObject)
/** @endcond */

/** Class of GtkVirtualListStore. Signals have no class handlers. */
struct _GtkVirtualListStoreClass {
  GObjectClass parent_class; /**< base class */
};

/**
 * Gives the columns their types. Call it once, before the store has rows.
 *
 * @param store (transfer none) the store
 * @param n number of columns
 * @param types (transfer none) their n types; copied
 */
void gtk_virtual_list_store_set_column_types(GtkVirtualListStore *store, gint n, GType *types);

/**
 * Says how many rows around the visible ones are kept filled. Without it no row is ever dropped
 * and the cache window is empty, so every unfilled row is asked for alone.
 *
 * @param store (transfer none) the store
 * @param n number of rows; 0 for no limit
 */
void gtk_virtual_list_store_set_cache_size(GtkVirtualListStore *store, gint n);

/**
 * Gives the store its length. Rows that are new are unfilled; rows from n on are dropped. With a
 * view attached "row-inserted" or "row-deleted" is emitted for each of them; a long list is best
 * given its length before.
 *
 * @param store (transfer none) the store
 * @param n number of rows, 0 or more
 */
void gtk_virtual_list_store_set_total_size(GtkVirtualListStore *store, gint n);

/**
 * Finds a row by its number. Never emits a signal.
 *
 * @param store (transfer none) the store
 * @param iter (transfer none) set to the row; left invalid when there is none
 * @param n number of the row
 * @return TRUE for 0 <= n < length
 */
gboolean gtk_virtual_list_store_iter_nth(GtkVirtualListStore *store, GtkTreeIter *iter, gint n);

/**
 * Adds one filled row with NULL or 0 in each column at the end. It is never dropped from the
 * cache. Emits "row-inserted".
 *
 * @param store (transfer none) the store
 * @param iter (transfer none) set to the row
 */
void gtk_virtual_list_store_append(GtkVirtualListStore *store, GtkTreeIter *iter);

/**
 * Sets columns of one row, as gtk_list_store_set() does, and makes it a filled one: the columns
 * that are not named keep their values, which are NULL or 0 for a row that was unfilled. Emits
 * "row-changed" once, never "fill-cache".
 *
 * @param store (transfer none) the store
 * @param iter (transfer none) the row
 * @param ... pairs of a column (gint) and a value, ended by -1. Strings are copied, objects
 *        referenced and later handed out as the same pointer.
 */
void gtk_virtual_list_store_set(GtkVirtualListStore *store, GtkTreeIter *iter, ...);

/**
 * Takes one row out. The rows behind it move up by one, and later fills use the new numbers.
 * Emits "row-deleted".
 *
 * @param store (transfer none) the store
 * @param iter (transfer none) the row; invalid afterwards
 * @return TRUE when a row was removed, the last one included; FALSE when iter names none
 */
gboolean gtk_virtual_list_store_remove(GtkVirtualListStore *store, GtkTreeIter *iter);

/**
 * Tells whether a row has values, without reading it. Never emits a signal.
 *
 * @param store (transfer none) the store
 * @param row number of the row
 * @return TRUE for a filled row; FALSE also for a number outside the list
 */
gboolean gtk_virtual_list_store_row_is_filled(GtkVirtualListStore *store, gint row);

/**
 * Moves the cache window to the rows on screen: cache-size rows around them, clamped to the
 * list. Rows that leave the window become unfilled. Opens the burst of a drawing pass, which ends
 * with the pass. For views; nobody else calls it.
 *
 * @param store (transfer none) the store
 * @param first first visible row
 * @param last last visible row, included
 */
void gtk_virtual_list_store_set_view_range(GtkVirtualListStore *store, gint first, gint last);

PHONE_END_DECLS

#endif

/** @file
 * Cell renderer that draws one item in an icon view: a file as its thumbnail, an album as a
 * framed cover with its name and file count. Main loop only.
 */
#ifndef PB_ITEM_RENDERER_H
#define PB_ITEM_RENDERER_H

#include <gtk/gtk.h>
#include <pb-item.h>

G_BEGIN_DECLS

/** The type of PbItemRenderer. */
#define PB_TYPE_ITEM_RENDERER (pb_item_renderer_get_type())

/** @cond */
#define PB_ITEM_RENDERER(object) \
  (G_TYPE_CHECK_INSTANCE_CAST((object), PB_TYPE_ITEM_RENDERER, PbItemRenderer))
#define PB_ITEM_RENDERER_CLASS(klass) \
  (G_TYPE_CHECK_CLASS_CAST((klass), PB_TYPE_ITEM_RENDERER, PbItemRendererClass))
#define PB_IS_ITEM_RENDERER(object) (G_TYPE_CHECK_INSTANCE_TYPE((object), PB_TYPE_ITEM_RENDERER))
#define PB_IS_ITEM_RENDERER_CLASS(klass) (G_TYPE_CHECK_CLASS_TYPE((klass), PB_TYPE_ITEM_RENDERER))
#define PB_ITEM_RENDERER_GET_CLASS(object) \
  (G_TYPE_INSTANCE_GET_CLASS((object), PB_TYPE_ITEM_RENDERER, PbItemRendererClass))

typedef struct _PbItemRenderer PbItemRenderer;
typedef struct _PbItemRendererClass PbItemRendererClass;
/** @endcond */

/**
 * Properties: "item" (PbItem), what is drawn; "follow-state" (boolean), carried only.
 *
 * A file's cell measures the icon size (64 or 148) in both directions, an album's 138 x 167,
 * both plus the padding of the cell.
 */
struct _PbItemRenderer {
  GtkCellRenderer parent; /**< base instance */
  PbItem *item;           /**< nullable; the renderer holds a reference */
};

/** Nothing beyond the parent's class. */
struct _PbItemRendererClass {
  GtkCellRendererClass parent_class; /**< base class */
};

/** @return the type "PbItemRenderer" */
PB_EXPORT GType pb_item_renderer_get_type(void);

/** @return (transfer floating) a renderer without an item */
PB_EXPORT GtkCellRenderer *pb_item_renderer_new(void);

/**
 * Notes that check marks are wanted. The view draws them; the renderer does not.
 *
 * @param renderer (transfer none) the renderer
 * @param show TRUE when check marks are wanted
 */
PB_EXPORT void pb_item_renderer_show_check_button(PbItemRenderer *renderer, gboolean show);

G_END_DECLS

#endif

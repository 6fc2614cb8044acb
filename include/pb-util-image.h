/** @file
 * Pictures at the size of the screen, frames, and text in cells.
 *
 * Main loop only. Every loader gives NULL rather than a broken picture; show a default then.
 */
#ifndef PB_UTIL_IMAGE_H
#define PB_UTIL_IMAGE_H

#include <gdk/gdk.h>
#include <glib.h>
#include <pb-export.h>

G_BEGIN_DECLS

/** Index of the frame that thumbnails are set into, for pb_get_cached_pixbuf(). */
#define PB_CACHED_PIXBUF_FRAME 0
/** Value of PbDrawTextInfo::rotate for text that is turned by 270 degrees. */
#define PB_TEXT_ROTATE_270 1

/** What pb_draw_text() draws, and where. */
typedef struct {
  GdkDrawable *drawable; /**< where to draw; nothing is drawn when NULL */
  const gchar *text;     /**< UTF-8; nothing is drawn when NULL */
  gint x;                /**< left edge of the cell, pixels */
  gint y;                /**< top edge of the cell, pixels */
  gint width;            /**< width of the cell, pixels; text has 30 pixels less */
  gint height;           /**< height of the cell, pixels */
  const GdkColor *color; /**< colour of the text */
  gint font_size;        /**< points */
  gint weight;           /**< pango weight: 400 normal, 700 bold */
  gfloat align_x;        /**< place of rotated text along the width */
  gfloat align_y;        /**< place of rotated text, in heights of a line */
  gint unused[2];        /**< not read */
  gint rotate;           /**< PB_TEXT_ROTATE_270, or anything else for upright text */
} PbDrawTextInfo;

/**
 * Loads a picture upright. One that is at least 480 pixels wide or 800 high is decoded straight
 * to the size that fits the box; a smaller one keeps its size.
 *
 * @param path (transfer none) file of the picture
 * @param width of the box, pixels
 * @param height of the box, pixels
 * @return (transfer full) (nullable) the picture; NULL when the file cannot be read
 */
PB_EXPORT GdkPixbuf *pb_get_pixbuf_at_size_with_adjustment(const gchar *path, gint width,
                                                           gint height);

/**
 * Makes a picture of the frame that is stored for a video, in a size for the screen as it is
 * turned now.
 *
 * @param path (transfer none) file of the video
 * @return (transfer full) (nullable) the picture; NULL when there is no frame
 */
PB_EXPORT GdkPixbuf *pb_get_video_thumnail_by_path(const gchar *path);

/**
 * Sets a thumbnail into a frame: 108 by 108 pixels at (19, 9), its aspect not kept.
 *
 * @param thumbnail (transfer none)
 * @param mask (transfer none) the frame, at least 127 by 117 pixels
 * @return (transfer full) (nullable) a new picture of the size of the frame; NULL when either
 *         is missing
 */
PB_EXPORT GdkPixbuf *pb_get_pixbuf_with_thumbnail_mask(GdkPixbuf *thumbnail, GdkPixbuf *mask);

/**
 * Gives a picture that stays loaded until pb_res_close().
 *
 * @param index PB_CACHED_PIXBUF_FRAME
 * @return (transfer none) (nullable) the picture; NULL for another index or when the bitmap
 *         cannot be loaded
 */
PB_EXPORT GdkPixbuf *pb_get_cached_pixbuf(gint index);

/**
 * Draws a text. Upright text is centred below a picture of 148 pixels, 118 pixels below the
 * top of the cell; text that does not fit ends in an ellipsis.
 *
 * @param info (transfer none) what to draw and where
 */
PB_EXPORT void pb_draw_text(PbDrawTextInfo *info);

G_END_DECLS

#endif

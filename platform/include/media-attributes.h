/** @file
 * Attributes of a media file: what its header tells, and the preview inside it.
 *
 * Any thread may call. Nothing of the file is decoded in this process.
 */
#ifndef MEDIA_ATTRIBUTES_H
#define MEDIA_ATTRIBUTES_H

#include <phone-api.h>

PHONE_BEGIN_DECLS

#define MM_ATTR_THUMBNAIL_WIDTH 4  /**< integer: width of the preview in pixels */
#define MM_ATTR_THUMBNAIL_HEIGHT 5 /**< integer: height of the preview in pixels */
#define MM_ATTR_THUMBNAIL_PIXELS 6 /**< data: RGB, 3 bytes a pixel, rows without padding */

/** The attributes of one file. */
typedef struct _MMAttrs MMAttrs;

/**
 * Reads the attributes of a file.
 *
 * @param path (transfer none) full path
 * @param attrs (transfer full) set to the attributes; free with MMAttrsFree(). NULL on failure
 * @return 0 on success, else an error code
 */
gint MMFileGetContentAttr(const gchar *path, MMAttrs **attrs);

/**
 * Reads an integer attribute.
 *
 * @param attrs (transfer none) the attributes
 * @param attribute MM_ATTR_THUMBNAIL_WIDTH or MM_ATTR_THUMBNAIL_HEIGHT
 * @param value set to its value; 0 on failure
 * @return 0 on success, else an error code
 */
gint MMAttrsGetInt(MMAttrs *attrs, gint attribute, gint *value);

/**
 * Reads a data attribute.
 *
 * @param attrs (transfer none) the attributes
 * @param attribute MM_ATTR_THUMBNAIL_PIXELS
 * @param data (transfer none) set to the bytes, which live as long as attrs; NULL when there are
 *        none
 * @return 0 on success, else an error code
 */
gint MMAttrsGetData(MMAttrs *attrs, gint attribute, void **data);

/**
 * Frees attributes, and the data that came from them.
 *
 * @param attrs (transfer full) (nullable) the attributes
 */
void MMAttrsFree(MMAttrs *attrs);

PHONE_END_DECLS

#endif

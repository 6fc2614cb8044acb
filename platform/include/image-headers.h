/** @file
 * The image header parser: what a picture's first bytes tell, without decoding it.
 *
 * Any thread may call. Files with sizes or codings that are not safe to decode are refused.
 */
#ifndef IMAGE_HEADERS_H
#define IMAGE_HEADERS_H

#include <phone-api.h>

PHONE_BEGIN_DECLS

/** What the EXIF header of a JPEG file says. */
typedef struct _WinkExifInfo {
  gint width;       /**< pixels, as stored; 0 when it does not say */
  gint height;      /**< pixels, as stored; 0 when it does not say */
  gint orientation; /**< 1 to 8; 0 when it does not say */
} WinkExifInfo;

/**
 * Reads the size of a picture.
 *
 * @param path (transfer none) full path
 * @param width set to the stored width in pixels; left alone on failure
 * @param height set to the stored height in pixels; left alone on failure
 * @return TRUE on success
 */
gboolean wink_parse_from_file(const gchar *path, gint *width, gint *height);

/**
 * Reads the EXIF header of a JPEG file.
 *
 * @param path (transfer none) full path
 * @return (transfer full) (nullable) free with wink_free_exifinfo(); NULL when there is none
 */
WinkExifInfo *wink_create_jpeg_exifinfo_from_file(const gchar *path);

/**
 * Frees EXIF information.
 *
 * @param info (transfer full) (nullable) the information
 */
void wink_free_exifinfo(WinkExifInfo *info);

PHONE_END_DECLS

#endif

/** @file
 * The library's helpers: settings and phone status, dialogs, files and names, pictures and text,
 * resource strings and bitmaps.
 */
#ifndef PB_UTIL_H
#define PB_UTIL_H

#include <pb-util-dialog.h>
#include <pb-util-file.h>
#include <pb-util-image.h>
#include <pb-util-resource.h>
#include <pb-util-settings.h>

#endif

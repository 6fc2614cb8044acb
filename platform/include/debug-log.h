/** @file
 * The phone's debug log.
 */
#ifndef DEBUG_LOG_H
#define DEBUG_LOG_H

#include <phone-api.h>

PHONE_BEGIN_DECLS

/**
 * Writes one line to the debug log. Any thread; the log serialises its writers.
 *
 * The host writes errors and warnings to GLib's structured log always, everything else only
 * with PHOTOBROWSER_DEBUG=1; a level that is not written costs one comparison.
 *
 * @param line the caller's line number
 * @param file (transfer none) the caller's module, such as "util/pb-util"
 * @param module the program's module id
 * @param level 0x1000000 error, 0x2000000 warning, 0x4000000 info
 * @param format printf format of the text
 * @return the length of the text, or 0 for a level that is not written
 */
int _debug_message(int line, const char *file, guint32 module, guint32 level, const char *format,
                   ...) G_GNUC_PRINTF(5, 6);

PHONE_END_DECLS

#endif

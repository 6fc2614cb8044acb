/** @file
 * Log lines of the library and of the application, and the running of shell commands.
 *
 * Any thread may log. Levels are those of debug-log.h.
 */
#ifndef PB_DEBUG_H
#define PB_DEBUG_H

#include <debug-log.h>
#include <glib.h>
#include <pb-export.h>

G_BEGIN_DECLS

#define PB_LOG_ERROR 0x1000000u   /**< failures of platform calls, invalid parameters */
#define PB_LOG_WARNING 0x2000000u /**< recoverable oddities */
#define PB_LOG_INFO 0x4000000u    /**< entry traces and key values */
#define PB_LOG_MODULE 0x53000000u /**< files all lines of the library under one module */

/**
 * Writes one log line that begins with the name of the function it stands in.
 *
 * @param level PB_LOG_ERROR, PB_LOG_WARNING or PB_LOG_INFO
 * @param format a string literal that ends in a newline
 */
#define PB_LOG(level, format, ...)                                          \
  _debug_message(__LINE__, __FILE__, PB_LOG_MODULE, (level), "[%s]" format, \
                 __FUNCTION__ __VA_OPT__(, ) __VA_ARGS__)

/**
 * Formats the application's message and hands "[file:function]  line message" to the log as
 * one finished line.
 *
 * @param level one of the three levels; any other is formatted and dropped
 * @param file (transfer none) the caller's source path
 * @param function (transfer none) the caller's function
 * @param line the caller's line
 * @param format printf format; the message is cut after 1023 bytes
 * @return the log's result, or the length of the line for a dropped level
 */
PB_EXPORT int pb_debug_message(guint32 level, const char *file, const char *function, int line,
                               const char *format, ...) G_GNUC_PRINTF(5, 6);

/**
 * Runs a command with "/bin/sh -c" and an empty environment, and waits for it.
 *
 * Blocks the calling thread until the command ends.
 *
 * @param command (transfer none) (nullable) the command
 * @return 1 for NULL, -1 when the command could not be started or waited for, else the raw
 *         wait status
 */
PB_EXPORT int pb_util_system(const char *command);

G_END_DECLS

#endif

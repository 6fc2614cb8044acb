/** @file
 * What makes a declaration part of the library's binary interface.
 */
#ifndef PB_EXPORT_H
#define PB_EXPORT_H

#if defined(__GNUC__)
#define PB_EXPORT __attribute__((visibility("default")))
#else
#define PB_EXPORT
#endif

#endif

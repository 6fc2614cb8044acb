/** @file
 * Linkage of the seam: C functions, exported by the library that implements them.
 */
#ifndef PHONE_API_H
#define PHONE_API_H

#include <glib.h>

/** Opens a block of seam declarations. */
#define PHONE_BEGIN_DECLS G_BEGIN_DECLS _Pragma("GCC visibility push(default)")
/** Closes a block of seam declarations. */
#define PHONE_END_DECLS _Pragma("GCC visibility pop") G_END_DECLS

#endif

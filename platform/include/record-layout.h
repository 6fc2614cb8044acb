/** @file
 * Checks of the records whose layout both sides of the seam rely on.
 */
#ifndef RECORD_LAYOUT_H
#define RECORD_LAYOUT_H

#include <assert.h>
#include <stddef.h>

/** Fails the build when a record does not have its agreed size in bytes. */
#define PHONE_RECORD_SIZE(type, size) \
  static_assert(sizeof(type) == (size), #type " must have " #size " bytes")

/** Fails the build when a field does not lie at its agreed offset with its agreed width. */
#define PHONE_RECORD_FIELD(type, field, offset, width)                                      \
  static_assert(offsetof(type, field) == (offset) && sizeof(((type *)0)->field) == (width), \
                #type "." #field " must have " #width " bytes at " #offset)

#endif

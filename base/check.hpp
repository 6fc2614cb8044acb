/// Preconditions of C entry points. GLib's own macros name a C++ function by its whole
/// signature and print the condition as the formatter left it; these name the bare function and
/// a fixed text.
#pragma once

#include <glib.h>

#define PB_CHECK_AS(text, condition, ...)                     \
  do {                                                        \
    if (!(condition)) [[unlikely]] {                          \
      g_return_if_fail_warning(G_LOG_DOMAIN, __func__, text); \
      return __VA_ARGS__;                                     \
    }                                                         \
  } while (false)

/// Returns the value (or nothing) with "<function>: assertion '<condition>' failed" as a GLib
/// critical warning when the condition does not hold.
#define PB_CHECK(condition, ...) PB_CHECK_AS(#condition, condition __VA_OPT__(, ) __VA_ARGS__)

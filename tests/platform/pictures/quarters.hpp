/// What is seen in decoded pictures.
#pragma once

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <string>

namespace test {

/// The letters of the colours in the four quarters, row by row: "RGBW" for a picture of
/// support::quartered_pixbuf() that stands upright. '?' is any other colour.
std::string quarters(const GdkPixbuf *pixbuf);

/// The quarters of that picture once it has been turned as an orientation of 1 to 8 says.
inline const char *const kTurnedQuarters[] = {"",     "RGBW", "GRWB", "WBGR", "BWRG",
                                              "RBGW", "BRWG", "WGBR", "GWRB"};

}  // namespace test

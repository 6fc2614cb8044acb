/// Dates that cameras and programs write into file names.
#pragma once

#include <glib.h>

#include <string_view>

namespace phone::media {

/// Finds a date, and a time of day behind it, in a file name: "IMG_20230102_101112.jpg",
/// "Screenshot from 2023-01-02 10-11-12.png", "IMG-20230102-WA0003.jpg", "1672650000000.jpg".
/// Texts that are no real date of 1990 to 2099 are passed over. The time is local; without one it
/// is noon, so that the day holds in most time zones.
/// @return Unix seconds; 0 when the name has no date
gint64 date_of_name(std::string_view name);

}  // namespace phone::media

/// The phone's settings, taken from the desktop.
#pragma once

#include <optional>
#include <string_view>

namespace phone::settings {

/// The form of dates (a value of SETTINGS_DATE_FORMAT) that a locale's strftime pattern such as
/// "%d.%m.%y" uses. Nothing for a pattern without a day, a month and a year.
std::optional<int> date_format(std::string_view pattern);

/// The form of dates that the user chose in GConf ("/apps/photobrowser/date_format", 0 to 3), else
/// that of the locale. Main loop only.
std::optional<int> date_format();

}  // namespace phone::settings

/// The phone's settings, taken from the desktop.
#pragma once

#include <optional>
#include <string_view>

namespace phone::settings {

/// The form of dates (a value of SETTINGS_DATE_FORMAT) that a locale's strftime pattern such as
/// "%d.%m.%y" uses. Nothing for a pattern without a day, a month and a year.
std::optional<int> date_format(std::string_view pattern);

}  // namespace phone::settings

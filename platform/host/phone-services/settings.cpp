#include "phone-services/settings.hpp"

#include <langinfo.h>

#include <cerrno>
#include <string>

#include "phone-settings.h"

namespace phone::settings {
namespace {

/// The order of the fields as letters: "dmy" for day, month, year.
std::string order_of(std::string_view pattern) {
  std::string order;
  const auto add = [&order](std::string_view letters) {
    for (const char letter : letters) {
      if (order.find(letter) == std::string::npos) order += letter;
    }
  };
  for (std::size_t i = 0; i + 1 < pattern.size(); ++i) {
    if (pattern[i] != '%') continue;
    ++i;
    while (i + 1 < pattern.size() &&
           std::string_view("EO-_0^").find(pattern[i]) != std::string_view::npos)
      ++i;
    switch (pattern[i]) {
      case 'd':
      case 'e':
        add("d");
        break;
      case 'm':
      case 'b':
      case 'B':
      case 'h':
        add("m");
        break;
      case 'y':
      case 'Y':
      case 'G':
        add("y");
        break;
      case 'D':
        add("mdy");
        break;
      case 'F':
        add("ymd");
        break;
      default:
        break;
    }
  }
  return order;
}

}  // namespace

std::optional<int> date_format(std::string_view pattern) {
  const std::string order = order_of(pattern);
  if (order == "dmy") return 0;
  if (order == "mdy") return 1;
  if (order == "ymd") return 2;
  if (order == "ydm") return 3;
  return std::nullopt;
}

}  // namespace phone::settings

gint settings_get_int(gint id, gint *value) {
  if (id != SETTINGS_DATE_FORMAT || value == nullptr) return EINVAL;
  const char *pattern = nl_langinfo(D_FMT);
  const auto format = phone::settings::date_format(pattern != nullptr ? pattern : "");
  if (!format) return ENOENT;
  *value = *format;
  return 0;
}

#include "phone-services/settings.hpp"

#include <gconf/gconf-client.h>
#include <langinfo.h>

#include <cerrno>
#include <string>

#include "glib-ptr.hpp"
#include "phone-services/bus.hpp"
#include "phone-settings.h"

namespace phone::settings {
namespace {

constexpr const char *kFolder = "/apps/photobrowser";
constexpr const char *kDateFormatKey = "/apps/photobrowser/date_format";
constexpr int kFirstDateFormat = 0;
constexpr int kLastDateFormat = 3;

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

/// GConf's client warns where it cannot reach its daemon, and a desktop without a bus is no reason
/// to warn. Once connected, it answers from its own memory and hears of changes.
pb::Ref<GConfClient> connected_client() {
  if (!bus::connect_now(G_BUS_TYPE_SESSION)) return nullptr;
  auto client = pb::Ref<GConfClient>::adopt(gconf_client_get_default());
  pb::ErrorPtr error;
  gconf_client_add_dir(client.get(), kFolder, GCONF_CLIENT_PRELOAD_ONELEVEL, pb::out(error));
  if (error == nullptr) return client;
  g_debug("no settings: %s", error->message);
  return nullptr;
}

/// The form that the user chose, if any.
std::optional<int> chosen_date_format() {
  static const auto *client = new pb::Ref<GConfClient>(connected_client());
  if (!*client) return std::nullopt;
  pb::ErrorPtr error;
  const std::unique_ptr<GConfValue, pb::FreeWith<gconf_value_free>> value(
      gconf_client_get(client->get(), kDateFormatKey, pb::out(error)));
  if (error != nullptr) g_debug("%s: %s", kDateFormatKey, error->message);
  if (value == nullptr || value->type != GCONF_VALUE_INT) return std::nullopt;
  const int format = gconf_value_get_int(value.get());
  if (format < kFirstDateFormat || format > kLastDateFormat) return std::nullopt;
  return format;
}

std::optional<int> date_format_of_locale() {
  const char *pattern = nl_langinfo(D_FMT);
  return date_format(pattern != nullptr ? pattern : "");
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

std::optional<int> date_format() {
  const auto chosen = chosen_date_format();
  return chosen ? chosen : date_format_of_locale();
}

}  // namespace phone::settings

gint settings_get_int(gint id, gint *value) {
  if (id != SETTINGS_DATE_FORMAT || value == nullptr) return EINVAL;
  const auto format = phone::settings::date_format();
  if (!format) return ENOENT;
  *value = *format;
  return 0;
}

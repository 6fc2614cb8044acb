#include "phone-services/status.hpp"

#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "phone-status.h"

namespace phone::status {
namespace {

/// Status lives as long as the process: nothing on a desktop keeps a phone's state for others.
struct Table {
  std::mutex mutex;
  std::map<std::string, int, std::less<>> values;  // guarded by mutex
};

Table &table() {
  static Table instance;
  return instance;
}

std::optional<int> get(const char *key) {
  const std::scoped_lock lock(table().mutex);
  const auto found = table().values.find(key);
  if (found == table().values.end()) return std::nullopt;
  return found->second;
}

bool holds_int(const GConfValue *value) {
  return value != nullptr && value->type == GCONF_VALUE_INT;
}

}  // namespace

void set(const char *key, int value) {
  const std::scoped_lock lock(table().mutex);
  table().values.insert_or_assign(key, value);
}

}  // namespace phone::status

gboolean phonestatus_get(const gchar *key, GConfValue *value) {
  if (key == nullptr || !phone::status::holds_int(value)) return FALSE;
  const std::optional<int> known = phone::status::get(key);
  if (!known) return FALSE;
  gconf_value_set_int(value, *known);
  return TRUE;
}

gboolean phonestatus_set(const gchar *key, GConfValue *value) {
  if (key == nullptr || !phone::status::holds_int(value)) return FALSE;
  phone::status::set(key, gconf_value_get_int(value));
  return TRUE;
}

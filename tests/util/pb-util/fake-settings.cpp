#include "util/pb-util/fake-settings.hpp"

#include <gconf/gconf-client.h>

namespace fake {

Settings &settings() {
  static auto *instance = new Settings;
  return *instance;
}

namespace {

void client_dropped(gpointer) { --settings().live_clients; }

/// Records an access and tells whether it fails.
bool fails(const std::string &call, GError **error) {
  settings().calls.push_back(call);
  if (settings().failure.empty()) return false;
  g_set_error_literal(error, GCONF_ERROR, GCONF_ERROR_FAILED, settings().failure.c_str());
  return true;
}

template <typename Value>
Value read(const gchar *key) {
  const auto found = settings().values.find(key);
  return found == settings().values.end() ? Value{} : std::get<Value>(found->second);
}

std::string text_of(const std::vector<int> &numbers) {
  std::string text;
  for (const int number : numbers) text += " " + std::to_string(number);
  return text;
}

}  // namespace
}  // namespace fake

extern "C" {

void __wrap_g_type_init();
GConfClient *__wrap_gconf_client_get_default();
gchar *__wrap_gconf_client_get_string(GConfClient *, const gchar *key, GError **error);
gint __wrap_gconf_client_get_int(GConfClient *, const gchar *key, GError **error);
GSList *__wrap_gconf_client_get_list(GConfClient *, const gchar *key, GConfValueType,
                                     GError **error);
gboolean __wrap_gconf_client_set_string(GConfClient *, const gchar *key, const gchar *value,
                                        GError **error);
gboolean __wrap_gconf_client_set_int(GConfClient *, const gchar *key, gint value, GError **error);
gboolean __wrap_gconf_client_set_list(GConfClient *, const gchar *key, GConfValueType, GSList *list,
                                      GError **error);

void __wrap_g_type_init() { fake::settings().calls.emplace_back("type_init"); }

GConfClient *__wrap_gconf_client_get_default() {
  fake::settings().calls.emplace_back("default_client");
  if (!fake::settings().has_client) return nullptr;
  ++fake::settings().live_clients;
  gpointer client = g_object_new(G_TYPE_OBJECT, nullptr);
  g_object_set_data_full(G_OBJECT(client), "counted", client, fake::client_dropped);
  return static_cast<GConfClient *>(client);
}

gchar *__wrap_gconf_client_get_string(GConfClient *, const gchar *key, GError **error) {
  if (fake::fails("get_string(" + std::string(key) + ")", error)) return nullptr;
  const auto value = fake::read<std::string>(key);
  return value.empty() ? nullptr : g_strdup(value.c_str());
}

gint __wrap_gconf_client_get_int(GConfClient *, const gchar *key, GError **error) {
  if (fake::fails("get_int(" + std::string(key) + ")", error)) return 0;
  return fake::read<int>(key);
}

GSList *__wrap_gconf_client_get_list(GConfClient *, const gchar *key, GConfValueType type,
                                     GError **error) {
  const std::string call = "get_list(" + std::string(key) + ", " + std::to_string(type) + ")";
  if (fake::fails(call, error)) return nullptr;
  GSList *list = nullptr;
  for (const int number : fake::read<std::vector<int>>(key)) {
    list = g_slist_append(list, GINT_TO_POINTER(number));
  }
  return list;
}

gboolean __wrap_gconf_client_set_string(GConfClient *, const gchar *key, const gchar *value,
                                        GError **error) {
  return !fake::fails("set_string(" + std::string(key) + ", " + value + ")", error);
}

gboolean __wrap_gconf_client_set_int(GConfClient *, const gchar *key, gint value, GError **error) {
  return !fake::fails("set_int(" + std::string(key) + ", " + std::to_string(value) + ")", error);
}

gboolean __wrap_gconf_client_set_list(GConfClient *, const gchar *key, GConfValueType type,
                                      GSList *list, GError **error) {
  std::vector<int> numbers;
  for (; list != nullptr; list = list->next) numbers.push_back(GPOINTER_TO_INT(list->data));
  return !fake::fails("set_list(" + std::string(key) + ", " + std::to_string(type) + "," +
                          fake::text_of(numbers) + ")",
                      error);
}

}  // extern "C"

#include <phone-settings.h>

#include "fakes/journal.hpp"

gint settings_get_int(gint id, gint *value) {
  fake::record("settings_get_int", id);
  return fake::platform().settings_get_int(id, value);
}

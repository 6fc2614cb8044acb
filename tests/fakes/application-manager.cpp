#include <application-manager.h>

#include "fakes/journal.hpp"

gint app_get_current_id(gint *app_id) {
  fake::record("app_get_current_id");
  return fake::platform().app_get_current_id(app_id);
}

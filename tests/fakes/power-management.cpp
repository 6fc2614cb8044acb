#include <power-management.h>

#include "fakes/journal.hpp"

gint pm_control(gint state, gint flag) {
  fake::record("pm_control", state, flag);
  return fake::platform().pm_control(state, flag);
}

gint pm_DVFS_control(gint level) {
  fake::record("pm_DVFS_control", level);
  return fake::platform().pm_DVFS_control(level);
}

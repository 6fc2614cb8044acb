// Services of a phone that a desktop does not have. Each answers its failure, and its callers go
// on without it.
#include <cerrno>

#include "power-management.h"
#include "telephony.h"

gint pm_control(gint /*state*/, gint /*flag*/) { return -1; }

gint pm_DVFS_control(gint /*level*/) { return -1; }

gint TelTapiSimGetCardType(gint * /*card_type*/) { return ENODEV; }

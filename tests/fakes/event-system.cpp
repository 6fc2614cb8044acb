#include <event-system.h>

#include "fakes/journal.hpp"

gint EvtSysEventPublish(gint reserved, gint event_id, gpointer data) {
  fake::record("EvtSysEventPublish", reserved, event_id);
  return fake::platform().EvtSysEventPublish(reserved, event_id, data);
}

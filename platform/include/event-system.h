/** @file
 * The event system: notices to the phone's other programs.
 */
#ifndef EVENT_SYSTEM_H
#define EVENT_SYSTEM_H

#include <phone-api.h>

PHONE_BEGIN_DECLS

/**
 * Publishes an event. Main loop only.
 *
 * @param reserved 0
 * @param event_id number of the event
 * @param data (transfer none) (nullable) what belongs to the event; not kept
 * @return 0 on success, else an error code
 */
gint EvtSysEventPublish(gint reserved, gint event_id, gpointer data);

PHONE_END_DECLS

#endif

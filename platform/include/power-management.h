/** @file
 * Power management: what may dim, sleep or slow down.
 */
#ifndef POWER_MANAGEMENT_H
#define POWER_MANAGEMENT_H

#include <phone-api.h>

PHONE_BEGIN_DECLS

/**
 * Allows or forbids a power state: 2 the screen dims, 3 the screen goes dark, 4 the machine sleeps.
 * What is forbidden stays so until it is allowed again or the program ends. Main loop only; does
 * not wait for anybody. A host that cannot forbid a state accepts the request all the same.
 *
 * @param state 2, 3 or 4
 * @param flag 1 to allow it, 0 to forbid it
 * @return 0 or more when it was accepted; negative on failure, and the state stays as it was
 */
gint pm_control(gint state, gint flag);

/**
 * Asks for a speed of the processor: 1 is the usual one, 3 the highest. Main loop only; does not
 * wait for anybody. A host without a choice of speeds accepts the request all the same.
 *
 * @param level 1 or 3
 * @return 0 or more when it was accepted; negative on failure
 */
gint pm_DVFS_control(gint level);

PHONE_END_DECLS

#endif

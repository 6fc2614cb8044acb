/** @file
 * Power management: what may dim, sleep or slow down.
 */
#ifndef POWER_MANAGEMENT_H
#define POWER_MANAGEMENT_H

#include <phone-api.h>

PHONE_BEGIN_DECLS

/**
 * Asks for a power state. Main loop only.
 *
 * @param state 2, 3 or 4
 * @param flag 1 or 0
 * @return 0 or more when it was accepted; negative on failure, and the state stays as it was
 */
gint pm_control(gint state, gint flag);

/**
 * Asks for a speed of the processor. Main loop only.
 *
 * @param level 1 or 3
 * @return 0 or more when it was accepted; negative on failure
 */
gint pm_DVFS_control(gint level);

PHONE_END_DECLS

#endif

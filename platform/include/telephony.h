/** @file
 * Telephony: the SIM card.
 */
#ifndef TELEPHONY_H
#define TELEPHONY_H

#include <phone-api.h>

PHONE_BEGIN_DECLS

/**
 * Tells what kind of SIM card the phone holds. Main loop only.
 *
 * @param card_type set to the kind; left alone on failure
 * @return 0 on success, else an error code
 */
gint TelTapiSimGetCardType(gint *card_type);

PHONE_END_DECLS

#endif

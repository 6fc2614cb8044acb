/** @file
 * Telephony: the SIM card.
 */
#ifndef TELEPHONY_H
#define TELEPHONY_H

#include <phone-api.h>

PHONE_BEGIN_DECLS

/**
 * Tells what kind of SIM card the phone holds. Main loop only; answers at once with what is known.
 * The first call begins to look and has no answer yet; the answer is there half a second later.
 *
 * @param card_type set to the kind: 0 unknown, 1 a card, 2 built into the phone; left alone on
 *        failure
 * @return 0 on success, EAGAIN while nothing is known yet, else an error code
 */
gint TelTapiSimGetCardType(gint *card_type);

PHONE_END_DECLS

#endif

/** @file
 * The library's client side of the web-album and sharing service.
 *
 * Main loop only.
 */
#ifndef MB_VESK_API_H
#define MB_VESK_API_H

#include <glib.h>
#include <pb-export.h>

G_BEGIN_DECLS

/** The registration with the service's media application; 0 until registered. */
PB_EXPORT extern guint32 veskMediaHandle;
/** The registration with the service's share application. Only the application writes it. */
PB_EXPORT extern guint32 veskShareHandle;

/**
 * Asks the service whether a user is signed in, and stores the answer for
 * mb_util_is_vesk_login_present().
 *
 * @param handle a registration, or 0
 * @return 1 signed in, 0 not
 */
PB_EXPORT gint mb_vesk_check_user_credential(guint32 handle);

G_END_DECLS

#endif

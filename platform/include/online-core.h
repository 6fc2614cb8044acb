/** @file
 * The web album service's client: log-in and registration.
 *
 * A function gives exactly 1 for success and an error code otherwise. Any thread may call; none
 * waits for the network.
 */
#ifndef ONLINE_CORE_H
#define ONLINE_CORE_H

#include <online-records.h>
#include <phone-api.h>

PHONE_BEGIN_DECLS

#define VESK_SYNCHRONIZE_ALL 2 /**< what vesk_svc_core_synchronize_details() brings up to date */

/**
 * Tells whether nobody is logged in.
 *
 * @param handle from vesk_svc_core_app_registration(), or 0
 * @return non-zero when logged out, 0 when logged in
 */
gint vesk_svc_core_is_logout(guint32 handle);

/**
 * Registers an application for replies.
 *
 * @param categories (transfer none) notification categories
 * @param count number of categories
 * @param callback gets the replies, on the service's thread
 * @param error set to a code on failure; -1 before the call
 * @param handle (nullable) set to the handle of the registration, never 0; left alone on failure
 * @return 1 on success
 */
gint vesk_svc_core_app_registration(const gint *categories, gint count, vesk_noti_cb callback,
                                    gint *error, guint32 *handle);

/**
 * Removes a callback from categories. It is not called any more once this returns, unless it is
 * itself the caller.
 *
 * @param handle handle of the registration
 * @param categories (transfer none) notification categories
 * @param count number of categories
 * @param callback what vesk_svc_core_app_registration() got
 * @return 1 on success
 */
gint vesk_svc_core_deregister_noti_callback(guint32 handle, const gint *categories, gint count,
                                            vesk_noti_cb callback);

/**
 * Ends a registration. Replies to its requests are dropped; their user data is left alone, the
 * caller frees it.
 *
 * @param handle handle of the registration
 * @return 1 on success
 */
gint vesk_svc_core_deregister_app(guint32 handle);

/**
 * Asks for the mirror to be brought up to date.
 *
 * @param handle handle of the registration
 * @param what VESK_SYNCHRONIZE_ALL
 * @return 1 when it was queued
 */
gint vesk_svc_core_synchronize_details(guint32 handle, gint what);

PHONE_END_DECLS

#endif

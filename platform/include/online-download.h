/** @file
 * The web album service's client: downloads over HTTP.
 *
 * Any thread may call.
 */
#ifndef ONLINE_DOWNLOAD_H
#define ONLINE_DOWNLOAD_H

#include <online-records.h>
#include <phone-api.h>

PHONE_BEGIN_DECLS

/**
 * Makes the utility ready. Safe to call again.
 *
 * @param reserved 0
 * @return 1 on success
 */
gint vesk_svc_download_util_init(gint reserved);

/** @return a request id that no other request of this process has had, more than 0 */
gint vesk_svc_download_util_generate_request_id(void);

/**
 * Starts a download. The callback is told its end, later and on another thread; a call that does
 * not return 1 tells it nothing.
 *
 * @param url (transfer none) http or https; copied
 * @param request_id from vesk_svc_download_util_generate_request_id()
 * @param callback told the end
 * @param user_data (transfer none) (nullable) handed to the callback
 * @param path (transfer none) where the body goes; folders that are missing are made; copied.
 *        After a failure there may be part of a file.
 * @return 1 when it was queued
 */
gint vesk_svc_download_util_download_url(const gchar *url, gint request_id,
                                         vesk_download_cb callback, gpointer user_data,
                                         const gchar *path);

/**
 * Gives a request up and releases what it holds. Never waits for a callback, so a callback may
 * give up its own request. One that is running meanwhile may still come.
 *
 * @param request_id the request; one that has ended is released, an unknown one is ignored
 * @return 1 when there was such a request
 */
gint vesk_svc_download_util_abort_request(gint request_id);

PHONE_END_DECLS

#endif

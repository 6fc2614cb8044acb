/** @file
 * The application manager: which application this process is.
 */
#ifndef APPLICATION_MANAGER_H
#define APPLICATION_MANAGER_H

#include <phone-api.h>

PHONE_BEGIN_DECLS

/** Id of the gallery. */
#define APP_ID_GALLERY 54

/**
 * Gives the id of the running application. Any thread.
 *
 * @param app_id set to the id; left alone on failure
 * @return 0 on success, else an error code
 */
gint app_get_current_id(gint *app_id);

PHONE_END_DECLS

#endif

/** @file
 * The settings of the phone.
 */
#ifndef PHONE_SETTINGS_H
#define PHONE_SETTINGS_H

#include <phone-api.h>

PHONE_BEGIN_DECLS

/** Setting: form of dates; 0 day.month.year, 1 month.day.year, 2 year.month.day, 3 year.day.month
 */
#define SETTINGS_DATE_FORMAT 35

/**
 * Reads a setting. Main loop only.
 *
 * @param id number of the setting
 * @param value set to its value; left alone on failure
 * @return 0 on success, else an error code
 */
gint settings_get_int(gint id, gint *value);

PHONE_END_DECLS

#endif

/** @file
 * Phone status: values that the phone's programs share.
 */
#ifndef PHONE_STATUS_H
#define PHONE_STATUS_H

#include <gconf/gconf-value.h>
#include <phone-api.h>

PHONE_BEGIN_DECLS

/**
 * Reads a status value. Main loop only.
 *
 * @param key (transfer none) its name
 * @param value (transfer none) a value of the wanted type, made and freed by the caller; filled
 * @return TRUE on success; FALSE for an unknown key, and value stays as it was
 */
gboolean phonestatus_get(const gchar *key, GConfValue *value);

/**
 * Writes a status value. Main loop only.
 *
 * @param key (transfer none) its name
 * @param value (transfer none) the value; copied
 * @return TRUE on success
 */
gboolean phonestatus_set(const gchar *key, GConfValue *value);

PHONE_END_DECLS

#endif

/// The phone's status values, for the services of the host that report one.
#pragma once

namespace phone::status {

/// Sets a status value that phonestatus_get() then answers. Any thread.
void set(const char *key, int value);

}  // namespace phone::status

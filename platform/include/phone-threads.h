/** @file
 * The lock that widgets are used under.
 */
#ifndef PHONE_THREADS_H
#define PHONE_THREADS_H

#include <phone-api.h>

PHONE_BEGIN_DECLS

/**
 * Makes the GDK lock know its owner, and initialises GDK's threads. An unlock by a thread that
 * does not hold the lock, and a lock by the thread that holds it already, give a GLib warning and
 * do nothing.
 *
 * Call it once, before gtk_init(), from the thread that will run the main loop. Further calls do
 * nothing.
 */
void phone_threads_init(void);

PHONE_END_DECLS

#endif

/// The two message buses, for services that do without them where there are none.
#pragma once

#include <gio/gio.h>

#include <functional>

#include "glib-ptr.hpp"

namespace phone::bus {

/// Whether a session bus is there to be connected to. GIO starts one of its own where it finds
/// none, which nobody listens to.
bool session_is_running();

/// Connects and waits for it, which takes a round trip to the bus. Any thread.
/// @return NULL where there is no bus
pb::Ref<GDBusConnection> connect_now(GBusType type);

/// Connects without waiting. Main loop only.
/// @param connected called later on the main loop, with NULL where there is no bus
void connect(GBusType type, std::function<void(GDBusConnection *)> connected);

}  // namespace phone::bus

#include "event-system.h"

#include "phone-services/bus.hpp"

namespace {

constexpr const char *kPath = "/com/velmora/photobrowser/Events";
constexpr const char *kInterface = "com.velmora.photobrowser.Events";
constexpr const char *kSignal = "Published";

void emit(GDBusConnection *bus, gint event_id) {
  pb::ErrorPtr error;
  if (!g_dbus_connection_emit_signal(bus, nullptr, kPath, kInterface, kSignal,
                                     g_variant_new("(i)", event_id), pb::out(error))) {
    g_debug("event %d was not sent: %s", event_id, error->message);
  }
}

}  // namespace

gint EvtSysEventPublish(gint /*reserved*/, gint event_id, gpointer /*data*/) {
  // What belongs to an event is memory of this process, so only its number goes out. Connecting
  // takes a round trip to the bus, so the caller does not wait for it.
  phone::bus::connect(G_BUS_TYPE_SESSION, [event_id](GDBusConnection *bus) {
    if (bus != nullptr) emit(bus, event_id);
  });
  return 0;
}

#include <gio/gio.h>

#include "event-system.h"
#include "glib-ptr.hpp"

namespace {

constexpr const char *kPath = "/com/velmora/photobrowser/Events";
constexpr const char *kInterface = "com.velmora.photobrowser.Events";
constexpr const char *kSignal = "Published";

/// GIO starts a bus of its own where it finds none; events are for listeners, and a bus that was
/// just started has none.
bool bus_is_running() {
  if (g_getenv("DBUS_SESSION_BUS_ADDRESS") != nullptr) return true;
  const pb::StringPtr socket(g_build_filename(g_get_user_runtime_dir(), "bus", nullptr));
  return g_file_test(socket.get(), G_FILE_TEST_EXISTS);
}

void emit_when_connected(GObject * /*source*/, GAsyncResult *result, gpointer data) {
  pb::ErrorPtr error;
  const auto bus = pb::Ref<GDBusConnection>::adopt(g_bus_get_finish(result, pb::out(error)));
  if (!bus) {
    g_debug("event %d has no bus: %s", GPOINTER_TO_INT(data), error->message);
    return;
  }
  if (!g_dbus_connection_emit_signal(bus.get(), nullptr, kPath, kInterface, kSignal,
                                     g_variant_new("(i)", GPOINTER_TO_INT(data)), pb::out(error))) {
    g_debug("event %d was not sent: %s", GPOINTER_TO_INT(data), error->message);
  }
}

}  // namespace

gint EvtSysEventPublish(gint /*reserved*/, gint event_id, gpointer /*data*/) {
  // What belongs to an event is memory of this process, so only its number goes out. Connecting
  // takes a round trip to the bus, so the caller does not wait for it.
  if (bus_is_running()) {
    g_bus_get(G_BUS_TYPE_SESSION, nullptr, emit_when_connected, GINT_TO_POINTER(event_id));
  }
  return 0;
}

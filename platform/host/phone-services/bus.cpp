#include "phone-services/bus.hpp"

#include <array>
#include <memory>
#include <mutex>
#include <utility>

namespace phone::bus {
namespace {

bool may_connect(GBusType type) { return type != G_BUS_TYPE_SESSION || session_is_running(); }

/// GIO closes a connection that nobody has, and daemons then give back what was asked for over
/// it, so the connections are kept. Never destroyed: workers use it to the end.
struct Kept {
  std::mutex mutex;
  std::array<pb::Ref<GDBusConnection>, 2> connections;  // guarded by mutex: system, session
};

void keep(GDBusConnection *connection, GBusType type) {
  static auto *kept = new Kept;
  const std::scoped_lock lock(kept->mutex);
  auto &place = kept->connections[type == G_BUS_TYPE_SYSTEM ? 0 : 1];
  // GIO makes another one only when nobody has the broken one.
  place = g_dbus_connection_is_closed(connection) ? nullptr
                                                  : pb::Ref<GDBusConnection>::share(connection);
}

pb::Ref<GDBusConnection> taken_over(GDBusConnection *connection, GBusType type,
                                    const GError *error) {
  if (connection == nullptr) {
    g_debug("no bus: %s", error->message);
    return nullptr;
  }
  // GIO would end the program when the connection breaks. Nothing here is worth that.
  g_dbus_connection_set_exit_on_close(connection, FALSE);
  keep(connection, type);
  return pb::Ref<GDBusConnection>::adopt(connection);
}

struct Connecting {
  GBusType type;
  std::function<void(GDBusConnection *)> connected;
};

void pass_on(GObject * /*source*/, GAsyncResult *result, gpointer data) {
  const std::unique_ptr<Connecting> connecting(static_cast<Connecting *>(data));
  pb::ErrorPtr error;
  GDBusConnection *connection = g_bus_get_finish(result, pb::out(error));
  connecting->connected(taken_over(connection, connecting->type, error.get()).get());
}

gboolean pass_on_nothing(gpointer data) {
  const std::unique_ptr<Connecting> connecting(static_cast<Connecting *>(data));
  connecting->connected(nullptr);
  return G_SOURCE_REMOVE;
}

}  // namespace

bool session_is_running() {
  const char *address = g_getenv("DBUS_SESSION_BUS_ADDRESS");
  if (address != nullptr) return g_dbus_is_supported_address(address, nullptr);
  const pb::StringPtr socket(g_build_filename(g_get_user_runtime_dir(), "bus", nullptr));
  return g_file_test(socket.get(), G_FILE_TEST_EXISTS);
}

pb::Ref<GDBusConnection> connect_now(GBusType type) {
  if (!may_connect(type)) return nullptr;
  pb::ErrorPtr error;
  GDBusConnection *connection = g_bus_get_sync(type, nullptr, pb::out(error));
  return taken_over(connection, type, error.get());
}

void connect(GBusType type, std::function<void(GDBusConnection *)> connected) {
  auto connecting = std::make_unique<Connecting>(Connecting{type, std::move(connected)});
  if (may_connect(type)) {
    g_bus_get(type, nullptr, pass_on, connecting.release());
  } else {
    g_idle_add(pass_on_nothing, connecting.release());
  }
}

}  // namespace phone::bus

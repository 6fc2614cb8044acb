#include "event-system.h"

#include <gio/gio.h>

#include <memory>

#include "private-bus.hpp"

using test::PrivateBus;
using test::wait_for;

namespace {

/// Hears the events of a bus over a connection of its own.
class Listener {
 public:
  explicit Listener(const PrivateBus &bus) {
    constexpr auto kFlags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    connection_ = pb::Ref<GDBusConnection>::adopt(
        g_dbus_connection_new_for_address_sync(bus.address(), kFlags, nullptr, nullptr, nullptr));
    g_dbus_connection_signal_subscribe(connection_.get(), nullptr,
                                       "com.velmora.photobrowser.Events", "Published",
                                       "/com/velmora/photobrowser/Events", nullptr,
                                       G_DBUS_SIGNAL_FLAGS_NONE, remember, this, nullptr);
  }

  gint heard = 0;

 private:
  static void remember(GDBusConnection * /*bus*/, const gchar * /*sender*/, const gchar * /*path*/,
                       const gchar * /*interface*/, const gchar * /*signal*/, GVariant *parameters,
                       gpointer self) {
    g_variant_get(parameters, "(i)", &static_cast<Listener *>(self)->heard);
  }

  pb::Ref<GDBusConnection> connection_;
};

}  // namespace

TEST(EventSystem, SendsTheNumberOfTheEvent) {
  const PrivateBus bus;
  const Listener listener(bus);

  EXPECT_EQ(EvtSysEventPublish(0, 1234, nullptr), 0);

  EXPECT_TRUE(wait_for([&listener] { return listener.heard == 1234; })) << listener.heard;
}

TEST(EventSystem, OutlivesItsBus) {
  auto bus = std::make_unique<PrivateBus>();
  {
    const Listener listener(*bus);
    EvtSysEventPublish(0, 1, nullptr);
    wait_for([&listener] { return listener.heard == 1; });
  }

  bus.reset();
  const gint64 end = g_get_monotonic_time() + 50'000;
  wait_for([end] { return g_get_monotonic_time() > end; });

  EXPECT_EQ(EvtSysEventPublish(0, 2, nullptr), 0);
}

TEST(EventSystem, IsContentWithoutABus) {
  g_unsetenv("DBUS_SESSION_BUS_ADDRESS");

  EXPECT_EQ(EvtSysEventPublish(0, 1, nullptr), 0);

  const gint64 end = g_get_monotonic_time() + 20'000;
  wait_for([end] { return g_get_monotonic_time() > end; });
}

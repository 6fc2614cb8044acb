#include <gio/gio.h>
#include <gtest/gtest.h>

#include "event-system.h"
#include "glib-ptr.hpp"

namespace {

void remember(GDBusConnection * /*bus*/, const gchar * /*sender*/, const gchar * /*path*/,
              const gchar * /*interface*/, const gchar * /*signal*/, GVariant *parameters,
              gpointer data) {
  g_variant_get(parameters, "(i)", static_cast<gint *>(data));
}

}  // namespace

TEST(EventSystemWithABus, SendsTheNumberOfTheEvent) {
  const auto bus =
      pb::Ref<GDBusConnection>::adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  ASSERT_TRUE(bus);
  gint heard = 0;
  const guint subscription =
      g_dbus_connection_signal_subscribe(bus.get(), nullptr, "com.velmora.photobrowser.Events",
                                         "Published", "/com/velmora/photobrowser/Events", nullptr,
                                         G_DBUS_SIGNAL_FLAGS_NONE, remember, &heard, nullptr);

  EXPECT_EQ(EvtSysEventPublish(0, 1234, nullptr), 0);

  const gint64 end = g_get_monotonic_time() + 5 * G_USEC_PER_SEC;
  while (heard == 0 && g_get_monotonic_time() < end) g_main_context_iteration(nullptr, FALSE);
  EXPECT_EQ(heard, 1234);
  g_dbus_connection_signal_unsubscribe(bus.get(), subscription);
}

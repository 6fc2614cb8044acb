#include "private-bus.hpp"

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <utility>

namespace test {
namespace {

/// In the new process: a test that crashes leaves no bus behind.
void end_with_the_test(gpointer /*data*/) { prctl(PR_SET_PDEATHSIG, SIGTERM); }

}  // namespace

bool wait_for(const std::function<bool()> &done) {
  const gint64 end = g_get_monotonic_time() + 5 * G_USEC_PER_SEC;
  while (!done()) {
    if (g_get_monotonic_time() > end) return false;
    if (g_main_context_iteration(nullptr, FALSE) == FALSE) g_usleep(500);
  }
  return true;
}

PrivateBus::PrivateBus(const char *service_folder) {
  const std::string services = service_folder == nullptr
                                   ? ""
                                   : "<servicedir>" + std::string(service_folder) + "</servicedir>";
  const std::string settings =
      "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen>" + services +
      "<policy context='default'><allow send_destination='*' eavesdrop='true'/>"
      "<allow eavesdrop='true'/><allow own='*'/></policy>"
      "</busconfig>";
  const pb::StringPtr file(g_build_filename(g_get_user_config_dir(), "bus.conf", nullptr));
  g_file_set_contents(file.get(), settings.c_str(), -1, nullptr);
  const std::string option = std::string("--config-file=") + file.get();
  const std::array<const char *, 5> command{"dbus-daemon", option.c_str(), "--nofork",
                                            "--print-address", nullptr};
  gint output = -1;
  pb::ErrorPtr error;
  if (!g_spawn_async_with_pipes(
          nullptr, const_cast<gchar **>(command.data()), nullptr,
          static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD |
                                   G_SPAWN_STDERR_TO_DEV_NULL),
          end_with_the_test, nullptr, &daemon_, nullptr, &output, nullptr, pb::out(error))) {
    ADD_FAILURE() << error->message;
    return;
  }
  for (char letter = 0; read(output, &letter, 1) == 1 && letter != '\n';) address_ += letter;
  close(output);
  EXPECT_NE(address_, "") << "the bus did not start";
  g_setenv("DBUS_SESSION_BUS_ADDRESS", address(), TRUE);
  g_setenv("DBUS_SYSTEM_BUS_ADDRESS", address(), TRUE);
}

PrivateBus::~PrivateBus() {
  if (daemon_ == 0) return;
  kill(daemon_, SIGTERM);
  waitpid(daemon_, nullptr, 0);
}

Daemon::Daemon(const PrivateBus &bus, const char *name) {
  pb::ErrorPtr error;
  constexpr auto kFlags =
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  connection_ = pb::Ref<GDBusConnection>::adopt(g_dbus_connection_new_for_address_sync(
      bus.address(), kFlags, nullptr, nullptr, pb::out(error)));
  if (!connection_) {
    ADD_FAILURE() << error->message;
    return;
  }
  GVariant *reply = g_dbus_connection_call_sync(
      connection_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
      "RequestName", g_variant_new("(su)", name, 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
      pb::out(error));
  if (reply == nullptr) {
    ADD_FAILURE() << error->message;
    return;
  }
  g_variant_unref(reply);
}

Daemon::~Daemon() {
  if (connection_) g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
  // Calls that have been read already come from idle sources of the main loop.
  while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
  }
}

void Daemon::serve(const char *path, const std::string &interface, const std::string &methods,
                   Handler handler) {
  const std::string xml =
      "<node><interface name='" + interface + "'>" + methods + "</interface></node>";
  pb::ErrorPtr error;
  GDBusNodeInfo *info = g_dbus_node_info_new_for_xml(xml.c_str(), pb::out(error));
  if (info == nullptr) {
    ADD_FAILURE() << error->message;
    return;
  }
  static constexpr GDBusInterfaceVTable kTable{called, nullptr, nullptr, {}};
  objects_.push_back(std::make_unique<Object>(Object{this, std::move(handler)}));
  const guint id =
      g_dbus_connection_register_object(connection_.get(), path, info->interfaces[0], &kTable,
                                        objects_.back().get(), nullptr, pb::out(error));
  g_dbus_node_info_unref(info);
  if (id == 0) ADD_FAILURE() << error->message;
}

void Daemon::called(GDBusConnection * /*connection*/, const gchar * /*sender*/,
                    const gchar * /*path*/, const gchar * /*interface*/, const gchar *method,
                    GVariant *arguments, GDBusMethodInvocation *call, gpointer object) {
  const auto *served = static_cast<Object *>(object);
  const pb::StringPtr text(g_variant_print(arguments, FALSE));
  served->daemon->calls.push_back(std::string(method) + text.get());
  served->handler(method, call);
}

}  // namespace test

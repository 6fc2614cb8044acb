#include "telephony.h"

#include <cerrno>

#include "private-bus.hpp"

using test::Daemon;
using test::PrivateBus;
using test::wait_for;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Lt;

namespace {

constexpr const char *kObjects =
    "<method name='GetManagedObjects'><arg type='a{oa{sa{sv}}}' direction='out'/></method>";
constexpr const char *kProperties =
    "<method name='Get'><arg type='s' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='v' direction='out'/></method>";
constexpr const char *kModems =
    "<method name='GetModems'><arg type='a(oa{sv})' direction='out'/></method>";
constexpr const char *kSimProperties =
    "<method name='GetProperties'><arg type='a{sv}' direction='out'/></method>";

Daemon::Handler text(const char *reply) {
  return [reply](const std::string &, GDBusMethodInvocation *call) {
    g_dbus_method_invocation_return_value(call,
                                          g_variant_new_parsed(reply));  // NOLINT(*-security)
  };
}

class Telephony : public testing::Test {
 protected:
  /// Asks until the worker has an answer.
  static gint answer(gint *type) {
    gint error = EAGAIN;
    wait_for([&error, type] { return (error = TelTapiSimGetCardType(type)) != EAGAIN; });
    return error;
  }
  static void serve_modem_manager(Daemon &daemon, const char *objects) {
    daemon.serve("/org/freedesktop/ModemManager1", "org.freedesktop.DBus.ObjectManager", kObjects,
                 text(objects));
  }
  static void serve_ofono(Daemon &daemon, const char *properties) {
    daemon.serve("/", "org.ofono.Manager", kModems,
                 text("(@a(oa{sv}) [('/ril_0', {'Online': <true>})],)"));
    daemon.serve("/ril_0", "org.ofono.SimManager", kSimProperties, text(properties));
  }

  PrivateBus bus_;
};

constexpr const char *kModemWithCard =
    "(@a{oa{sa{sv}}} {'/org/freedesktop/ModemManager1/Modem/0':"
    " {'org.freedesktop.ModemManager1.Modem':"
    "  {'Sim': <objectpath '/org/freedesktop/ModemManager1/SIM/0'>}}},)";
constexpr const char *kModemWithoutCard =
    "(@a{oa{sa{sv}}} {'/org/freedesktop/ModemManager1/Modem/0':"
    " {'org.freedesktop.ModemManager1.Modem': {'Sim': <objectpath '/'>}}},)";

}  // namespace

TEST_F(Telephony, DoesNotKnowTheCardAtOnce) {
  gint type = 77;

  EXPECT_EQ(TelTapiSimGetCardType(&type), EAGAIN);

  EXPECT_EQ(type, 77);
}

TEST_F(Telephony, FindsTheCardOfModemManager) {
  Daemon daemon(bus_, "org.freedesktop.ModemManager1");
  serve_modem_manager(daemon, kModemWithCard);
  gint type = 77;

  EXPECT_EQ(answer(&type), 0);

  EXPECT_EQ(type, 0);
}

TEST_F(Telephony, TellsTheTypeOfTheCard) {
  Daemon daemon(bus_, "org.freedesktop.ModemManager1");
  serve_modem_manager(daemon, kModemWithCard);
  daemon.serve("/org/freedesktop/ModemManager1/SIM/0", "org.freedesktop.DBus.Properties",
               kProperties, text("(<uint32 2>,)"));
  gint type = 77;

  EXPECT_EQ(answer(&type), 0);

  EXPECT_EQ(type, 2);
}

TEST_F(Telephony, FindsNoCardInAnEmptyModem) {
  Daemon daemon(bus_, "org.freedesktop.ModemManager1");
  serve_modem_manager(daemon, kModemWithoutCard);
  gint type = 77;

  EXPECT_EQ(answer(&type), ENODEV);

  EXPECT_EQ(type, 77);
}

TEST_F(Telephony, FindsTheCardOfOfono) {
  Daemon daemon(bus_, "org.ofono");
  serve_ofono(daemon, "(@a{sv} {'Present': <true>},)");
  gint type = 77;

  EXPECT_EQ(answer(&type), 0);

  EXPECT_EQ(type, 0);
}

TEST_F(Telephony, FindsNoCardWhereOfonoHasNone) {
  Daemon daemon(bus_, "org.ofono");
  serve_ofono(daemon, "(@a{sv} {'Present': <false>},)");
  gint type = 77;

  EXPECT_EQ(answer(&type), ENODEV);
}

TEST_F(Telephony, FindsNoCardWithoutADaemon) {
  gint type = 77;

  EXPECT_EQ(answer(&type), ENODEV);
}

TEST_F(Telephony, IsNotKeptWaitingByASilentDaemon) {
  Daemon daemon(bus_, "org.freedesktop.ModemManager1");
  std::vector<GDBusMethodInvocation *> unanswered;
  daemon.serve("/org/freedesktop/ModemManager1", "org.freedesktop.DBus.ObjectManager", kObjects,
               [&unanswered](const std::string &, GDBusMethodInvocation *call) {
                 unanswered.push_back(call);
               });
  gint type = 77;
  const gint64 start = g_get_monotonic_time();
  TelTapiSimGetCardType(&type);
  EXPECT_THAT(g_get_monotonic_time() - start, Lt(100'000));

  EXPECT_EQ(answer(&type), ENODEV);

  EXPECT_THAT(g_get_monotonic_time() - start, Lt(2'000'000));
  for (GDBusMethodInvocation *call : unanswered) g_object_unref(call);
}

TEST_F(Telephony, AsksOnceForManyCallers) {
  Daemon daemon(bus_, "org.freedesktop.ModemManager1");
  serve_modem_manager(daemon, kModemWithCard);
  gint type = 0;
  answer(&type);

  for (int i = 0; i < 100; ++i) EXPECT_EQ(TelTapiSimGetCardType(&type), 0);

  EXPECT_THAT(daemon.calls, ElementsAre("GetManagedObjects()"));
}

TEST_F(Telephony, BearsAnAnswerOfAnotherForm) {
  Daemon daemon(bus_, "org.freedesktop.ModemManager1");
  daemon.serve("/org/freedesktop/ModemManager1", "org.freedesktop.DBus.ObjectManager",
               "<method name='GetManagedObjects'><arg type='s' direction='out'/></method>",
               text("('nothing',)"));
  gint type = 77;

  EXPECT_EQ(answer(&type), ENODEV);
}

TEST(TelephonyWithoutABus, HasNoCard) {
  g_setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent", TRUE);
  gint type = 77;
  gint error = EAGAIN;

  wait_for([&] { return (error = TelTapiSimGetCardType(&type)) != EAGAIN; });

  EXPECT_EQ(error, ENODEV);
  EXPECT_EQ(type, 77);
}

TEST(TelephonyArguments, RefuseNothing) { EXPECT_EQ(TelTapiSimGetCardType(nullptr), EINVAL); }

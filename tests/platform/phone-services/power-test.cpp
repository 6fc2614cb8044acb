#include "power-management.h"

#include <gio/gunixfdlist.h>
#include <glib-unix.h>
#include <poll.h>
#include <unistd.h>

#include <array>

#include "private-bus.hpp"
#include "support/glib-test.hpp"

using test::Daemon;
using test::PrivateBus;
using test::wait_for;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char *kSaverMethods =
    "<method name='Inhibit'><arg type='s' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='u' direction='out'/></method>"
    "<method name='UnInhibit'><arg type='u' direction='in'/></method>";
constexpr const char *kProfileMethods =
    "<method name='HoldProfile'><arg type='s' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='s' direction='in'/><arg type='u' direction='out'/></method>"
    "<method name='ReleaseProfile'><arg type='u' direction='in'/></method>";
constexpr const char *kLoginMethods =
    "<method name='Inhibit'><arg type='s' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='s' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='h' direction='out'/></method>";

constexpr const char *kReason = "'Pictures are being shown or transferred'";

std::string inhibited() { return std::string("Inhibit('photobrowser', ") + kReason + ")"; }

/// Settles what is under way; for tests that expect nothing further.
void settle() {
  const gint64 end = g_get_monotonic_time() + 30'000;
  wait_for([end] { return g_get_monotonic_time() > end; });
}

/// What was written to the log, but for lines that only a developer asks for.
std::vector<std::string> logged() {
  std::vector<std::string> lines = support::take_glib_warnings();
  for (auto &line : support::take_structured_lines()) {
    if (line.level != G_LOG_LEVEL_DEBUG) lines.push_back(line.fields["MESSAGE"]);
  }
  return lines;
}

/// Answers with a cookie, and with nothing to what gives it back.
Daemon::Handler cookie(guint number) {
  return [number](const std::string &method, GDBusMethodInvocation *call) {
    const bool takes = method == "Inhibit" || method == "HoldProfile";
    g_dbus_method_invocation_return_value(call, takes ? g_variant_new("(u)", number) : nullptr);
  };
}

class Power : public testing::Test {
 protected:
  void serve_screen_saver(Daemon::Handler handler = cookie(41)) {
    saver_.serve("/org/freedesktop/ScreenSaver", "org.freedesktop.ScreenSaver", kSaverMethods,
                 std::move(handler));
  }

  PrivateBus bus_;
  Daemon saver_{bus_, "org.freedesktop.ScreenSaver"};
};

/// Plays logind: keeps one end of a pipe and gives the other away.
class PowerSleep : public testing::Test {
 protected:
  PowerSleep() {
    login_.serve("/org/freedesktop/login1", "org.freedesktop.login1.Manager", kLoginMethods,
                 [this](const std::string &, GDBusMethodInvocation *call) {
                   std::array<int, 2> ends{-1, -1};
                   ASSERT_TRUE(g_unix_open_pipe(ends.data(), FD_CLOEXEC, nullptr));
                   kept_ = ends[0];
                   GUnixFDList *list = g_unix_fd_list_new();
                   g_unix_fd_list_append(list, ends[1], nullptr);
                   close(ends[1]);
                   g_dbus_method_invocation_return_value_with_unix_fd_list(
                       call, g_variant_new("(h)", 0), list);
                   g_object_unref(list);
                 });
  }
  ~PowerSleep() override {
    if (kept_ != -1) close(kept_);
  }

  /// Whether the end that was given away is open nowhere.
  [[nodiscard]] bool given_back() const {
    pollfd watched{kept_, POLLIN, 0};
    return poll(&watched, 1, 0) == 1 && (watched.revents & POLLHUP) != 0;
  }
  [[nodiscard]] bool held() const { return kept_ != -1 && !given_back(); }

  PrivateBus bus_;
  Daemon login_{bus_, "org.freedesktop.login1"};
  int kept_ = -1;
};

class PowerSpeed : public testing::Test {
 protected:
  PrivateBus bus_;
};

}  // namespace

TEST_F(Power, KeepsTheScreenOnWhileDimmingIsForbidden) {
  serve_screen_saver();

  EXPECT_EQ(pm_control(2, 0), 0);

  wait_for([this] { return !saver_.calls.empty(); });
  EXPECT_THAT(saver_.calls, ElementsAre(inhibited()));
}

TEST_F(Power, GivesTheScreenBackByItsCookie) {
  serve_screen_saver();
  pm_control(3, 0);
  wait_for([this] { return !saver_.calls.empty(); });
  settle();

  EXPECT_EQ(pm_control(3, 1), 0);

  wait_for([this] { return saver_.calls.size() == 2; });
  EXPECT_THAT(saver_.calls, ElementsAre(inhibited(), "UnInhibit(41,)"));
}

TEST_F(Power, KeepsTheScreenOnUntilBothStatesAreAllowed) {
  serve_screen_saver();
  pm_control(2, 0);
  pm_control(3, 0);
  wait_for([this] { return !saver_.calls.empty(); });
  settle();

  pm_control(2, 1);
  settle();
  EXPECT_THAT(saver_.calls, ElementsAre(inhibited()));

  pm_control(3, 1);
  wait_for([this] { return saver_.calls.size() == 2; });
  EXPECT_THAT(saver_.calls, ElementsAre(inhibited(), "UnInhibit(41,)"));
}

TEST_F(Power, GivesBackWhatIsGrantedTooLate) {
  GDBusMethodInvocation *pending = nullptr;
  serve_screen_saver([&pending](const std::string &method, GDBusMethodInvocation *call) {
    if (method == "Inhibit") {
      pending = call;
    } else {
      g_dbus_method_invocation_return_value(call, nullptr);
    }
  });
  pm_control(2, 0);
  ASSERT_TRUE(wait_for([&pending] { return pending != nullptr; }));
  pm_control(2, 1);

  g_dbus_method_invocation_return_value(pending, g_variant_new("(u)", 9));

  wait_for([this] { return saver_.calls.size() == 2; });
  EXPECT_THAT(saver_.calls, ElementsAre(inhibited(), "UnInhibit(9,)"));
}

TEST_F(Power, AsksOnceForWhatIsWantedTwice) {
  serve_screen_saver();

  pm_control(2, 0);
  pm_control(2, 0);

  wait_for([this] { return !saver_.calls.empty(); });
  settle();
  EXPECT_THAT(saver_.calls, ElementsAre(inhibited()));
}

TEST_F(Power, FindsAScreenSaverAtItsOldPath) {
  saver_.serve("/ScreenSaver", "org.freedesktop.ScreenSaver", kSaverMethods, cookie(1));

  pm_control(2, 0);

  wait_for([this] { return !saver_.calls.empty(); });
  EXPECT_THAT(saver_.calls, ElementsAre(inhibited()));
}

TEST_F(Power, AsksARefusingScreenSaverAgainTheNextTime) {
  bool refuse = true;
  serve_screen_saver([&refuse](const std::string &, GDBusMethodInvocation *call) {
    if (refuse) {
      g_dbus_method_invocation_return_dbus_error(call, "org.example.No", "no");
    } else {
      g_dbus_method_invocation_return_value(call, g_variant_new("(u)", 1));
    }
  });
  pm_control(2, 0);
  wait_for([this] { return !saver_.calls.empty(); });
  refuse = false;

  const bool asked_again = wait_for([this] {
    pm_control(2, 0);  // is left alone while the refusal is under way
    return saver_.calls.size() == 2;
  });

  EXPECT_TRUE(asked_again);
}

TEST_F(PowerSleep, IsForbiddenByADescriptor) {
  EXPECT_EQ(pm_control(4, 0), 0);

  EXPECT_TRUE(wait_for([this] { return held(); }));
  EXPECT_THAT(login_.calls, ElementsAre(std::string("Inhibit('sleep:idle', 'photobrowser', ") +
                                        kReason + ", 'block')"));
}

TEST_F(PowerSleep, IsAllowedAgainByClosingTheDescriptor) {
  pm_control(4, 0);
  wait_for([this] { return held(); });
  settle();

  EXPECT_EQ(pm_control(4, 1), 0);

  EXPECT_TRUE(wait_for([this] { return given_back(); }));
}

TEST_F(PowerSleep, IsAllowedAgainWhenTheProgramEnds) {
  const std::array<const char *, 2> command{PB_POWER_HOLDER, nullptr};
  GPid holder = 0;
  gint input = -1;
  ASSERT_TRUE(g_spawn_async_with_pipes(nullptr, const_cast<gchar **>(command.data()), nullptr,
                                       G_SPAWN_DO_NOT_REAP_CHILD, nullptr, nullptr, &holder, &input,
                                       nullptr, nullptr, nullptr));
  EXPECT_TRUE(wait_for([this] { return held(); }));

  close(input);  // which ends it

  EXPECT_TRUE(wait_for([this] { return given_back(); }));
  g_spawn_close_pid(holder);
}

TEST_F(PowerSpeed, IsHeldAtItsFull) {
  Daemon profiles(bus_, "org.freedesktop.UPower.PowerProfiles");
  profiles.serve("/org/freedesktop/UPower/PowerProfiles", "org.freedesktop.UPower.PowerProfiles",
                 kProfileMethods, cookie(5));

  EXPECT_EQ(pm_DVFS_control(3), 0);

  wait_for([&profiles] { return !profiles.calls.empty(); });
  EXPECT_THAT(profiles.calls, ElementsAre(std::string("HoldProfile('performance', ") + kReason +
                                          ", 'photobrowser')"));
}

TEST_F(PowerSpeed, IsHeldByAnOlderDaemon) {
  Daemon profiles(bus_, "net.hadess.PowerProfiles");
  profiles.serve("/net/hadess/PowerProfiles", "net.hadess.PowerProfiles", kProfileMethods,
                 cookie(5));

  pm_DVFS_control(3);
  wait_for([&profiles] { return !profiles.calls.empty(); });
  settle();
  EXPECT_EQ(pm_DVFS_control(1), 0);

  wait_for([&profiles] { return profiles.calls.size() == 2; });
  EXPECT_THAT(profiles.calls, ElementsAre(testing::StartsWith("HoldProfile('performance', "),
                                          "ReleaseProfile(5,)"));
}

TEST_F(PowerSpeed, IsNoTroubleWithoutADaemon) {
  EXPECT_EQ(pm_DVFS_control(3), 0);
  settle();

  EXPECT_THAT(logged(), IsEmpty());
}

TEST(PowerWithoutABus, IsNoTrouble) {
  g_setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent", TRUE);
  g_setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", TRUE);

  for (const gint flag : {0, 1}) {
    for (const gint state : {2, 3, 4}) EXPECT_EQ(pm_control(state, flag), 0);
  }
  EXPECT_EQ(pm_DVFS_control(3), 0);
  settle();

  EXPECT_THAT(logged(), IsEmpty());
}

TEST(PowerManagement, RefusesAStateThatIsNone) {
  EXPECT_LT(pm_control(1, 0), 0);
  EXPECT_LT(pm_control(5, 1), 0);
}

TEST(PowerManagement, RefusesAFlagThatIsNone) { EXPECT_LT(pm_control(4, 2), 0); }

TEST(PowerManagement, RefusesASpeedThatIsNone) { EXPECT_LT(pm_DVFS_control(2), 0); }

#include <array>

#include "phone-services/hold.hpp"
#include "power-management.h"

namespace phone::power {
namespace {

/// What the machine does to save power, each further than the one before.
enum State : gint { kDim = 2, kScreenOff = 3, kSleep = 4 };

enum Level : gint { kNormalSpeed = 1, kFullSpeed = 3 };

constexpr const char *kProgram = "photobrowser";
constexpr const char *kReason = "Pictures are being shown or transferred";

constexpr std::array kScreenDaemons{
    Daemon{"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver",
           "org.freedesktop.ScreenSaver", "Inhibit", "UnInhibit"},
    Daemon{"org.freedesktop.ScreenSaver", "/ScreenSaver", "org.freedesktop.ScreenSaver", "Inhibit",
           "UnInhibit"},
};
constexpr std::array kSleepDaemons{
    Daemon{"org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager",
           "Inhibit", nullptr},
};
constexpr std::array kSpeedDaemons{
    Daemon{"org.freedesktop.UPower.PowerProfiles", "/org/freedesktop/UPower/PowerProfiles",
           "org.freedesktop.UPower.PowerProfiles", "HoldProfile", "ReleaseProfile"},
    Daemon{"net.hadess.PowerProfiles", "/net/hadess/PowerProfiles", "net.hadess.PowerProfiles",
           "HoldProfile", "ReleaseProfile"},
};

struct Holds {
  Hold screen{G_BUS_TYPE_SESSION, kScreenDaemons,
              [] { return g_variant_new("(ss)", kProgram, kReason); }};
  Hold sleep{G_BUS_TYPE_SYSTEM, kSleepDaemons,
             [] { return g_variant_new("(ssss)", "sleep:idle", kProgram, kReason, "block"); }};
  Hold speed{G_BUS_TYPE_SYSTEM, kSpeedDaemons,
             [] { return g_variant_new("(sss)", "performance", kReason, kProgram); }};
  bool may_dim = true;
  bool may_switch_off = true;
};

/// Never destroyed: replies of daemons come at any time.
Holds &holds() {
  static auto *instance = new Holds;
  return *instance;
}

}  // namespace
}  // namespace phone::power

using namespace phone::power;

gint pm_control(gint state, gint flag) {
  if (flag != 0 && flag != 1) return -1;
  const bool allowed = flag == 1;
  Holds &all = holds();
  switch (state) {
    case kDim:
      all.may_dim = allowed;
      break;
    case kScreenOff:
      all.may_switch_off = allowed;
      break;
    case kSleep:
      all.sleep.want(!allowed);
      return 0;
    default:
      return -1;
  }
  // A desktop knows one answer for both: its screen saver dims and switches off.
  all.screen.want(!all.may_dim || !all.may_switch_off);
  return 0;
}

gint pm_DVFS_control(gint level) {
  if (level != kNormalSpeed && level != kFullSpeed) return -1;
  holds().speed.want(level == kFullSpeed);
  return 0;
}

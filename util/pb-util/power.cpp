#include <power-management.h>

#include <array>

#include "pb-debug.h"
#include "pb-util-settings.h"

namespace {

constexpr gint kNeverSet = -1;
constexpr gint kNoLevel = 0;

/// What a mode asks of power management: first a speed of the processor, if any, then a state
/// to hold (flag 1) or to give back (flag 0).
struct PowerRequest {
  gint level;
  gint state;
  gint flag;
};

constexpr PowerRequest kUnknownRequest{kNoLevel, 2, 1};
constexpr std::array<PowerRequest, 6> kRequests{
    {{1, 2, 1}, {kNoLevel, 3, 1}, {kNoLevel, 4, 1}, {3, 2, 0}, {kNoLevel, 3, 0}, {kNoLevel, 4, 0}}};

gint g_power_mode = kNeverSet;

bool is_known(gint mode) { return mode >= 0 && mode < static_cast<gint>(kRequests.size()); }

}  // namespace

gint mb_util_get_power_mode(void) { return g_power_mode; }

void mb_util_set_power_mode(gint mode) {
  PB_LOG(PB_LOG_INFO, "\n");
  if (mode == g_power_mode) {
    PB_LOG(PB_LOG_INFO, " Already Set the Power mode as type \n");
    return;
  }
  if (!is_known(mode)) PB_LOG(PB_LOG_WARNING, "unknown type\n");
  const PowerRequest &request =
      is_known(mode) ? kRequests[static_cast<std::size_t>(mode)] : kUnknownRequest;
  if (request.level != kNoLevel) pm_DVFS_control(request.level);
  if (pm_control(request.state, request.flag) < 0) {
    PB_LOG(PB_LOG_ERROR, "Error by pm_contrl().\n");
    return;
  }
  g_power_mode = mode;
}

#include <ostream>

#include "pb-debug.h"
#include "pb-util-settings.h"
#include "support/fake-platform.hpp"

namespace {

using fake::Logged;
using fake::platform;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

struct Mode {
  int mode;
  std::vector<std::string> calls;
};

void PrintTo(const Mode &mode, std::ostream *out) { *out << "mode " << mode.mode; }

class PowerModes : public testing::TestWithParam<Mode> {};

TEST_P(PowerModes, AskPowerManagement) {
  mb_util_set_power_mode(GetParam().mode);

  EXPECT_THAT(platform().calls, ElementsAreArray(GetParam().calls));
}

TEST_P(PowerModes, BecomeTheCurrentMode) {
  mb_util_set_power_mode(GetParam().mode);

  EXPECT_EQ(mb_util_get_power_mode(), GetParam().mode);
}

INSTANTIATE_TEST_SUITE_P(
    Table, PowerModes,
    testing::Values(Mode{0, {"pm_DVFS_control(1)", "pm_control(2, 1)"}},
                    Mode{1, {"pm_control(3, 1)"}}, Mode{2, {"pm_control(4, 1)"}},
                    Mode{3, {"pm_DVFS_control(3)", "pm_control(2, 0)"}},
                    Mode{4, {"pm_control(3, 0)"}}, Mode{5, {"pm_control(4, 0)"}},
                    Mode{6, {"pm_control(2, 1)"}}, Mode{-9, {"pm_control(2, 1)"}}),
    [](const auto &mode) { return "Mode" + std::to_string(mode.index); });

TEST(PowerMode, IsNoneAtFirst) { EXPECT_EQ(mb_util_get_power_mode(), -1); }

TEST(PowerMode, OfNoneIsSetAlreadyAtFirst) {
  mb_util_set_power_mode(-1);

  EXPECT_THAT(platform().calls, IsEmpty());
}

TEST(PowerMode, IsAskedForOnce) {
  mb_util_set_power_mode(5);
  mb_util_set_power_mode(5);

  EXPECT_THAT(platform().calls, ElementsAre("pm_control(4, 0)"));
}

TEST(PowerMode, IsLoggedWhenItIsSetAlready) {
  mb_util_set_power_mode(5);
  fake::take_log();

  mb_util_set_power_mode(5);

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_INFO, "[mb_util_set_power_mode]\n"),
                          Logged(PB_LOG_INFO,
                                 "[mb_util_set_power_mode] Already Set the Power mode "
                                 "as type \n")));
}

TEST(PowerMode, LogsItsEntryAlone) {
  mb_util_set_power_mode(2);

  EXPECT_THAT(platform().log, ElementsAre(Logged(PB_LOG_INFO, "[mb_util_set_power_mode]\n")));
}

TEST(PowerMode, IsLoggedWhenItIsUnknown) {
  mb_util_set_power_mode(17);

  EXPECT_THAT(platform().log,
              Contains(Logged(PB_LOG_WARNING, "[mb_util_set_power_mode]unknown type\n")));
}

TEST(PowerMode, StaysWhenItIsRefused) {
  mb_util_set_power_mode(2);
  platform().pm_control = [](gint, gint) { return -1; };

  mb_util_set_power_mode(5);

  EXPECT_EQ(mb_util_get_power_mode(), 2);
}

TEST(PowerMode, IsLoggedWhenItIsRefused) {
  platform().pm_control = [](gint, gint) { return -1; };

  mb_util_set_power_mode(5);

  EXPECT_THAT(platform().log,
              Contains(Logged(PB_LOG_ERROR, "[mb_util_set_power_mode]Error by pm_contrl().\n")));
}

TEST(PowerMode, IsAcceptedWithAPositiveResult) {
  platform().pm_control = [](gint, gint) { return 3; };

  mb_util_set_power_mode(5);

  EXPECT_EQ(mb_util_get_power_mode(), 5);
}

TEST(PowerMode, DoesNotDependOnTheSpeed) {
  platform().pm_DVFS_control = [](gint) { return -1; };

  mb_util_set_power_mode(3);

  EXPECT_EQ(mb_util_get_power_mode(), 3);
}

TEST(PowerMode, IsTriedAgainAfterARefusal) {
  platform().pm_control = [](gint, gint) { return -1; };
  mb_util_set_power_mode(5);
  platform().pm_control = [](gint, gint) { return 0; };

  mb_util_set_power_mode(5);

  EXPECT_EQ(mb_util_get_power_mode(), 5);
}

}  // namespace

#include <gtest/gtest.h>

#include "application-manager.h"
#include "event-system.h"
#include "power-management.h"
#include "telephony.h"

TEST(PowerManagement, RefusesEveryState) {
  EXPECT_LT(pm_control(2, 1), 0);
  EXPECT_LT(pm_control(4, 0), 0);
}

TEST(PowerManagement, RefusesToChangeTheSpeed) { EXPECT_LT(pm_DVFS_control(3), 0); }

TEST(Telephony, HasNoCard) {
  gint type = 77;

  EXPECT_NE(TelTapiSimGetCardType(&type), 0);

  EXPECT_EQ(type, 77);
}

TEST(ApplicationManager, TellsAnotherApplicationWhileNoWindowOfOursIsActive) {
  gint id = APP_ID_GALLERY;

  EXPECT_EQ(app_get_current_id(&id), 0);

  EXPECT_NE(id, APP_ID_GALLERY);
}

TEST(ApplicationManager, RefusesNothing) { EXPECT_NE(app_get_current_id(nullptr), 0); }

TEST(EventSystem, IsContentWithoutABus) {
  g_unsetenv("DBUS_SESSION_BUS_ADDRESS");
  g_setenv("XDG_RUNTIME_DIR", "/nonexistent", TRUE);

  EXPECT_EQ(EvtSysEventPublish(0, 1, nullptr), 0);
}

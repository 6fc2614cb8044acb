#include <gtest/gtest.h>

#include "application-manager.h"

TEST(ApplicationManager, TellsAnotherApplicationWhileNoWindowOfOursIsActive) {
  gint id = APP_ID_GALLERY;

  EXPECT_EQ(app_get_current_id(&id), 0);

  EXPECT_NE(id, APP_ID_GALLERY);
}

TEST(ApplicationManager, RefusesNothing) { EXPECT_NE(app_get_current_id(nullptr), 0); }

#include <gio/gio.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "support/temp-dir.hpp"

namespace {

/// Read while static objects are made, as a library might.
const std::string home_at_load = g_get_home_dir();
const std::string cache_at_load = g_get_user_cache_dir();

TEST(PrivateEnvironment, IsInForceBeforeStaticObjects) {
  EXPECT_EQ(home_at_load, support::private_dir() + "/home");
  EXPECT_EQ(cache_at_load, support::private_dir() + "/cache");
}

TEST(PrivateEnvironment, PointsEveryDirectoryAtItsOwn) {
  for (const char *variable :
       {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME",
        "XDG_RUNTIME_DIR", "TMPDIR", "PHOTOBROWSER_ROOT"}) {
    const char *value = std::getenv(variable);
    ASSERT_NE(value, nullptr) << variable;
    EXPECT_EQ(std::string(value).rfind(support::private_dir() + "/", 0), 0u) << variable;
    EXPECT_TRUE(support::exists(value)) << variable;
  }
}

TEST(PrivateEnvironment, IsClosedToOthers) {
  struct stat status {};
  ASSERT_EQ(lstat(support::private_dir().c_str(), &status), 0);

  EXPECT_EQ(status.st_mode & 07777, 0700u);
}

TEST(PrivateEnvironment, DoesNotReachTheDaemonsOfTheMachine) {
  EXPECT_EQ(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr), nullptr);
}

TEST(TempDir, IsGoneWithItsContents) {
  std::string path;
  {
    const support::TempDir dir;
    path = dir.path();
    dir.write("a/b/file", "x");
    ASSERT_EQ(symlink("nowhere", dir.path("dangling").c_str()), 0);
    ASSERT_EQ(chmod(dir.make_dir("closed/inner").c_str(), 0), 0);
  }

  EXPECT_FALSE(support::exists(path));
}

TEST(TempDir, DoesNotFollowLinksWhenItGoes) {
  const support::TempDir kept;
  const std::string file = kept.write("file", "x");
  {
    const support::TempDir dir;
    ASSERT_EQ(symlink(kept.path().c_str(), dir.path("link").c_str()), 0);
  }

  EXPECT_TRUE(support::exists(file));
}

TEST(TempDir, WritesWhatItWasGiven) {
  const support::TempDir dir;
  const std::string bytes("a\0b\n", 4);

  EXPECT_EQ(support::read_file(dir.write("file", bytes)), bytes);
}

}  // namespace

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <linux/capability.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "app/browsing.hpp"

using gallery_test::kRed;

namespace {

/// The grey of the drawing on a page that has nothing to list.
constexpr support::Rgba kDrawingGrey{106, 112, 124};
constexpr support::Rgba kText{242, 242, 242};
/// Where the bar at the lower edge is, left of its button.
constexpr GdkRectangle kLowerEdge{0, 740, 400, 60};

class Storage : public gallery_test::Browsing {
 protected:
  void TearDown() override {
    Browsing::TearDown();
    for (const std::string &folder : mounted_) umount2(folder.c_str(), MNT_DETACH);
  }

  /// Modes of files and folders count for the programs that are started from here on, also when
  /// this is the superuser's process.
  static void obey_modes() {
    if (geteuid() != 0) return;
    ASSERT_EQ(prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE), 0) << std::strerror(errno);
    ASSERT_EQ(prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH), 0) << std::strerror(errno);
  }

  /// Puts the folders of the user's data on a disk of their own.
  /// @return false where the machine does not allow it
  bool put_home_on_a_disk_of(const char *size) {
    if (unshare(CLONE_NEWNS) != 0) return false;
    if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
    for (const char *variable : {"XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME"}) {
      const char *folder = std::getenv(variable);
      g_mkdir_with_parents(folder, 0700);
      const std::string options = std::string("size=") + size;
      if (mount("none", folder, "tmpfs", 0, options.c_str()) != 0) return false;
      mounted_.emplace_back(folder);
    }
    return true;
  }

  [[nodiscard]] bool bar_is_shown() const {
    return gallery_test::eventually([this] { return look_within(kLowerEdge, kText).pixels > 200; });
  }

 private:
  std::vector<std::string> mounted_;
};

}  // namespace

TEST_F(Storage, AFolderThatMayNotBeReadGivesAPageAndASentence) {
  obey_modes();
  const std::string locked = library_.make_dir("Locked");
  ASSERT_EQ(chmod(locked.c_str(), 0), 0);

  start({locked});

  EXPECT_TRUE(find(kDrawingGrey, 300));
  EXPECT_EQ(stop(), "photobrowser: " + locked + " cannot be read: Permission denied.\n");
}

TEST_F(Storage, AFolderInsideThatMayNotBeReadIsToldInTheBar) {
  obey_modes();
  add_picture("red.png", kRed);
  const std::string locked = library_.make_dir("Locked");
  ASSERT_EQ(chmod(locked.c_str(), 0), 0);

  start();

  EXPECT_TRUE(find(kRed));
  EXPECT_TRUE(bar_is_shown());
}

TEST_F(Storage, AnAccessibleLibraryLeavesTheBarAway) {
  add_picture("red.png", kRed);
  start();
  ASSERT_TRUE(find(kRed));
  settle();

  EXPECT_EQ(look_within(kLowerEdge, kText).pixels, 0);
}

TEST_F(Storage, APictureThatMayNotBeReadIsToldInTheBar) {
  obey_modes();
  add_picture("red.png", kRed);
  const std::string secret = add_picture("secret.png", support::kBlue);
  ASSERT_EQ(chmod(secret.c_str(), 0), 0);

  start();

  EXPECT_TRUE(find(kRed));
  EXPECT_TRUE(bar_is_shown());
}

TEST_F(Storage, AHomeThatCannotBeWrittenIsToldInTheBar) {
  obey_modes();
  add_picture("red.png", kRed);
  for (const char *variable : {"HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME"}) {
    ASSERT_EQ(chmod(std::getenv(variable), 0500), 0);
  }

  start();

  EXPECT_TRUE(find(kRed));
  EXPECT_TRUE(bar_is_shown());
}

TEST_F(Storage, ADiskThatIsFullFromTheStartIsToldInTheBar) {
  add_picture("red.png", kRed);
  if (!put_home_on_a_disk_of("4k")) GTEST_SKIP() << "no disk can be mounted here";

  start();

  EXPECT_TRUE(find(kRed));
  EXPECT_TRUE(bar_is_shown());
}

TEST_F(Storage, ADiskThatFillsUpIsToldInTheBar) {
  for (int i = 0; i < 60; ++i) add_picture("Many/red" + std::to_string(i) + ".png", kRed, 64, 48);
  if (!put_home_on_a_disk_of("200k")) GTEST_SKIP() << "no disk can be mounted here";

  start();

  EXPECT_TRUE(bar_is_shown());
  EXPECT_TRUE(has_title("All pictures"));
}

#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>

#include "mb-util-content.h"
#include "pb-debug.h"
#include "support/temp-dir.hpp"
#include "util/pb-util/dialog-fixture.hpp"

namespace {

using fake::Logged;
using fake::platform;
using testing::Contains;

class Destination : public pb_test::DialogTest {
 protected:
  /// Sets the time of the last change.
  static void set_age(const std::string &path, time_t changed) {
    const timespec times[2] = {{changed, 0}, {changed, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
  }
  void fill(int count) const {
    for (int i = 0; i < count; ++i) {
      set_age(dir_.write("here/" + std::to_string(i), "x"), 1000 + i);
    }
  }
  [[nodiscard]] std::string here() const { return dir_.path("here"); }
  [[nodiscard]] std::size_t held() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(here()),
                                                  std::filesystem::directory_iterator()));
  }

  support::TempDir dir_;
  gchar pick_[256] = "?";
};
using OldestContent = Destination;

TEST_F(OldestContent, IsTheNewestFile) {
  set_age(dir_.write("here/a", "x"), 3000);
  set_age(dir_.write("here/b", "x"), 1000);

  EXPECT_EQ(mb_util_get_oldest_content(here().c_str(), pick_, 1), 2);

  EXPECT_EQ(pick_, here() + "/a");
  EXPECT_THAT(platform().log,
              Contains(Logged(PB_LOG_INFO, "[mb_util_get_oldest_content]Oldest Date = 3000 File= " +
                                               here() + "/a Count = 2\n")));
}

TEST_F(OldestContent, CountsFilesOnly) {
  dir_.make_dir("here/folder");
  dir_.write("here/.hidden", "x");
  dir_.write("here/file", "x");

  EXPECT_EQ(mb_util_get_oldest_content(here().c_str(), pick_, 1), 1);

  EXPECT_EQ(pick_, here() + "/file");
}

TEST_F(OldestContent, CountsFoldersOnly) {
  dir_.make_dir("here/folder");
  dir_.make_dir("here/.hidden");
  dir_.write("here/file", "x");

  EXPECT_EQ(mb_util_get_oldest_content(here().c_str(), pick_, 0), 1);

  EXPECT_EQ(pick_, here() + "/folder");
}

TEST_F(OldestContent, IsNothingInAnEmptyDirectory) {
  dir_.make_dir("here");

  EXPECT_EQ(mb_util_get_oldest_content(here().c_str(), pick_, 1), 0);

  EXPECT_STREQ(pick_, "");
}

TEST_F(OldestContent, IsNothingWithoutADirectory) {
  EXPECT_EQ(mb_util_get_oldest_content(here().c_str(), pick_, 1), 0);

  EXPECT_STREQ(pick_, "");
  EXPECT_THAT(platform().log, Contains(Logged(PB_LOG_WARNING,
                                              "[mb_util_get_oldest_content]mb_util_get_oldest_"
                                              "content: opendir()=NULL, fails\n")));
}

TEST_F(Destination, IsMade) {
  EXPECT_EQ(mb_util_check_dwndest_directory(here().c_str(), 1), 1);

  EXPECT_TRUE(std::filesystem::is_directory(here()));
  EXPECT_THAT(platform().log, Contains(Logged(PB_LOG_INFO,
                                              "[mb_util_check_dwndest_directory]dir path is not  "
                                              "exist,need to create!\n")));
}

TEST_F(Destination, IsMadeWithANameThatTheShellWouldRead) {
  const std::string path = here() + "; touch " + dir_.path("canary");

  EXPECT_EQ(mb_util_check_dwndest_directory(path.c_str(), 1), 1);

  EXPECT_TRUE(std::filesystem::is_directory(path));
  EXPECT_FALSE(support::exists(dir_.path("canary")));
}

TEST_F(Destination, IsTakenAsItIs) {
  dir_.make_dir("here");

  EXPECT_EQ(mb_util_check_dwndest_directory(here().c_str(), 1), 1);

  EXPECT_THAT(platform().log, Contains(Logged(PB_LOG_INFO,
                                              "[mb_util_check_dwndest_directory]dir "
                                              "path is already exist\n")));
  EXPECT_THAT(platform().log, Contains(Logged(PB_LOG_INFO,
                                              "[mb_util_check_dwndest_directory]Total "
                                              "Created files = 0, \n")));
}

TEST_F(Destination, OfTypeZeroKeepsThirtyFiles) {
  fill(30);

  mb_util_check_dwndest_directory(here().c_str(), 0);

  EXPECT_EQ(held(), 30U);
}

TEST_F(Destination, OfTypeZeroLosesTheNewestOfThirtyOneFiles) {
  fill(31);

  mb_util_check_dwndest_directory(here().c_str(), 0);

  EXPECT_EQ(held(), 30U);
  EXPECT_FALSE(support::exists(here() + "/30"));
}

TEST_F(Destination, OfTheOtherTypesKeepsAHundredFiles) {
  fill(101);

  for (const gint type : {1, 2, 3}) mb_util_check_dwndest_directory(here().c_str(), type);

  EXPECT_EQ(held(), 100U);
}

TEST_F(Destination, OfTypeZeroThatIsMadeKeepsTenFolders) {
  const std::string folders =
      support::photobrowser_root() + "/mnt/data/.temp/com.velmora.photobrowser/thumb1";
  for (int i = 0; i < 11; ++i) {
    std::filesystem::create_directories(folders + "/" + std::to_string(i));
    set_age(folders + "/" + std::to_string(i), 1000 + i);
  }

  mb_util_check_dwndest_directory(here().c_str(), 0);

  EXPECT_FALSE(support::exists(folders + "/10"));
  EXPECT_TRUE(support::exists(folders + "/9"));
}

TEST_F(Destination, IsRefusedWhenTheMemoryCannotBeMeasured) {
  platform().fexplorer_get_available_memory_space = [](gint, gint64 *, gint *error) {
    *error = 12;
    return FALSE;
  };

  EXPECT_EQ(mb_util_check_dwndest_directory(here().c_str(), 1), 0);

  EXPECT_FALSE(support::exists(here()));
  EXPECT_THAT(platform().log,
              Contains(Logged(PB_LOG_ERROR,
                              "[mb_util_check_dwndest_directory]fexplorer_get_available_memory_"
                              "space failed with err = 12\n")));
}

TEST_F(Destination, IsRefusedInAFullMemory) {
  platform().fexplorer_get_available_memory_space = [](gint, gint64 *free_kb, gint *) {
    *free_kb = 5119;
    return TRUE;
  };
  open_resources();

  EXPECT_EQ(mb_util_check_dwndest_directory(here().c_str(), 1), 0);

  EXPECT_THAT(fake::calls_of("gtk_style_dialog_set_title"),
              Contains(testing::HasSubstr("system string 10239")));
  EXPECT_THAT(fake::calls_of("gtk_style_dialog_set_content_area_text"),
              Contains(testing::HasSubstr("Insufficient Memory")));
}

TEST_F(Destination, IsReadyInAMemoryThatJustSuffices) {
  platform().fexplorer_get_available_memory_space = [](gint, gint64 *free_kb, gint *) {
    *free_kb = 5120;
    return TRUE;
  };

  EXPECT_EQ(mb_util_check_dwndest_directory(here().c_str(), 1), 1);
}

}  // namespace

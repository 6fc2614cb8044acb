/// What the file explorer knows of one file.
#include <fcntl.h>
#include <file-explorer.h>
#include <gmock/gmock.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "../media-browser/library.hpp"
#include "file-bytes.hpp"

namespace {

class FileState : public support::GlibTest {
 protected:
  support::TempDir dir_;
};

using Orientation = FileState;

TEST_F(Orientation, IsReadFromTheHeader) {
  for (int value = 1; value <= 8; ++value) {
    const std::string path = dir_.write("a.jpg", test::camera_jpeg("", "", value));
    gint orientation = 0;

    EXPECT_TRUE(fexplorer_get_exif_orientation(path.c_str(), &orientation));

    EXPECT_EQ(orientation, value);
  }
}

TEST_F(Orientation, IsUprightWhenThePictureDoesNotSay) {
  const std::string path = dir_.write("a.png", test::png_start(10, 10));
  gint orientation = 0;

  EXPECT_TRUE(fexplorer_get_exif_orientation(path.c_str(), &orientation));

  EXPECT_EQ(orientation, 1);
}

TEST_F(Orientation, FailsForWhatIsNoPicture) {
  const std::string text = dir_.write("a.jpg", "text");
  gint orientation = 7;

  EXPECT_FALSE(fexplorer_get_exif_orientation(text.c_str(), &orientation));
  EXPECT_FALSE(fexplorer_get_exif_orientation(dir_.path("missing.jpg").c_str(), &orientation));
  EXPECT_FALSE(fexplorer_get_exif_orientation(dir_.path().c_str(), &orientation));
  EXPECT_FALSE(fexplorer_get_exif_orientation(nullptr, &orientation));
  EXPECT_FALSE(fexplorer_get_exif_orientation(text.c_str(), nullptr));

  EXPECT_EQ(orientation, 7);
}

TEST_F(Orientation, IsNotHeldUpByAPipe) {
  ASSERT_EQ(mkfifo(dir_.path("pipe.jpg").c_str(), 0600), 0);
  gint orientation = 7;

  EXPECT_FALSE(fexplorer_get_exif_orientation(dir_.path("pipe.jpg").c_str(), &orientation));
}

using OpenStatus = FileState;

TEST_F(OpenStatus, IsTakenForAFileThatIsThere) {
  const std::string path = dir_.write("a.jpg", "x");

  EXPECT_TRUE(fexplorer_set_file_open_status(path.c_str(), 1));
  EXPECT_TRUE(fexplorer_set_file_open_status(path.c_str(), 0));
}

TEST_F(OpenStatus, IsRefusedForAFileThatIsNotThere) {
  EXPECT_FALSE(fexplorer_set_file_open_status(dir_.path("missing").c_str(), 1));
  EXPECT_FALSE(fexplorer_set_file_open_status(nullptr, 1));
}

TEST_F(OpenStatus, CanBeClearedForAFileThatIsNotThereAnyMore) {
  EXPECT_TRUE(fexplorer_set_file_open_status(dir_.path("missing").c_str(), 0));
}

using LockStatus = FileState;

TEST_F(LockStatus, SaysWhetherAnybodyMayWrite) {
  const std::string path = dir_.write("a.jpg", "x");
  gboolean locked = TRUE;

  EXPECT_TRUE(fexplorer_get_file_lock_status(path.c_str(), &locked, nullptr));
  EXPECT_FALSE(locked);

  ASSERT_EQ(chmod(path.c_str(), 0444), 0);
  EXPECT_TRUE(fexplorer_get_file_lock_status(path.c_str(), &locked, nullptr));
  EXPECT_TRUE(locked);
}

TEST_F(LockStatus, KnowsFilesThatTheFileSystemHoldsFast) {
  const std::string path = dir_.write("a.jpg", "x");
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  int flags = FS_IMMUTABLE_FL;
  if (ioctl(fd, FS_IOC_SETFLAGS, &flags) != 0) {
    close(fd);
    GTEST_SKIP() << "a file cannot be held fast here: " << g_strerror(errno);
  }
  gboolean locked = FALSE;

  EXPECT_TRUE(fexplorer_get_file_lock_status(path.c_str(), &locked, nullptr));

  EXPECT_TRUE(locked);
  EXPECT_EQ(fexplorer_delete_file_only(path.c_str()), FEXPLORER_ERROR_IN_USE);
  flags = 0;
  EXPECT_EQ(ioctl(fd, FS_IOC_SETFLAGS, &flags), 0);
  close(fd);
}

TEST_F(LockStatus, FailsForAFileThatIsNotThere) {
  gboolean locked = TRUE;
  gint error = 0;

  EXPECT_FALSE(fexplorer_get_file_lock_status(dir_.path("missing").c_str(), &locked, &error));
  EXPECT_FALSE(fexplorer_get_file_lock_status(nullptr, &locked, nullptr));
  EXPECT_FALSE(fexplorer_get_file_lock_status(dir_.path().c_str(), nullptr, nullptr));

  EXPECT_TRUE(locked);
  EXPECT_NE(error, 0);
}

}  // namespace

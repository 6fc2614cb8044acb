#include <mb-util-content.h>
#include <pb-debug.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/logged-text.hpp"
#include "support/fake-platform.hpp"
#include "support/temp-dir.hpp"

namespace {

using fake::Logged;
using testing::ElementsAre;
using testing::IsEmpty;

class ContentIsExist : public support::GlibTest {
 protected:
  support::TempDir dir_;
};

TEST_F(ContentIsExist, IsOneForARegularFile) {
  EXPECT_EQ(mb_util_content_is_exist(dir_.write("file", "x").c_str()), 1);
}

TEST_F(ContentIsExist, IsOneForAnEmptyFile) {
  EXPECT_EQ(mb_util_content_is_exist(dir_.write("file", "").c_str()), 1);
}

TEST_F(ContentIsExist, LogsARegularFile) {
  const std::string path = dir_.write("file", "x");

  mb_util_content_is_exist(path.c_str());

  EXPECT_THAT(fake::platform().log, ElementsAre(LoggedText("[mb_util_content_is_exist]Exist! " +
                                                           path + " is a regular file.\n")));
}

TEST_F(ContentIsExist, IsZeroForADirectory) {
  EXPECT_EQ(mb_util_content_is_exist(dir_.path().c_str()), 0);
}

TEST_F(ContentIsExist, LogsADirectory) {
  mb_util_content_is_exist(dir_.path().c_str());

  EXPECT_THAT(fake::platform().log, ElementsAre(LoggedText("[mb_util_content_is_exist]Exist! " +
                                                           dir_.path() + " is a directory.\n")));
}

TEST_F(ContentIsExist, IsZeroForNothing) {
  EXPECT_EQ(mb_util_content_is_exist(dir_.path("missing").c_str()), 0);

  EXPECT_THAT(fake::platform().log, IsEmpty());
}

TEST_F(ContentIsExist, IsZeroForAPipe) {
  const std::string path = dir_.path("pipe");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);

  EXPECT_EQ(mb_util_content_is_exist(path.c_str()), 0);

  EXPECT_THAT(fake::platform().log, IsEmpty());
}

TEST_F(ContentIsExist, IsOneForALinkToARegularFile) {
  const std::string path = dir_.path("link");
  ASSERT_EQ(symlink(dir_.write("file", "x").c_str(), path.c_str()), 0);

  EXPECT_EQ(mb_util_content_is_exist(path.c_str()), 1);
}

TEST_F(ContentIsExist, IsZeroForADanglingLink) {
  const std::string path = dir_.path("link");
  ASSERT_EQ(symlink("missing", path.c_str()), 0);

  EXPECT_EQ(mb_util_content_is_exist(path.c_str()), 0);
}

TEST_F(ContentIsExist, IsZeroForNoPath) { EXPECT_EQ(mb_util_content_is_exist(nullptr), 0); }

}  // namespace

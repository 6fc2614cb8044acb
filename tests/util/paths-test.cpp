#include "util/paths.hpp"

#include <cstdlib>

#include "pb-debug.h"
#include "support/fake-platform.hpp"

namespace {

using fake::LoggedLike;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(PhonePath, StandsAsItIsWithoutARoot) {
  unsetenv("PHOTOBROWSER_ROOT");

  EXPECT_EQ(pb::phone_path("/usr/apps/x"), "/usr/apps/x");
}

TEST(PhonePath, StandsAsItIsForAnEmptyRoot) {
  setenv("PHOTOBROWSER_ROOT", "", 1);

  EXPECT_EQ(pb::phone_path("/mnt/ums/x"), "/mnt/ums/x");
  EXPECT_THAT(fake::platform().log, IsEmpty());
}

TEST(PhonePath, LiesBelowTheRoot) {
  setenv("PHOTOBROWSER_ROOT", "/home/me/phone-1_0.d", 1);

  EXPECT_EQ(pb::phone_path("/mnt/data/x"), "/home/me/phone-1_0.d/mnt/data/x");
}

TEST(PhonePath, HasNoDoubledSlash) {
  setenv("PHOTOBROWSER_ROOT", "/home/me//", 1);

  EXPECT_EQ(pb::phone_path("/tmp/mb_covers"), "/home/me/tmp/mb_covers");
}

TEST(PhonePath, TakesTheWholeMachineForASlash) {
  setenv("PHOTOBROWSER_ROOT", "/", 1);

  EXPECT_EQ(pb::phone_path("/tmp/mb_covers"), "/tmp/mb_covers");
}

TEST(PhonePath, ReadsTheRootOnce) {
  setenv("PHOTOBROWSER_ROOT", "/home/me", 1);
  EXPECT_EQ(pb::phone_path("/tmp/a"), "/home/me/tmp/a");

  setenv("PHOTOBROWSER_ROOT", "/home/you", 1);

  EXPECT_EQ(pb::phone_path("/tmp/a"), "/home/me/tmp/a");
}

TEST(PhonePath, IgnoresAndLogsARootThatIsNotUsable) {
  setenv("PHOTOBROWSER_ROOT", "/home/a b", 1);

  EXPECT_EQ(pb::phone_path("/tmp/a"), "/tmp/a");
  EXPECT_EQ(pb::phone_path("/tmp/b"), "/tmp/b");

  EXPECT_THAT(fake::platform().log, ElementsAre(LoggedLike(PB_LOG_ERROR, HasSubstr("/home/a b"))));
}

class UsableRoot : public testing::TestWithParam<const char *> {};

TEST_P(UsableRoot, IsTaken) { EXPECT_TRUE(pb::is_usable_root(GetParam())); }

INSTANTIATE_TEST_SUITE_P(Roots, UsableRoot,
                         testing::Values("/", "/a", "/home/me/.cache/x-1_2+3@4", "/a..b/c..",
                                         "/home/jos\xc3\xa9"));

class UnusableRoot : public testing::TestWithParam<const char *> {};

TEST_P(UnusableRoot, IsRefused) { EXPECT_FALSE(pb::is_usable_root(GetParam())); }

INSTANTIATE_TEST_SUITE_P(Roots, UnusableRoot,
                         testing::Values("", "relative", "./a", "/a b", "/a\tb", "/a\nb", "/a;b",
                                         "/a&b", "/a|b", "/a$b", "/a`b", "/a\"b", "/a'b", "/a\\b",
                                         "/a*b", "/a?b", "/a[b", "/a<b", "/a>b", "/a(b", "/a~b",
                                         "/a#b", "/a!b", "/a{b", "/a/../b", "/..", "/a/.."));

}  // namespace

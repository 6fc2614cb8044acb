#include "debug-log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "debug-log/levels.hpp"
#include "support/glib-test.hpp"

using support::StructuredLine;
using support::take_structured_lines;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr guint32 kError = 0x1000000;
constexpr guint32 kWarning = 0x2000000;
constexpr guint32 kInfo = 0x4000000;
constexpr guint32 kModule = 0x53000000;

class DebugLog : public support::GlibTest {
 protected:
  DebugLog() {
    g_unsetenv("PHOTOBROWSER_DEBUG");
    phone::debug_log::read_levels();
  }

  static void want_traces(const char *value) {
    g_setenv("PHOTOBROWSER_DEBUG", value, TRUE);
    phone::debug_log::read_levels();
  }

  static std::vector<std::string> messages() {
    std::vector<std::string> texts;
    for (const StructuredLine &line : take_structured_lines()) {
      texts.push_back(line.fields.at("MESSAGE"));
    }
    return texts;
  }
};

}  // namespace

TEST_F(DebugLog, WritesErrors) {
  _debug_message(12, "util/pb-util", kModule, kError, "[%s]invalid parameter\n", "f");

  EXPECT_THAT(messages(), ElementsAre("[f]invalid parameter"));
}

TEST_F(DebugLog, WritesWarnings) {
  _debug_message(12, "util/pb-util", kModule, kWarning, "[%s]ITEM NOT FOUND\n", "f");

  EXPECT_THAT(messages(), ElementsAre("[f]ITEM NOT FOUND"));
}

TEST_F(DebugLog, KeepsTracesToItself) {
  EXPECT_EQ(_debug_message(12, "util/pb-util", kModule, kInfo, "[%s]\n", "f"), 0);

  EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(DebugLog, WritesTracesOnRequest) {
  want_traces("1");

  _debug_message(12, "util/pb-util", kModule, kInfo, "[%s]entered\n", "f");

  EXPECT_THAT(messages(), ElementsAre("[f]entered"));
}

TEST_F(DebugLog, TakesOnlyOneForARequest) {
  want_traces("0");

  _debug_message(12, "util/pb-util", kModule, kInfo, "[%s]entered\n", "f");

  EXPECT_THAT(messages(), IsEmpty());
}

TEST_F(DebugLog, ReturnsTheLengthOfTheText) {
  EXPECT_EQ(_debug_message(12, "m", kModule, kError, "[%s]x\n", "f"), 5);
}

TEST_F(DebugLog, SaysWhereTheLineComesFrom) {
  _debug_message(12, "util/pb-util", kModule, kError, "[%s]x\n", "f");

  auto lines = take_structured_lines();
  ASSERT_THAT(lines, SizeIs(1));
  EXPECT_EQ(lines[0].fields["CODE_FILE"], "util/pb-util");
  EXPECT_EQ(lines[0].fields["CODE_LINE"], "12");
  EXPECT_EQ(lines[0].fields["PHOTOBROWSER_MODULE"], "0x53000000");
  EXPECT_EQ(lines[0].fields["GLIB_DOMAIN"], "photobrowser");
}

TEST_F(DebugLog, TellsLevelsApartByPriority) {
  want_traces("1");
  _debug_message(1, "m", kModule, kError, "error");
  _debug_message(1, "m", kModule, kWarning, "warning");
  _debug_message(1, "m", kModule, kInfo, "trace");

  auto lines = take_structured_lines();
  ASSERT_THAT(lines, SizeIs(3));
  EXPECT_EQ(lines[0].fields["PRIORITY"], "3");
  EXPECT_EQ(lines[1].fields["PRIORITY"], "4");
  EXPECT_EQ(lines[2].fields["PRIORITY"], "7");
}

TEST_F(DebugLog, TakesPercentSignsOfAFinishedLineAsTheyAre) {
  _debug_message(1, "m", kModule, kError, "%s", "100%n.jpg\n");

  EXPECT_THAT(messages(), ElementsAre("100%n.jpg"));
}

TEST_F(DebugLog, WritesOneLineForANameWithANewline) {
  _debug_message(1, "m", kModule, kError, "[%s]%s\n", "f", "a\nERROR: all is lost");

  EXPECT_THAT(messages(), ElementsAre("[f]a\\x0aERROR: all is lost"));
}

TEST_F(DebugLog, CutsOffAFloodOfOneLine) {
  for (int i = 0; i < 1000; ++i) _debug_message(1, "m", kModule, kError, "again");

  EXPECT_THAT(messages(), SizeIs(10));
}

TEST_F(DebugLog, ReturnsTheLengthOfALineThatIsLeftOut) {
  for (int i = 0; i < 1000; ++i) _debug_message(1, "m", kModule, kError, "again");

  EXPECT_EQ(_debug_message(1, "m", kModule, kError, "again"), 5);
}

TEST_F(DebugLog, BearsAMissingModule) {
  _debug_message(1, nullptr, kModule, kError, "x");

  EXPECT_THAT(messages(), ElementsAre("x"));
}

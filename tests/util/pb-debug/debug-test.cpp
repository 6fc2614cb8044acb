#include "pb-debug.h"

#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>

#include "support/fake-platform.hpp"
#include "support/temp-dir.hpp"

namespace {

using fake::Logged;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(DebugMessage, HandsOneFinishedLineToThePlatform) {
  pb_debug_message(0x4000000, "util/pb-util", "f", 12, "x=%d", 5);

  EXPECT_THAT(fake::platform().log, ElementsAre(Logged(PB_LOG_INFO, "[util/pb-util:f]  12 x=5\n")));
}

TEST(DebugMessage, ForwardsErrorsAndWarningsUnchanged) {
  pb_debug_message(0x1000000, "a", "f", 1, "e");
  pb_debug_message(0x2000000, "a", "f", 2, "w");

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(0x1000000, "[a:f]  1 e\n"), Logged(0x2000000, "[a:f]  2 w\n")));
}

TEST(DebugMessage, PassesTheModuleAndItsOwnPlace) {
  pb_debug_message(PB_LOG_INFO, "app/main", "f", 99999, "x");

  const fake::LogLine &line = fake::platform().log.at(0);
  EXPECT_EQ(line.module, 0x53000000u);
  EXPECT_EQ(line.file, "util/pb-debug");
  EXPECT_NE(line.line, 99999);
}

TEST(DebugMessage, DropsAnyOtherLevel) {
  pb_debug_message(0, "a", "f", 1, "x");
  pb_debug_message(0x8000000, "a", "f", 1, "x");
  pb_debug_message(0x5000000, "a", "f", 1, "x");

  EXPECT_THAT(fake::platform().log, IsEmpty());
}

TEST(DebugMessage, ReturnsTheLengthOfADroppedLine) {
  EXPECT_EQ(pb_debug_message(0, "ab", "f", 12, "x=%d", 5), 15);  // "[ab:f]  12 x=5\n"
}

TEST(DebugMessage, ReturnsTheResultOfThePlatform) {
  fake::platform()._debug_message = [](const fake::LogLine &) { return -3; };

  EXPECT_EQ(pb_debug_message(PB_LOG_ERROR, "a", "f", 1, "x"), -3);
}

TEST(DebugMessage, CutsALongMessage) {
  const std::string message(2000, 'm');

  pb_debug_message(PB_LOG_INFO, "a", "f", 1, "%s", message.c_str());

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_INFO, "[a:f]  1 " + std::string(1023, 'm') + "\n")));
}

TEST(DebugMessage, ExpandsAMessageOnce) {
  pb_debug_message(PB_LOG_INFO, "a", "f", 1, "%s", "100%d%s%n");

  EXPECT_THAT(fake::platform().log, ElementsAre(Logged(PB_LOG_INFO, "[a:f]  1 100%d%s%n\n")));
}

TEST(DebugMessage, StaysInItsLineForALongPath) {
  const std::string path(5000, 'p');

  pb_debug_message(PB_LOG_INFO, path.c_str(), "f", 1, "x");

  EXPECT_EQ(fake::platform().log.at(0).text.size(), 2047u);
}

class DebugMessageText : public support::GlibTest {};

TEST_F(DebugMessageText, StandsMissingArguments) {
  pb_debug_message(PB_LOG_INFO, nullptr, nullptr, 1, "x");

  EXPECT_THAT(fake::platform().log, ElementsAre(Logged(PB_LOG_INFO, "[(null):(null)]  1 x\n")));
}

TEST_F(DebugMessageText, PassesBytesThatAreNoText) {
  pb_debug_message(PB_LOG_INFO, "a", "f", 1, "%s", "\xff\xfe");

  EXPECT_THAT(fake::platform().log, ElementsAre(Logged(PB_LOG_INFO, "[a:f]  1 \xff\xfe\n")));
}

void log_something(guint32 level) { PB_LOG(level, "value %d\n", 4); }

TEST(LogMacro, BeginsWithTheFunction) {
  log_something(PB_LOG_WARNING);

  EXPECT_THAT(fake::platform().log,
              ElementsAre(Logged(PB_LOG_WARNING, "[log_something]value 4\n")));
}

TEST(LogMacro, PassesModuleFileAndLine) {
  PB_LOG(PB_LOG_ERROR, "\n");
  const int here = __LINE__ - 1;

  const fake::LogLine &line = fake::platform().log.at(0);
  EXPECT_EQ(line.module, 0x53000000u);
  EXPECT_EQ(line.file, __FILE__);
  EXPECT_EQ(line.line, here);
}

TEST(LogMacro, HasTheLevelsOfThePlatform) {
  EXPECT_EQ(PB_LOG_ERROR, 0x1000000u);
  EXPECT_EQ(PB_LOG_WARNING, 0x2000000u);
  EXPECT_EQ(PB_LOG_INFO, 0x4000000u);
}

TEST(System, ReturnsOneForNoCommand) { EXPECT_EQ(pb_util_system(nullptr), 1); }

TEST(System, ReturnsTheWaitStatus) {
  const int status = pb_util_system("exit 3");

  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 3);
}

TEST(System, ReportsACommandThatEndedBySignal) {
  const int status = pb_util_system("kill -9 $$");

  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGKILL);
}

TEST(System, ReportsACommandThatTheShellCannotFind) {
  const int status = pb_util_system("no-such-command-here 2>/dev/null");

  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 127);
}

TEST(System, GivesTheCommandNoEnvironment) {
  const support::TempDir dir;
  setenv("PB_TEST_VARIABLE", "visible", 1);

  const int status =
      pb_util_system(("echo \"<$PB_TEST_VARIABLE$HOME>\" > " + dir.path("out")).c_str());

  EXPECT_EQ(status, 0);
  EXPECT_EQ(support::read_file(dir.path("out")), "<>\n");
}

TEST(System, WaitsThroughSignals) {
  struct sigaction action {};
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, nullptr);
  itimerval timer{};
  timer.it_value.tv_usec = 5000;
  timer.it_interval.tv_usec = 5000;
  setitimer(ITIMER_REAL, &timer, nullptr);

  const int status = pb_util_system("/bin/sleep 0.05; exit 4");

  const itimerval off{};
  setitimer(ITIMER_REAL, &off, nullptr);
  EXPECT_EQ(WEXITSTATUS(status), 4);
}

}  // namespace

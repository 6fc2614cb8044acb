#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "app/program.hpp"
#include "support/temp-dir.hpp"

using gallery_test::Outcome;
using gallery_test::run_to_the_end;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST(CommandLine, TellsItsVersion) {
  const Outcome outcome = run_to_the_end({"--version"});

  EXPECT_EQ(outcome.exit_code, 0);
  EXPECT_EQ(outcome.out, "photobrowser " PB_VERSION "\n");
}

TEST(CommandLine, TellsHowToUseIt) {
  const Outcome outcome = run_to_the_end({"--help"});

  EXPECT_EQ(outcome.exit_code, 0);
  EXPECT_THAT(outcome.out, HasSubstr("photobrowser [OPTION"));
  EXPECT_THAT(outcome.out, HasSubstr("[DIR|FILE"));
  EXPECT_THAT(outcome.err, IsEmpty());
}

TEST(CommandLine, RefusesAnUnknownOption) {
  const Outcome outcome = run_to_the_end({"--sideways"});

  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_THAT(outcome.err, HasSubstr("--sideways"));
  EXPECT_THAT(outcome.err, HasSubstr("--help"));
}

TEST(CommandLine, SaysInOneSentenceThatThereIsNoDisplay) {
  const support::TempDir pictures;

  const Outcome outcome = run_to_the_end({pictures.path()});

  EXPECT_EQ(outcome.exit_code, 2);
  EXPECT_EQ(outcome.err,
            "photobrowser: There is no display here, so the gallery cannot show its window.\n");
}

TEST(CommandLine, NamesAFolderThatIsNotThere) {
  const Outcome outcome = run_to_the_end({"/nonexistent/pictures"});

  EXPECT_THAT(outcome.err,
              HasSubstr("/nonexistent/pictures cannot be read: No such file or directory."));
}

TEST(CommandLine, NamesEveryPlaceThatCannotBeRead) {
  const Outcome outcome = run_to_the_end({"/nonexistent/a", "/nonexistent/b"});

  EXPECT_THAT(outcome.err, HasSubstr("/nonexistent/a cannot be read"));
  EXPECT_THAT(outcome.err, HasSubstr("/nonexistent/b cannot be read"));
}

TEST(CommandLine, PutsANameThatWouldSteerTheTerminalIntoOneLine) {
  const Outcome outcome = run_to_the_end({"/nonexistent/\x1b[31m\nred"});

  EXPECT_THAT(outcome.err, Not(HasSubstr("\x1b")));
  EXPECT_THAT(outcome.err, HasSubstr("red cannot be read"));
}

TEST(CommandLine, DoesNotComplainOfAPicturesFolderThatNobodyHasMade) {
  const Outcome outcome = run_to_the_end({});

  EXPECT_EQ(outcome.err,
            "photobrowser: There is no display here, so the gallery cannot show its window.\n");
}

TEST(CommandLine, SpeaksTheLanguageOfTheUser) {
  g_setenv("LANGUAGE", "de", TRUE);

  const Outcome outcome = run_to_the_end({"/nonexistent/bilder"});

  EXPECT_THAT(outcome.err, HasSubstr("/nonexistent/bilder kann nicht gelesen werden"));
}

TEST(CommandLine, SaysThatItsResourceFilesAreMissing) {
  g_setenv("PHOTOBROWSER_ROOT", support::private_dir().c_str(), TRUE);

  const Outcome outcome = run_to_the_end({});

  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_THAT(outcome.err, HasSubstr("its resource files are missing"));
}

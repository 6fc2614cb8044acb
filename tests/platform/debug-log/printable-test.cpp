#include "debug-log/printable.hpp"

#include <gtest/gtest.h>

using phone::debug_log::printable;

TEST(Printable, KeepsPlainText) { EXPECT_EQ(printable("[f]item idx:3"), "[f]item idx:3"); }

TEST(Printable, KeepsLettersOfOtherScripts) { EXPECT_EQ(printable("Größe 写真"), "Größe 写真"); }

TEST(Printable, DropsTheNewlineAtTheEnd) { EXPECT_EQ(printable("done\n"), "done"); }

TEST(Printable, EscapesANewlineInsideAName) { EXPECT_EQ(printable("a\nb\n"), "a\\x0ab"); }

TEST(Printable, EscapesTheStartOfATerminalSequence) {
  EXPECT_EQ(printable("\x1b[31mred"), "\\x1b[31mred");
}

TEST(Printable, EscapesADelete) { EXPECT_EQ(printable("a\x7f"), "a\\x7f"); }

TEST(Printable, EscapesControlCharactersAboveAscii) {
  EXPECT_EQ(printable("\xc2\x9b"
                      "31m"),
            "\\xc2\\x9b31m");
}

TEST(Printable, EscapesCharactersThatTurnTheDirectionOfText) {
  EXPECT_EQ(printable("gpj.\xe2\x80\xae"), "gpj.\\xe2\\x80\\xae");
}

TEST(Printable, EscapesBytesThatAreNoUtf8) { EXPECT_EQ(printable("a\xff\xc3z"), "a\\xff\\xc3z"); }

TEST(Printable, EscapesACharacterThatIsCutOff) { EXPECT_EQ(printable("a\xe5\x86"), "a\\xe5\\x86"); }

TEST(Printable, GivesNothingForNothing) { EXPECT_EQ(printable(""), ""); }

#include "text.hpp"

#include <gtest/gtest.h>
#include <pb-util-resource.h>

#include <map>
#include <string>

using gallery::display_name;
using gallery::fill;
using gallery::one_line;
using gallery::Text;

namespace {

/// The strings of the package, for this test alone.
std::map<int, std::string> &strings() {
  static std::map<int, std::string> instance;
  return instance;
}

class Texts : public testing::Test {
 protected:
  static void say(Text id, const std::string &text) { strings()[static_cast<int>(id)] = text; }
};

}  // namespace

extern "C" const gchar *pb_get_res_string(gint id) {
  const auto found = strings().find(id);
  return found != strings().end() ? found->second.c_str() : nullptr;
}

TEST_F(Texts, AreNotThereWithoutTheirFile) { EXPECT_FALSE(gallery::load_texts()); }

TEST_F(Texts, AreTakenFromTheFile) {
  say(Text::kAlbums, "Alben");

  EXPECT_TRUE(gallery::load_texts());

  EXPECT_EQ(gallery::text(Text::kAlbums), "Alben");
}

TEST_F(Texts, StayWhenTheFileIsClosed) {
  say(Text::kAlbums, "Alben");
  gallery::load_texts();
  strings().clear();

  EXPECT_EQ(gallery::text(Text::kAlbums), "Alben");
}

TEST_F(Texts, OfTheLibraryAreLeftToIt) {
  strings()[1059] = "Locked";

  EXPECT_FALSE(gallery::load_texts());
}

TEST_F(Texts, AreFilledIn) {
  say(Text::kLookingThrough, "Looking through {folder}: {count} so far");
  gallery::load_texts();

  EXPECT_EQ(fill(Text::kLookingThrough, {{"folder", "Pictures"}, {"count", "12"}}),
            "Looking through Pictures: 12 so far");
}

TEST_F(Texts, AreFilledInAnyOrder) {
  say(Text::kLookingThrough, "{count} in {folder}, {count}");
  gallery::load_texts();

  EXPECT_EQ(fill(Text::kLookingThrough, {{"folder", "A"}, {"count", "1"}}), "1 in A, 1");
}

TEST_F(Texts, TakeBracesInANameAsTheyAre) {
  say(Text::kLookingThrough, "{folder} {count}");
  gallery::load_texts();

  EXPECT_EQ(fill(Text::kLookingThrough, {{"folder", "{count}"}, {"count", "1"}}), "{count} 1");
}

TEST_F(Texts, KeepBracesThatNameNothing) {
  say(Text::kLookingThrough, "{other} {folder");
  gallery::load_texts();

  EXPECT_EQ(fill(Text::kLookingThrough, {{"folder", "A"}}), "{other} {folder");
}

TEST(OneLine, KeepsALetterOfAnyScript) { EXPECT_EQ(one_line("Größe 写真 😀"), "Größe 写真 😀"); }

TEST(OneLine, ReplacesABreak) {
  EXPECT_EQ(one_line("a\nb"),
            "a\xef\xbf\xbd"
            "b");
}

TEST(OneLine, ReplacesWhatIsNoUtf8) { EXPECT_EQ(one_line("a\xff"), "a\xef\xbf\xbd"); }

TEST(OneLine, ReplacesWhatTurnsTheDirectionOfText) {
  EXPECT_EQ(one_line("\xe2\x80\xaegpj.exe"), "\xef\xbf\xbdgpj.exe");
}

TEST(OneLine, KeepsTheJoinerOfEmoji) { EXPECT_EQ(one_line("👩\xe2\x80\x8d👧"), "👩\xe2\x80\x8d👧"); }

TEST(OneLine, GivesNothingForNothing) { EXPECT_EQ(one_line(""), ""); }

TEST(DisplayName, IsTheLastPartOfAPath) { EXPECT_EQ(display_name("/a/b c.jpg"), "b c.jpg"); }

TEST(DisplayName, IsReadableForAnyBytes) {
  EXPECT_EQ(display_name("/a/\xe4.jpg"), "\xef\xbf\xbd.jpg");
}

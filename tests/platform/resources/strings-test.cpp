#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "glib-ptr.hpp"
#include "resource-manager.h"
#include "support/glib-test.hpp"
#include "support/temp-dir.hpp"

using support::take_glib_warnings;
using testing::ElementsAre;
using testing::StrEq;

namespace {

constexpr const char *kStringFile =
    PB_PACKAGE_DIR "/usr/apps/com.velmora.photobrowser/res/string/pb-res-string.rsr";

class Strings : public testing::Test {
 protected:
  Strings() {
    g_setenv("LANGUAGE", "C", TRUE);
    handle_ = rsrc_open_rsr(kStringFile);
  }
  ~Strings() override {
    rsrc_close_rsr(handle_);
    rsrc_free_strings();
  }

  gint handle_;
};

class StringOfTheLibrary : public Strings, public testing::WithParamInterface<int> {};
class StringOfThePhone : public testing::TestWithParam<int> {};

}  // namespace

TEST_F(Strings, OpenGivesAHandle) { EXPECT_GE(handle_, 0); }

TEST_F(Strings, AreCountedFrom1000) { EXPECT_THAT(rsrc_get_string(handle_, 0), StrEq("Photos")); }

TEST_P(StringOfTheLibrary, IsThere) {
  const gchar *text = rsrc_get_string(handle_, GetParam() - 1000);

  ASSERT_NE(text, nullptr);
  EXPECT_STRNE(text, "");
}

INSTANTIATE_TEST_SUITE_P(Of, StringOfTheLibrary,
                         testing::Values(1017, 1059, 1062, 1063, 1067, 1069, 1073, 1087, 1099, 1119,
                                         1125, 1133, 1134, 1135, 1155, 1164, 1168, 1179, 1180, 1188,
                                         1189, 1190, 1198));

TEST_P(StringOfThePhone, IsThere) {
  const gchar *text = rsrc_get_system_string(GetParam());

  ASSERT_NE(text, nullptr);
  EXPECT_STRNE(text, "");
}

INSTANTIATE_TEST_SUITE_P(Of, StringOfThePhone,
                         testing::Values(10035, 10066, 10105, 10114, 10239, 10289, 10307, 10473,
                                         10518));

TEST_F(Strings, FitTheNoticeAboutAddedFiles) {
  const std::string notice = "1000 " + std::string(rsrc_get_string(handle_, 67));

  EXPECT_LE(notice.size(), 20U);
}

TEST_F(Strings, ComeInTheLanguageOfTheUser) {
  const support::TempDir dir;
  const std::string file = dir.write("file", "[Strings]\n1000=Photos\n1000[de]=Fotos\n");
  g_setenv("LANGUAGE", "de", TRUE);
  g_setenv("LC_ALL", "de_DE.UTF-8", TRUE);
  const gint handle = rsrc_open_rsr(file.c_str());

  EXPECT_THAT(rsrc_get_string(handle, 0), StrEq("Fotos"));
  rsrc_close_rsr(handle);
}

struct Reader {
  const char *languages;
  const char *back;
};

class StringInTheLanguageOf : public testing::TestWithParam<Reader> {
 protected:
  StringInTheLanguageOf() {
    g_setenv("LANGUAGE", GetParam().languages, TRUE);
    handle_ = rsrc_open_rsr(kStringFile);
  }

  gint handle_;
};

TEST_P(StringInTheLanguageOf, TheUserIsTheFirstThatIsThere) {
  EXPECT_THAT(rsrc_get_string(handle_, 3), StrEq(GetParam().back));
}

INSTANTIATE_TEST_SUITE_P(Of, StringInTheLanguageOf,
                         testing::Values(Reader{"de_AT.UTF-8", "Zurück"},
                                         Reader{"de_CH@euro", "Zurück"}, Reader{"fr_CA", "Retour"},
                                         Reader{"es_MX", "Atrás"}, Reader{"ja_JP", "戻る"},
                                         Reader{"ar_EG", "رجوع"}, Reader{"en_GB", "Back"},
                                         Reader{"C", "Back"}, Reader{"it_IT", "Back"},
                                         Reader{"it:fr:de", "Retour"}, Reader{"en:de", "Back"},
                                         Reader{"en_US.UTF-8:de", "Back"}, Reader{"xx", "Back"}));

TEST(StringOfThePhoneInAnotherLanguage, IsThere) {
  g_setenv("LANGUAGE", "de_AT", TRUE);

  EXPECT_THAT(rsrc_get_system_string(10066), StrEq("Abbrechen"));
}

TEST(StringFile, ATextThatIsDamagedInOneLanguageComesInEnglish) {
  g_setenv("LANGUAGE", "de", TRUE);
  const support::TempDir dir;
  const std::string file = dir.write("file", "[Strings]\n1000=Photos\n1000[de]=\xff\n");
  const gint handle = rsrc_open_rsr(file.c_str());

  EXPECT_THAT(rsrc_get_string(handle, 0), StrEq("Photos"));
  rsrc_close_rsr(handle);
}

class Translations : public testing::TestWithParam<const char *> {
 protected:
  /// The words in braces, in alphabetical order.
  static std::multiset<std::string> placeholders(const std::string &text) {
    std::multiset<std::string> found;
    for (std::size_t at = text.find('{'); at != std::string::npos; at = text.find('{', at + 1)) {
      found.insert(text.substr(at, text.find('}', at) - at + 1));
    }
    return found;
  }
};

TEST_P(Translations, FillInTheSameWordsAsEnglish) {
  const std::unique_ptr<GKeyFile, pb::FreeWith<g_key_file_unref>> owner(g_key_file_new());
  GKeyFile *texts = owner.get();
  ASSERT_TRUE(g_key_file_load_from_file(texts, kStringFile, G_KEY_FILE_KEEP_TRANSLATIONS, nullptr));
  int compared = 0;
  for (gint id = 1000; id <= 1220; ++id) {
    const std::string key = std::to_string(id);
    const pb::StringPtr english(g_key_file_get_string(texts, "Strings", key.c_str(), nullptr));
    if (!english) continue;
    const pb::StringPtr text(
        g_key_file_get_string(texts, "Strings", (key + "[" + GetParam() + "]").c_str(), nullptr));
    ASSERT_TRUE(text) << id;
    EXPECT_EQ(placeholders(text.get()), placeholders(english.get())) << id;
    ++compared;
  }
  EXPECT_GT(compared, 40);
}

TEST_P(Translations, FitTheNoticeAboutAddedFiles) {
  g_setenv("LANGUAGE", GetParam(), TRUE);
  const gint handle = rsrc_open_rsr(kStringFile);

  EXPECT_LE(strlen("1000 ") + strlen(rsrc_get_string(handle, 67)), 20U);
  rsrc_close_rsr(handle);
}

INSTANTIATE_TEST_SUITE_P(Into, Translations, testing::Values("de", "fr", "es", "ja", "ar"));

TEST_F(Strings, StayUntilTheyAreFreed) {
  const gchar *text = rsrc_get_string(handle_, 0);
  rsrc_close_rsr(handle_);

  EXPECT_THAT(text, StrEq("Photos"));
}

TEST_F(Strings, AreTheSameForEveryCaller) {
  EXPECT_EQ(rsrc_get_string(handle_, 0), rsrc_get_string(handle_, 0));
}

TEST_F(Strings, CanBeHadAgainAfterTheyWereFreed) {
  ASSERT_NE(rsrc_get_string(handle_, 0), nullptr);
  rsrc_free_strings();
  rsrc_free_strings();

  EXPECT_THAT(rsrc_get_string(handle_, 0), StrEq("Photos"));
}

TEST_F(Strings, AnUnknownNumberStandsForItself) {
  EXPECT_THAT(rsrc_get_string(handle_, 220), StrEq("1220"));
  EXPECT_THAT(rsrc_get_system_string(1), StrEq("1"));
}

TEST_F(Strings, ANumberThatIsNoneHasNone) {
  EXPECT_EQ(rsrc_get_string(handle_, -1), nullptr);
  EXPECT_EQ(rsrc_get_string(handle_, G_MAXINT), nullptr);
}

TEST_F(Strings, AFileThatIsNotOpenHasNone) {
  EXPECT_EQ(rsrc_get_string(-1, 0), nullptr);
  rsrc_close_rsr(handle_);
  EXPECT_EQ(rsrc_get_string(handle_, 1), nullptr);
}

TEST_F(Strings, OfTwoFilesDoNotMix) {
  const support::TempDir dir;
  const std::string file = dir.write("file", "[Strings]\n1000=Other\n");
  const gint other = rsrc_open_rsr(file.c_str());

  EXPECT_THAT(rsrc_get_string(other, 0), StrEq("Other"));
  EXPECT_THAT(rsrc_get_string(handle_, 0), StrEq("Photos"));
  rsrc_close_rsr(other);
}

TEST_F(Strings, CanBeLookedUpFromManyThreads) {
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([this] {
      for (int i = 0; i < 200; ++i) EXPECT_NE(rsrc_get_string(handle_, i % 3), nullptr);
    });
  }
  for (std::thread &thread : threads) thread.join();
}

TEST(StringFile, ThatIsMissingIsRefused) {
  EXPECT_EQ(rsrc_open_rsr("/nonexistent/pb-res-string.rsr"), -1);
}

TEST(StringFile, WithoutANameIsRefused) { EXPECT_EQ(rsrc_open_rsr(nullptr), -1); }

TEST(StringFile, ThatIsNoKeyFileIsRefused) {
  const support::TempDir dir;
  const std::string file = dir.write("file", "\x7f\x45LF\n\n\n");

  EXPECT_EQ(rsrc_open_rsr(file.c_str()), -1);
}

TEST(StringFile, WithoutItsGroupIsRefused) {
  const support::TempDir dir;
  const std::string file = dir.write("file", "[Other]\n1000=Photos\n");

  EXPECT_EQ(rsrc_open_rsr(file.c_str()), -1);
}

TEST(StringFile, OfMoreThanAMegabyteIsRefused) {
  const support::TempDir dir;
  const std::string file =
      dir.write("file", "[Strings]\n1000=Photos\n#" + std::string(1U << 20U, 'x'));

  EXPECT_EQ(rsrc_open_rsr(file.c_str()), -1);
}

TEST(StringFile, TextThatIsNoUtf8IsRefused) {
  const support::TempDir dir;
  const std::string file = dir.write("file", "[Strings]\n1000=\xff\xfe\n");
  const gint handle = rsrc_open_rsr(file.c_str());

  EXPECT_THAT(rsrc_get_string(handle, 0), StrEq("1000"));
  EXPECT_THAT(take_glib_warnings(), ElementsAre("The text 1000 of the package cannot be read"));
  rsrc_close_rsr(handle);
}

TEST(StringFile, TextWithControlCharactersIsRefused) {
  const support::TempDir dir;
  const std::string file = dir.write("file", "[Strings]\n1000=a\x1b[31m\n");
  const gint handle = rsrc_open_rsr(file.c_str());

  EXPECT_THAT(rsrc_get_string(handle, 0), StrEq("1000"));
  EXPECT_THAT(take_glib_warnings(), ElementsAre("The text 1000 of the package cannot be read"));
  rsrc_close_rsr(handle);
}

TEST(StringFile, TextThatCannotBeReadIsReportedOnce) {
  const support::TempDir dir;
  const std::string file = dir.write("file", "[Strings]\n1000=\xff\xfe\n");
  const gint handle = rsrc_open_rsr(file.c_str());

  rsrc_get_string(handle, 0);
  rsrc_free_strings();
  rsrc_get_string(handle, 0);

  EXPECT_EQ(take_glib_warnings().size(), 1U);
  rsrc_close_rsr(handle);
}

TEST(StringFile, TextOfMoreThanAKilobyteIsRefused) {
  const support::TempDir dir;
  const std::string file = dir.write("file", "[Strings]\n1000=" + std::string(1025, 'x') + "\n");
  const gint handle = rsrc_open_rsr(file.c_str());

  EXPECT_THAT(rsrc_get_string(handle, 0), StrEq("1000"));
  EXPECT_THAT(take_glib_warnings(), ElementsAre("The text 1000 of the package cannot be read"));
  rsrc_close_rsr(handle);
}

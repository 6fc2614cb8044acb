#include <array>
#include <ostream>
#include <string>

#include "pb-util-settings.h"
#include "support/fake-platform.hpp"
#include "util/pb-util/fake-settings.hpp"

namespace {

using fake::settings;
using support::GlibTest;
using testing::ElementsAre;
using testing::IsEmpty;

struct Theme {
  int number;
  int index;
  const char *color;
  const char *plus_color;
};

void PrintTo(const Theme &theme, std::ostream *out) { *out << "theme " << theme.number; }

class ThemeTable : public testing::TestWithParam<Theme> {
 protected:
  void SetUp() override { settings().values["/CSC/Apps/Settings/DefTheme"] = GetParam().number; }
};

TEST_P(ThemeTable, GivesTheIndex) { EXPECT_EQ(mb_get_current_theme_value(), GetParam().index); }

TEST_P(ThemeTable, GivesTheColour) {
  std::array<gchar, 8> buffer{};

  mb_get_current_theme_value_string(buffer.data());

  EXPECT_STREQ(buffer.data(), GetParam().color);
}

TEST_P(ThemeTable, GivesThePlusColour) {
  std::array<gchar, 8> buffer{};

  mb_get_current_theme_plus_value_string(buffer.data());

  EXPECT_STREQ(buffer.data(), GetParam().plus_color);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ThemeTable,
    testing::Values(Theme{0, 7, "#E31818", "#910F10"}, Theme{1, 8, "#802C73", "#5C1C45"},
                    Theme{2, 4, "#007CC2", "#00519E"}, Theme{3, 5, "#00ACB6", "#008290"},
                    Theme{4, 3, "#D2007B", "#8D0052"}, Theme{5, 2, "#E98E00", "#CB5C0C"},
                    Theme{6, 6, "#BCBE00", "#979200"}, Theme{7, 6, "#BCBE00", "#979200"},
                    Theme{-1, 6, "#BCBE00", "#979200"}),
    [](const auto &row) { return "Row" + std::to_string(row.index); });

TEST(Theme, IsTheFirstForAMissingKey) { EXPECT_EQ(mb_get_current_theme_value(), 7); }

TEST(Theme, IsTheFirstWithoutAClient) {
  settings().has_client = false;

  EXPECT_EQ(mb_get_current_theme_value(), 7);
}

TEST(Theme, IsTheFirstAfterAFailedRead) {
  settings().failure = "no daemon";

  EXPECT_EQ(mb_get_current_theme_value(), 7);
  EXPECT_THAT(fake::platform().log, IsEmpty());
}

TEST(Theme, IsReadFromItsKey) {
  mb_get_current_theme_value();

  EXPECT_THAT(settings().calls,
              ElementsAre("type_init", "default_client", "get_int(/CSC/Apps/Settings/DefTheme)"));
  EXPECT_EQ(settings().live_clients, 0);
}

TEST(ThemeString, FillsEightBytes) {
  std::string buffer(10, 'x');

  mb_get_current_theme_value_string(buffer.data());

  EXPECT_EQ(buffer, std::string("#E31818\0xx", 10));
}

TEST(ThemeString, FillsEightBytesOfThePlusColour) {
  std::string buffer(10, 'x');

  mb_get_current_theme_plus_value_string(buffer.data());

  EXPECT_EQ(buffer, std::string("#910F10\0xx", 10));
}

TEST(ThemeColour, IsParsed) {
  GdkColor color{};

  EXPECT_TRUE(mb_util_get_themecolor_rgb_string(&color));

  EXPECT_EQ(color.red, 0xe3e3);
  EXPECT_EQ(color.green, 0x1818);
  EXPECT_EQ(color.blue, 0x1818);
}

TEST(ThemeColour, OfThePlusKindIsParsed) {
  GdkColor color{};

  EXPECT_TRUE(mb_util_get_themeplus_color_rgb_string(&color));

  EXPECT_EQ(color.red, 0x9191);
  EXPECT_EQ(color.green, 0x0f0f);
  EXPECT_EQ(color.blue, 0x1010);
}

TEST(ThemeColour, IsAPixelWithoutAlpha) { EXPECT_EQ(mb_util_get_theme_color_pixel(), 0xE3181800u); }

TEST(ThemeColour, HasItsComponentsInTheOrderRedGreenBlue) {
  settings().values["/CSC/Apps/Settings/DefTheme"] = 2;

  EXPECT_EQ(mb_util_get_theme_color_pixel(), 0x007CC200u);
}

class ThemeChecks : public GlibTest {};

TEST_F(ThemeChecks, WarnAboutAMissingBuffer) {
  mb_get_current_theme_value_string(nullptr);
  mb_get_current_theme_plus_value_string(nullptr);

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("mb_get_current_theme_value_string: assertion 'buffer' failed",
                          "mb_get_current_theme_plus_value_string: assertion 'buffer' failed"));
}

TEST_F(ThemeChecks, WarnAboutAMissingColour) {
  EXPECT_FALSE(mb_util_get_themecolor_rgb_string(nullptr));
  EXPECT_FALSE(mb_util_get_themeplus_color_rgb_string(nullptr));

  EXPECT_THAT(take_glib_warnings(),
              ElementsAre("mb_util_get_themecolor_rgb_string: assertion 'color' failed",
                          "mb_util_get_themeplus_color_rgb_string: assertion 'color' failed"));
}

}  // namespace

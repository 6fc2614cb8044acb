#include "phone-services/settings.hpp"

#include <gtest/gtest.h>

#include <clocale>
#include <optional>

#include "phone-settings.h"

using phone::settings::date_format;

TEST(DateFormat, OfGermanyIsDayMonthYear) { EXPECT_EQ(date_format("%d.%m.%Y"), 0); }

TEST(DateFormat, OfTheUnitedStatesIsMonthDayYear) { EXPECT_EQ(date_format("%m/%d/%y"), 1); }

TEST(DateFormat, OfJapanIsYearMonthDay) { EXPECT_EQ(date_format("%Y年%m月%d日"), 2); }

TEST(DateFormat, CanBeYearDayMonth) { EXPECT_EQ(date_format("%Y-%d-%m"), 3); }

TEST(DateFormat, KnowsTheShortFormsOfStrftime) {
  EXPECT_EQ(date_format("%F"), 2);
  EXPECT_EQ(date_format("%D"), 1);
}

TEST(DateFormat, SkipsModifiers) { EXPECT_EQ(date_format("%-d %b %Ey"), 0); }

TEST(DateFormat, TakesNoEscapedPercentSignForAField) { EXPECT_EQ(date_format("%%d%Y.%m.%d"), 2); }

TEST(DateFormat, WithoutAYearIsNone) { EXPECT_EQ(date_format("%d.%m."), std::nullopt); }

TEST(DateFormat, OfNothingIsNone) {
  EXPECT_EQ(date_format(""), std::nullopt);
  EXPECT_EQ(date_format("%"), std::nullopt);
}

TEST(Settings, AnswerTheDateFormatOfTheLocale) {
  setlocale(LC_ALL, "C");
  gint value = -1;

  EXPECT_EQ(settings_get_int(SETTINGS_DATE_FORMAT, &value), 0);

  EXPECT_EQ(value, 1);
}

TEST(Settings, AnUnknownNumberFailsAndLeavesTheValue) {
  gint value = 9;

  EXPECT_NE(settings_get_int(36, &value), 0);

  EXPECT_EQ(value, 9);
}

TEST(Settings, RefuseNothing) { EXPECT_NE(settings_get_int(SETTINGS_DATE_FORMAT, nullptr), 0); }

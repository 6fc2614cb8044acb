#include <array>
#include <cstdlib>
#include <string>

#include "pb-debug.h"
#include "pb-util-file.h"
#include "support/fake-platform.hpp"

namespace {

using fake::Logged;
using fake::platform;
using testing::ElementsAre;

constexpr time_t kThirdOfMay2010 = 1272844800;  // 2010-05-03 00:00:00 UTC

class DateString : public testing::Test {
 protected:
  static void use_format(int format) {
    platform().settings_get_int = [format](gint, gint *value) {
      *value = format;
      return 0;
    };
  }
  std::array<gchar, PB_DATE_SIZE> date_{};
};

TEST_F(DateString, ReadsSettingThirtyFive) {
  mb_util_get_date_string(kThirdOfMay2010, date_.data());

  EXPECT_THAT(platform().calls, ElementsAre("settings_get_int(35)"));
}

TEST_F(DateString, IsDayMonthYearInFormat0) {
  use_format(0);

  EXPECT_TRUE(mb_util_get_date_string(kThirdOfMay2010, date_.data()));

  EXPECT_STREQ(date_.data(), "03.05.2010");
}

TEST_F(DateString, IsMonthDayYearInFormat1) {
  use_format(1);

  mb_util_get_date_string(kThirdOfMay2010, date_.data());

  EXPECT_STREQ(date_.data(), "05.03.2010");
}

TEST_F(DateString, IsYearMonthDayInFormat2WithAnUnpaddedDay) {
  use_format(2);

  mb_util_get_date_string(kThirdOfMay2010, date_.data());

  EXPECT_STREQ(date_.data(), "2010.05.3");
}

TEST_F(DateString, IsYearDayMonthInFormat3WithAnUnpaddedMonth) {
  use_format(3);

  mb_util_get_date_string(kThirdOfMay2010, date_.data());

  EXPECT_STREQ(date_.data(), "2010.03.5");
}

TEST_F(DateString, IsEmptyInAnUnknownFormat) {
  use_format(4);
  date_.fill('k');

  EXPECT_TRUE(mb_util_get_date_string(kThirdOfMay2010, date_.data()));

  EXPECT_STREQ(date_.data(), "");
}

TEST_F(DateString, IsInFormat0AfterAFailedRead) {
  platform().settings_get_int = [](gint, gint *value) {
    *value = 2;
    return -1;
  };

  mb_util_get_date_string(kThirdOfMay2010, date_.data());

  EXPECT_STREQ(date_.data(), "03.05.2010");
}

TEST_F(DateString, FillsSixteenBytes) {
  std::string buffer(18, 'k');

  mb_util_get_date_string(kThirdOfMay2010, buffer.data());

  EXPECT_EQ(buffer, std::string("03.05.2010\0\0\0\0\0\0kk", 18));
}

TEST_F(DateString, IsLocal) {
  setenv("TZ", "XXX+5", 1);

  mb_util_get_date_string(kThirdOfMay2010, date_.data());

  EXPECT_STREQ(date_.data(), "02.05.2010");
}

TEST_F(DateString, StaysInItsFieldForADistantYear) {
  std::string buffer(18, 'k');

  EXPECT_TRUE(mb_util_get_date_string(time_t{1} << 55, buffer.data()));

  EXPECT_EQ(buffer.substr(15), std::string("\0kk", 3));
}

TEST_F(DateString, IsEmptyForATimeThatHasNoDate) {
  date_.fill('k');

  EXPECT_TRUE(mb_util_get_date_string(G_MAXINT64, date_.data()));

  EXPECT_STREQ(date_.data(), "");
}

TEST_F(DateString, LogsANullBuffer) {
  EXPECT_FALSE(mb_util_get_date_string(kThirdOfMay2010, nullptr));

  EXPECT_THAT(platform().log,
              ElementsAre(Logged(PB_LOG_ERROR, "[mb_util_get_date_string]pszDate=NULL\n")));
}

}  // namespace

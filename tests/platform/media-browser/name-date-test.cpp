#include "media-browser/name-date.hpp"

#include <glib.h>
#include <gmock/gmock.h>

#include <ctime>
#include <string>
#include <tuple>

namespace {

using phone::media::date_of_name;

/// The date that a name tells, as local time.
std::string told(std::string_view name) {
  const std::time_t date = date_of_name(name);
  if (date == 0) return "";
  std::tm parts{};
  localtime_r(&date, &parts);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
  return text;
}

TEST(DateOfName, ReadsCameraNames) {
  EXPECT_EQ(told("IMG_20230102_101112.jpg"), "2023-01-02 10:11:12");
  EXPECT_EQ(told("PXL_20230102_101112345.jpg"), "2023-01-02 10:11:12");
  EXPECT_EQ(told("20230102_101112.mp4"), "2023-01-02 10:11:12");
  EXPECT_EQ(told("20230102101112.jpg"), "2023-01-02 10:11:12");
}

TEST(DateOfName, ReadsScreenshots) {
  EXPECT_EQ(told("Screenshot from 2023-01-02 10-11-12.png"), "2023-01-02 10:11:12");
  EXPECT_EQ(told("Screenshot_2023-01-02-10-11-12.png"), "2023-01-02 10:11:12");
  EXPECT_EQ(told("2023-01-02 10.11.12.jpg"), "2023-01-02 10:11:12");
}

TEST(DateOfName, ReadsNamesOfMessengers) {
  EXPECT_EQ(told("WhatsApp Image 2023-01-02 at 10.11.12.jpeg"), "2023-01-02 10:11:12");
  EXPECT_EQ(told("signal-2023-01-02-101112.jpg"), "2023-01-02 10:11:12");
}

TEST(DateOfName, TakesNoonWhenThereIsNoTime) {
  EXPECT_EQ(told("IMG-20230102-WA0003.jpg"), "2023-01-02 12:00:00");
  EXPECT_EQ(told("2023.01.02.jpg"), "2023-01-02 12:00:00");
}

TEST(DateOfName, TakesNoonForATimeThatIsNone) {
  EXPECT_EQ(told("20230102_991112.jpg"), "2023-01-02 12:00:00");
}

TEST(DateOfName, ReadsMillisecondsSince1970) {
  EXPECT_EQ(date_of_name("FB_IMG_1672650000123.jpg"), 1672650000);
}

TEST(DateOfName, PassesOverWhatIsNoDate) {
  EXPECT_EQ(date_of_name("P1000101_123456.jpg"), 0);
  EXPECT_EQ(date_of_name("DSC01234.jpg"), 0);
  EXPECT_EQ(date_of_name("20231345.jpg"), 0);
  EXPECT_EQ(date_of_name("20230230.jpg"), 0);
  EXPECT_EQ(date_of_name("19000101.jpg"), 0);
  EXPECT_EQ(date_of_name("123456789012345678901234567890.jpg"), 0);
  EXPECT_EQ(date_of_name("9999999999999.jpg"), 0);
  EXPECT_EQ(date_of_name("2023-01_02.jpg"), 0);
  EXPECT_EQ(date_of_name(""), 0);
  EXPECT_EQ(date_of_name("2023"), 0);
  EXPECT_EQ(date_of_name("2023-"), 0);
}

TEST(DateOfName, FindsADateBehindOtherNumbers) {
  EXPECT_EQ(told("12345_20230102.jpg"), "2023-01-02 12:00:00");
}

TEST(DateOfName, KnowsLeapYears) {
  EXPECT_EQ(told("20240229.jpg"), "2024-02-29 12:00:00");
  EXPECT_EQ(date_of_name("20230229.jpg"), 0);
}

}  // namespace

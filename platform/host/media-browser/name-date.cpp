#include "media-browser/name-date.hpp"

#include <array>
#include <ctime>
#include <optional>

namespace phone::media {

namespace {

constexpr int kFirstYear = 1990;
constexpr int kLastYear = 2099;
/// September 2001: the first moment whose milliseconds have 13 digits.
constexpr gint64 kFirstMilliseconds = 1'000'000'000'000;
constexpr gint64 kLastMilliseconds = 4'102'444'800'000;

bool is_digit(char c) { return c >= '0' && c <= '9'; }

std::size_t digits_at(std::string_view text, std::size_t at) {
  std::size_t end = at;
  while (end < text.size() && is_digit(text[end])) ++end;
  return end - at;
}

gint64 number(std::string_view digits) {
  gint64 value = 0;
  for (const char c : digits) value = value * 10 + (c - '0');
  return value;
}

struct Day {
  int year;
  int month;
  int day;
};

struct Time {
  int hour = 12;
  int minute = 0;
  int second = 0;
};

std::optional<Day> checked_day(std::string_view year, std::string_view month,
                               std::string_view day) {
  constexpr std::array<int, 12> kDays{31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const Day result{static_cast<int>(number(year)), static_cast<int>(number(month)),
                   static_cast<int>(number(day))};
  if (result.year < kFirstYear || result.year > kLastYear) return std::nullopt;
  if (result.month < 1 || result.month > 12) return std::nullopt;
  const bool leap = result.year % 4 == 0 && (result.year % 100 != 0 || result.year % 400 == 0);
  int days = kDays[static_cast<std::size_t>(result.month - 1)];
  if (result.month == 2 && !leap) days = 28;
  if (result.day < 1 || result.day > days) return std::nullopt;
  return result;
}

std::optional<Time> checked_time(std::string_view hour, std::string_view minute,
                                 std::string_view second) {
  const Time result{static_cast<int>(number(hour)), static_cast<int>(number(minute)),
                    static_cast<int>(number(second))};
  if (result.hour > 23 || result.minute > 59 || result.second > 60) return std::nullopt;
  return result;
}

/// Three groups of digits with one and the same kind of separator: "10-11-12".
std::optional<Time> separated_time(std::string_view text) {
  if (text.size() < 8 || digits_at(text, 0) != 2 || digits_at(text, 3) != 2) return std::nullopt;
  const std::string_view separators = "-._:hm";
  if (separators.find(text[2]) == std::string_view::npos) return std::nullopt;
  if (separators.find(text[5]) == std::string_view::npos) return std::nullopt;
  if (digits_at(text, 6) < 2) return std::nullopt;
  return checked_time(text.substr(0, 2), text.substr(3, 2), text.substr(6, 2));
}

/// The time behind a date, after at most a few signs or " at ".
Time time_behind(std::string_view text) {
  std::size_t skipped = 0;
  if (text.substr(0, 4) == " at ") {
    skipped = 4;
  } else {
    while (skipped < text.size() && skipped < 3 &&
           std::string_view("-_. T,").find(text[skipped]) != std::string_view::npos) {
      ++skipped;
    }
  }
  text.remove_prefix(skipped);
  // Milliseconds may follow the six digits without a sign between.
  if (digits_at(text, 0) >= 6) {
    return checked_time(text.substr(0, 2), text.substr(2, 2), text.substr(4, 2)).value_or(Time{});
  }
  return separated_time(text).value_or(Time{});
}

gint64 local_seconds(const Day &day, const Time &time) {
  std::tm parts{};
  parts.tm_year = day.year - 1900;
  parts.tm_mon = day.month - 1;
  parts.tm_mday = day.day;
  parts.tm_hour = time.hour;
  parts.tm_min = time.minute;
  parts.tm_sec = time.second;
  parts.tm_isdst = -1;
  return mktime(&parts);
}

/// A run of digits that begins with a date: alone, or with the time straight behind it.
std::optional<gint64> packed_date(std::string_view name, std::size_t at, std::size_t length) {
  const std::string_view digits = name.substr(at, length);
  if (length == 13) {
    const gint64 milliseconds = number(digits);
    if (milliseconds < kFirstMilliseconds || milliseconds >= kLastMilliseconds) return std::nullopt;
    return milliseconds / 1000;
  }
  if (length != 8 && length != 14 && length != 17) return std::nullopt;
  const auto day = checked_day(digits.substr(0, 4), digits.substr(4, 2), digits.substr(6, 2));
  if (!day) return std::nullopt;
  return local_seconds(*day, time_behind(name.substr(at + 8)));
}

/// "2023-01-02", with the same sign twice.
std::optional<gint64> separated_date(std::string_view name, std::size_t at) {
  const std::string_view text = name.substr(at);
  if (text.size() < 10 || std::string_view("-_. ").find(text[4]) == std::string_view::npos ||
      text[7] != text[4] || digits_at(text, 5) != 2 || digits_at(text, 8) != 2) {
    return std::nullopt;
  }
  const auto day = checked_day(text.substr(0, 4), text.substr(5, 2), text.substr(8, 2));
  if (!day) return std::nullopt;
  return local_seconds(*day, time_behind(text.substr(10)));
}

}  // namespace

gint64 date_of_name(std::string_view name) {
  std::size_t at = 0;
  while (at < name.size()) {
    const std::size_t length = digits_at(name, at);
    if (length == 0) {
      ++at;
      continue;
    }
    const auto date = length == 4 ? separated_date(name, at) : packed_date(name, at, length);
    if (date) return *date;
    at += length;
  }
  return 0;
}

}  // namespace phone::media

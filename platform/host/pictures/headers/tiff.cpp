#include <algorithm>
#include <chrono>
#include <ctime>
#include <optional>

#include "pictures/headers/private.hpp"

namespace phone::pictures {
namespace {

constexpr int kMostEntries = 512;

enum Tag : unsigned {
  kPanasonicWidth = 0x0002,
  kPanasonicHeight = 0x0003,
  kNewSubfileType = 0x00fe,
  kWidth = 0x0100,
  kHeight = 0x0101,
  kCompression = 0x0103,
  kMake = 0x010f,
  kOrientation = 0x0112,
  kDateTime = 0x0132,
  kSubDirectories = 0x014a,
  kPreviewOffset = 0x0201,
  kPreviewLength = 0x0202,
  kExifDirectory = 0x8769,
  kGpsDirectory = 0x8825,
  kDngVersion = 0xc612,
  kDateTimeOriginal = 0x9003,
  kDateTimeDigitized = 0x9004,
  kOffsetTime = 0x9010,
  kOffsetTimeOriginal = 0x9011,
  kOffsetTimeDigitized = 0x9012,
  kGpsLatitude = 2,
  kGpsLongitude = 4,
};

/// A TIFF structure inside a file: positions count from its own beginning and never leave it.
struct Tiff {
  Source &source;
  std::uint64_t base;
  std::uint64_t length;
  bool big_endian = false;

  Bytes at(std::uint64_t offset, std::size_t size) const {
    if (offset > length || size > length - offset) return {};
    return source.at(base + offset, size);
  }
  std::uint32_t u16(Bytes bytes, std::size_t i) const {
    return big_endian ? big16(bytes, i) : little16(bytes, i);
  }
  std::uint32_t u32(Bytes bytes, std::size_t i) const {
    return big_endian ? big32(bytes, i) : little32(bytes, i);
  }
};

struct Entry {
  unsigned tag;
  unsigned count;
  /// The value if it is one whole number, nothing for text and fractions.
  std::optional<std::uint32_t> number;
  /// Where a value lies that is longer than four bytes.
  std::uint32_t offset;
};

Entry read_entry(const Tiff &tiff, Bytes bytes) {
  Entry entry{tiff.u16(bytes, 0), tiff.u32(bytes, 4), std::nullopt, tiff.u32(bytes, 8)};
  switch (tiff.u16(bytes, 2)) {
    case 1:
      entry.number = byte_at(bytes, 8);
      break;
    case 3:
      entry.number = tiff.u16(bytes, 8);
      break;
    case 4:
    case 13:
      entry.number = entry.offset;
      break;
    default:
      break;
  }
  return entry;
}

/// Gives every entry of a directory to `visit` and returns where the next directory is, 0 if
/// there is none.
template <typename Visit>
std::uint32_t walk(const Tiff &tiff, std::uint64_t directory, Visit visit) {
  const Bytes count_field = tiff.at(directory, 2);
  if (count_field.empty()) return 0;
  const std::uint32_t count = tiff.u16(count_field, 0);
  for (std::uint32_t i = 0; i < count && i < kMostEntries; ++i) {
    const Bytes bytes = tiff.at(directory + 2 + 12ull * i, 12);
    if (bytes.empty()) return 0;
    visit(read_entry(tiff, bytes));
  }
  if (count > kMostEntries) return 0;
  const Bytes next = tiff.at(directory + 2 + 12ull * count, 4);
  return next.empty() ? 0 : tiff.u32(next, 0);
}

std::optional<int> digits(Bytes text, std::size_t i, int count) {
  int value = 0;
  for (int k = 0; k < count; ++k) {
    const int digit = byte_at(text, i + static_cast<std::size_t>(k)) - '0';
    if (digit < 0 || digit > 9) return std::nullopt;
    value = value * 10 + digit;
  }
  return value;
}

/// "2024:05:17 18:30:01" with whatever separators.
std::optional<std::tm> parse_date(Bytes text) {
  if (text.size() < 19) return std::nullopt;
  const auto year = digits(text, 0, 4), month = digits(text, 5, 2), day = digits(text, 8, 2);
  const auto hour = digits(text, 11, 2), minute = digits(text, 14, 2), second = digits(text, 17, 2);
  if (!year || !month || !day || !hour || !minute || !second) return std::nullopt;
  const auto date = std::chrono::year(*year) / *month / *day;
  if (!date.ok() || *year == 0 || *hour > 23 || *minute > 59 || *second > 60) return std::nullopt;
  std::tm tm{};
  tm.tm_year = *year - 1900;
  tm.tm_mon = *month - 1;
  tm.tm_mday = *day;
  tm.tm_hour = *hour;
  tm.tm_min = *minute;
  tm.tm_sec = *second;
  tm.tm_isdst = -1;
  return tm;
}

/// "+09:00" as seconds.
std::optional<int> parse_offset(Bytes text) {
  if (text.size() < 6) return std::nullopt;
  const char sign = static_cast<char>(byte_at(text, 0));
  const auto hours = digits(text, 1, 2), minutes = digits(text, 4, 2);
  if ((sign != '+' && sign != '-') || !hours || !minutes || *hours > 15 || *minutes > 59) {
    return std::nullopt;
  }
  const int seconds = *hours * 3600 + *minutes * 60;
  return sign == '-' ? -seconds : seconds;
}

/// The dates that EXIF data may hold, best first, each with its offset from UTC.
struct Dates {
  enum Kind { kTaken, kMadeDigital, kChanged, kKinds };
  std::optional<std::tm> date[kKinds];
  std::optional<int> offset[kKinds];

  void set_date(const Tiff &tiff, const Entry &entry, Kind kind) {
    if (entry.count >= 19) date[kind] = parse_date(tiff.at(entry.offset, 19));
  }
  void set_offset(const Tiff &tiff, const Entry &entry, Kind kind) {
    if (entry.count >= 6) offset[kind] = parse_offset(tiff.at(entry.offset, 6));
  }
  void store(Header &header) const {
    for (int kind = 0; kind < kKinds; ++kind) {
      if (!date[kind]) continue;
      std::tm tm = *date[kind];
      header.utc_offset_known = offset[kind] ? 1 : 0;
      header.date_taken = offset[kind] ? timegm(&tm) - *offset[kind] : mktime(&tm);
      return;
    }
  }
};

void read_exif_directory(const Tiff &tiff, std::uint32_t directory, Dates &dates) {
  walk(tiff, directory, [&](const Entry &entry) {
    switch (entry.tag) {
      case kDateTimeOriginal:
        return dates.set_date(tiff, entry, Dates::kTaken);
      case kDateTimeDigitized:
        return dates.set_date(tiff, entry, Dates::kMadeDigital);
      case kOffsetTimeOriginal:
        return dates.set_offset(tiff, entry, Dates::kTaken);
      case kOffsetTimeDigitized:
        return dates.set_offset(tiff, entry, Dates::kMadeDigital);
      case kOffsetTime:
        return dates.set_offset(tiff, entry, Dates::kChanged);
      default:
        return;
    }
  });
}

/// Some cameras write a GPS directory without a position; only a position counts.
bool has_position(const Tiff &tiff, std::uint32_t directory) {
  bool latitude = false;
  bool longitude = false;
  walk(tiff, directory, [&](const Entry &entry) {
    latitude |= entry.tag == kGpsLatitude && entry.count == 3;
    longitude |= entry.tag == kGpsLongitude && entry.count == 3;
  });
  return latitude && longitude;
}

void read_preview(const Tiff &tiff, std::uint32_t directory, Header &header) {
  std::uint32_t offset = 0;
  std::uint32_t length = 0;
  walk(tiff, directory, [&](const Entry &entry) {
    if (entry.tag == kPreviewOffset) offset = entry.number.value_or(0);
    if (entry.tag == kPreviewLength) length = entry.number.value_or(0);
  });
  if (offset == 0 || length < 4 || offset > tiff.length || length > tiff.length - offset) return;
  header.preview_offset = static_cast<gint64>(tiff.base + offset);
  header.preview_length = length;
}

struct MainDirectory {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t compression = 0;
  std::uint32_t directories = 0;  ///< where their positions are, or the position of the only one
  std::uint32_t directories_count = 0;
  bool has_make = false;
  bool is_dng = false;
  bool is_reduced = false;

  /// A picture of a sensor: codings that only cameras use, or a small picture first and the real
  /// one in a directory below.
  [[nodiscard]] bool is_raw() const {
    const bool odd_coding = compression == 65535 || compression == 34713 || compression == 32767 ||
                            compression == 32769 || compression == 32770;
    return is_dng || (has_make && (odd_coding || (is_reduced && directories != 0)));
  }
};

/// 42, and what two makers of cameras write instead.
bool is_version(std::uint32_t version) {
  return version == 42 || version == 0x4f52 || version == 0x5352 || version == 0x55;
}

/// The largest of the pictures in the directories below: the other ones are for looking at.
void read_directories_below(const Tiff &tiff, MainDirectory &main) {
  constexpr std::uint32_t kMostDirectories = 8;
  const std::uint32_t count = std::min(main.directories_count, kMostDirectories);
  for (std::uint32_t i = 0; i < count; ++i) {
    std::uint32_t directory = main.directories;
    if (main.directories_count > 1) {
      const Bytes position = tiff.at(main.directories + 4ull * i, 4);
      if (position.empty()) return;
      directory = tiff.u32(position, 0);
    }
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    walk(tiff, directory, [&](const Entry &entry) {
      if (entry.tag == kWidth) width = entry.number.value_or(0);
      if (entry.tag == kHeight) height = entry.number.value_or(0);
    });
    if (static_cast<std::uint64_t>(width) * height >
        static_cast<std::uint64_t>(main.width) * main.height) {
      main.width = width;
      main.height = height;
    }
  }
}

/// @return nothing when the bytes are no TIFF structure
std::optional<MainDirectory> read_structure(Tiff tiff, bool with_preview, Header &header) {
  const Bytes start = tiff.at(0, 8);
  if (start.empty()) return std::nullopt;
  tiff.big_endian = has_text(start, 0, "MM");
  if (!tiff.big_endian && !has_text(start, 0, "II")) return std::nullopt;
  const std::uint32_t version = tiff.u16(start, 2);
  if (!is_version(version)) return std::nullopt;

  header.has_exif = true;
  MainDirectory main;
  Dates dates;
  std::uint32_t exif = 0;
  std::uint32_t gps = 0;
  const std::uint32_t next = walk(tiff, tiff.u32(start, 4), [&](const Entry &entry) {
    const std::uint32_t number = entry.number.value_or(0);
    if (entry.tag == kWidth) main.width = number;
    if (entry.tag == kHeight) main.height = number;
    if (entry.tag == kPanasonicWidth && version == 0x55) main.width = number;
    if (entry.tag == kPanasonicHeight && version == 0x55) main.height = number;
    if (entry.tag == kCompression) main.compression = number;
    if (entry.tag == kMake) main.has_make = true;
    if (entry.tag == kDngVersion) main.is_dng = true;
    if (entry.tag == kNewSubfileType) main.is_reduced = (number & 1) != 0;
    if (entry.tag == kSubDirectories) {
      main.directories = entry.offset;
      main.directories_count = entry.count;
    }
    if (entry.tag == kOrientation && number >= 1 && number <= 8) {
      header.orientation = static_cast<int>(number);
      header.has_orientation = true;
    }
    if (entry.tag == kDateTime) dates.set_date(tiff, entry, Dates::kChanged);
    if (entry.tag == kExifDirectory) exif = number;
    if (entry.tag == kGpsDirectory) gps = number;
  });
  if (exif != 0) read_exif_directory(tiff, exif, dates);
  if (gps != 0) header.has_gps = has_position(tiff, gps);
  if (main.is_raw()) read_directories_below(tiff, main);
  if (with_preview && next != 0) read_preview(tiff, next, header);
  dates.store(header);
  return main;
}

}  // namespace

void read_exif(Source &source, std::uint64_t base, std::uint64_t length, bool with_preview,
               Header &header) {
  read_structure(Tiff{source, base, length}, with_preview, header);
}

void read_tiff_at(Source &source, std::uint64_t base, std::uint64_t length, Header &header) {
  const auto main = read_structure(Tiff{source, base, length}, false, header);
  if (!main) return;
  if (main->is_raw()) header.format = Format::kRaw;
  set_size(header, main->width, main->height);
}

void read_tiff(Source &source, Header &header) {
  constexpr std::uint64_t kWholeFile = 0xffffffff;
  read_tiff_at(source, 0, kWholeFile, header);
}

}  // namespace phone::pictures

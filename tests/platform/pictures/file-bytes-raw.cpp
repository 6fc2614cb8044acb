#include <gtest/gtest.h>

#include "file-bytes.hpp"

namespace test {
namespace {

/// A TIFF directory whose longer values stand behind it.
class Directory {
 public:
  explicit Directory(std::size_t offset) : offset_(offset) {}

  void short_number(unsigned tag, unsigned value) {
    add(tag, 3, 1, little(value, 2) + Bytes(2, '\0'));
  }
  void number(unsigned tag, std::uint64_t value) { add(tag, 4, 1, little(value, 4)); }
  void bytes(unsigned tag, const Bytes &value) { add(tag, 1, value.size(), value); }
  void shorts(unsigned tag, const Bytes &values) { add(tag, 3, values.size() / 2, values); }
  void text(unsigned tag, const Bytes &value) {
    const Bytes whole = value + '\0';
    add(tag, 2, whole.size(), whole);
  }

  /// All of it, `entries` of them: known beforehand, since places depend on it.
  [[nodiscard]] Bytes end(std::size_t entries) const {
    EXPECT_EQ(entries, values_.size());
    Bytes table = little(entries, 2);
    Bytes behind;
    const std::size_t begin = offset_ + 2 + entries * 12 + 4;
    for (const auto &[head, value] : values_) {
      if (value.size() <= 4) {
        table += head + value + Bytes(4 - value.size(), '\0');
      } else {
        table += head + little(begin + behind.size(), 4);
        behind += value;
        if (behind.size() % 2 != 0) behind += '\0';
      }
    }
    return table + little(0, 4) + behind;
  }

 private:
  void add(unsigned tag, unsigned type, std::uint64_t count, const Bytes &value) {
    values_.emplace_back(little(tag, 2) + little(type, 2) + little(count, 4), value);
  }

  std::size_t offset_;
  std::vector<std::pair<Bytes, Bytes>> values_;
};

Bytes padded(Bytes bytes, std::size_t size) {
  EXPECT_LE(bytes.size(), size);
  bytes.resize(size, '\0');
  return bytes;
}

constexpr std::size_t kDirectorySize = 512;

Bytes sensor_directory(std::size_t offset, std::size_t data, int width, int height) {
  Directory directory(offset);
  directory.number(0x00fe, 0);
  directory.number(0x0100, static_cast<unsigned>(width));
  directory.number(0x0101, static_cast<unsigned>(height));
  directory.short_number(0x0102, 16);
  directory.short_number(0x0103, 1);
  directory.short_number(0x0106, 32803);
  directory.number(0x0111, data);
  directory.short_number(0x0115, 1);
  directory.number(0x0116, static_cast<unsigned>(height));
  directory.number(0x0117, static_cast<std::uint64_t>(width) * static_cast<unsigned>(height) * 2);
  directory.shorts(0x828d, little(2, 2) + little(2, 2));
  directory.bytes(0x828e, Bytes("\0\1\1\2", 4));
  return directory.end(12);
}

}  // namespace

Bytes dng_of(const Bytes &preview, int preview_width, int preview_height, int width, int height,
             int orientation) {
  constexpr std::size_t kFirst = 8;
  constexpr std::size_t kSecond = kFirst + kDirectorySize;
  constexpr std::size_t kPreview = kSecond + kDirectorySize;
  const std::size_t sensor = kPreview + preview.size();
  Directory first(kFirst);
  first.number(0x00fe, 1);
  first.number(0x0100, static_cast<unsigned>(preview_width));
  first.number(0x0101, static_cast<unsigned>(preview_height));
  first.shorts(0x0102, little(8, 2) + little(8, 2) + little(8, 2));
  first.short_number(0x0103, 7);
  first.short_number(0x0106, 6);
  first.text(0x010f, "Maker");
  first.text(0x0110, "Camera");
  first.number(0x0111, kPreview);
  first.short_number(0x0112, static_cast<unsigned>(orientation));
  first.short_number(0x0115, 3);
  first.number(0x0116, static_cast<unsigned>(preview_height));
  first.number(0x0117, preview.size());
  first.text(0x0132, "2024:05:17 18:30:01");
  first.number(0x014a, kSecond);
  first.bytes(0xc612, Bytes("\1\4\0\0", 4));
  first.text(0xc614, "Maker Camera");
  return Bytes("II*\0", 4) + little(kFirst, 4) + padded(first.end(17), kDirectorySize) +
         padded(sensor_directory(kSecond, sensor, width, height), kDirectorySize) + preview +
         Bytes(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 2, '\1');
}

}  // namespace test

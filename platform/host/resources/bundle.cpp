#include "resources/bundle.hpp"

#include <glib.h>

#include <cstdint>
#include <cstring>

namespace phone::resources {
namespace {

constexpr std::string_view kSignature = "GVariant";
constexpr std::size_t kRootAt = 16;    // of two words: where the table begins and ends
constexpr std::size_t kItemSize = 24;  // of an entry of the table
constexpr std::uint32_t kBloomMask = (1U << 27U) - 1;
constexpr std::string_view kValueType("\0(uuay)", 7);  // behind every value: size, flags, bytes

std::uint32_t word_at(std::string_view bytes, std::size_t at) {
  std::uint32_t word = 0;
  memcpy(&word, bytes.data() + at, sizeof word);
  return GUINT32_FROM_LE(word);
}

/// The bytes from `start` to `end`, or nothing when they are not all there.
std::optional<std::string_view> slice(std::string_view bytes, std::uint32_t start,
                                      std::uint32_t end) {
  if (start > end || end > bytes.size()) return std::nullopt;
  return bytes.substr(start, end - start);
}

/// The entries of the table, without the hashing that stands in front of them.
std::optional<std::string_view> items_of(std::string_view bytes) {
  if (bytes.size() < kRootAt + 8 || !bytes.starts_with(kSignature)) return std::nullopt;
  const auto table = slice(bytes, word_at(bytes, kRootAt), word_at(bytes, kRootAt + 4));
  if (!table || table->size() < 8) return std::nullopt;
  const std::uint64_t filter_words = word_at(*table, 0) & kBloomMask;
  const std::uint64_t buckets = word_at(*table, 4);
  const std::uint64_t hashing = 8 + 4 * (filter_words + buckets);
  if (hashing > table->size()) return std::nullopt;
  return table->substr(hashing);
}

/// The file that a value holds; nothing for a compressed one, which unpacks to any size.
std::optional<std::string_view> file_in(std::string_view value) {
  if (!value.ends_with(kValueType)) return std::nullopt;
  value.remove_suffix(kValueType.size());
  if (value.size() < 9) return std::nullopt;
  const std::uint32_t size = word_at(value, 0);
  const std::uint32_t flags = word_at(value, 4);
  if (flags != 0 || size != value.size() - 9) return std::nullopt;  // a NUL stands behind the file
  return value.substr(8, size);
}

}  // namespace

std::optional<std::map<std::string, std::string_view>> read_bundle(std::string_view bytes) {
  const auto items = items_of(bytes);
  if (!items) return std::nullopt;

  std::map<std::string, std::string_view> files;
  for (std::size_t at = 0; at + kItemSize <= items->size(); at += kItemSize) {
    const std::string_view item = items->substr(at, kItemSize);
    if (item[14] != 'v') continue;
    const std::uint32_t name_start = word_at(item, 8);
    const std::uint32_t name_size = word_at(item, 12) & 0xffffU;
    const auto name = name_start <= bytes.size() && name_size <= bytes.size() - name_start
                          ? std::optional(bytes.substr(name_start, name_size))
                          : std::nullopt;
    const auto value = slice(bytes, word_at(item, 16), word_at(item, 20));
    const auto file = value ? file_in(*value) : std::nullopt;
    if (name && file) files.emplace(*name, *file);
  }
  return files;
}

}  // namespace phone::resources

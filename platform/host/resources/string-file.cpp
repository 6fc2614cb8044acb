#include "resources/string-file.hpp"

#include <algorithm>

#include "resources/file.hpp"

namespace phone::resources {
namespace {

constexpr const char *kGroup = "Strings";

/// Newlines are layout; any other control character has no place on a label.
bool is_plain(std::string_view text) {
  return std::none_of(text.begin(), text.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < 0x20 && c != '\n') || byte == 0x7f;
  });
}

/// Texts without a language are English. The key file's own search does not know that: for a user
/// who reads English before German it would find the German text first.
bool is_english(std::string_view language) {
  if (language == "C" || language == "POSIX" || language == "en") return true;
  return language.starts_with("en_") || language.starts_with("en.") || language.starts_with("en@");
}

}  // namespace

std::unique_ptr<StringFile> StringFile::parse(std::string_view text) {
  KeyFilePtr keys(g_key_file_new());
  if (!g_key_file_load_from_data(keys.get(), text.data(), text.size(), G_KEY_FILE_NONE, nullptr) ||
      !g_key_file_has_group(keys.get(), kGroup)) {
    return nullptr;
  }
  return std::unique_ptr<StringFile>(new StringFile(std::move(keys)));
}

std::unique_ptr<StringFile> StringFile::open(const char *path) {
  const auto text = read_whole(path, kMaxFile);
  return text ? parse(*text) : nullptr;
}

bool StringFile::has(int id) const {
  return g_key_file_has_key(keys_.get(), kGroup, std::to_string(id).c_str(), nullptr);
}

std::optional<std::string> StringFile::find(const std::string &key) const {
  const pb::StringPtr value(g_key_file_get_string(keys_.get(), kGroup, key.c_str(), nullptr));
  if (!value) return std::nullopt;
  std::string text(value.get());
  if (text.size() > kMaxString || !is_plain(text)) return std::nullopt;
  return text;
}

std::optional<std::string> StringFile::get(int id) const {
  const std::string key = std::to_string(id);
  for (const gchar *const *language = g_get_language_names(); *language != nullptr; ++language) {
    if (is_english(*language)) break;
    if (auto text = find(key + "[" + *language + "]")) return text;
  }
  return find(key);
}

}  // namespace phone::resources

/// One table of strings by number, in the language of the user.
#pragma once

#include <glib.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "glib-ptr.hpp"

namespace phone::resources {

using KeyFilePtr = std::unique_ptr<GKeyFile, pb::FreeWith<g_key_file_unref>>;

/// A key file with the one group "Strings" and keys such as "1059" and "1059[de]".
class StringFile {
 public:
  static constexpr std::size_t kMaxFile = 1U << 20U;
  static constexpr std::size_t kMaxString = 1024;  ///< bytes

  /// @return NULL for text that is no such key file
  static std::unique_ptr<StringFile> parse(std::string_view text);
  /// @return NULL for a file that is missing, too large or no such key file
  static std::unique_ptr<StringFile> open(const char *path);

  /// Whether there is a text of this number, be it fit to be shown or not.
  [[nodiscard]] bool has(int id) const;

  /// In the first of the user's languages that has it, else in English: de_AT finds German.
  /// Nothing for an unknown number and for text that is not plain UTF-8 within the limit.
  [[nodiscard]] std::optional<std::string> get(int id) const;

 private:
  [[nodiscard]] std::optional<std::string> find(const std::string &key) const;

  explicit StringFile(KeyFilePtr keys) : keys_(std::move(keys)) {}
  KeyFilePtr keys_;
};

}  // namespace phone::resources

#include "debug-log/printable.hpp"

#include <glib.h>

#include <array>

namespace phone::debug_log {
namespace {

void append_escaped(std::string &line, std::string_view bytes) {
  for (const char c : bytes) {
    std::array<char, 5> escape{};
    g_snprintf(escape.data(), escape.size(), "\\x%02x", static_cast<unsigned char>(c));
    line += escape.data();
  }
}

}  // namespace

std::string printable(std::string_view text) {
  if (text.ends_with('\n')) text.remove_suffix(1);
  std::string line;
  line.reserve(text.size());
  while (!text.empty()) {
    const auto first = static_cast<unsigned char>(text.front());
    if (first >= 0x20 && first < 0x7f) {
      line += text.front();
      text.remove_prefix(1);
      continue;
    }
    const gunichar decoded =
        g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
    const bool valid = decoded != static_cast<gunichar>(-1) && decoded != static_cast<gunichar>(-2);
    const std::size_t length =
        valid ? static_cast<std::size_t>(g_unichar_to_utf8(decoded, nullptr)) : 1;
    if (valid && g_unichar_isprint(decoded)) {
      line += text.substr(0, length);
    } else {
      append_escaped(line, text.substr(0, length));
    }
    text.remove_prefix(length);
  }
  return line;
}

}  // namespace phone::debug_log

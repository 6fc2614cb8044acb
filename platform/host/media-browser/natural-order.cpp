#include "media-browser/natural-order.hpp"

#include <glib.h>

#include <array>

namespace phone::media {

namespace {

constexpr gunichar kBehindAllCharacters = 0x110000;

bool is_digit(char c) { return c >= '0' && c <= '9'; }

gunichar character_at(std::string_view text) {
  return g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
}

/// Marks that stand alone only tell composed and decomposed spellings apart.
void skip_marks(std::string_view &rest) {
  while (!rest.empty() && static_cast<unsigned char>(rest.front()) >= 0x80) {
    const gunichar character = character_at(rest);
    if (character >= kBehindAllCharacters || g_unichar_ismark(character) == FALSE) return;
    rest.remove_prefix(static_cast<std::size_t>(g_unichar_to_utf8(character, nullptr)));
  }
}

/// Takes one character off the front and gives it without case and accents.
gunichar take_folded(std::string_view &rest) {
  const auto byte = static_cast<unsigned char>(rest.front());
  if (byte < 0x80) {
    rest.remove_prefix(1);
    return static_cast<gunichar>(g_ascii_tolower(static_cast<gchar>(byte)));
  }
  const gunichar character = character_at(rest);
  if (character >= kBehindAllCharacters) {
    rest.remove_prefix(1);
    return kBehindAllCharacters + byte;
  }
  rest.remove_prefix(static_cast<std::size_t>(g_unichar_to_utf8(character, nullptr)));
  std::array<gunichar, G_UNICHAR_MAX_DECOMPOSITION_LENGTH> parts{};
  g_unichar_fully_decompose(character, FALSE, parts.data(), parts.size());
  return g_unichar_tolower(parts.front());
}

/// Takes the digits at the front, without leading zeros.
std::string_view take_number(std::string_view &rest) {
  std::size_t zeros = 0;
  while (zeros < rest.size() && rest[zeros] == '0') ++zeros;
  std::size_t end = zeros;
  while (end < rest.size() && is_digit(rest[end])) ++end;
  const std::string_view number = rest.substr(zeros, end - zeros);
  rest.remove_prefix(end);
  return number;
}

int compare_numbers(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  return a.compare(b);
}

}  // namespace

int compare_naturally(std::string_view a, std::string_view b) {
  std::string_view rest_a = a;
  std::string_view rest_b = b;
  while (true) {
    skip_marks(rest_a);
    skip_marks(rest_b);
    if (rest_a.empty() || rest_b.empty()) break;
    if (is_digit(rest_a.front()) && is_digit(rest_b.front())) {
      const int order = compare_numbers(take_number(rest_a), take_number(rest_b));
      if (order != 0) return order;
      continue;
    }
    const gunichar char_a = take_folded(rest_a);
    const gunichar char_b = take_folded(rest_b);
    if (char_a != char_b) return char_a < char_b ? -1 : 1;
  }
  if (rest_a.empty() != rest_b.empty()) return rest_a.empty() ? -1 : 1;
  return a.compare(b);
}

}  // namespace phone::media

#include "media-browser/display.hpp"

#include <glib.h>

#include "glib-ptr.hpp"

namespace phone::media {

namespace {

/// Bytes of a path that a sentence shows in whole.
constexpr std::size_t kLongestShown = 300;

bool continues_a_character(char c) { return (static_cast<unsigned char>(c) & 0xc0) == 0x80; }

}  // namespace

std::string display_text(std::string_view bytes) {
  const pb::StringPtr valid(g_utf8_make_valid(bytes.data(), static_cast<gssize>(bytes.size())));
  std::string text;
  for (const char *at = valid.get(); *at != '\0'; at = g_utf8_next_char(at)) {
    const gunichar character = g_utf8_get_char(at);
    if (g_unichar_iscntrl(character)) {
      text += ' ';
    } else {
      text.append(at, static_cast<std::size_t>(g_utf8_next_char(at) - at));
    }
  }
  return text;
}

std::string display_name(std::string_view path) {
  std::string text = display_text(path);
  if (text.size() > kLongestShown) {
    const std::string head(cut_text(text, kLongestShown / 2));
    std::size_t tail = text.size() - kLongestShown / 2;
    while (tail < text.size() && continues_a_character(text[tail])) ++tail;
    text = head + "\u2026" + text.substr(tail);
  }
  return "\u201c" + text + "\u201d";
}

std::string_view cut_text(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  std::size_t end = most;
  while (end > 0 && continues_a_character(text[end])) --end;
  return text.substr(0, end);
}

}  // namespace phone::media

#include "text.hpp"

#include <glib.h>
#include <pb-util-resource.h>

#include <glib-ptr.hpp>
#include <map>

namespace gallery {
namespace {

constexpr int kFirst = static_cast<int>(Text::kPhotos);
constexpr int kLast = 1058;  // from there on the strings are the library's

std::map<int, std::string> &table() {
  static std::map<int, std::string> instance;
  return instance;
}

}  // namespace

bool load_texts() {
  for (int id = kFirst; id <= kLast; ++id) {
    if (const gchar *found = pb_get_res_string(id)) table().emplace(id, found);
  }
  return !table().empty();
}

const std::string &text(Text id) { return table()[static_cast<int>(id)]; }

std::string fill(Text id,
                 std::initializer_list<std::pair<std::string_view, std::string_view>> values) {
  const std::string_view pattern = text(id);
  std::string result;
  for (std::size_t at = 0; at < pattern.size();) {
    const std::size_t end = pattern[at] == '{' ? pattern.find('}', at) : std::string_view::npos;
    bool known = false;
    if (end != std::string_view::npos) {
      const std::string_view name = pattern.substr(at + 1, end - at - 1);
      for (const auto &[key, value] : values) {
        if (key != name) continue;
        result += value;
        known = true;
      }
    }
    if (known) {
      at = end + 1;
    } else {
      result += pattern[at++];
    }
  }
  return result;
}

std::string grouped(guint64 number) {
  const pb::StringPtr digits(g_strdup_printf("%'" G_GUINT64_FORMAT, number));
  return digits.get();
}

std::string one_line(std::string_view bytes) {
  const pb::StringPtr valid(g_utf8_make_valid(bytes.data(), static_cast<gssize>(bytes.size())));
  std::string line;
  for (const gchar *p = valid.get(); *p != '\0'; p = g_utf8_next_char(p)) {
    const gunichar character = g_utf8_get_char(p);
    const bool shows = g_unichar_isprint(character) || character == 0x200d;
    if (shows) {
      line.append(p, static_cast<std::size_t>(g_utf8_next_char(p) - p));
    } else {
      line += "\xef\xbf\xbd";
    }
  }
  return line;
}

std::string display_name(const std::string &path) {
  const pb::StringPtr name(g_path_get_basename(path.c_str()));
  return one_line(name.get());
}

}  // namespace gallery

#include <glib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>

#include "pictures/headers/private.hpp"

namespace phone::pictures {
namespace {

std::string_view text_of(Bytes bytes) {
  return {reinterpret_cast<const char *>(bytes.data()), bytes.size()};
}

void drop_space(std::string_view &text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
}

/// Steps behind what may stand before the first element. @return false when it does not end here
bool drop_prologue(std::string_view &text) {
  if (text.starts_with("\xef\xbb\xbf")) text.remove_prefix(3);
  for (;;) {
    drop_space(text);
    std::string_view end;
    if (text.starts_with("<?")) {
      end = "?>";
    } else if (text.starts_with("<!--")) {
      end = "-->";
    } else if (text.starts_with("<!")) {
      // With definitions of its own, or without.
      const size_t bracket = text.find('[');
      end = bracket < text.find('>') ? "]>" : ">";
    } else {
      return true;
    }
    const size_t place = text.find(end);
    if (place == std::string_view::npos) return false;
    text.remove_prefix(place + end.size());
  }
}

/// The first element from behind its name up to its end, or as far as it is there.
std::optional<std::string_view> drawing_element(std::string_view text) {
  if (!drop_prologue(text) || !text.starts_with("<")) return std::nullopt;
  std::string_view name = text.substr(1, text.find_first_of(" \t\r\n/>", 1) - 1);
  const size_t name_end = 1 + name.size();
  name.remove_prefix(name.find(':') == std::string_view::npos ? 0 : name.find(':') + 1);
  if (name != "svg" || name_end >= text.size()) return std::nullopt;
  return text.substr(name_end, text.find('>') - name_end);
}

/// The value of an attribute, empty when it is not there.
std::string attribute(std::string_view element, std::string_view name) {
  for (size_t at = element.find(name); at != std::string_view::npos;
       at = element.find(name, at + 1)) {
    const bool begins = at > 0 && g_ascii_isspace(element[at - 1]);
    std::string_view rest = element.substr(at + name.size());
    drop_space(rest);
    if (!begins || !rest.starts_with('=')) continue;
    rest.remove_prefix(1);
    drop_space(rest);
    if (rest.empty() || (rest[0] != '"' && rest[0] != '\'')) return {};
    const size_t end = rest.find(rest[0], 1);
    return end == std::string_view::npos ? std::string() : std::string(rest.substr(1, end - 1));
  }
  return {};
}

/// A length in pixels; nothing for one that depends on what surrounds the drawing.
std::optional<double> pixels_of(const std::string &length) {
  struct Unit {
    std::string_view name;
    double pixels;
  };
  constexpr Unit kUnits[] = {{"", 1},    {"px", 1},         {"pt", 96 / 72.0},
                             {"pc", 16}, {"mm", 96 / 25.4}, {"cm", 96 / 2.54},
                             {"in", 96}, {"em", 16},        {"ex", 8}};
  gchar *end = nullptr;
  const double number = g_ascii_strtod(length.c_str(), &end);
  if (end == length.c_str() || !(number > 0)) return std::nullopt;
  const std::string_view name = end;
  const auto *unit = std::find_if(std::begin(kUnits), std::end(kUnits),
                                  [name](const Unit &one) { return one.name == name; });
  return unit == std::end(kUnits) ? std::nullopt : std::optional(number * unit->pixels);
}

/// Width and height of the part of the plane that is shown.
std::optional<std::pair<double, double>> view_box(const std::string &text) {
  std::array<double, 4> numbers{};
  const gchar *at = text.c_str();
  for (double &number : numbers) {
    while (*at == ',' || g_ascii_isspace(*at)) ++at;
    gchar *end = nullptr;
    number = g_ascii_strtod(at, &end);
    if (end == at) return std::nullopt;
    at = end;
  }
  if (!(numbers[2] > 0) || !(numbers[3] > 0)) return std::nullopt;
  return std::pair(numbers[2], numbers[3]);
}

std::int64_t whole(double pixels) {
  constexpr double kMost = 1e9;
  return static_cast<std::int64_t>(std::ceil(std::min(pixels, kMost)));
}

}  // namespace

bool is_drawing(Bytes head) { return drawing_element(text_of(head)).has_value(); }

void read_drawing(Bytes head, Header &header) {
  const auto element = drawing_element(text_of(head));
  if (!element) return;
  auto width = pixels_of(attribute(*element, "width"));
  auto height = pixels_of(attribute(*element, "height"));
  const auto box = view_box(attribute(*element, "viewBox"));
  if (box && !width && !height) {
    width = box->first;
    height = box->second;
  } else if (box && !width) {
    width = *height * box->first / box->second;
  } else if (box && !height) {
    height = *width * box->second / box->first;
  }
  if (width && height) set_size(header, whole(*width), whole(*height));
}

}  // namespace phone::pictures

#include <array>
#include <cstring>

#include "check.hpp"
#include "glib-ptr.hpp"
#include "pb-util-settings.h"
#include "util/pb-util/private.hpp"

namespace {

constexpr const char *kThemeKey = "/CSC/Apps/Settings/DefTheme";

struct Theme {
  gint index;
  const char *color;
  const char *plus_color;
};

constexpr std::array<Theme, 6> kThemes{{{7, "#E31818", "#910F10"},
                                        {8, "#802C73", "#5C1C45"},
                                        {4, "#007CC2", "#00519E"},
                                        {5, "#00ACB6", "#008290"},
                                        {3, "#D2007B", "#8D0052"},
                                        {2, "#E98E00", "#CB5C0C"}}};
constexpr Theme kFallbackTheme{6, "#BCBE00", "#979200"};

/// The number of the phone's theme. A phone whose settings cannot be read has the first one.
gint read_theme_number() {
  const pb::util::ClientRef client = pb::util::default_client();
  if (!client) return 0;
  pb::ErrorPtr unimportant;
  return gconf_client_get_int(client.get(), kThemeKey, pb::out(unimportant));
}

const Theme &current_theme() {
  const gint number = read_theme_number();
  const bool known = number >= 0 && number < static_cast<gint>(kThemes.size());
  return known ? kThemes[static_cast<std::size_t>(number)] : kFallbackTheme;
}

}  // namespace

gint mb_get_current_theme_value(void) { return current_theme().index; }

void mb_get_current_theme_value_string(gchar *buffer) {
  PB_CHECK(buffer);
  memcpy(buffer, current_theme().color, PB_THEME_COLOR_SIZE);
}

void mb_get_current_theme_plus_value_string(gchar *buffer) {
  PB_CHECK(buffer);
  memcpy(buffer, current_theme().plus_color, PB_THEME_COLOR_SIZE);
}

gboolean mb_util_get_themecolor_rgb_string(GdkColor *color) {
  PB_CHECK(color, FALSE);
  std::array<gchar, PB_THEME_COLOR_SIZE> text{};
  mb_get_current_theme_value_string(text.data());
  return gdk_color_parse(text.data(), color);
}

gboolean mb_util_get_themeplus_color_rgb_string(GdkColor *color) {
  PB_CHECK(color, FALSE);
  std::array<gchar, PB_THEME_COLOR_SIZE> text{};
  mb_get_current_theme_plus_value_string(text.data());
  return gdk_color_parse(text.data(), color);
}

guint32 mb_util_get_theme_color_pixel(void) {
  GdkColor color{};
  mb_util_get_themecolor_rgb_string(&color);
  const auto high_byte = [](guint16 component) { return static_cast<guint32>(component >> 8U); };
  return high_byte(color.red) << 24U | high_byte(color.green) << 16U | high_byte(color.blue) << 8U;
}

void mb_set_label_font_size(GtkWidget *widget, gint size) {
  PB_CHECK(GTK_IS_WIDGET(widget));
  const pb::util::FontPtr font(pango_font_description_new());
  pango_font_description_set_size(font.get(), size * PANGO_SCALE);
  gtk_widget_modify_font(widget, font.get());
}

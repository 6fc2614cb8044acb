#include "phone-theme.h"

#include <gio/gio.h>

#include <cstdio>
#include <memory>
#include <string>

#include "glib-ptr.hpp"

namespace {

constexpr const char *kDefaultAccent = "#2f7de1";
constexpr const char *kStyles = "/phone/gtk/gtkrc";

constexpr const char *kLight =
    "bg_color:#f2f2f5;fg_color:#1c1c20;base_color:#ffffff;text_color:#1c1c20;"
    "button_color:#e2e3e8;title_bg_color:#ffffff;title_fg_color:#1c1c20;";
constexpr const char *kDark =
    "bg_color:#1b1c20;fg_color:#f2f2f2;base_color:#26272c;text_color:#f2f2f2;"
    "button_color:#36383f;title_bg_color:#101014;title_fg_color:#ffffff;";

using BytesPtr = std::unique_ptr<GBytes, pb::FreeWith<g_bytes_unref>>;

GdkColor accent_colour(const gchar *accent) {
  GdkColor colour;
  if (accent != nullptr && gdk_color_parse(accent, &colour)) return colour;
  if (accent != nullptr) g_warning("\"%s\" is not a colour", accent);
  gdk_color_parse(kDefaultAccent, &colour);
  return colour;
}

/// Relative luminance, 0 to 1.
double luminance(const GdkColor &colour) {
  constexpr double kFull = 65535.0;
  return 0.2126 * colour.red / kFull + 0.7152 * colour.green / kFull + 0.0722 * colour.blue / kFull;
}

/// The accent as text on the scheme's ground: moved towards what the ground is not.
GdkColor readable(GdkColor colour, bool on_dark) {
  const double goal = on_dark ? 65535.0 : 0.0;
  const bool far_enough = on_dark ? luminance(colour) > 0.45 : luminance(colour) < 0.40;
  if (far_enough) return colour;
  const auto half_way = [goal](guint16 value) { return static_cast<guint16>((value + goal) / 2); };
  colour.red = half_way(colour.red);
  colour.green = half_way(colour.green);
  colour.blue = half_way(colour.blue);
  return colour;
}

std::string text_of(const GdkColor &colour) {
  const pb::StringPtr text(gdk_color_to_string(&colour));
  return text.get();
}

/// Styles are parsed once; the colours that they name follow the scheme in the settings.
void load_styles() {
  static bool loaded = false;
  if (loaded) return;
  loaded = true;
  pb::ErrorPtr error;
  const BytesPtr styles(
      g_resources_lookup_data(kStyles, G_RESOURCE_LOOKUP_FLAGS_NONE, pb::out(error)));
  if (!styles) {
    g_warning("The widget styles are missing: %s", error->message);
    return;
  }
  gsize size = 0;
  const auto *text = static_cast<const char *>(g_bytes_get_data(styles.get(), &size));
  gtk_rc_parse_string(std::string(text, size).c_str());
}

}  // namespace

void phone_theme_apply(gboolean dark, const gchar *accent) {
  GtkSettings *settings = gtk_settings_get_default();
  if (settings == nullptr) return;
  const GdkColor colour = accent_colour(accent);
  const std::string scheme =
      std::string(dark ? kDark : kLight) + "selected_bg_color:" + text_of(colour) +
      ";selected_fg_color:" + (luminance(colour) > 0.6 ? "#000000" : "#ffffff") +
      ";title_accent_color:" + text_of(readable(colour, dark != FALSE)) + ";";
  // The desktop's theme would mix its own engine and sizes in.
  g_object_set(settings, "gtk-theme-name", "Raleigh", "gtk-color-scheme", scheme.c_str(), nullptr);
  load_styles();
  gtk_rc_reset_styles(settings);
}

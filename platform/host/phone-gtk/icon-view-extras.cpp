#include "check.hpp"
#include "icon-view.h"
#include "phone-gtk/icon-view-private.hpp"

namespace {

/// What a stock view was told about itself, as value + 1.
GQuark icon_height_quark() { return g_quark_from_static_string("phone-icon-height"); }
GQuark top_margin_quark() { return g_quark_from_static_string("phone-top-margin"); }

void remember(GtkIconView *view, GQuark quark, gint pixels) {
  g_object_set_qdata(G_OBJECT(view), quark, GINT_TO_POINTER(pixels + 1));
}

/// -1 when the view was told nothing.
gint remembered(GtkIconView *view, GQuark quark) {
  return GPOINTER_TO_INT(g_object_get_qdata(G_OBJECT(view), quark)) - 1;
}

}  // namespace

gint gtk_icon_view_get_icon_height(GtkIconView *view) {
  PB_CHECK(GTK_IS_ICON_VIEW(view), 0);
  if (PHONE_IS_ICON_VIEW(view)) {
    return phone::gtk::private_of(PHONE_ICON_VIEW(view)).grid.cell_height;
  }
  return MAX(remembered(view, icon_height_quark()), 0);
}

gint gtk_icon_view_get_top_margin(GtkIconView *view) {
  PB_CHECK(GTK_IS_ICON_VIEW(view), 0);
  const gint told = remembered(view, top_margin_quark());
  return told >= 0 ? told : gtk_icon_view_get_margin(view);
}

void phone_icon_view_set_icon_height(GtkIconView *view, gint pixels) {
  PB_CHECK(GTK_IS_ICON_VIEW(view));
  PB_CHECK(pixels >= 0);
  remember(view, icon_height_quark(), pixels);
}

void phone_icon_view_set_top_margin(GtkIconView *view, gint pixels) {
  PB_CHECK(GTK_IS_ICON_VIEW(view));
  PB_CHECK(pixels >= 0);
  remember(view, top_margin_quark(), pixels);
  if (PHONE_IS_ICON_VIEW(view)) phone::gtk::queue_layout(PHONE_ICON_VIEW(view));
}

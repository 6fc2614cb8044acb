#include <icon-view.h>

#include "fakes/journal.hpp"

gint gtk_icon_view_get_icon_height(GtkIconView *view) {
  fake::record("gtk_icon_view_get_icon_height", view);
  return fake::platform().gtk_icon_view_get_icon_height(view);
}

gint gtk_icon_view_get_top_margin(GtkIconView *view) {
  fake::record("gtk_icon_view_get_top_margin", view);
  return fake::platform().gtk_icon_view_get_top_margin(view);
}

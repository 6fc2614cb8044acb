#include "widgets.hpp"

#include <pb-util-resource.h>

#include <glib-ptr.hpp>

namespace gallery {

void name_widget(GtkWidget *widget, const char *name, const std::string &spoken) {
  gtk_widget_set_name(widget, name);
  if (AtkObject *accessible = gtk_widget_get_accessible(widget)) {
    atk_object_set_name(accessible, spoken.c_str());
  }
}

void set_shown(GtkWidget *widget, bool shown) {
  if (shown) {
    gtk_widget_set_no_show_all(widget, FALSE);
    gtk_widget_show_all(widget);
  } else {
    gtk_widget_hide(widget);
  }
  gtk_widget_set_no_show_all(widget, TRUE);
}

GtkWidget *make_icon_button(int bitmap, const char *name, const std::string &spoken) {
  GtkWidget *button = gtk_button_new();
  gtk_button_set_relief(GTK_BUTTON(button), GTK_RELIEF_NONE);
  const auto icon = pb::Ref<GdkPixbuf>::adopt(pb_get_pixbuf(bitmap));
  gtk_container_add(GTK_CONTAINER(button), gtk_image_new_from_pixbuf(icon.get()));
  gtk_widget_set_tooltip_text(button, spoken.c_str());
  name_widget(button, name, spoken);
  return button;
}

GtkWidget *make_wrapped_label(const char *name) {
  GtkWidget *label = gtk_label_new(nullptr);
  gtk_widget_set_name(label, name);
  gtk_label_set_line_wrap(GTK_LABEL(label), TRUE);
  gtk_label_set_line_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
  gtk_label_set_justify(GTK_LABEL(label), GTK_JUSTIFY_CENTER);
  gtk_widget_set_size_request(label, 320, -1);
  return label;
}

}  // namespace gallery

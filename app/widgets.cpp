#include "widgets.hpp"

#include <pb-util-resource.h>

#include <glib-ptr.hpp>

namespace gallery {
namespace {

/// @return the width to wrap at; -1 when the text fits
int width_for(GtkWidget *label, int available) {
  const auto layout = pb::Ref<PangoLayout>::adopt(
      gtk_widget_create_pango_layout(label, gtk_label_get_text(GTK_LABEL(label))));
  int natural = 0;
  pango_layout_get_pixel_size(layout.get(), &natural, nullptr);
  return natural <= available ? -1 : available;
}

void fit_label(GtkWidget *label, GtkWidget *container) {
  const int beside = GPOINTER_TO_INT(g_object_get_data(G_OBJECT(container), "gallery-beside"));
  GtkAllocation allocation;
  gtk_widget_get_allocation(container, &allocation);
  const int width = width_for(label, MAX(1, allocation.width - beside));
  // A label that may wrap does so at a width of its own choice, also where a line would fit.
  gtk_label_set_line_wrap(GTK_LABEL(label), width >= 0);
  int before = 0;
  gtk_widget_get_size_request(label, &before, nullptr);
  if (before != width) gtk_widget_set_size_request(label, width, -1);
}

void on_container_resized(GtkWidget *container, GtkAllocation * /*allocation*/, gpointer label) {
  fit_label(GTK_WIDGET(label), container);
}

void on_text_changed(GtkWidget *label, GParamSpec * /*pspec*/, gpointer container) {
  fit_label(label, GTK_WIDGET(container));
}

}  // namespace

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
  return label;
}

void wrap_with_width(GtkWidget *label, GtkWidget *container, int beside) {
  g_object_set_data(G_OBJECT(container), "gallery-beside", GINT_TO_POINTER(beside));
  g_signal_connect_object(container, "size-allocate", G_CALLBACK(on_container_resized), label,
                          GConnectFlags{});
  g_signal_connect_object(label, "notify::label", G_CALLBACK(on_text_changed), container,
                          GConnectFlags{});
}

}  // namespace gallery

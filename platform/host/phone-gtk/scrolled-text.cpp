#include "phone-gtk/scrolled-text.hpp"

#include <algorithm>

namespace phone::gtk {
namespace {

constexpr int kWhole = -1;

}  // namespace

ScrolledText::ScrolledText(GtkWidget *label)
    : label_(pb::Ref<GtkWidget>::sink(label)),
      scroller_(pb::Ref<GtkWidget>::sink(gtk_scrolled_window_new(nullptr, nullptr))) {
  gtk_widget_show(label);
  auto *scroller = GTK_SCROLLED_WINDOW(scroller_.get());
  gtk_scrolled_window_add_with_viewport(scroller, label);
  gtk_widget_set_can_focus(scroller_.get(), FALSE);
  gtk_widget_set_no_show_all(scroller_.get(), TRUE);

  GtkWidget *viewport = gtk_bin_get_child(GTK_BIN(scroller));
  gtk_viewport_set_shadow_type(GTK_VIEWPORT(viewport), GTK_SHADOW_NONE);
  gtk_widget_add_events(viewport, GDK_BUTTON_PRESS_MASK | GDK_BUTTON1_MOTION_MASK);
  g_signal_connect(viewport, "button-press-event", G_CALLBACK(pressed), this);
  g_signal_connect(viewport, "motion-notify-event", G_CALLBACK(moved), this);
  gtk_widget_show(viewport);
  take_height(kWhole);
}

void ScrolledText::set(const gchar *text) {
  gtk_label_set_text(GTK_LABEL(label_.get()), text);
  gtk_widget_set_visible(scroller_.get(), *text != '\0');
}

int ScrolledText::asked_height() const {
  if (!gtk_widget_get_visible(scroller_.get())) return 0;
  GtkRequisition asked{};
  gtk_widget_get_child_requisition(scroller_.get(), &asked);
  return asked.height;
}

bool ScrolledText::fit(int room) {
  GtkRequisition whole{};
  gtk_widget_size_request(label_.get(), &whole);
  const int height = whole.height <= room ? kWhole : room;
  if (height == height_) return false;
  take_height(height);
  return true;
}

void ScrolledText::take_height(int height) {
  height_ = height;
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller_.get()), GTK_POLICY_NEVER,
                                 height == kWhole ? GTK_POLICY_NEVER : GTK_POLICY_ALWAYS);
  gtk_widget_set_size_request(scroller_.get(), -1, height);
}

bool ScrolledText::handle_key(GdkEventKey *event) {
  return height_ != kWhole && gtk_bindings_activate_event(GTK_OBJECT(scroller_.get()), event);
}

GtkAdjustment *ScrolledText::place() const {
  return gtk_scrolled_window_get_vadjustment(GTK_SCROLLED_WINDOW(scroller_.get()));
}

gboolean ScrolledText::pressed(GtkWidget *, GdkEventButton *event, gpointer self) {
  auto *text = static_cast<ScrolledText *>(self);
  text->pressed_y_ = event->y_root;
  text->pressed_place_ = gtk_adjustment_get_value(text->place());
  return FALSE;
}

gboolean ScrolledText::moved(GtkWidget *, GdkEventMotion *event, gpointer self) {
  auto *text = static_cast<ScrolledText *>(self);
  GtkAdjustment *place = text->place();
  const double last = gtk_adjustment_get_upper(place) - gtk_adjustment_get_page_size(place);
  const double wanted = text->pressed_place_ + text->pressed_y_ - event->y_root;
  gtk_adjustment_set_value(place, std::clamp(wanted, 0.0, std::max(last, 0.0)));
  return TRUE;
}

}  // namespace phone::gtk

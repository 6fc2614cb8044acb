#include <main-window.h>

#include <algorithm>

#include "check.hpp"
#include "fakes/journal.hpp"
#include "glib-ptr.hpp"

namespace {

constexpr int kCellHeight = 148;

/// What a window has beyond its widgets; data of the instance.
struct WindowState {
  gint style = 0;
  GtkWidget *box = nullptr;      // the window's
  GtkWidget *title = nullptr;    // the window's
  GtkWidget *current = nullptr;  // in the box, or NULL
  pb::Ref<GdkPixbuf> icon;
};

void free_state(gpointer state) { delete static_cast<WindowState *>(state); }

WindowState &state_of(GtkMainWindow *window) {
  return *static_cast<WindowState *>(g_object_get_data(G_OBJECT(window), "fake-state"));
}

bool holds(GtkMainWindow *window, GtkWidget *form) {
  return gtk_widget_get_parent(form) == state_of(window).box;
}

void forget_form(GtkWidget *form, GtkMainWindow *window) {
  if (state_of(window).current == form) state_of(window).current = nullptr;
}

}  // namespace

G_DEFINE_TYPE(GtkMainWindow, gtk_main_window, GTK_TYPE_WINDOW)

static void gtk_main_window_class_init(GtkMainWindowClass *) {}

static void gtk_main_window_init(GtkMainWindow *window) {
  auto *state = new WindowState;
  g_object_set_data_full(G_OBJECT(window), "fake-state", state, free_state);
  state->box = gtk_vbox_new(FALSE, 0);
  state->title = gtk_label_new(nullptr);
  gtk_box_pack_start(GTK_BOX(state->box), state->title, FALSE, FALSE, 0);
  gtk_container_add(GTK_CONTAINER(window), state->box);
  gtk_widget_show(state->title);
  gtk_widget_show(state->box);
}

G_DEFINE_TYPE(GtkForm, gtk_form, GTK_TYPE_BIN)

static void gtk_form_size_request(GtkWidget *widget, GtkRequisition *requisition) {
  GtkWidget *child = gtk_bin_get_child(GTK_BIN(widget));
  *requisition = {};
  if (child != nullptr && gtk_widget_get_visible(child))
    gtk_widget_size_request(child, requisition);
}

static void gtk_form_size_allocate(GtkWidget *widget, GtkAllocation *allocation) {
  GtkWidget *child = gtk_bin_get_child(GTK_BIN(widget));
  gtk_widget_set_allocation(widget, allocation);
  if (child != nullptr && gtk_widget_get_visible(child))
    gtk_widget_size_allocate(child, allocation);
}

static void gtk_form_class_init(GtkFormClass *klass) {
  GTK_WIDGET_CLASS(klass)->size_request = gtk_form_size_request;
  GTK_WIDGET_CLASS(klass)->size_allocate = gtk_form_size_allocate;
}

static void gtk_form_init(GtkForm *form) { gtk_widget_set_has_window(GTK_WIDGET(form), FALSE); }

void fake::set_gtk_defaults(Platform &phone) {
  phone.gtk_window_get_rotate = [](GtkWindow *) { return 0; };
  phone.gtk_icon_view_get_icon_height = [](GtkIconView *) { return kCellHeight; };
  phone.gtk_icon_view_get_top_margin = [](GtkIconView *) { return 0; };
  phone.gtk_style_dialog_new = make_style_dialog;
  phone.gtk_dialog_run = [](GtkDialog *) { return gint{GTK_RESPONSE_NONE}; };
}

GtkWidget *fake::current_form(GtkMainWindow *window) { return state_of(window).current; }

GdkPixbuf *fake::title_icon(GtkMainWindow *window) { return state_of(window).icon.get(); }

GtkWidget *gtk_main_window_new(gint style) {
  fake::record("gtk_main_window_new", style);
  auto *window = static_cast<GtkMainWindow *>(
      g_object_new(GTK_TYPE_MAIN_WINDOW, "type", GTK_WINDOW_TOPLEVEL, nullptr));
  state_of(window).style = style;
  return GTK_WIDGET(window);
}

void gtk_main_window_add_form(GtkMainWindow *window, GtkForm *form) {
  fake::record("gtk_main_window_add_form", window, form);
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  PB_CHECK(GTK_IS_FORM(form));
  gtk_widget_hide(GTK_WIDGET(form));
  gtk_box_pack_start(GTK_BOX(state_of(window).box), GTK_WIDGET(form), TRUE, TRUE, 0);
  g_signal_connect_object(form, "destroy", G_CALLBACK(forget_form), window, GConnectFlags(0));
}

void gtk_main_window_remove_form(GtkMainWindow *window, GtkForm *form) {
  fake::record("gtk_main_window_remove_form", window, form);
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  PB_CHECK(GTK_IS_FORM(form));
  if (!holds(window, GTK_WIDGET(form))) return;
  if (state_of(window).current == GTK_WIDGET(form)) state_of(window).current = nullptr;
  gtk_container_remove(GTK_CONTAINER(state_of(window).box), GTK_WIDGET(form));
}

void gtk_main_window_set_current_form(GtkMainWindow *window, GtkForm *form) {
  fake::record("gtk_main_window_set_current_form", window, form);
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  PB_CHECK(GTK_IS_FORM(form));
  if (!holds(window, GTK_WIDGET(form))) return;
  if (state_of(window).current != nullptr) gtk_widget_hide(state_of(window).current);
  state_of(window).current = GTK_WIDGET(form);
  gtk_widget_show(GTK_WIDGET(form));
}

void gtk_main_window_set_default_title(GtkMainWindow *window, const gchar *title) {
  fake::record("gtk_main_window_set_default_title", window, title);
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  gtk_label_set_text(GTK_LABEL(state_of(window).title), title);
}

void gtk_main_window_set_default_icon(GtkMainWindow *window, GdkPixbuf *icon) {
  fake::record("gtk_main_window_set_default_icon", window, icon);
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  state_of(window).icon = pb::Ref<GdkPixbuf>::share(icon);
}

void gtk_main_window_set_title_style(GtkMainWindow *window, gint style) {
  fake::record("gtk_main_window_set_title_style", window, style);
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
}

GtkWidget *gtk_main_window_get_title_label(GtkMainWindow *window) {
  fake::record("gtk_main_window_get_title_label", window);
  PB_CHECK(GTK_IS_MAIN_WINDOW(window), nullptr);
  return state_of(window).title;
}

gint gtk_main_window_get_style(GtkMainWindow *window) {
  fake::record("gtk_main_window_get_style", window);
  PB_CHECK(GTK_IS_MAIN_WINDOW(window), 0);
  return state_of(window).style;
}

void gtk_main_window_change_style(GtkMainWindow *window, gint style, gint reserved) {
  fake::record("gtk_main_window_change_style", window, style, reserved);
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  state_of(window).style = style;
}

GtkWidget *gtk_form_new() { return GTK_WIDGET(g_object_new(GTK_TYPE_FORM, nullptr)); }

void gtk_effect_set_motion(GtkWidget *form, guint effect, gboolean on) {
  fake::record("gtk_effect_set_motion", form, effect, on);
}

gint gtk_window_get_rotate(GtkWindow *window) {
  fake::record("gtk_window_get_rotate", window);
  return fake::platform().gtk_window_get_rotate(window);
}

#include <main-window.h>

#include <algorithm>

#include "check.hpp"
#include "fakes/journal.hpp"
#include "glib-ptr.hpp"

namespace {

constexpr int kCellHeight = 148;

/// Data of a window's instance, so all of it lives until the window is finalised.
struct WindowState {
  gint style = 0;
  pb::Ref<GtkWidget> title;
  pb::Ref<GtkWidget> forms;
  GtkWidget *current = nullptr;  // one of the forms, or NULL
  pb::Ref<GdkPixbuf> icon;
};

void free_state(gpointer state) { delete static_cast<WindowState *>(state); }

WindowState &state_of(GtkMainWindow *window) {
  return *static_cast<WindowState *>(g_object_get_data(G_OBJECT(window), "fake-state"));
}

GtkWidget *forms_of(GtkMainWindow *window) { return state_of(window).forms.get(); }

/// A form that is not the current one stays hidden when the whole window is shown.
void hide_form(GtkWidget *form) {
  gtk_widget_hide(form);
  gtk_widget_set_no_show_all(form, TRUE);
}

void forget_form(GtkContainer *, GtkWidget *form, gpointer window) {
  WindowState &state = state_of(GTK_MAIN_WINDOW(window));
  gtk_widget_set_no_show_all(form, FALSE);
  if (state.current == form) state.current = nullptr;
}

}  // namespace

G_DEFINE_TYPE(GtkMainWindow, gtk_main_window, GTK_TYPE_WINDOW)

static void gtk_main_window_class_init(GtkMainWindowClass *) {}

static void gtk_main_window_init(GtkMainWindow *window) {
  auto *state = new WindowState;
  g_object_set_data_full(G_OBJECT(window), "fake-state", state, free_state);
  state->title = pb::Ref<GtkWidget>::sink(gtk_label_new(nullptr));
  state->forms = pb::Ref<GtkWidget>::sink(gtk_vbox_new(FALSE, 0));
  g_signal_connect_object(state->forms.get(), "remove", G_CALLBACK(forget_form), window,
                          GConnectFlags{});
  GtkWidget *column = gtk_vbox_new(FALSE, 0);
  gtk_box_pack_start(GTK_BOX(column), state->title.get(), FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(column), state->forms.get(), TRUE, TRUE, 0);
  gtk_container_add(GTK_CONTAINER(window), column);
  gtk_widget_show_all(column);
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
  GtkWidget *widget = GTK_WIDGET(form);
  PB_CHECK_AS("form has no parent", gtk_widget_get_parent(widget) == nullptr);
  hide_form(widget);
  gtk_box_pack_start(GTK_BOX(forms_of(window)), widget, TRUE, TRUE, 0);
}

void gtk_main_window_remove_form(GtkMainWindow *window, GtkForm *form) {
  fake::record("gtk_main_window_remove_form", window, form);
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  PB_CHECK(GTK_IS_FORM(form));
  if (gtk_widget_get_parent(GTK_WIDGET(form)) != forms_of(window)) return;
  gtk_container_remove(GTK_CONTAINER(forms_of(window)), GTK_WIDGET(form));
}

void gtk_main_window_set_current_form(GtkMainWindow *window, GtkForm *form) {
  fake::record("gtk_main_window_set_current_form", window, form);
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  PB_CHECK(GTK_IS_FORM(form));
  GtkWidget *widget = GTK_WIDGET(form);
  PB_CHECK_AS("form is in window", gtk_widget_get_parent(widget) == forms_of(window));
  GtkWidget *&current = state_of(window).current;
  if (current == widget) return;
  if (current != nullptr) hide_form(current);
  current = widget;
  gtk_widget_set_no_show_all(widget, FALSE);
  gtk_widget_show(widget);
}

void gtk_main_window_set_default_title(GtkMainWindow *window, const gchar *title) {
  fake::record("gtk_main_window_set_default_title", window, title);
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  PB_CHECK(title != nullptr);
  gtk_label_set_text(GTK_LABEL(state_of(window).title.get()), title);
  gtk_window_set_title(GTK_WINDOW(window), title);
}

void gtk_main_window_set_default_icon(GtkMainWindow *window, GdkPixbuf *icon) {
  fake::record("gtk_main_window_set_default_icon", window, icon);
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  PB_CHECK(GDK_IS_PIXBUF(icon));
  state_of(window).icon = pb::Ref<GdkPixbuf>::share(icon);
}

void gtk_main_window_set_title_style(GtkMainWindow *window, gint style) {
  fake::record("gtk_main_window_set_title_style", window, style);
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
}

GtkWidget *gtk_main_window_get_title_label(GtkMainWindow *window) {
  fake::record("gtk_main_window_get_title_label", window);
  PB_CHECK(GTK_IS_MAIN_WINDOW(window), nullptr);
  return state_of(window).title.get();
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

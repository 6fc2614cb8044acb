#include "main-window.h"

#include <memory>

#include "check.hpp"
#include "glib-ptr.hpp"

/// The widgets live as long as the window, also when it has been destroyed but not yet finalized.
struct GtkMainWindowPrivate {
  gint style = 0;
  pb::Ref<GtkWidget> title_bar;
  pb::Ref<GtkWidget> title_start;
  pb::Ref<GtkWidget> title_end;
  pb::Ref<GtkWidget> icon;
  pb::Ref<GtkWidget> title;
  pb::Ref<GtkWidget> forms;
  GtkWidget *current = nullptr;  // one of the forms, cleared when it leaves them
};

G_DEFINE_TYPE_WITH_PRIVATE(GtkMainWindow, gtk_main_window, GTK_TYPE_WINDOW)

namespace {

constexpr int kTitlePadding = 8;

GtkMainWindowPrivate &private_of(GtkMainWindow *window) {
  return *static_cast<GtkMainWindowPrivate *>(gtk_main_window_get_instance_private(window));
}

/// A form that is not the current one must stay hidden when the whole window is shown.
void hide_form(GtkWidget *form) {
  gtk_widget_hide(form);
  gtk_widget_set_no_show_all(form, TRUE);
}

void on_form_removed(GtkContainer *, GtkWidget *form, gpointer data) {
  auto &priv = private_of(GTK_MAIN_WINDOW(data));
  gtk_widget_set_no_show_all(form, FALSE);
  if (priv.current == form) priv.current = nullptr;
}

GtkWidget *make_title_bar(GtkMainWindowPrivate &priv) {
  priv.title_bar = pb::Ref<GtkWidget>::sink(gtk_event_box_new());
  gtk_widget_set_name(priv.title_bar.get(), "phone-title-bar");
  GtkWidget *title_row = gtk_hbox_new(FALSE, kTitlePadding);
  gtk_container_set_border_width(GTK_CONTAINER(title_row), kTitlePadding);
  priv.title_start = pb::Ref<GtkWidget>::sink(gtk_hbox_new(FALSE, kTitlePadding));
  priv.title_end = pb::Ref<GtkWidget>::sink(gtk_hbox_new(FALSE, kTitlePadding));
  // Both sides are equally wide, so that the title is in the middle of the window.
  const auto sides = pb::Ref<GtkSizeGroup>::adopt(gtk_size_group_new(GTK_SIZE_GROUP_HORIZONTAL));
  gtk_size_group_add_widget(sides.get(), priv.title_start.get());
  gtk_size_group_add_widget(sides.get(), priv.title_end.get());
  priv.icon = pb::Ref<GtkWidget>::sink(gtk_image_new());
  gtk_widget_set_no_show_all(priv.icon.get(), TRUE);
  priv.title = pb::Ref<GtkWidget>::sink(gtk_label_new(nullptr));
  gtk_label_set_ellipsize(GTK_LABEL(priv.title.get()), PANGO_ELLIPSIZE_END);
  gtk_label_set_single_line_mode(GTK_LABEL(priv.title.get()), TRUE);
  gtk_misc_set_alignment(GTK_MISC(priv.title.get()), 0.5, 0.5);
  gtk_box_pack_start(GTK_BOX(title_row), priv.title_start.get(), FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(title_row), priv.title.get(), TRUE, TRUE, 0);
  gtk_box_pack_start(GTK_BOX(title_row), priv.title_end.get(), FALSE, FALSE, 0);
  gtk_box_pack_end(GTK_BOX(priv.title_start.get()), priv.icon.get(), FALSE, FALSE, 0);
  gtk_container_add(GTK_CONTAINER(priv.title_bar.get()), title_row);
  return priv.title_bar.get();
}

}  // namespace

static void gtk_main_window_finalize(GObject *object) {
  std::destroy_at(&private_of(GTK_MAIN_WINDOW(object)));
  G_OBJECT_CLASS(gtk_main_window_parent_class)->finalize(object);
}

static void gtk_main_window_class_init(GtkMainWindowClass *klass) {
  G_OBJECT_CLASS(klass)->finalize = gtk_main_window_finalize;
}

static void gtk_main_window_init(GtkMainWindow *window) {
  auto &priv = *new (gtk_main_window_get_instance_private(window)) GtkMainWindowPrivate{};
  priv.forms = pb::Ref<GtkWidget>::sink(gtk_vbox_new(FALSE, 0));
  g_signal_connect_object(priv.forms.get(), "remove", G_CALLBACK(on_form_removed), window,
                          GConnectFlags{});
  GtkWidget *column = gtk_vbox_new(FALSE, 0);
  gtk_box_pack_start(GTK_BOX(column), make_title_bar(priv), FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(column), priv.forms.get(), TRUE, TRUE, 0);
  gtk_container_add(GTK_CONTAINER(window), column);
  gtk_widget_show_all(column);
}

GtkWidget *gtk_main_window_new(gint style) {
  auto *window = GTK_MAIN_WINDOW(g_object_new(GTK_TYPE_MAIN_WINDOW, nullptr));
  private_of(window).style = style;
  return GTK_WIDGET(window);
}

void gtk_main_window_add_form(GtkMainWindow *window, GtkForm *form) {
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  PB_CHECK(GTK_IS_FORM(form));
  GtkWidget *widget = GTK_WIDGET(form);
  PB_CHECK_AS("form has no parent", gtk_widget_get_parent(widget) == nullptr);
  hide_form(widget);
  gtk_box_pack_start(GTK_BOX(private_of(window).forms.get()), widget, TRUE, TRUE, 0);
}

void gtk_main_window_remove_form(GtkMainWindow *window, GtkForm *form) {
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  PB_CHECK(GTK_IS_FORM(form));
  auto *forms = GTK_CONTAINER(private_of(window).forms.get());
  if (gtk_widget_get_parent(GTK_WIDGET(form)) != GTK_WIDGET(forms)) return;
  gtk_container_remove(forms, GTK_WIDGET(form));
}

void gtk_main_window_set_current_form(GtkMainWindow *window, GtkForm *form) {
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  PB_CHECK(GTK_IS_FORM(form));
  auto &priv = private_of(window);
  GtkWidget *widget = GTK_WIDGET(form);
  PB_CHECK_AS("form is in window", gtk_widget_get_parent(widget) == priv.forms.get());
  if (priv.current == widget) return;
  if (priv.current != nullptr) hide_form(priv.current);
  priv.current = widget;
  gtk_widget_set_no_show_all(widget, FALSE);
  gtk_widget_show(widget);
}

void gtk_main_window_set_default_title(GtkMainWindow *window, const gchar *title) {
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  PB_CHECK(title != nullptr);
  // File names end up here; only valid text may reach a label.
  const pb::StringPtr text(g_utf8_make_valid(title, -1));
  gtk_label_set_text(GTK_LABEL(private_of(window).title.get()), text.get());
  gtk_window_set_title(GTK_WINDOW(window), text.get());
}

void gtk_main_window_set_default_icon(GtkMainWindow *window, GdkPixbuf *icon) {
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  PB_CHECK(GDK_IS_PIXBUF(icon));
  auto *image = private_of(window).icon.get();
  gtk_image_set_from_pixbuf(GTK_IMAGE(image), icon);
  gtk_widget_show(image);
  gtk_window_set_icon(GTK_WINDOW(window), icon);
}

void gtk_main_window_set_title_style(GtkMainWindow *window, gint style) {
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  GtkWidget *bar = private_of(window).title_bar.get();
  gtk_widget_set_no_show_all(bar, style == PHONE_TITLE_NONE);
  gtk_widget_set_visible(bar, style != PHONE_TITLE_NONE);
}

GtkWidget *gtk_main_window_get_title_label(GtkMainWindow *window) {
  PB_CHECK(GTK_IS_MAIN_WINDOW(window), nullptr);
  return private_of(window).title.get();
}

void phone_main_window_add_title_widget(GtkMainWindow *window, GtkWidget *widget,
                                        GtkPackType side) {
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  PB_CHECK(GTK_IS_WIDGET(widget));
  auto &priv = private_of(window);
  GtkWidget *box = side == GTK_PACK_END ? priv.title_end.get() : priv.title_start.get();
  gtk_box_pack_start(GTK_BOX(box), widget, FALSE, FALSE, 0);
}

void phone_main_window_add_bottom_widget(GtkMainWindow *window, GtkWidget *widget) {
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  PB_CHECK(GTK_IS_WIDGET(widget));
  GtkWidget *column = gtk_bin_get_child(GTK_BIN(window));
  gtk_box_pack_end(GTK_BOX(column), widget, FALSE, FALSE, 0);
}

gint gtk_main_window_get_style(GtkMainWindow *window) {
  PB_CHECK(GTK_IS_MAIN_WINDOW(window), 0);
  return private_of(window).style;
}

void gtk_main_window_change_style(GtkMainWindow *window, gint style, gint) {
  PB_CHECK(GTK_IS_MAIN_WINDOW(window));
  private_of(window).style = style;
}

gint gtk_window_get_rotate(GtkWindow *window) {
  if (!GTK_IS_WINDOW(window)) return 0;
  // The host has no sensor: a window that is wider than high is a phone on its side.
  gint width = 0;
  gint height = 0;
  gtk_window_get_size(window, &width, &height);
  return width > height ? 90 : 0;
}

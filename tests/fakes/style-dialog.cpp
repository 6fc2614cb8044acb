#include <style-dialog.h>

#include "check.hpp"
#include "fakes/journal.hpp"

namespace {

constexpr const char *kLabel = "fake-label";
constexpr const char *kArea = "fake-area";
constexpr const char *kTimeout = "fake-timeout";

/// Parts live until the dialog is finalised, also behind its destruction.
void keep_part(GtkStyleDialog *dialog, const char *part, GtkWidget *widget) {
  g_object_set_data_full(G_OBJECT(dialog), part, g_object_ref_sink(widget), g_object_unref);
  gtk_widget_show(widget);
}

GtkWidget *part_of(GtkStyleDialog *dialog, const char *part) {
  return static_cast<GtkWidget *>(g_object_get_data(G_OBJECT(dialog), part));
}

gboolean destroy_at_timeout(gpointer dialog) {
  g_object_set_data(G_OBJECT(dialog), kTimeout, nullptr);
  gtk_widget_destroy(GTK_WIDGET(dialog));
  return FALSE;
}

void stop_timeout(GtkWidget *dialog) {
  const guint id = GPOINTER_TO_UINT(g_object_steal_data(G_OBJECT(dialog), kTimeout));
  if (id != 0) g_source_remove(id);
}

}  // namespace

G_DEFINE_TYPE(GtkStyleDialog, gtk_style_dialog, GTK_TYPE_DIALOG)

static void gtk_style_dialog_destroy(GtkObject *object) {
  stop_timeout(GTK_WIDGET(object));
  GTK_OBJECT_CLASS(gtk_style_dialog_parent_class)->destroy(object);
}

static void gtk_style_dialog_class_init(GtkStyleDialogClass *klass) {
  GTK_OBJECT_CLASS(klass)->destroy = gtk_style_dialog_destroy;
}

static void gtk_style_dialog_init(GtkStyleDialog *dialog) {
  keep_part(dialog, kLabel, gtk_label_new(nullptr));
  keep_part(dialog, kArea, gtk_vbox_new(FALSE, 0));
  GtkWidget *box = gtk_dialog_get_content_area(GTK_DIALOG(dialog));
  gtk_box_pack_start(GTK_BOX(box), part_of(dialog, kLabel), FALSE, FALSE, 0);
  gtk_box_pack_start(GTK_BOX(box), part_of(dialog, kArea), TRUE, TRUE, 0);
}

GtkWidget *fake::make_style_dialog(gint, GtkWindow *parent, gint flags) {
  auto *dialog = GTK_WIDGET(g_object_new(GTK_TYPE_STYLE_DIALOG, nullptr));
  if (parent != nullptr) gtk_window_set_transient_for(GTK_WINDOW(dialog), parent);
  gtk_window_set_modal(GTK_WINDOW(dialog), (flags & GTK_DIALOG_MODAL) != 0);
  gtk_window_set_destroy_with_parent(GTK_WINDOW(dialog),
                                     (flags & GTK_DIALOG_DESTROY_WITH_PARENT) != 0);
  return dialog;
}

GtkWidget *gtk_style_dialog_new(gint style, GtkWindow *parent, gint flags) {
  fake::record("gtk_style_dialog_new", style, parent, flags);
  return fake::platform().gtk_style_dialog_new(style, parent, flags);
}

void gtk_style_dialog_set_title(GtkStyleDialog *dialog, const gchar *title) {
  fake::record("gtk_style_dialog_set_title", dialog, title);
  PB_CHECK(GTK_IS_STYLE_DIALOG(dialog));
  PB_CHECK(title != nullptr);
  gtk_window_set_title(GTK_WINDOW(dialog), title);
}

void gtk_style_dialog_set_content_area_text(GtkStyleDialog *dialog, const gchar *text) {
  fake::record("gtk_style_dialog_set_content_area_text", dialog, text);
  PB_CHECK(GTK_IS_STYLE_DIALOG(dialog));
  PB_CHECK(text != nullptr);
  gtk_label_set_text(GTK_LABEL(part_of(dialog, kLabel)), text);
}

GtkWidget *gtk_style_dialog_get_content_area(GtkStyleDialog *dialog) {
  fake::record("gtk_style_dialog_get_content_area", dialog);
  PB_CHECK(GTK_IS_STYLE_DIALOG(dialog), nullptr);
  return part_of(dialog, kArea);
}

GtkWidget *gtk_style_dialog_get_text_label(GtkStyleDialog *dialog) {
  fake::record("gtk_style_dialog_get_text_label", dialog);
  PB_CHECK(GTK_IS_STYLE_DIALOG(dialog), nullptr);
  return part_of(dialog, kLabel);
}

GtkWidget *gtk_style_dialog_add_button(GtkStyleDialog *dialog, const gchar *label, gint response) {
  fake::record("gtk_style_dialog_add_button", dialog, label, response);
  PB_CHECK(GTK_IS_STYLE_DIALOG(dialog), nullptr);
  return gtk_dialog_add_button(GTK_DIALOG(dialog), label != nullptr ? label : "", response);
}

void gtk_style_dialog_set_destroy_timeout(GtkStyleDialog *dialog, guint timeout_ms) {
  fake::record("gtk_style_dialog_set_destroy_timeout", dialog, timeout_ms);
  PB_CHECK(GTK_IS_STYLE_DIALOG(dialog));
  PB_CHECK(timeout_ms > 0);
  stop_timeout(GTK_WIDGET(dialog));
  const guint id = gdk_threads_add_timeout(timeout_ms, destroy_at_timeout, dialog);
  g_object_set_data(G_OBJECT(dialog), kTimeout, GUINT_TO_POINTER(id));
}

extern "C" gint __wrap_gtk_dialog_run(GtkDialog *dialog);

gint __wrap_gtk_dialog_run(GtkDialog *dialog) {
  fake::record("gtk_dialog_run", dialog);
  return fake::platform().gtk_dialog_run(dialog);
}

#include "style-dialog.h"

#include <memory>

#include "check.hpp"
#include "glib-ptr.hpp"

/// The widgets live as long as the dialog, also when it has been destroyed but not yet finalized.
struct GtkStyleDialogPrivate {
  pb::Ref<GtkWidget> title;
  pb::Ref<GtkWidget> text;
  pb::Ref<GtkWidget> content;
  bool has_buttons = false;
  pb::SourceId end;
};

G_DEFINE_TYPE_WITH_PRIVATE(GtkStyleDialog, gtk_style_dialog, GTK_TYPE_DIALOG)

namespace {

constexpr int kWidth = 420;
constexpr int kPadding = 16;
constexpr int kAccentHeight = 3;

GtkStyleDialogPrivate &private_of(GtkStyleDialog *dialog) {
  return *static_cast<GtkStyleDialogPrivate *>(gtk_style_dialog_get_instance_private(dialog));
}

/// Texts carry file names, which are bytes.
pb::StringPtr displayable(const gchar *text) { return pb::StringPtr(g_utf8_make_valid(text, -1)); }

/// What a button says whose own text could not be read.
const gchar *label_for(gint response) {
  switch (response) {
    case GTK_RESPONSE_OK:
      return "OK";
    case GTK_RESPONSE_CANCEL:
      return "Cancel";
    case GTK_RESPONSE_YES:
      return "Yes";
    case GTK_RESPONSE_NO:
      return "No";
    default:
      return "";
  }
}

gboolean end_dialog(gpointer data) {
  private_of(GTK_STYLE_DIALOG(data)).end.forget();
  gtk_widget_destroy(GTK_WIDGET(data));
  return G_SOURCE_REMOVE;
}

/// A dialog without a parent belongs to the window that the user sees.
GtkWindow *visible_main_window() {
  const pb::ListSpinePtr windows(gtk_window_list_toplevels());
  for (GtkWindow *window : pb::each<GtkWindow>(windows.get())) {
    const bool ordinary =
        gtk_window_get_type_hint(window) == GDK_WINDOW_TYPE_HINT_NORMAL && !GTK_IS_DIALOG(window);
    if (ordinary && gtk_widget_get_mapped(GTK_WIDGET(window))) return window;
  }
  return nullptr;
}

GtkWidget *make_text(const char *name) {
  GtkWidget *label = gtk_label_new(nullptr);
  gtk_widget_set_name(label, name);
  gtk_label_set_line_wrap(GTK_LABEL(label), TRUE);
  gtk_label_set_line_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
  gtk_misc_set_alignment(GTK_MISC(label), 0, 0.5);
  gtk_widget_set_size_request(label, kWidth - 2 * kPadding, -1);
  // With a number of characters a label looks how wide its text is before it aligns it.
  gtk_label_set_width_chars(GTK_LABEL(label), 1);
  gtk_widget_set_no_show_all(label, TRUE);
  return label;
}

void show_text(GtkWidget *label, const gchar *text) {
  gtk_label_set_text(GTK_LABEL(label), text);
  gtk_widget_set_visible(label, *text != '\0');
}

/// A dialog has no frame of a window manager's around it.
void draw_edge(GtkWidget *widget) {
  const GtkStyle *style = gtk_widget_get_style(widget);
  GtkAllocation area;
  gtk_widget_get_allocation(widget, &area);
  constexpr double kFull = 65535.0;
  const GdkColor &accent = style->bg[GTK_STATE_SELECTED];
  const GdkColor &text = style->fg[GTK_STATE_NORMAL];
  cairo_t *cairo = gdk_cairo_create(gtk_widget_get_window(widget));
  cairo_set_source_rgba(cairo, text.red / kFull, text.green / kFull, text.blue / kFull, 0.35);
  cairo_set_line_width(cairo, 1);
  cairo_rectangle(cairo, 0.5, 0.5, area.width - 1, area.height - 1);
  cairo_stroke(cairo);
  gdk_cairo_set_source_color(cairo, &accent);
  cairo_rectangle(cairo, 0, 0, area.width, kAccentHeight);
  cairo_fill(cairo);
  cairo_destroy(cairo);
}

}  // namespace

static gboolean gtk_style_dialog_expose(GtkWidget *widget, GdkEventExpose *event) {
  const gboolean handled =
      GTK_WIDGET_CLASS(gtk_style_dialog_parent_class)->expose_event(widget, event);
  draw_edge(widget);
  return handled;
}

static void gtk_style_dialog_destroy(GtkObject *object) {
  private_of(GTK_STYLE_DIALOG(object)).end.remove();
  GTK_OBJECT_CLASS(gtk_style_dialog_parent_class)->destroy(object);
}

static void gtk_style_dialog_finalize(GObject *object) {
  std::destroy_at(&private_of(GTK_STYLE_DIALOG(object)));
  G_OBJECT_CLASS(gtk_style_dialog_parent_class)->finalize(object);
}

static void gtk_style_dialog_class_init(GtkStyleDialogClass *klass) {
  GTK_WIDGET_CLASS(klass)->expose_event = gtk_style_dialog_expose;
  GTK_OBJECT_CLASS(klass)->destroy = gtk_style_dialog_destroy;
  G_OBJECT_CLASS(klass)->finalize = gtk_style_dialog_finalize;
}

static void gtk_style_dialog_init(GtkStyleDialog *dialog) {
  auto &priv = *new (gtk_style_dialog_get_instance_private(dialog)) GtkStyleDialogPrivate{};
  priv.title = pb::Ref<GtkWidget>::sink(make_text("phone-dialog-title"));
  priv.text = pb::Ref<GtkWidget>::sink(make_text("phone-dialog-text"));
  priv.content = pb::Ref<GtkWidget>::sink(gtk_vbox_new(FALSE, kPadding / 2));
  gtk_widget_show(priv.content.get());

  auto *area = GTK_BOX(gtk_dialog_get_content_area(GTK_DIALOG(dialog)));
  gtk_box_set_spacing(area, kPadding / 2);
  for (GtkWidget *widget : {priv.title.get(), priv.text.get(), priv.content.get()}) {
    gtk_box_pack_start(area, widget, FALSE, FALSE, 0);
  }
  gtk_button_box_set_layout(GTK_BUTTON_BOX(gtk_dialog_get_action_area(GTK_DIALOG(dialog))),
                            GTK_BUTTONBOX_CENTER);
  gtk_widget_set_name(GTK_WIDGET(dialog), "phone-dialog");
  gtk_window_set_decorated(GTK_WINDOW(dialog), FALSE);
  gtk_window_set_position(GTK_WINDOW(dialog), GTK_WIN_POS_CENTER_ON_PARENT);
  gtk_window_set_skip_taskbar_hint(GTK_WINDOW(dialog), TRUE);
}

GtkWidget *gtk_style_dialog_new(gint, GtkWindow *parent, gint flags) {
  PB_CHECK(parent == nullptr || GTK_IS_WINDOW(parent), nullptr);
  if (gdk_display_get_default() == nullptr) return nullptr;
  auto *dialog = GTK_WINDOW(g_object_new(GTK_TYPE_STYLE_DIALOG, nullptr));
  GtkWindow *under = parent != nullptr ? parent : visible_main_window();
  if (under != nullptr) gtk_window_set_transient_for(dialog, under);
  gtk_window_set_modal(dialog, (flags & GTK_DIALOG_MODAL) != 0);
  gtk_window_set_destroy_with_parent(dialog, (flags & GTK_DIALOG_DESTROY_WITH_PARENT) != 0);
  return GTK_WIDGET(dialog);
}

void gtk_style_dialog_set_title(GtkStyleDialog *dialog, const gchar *title) {
  PB_CHECK(GTK_IS_STYLE_DIALOG(dialog));
  PB_CHECK(title != nullptr);
  const auto text = displayable(title);
  gtk_window_set_title(GTK_WINDOW(dialog), text.get());
  show_text(private_of(dialog).title.get(), text.get());
}

void gtk_style_dialog_set_content_area_text(GtkStyleDialog *dialog, const gchar *text) {
  PB_CHECK(GTK_IS_STYLE_DIALOG(dialog));
  PB_CHECK(text != nullptr);
  show_text(private_of(dialog).text.get(), displayable(text).get());
}

GtkWidget *gtk_style_dialog_get_content_area(GtkStyleDialog *dialog) {
  PB_CHECK(GTK_IS_STYLE_DIALOG(dialog), nullptr);
  return private_of(dialog).content.get();
}

GtkWidget *gtk_style_dialog_get_text_label(GtkStyleDialog *dialog) {
  PB_CHECK(GTK_IS_STYLE_DIALOG(dialog), nullptr);
  return private_of(dialog).text.get();
}

GtkWidget *gtk_style_dialog_add_button(GtkStyleDialog *dialog, const gchar *label, gint response) {
  PB_CHECK(GTK_IS_STYLE_DIALOG(dialog), nullptr);
  auto &priv = private_of(dialog);
  const auto text = displayable(label != nullptr ? label : label_for(response));
  GtkWidget *button = gtk_button_new_with_label(text.get());
  gtk_widget_set_can_default(button, TRUE);
  gtk_widget_show(button);
  gtk_dialog_add_action_widget(GTK_DIALOG(dialog), button, response);
  // A GtkDialog puts its first button last.
  gtk_box_set_child_packing(GTK_BOX(gtk_dialog_get_action_area(GTK_DIALOG(dialog))), button, FALSE,
                            TRUE, 0, GTK_PACK_START);
  // The library names what the user most likely wants first.
  if (!priv.has_buttons) {
    gtk_dialog_set_default_response(GTK_DIALOG(dialog), response);
    gtk_widget_grab_focus(button);
  }
  priv.has_buttons = true;
  return button;
}

void gtk_style_dialog_set_destroy_timeout(GtkStyleDialog *dialog, guint timeout_ms) {
  PB_CHECK(GTK_IS_STYLE_DIALOG(dialog));
  PB_CHECK(timeout_ms > 0);
  private_of(dialog).end = pb::SourceId(gdk_threads_add_timeout(timeout_ms, end_dialog, dialog));
}

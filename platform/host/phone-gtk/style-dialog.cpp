#include "style-dialog.h"

#include <algorithm>
#include <memory>

#include "check.hpp"
#include "glib-ptr.hpp"
#include "phone-gtk/scrolled-text.hpp"

using phone::gtk::ScrolledText;

/// The widgets live as long as the dialog, also when it has been destroyed but not yet finalized.
struct GtkStyleDialogPrivate {
  pb::Ref<GtkWidget> title;
  std::unique_ptr<ScrolledText> text;
  pb::Ref<GtkWidget> content;
  bool has_buttons = false;
  pb::SourceId end;
};

G_DEFINE_TYPE_WITH_PRIVATE(GtkStyleDialog, gtk_style_dialog, GTK_TYPE_DIALOG)

namespace {

constexpr int kWidth = 420;
constexpr int kPadding = 16;
constexpr int kAccentHeight = 3;
/// Parts of the screen's height: a dialog leaves some of it free, and a title is no text.
constexpr double kDialogShare = 0.9;
constexpr double kTitleShare = 0.2;
constexpr int kLeastTextHeight = 60;

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
  return label;
}

int screen_height(GtkStyleDialog *dialog) {
  return gdk_screen_get_height(gtk_widget_get_screen(GTK_WIDGET(dialog)));
}

int height_of(GtkWidget *widget) {
  GtkRequisition size{};
  gtk_widget_size_request(widget, &size);
  return size.height;
}

/// In as many lines as it takes, but a title that fills the screen in one.
void show_title(GtkStyleDialog *dialog, const gchar *text) {
  GtkWidget *widget = private_of(dialog).title.get();
  auto *label = GTK_LABEL(widget);
  const auto set_lines = [label](bool one) {
    gtk_label_set_single_line_mode(label, one);
    gtk_label_set_line_wrap(label, !one);
    gtk_label_set_ellipsize(label, one ? PANGO_ELLIPSIZE_END : PANGO_ELLIPSIZE_NONE);
  };
  set_lines(false);
  gtk_label_set_text(label, text);
  gtk_widget_set_visible(widget, *text != '\0');
  if (height_of(widget) > screen_height(dialog) * kTitleShare) set_lines(true);
}

/// The room that the other parts leave for the text, when all of them ask for a height.
int text_room(GtkStyleDialog *dialog, int whole) {
  const int others = whole - private_of(dialog).text->asked_height();
  const int most = static_cast<int>(screen_height(dialog) * kDialogShare);
  return std::max(most - others, kLeastTextHeight);
}

/// A screen reader announces a dialog by its title, or else by what it says.
void describe(GtkStyleDialog *dialog) {
  AtkObject *accessible = gtk_widget_get_accessible(GTK_WIDGET(dialog));
  const gchar *title = gtk_label_get_text(GTK_LABEL(private_of(dialog).title.get()));
  const gchar *text = gtk_label_get_text(GTK_LABEL(private_of(dialog).text->label()));
  atk_object_set_name(accessible, *title != '\0' ? title : text);
  atk_object_set_description(accessible, text);
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

static void gtk_style_dialog_size_request(GtkWidget *widget, GtkRequisition *size) {
  auto *dialog = GTK_STYLE_DIALOG(widget);
  GTK_WIDGET_CLASS(gtk_style_dialog_parent_class)->size_request(widget, size);
  if (!private_of(dialog).text->fit(text_room(dialog, size->height))) return;
  GTK_WIDGET_CLASS(gtk_style_dialog_parent_class)->size_request(widget, size);
}

static gboolean gtk_style_dialog_key_press(GtkWidget *widget, GdkEventKey *event) {
  return GTK_WIDGET_CLASS(gtk_style_dialog_parent_class)->key_press_event(widget, event) ||
         private_of(GTK_STYLE_DIALOG(widget)).text->handle_key(event);
}

/// Escape means the button that changes nothing. Without one it is as if the window was closed.
static void gtk_style_dialog_close(GtkDialog *dialog) {
  for (const gint response : {GTK_RESPONSE_NO, GTK_RESPONSE_CANCEL}) {
    GtkWidget *button = gtk_dialog_get_widget_for_response(dialog, response);
    if (button == nullptr || !gtk_widget_is_sensitive(button)) continue;
    gtk_dialog_response(dialog, response);
    return;
  }
  GTK_DIALOG_CLASS(gtk_style_dialog_parent_class)->close(dialog);
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
  GTK_WIDGET_CLASS(klass)->size_request = gtk_style_dialog_size_request;
  GTK_WIDGET_CLASS(klass)->key_press_event = gtk_style_dialog_key_press;
  GTK_DIALOG_CLASS(klass)->close = gtk_style_dialog_close;
  GTK_OBJECT_CLASS(klass)->destroy = gtk_style_dialog_destroy;
  G_OBJECT_CLASS(klass)->finalize = gtk_style_dialog_finalize;
}

static void gtk_style_dialog_init(GtkStyleDialog *dialog) {
  auto &priv = *new (gtk_style_dialog_get_instance_private(dialog)) GtkStyleDialogPrivate{};
  priv.title = pb::Ref<GtkWidget>::sink(make_text("phone-dialog-title"));
  gtk_widget_set_no_show_all(priv.title.get(), TRUE);
  priv.text = std::make_unique<ScrolledText>(make_text("phone-dialog-text"));
  priv.content = pb::Ref<GtkWidget>::sink(gtk_vbox_new(FALSE, kPadding / 2));
  gtk_widget_show(priv.content.get());

  auto *area = GTK_BOX(gtk_dialog_get_content_area(GTK_DIALOG(dialog)));
  gtk_box_set_spacing(area, kPadding / 2);
  for (GtkWidget *widget : {priv.title.get(), priv.text->widget(), priv.content.get()}) {
    gtk_box_pack_start(area, widget, FALSE, FALSE, 0);
  }
  gtk_button_box_set_layout(GTK_BUTTON_BOX(gtk_dialog_get_action_area(GTK_DIALOG(dialog))),
                            GTK_BUTTONBOX_CENTER);
  gtk_widget_set_name(GTK_WIDGET(dialog), "phone-dialog");
  gtk_window_set_decorated(GTK_WINDOW(dialog), FALSE);
  gtk_window_set_resizable(GTK_WINDOW(dialog), FALSE);
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
  show_title(dialog, text.get());
  describe(dialog);
}

void gtk_style_dialog_set_content_area_text(GtkStyleDialog *dialog, const gchar *text) {
  PB_CHECK(GTK_IS_STYLE_DIALOG(dialog));
  PB_CHECK(text != nullptr);
  private_of(dialog).text->set(displayable(text).get());
  describe(dialog);
}

GtkWidget *gtk_style_dialog_get_content_area(GtkStyleDialog *dialog) {
  PB_CHECK(GTK_IS_STYLE_DIALOG(dialog), nullptr);
  return private_of(dialog).content.get();
}

GtkWidget *gtk_style_dialog_get_text_label(GtkStyleDialog *dialog) {
  PB_CHECK(GTK_IS_STYLE_DIALOG(dialog), nullptr);
  return private_of(dialog).text->label();
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

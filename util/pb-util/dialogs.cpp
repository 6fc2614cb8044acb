#include "util/pb-util/dialogs.hpp"

#include <array>

#include "check.hpp"
#include "pb-debug.h"
#include "pb-util-dialog.h"
#include "pb-util-resource.h"
#include "pb-util-settings.h"
#include "pb-view-manager.h"
#include "util/pb-util/private.hpp"

using pb::util::dialogs;

namespace {

constexpr gint kOverMainWindow = GTK_DIALOG_MODAL | GTK_DIALOG_DESTROY_WITH_PARENT;

constexpr gint kNoButton = 0;
constexpr gint kDeleteLabel = 10105;
constexpr gint kCancelLabel = 10066;
constexpr gint kOkLabel = 10307;
constexpr gint kYesLabel = 10518;
constexpr gint kNoLabel = 10289;
constexpr gint kCheckBoxLabel = 1198;
constexpr gint kCheckBoxTextWidth = 300;
constexpr const char *kCheckBoxFont = "Quillon Rg Bold 18";

struct Button {
  gint label;
  gint response;
};

/// First and second button of a question.
using ButtonPair = std::array<Button, 2>;

constexpr ButtonPair kDeleteButtons{
    {{kDeleteLabel, GTK_RESPONSE_YES}, {kCancelLabel, GTK_RESPONSE_NO}}};

ButtonPair buttons_of(gint set) {
  switch (set) {
    case PB_DIALOG_BUTTONS_OK:
      return {{{kOkLabel, GTK_RESPONSE_OK}, {kNoButton, 0}}};
    case PB_DIALOG_BUTTONS_YES_NO:
      return {{{kYesLabel, GTK_RESPONSE_YES}, {kNoLabel, GTK_RESPONSE_NO}}};
    case PB_DIALOG_BUTTONS_DELETE:
      return kDeleteButtons;
    case PB_DIALOG_BUTTONS_OK_CANCEL:
      return {{{kOkLabel, GTK_RESPONSE_YES}, {kCancelLabel, GTK_RESPONSE_NO}}};
    default:
      return {};
  }
}

/// The last button gets the focus and the Return key: where there are two it is the one that
/// changes nothing.
void add_buttons(GtkStyleDialog *dialog, const ButtonPair &buttons) {
  const pb::util::ResourceScope scope;
  GtkWidget *last = nullptr;
  gint response = GTK_RESPONSE_NONE;
  for (const Button &button : buttons) {
    if (button.label == kNoButton) continue;
    response = button.response;
    last = gtk_style_dialog_add_button(dialog, pb_get_res_string(button.label), response);
  }
  if (last == nullptr) return;
  gtk_dialog_set_default_response(GTK_DIALOG(dialog), response);
  gtk_widget_grab_focus(last);
}

void delete_box_toggled(GtkToggleButton *box, gpointer) {
  dialogs().delete_box_ticked = gtk_toggle_button_get_active(box);
}

void add_delete_box(GtkStyleDialog *dialog) {
  const pb::StringPtr label = pb::util::copy_res_string(kCheckBoxLabel);
  GtkWidget *box = gtk_check_button_new_with_label(label.get());
  GtkWidget *text = gtk_bin_get_child(GTK_BIN(box));
  gtk_label_set_line_wrap(GTK_LABEL(text), TRUE);
  gtk_label_set_line_wrap_mode(GTK_LABEL(text), PANGO_WRAP_WORD_CHAR);
  gtk_widget_set_size_request(text, kCheckBoxTextWidth, -1);
  const pb::util::FontPtr font(pango_font_description_from_string(kCheckBoxFont));
  gtk_widget_modify_font(text, font.get());
  g_signal_connect(box, "toggled", G_CALLBACK(delete_box_toggled), nullptr);

  GtkWidget *row = gtk_hbox_new(FALSE, 0);
  gtk_box_pack_start(GTK_BOX(row), box, TRUE, TRUE, 0);
  GtkWidget *content = gtk_style_dialog_get_content_area(dialog);
  gtk_container_add(GTK_CONTAINER(content), row);
  gtk_widget_show_all(row);
}

/// A question or notice that is about to be run.
GtkStyleDialog *make_question(gint style, GtkWindow *parent, gint flags, const gchar *title,
                              const gchar *text) {
  dialogs().delete_box_ticked = FALSE;
  GtkStyleDialog *dialog = pb::util::make_current_dialog(style, parent, flags);
  if (dialog != nullptr) pb::util::set_texts(dialog, title, text);
  return dialog;
}

/// Adds buttons, runs and destroys. @return the response, GTK_RESPONSE_NONE without a dialog
gint ask(GtkStyleDialog *dialog, const ButtonPair &buttons, gint timeout_ms) {
  if (dialog == nullptr) return GTK_RESPONSE_NONE;
  add_buttons(dialog, buttons);
  return pb::util::run_dialog(dialog, timeout_ms);
}

}  // namespace

namespace pb::util {

Dialogs &dialogs() {
  // Never destroyed: widgets may outlive the static objects of this library.
  static auto *instance = new Dialogs;
  return *instance;
}

GtkWindow *dialog_parent() {
  GtkWidget *window = pb_view_manager_get_window();
  return GTK_IS_WINDOW(window) ? GTK_WINDOW(window) : nullptr;
}

GtkStyleDialog *make_current_dialog(gint style, GtkWindow *parent, gint flags) {
  GtkWidget *dialog = gtk_style_dialog_new(style, parent, flags);
  if (dialog == nullptr) return nullptr;
  dialogs().current.set(dialog);
  return GTK_STYLE_DIALOG(dialog);
}

void set_texts(GtkStyleDialog *dialog, const gchar *title, const gchar *text) {
  // Names of files get into texts, and those are bytes.
  if (title != nullptr) {
    gtk_style_dialog_set_title(dialog, StringPtr(g_utf8_make_valid(title, -1)).get());
  }
  if (text != nullptr) {
    gtk_style_dialog_set_content_area_text(dialog, StringPtr(g_utf8_make_valid(text, -1)).get());
  }
}

gint run_dialog(GtkStyleDialog *dialog, gint timeout_ms) {
  // The time-out, or any callback meanwhile, may destroy it.
  WidgetSlot alive;
  alive.set(GTK_WIDGET(dialog));
  if (timeout_ms > 0) {
    gtk_style_dialog_set_destroy_timeout(dialog, static_cast<guint>(timeout_ms));
  }
  const gint response = gtk_dialog_run(GTK_DIALOG(dialog));
  alive.destroy();
  return response;
}

}  // namespace pb::util

gboolean pb_util_show_dialog(gint dialog_type, const gchar *title, const gchar *text, gint buttons,
                             gint timeout_ms, gint *response) {
  GtkStyleDialog *dialog = make_question(dialog_type, nullptr, 0, title, text);
  const gint answer = ask(dialog, buttons_of(buttons), timeout_ms);
  if (response != nullptr) *response = answer;
  if (answer != GTK_RESPONSE_NONE) return TRUE;
  PB_LOG(PB_LOG_WARNING, "gtk_dialog_run : programmatically hidden or destroyed\n");
  return FALSE;
}

gboolean pb_show_delete_local_server_dialog(gint dialog_type, const gchar *title, const gchar *text,
                                            gint timeout_ms, gint *response) {
  GtkStyleDialog *dialog = make_question(dialog_type, nullptr, 0, title, text);
  if (dialog != nullptr && mb_util_is_vesk_login_present() == 1) add_delete_box(dialog);
  const gint answer = ask(dialog, kDeleteButtons, timeout_ms);
  if (response != nullptr) *response = answer;
  return TRUE;
}

gboolean pb_menu_delete_archive_show_dialog(gint dialog_type, const gchar *title, const gchar *text,
                                            gint timeout_ms, gint *response) {
  GtkStyleDialog *dialog =
      make_question(dialog_type, pb::util::dialog_parent(), kOverMainWindow, title, text);
  const gint answer = ask(dialog, kDeleteButtons, timeout_ms);
  if (response != nullptr) *response = answer;
  return answer == GTK_RESPONSE_YES;
}

gboolean pb_dialog_destroy(void) {
  pb::util::Dialogs &shown = dialogs();
  shown.popup_timeout.remove();
  shown.current.destroy();
  shown.indicator.destroy();
  if (shown.dim_window) {
    shown.dim_window.destroy();
    PB_LOG(PB_LOG_INFO, "destroy dim window\n");
  }
  return TRUE;
}

gboolean pb_dialog_check_exist(void) { return dialogs().current.get() != nullptr; }

gboolean mb_popup_check_exist(void) { return dialogs().popup.get() != nullptr; }

gboolean pb_is_set_delete_dialog_check_box(void) {
  const gboolean ticked = dialogs().delete_box_ticked;
  PB_LOG(PB_LOG_INFO, "pb_is_set_delete_dialog_check_box check_box_active = %d\n", ticked);
  return ticked;
}

const gchar *__pb_util_get_button_label(GtkWidget *button) {
  if (!GTK_IS_BUTTON(button)) return nullptr;
  const gchar *label = gtk_button_get_label(GTK_BUTTON(button));
  if (label != nullptr) return label;
  GtkWidget *child = gtk_bin_get_child(GTK_BIN(button));
  return GTK_IS_LABEL(child) ? gtk_label_get_text(GTK_LABEL(child)) : nullptr;
}

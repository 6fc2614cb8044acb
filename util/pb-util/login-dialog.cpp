#include <cstring>

#include "pb-debug.h"
#include "pb-util-dialog.h"
#include "pb-util-resource.h"
#include "util/pb-util/dialogs.hpp"
#include "util/pb-util/private.hpp"

namespace {

/// A text of the resources, and what stands there when they have none.
struct Text {
  gint id;
  const char *fallback;
};

constexpr Text kTitle{1217, "Sign in"};
constexpr Text kUserLabel{1218, "User name"};
constexpr Text kPasswordLabel{1219, "Password"};
constexpr Text kOkButton{10307, "OK"};
constexpr Text kCancelButton{10066, "Cancel"};

constexpr gint kOverMainWindow = GTK_DIALOG_MODAL | GTK_DIALOG_DESTROY_WITH_PARENT;
constexpr guint kRows = 2;
constexpr guint kColumns = 2;
constexpr guint kSpacing = 6;

/// The widgets of the dialog, and what was in them when the user agreed.
struct Form {
  GtkWidget *user = nullptr;
  GtkWidget *password = nullptr;
  GtkWidget *sign_in = nullptr;
  pb::StringPtr given_user;
  pb::StringPtr given_password;
};

const gchar *find_text(const Text &text) {
  const gchar *found = pb_get_res_string(text.id);
  return found == nullptr ? text.fallback : found;
}

bool is_filled(GtkWidget *entry) { return gtk_entry_get_text_length(GTK_ENTRY(entry)) > 0; }

void entry_changed(GtkEditable *, gpointer form_data) {
  const auto *form = static_cast<Form *>(form_data);
  gtk_widget_set_sensitive(form->sign_in, is_filled(form->user) && is_filled(form->password));
}

void dialog_answered(GtkDialog *, gint response, gpointer form_data) {
  auto *form = static_cast<Form *>(form_data);
  if (response != GTK_RESPONSE_OK || !is_filled(form->user) || !is_filled(form->password)) return;
  form->given_user.reset(g_strdup(gtk_entry_get_text(GTK_ENTRY(form->user))));
  form->given_password.reset(g_strdup(gtk_entry_get_text(GTK_ENTRY(form->password))));
}

GtkWidget *add_entry(GtkWidget *table, guint row, const Text &text) {
  GtkWidget *label = gtk_label_new(find_text(text));
  GtkWidget *entry = gtk_entry_new();
  gtk_misc_set_alignment(GTK_MISC(label), 0.0F, 0.5F);
  gtk_label_set_mnemonic_widget(GTK_LABEL(label), entry);
  gtk_entry_set_activates_default(GTK_ENTRY(entry), TRUE);
  gtk_table_attach(GTK_TABLE(table), label, 0, 1, row, row + 1, GTK_FILL, GTK_FILL, 0, 0);
  gtk_table_attach_defaults(GTK_TABLE(table), entry, 1, 2, row, row + 1);
  return entry;
}

/// The form has to outlive the dialog.
void fill_dialog(GtkStyleDialog *dialog, Form &form) {
  const pb::util::ResourceScope scope;
  gtk_style_dialog_set_title(dialog, find_text(kTitle));

  GtkWidget *table = gtk_table_new(kRows, kColumns, FALSE);
  gtk_table_set_row_spacings(GTK_TABLE(table), kSpacing);
  gtk_table_set_col_spacings(GTK_TABLE(table), kSpacing);
  form.user = add_entry(table, 0, kUserLabel);
  form.password = add_entry(table, 1, kPasswordLabel);
  gtk_entry_set_visibility(GTK_ENTRY(form.password), FALSE);
  gtk_container_add(GTK_CONTAINER(gtk_style_dialog_get_content_area(dialog)), table);
  gtk_widget_show_all(table);

  form.sign_in = gtk_style_dialog_add_button(dialog, find_text(kOkButton), GTK_RESPONSE_OK);
  gtk_style_dialog_add_button(dialog, find_text(kCancelButton), GTK_RESPONSE_CANCEL);
  gtk_dialog_set_default_response(GTK_DIALOG(dialog), GTK_RESPONSE_OK);
  gtk_widget_set_sensitive(form.sign_in, FALSE);
  gtk_widget_grab_focus(form.user);

  g_signal_connect(form.user, "changed", G_CALLBACK(entry_changed), &form);
  g_signal_connect(form.password, "changed", G_CALLBACK(entry_changed), &form);
  g_signal_connect(dialog, "response", G_CALLBACK(dialog_answered), &form);
}

}  // namespace

gboolean pb_util_create_youtube_login_dialog(gchar **user, gchar **password) {
  if (user != nullptr) *user = nullptr;
  if (password != nullptr) *password = nullptr;
  GtkStyleDialog *dialog = pb::util::make_current_dialog(
      pb::util::kNoticeStyle, pb::util::dialog_parent(), kOverMainWindow);
  if (dialog == nullptr) {
    PB_LOG(PB_LOG_WARNING, "dialog creation failed\n\n");
    return FALSE;
  }
  Form form;
  fill_dialog(dialog, form);
  pb::util::run_dialog(dialog, 0);
  if (form.given_user == nullptr || form.given_password == nullptr) return FALSE;
  if (user != nullptr) *user = form.given_user.release();
  if (password != nullptr) *password = form.given_password.release();
  return TRUE;
}

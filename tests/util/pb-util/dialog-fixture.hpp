/// What the tests of dialogs share.
#pragma once

#include <style-dialog.h>

#include <string>
#include <vector>

#include "pb-util-dialog.h"
#include "pb-util-resource.h"
#include "pb-view-manager.h"
#include "support/fake-platform.hpp"
#include "util/pb-util/fake-settings.hpp"

namespace pb_test {

/// A test of dialogs; what is left on the screen goes at its end.
class DialogTest : public support::DisplayTest {
 protected:
  void TearDown() override {
    pb_dialog_destroy();
    pb_view_manager_destroy_window();
    pb_res_close();
  }

  /// Opens the resources, and forgets the calls that this makes.
  static void open_resources() {
    pb_res_open();
    fake::take_calls();
    fake::take_log();
  }

  static GtkWidget *create_window() {
    GtkWidget *window = pb_view_manager_create_window(0);
    fake::take_calls();
    return window;
  }

  /// Lets the next dialog be answered.
  static void answer(gint response) {
    fake::platform().gtk_dialog_run = [response](GtkDialog *) { return response; };
  }

  /// Remembers every style dialog that is made, the last one last.
  std::vector<GtkWidget *> &watch_dialogs() {
    auto make = fake::platform().gtk_style_dialog_new;
    fake::platform().gtk_style_dialog_new = [this, make](gint style, GtkWindow *parent,
                                                         gint flags) {
      GtkWidget *dialog = make(style, parent, flags);
      if (dialog != nullptr) dialogs_.push_back(dialog);
      return dialog;
    };
    return dialogs_;
  }

  /// Lets the platform make no dialog.
  static void refuse_dialogs() {
    fake::platform().gtk_style_dialog_new = [](gint, GtkWindow *, gint) -> GtkWidget * {
      return nullptr;
    };
  }

  /// Every widget of a type below another, in order.
  static std::vector<GtkWidget *> descendants(GtkWidget *widget, GType type) {
    std::vector<GtkWidget *> found;
    collect(widget, type, found);
    return found;
  }

  static std::string text_of(GtkWidget *dialog) {
    return gtk_label_get_text(GTK_LABEL(gtk_style_dialog_get_text_label(GTK_STYLE_DIALOG(dialog))));
  }

  /// Runs the real main loop until nothing is pending.
  static void settle() {
    while (gtk_events_pending() != FALSE) gtk_main_iteration();
  }

 private:
  static void collect(GtkWidget *widget, GType type, std::vector<GtkWidget *> &found) {
    if (G_TYPE_CHECK_INSTANCE_TYPE(widget, type)) found.push_back(widget);
    if (!GTK_IS_CONTAINER(widget)) return;
    GList *children = gtk_container_get_children(GTK_CONTAINER(widget));
    for (GList *link = children; link != nullptr; link = link->next) {
      collect(GTK_WIDGET(link->data), type, found);
    }
    g_list_free(children);
  }

  std::vector<GtkWidget *> dialogs_;
};

}  // namespace pb_test

/// What the dialogs, popups and progress indicators share.
#pragma once

#include <style-dialog.h>

#include "glib-ptr.hpp"
#include "util/widget-slot.hpp"

namespace pb::util {

/// Looks of gtk_style_dialog_new() that are chosen here.
constexpr gint kNoticeStyle = 2;
constexpr gint kProgressStyle = 4;

/// What is on the screen. Main loop only.
struct Dialogs {
  /// The one that pb_dialog_destroy() takes down.
  WidgetSlot current;
  WidgetSlot progress_button;
  /// The message of mb_show_popup(), while it is shown.
  WidgetSlot popup;
  /// The popup, waiting message or progress strip: it waits for no answer, and makes way for the
  /// next of them even when a dialog came to be the current one.
  WidgetSlot indicator;
  WidgetSlot progress_strip;
  WidgetSlot strip_bar;
  WidgetSlot dim_window;
  SourceId popup_timeout;
  gboolean delete_box_ticked = FALSE;
};

/// The one instance.
Dialogs &dialogs();

/// The main window; null when there is none or it is no window.
GtkWindow *dialog_parent();

/// Makes a style dialog current. Null when the platform refuses.
GtkStyleDialog *make_current_dialog(gint style, GtkWindow *parent, gint flags);

/// Sets what is given.
void set_texts(GtkStyleDialog *dialog, const gchar *title, const gchar *text);

/// Runs a dialog until it is answered or gone, and destroys it. @return the response
gint run_dialog(GtkStyleDialog *dialog, gint timeout_ms);

/// Takes down an indicator and makes a style dialog over a window the next one and current.
GtkStyleDialog *make_indicator(gint style, GtkWindow *parent, gint flags, const gchar *text);

/// Puts the running animation into a dialog. When its file is missing, which is logged, the
/// toolkit's own turns instead.
void add_animation(GtkStyleDialog *dialog);

/// Shows a dialog with its middle in the middle of the screen.
void show_centred(GtkStyleDialog *dialog);

}  // namespace pb::util

#include <algorithm>

#include "pb-debug.h"
#include "pb-util-dialog.h"
#include "pb-util-settings.h"
#include "util/pb-util/dialogs.hpp"

using pb::util::dialogs;

namespace {

constexpr guint kPopupMs = 2000;
/// Reading time: this many characters fit into kPopupMs, each further one takes kCharacterMs.
constexpr glong kShortText = 40;
constexpr glong kCharacterMs = 50;
constexpr guint kLongestPopupMs = 10000;

constexpr gint kNotModal = GTK_DIALOG_DESTROY_WITH_PARENT;
constexpr gint kModal = GTK_DIALOG_MODAL | GTK_DIALOG_DESTROY_WITH_PARENT;

constexpr gint kDone = 100;

/// Part of the main window's brightness that is left behind a modal waiting message.
constexpr guint kDimAlpha = 0x80;

guint reading_time_ms(const gchar *text) {
  const glong further = std::max<glong>(g_utf8_strlen(text, -1) - kShortText, 0);
  const glong limit = kLongestPopupMs - kPopupMs;
  return kPopupMs + static_cast<guint>(std::min(further, limit / kCharacterMs) * kCharacterMs);
}

GdkRectangle area_of(GtkWindow *window) {
  GdkRectangle area{};
  if (window == nullptr) {
    GdkScreen *screen = gdk_screen_get_default();
    return {0, 0, gdk_screen_get_width(screen), gdk_screen_get_height(screen)};
  }
  gtk_window_get_position(window, &area.x, &area.y);
  gtk_window_get_size(window, &area.width, &area.height);
  return area;
}

/// Text in the theme's colour, in as many lines as it takes.
void style_text(GtkStyleDialog *dialog) {
  GtkWidget *label = gtk_style_dialog_get_text_label(dialog);
  gtk_label_set_line_wrap(GTK_LABEL(label), TRUE);
  gtk_label_set_line_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
  GdkColor color{};
  if (mb_util_get_themecolor_rgb_string(&color)) {
    gtk_widget_modify_fg(label, GTK_STATE_NORMAL, &color);
  }
}

/// Lets the window below keep the keyboard.
void stay_out_of_the_way(GtkStyleDialog *dialog) {
  gtk_window_set_decorated(GTK_WINDOW(dialog), FALSE);
  gtk_window_set_accept_focus(GTK_WINDOW(dialog), FALSE);
  gtk_window_set_focus_on_map(GTK_WINDOW(dialog), FALSE);
}

/// A screen reader speaks an alert when it appears.
void announce(GtkStyleDialog *dialog, const gchar *text) {
  AtkObject *accessible = gtk_widget_get_accessible(GTK_WIDGET(dialog));
  atk_object_set_role(accessible, ATK_ROLE_ALERT);
  if (text != nullptr) atk_object_set_name(accessible, text);
}

GtkWindow *window_below(GtkWidget *dialog) {
  return gtk_window_get_transient_for(GTK_WINDOW(dialog));
}

gboolean popup_timed_out(gpointer) {
  dialogs().popup_timeout.forget();
  dialogs().popup.destroy();
  return FALSE;
}

gboolean popup_tapped(GtkWidget *popup, GdkEventButton *, gpointer) {
  gtk_widget_destroy(popup);
  return TRUE;
}

gboolean window_below_changed(GtkWidget *, GdkEventConfigure *, gpointer) {
  mb_popup_reposition_popup_window();
  return FALSE;
}

void waiting_closed(GtkDialog *, gint, gpointer) { pb_dialog_destroy(); }

GtkWindow *window_of(GtkWidget *widget) {
  GtkWidget *top = GTK_IS_WIDGET(widget) ? gtk_widget_get_toplevel(widget) : nullptr;
  return GTK_IS_WINDOW(top) ? GTK_WINDOW(top) : pb::util::dialog_parent();
}

/// What a window shows, darkened; null when it is not on the screen.
pb::Ref<GdkPixbuf> darkened_picture(GtkWindow *window) {
  GdkWindow *shown = gtk_widget_get_window(GTK_WIDGET(window));
  if (shown == nullptr || !gdk_window_is_viewable(shown)) return nullptr;
  const gint width = gdk_window_get_width(shown);
  const gint height = gdk_window_get_height(shown);
  auto picture = pb::Ref<GdkPixbuf>::adopt(
      gdk_pixbuf_get_from_drawable(nullptr, shown, nullptr, 0, 0, 0, 0, width, height));
  if (!picture) return nullptr;
  return pb::Ref<GdkPixbuf>::adopt(gdk_pixbuf_composite_color_simple(
      picture.get(), width, height, GDK_INTERP_NEAREST, kDimAlpha, 1, 0, 0));
}

/// Lays a dark picture of a window over it. It needs no compositing manager, and shows the
/// window as it was, which nobody can change behind a modal dialog.
void dim(GtkWindow *window) {
  const pb::Ref<GdkPixbuf> picture =
      window == nullptr ? pb::Ref<GdkPixbuf>() : darkened_picture(window);
  if (!picture) return;
  GtkWidget *cover = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  dialogs().dim_window.set(cover);
  gtk_window_set_type_hint(GTK_WINDOW(cover), GDK_WINDOW_TYPE_HINT_UTILITY);
  gtk_window_set_transient_for(GTK_WINDOW(cover), window);
  gtk_window_set_destroy_with_parent(GTK_WINDOW(cover), TRUE);
  gtk_window_set_decorated(GTK_WINDOW(cover), FALSE);
  gtk_window_set_accept_focus(GTK_WINDOW(cover), FALSE);
  gtk_window_set_skip_taskbar_hint(GTK_WINDOW(cover), TRUE);
  gtk_container_add(GTK_CONTAINER(cover), gtk_image_new_from_pixbuf(picture.get()));
  const GdkRectangle area = area_of(window);
  gtk_window_move(GTK_WINDOW(cover), area.x, area.y);
  gtk_widget_show_all(cover);
}

void take_down_indicator() {
  dialogs().popup_timeout.remove();
  dialogs().indicator.destroy();
  dialogs().dim_window.destroy();
}

GtkStyleDialog *make_waiting_message(const gchar *text, gint flags) {
  GtkStyleDialog *dialog =
      pb::util::make_indicator(pb::util::kProgressStyle, pb::util::dialog_parent(), flags, text);
  if (dialog == nullptr) return nullptr;
  style_text(dialog);
  announce(dialog, text);
  pb::util::add_animation(dialog);
  g_signal_connect(dialog, "response", G_CALLBACK(waiting_closed), nullptr);
  return dialog;
}

/// Lies along the top edge of the window below it.
void place_strip(GtkStyleDialog *strip) {
  const GdkRectangle area = area_of(window_below(GTK_WIDGET(strip)));
  gtk_widget_set_size_request(GTK_WIDGET(strip), area.width, -1);
  gtk_window_move(GTK_WINDOW(strip), area.x, area.y);
}

}  // namespace

namespace pb::util {

GtkStyleDialog *make_indicator(gint style, GtkWindow *parent, gint flags, const gchar *text) {
  take_down_indicator();
  GtkStyleDialog *dialog = make_current_dialog(style, parent, flags);
  if (dialog == nullptr) return nullptr;
  dialogs().indicator.set(GTK_WIDGET(dialog));
  set_texts(dialog, nullptr, text);
  // There are no buttons, so their row would be a gap.
  GtkWidget *buttons = gtk_dialog_get_action_area(GTK_DIALOG(dialog));
  gtk_widget_set_no_show_all(buttons, TRUE);
  gtk_widget_hide(buttons);
  return dialog;
}

}  // namespace pb::util

void mb_show_popup(GtkWidget *parent, const gchar *text) {
  if (text == nullptr) {
    PB_LOG(PB_LOG_WARNING, "text = NULL\n");
    return;
  }
  GtkWindow *below = window_of(parent);
  GtkStyleDialog *dialog = pb::util::make_indicator(pb::util::kNoticeStyle, below, kNotModal, text);
  if (dialog == nullptr) {
    PB_LOG(PB_LOG_WARNING, "dialog creation failed\n\n");
    return;
  }
  GtkWidget *popup = GTK_WIDGET(dialog);
  dialogs().popup.set(popup);
  style_text(dialog);
  stay_out_of_the_way(dialog);
  announce(dialog, text);
  gtk_widget_add_events(popup, GDK_BUTTON_PRESS_MASK);
  g_signal_connect(popup, "button-press-event", G_CALLBACK(popup_tapped), nullptr);
  if (below != nullptr) {
    g_signal_connect_object(below, "configure-event", G_CALLBACK(window_below_changed), popup,
                            static_cast<GConnectFlags>(0));
  }
  mb_popup_reposition_popup_window();
  gtk_widget_show_all(popup);
  dialogs().popup_timeout =
      pb::SourceId(gdk_threads_add_timeout(reading_time_ms(text), popup_timed_out, nullptr));
}

void mb_popup_reposition_popup_window(void) {
  GtkWidget *popup = dialogs().popup.get();
  if (popup == nullptr) return;
  const GdkRectangle area = area_of(window_below(popup));
  gint width = 0;
  gint height = 0;
  gtk_window_get_size(GTK_WINDOW(popup), &width, &height);
  // Its middle lies at three quarters of the height, and its edge never outside the window.
  const gint top = std::min(area.height * 3 / 4 - height / 2, area.height - height);
  gtk_window_move(GTK_WINDOW(popup), area.x + std::max((area.width - width) / 2, 0),
                  area.y + std::max(top, 0));
}

void mb_util_create_waiting_popup(const gchar *text) {
  GtkStyleDialog *dialog = make_waiting_message(text, kNotModal);
  if (dialog == nullptr) {
    PB_LOG(PB_LOG_WARNING, "dialog creation failed\n\n");
    return;
  }
  pb::util::show_centred(dialog);
}

void mb_util_start_waiting_loop_animation(const gchar *text) {
  GtkStyleDialog *dialog = make_waiting_message(text, kModal);
  if (dialog == nullptr) {
    PB_LOG(PB_LOG_WARNING, "dialog creation failed\n\n");
    return;
  }
  dim(pb::util::dialog_parent());
  pb::util::show_centred(dialog);
}

void mb_util_start_noti_progress_bar(const gchar *text) {
  GtkStyleDialog *strip = pb::util::make_indicator(pb::util::kProgressStyle,
                                                   pb::util::dialog_parent(), kNotModal, text);
  if (strip == nullptr) {
    PB_LOG(PB_LOG_WARNING, "dialog creation failed\n\n");
    return;
  }
  GtkWidget *bar = gtk_progress_bar_new();
  dialogs().progress_strip.set(GTK_WIDGET(strip));
  dialogs().strip_bar.set(bar);
  gtk_container_add(GTK_CONTAINER(gtk_style_dialog_get_content_area(strip)), bar);
  gtk_label_set_ellipsize(GTK_LABEL(gtk_style_dialog_get_text_label(strip)), PANGO_ELLIPSIZE_END);
  stay_out_of_the_way(strip);
  place_strip(strip);
  gtk_widget_show_all(GTK_WIDGET(strip));
}

void pb_util_update_noti_progress_bar(gint percent, const gchar *text) {
  pb::util::Dialogs &shown = dialogs();
  if (!shown.progress_strip) return;
  const gint done = std::clamp(percent, 0, kDone);
  if (done == kDone) {
    shown.progress_strip.destroy();
    return;
  }
  pb::util::set_texts(GTK_STYLE_DIALOG(shown.progress_strip.get()), nullptr, text);
  if (!shown.strip_bar) return;
  gtk_progress_bar_set_fraction(GTK_PROGRESS_BAR(shown.strip_bar.get()),
                                static_cast<double>(done) / kDone);
}

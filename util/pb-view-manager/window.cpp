#include "check.hpp"
#include "pb-debug.h"
#include "pb-view-manager.h"
#include "util/pb-view-manager/private.hpp"

namespace {

constexpr gint kWidth = 480;
constexpr gint kOwnWindowHeight = 608;
constexpr gint kForeignWindowHeight = 800;

}  // namespace

namespace pb::view_manager {

WidgetSlot &main_window() {
  // Never destroyed: the window may outlive the static objects of this library.
  static auto *window = new WidgetSlot;
  return *window;
}

GtkMainWindow *usable_window() {
  GtkWidget *window = main_window().get();
  return GTK_IS_MAIN_WINDOW(window) ? GTK_MAIN_WINDOW(window) : nullptr;
}

}  // namespace pb::view_manager

using pb::view_manager::main_window;
using pb::view_manager::usable_window;

GtkWidget *pb_view_manager_create_window(gint style) {
  if (!main_window()) {
    GtkWidget *window = gtk_main_window_new(style);
    main_window().set(window);
    gtk_widget_set_size_request(window, kWidth, kOwnWindowHeight);
    gtk_widget_show(window);
  }
  return main_window().get();
}

void pb_view_manager_set_window(GtkWidget *widget) {
  if (!GTK_IS_WIDGET(widget)) return;
  main_window().set(widget);
  gtk_widget_set_size_request(widget, kWidth, kForeignWindowHeight);
  gtk_widget_show_all(widget);
}

GtkWidget *pb_view_manager_get_window(void) { return main_window().get(); }

void pb_view_manager_destroy_window(void) {
  pb_view_manager_destroy_all();
  if (!main_window()) return;
  PB_LOG(PB_LOG_INFO, "destroy GtkMainWindow\n");
  main_window().destroy();
}

void pb_view_manager_set_title(const gchar *title) {
  GtkMainWindow *window = usable_window();
  if (window == nullptr || title == nullptr) return;
  gtk_main_window_set_default_title(window, title);
  GtkWidget *label = gtk_main_window_get_title_label(window);
  if (GTK_IS_MISC(label)) gtk_misc_set_alignment(GTK_MISC(label), 0.5F, 0.5F);
}

void pb_view_manager_set_current_title(void) {
  if (usable_window() == nullptr) {
    PB_LOG(PB_LOG_INFO, "exit 1\n");
    return;
  }
  const gint top = pb_view_manager_get_count() - 1;
  if (top < 0) {
    PB_LOG(PB_LOG_INFO, "exit 2 : i=%d\n", top);
    return;
  }
  const gchar *title = pb::view_manager::current_title();
  PB_LOG(PB_LOG_INFO, "pb_view_manager_set_current_title =%s\n", title == nullptr ? "" : title);
  pb_view_manager_set_title(title);
}

void pb_view_manager_set_title_icon(GdkPixbuf *icon) {
  GtkMainWindow *window = usable_window();
  if (window != nullptr && icon != nullptr) gtk_main_window_set_default_icon(window, icon);
}

void pb_view_manager_set_title_style(gint style) {
  GtkMainWindow *window = usable_window();
  if (window != nullptr) gtk_main_window_set_title_style(window, style);
}

gint pb_view_manager_get_window_style(void) {
  GtkMainWindow *window = usable_window();
  return window == nullptr ? 0 : gtk_main_window_get_style(window);
}

void pb_view_manager_set_window_style(gint style) {
  GtkMainWindow *window = usable_window();
  if (window != nullptr) gtk_main_window_change_style(window, style, 0);
}

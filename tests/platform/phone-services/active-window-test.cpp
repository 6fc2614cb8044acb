#include <gtest/gtest.h>
#include <gtk/gtk.h>

// X11 names a macro None, which the test framework does not bear.
#include <gdk/gdkx.h>

#include "application-manager.h"
#include "support/glib-test.hpp"

namespace {

/// Runs the main loop until the window is active, for at most two seconds.
bool becomes_active(GtkWidget *window) {
  const gint64 end = g_get_monotonic_time() + 2 * G_USEC_PER_SEC;
  while (!gtk_window_is_active(GTK_WINDOW(window)) && g_get_monotonic_time() < end) {
    g_main_context_iteration(nullptr, FALSE);
    if (gtk_widget_get_mapped(window)) {
      // There is no window manager here that would give it the focus.
      XSetInputFocus(GDK_WINDOW_XDISPLAY(gtk_widget_get_window(window)),
                     GDK_WINDOW_XID(gtk_widget_get_window(window)), RevertToParent, CurrentTime);
      gdk_error_trap_push();
      gdk_display_sync(gdk_display_get_default());
      gdk_error_trap_pop();
    }
  }
  return gtk_window_is_active(GTK_WINDOW(window));
}

}  // namespace

using ApplicationManagerWithADisplay = support::DisplayTest;

TEST_F(ApplicationManagerWithADisplay, TellsTheGalleryWhileItsWindowIsActive) {
  GtkWidget *window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  gdk_error_trap_push();
  gtk_widget_show(window);
  ASSERT_TRUE(becomes_active(window));
  gint id = 0;

  EXPECT_EQ(app_get_current_id(&id), 0);

  EXPECT_EQ(id, APP_ID_GALLERY);
  gdk_error_trap_pop();
  gtk_widget_destroy(window);
}

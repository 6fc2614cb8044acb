#include <gtk/gtk.h>

#include <cerrno>

#include "application-manager.h"
#include "glib-ptr.hpp"

namespace {

constexpr gint kAnotherApplication = 0;

bool one_of_our_windows_is_active() {
  const pb::ListSpinePtr windows(gtk_window_list_toplevels());
  for (GtkWindow *window : pb::each<GtkWindow>(windows.get())) {
    if (gtk_window_is_active(window)) return true;
  }
  return false;
}

}  // namespace

gint app_get_current_id(gint *app_id) {
  if (app_id == nullptr) return EINVAL;
  *app_id = one_of_our_windows_is_active() ? APP_ID_GALLERY : kAnotherApplication;
  return 0;
}

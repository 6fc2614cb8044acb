/// What the files of this module share.
#pragma once

#include <main-window.h>

#include "util/widget-slot.hpp"

namespace pb::view_manager {

/// The main window.
WidgetSlot &main_window();

/// The main window where its title and style can be used; null otherwise.
GtkMainWindow *usable_window();

/// The title that the top form was added with, null when it has none. There has to be a form.
const gchar *current_title();

}  // namespace pb::view_manager

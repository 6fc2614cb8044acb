/// A view draws its rows within a pass, so that a store opens and closes its source once a pass.
#pragma once

#include <gtk/gtk.h>
#include <virtual-list-store.h>

#include "glib-ptr.hpp"

namespace phone::gtk {

/// Opens a pass over the visible rows first to last of any model; only a GtkVirtualListStore
/// takes notice. Passes may be nested and keep their model alive.
class DrawingPass {
 public:
  DrawingPass(GtkTreeModel *model, int first, int last);
  ~DrawingPass();
  DrawingPass(const DrawingPass &) = delete;
  DrawingPass &operator=(const DrawingPass &) = delete;

 private:
  pb::Ref<GtkVirtualListStore> store_;
};

}  // namespace phone::gtk

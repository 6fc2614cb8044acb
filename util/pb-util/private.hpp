/// What the files of this module share.
#pragma once

#include <gconf/gconf-client.h>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <pango/pango.h>

#include "glib-ptr.hpp"

namespace pb::util {

using FontPtr = std::unique_ptr<PangoFontDescription, FreeWith<pango_font_description_free>>;

using ClientRef = Ref<GConfClient>;

/// The settings' client for one use; null when there is none.
ClientRef default_client();

/// Drops the cached frame, so that it is loaded again on demand.
void drop_cached_frame();

/// Opens the resources for the look-ups of one dialog and closes them again, unless somebody
/// has them open already: closing is not counted and would invalidate that caller's strings.
class ResourceScope {
 public:
  ResourceScope();
  ~ResourceScope();
  ResourceScope(const ResourceScope &) = delete;
  ResourceScope &operator=(const ResourceScope &) = delete;

 private:
  bool opened_ = false;
};

/// A copy of a resource string that outlives pb_res_close(); the number itself when there is
/// none, so that a dialog never stays empty. Never null.
StringPtr copy_res_string(gint id);

}  // namespace pb::util

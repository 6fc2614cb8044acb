/// What the files of the browsing state share.
#pragma once

#include <pb-app-common.h>

namespace pb::app_common {

/// Categories that this module treats specially.
enum Category : gint {
  kNone = -1,
  kAlbums = 0,
  kFiles = 1,
  kOtherFiles = 2,
  kAlbumContents = 3,
};

/// The state that has no public field. Zeroed by GObject, the rest is set by pb_app_common_init.
struct Private {
  gint n_entire_items;
  gint reserved1;
  PbItemList *item_list;  ///< owned
  gint reserved2[3];
  gint sort;
  gint reserved3;
  gint64 filter;
  gint album_sort;
  gint album_filter;
  gint icon_size;
  GtkWidget *iconview;        ///< borrowed; a weak pointer clears it
  GtkAdjustment *adjustment;  ///< borrowed; a weak pointer clears it
  gboolean resync;            ///< a rebuild of the view that is shown is under way
};

/// @return NULL when there is no object
Private *private_of(PbAppCommon *thiz);

/// Takes over the caller's reference on the new list and drops the old list.
void replace_list(Private *priv, PbItemList *list);

/// @return (transfer none) the item of a row of the current list; NULL for an empty row, and for
///         a number outside the list
PbItem *peek_item(const Private *priv, gint row);

}  // namespace pb::app_common

/// What the files of the split list share: its private data and the steps that more than one entry
/// point takes.
#pragma once

#include <gtk/gtk.h>
#include <pb-split-list.h>
#include <glib-ptr.hpp>

#include <optional>
#include <set>

#include "common/pb-item-list/private.hpp"

namespace pb::split_list {

inline constexpr gint kNoSource = -1;
inline constexpr gint kIconSize = 64;           // pixels, both ways
inline constexpr gint kPage = 100;              // records of a fetch, and rows of a slice
inline constexpr std::size_t kMostIcons = 540;  // thumbnails that a list keeps

/// What is still to fetch of a list of files.
struct Source {
  bool pending = false;
  gint sort = 0;
  gint64 filter = 0;
  gint next = 0;              // row of the service, or place in the files
  gint total = 0;             // of either
  item_list::FileList files;  // empty: rows of the whole library
};

}  // namespace pb::split_list

/// Constructed and destroyed by hand with the instance.
struct PbSplitListPrivate {
  gint count = 0;
  GList *record_list = nullptr;  // MbItem; freed with the list unless it was handed over
  gint record_first = 0;
  gint record_last = -1;
  gint album_id = 0;  // of the files; 0 outside albums
  pb::item_list::Weak<GtkAdjustment> vadjustment;
  pb::item_list::Weak<GtkPaned> hpaned;
  gint view_start = 0;        // first row of the refresh under way
  gint refresh_progress = 0;  // rows of the refresh that are done
  gint renumber_from = 0;     // column 2 may be wrong from this row on; see renumbering
  pb::Ref<GdkPixbuf> default_icon;
  gint rows_in_view = 27;  // refreshed at the least: nine lines
  gint rows_ahead = 9;     // refreshed beyond these, where the scroll goes
  gint columns = 3;        // until the view has a size
  gint refresh_source = pb::split_list::kNoSource;
  gint scroll_direction = 1;  // 1 down or not at all, 0 up
  gint fill_source = 0;       // 0: none
  gint row_height = 0;        // pixels, spacing included
  gint refresh_remaining = 27;
  gint refresh_count = 27;           // rows in view of the refresh under way
  GList *sub_record_list = nullptr;  // FmAlbumRecord of a list of albums; owned
  gint renumbering = 0;              // 1 when renumber_from counts
  gint loads_thumbnails = 1;
  pb::item_list::Weak<GtkIconView> icon_view;
  pb::split_list::Source source;
  /// The record of the last row that was made; NULL: none was. Only its address is looked at.
  gconstpointer last_made = nullptr;
  /// Rows whose icon is a thumbnail.
  std::set<gint> icon_rows;
};

namespace pb::split_list {

PbSplitListPrivate &private_of(PbSplitList *list);

/// Whether the filter type hides files of a kind.
[[nodiscard]] bool is_hidden(gint media_type);
/// Takes the kinds that the filter type hides out of a filter of the service.
[[nodiscard]] gint64 narrow(gint64 filter);
/// The filter of the settings as split lists use it: -1 is 3, -2 is 19, and any other filter lists
/// pictures and videos whatever else it says.
[[nodiscard]] gint64 resolve_filter(gint64 filter);

/// @name Records
/// @{

/// Fetches up to most further records. FALSE when there was nothing left to fetch.
bool fetch_records(PbSplitList *list, gint most);
/// The records are somebody else's from here on: none is added to them any more.
void stop_fetching(PbSplitListPrivate &priv);
/// @}

/// @name Rows
/// @{

[[nodiscard]] gint row_count(PbSplitList *list);
/// FALSE, and the iterator is good for nothing, when there is no such row.
[[nodiscard]] bool point(PbSplitList *list, GtkTreeIter *iter, gint row);
/// Makes the next rows, fetching their records where needed. FALSE when there are none left.
bool fill_slice(const char *entry, PbSplitList *list);
[[nodiscard]] bool has_more_rows(PbSplitList *list);
void start_filling(PbSplitList *list);
void stop_filling(PbSplitListPrivate &priv);
/// @}

/// @name Thumbnails
/// @{

void start_refresh(PbSplitList *list);
void stop_refresh(PbSplitListPrivate &priv);
/// Follows the widgets that are set.
void follow_widgets(PbSplitList *list);
/// Disconnects from them. The results tell whether there was something to disconnect from.
bool release_adjustment(PbSplitList *list);
bool release_paned(PbSplitList *list);
/// @}

}  // namespace pb::split_list

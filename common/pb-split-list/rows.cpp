#include <media-browser.h>
#include <pb-debug.h>
#include <pb-item.h>
#include <pb-split-list.h>
#include <check.hpp>

#include <algorithm>

#include "private.hpp"

using pb::split_list::point;
using pb::split_list::private_of;

namespace {

constexpr gint kFillPriority = 140;     // after the thumbnails in view
constexpr gint64 kSliceTime = 8000;     // microseconds, half a frame
constexpr gint kLeastRowsOfSlice = 27;  // a screen

/// The records behind the rows.
GList *records_of(const PbSplitListPrivate &priv) {
  return priv.sub_record_list != nullptr ? priv.sub_record_list : priv.record_list;
}

pb::Ref<PbItem> make_file(const char *entry, const PbSplitListPrivate &priv, const MbItem &record) {
  const bool by_web_id = pb_split_get_id_type() == PB_SPLIT_ID_WEB || record.id == 0;
  pb::Ref<PbItem> item;
  if (by_web_id && record.nfid > 0) item = pb::item_list::make_server_item(entry, record.nfid);
  if (!item) {
    item = pb::item_list::make_file_item(record, record.nfid);
    pb::item_list::set_marks(item.get(), record);
  }
  item->album_id = priv.album_id;
  return item;
}

void insert_row(const char *entry, PbSplitList *list, gpointer record, gint row) {
  PbSplitListPrivate &priv = private_of(list);
  const auto item = priv.sub_record_list != nullptr
                        ? pb::item_list::make_album(entry, static_cast<FmAlbumRecord *>(record))
                        : make_file(entry, priv, *static_cast<const MbItem *>(record));
  gtk_list_store_insert_with_values(GTK_LIST_STORE(list), nullptr, row, 0, item.get(), 1, nullptr,
                                    2, row, 3, priv.default_icon.get(), -1);
}

/// The record of the next row; NULL when it is not held.
GList *next_record(const PbSplitListPrivate &priv) {
  GList *link = records_of(priv);
  if (priv.last_made != nullptr) {
    link = g_list_find(link, priv.last_made);
    if (link != nullptr) link = link->next;
  }
  while (link != nullptr && link->data == nullptr) link = link->next;
  return link;
}

/// Makes rows of held records, most at the most. Gives their number.
gint append_rows(const char *entry, PbSplitList *list, gint most) {
  PbSplitListPrivate &priv = private_of(list);
  const gint64 until = g_get_monotonic_time() + kSliceTime;
  const gint first = pb::split_list::row_count(list);
  gint made = 0;
  // Whoever hears of a row may move its record, or take all of them.
  for (GList *link = next_record(priv); link != nullptr && made < most;) {
    gpointer record = link->data;
    priv.last_made = record;
    insert_row(entry, list, record, first + made);
    made += 1;
    if (made >= kLeastRowsOfSlice && g_get_monotonic_time() > until) break;
    link = priv.last_made == record && records_of(priv) != nullptr ? link->next : nullptr;
    if (link != nullptr && link->data == nullptr) link = next_record(priv);
  }
  return made;
}

/// Column 2 of rows from a row on, a slice of them. FALSE when all numbers are right.
bool renumber_slice(PbSplitList *list) {
  PbSplitListPrivate &priv = private_of(list);
  if (priv.renumbering == 0) return false;
  GtkTreeIter iter;
  bool more = point(list, &iter, priv.renumber_from);
  for (gint done = 0; more && done < pb::split_list::kPage; ++done) {
    gtk_list_store_set(GTK_LIST_STORE(list), &iter, 2, priv.renumber_from, -1);
    priv.renumber_from += 1;
    more = gtk_tree_model_iter_next(GTK_TREE_MODEL(list), &iter);
  }
  if (!more) priv.renumbering = 0;
  return more;
}

void renumber_from(PbSplitListPrivate &priv, gint row) {
  priv.renumber_from = priv.renumbering != 0 ? std::min(priv.renumber_from, row) : row;
  priv.renumbering = 1;
}

/// How many rows there are to be, by the records that have had theirs made.
gint expected_rows(PbSplitList *list) {
  const PbSplitListPrivate &priv = private_of(list);
  GList *records = records_of(priv);
  if (records == nullptr && priv.count > 0) return pb::split_list::row_count(list);
  if (priv.last_made == nullptr) return 0;
  const gint last = g_list_index(records, priv.last_made);
  return last < 0 ? priv.count : last + 1;
}

/// Rows below a row that came or went have another number.
void shift_icons(PbSplitListPrivate &priv, gint row, gint by) {
  std::set<gint> shifted;
  for (const gint icon : priv.icon_rows) {
    if (icon == row && by < 0) continue;
    shifted.insert(icon >= row ? icon + by : icon);
  }
  priv.icon_rows = std::move(shifted);
}

void remove_row(PbSplitList *list, gint row) {
  GtkTreeIter iter;
  if (!point(list, &iter, row)) return;
  PbSplitListPrivate &priv = private_of(list);
  shift_icons(priv, row, -1);
  renumber_from(priv, row);
  gtk_list_store_remove(GTK_LIST_STORE(list), &iter);
}

void put_row_back(const char *entry, PbSplitList *list, gint row) {
  PbSplitListPrivate &priv = private_of(list);
  gpointer record = row < 0 ? nullptr : g_list_nth_data(records_of(priv), row);
  if (record == nullptr || row > pb::split_list::row_count(list)) return;
  shift_icons(priv, row, 1);
  renumber_from(priv, row + 1);
  insert_row(entry, list, record, row);
}

}  // namespace

static gboolean pb_split_list_fill_at_idle_cb(gpointer data) {
  // A row that comes may make the application drop the list.
  const auto self = pb::Ref<PbSplitList>::share(PB_SPLIT_LIST(data));
  PbSplitListPrivate &priv = private_of(self.get());
  const gint source = priv.fill_source;
  const gint rows = pb::split_list::row_count(self.get());
  const bool more = pb::split_list::fill_slice(__func__, self.get());
  const bool renumbering = renumber_slice(self.get());
  if (priv.fill_source != source) return FALSE;
  // A refresh that is over has not met the rows that came into view since.
  const bool idle = priv.refresh_source == pb::split_list::kNoSource;
  const bool seen = rows < priv.view_start + priv.refresh_count + priv.rows_ahead;
  if (idle && seen && pb::split_list::row_count(self.get()) > rows) {
    pb::split_list::start_refresh(self.get());
  }
  if (more || renumbering) return TRUE;
  priv.fill_source = 0;
  return FALSE;
}

namespace pb::split_list {

bool point(PbSplitList *list, GtkTreeIter *iter, gint row) {
  return row >= 0 && gtk_tree_model_iter_nth_child(GTK_TREE_MODEL(list), iter, nullptr, row);
}

gint row_count(PbSplitList *list) {
  return gtk_tree_model_iter_n_children(GTK_TREE_MODEL(list), nullptr);
}

bool fill_slice(const char *entry, PbSplitList *list) {
  const PbSplitListPrivate &priv = private_of(list);
  if (next_record(priv) == nullptr && !fetch_records(list, kPage)) return false;
  append_rows(entry, list, kPage);
  return has_more_rows(list);
}

bool has_more_rows(PbSplitList *list) {
  const PbSplitListPrivate &priv = private_of(list);
  return priv.source.pending || next_record(priv) != nullptr;
}

void start_filling(PbSplitList *list) {
  PbSplitListPrivate &priv = private_of(list);
  if (priv.fill_source != 0) return;
  priv.fill_source = static_cast<gint>(
      gdk_threads_add_idle_full(kFillPriority, pb_split_list_fill_at_idle_cb, list, nullptr));
}

void stop_filling(PbSplitListPrivate &priv) {
  if (priv.fill_source != 0) g_source_remove(static_cast<guint>(priv.fill_source));
  priv.fill_source = 0;
}

}  // namespace pb::split_list

void pb_split_list_refresh_new_item_when_remove(PbSplitList *list, gint index) {
  PB_CHECK(PB_IS_SPLIT_LIST(list));
  PB_LOG(PB_LOG_INFO, "index=%d\n", index);
  // A row that goes may make the application drop the list.
  const auto self = pb::Ref<PbSplitList>::share(list);
  const gint rows = pb::split_list::row_count(list);
  const gint expected = expected_rows(list);
  if (rows > expected) {
    remove_row(list, index);
  } else if (rows < expected) {
    put_row_back(__func__, list, index);
  }
  renumber_slice(list);
  if (private_of(list).renumbering != 0 || pb::split_list::has_more_rows(list)) {
    pb::split_list::start_filling(list);
  }
  pb::split_list::start_refresh(list);
}

PbItem *pb_split_list_get_nth_item(PbSplitList *list, gint index) {
  PB_CHECK(PB_IS_SPLIT_LIST(list), nullptr);
  while (pb::split_list::row_count(list) <= index && pb::split_list::fill_slice(__func__, list)) {
  }
  GtkTreeIter iter;
  if (!point(list, &iter, index)) {
    PB_LOG(PB_LOG_WARNING, "ITEM NOT FOUND!!! [%d]\n", index);
    return nullptr;
  }
  PbItem *item = nullptr;
  gtk_tree_model_get(GTK_TREE_MODEL(list), &iter, 0, &item, -1);
  return pb::Ref<PbItem>::adopt(item).get();
}

#include <media-browser.h>
#include <pb-debug.h>
#include <pb-split-list.h>
#include <check.hpp>

#include "private.hpp"

using pb::split_list::private_of;

namespace {

constexpr gint kFailed = -1;
constexpr gint kFiltered = -2;

gint key_of(const MbItem &record) {
  return pb_split_get_id_type() == PB_SPLIT_ID_WEB ? record.nfid : record.id;
}

GList *find_key(GList *records, gint key) {
  for (GList *link = records; link != nullptr; link = link->next) {
    const auto *record = static_cast<const MbItem *>(link->data);
    if (record != nullptr && key_of(*record) == key) return link;
  }
  return nullptr;
}

/// Where a record belongs in a list that is ordered by the ordering index.
struct Place {
  GList *before = nullptr;  // NULL: at the end
  gint position = 0;
};

/// Nothing when the way there leads over a record that is NULL.
std::optional<Place> find_place(GList *records, gint db_idx) {
  Place place{records, 0};
  for (; place.before != nullptr; place.before = place.before->next, ++place.position) {
    const auto *record = static_cast<const MbItem *>(place.before->data);
    if (record == nullptr) return std::nullopt;
    if (record->db_idx > db_idx) break;
  }
  return place;
}

/// The rows that are made end with a record that is about to go: they end with the one before it.
void forget_row(PbSplitListPrivate &priv, const GList *link) {
  if (priv.last_made != link->data) return;
  priv.last_made = link->prev == nullptr ? nullptr : link->prev->data;
}

}  // namespace

void pb_split_list_select_item(PbSplitList *list, GList **unselected_record_list,
                               GList **selected_record_list, guint index) {
  PB_CHECK_AS("PB_IS_SPLIT_LIST(item_list)", PB_IS_SPLIT_LIST(list));
  PB_LOG(PB_LOG_INFO, "============== selected_db_idx: %d ===========\n", static_cast<gint>(index));
  if (unselected_record_list == nullptr || selected_record_list == nullptr) {
    PB_LOG(PB_LOG_ERROR, "unselected_record_list or selected_record_list address NULL, return\n");
    return;
  }
  if (*unselected_record_list == nullptr) {
    PB_LOG(PB_LOG_WARNING, "unselected_record_list NULL, return\n");
    return;
  }
  GList *link = g_list_nth(*unselected_record_list, index);
  if (link == nullptr || link->data == nullptr) {
    PB_LOG(PB_LOG_WARNING, "mbitem NULL!\n");
    return;
  }
  PbSplitListPrivate &priv = private_of(list);
  forget_row(priv, link);
  *unselected_record_list = g_list_remove_link(*unselected_record_list, link);
  *selected_record_list = g_list_concat(*selected_record_list, link);
  pb::split_list::stop_fetching(priv);
  priv.record_list = *unselected_record_list;
  priv.count -= 1;
  priv.record_last -= 1;
  if (*unselected_record_list != nullptr) {
    PB_LOG(PB_LOG_INFO, "unselected: %d\n", g_list_length(*unselected_record_list));
  }
  PB_LOG(PB_LOG_INFO, "selected: %d\n", g_list_length(*selected_record_list));
}

gint pb_split_list_unselect_item(PbSplitList *list, GList **unselected_record_list,
                                 GList **selected_record_list, GList **filtered_record_list,
                                 gint key) {
  PB_CHECK_AS("PB_IS_SPLIT_LIST(item_list)", PB_IS_SPLIT_LIST(list), kFailed);
  if (unselected_record_list == nullptr || selected_record_list == nullptr) {
    PB_LOG(PB_LOG_ERROR, "unselected_record_list or selected_record_list address NULL, return\n");
    return kFailed;
  }
  if (*selected_record_list == nullptr) return kFailed;
  GList *link = find_key(*selected_record_list, key);
  if (link == nullptr) {
    PB_LOG(PB_LOG_WARNING, "can't find unselected item in selected_list, return!!!\n");
    return kFailed;
  }
  auto *record = static_cast<MbItem *>(link->data);
  const bool hidden = pb::split_list::is_hidden(record->media_type);
  if (hidden && filtered_record_list == nullptr) {
    PB_LOG(PB_LOG_ERROR, "filtered_record_list address NULL, return\n");
    return kFailed;
  }
  *selected_record_list = g_list_delete_link(*selected_record_list, link);
  PB_LOG(PB_LOG_INFO, "db_idx[%d] removed from selected_record_list\n", record->db_idx);

  GList **receiver = hidden ? filtered_record_list : unselected_record_list;
  const auto place = find_place(*receiver, record->db_idx);
  if (!place) {
    PB_LOG(PB_LOG_ERROR, "mbitem NULL!\n");
    return kFailed;
  }
  *receiver = g_list_insert_before(*receiver, place->before, record);
  if (hidden) {
    PB_LOG(PB_LOG_INFO, "db_idx[%d] inserted into index[%d] of filtered_record_list\n",
           record->db_idx, place->position);
    return kFiltered;
  }
  PB_LOG(PB_LOG_INFO, "db_idx[%d] inserted into index[%d] of unselected_record_list\n",
         record->db_idx, place->position);
  PbSplitListPrivate &priv = private_of(list);
  pb::split_list::stop_fetching(priv);
  priv.record_list = *unselected_record_list;
  priv.count = static_cast<gint>(g_list_length(*unselected_record_list));
  priv.record_last = priv.count - 1;
  PB_LOG(PB_LOG_INFO, "selected: %d\n", g_list_length(*selected_record_list));
  return place->position;
}

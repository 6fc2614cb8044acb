#include <media-browser.h>
#include <media-mirror.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "private.hpp"

namespace pb::split_list {

namespace {

constexpr gint kPicture = 1;  // media types
constexpr gint kVideo = 2;
constexpr gint64 kBothKinds = FM_FILTER_PICTURES | FM_FILTER_VIDEOS;

/// Reads a file of the phone. Nothing when the service cannot, or when the file has gone.
std::optional<MbItem> read_local(gint id) {
  FmFileRecord file{};
  gint error = 0;
  if (!fm_svc_mb_get_item_by_database_index(id, &file, &error) || file.item.id == 0) {
    return std::nullopt;
  }
  return file.item;
}

/// A record for a file without a database index. Texts of the server are shorter than a record's.
MbItem make_web_record(const FmVeskFileRecord &web) {
  MbItem record{};
  std::memcpy(record.path, web.name, strnlen(web.name, sizeof web.name));
  std::memcpy(record.thumbnail_path, web.thumbnail_path,
              strnlen(web.thumbnail_path, sizeof web.thumbnail_path));
  record.attribute = web.attribute;
  std::memcpy(record.extension, "jpg", sizeof "jpg");
  record.nfid = item_list::low_word(web.nfid);
  record.unmarked = 1;
  return record;
}

std::optional<MbItem> read_web(gint64 id) {
  FmVeskFileRecord web{};
  gint error = 0;
  if (!fm_svc_vesk_get_vesk_file(id, &web, &error)) return std::nullopt;
  if (web.database_index <= 0) return make_web_record(web);
  auto record = read_local(web.database_index);
  if (record) record->nfid = item_list::low_word(web.nfid);
  return record;
}

/// Reads some files of a list into records that are ordered as the list is.
item_list::RecordList read_files(const item_list::FileList &files, gint first, gint end) {
  GList *records = nullptr;
  for (gint row = first; row < end; ++row) {
    auto read = files.type(row) == FM_FILE_LOCAL ? read_local(item_list::low_word(files.id(row)))
                                                 : read_web(files.id(row));
    if (!read) continue;
    auto *record = static_cast<MbItem *>(std::malloc(sizeof(MbItem)));
    if (record == nullptr) break;
    read->db_idx = row;
    *record = *read;
    records = g_list_prepend(records, record);
  }
  return item_list::RecordList(g_list_reverse(records));
}

}  // namespace

bool is_hidden(gint media_type) {
  const gint filter_type = pb_split_get_filter_type();
  return (media_type == kVideo && filter_type == PB_SPLIT_FILTER_PICTURES) ||
         (media_type == kPicture && filter_type == PB_SPLIT_FILTER_VIDEOS);
}

gint64 narrow(gint64 filter) {
  switch (pb_split_get_filter_type()) {
    case PB_SPLIT_FILTER_PICTURES:
      return (filter & ~kBothKinds) | FM_FILTER_PICTURES;
    case PB_SPLIT_FILTER_VIDEOS:
      return (filter & ~kBothKinds) | FM_FILTER_VIDEOS;
    default:
      return filter;
  }
}

gint64 resolve_filter(gint64 filter) { return item_list::resolve_filter(filter) | kBothKinds; }

bool fetch_records(PbSplitList *list, gint most) {
  PbSplitListPrivate &priv = private_of(list);
  Source &source = priv.source;
  if (!source.pending) return false;
  const gint wanted = std::min(most, source.total - source.next);
  const gint end = source.next + wanted;
  item_list::RecordList page;
  if (source.files.empty()) {
    page = item_list::fetch_files(source.sort, source.filter, source.next, end - 1);
    if (page.length() > wanted) page.drop_last(page.length() - wanted);
    // The service has fewer files than it counted.
    if (page.length() < wanted) source.total = source.next + page.length();
  } else {
    page = read_files(source.files, source.next, end);
  }
  source.next = end;
  priv.record_last += page.length();
  priv.record_list = g_list_concat(priv.record_list, page.release());
  if (source.next >= source.total) {
    stop_fetching(priv);
    priv.count = priv.record_last - priv.record_first + 1;
  }
  return true;
}

void stop_fetching(PbSplitListPrivate &priv) { priv.source = Source{}; }

}  // namespace pb::split_list

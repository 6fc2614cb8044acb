#include "media-browser.h"
#include "media-browser/covers.hpp"
#include "media-browser/service.hpp"

using namespace phone::media;

namespace phone::media {

bool fill(FmFileList &list, const std::vector<gint64> &ids, const std::vector<gint32> &types) {
  list = {};
  if (ids.empty()) return true;
  list.ids = static_cast<gint64 *>(std::malloc(ids.size() * sizeof(gint64)));
  list.types = static_cast<gint32 *>(std::malloc(ids.size() * sizeof(gint32)));
  if (list.ids == nullptr || list.types == nullptr) {
    fm_svc_sync_list_free(&list);
    return false;
  }
  std::copy(ids.begin(), ids.end(), list.ids);
  std::copy(types.begin(), types.end(), list.types);
  list.count = static_cast<gint32>(ids.size());
  return true;
}

ListedFile listed(gint32 id, const Reader::File &file, bool with_thumbnail) {
  ListedFile result;
  result.id = id;
  result.folder = file.folder;
  result.name = file.name;
  result.kind = file.kind;
  result.user_flags = file.user_flags;
  result.nfid = file.nfid;
  if (with_thumbnail) {
    result.thumbnail = cached_thumbnail(join(file.folder, file.name), file.device, file.state);
  }
  return result;
}

namespace {

/// The service has one tree: everything that is below the roots.
bool is_whole_tree(const gchar *path) { return path != nullptr && std::strcmp(path, "/") == 0; }

/// Reads a file that a list may hold. One that has gone clears the record and succeeds, whatever
/// the reason: a caller may try again until it succeeds.
template <typename Record>
bool read_record(gint id, Record &record) {
  std::memset(&record, 0, sizeof record);
  const auto index = Index::current();
  if (index == nullptr) return false;
  const auto file = index->reader().file(id);
  index->check_after_reading();
  if (!file) return false;
  if (!file->gone() && !file->folder.empty()) fill(record, listed(id, *file, true));
  return true;
}

}  // namespace

}  // namespace phone::media

gboolean fm_svc_mb_get_all_sub_file_count(const gchar *path, gint, gint64 filter, gint *count,
                                          gint *error) {
  if (count == nullptr || !is_whole_tree(path)) {
    if (count != nullptr) *count = 0;
    return fail(error, kBadArgument);
  }
  *count = 0;
  const auto index = Index::current();
  if (index == nullptr) return fail(error, kNotRunning);
  const auto files = index->reader().count(classes_of(filter));
  index->check_after_reading();
  if (!files) return fail(error, kNotRead);
  *count = static_cast<gint>(std::min<gint64>(*files, G_MAXINT));
  return TRUE;
}

gboolean fm_svc_mb_get_list(const gchar *path, gint, gint sort, gint64 filter, gint, GList **list,
                            gint first, gint last, gint *error) {
  if (list == nullptr) return fail(error, kBadArgument);
  *list = nullptr;
  if (!is_whole_tree(path)) return fail(error, kBadArgument);
  const auto index = Index::current();
  if (index == nullptr) return fail(error, kNotRunning);
  const Sort order = sort_of(sort);
  const ClassMask mask = classes_of(filter);
  const std::vector<gint32> ids = index->reader().page(order, mask, first, last);
  const auto files = index->reader().files(order, mask, ids);
  index->check_after_reading();
  GList *records = nullptr;
  for (std::size_t at = ids.size(); at-- > 0;) {
    auto *record = static_cast<MbItem *>(std::malloc(sizeof(MbItem)));
    if (record == nullptr) break;
    // A row that cannot be read any more keeps its place, or the rows behind it would move up.
    const ListedFile file =
        files[at] ? listed(ids[at], *files[at], false) : ListedFile{.id = ids[at]};
    fill(*record, file, std::max(first, 0) + static_cast<gint>(at));
    records = g_list_prepend(records, record);
  }
  *list = records;
  return TRUE;
}

gboolean fm_svc_mb_get_record_by_index(gint id, FmMediaRecord *record, gint *error) {
  if (record == nullptr) return fail(error, kBadArgument);
  read_record(id, *record);
  return TRUE;
}

gboolean fm_svc_mb_get_item_by_database_index(gint id, FmFileRecord *record, gint *error) {
  if (record == nullptr) return fail(error, kBadArgument);
  if (read_record(id, *record)) return TRUE;
  return fail(error, Index::current() == nullptr ? kNotRunning : kNotFound);
}

void fm_svc_mb_glist_free(GList **list, gboolean free_data) {
  if (list == nullptr) return;
  if (free_data != FALSE)
    g_list_foreach(
        *list, [](gpointer data, gpointer) { std::free(data); }, nullptr);
  g_list_free(*list);
  *list = nullptr;
}

void fm_svc_sync_list_free(FmFileList *list) {
  if (list == nullptr) return;
  std::free(list->ids);
  std::free(list->types);
  *list = {};
}

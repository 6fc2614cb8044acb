/// What the service's functions share.
#pragma once

#include <media-records.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "media-browser/index.hpp"

namespace phone::media {

/// Ids of web albums begin here; folders have smaller ones.
inline constexpr gint32 kFirstWebAlbum = 0x40000000;

inline gboolean fail(gint *error, int code) {
  if (error != nullptr) *error = code;
  return FALSE;
}

/// Copies records into the kind of list that the service hands out.
template <typename Record>
GList *list_of(const std::vector<Record> &records) {
  GList *list = nullptr;
  for (auto record = records.rbegin(); record != records.rend(); ++record) {
    void *copy = std::malloc(sizeof(Record));
    if (copy == nullptr) break;
    std::memcpy(copy, &*record, sizeof(Record));
    list = g_list_prepend(list, copy);
  }
  return list;
}

/// Fills a file list; the arrays come from malloc(). @return false when there is no memory
bool fill(FmFileList &list, const std::vector<gint64> &ids, const std::vector<gint32> &types);

/// Web ids of an album's files that have no local copy; an album of -1 means all.
std::vector<gint64> web_only(Index &index, gint64 naid);

/// A file for the records; with its cached thumbnail when asked for.
ListedFile listed(gint32 id, const Reader::File &file, bool with_thumbnail);

}  // namespace phone::media

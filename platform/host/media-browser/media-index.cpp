#include "media-index.h"

#include <cstring>

#include "check.hpp"
#include "media-browser/index.hpp"
#include "media-browser/user-data-file.hpp"

using namespace phone::media;

namespace {

/// Hands the sentence of a failure to the caller.
gboolean tell(const std::string &sentence, gchar **problem) {
  if (problem != nullptr) *problem = g_strdup(sentence.c_str());
  return FALSE;
}

}  // namespace

gboolean media_index_start(const gchar *const *roots, gint n_roots, gchar **problem) {
  if (problem != nullptr) *problem = nullptr;
  PB_CHECK(roots != nullptr || n_roots <= 0, FALSE);
  media_index_stop();
  std::vector<std::string> folders;
  for (gint at = 0; at < n_roots; ++at) folders.emplace_back(roots[at]);
  std::string sentence;
  const std::shared_ptr<Index> index = Index::open(folders, sentence);
  if (index == nullptr) {
    if (problem != nullptr) *problem = g_strdup(sentence.c_str());
    return FALSE;
  }
  Index::set_current(index);
  index->start();
  return TRUE;
}

void media_index_stop(void) {
  const std::shared_ptr<Index> index = Index::current();
  if (index == nullptr) return;
  Index::set_current(nullptr);
  index->stop();
  Announcer::instance().forget();
}

void media_index_rescan(void) {
  if (const auto index = Index::current()) index->rescan();
}

void media_index_get_progress(MediaIndexProgress *progress) {
  PB_CHECK(progress != nullptr);
  std::memset(progress, 0, sizeof *progress);
  if (const auto index = Index::current()) index->shared().progress.fill(*progress);
}

guint media_index_add_listener(media_index_cb callback, gpointer user_data) {
  PB_CHECK(callback != nullptr, 0);
  return Announcer::instance().add(callback, user_data);
}

void media_index_remove_listener(guint id) { Announcer::instance().remove(id); }

gint media_index_get_position(gint sort, gint64 filter, gint id) {
  const auto index = Index::current();
  if (index == nullptr) return -1;
  const auto row = index->reader().row_of(sort_of(sort), classes_of(filter), id);
  return row ? static_cast<gint>(*row) : -1;
}

gint media_index_get_id_by_path(const gchar *path) {
  const auto index = Index::current();
  if (index == nullptr || path == nullptr) return 0;
  return index->reader().id_of_path(path);
}

gboolean media_index_export_user_data(const gchar *path, gchar **problem) {
  if (problem != nullptr) *problem = nullptr;
  PB_CHECK(path != nullptr, FALSE);
  std::string sentence;
  if (const auto index = Index::current()) {
    return export_user_data(index->user_data(), path, sentence) ? TRUE : tell(sentence, problem);
  }
  const UserData data(sentence);
  // What was set aside just now is not known any more: an earlier copy is worth more.
  if (!sentence.empty()) return tell(sentence, problem);
  return export_user_data(data, path, sentence) ? TRUE : tell(sentence, problem);
}

gboolean media_index_import_user_data(const gchar *path, gchar **problem) {
  if (problem != nullptr) *problem = nullptr;
  PB_CHECK(path != nullptr, FALSE);
  std::string sentence;
  if (const auto index = Index::current()) {
    return index->import_user_data(path, sentence) ? TRUE : tell(sentence, problem);
  }
  std::string opening;
  UserData data(opening);
  if (import_user_data(data, path, sentence)) return TRUE;
  return tell(opening.empty() ? sentence : opening, problem);
}

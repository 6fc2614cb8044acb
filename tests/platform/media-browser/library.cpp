#include "library.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>

#include "file-bytes.hpp"
#include "media-browser/storage.hpp"

namespace test {

std::string camera_jpeg(const std::string &taken, const std::string &offset, int orientation) {
  Exif exif;
  exif.orientation = orientation;
  exif.taken = taken;
  if (!taken.empty()) exif.taken_offset = offset;
  return with_exif(jpeg_start(0xc0, 4000, 3000), exif);
}

void set_mtime(const std::string &path, gint64 seconds) {
  const timespec times[2] = {{seconds, 0}, {seconds, 0}};
  if (utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW) != 0) {
    ADD_FAILURE() << path << ": " << g_strerror(errno);
  }
}

Library::Library() : listener_(media_index_add_listener(note, this)) { dir_.make_dir("pictures"); }

Library::~Library() {
  media_index_stop();
  media_index_remove_listener(listener_);
}

void Library::note(guint changes, gpointer self) {
  static_cast<Library *>(self)->changes_ |= changes;
}

std::string Library::path(std::string_view name) const {
  return dir_.path("pictures") + (name.empty() ? "" : "/") + std::string(name);
}

std::string Library::write(std::string_view name, std::string_view bytes) const {
  return dir_.write("pictures/" + std::string(name), bytes);
}

std::string Library::add(std::string_view name, gint64 date) const {
  const std::string full = write(name, camera_jpeg());
  set_mtime(full, date);
  return full;
}

void Library::begin() {
  const std::string root = path("");
  const gchar *roots[] = {root.c_str()};
  gchar *problem = nullptr;
  EXPECT_TRUE(media_index_start(roots, 1, &problem)) << (problem != nullptr ? problem : "");
  g_free(problem);
}

void Library::start() {
  changes_ = 0;
  begin();
  EXPECT_TRUE(run_until([this] { return (changes_ & MEDIA_INDEX_SCAN_FINISHED) != 0; }));
  changes_ = 0;
}

void Library::stop() { media_index_stop(); }

void Library::rescan() {
  changes_ = 0;
  media_index_rescan();
  EXPECT_TRUE(run_until([this] { return (changes_ & MEDIA_INDEX_SCAN_FINISHED) != 0; }));
  changes_ = 0;
}

gint Library::count(gint64 filter) {
  gint rows = -1;
  EXPECT_TRUE(fm_svc_mb_get_all_sub_file_count("/", 2, filter, &rows, nullptr));
  return rows;
}

std::vector<std::string> Library::list(gint sort, gint64 filter) const {
  const gint rows = count(filter);
  GList *items = nullptr;
  EXPECT_TRUE(fm_svc_mb_get_list("/", 2, sort, filter, 0, &items, 0, rows, nullptr));
  EXPECT_EQ(g_list_length(items), static_cast<guint>(rows));
  const std::string root = path("") + "/";
  std::vector<std::string> names;
  for (GList *link = items; link != nullptr; link = link->next) {
    std::string name = static_cast<MbItem *>(link->data)->path;
    if (name.starts_with(root)) name.erase(0, root.size());
    names.push_back(name);
  }
  fm_svc_mb_glist_free(&items, TRUE);
  return names;
}

bool Library::becomes(const std::vector<std::string> &names) const {
  std::vector<std::string> now;
  const bool held = run_until([&] {
    now = list(0);
    return now == names;
  });
  if (!held) ADD_FAILURE() << "the list stays " << testing::PrintToString(now);
  return held;
}

gint Library::id_of(std::string_view name) const {
  return media_index_get_id_by_path(path(name).c_str());
}

std::vector<std::string> Library::albums(gint sort) {
  GList *records = nullptr;
  EXPECT_TRUE(fm_svc_mb_get_all_albums_ex(sort, FM_ALBUMS_WITHOUT_WEB, &records, nullptr));
  std::vector<std::string> names;
  for (GList *link = records; link != nullptr; link = link->next) {
    names.emplace_back(static_cast<FmAlbumRecord *>(link->data)->name);
  }
  fm_svc_mb_glist_free(&records, TRUE);
  return names;
}

gint Library::album_id(std::string_view name) {
  GList *records = nullptr;
  EXPECT_TRUE(fm_svc_mb_get_all_albums_ex(0, 0, &records, nullptr));
  gint id = 0;
  for (GList *link = records; link != nullptr; link = link->next) {
    const auto *album = static_cast<FmAlbumRecord *>(link->data);
    if (name == album->name) id = album->album_id;
  }
  fm_svc_mb_glist_free(&records, TRUE);
  return id;
}

std::vector<gint64> Library::album_files(gint album, gint sort, gint filter) {
  FmFileList files{};
  EXPECT_TRUE(fm_svc_mb_album_get_all_files_ex(album, sort, filter, &files, nullptr));
  const std::vector<gint64> ids(files.ids, files.ids + files.count);
  fm_svc_sync_list_free(&files);
  return ids;
}

MediaIndexProgress Library::progress() {
  MediaIndexProgress progress;
  media_index_get_progress(&progress);
  return progress;
}

guint Library::take_changes() { return std::exchange(changes_, 0); }

std::vector<std::string> Library::index_files() {
  const std::string folder = phone::media::data_folder();
  const std::unique_ptr<DIR, int (*)(DIR *)> dir(opendir(folder.c_str()), closedir);
  std::vector<std::string> files;
  while (const dirent *entry = dir ? readdir(dir.get()) : nullptr) {
    if (std::string_view(entry->d_name).starts_with("index-")) {
      files.push_back(folder + "/" + entry->d_name);
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace test

/// Walks long lists as the library does after a rebuild: bench-lists ROWS
/// Makes that many small pictures in one temporary folder, indexes them, and then measures what
/// goes through all rows of a list, with the calls that it makes to the service.
#include <gtk/gtk.h>
#include <media-browser.h>
#include <media-index.h>
#include <pb-app-common.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

#include "bench/index/measure.hpp"
#include "glib-ptr.hpp"

namespace {

long pages = 0;
long records = 0;
long files = 0;
long connections = 0;

}  // namespace

// The calls go on to the service.
extern "C" {
#define COUNTED __attribute__((visibility("default")))
gboolean __real_fm_svc_mb_get_list(const gchar *path, gint kind, gint sort, gint64 filter,
                                   gint reserved, GList **list, gint first, gint last, gint *error);
COUNTED gboolean __wrap_fm_svc_mb_get_list(const gchar *path, gint kind, gint sort, gint64 filter,
                                           gint reserved, GList **list, gint first, gint last,
                                           gint *error) {
  ++pages;
  return __real_fm_svc_mb_get_list(path, kind, sort, filter, reserved, list, first, last, error);
}
gboolean __real_fm_svc_mb_get_record_by_index(gint id, FmMediaRecord *record, gint *error);
COUNTED gboolean __wrap_fm_svc_mb_get_record_by_index(gint id, FmMediaRecord *record, gint *error) {
  ++records;
  return __real_fm_svc_mb_get_record_by_index(id, record, error);
}
gboolean __real_fm_svc_mb_get_item_by_database_index(gint id, FmFileRecord *record, gint *error);
COUNTED gboolean __wrap_fm_svc_mb_get_item_by_database_index(gint id, FmFileRecord *record,
                                                             gint *error) {
  ++files;
  return __real_fm_svc_mb_get_item_by_database_index(id, record, error);
}
gboolean __real_fexplorer_initialize(gint *handle);
COUNTED gboolean __wrap_fexplorer_initialize(gint *handle) {
  ++connections;
  return __real_fexplorer_initialize(handle);
}
}

namespace {

constexpr int kAllFiles = 1;
constexpr int kAlbumFiles = 3;

void make_pictures(const std::string &folder, int rows) {
  const auto pixbuf =
      pb::Ref<GdkPixbuf>::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, 16, 12));
  gdk_pixbuf_fill(pixbuf.get(), 0x804020ff);
  pb::StringPtr bytes;
  gsize size = 0;
  if (!gdk_pixbuf_save_to_buffer(pixbuf.get(), pb::out(bytes), &size, "jpeg", nullptr, nullptr)) {
    std::exit(1);
  }
  for (int row = 0; row < rows; ++row) {
    const std::string path = folder + "/IMG_" + std::to_string(20200000 + row) + ".jpg";
    std::FILE *file = std::fopen(path.c_str(), "wb");
    if (file == nullptr || std::fwrite(bytes.get(), 1, size, file) != size) std::exit(1);
    std::fclose(file);
  }
}

void index_pictures(const std::string &root) {
  bool scanned = false;
  const guint listener = media_index_add_listener(
      [](guint changes, gpointer data) {
        if ((changes & MEDIA_INDEX_SCAN_FINISHED) != 0) *static_cast<bool *>(data) = true;
      },
      &scanned);
  const gchar *roots[] = {root.c_str()};
  if (!media_index_start(roots, 1, nullptr)) std::exit(1);
  while (!scanned) g_main_context_iteration(nullptr, TRUE);
  media_index_remove_listener(listener);
}

/// Does something once and prints what it took.
void measure(const char *name, const std::function<bool()> &function) {
  pages = records = files = connections = 0;
  const double wall = bench::now_ms();
  const double work = bench::thread_ms();
  const bool result = function();
  std::printf(
      "%-46s work %9.2f ms  wall %9.2f ms  %s  lists %6ld  records %6ld  files %6ld  "
      "connections %6ld\n",
      name, bench::thread_ms() - work, bench::now_ms() - wall, result ? "yes" : "no ", pages,
      records, files, connections);
  std::fflush(stdout);
}

void let_go() {
  while (g_main_context_iteration(nullptr, FALSE)) {
  }
}

gint id_of_row(gint row) {
  GList *list = nullptr;
  fm_svc_mb_get_list("/", 2, 3, 3, 0, &list, row, row, nullptr);
  const gint id = list != nullptr ? static_cast<MbItem *>(list->data)->id : 0;
  fm_svc_mb_glist_free(&list, TRUE);
  return id;
}

void measure_all_files(gint rows) {
  measure("build of all files", [] { return pb_app_common_set_category(kAllFiles, TRUE); });
  const gint last = id_of_row(rows - 1);
  const gint near = id_of_row(150);
  measure("find row 150",
          [&] { return mb_app_common_update_iter_index_after_build(near, 0) != FALSE; });
  pb_app_common_set_category(kAllFiles, TRUE);
  measure("find the last row",
          [&] { return mb_app_common_update_iter_index_after_build(last, 0) != FALSE; });
  measure("find the last row again",
          [&] { return mb_app_common_update_iter_index_after_build(last, 0) != FALSE; });
  let_go();
  pb_app_common_set_category(kAllFiles, TRUE);
  measure("find a file that is gone",
          [&] { return mb_app_common_update_iter_index_after_build(G_MAXINT, 0) != FALSE; });
  let_go();
}

void measure_album() {
  GList *albums = nullptr;
  fm_svc_mb_get_all_albums_ex(2, FM_ALBUMS_WITHOUT_WEB, &albums, nullptr);
  const gint album = albums != nullptr ? static_cast<FmAlbumRecord *>(albums->data)->album_id : 0;
  fm_svc_mb_glist_free(&albums, TRUE);
  measure("build of the album",
          [album] { return pb_app_common_build_item_list(kAlbumFiles, album) != FALSE; });
  measure("cover of a file that is not drawn", [] {
    return mb_app_common_update_content_cover_after_download(G_MAXINT, "/cover.jpg") != FALSE;
  });
  for (gint row = 0; row < 100; ++row) {
    pb_app_common_get_nth_item_from_list(pb_app_common_get_item_list(), row);
  }
  measure("the same with 100 rows drawn", [] {
    return mb_app_common_update_content_cover_after_download(G_MAXINT, "/cover.jpg") != FALSE;
  });
}

void measure_queries(gint rows) {
  pb::ListSpinePtr selected;
  for (gint row = 0; row < rows; row += 2) {
    selected.reset(g_list_prepend(selected.release(), GINT_TO_POINTER(id_of_row(row))));
  }
  measure("all files less every other one", [&] {
    const auto list =
        pb::Ref<PbItemList>::adopt(pb_item_get_sub_sorted_list(nullptr, selected.get()));
    return pb_item_list_get_length(list.get()) == rows / 2;
  });
  measure("files with a web copy", [] {
    const auto list = pb::Ref<PbItemList>::adopt(pb_item_get_sub_backup_list());
    return pb_item_list_get_length(list.get()) > 0;
  });
  measure("files that can be shared", [] {
    const auto list = pb::Ref<PbItemList>::adopt(pb_item_get_share_list(2, 0, 0));
    return pb_item_list_get_length(list.get()) > 0;
  });
}

}  // namespace

int main(int argc, char **argv) {
  const int rows = argc == 2 ? std::atoi(argv[1]) : 0;
  if (rows < 200) {
    std::fprintf(stderr, "Usage: bench-lists ROWS (200 or more)\n");
    return 2;
  }
  char home[] = "/tmp/bench-lists-XXXXXX";
  if (mkdtemp(home) == nullptr) return 1;
  for (const char *variable : {"XDG_DATA_HOME", "XDG_CACHE_HOME", "PHOTOBROWSER_ROOT"}) {
    g_setenv(variable, home, TRUE);
  }
  const std::string root = std::string(home) + "/pictures";
  if (mkdir(root.c_str(), 0700) != 0) return 1;
  // There is neither a view nor a package, which is said at each step.
  g_log_set_default_handler([](const gchar *, GLogLevelFlags, const gchar *, gpointer) {}, nullptr);
  g_log_set_writer_func(
      [](GLogLevelFlags, const GLogField *, gsize, gpointer) { return G_LOG_WRITER_HANDLED; },
      nullptr, nullptr);
  make_pictures(root, rows);
  index_pictures(root);

  const long before = bench::memory_kb("VmRSS");
  pb_app_common_initialize();
  measure_all_files(rows);
  measure_album();
  measure_queries(rows);
  pb_app_common_finalize();
  std::printf("memory: %ld KB before the walks, %ld KB at most\n", before,
              bench::memory_kb("VmHWM"));
  media_index_stop();
  const std::string clean = std::string("rm -rf ") + home;
  return std::system(clean.c_str()) == 0 ? 0 : 1;
}

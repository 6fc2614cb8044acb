/// Reads pages of a large index: bench-index-pages ROWS camera|mixed
/// Makes an index of that many pictures in a temporary folder (no files), then starts the service
/// on it and reads as the library does.
#include <glib/gstdio.h>
#include <media-browser.h>
#include <media-index.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <random>
#include <string>

#include "measure.hpp"
#include "media-browser/index.hpp"

namespace {

using namespace phone::media;

constexpr int kFolderSize = 1000;
constexpr int kPage = 100;
constexpr int kRuns = 2000;

/// Rows that no scan has found.
/// @param mixed the dates have no order at all, which is the worst that a library can be; else
///        they grow with the names, as those of a camera do
void make_index(const std::string &root, int rows, bool mixed) {
  std::string problem;
  std::atomic<bool> done = false;
  Database database;
  IndexStorage storage(canonical_roots({root}));
  UserData user(problem);
  Shared shared;
  if (storage.open_for_writing(database) != SQLITE_OK) std::exit(1);
  Writer writer(storage, std::move(database), user, shared);
  std::thread thread([&writer] { writer.run(); });
  writer.post([](Writer &self) { self.begin_scan(); });
  std::mt19937 random(1);
  FolderPtr folder;
  for (int at = 0; at < rows;) {
    if (at % kFolderSize == 0) {
      auto next = std::make_shared<Folder>();
      next->path = root + "/folder" + std::to_string(at / kFolderSize);
      next->inode = static_cast<guint64>(at) + 10'000'000;
      next->camera = at / kFolderSize % 3 == 0;
      folder = next;
    }
    auto files = std::make_shared<std::vector<Found>>();
    for (int end = std::min(at + kFolderSize, rows); at < end; ++at) {
      Found file;
      file.folder = folder;
      file.name = "IMG_" + std::to_string(20200000 + at) + ".jpg";
      file.state = {static_cast<guint64>(at) + 20'000'000, 3'000'000 + at % 1000,
                    1'600'000'000'000'000'000 + at};
      file.kind = at % 50 == 0 ? kVideo : kPicture;
      file.date = 1'000'000'000 + (mixed ? static_cast<gint64>(random() % 700'000'000) : at * 60);
      file.width = 4000;
      file.height = 3000;
      files->push_back(std::move(file));
    }
    writer.post_when_due([files](Writer &self) { self.store(*files); });
  }
  writer.post([&done](Writer &self) {
    self.end_scan();
    done = true;
  });
  while (!done) g_usleep(1000);
  shared.stopping = true;
  writer.wake();
  thread.join();
}

void read_page(gint sort, gint64 filter, gint first, gint last, bench::Times &times) {
  GList *list = nullptr;
  times.measure([&] { fm_svc_mb_get_list("/", 2, sort, filter, 0, &list, first, last, nullptr); });
  if (g_list_length(list) != static_cast<guint>(last - first + 1)) {
    std::fprintf(stderr, "a page of %u instead of %d rows\n", g_list_length(list),
                 last - first + 1);
    std::exit(1);
  }
  fm_svc_mb_glist_free(&list, TRUE);
}

gint count(gint64 filter) {
  gint rows = 0;
  fm_svc_mb_get_all_sub_file_count("/", 2, filter, &rows, nullptr);
  return rows;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 3) {
    std::fprintf(stderr, "Usage: bench-index-pages ROWS camera|mixed\n");
    return 2;
  }
  const int rows = std::atoi(argv[1]);
  char home[] = "/tmp/bench-index-XXXXXX";
  if (mkdtemp(home) == nullptr) return 1;
  g_setenv("XDG_DATA_HOME", home, TRUE);
  g_setenv("XDG_CACHE_HOME", home, TRUE);
  // A link to itself: it cannot be read, so the index keeps what it has.
  const std::string root = std::string(home) + "/root";
  if (symlink(root.c_str(), root.c_str()) != 0) return 1;

  double start = bench::now_ms();
  make_index(root, rows, std::string(argv[2]) == "mixed");
  std::printf("%d rows stored in %.0f ms\n", rows, bench::now_ms() - start);
  std::fflush(stdout);
  const pid_t child = fork();
  if (child != 0) {
    // The figures of memory are those of a process that has only read.
    int status = 0;
    waitpid(child, &status, 0);
    const std::string clean = "ls -l " + std::string(home) + "/photobrowser; rm -rf " + home;
    return std::system(clean.c_str()) == 0 ? status : 1;
  }

  const char *roots[] = {root.c_str()};
  const long before = bench::memory_kb("VmRSS");
  start = bench::now_ms();
  if (!media_index_start(roots, 1, nullptr)) return 1;
  const double opened = bench::now_ms() - start;
  const int listed = count(3);
  bench::Times first_page;
  read_page(3, 3, 0, kPage - 1, first_page);
  std::printf("start to first page %.2f ms (opening %.2f ms), %d files\n", bench::now_ms() - start,
              opened, listed);

  std::mt19937 random(2);
  for (const gint sort : {3, 4, 0, 5}) {
    bench::Times built;
    start = bench::now_ms();
    count(3);
    read_page(sort, 3, listed - kPage, listed - 1, built);
    std::printf("sort %d: last page at once, waiting for the order: %.1f ms\n", sort,
                bench::now_ms() - start);
    bench::Times pages;
    for (int run = 0; run < kRuns; ++run) {
      const gint first = static_cast<gint>(random() % static_cast<unsigned>(listed - kPage));
      read_page(sort, 3, first, first + kPage - 1, pages);
    }
    pages.print("page of 100 anywhere");
    bench::Times single;
    for (int run = 0; run < kRuns; ++run) {
      const gint first = static_cast<gint>(random() % static_cast<unsigned>(listed));
      read_page(sort, 3, first, first, single);
    }
    single.print("one row anywhere");
  }
  bench::Times records;
  bench::Times positions;
  for (int run = 0; run < kRuns; ++run) {
    FmMediaRecord record;
    const gint id = 1 + static_cast<gint>(random() % static_cast<unsigned>(listed));
    records.measure([&] { fm_svc_mb_get_record_by_index(id, &record, nullptr); });
    positions.measure([&] { media_index_get_position(3, 3, id); });
  }
  records.print("record of an id");
  positions.print("position of an id");
  bench::Times counts;
  for (int run = 0; run < kRuns; ++run) counts.measure([] { count(3); });
  counts.print("count");
  bench::Times albums;
  for (int run = 0; run < 20; ++run) {
    GList *list = nullptr;
    albums.measure([&] { fm_svc_mb_get_all_albums_ex(2, FM_ALBUMS_WITHOUT_WEB, &list, nullptr); });
    fm_svc_mb_glist_free(&list, TRUE);
  }
  albums.print("all albums");
  std::printf("memory: %ld KB before, %ld KB now, %ld KB at most\n", before,
              bench::memory_kb("VmRSS"), bench::memory_kb("VmHWM"));
  media_index_stop();
  return 0;
}

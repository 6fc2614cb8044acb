/// Scans a folder of camera JPEGs: bench-index-scan FOLDER FILES
/// FOLDER is filled when it is missing. Prints the time to the first rows, of the whole scan, of a
/// second start with nothing changed, and the size of the index. Run it twice for a warm cache.
#include <fcntl.h>
#include <glib/gstdio.h>
#include <media-browser.h>
#include <media-index.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "glib-ptr.hpp"
#include "measure.hpp"

namespace {

constexpr int kFolderSize = 1000;
constexpr std::size_t kFileSize = 6000;
constexpr gint64 kFirstDate = 1'500'000'000;

void put16(std::string &text, unsigned value) {
  text += static_cast<char>(value >> 8 & 0xff);
  text += static_cast<char>(value & 0xff);
}

void put32(std::string &text, unsigned value) {
  put16(text, value >> 16);
  put16(text, value & 0xffff);
}

/// The head of a camera's JPEG: orientation and date with offset, then the size of the picture.
std::string jpeg(int number) {
  const pb::StringPtr date(g_date_time_format(
      g_date_time_new_from_unix_utc(kFirstDate + number * 60), "%Y:%m:%d %H:%M:%S"));
  std::string tiff("MM\0*", 4);
  put32(tiff, 8);
  put16(tiff, 2);
  put16(tiff, 0x0112), put16(tiff, 3), put32(tiff, 1), put16(tiff, 1 + number % 8), put16(tiff, 0);
  put16(tiff, 0x8769), put16(tiff, 4), put32(tiff, 1), put32(tiff, 38);
  put32(tiff, 0);
  put16(tiff, 2);
  put16(tiff, 0x9003), put16(tiff, 2), put32(tiff, 20), put32(tiff, 68);
  put16(tiff, 0x9011), put16(tiff, 2), put32(tiff, 7), put32(tiff, 88);
  put32(tiff, 0);
  tiff.append(date.get(), 20);
  tiff.append("+00:00", 7);

  std::string file("\xff\xd8\xff\xe1", 4);
  put16(file, static_cast<unsigned>(tiff.size()) + 8);
  file.append("Exif\0\0", 6);
  file += tiff;
  file.append("\xff\xc0", 2);
  put16(file, 17);
  file += '\x08';
  put16(file, 3000), put16(file, 4000);
  file.append("\x03\x01\x22\x00\x02\x11\x01\x03\x11\x01", 10);
  file.resize(kFileSize, '\x55');
  return file;
}

void fill(const std::string &root, int files) {
  std::string folder;
  for (int number = 0; number < files; ++number) {
    if (number % kFolderSize == 0) {
      folder = root + "/folder" + std::to_string(number / kFolderSize);
      g_mkdir_with_parents(folder.c_str(), 0755);
    }
    char name[32];
    g_snprintf(name, sizeof name, "/IMG_%07d.JPG", number);
    const int fd = open((folder + name).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    const std::string bytes = jpeg(number);
    if (fd < 0 || write(fd, bytes.data(), bytes.size()) < 0) std::exit(1);
    close(fd);
  }
}

struct Seen {
  double start;
  double first_rows = 0;
  double finished = 0;
  double work = 0;
};

void on_change(guint changes, gpointer data) {
  auto *seen = static_cast<Seen *>(data);
  gint count = 0;
  if ((changes & MEDIA_INDEX_ROWS_CHANGED) != 0 && seen->first_rows == 0 &&
      fm_svc_mb_get_all_sub_file_count("/", 2, 3, &count, nullptr) && count > 0) {
    seen->first_rows = bench::now_ms() - seen->start;
  }
  if ((changes & MEDIA_INDEX_SCAN_FINISHED) != 0) seen->finished = bench::now_ms() - seen->start;
}

Seen scan(const char *root) {
  Seen seen{bench::now_ms()};
  const double work = bench::process_ms();
  const guint listener = media_index_add_listener(on_change, &seen);
  gchar *problem = nullptr;
  if (!media_index_start(&root, 1, &problem)) {
    std::fprintf(stderr, "%s\n", problem);
    std::exit(1);
  }
  while (seen.finished == 0) g_main_context_iteration(nullptr, TRUE);
  media_index_remove_listener(listener);
  seen.work = bench::process_ms() - work;
  gint count = 0;
  fm_svc_mb_get_all_sub_file_count("/", 2, 3, &count, nullptr);
  MediaIndexProgress progress;
  media_index_get_progress(&progress);
  std::printf("  %d files listed, %u problems %s\n", count, progress.problems, progress.problem);
  media_index_stop();
  return seen;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 3) {
    std::fprintf(stderr, "Usage: bench-index-scan FOLDER FILES\n");
    return 2;
  }
  if (!g_file_test(argv[1], G_FILE_TEST_EXISTS)) fill(argv[1], std::atoi(argv[2]));
  char home[] = "/tmp/bench-index-XXXXXX";
  if (mkdtemp(home) == nullptr) return 1;
  g_setenv("XDG_DATA_HOME", home, TRUE);
  g_setenv("XDG_CACHE_HOME", home, TRUE);

  const Seen first = scan(argv[1]);
  std::printf("first scan: first rows after %.0f ms, finished after %.0f ms, work %.0f ms\n",
              first.first_rows, first.finished, first.work);
  for (int run = 0; run < 3; ++run) {
    const Seen again = scan(argv[1]);
    std::printf("second start, nothing changed: finished after %.0f ms, work %.0f ms\n",
                again.finished, again.work);
  }
  std::printf("peak memory %ld KB\n", bench::memory_kb("VmHWM"));
  std::fflush(stdout);
  const std::string sizes = "ls -l " + std::string(home) + "/photobrowser; rm -rf " + home;
  return std::system(sizes.c_str()) == 0 ? 0 : 1;
}

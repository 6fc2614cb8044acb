#include "subjects.hpp"

#include <stdio.h>
// The order matters: jpeglib.h needs FILE.
#include <gio/gio.h>
#include <glib/gstdio.h>
#include <jpeglib.h>
#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <random>
#include <vector>

#include "glib-ptr.hpp"

namespace bench {
namespace {

void remove_folder(const std::string &path) {
  GDir *folder = g_dir_open(path.c_str(), 0, nullptr);
  if (folder != nullptr) {
    while (const gchar *name = g_dir_read_name(folder)) {
      const std::string inner = path + "/" + name;
      if (g_file_test(inner.c_str(), G_FILE_TEST_IS_DIR)) {
        remove_folder(inner);
      } else {
        g_unlink(inner.c_str());
      }
    }
    g_dir_close(folder);
  }
  g_rmdir(path.c_str());
}

/// Broad waves, edges and the grain of a sensor.
std::vector<JSAMPLE> photo_row(int width, int y, std::mt19937 &random) {
  std::vector<JSAMPLE> row(static_cast<size_t>(width) * 3);
  for (int x = 0; x < width; ++x) {
    const double wave = std::sin(x * 0.004) * std::cos(y * 0.003) + std::sin((x + y) * 0.05) * 0.3;
    const int edge = ((x / 90) ^ (y / 70)) & 1 ? 24 : 0;
    for (int channel = 0; channel < 3; ++channel) {
      const int grain = static_cast<int>(random() % 15) - 7;
      const double value = 120 + 70 * wave + edge + channel * 12 + grain;
      row[static_cast<size_t>(x) * 3 + static_cast<size_t>(channel)] =
          static_cast<JSAMPLE>(std::clamp(value, 0.0, 255.0));
    }
  }
  return row;
}

struct Buffer {
  unsigned char *bytes = nullptr;
  unsigned long size = 0;
};

/// An EXIF block whose second directory holds a preview.
std::vector<JOCTET> exif_with(const Buffer &preview) {
  std::vector<JOCTET> block;
  const auto put = [&block](guint64 value, int bytes) {
    for (int shift = (bytes - 1) * 8; shift >= 0; shift -= 8) {
      block.push_back(static_cast<JOCTET>(value >> shift));
    }
  };
  for (const char letter : {'E', 'x', 'i', 'f', '\0', '\0', 'M', 'M', '\0', '*'}) {
    block.push_back(static_cast<JOCTET>(letter));
  }
  put(8, 4);
  put(1, 2);  // the main directory: the orientation
  put(0x0112, 2), put(3, 2), put(1, 4), put(1u << 16, 4);
  put(26, 4);
  put(2, 2);  // the directory of the preview: its place and its length
  put(0x0201, 2), put(4, 2), put(1, 4), put(56, 4);
  put(0x0202, 2), put(4, 2), put(1, 4), put(preview.size, 4);
  put(0, 4);
  block.insert(block.end(), preview.bytes, preview.bytes + preview.size);
  return block;
}

Buffer encode(const Photo &photo, const Buffer *preview) {
  jpeg_compress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  Buffer buffer;
  jpeg_mem_dest(&info, &buffer.bytes, &buffer.size);
  info.image_width = static_cast<JDIMENSION>(photo.width);
  info.image_height = static_cast<JDIMENSION>(photo.height);
  info.input_components = 3;
  info.in_color_space = JCS_RGB;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, photo.quality, TRUE);
  if (photo.progressive) jpeg_simple_progression(&info);
  jpeg_start_compress(&info, TRUE);
  if (preview != nullptr) {
    const std::vector<JOCTET> exif = exif_with(*preview);
    jpeg_write_marker(&info, JPEG_APP0 + 1, exif.data(), static_cast<unsigned>(exif.size()));
  }
  std::mt19937 random(1);
  while (info.next_scanline < info.image_height) {
    std::vector<JSAMPLE> row = photo_row(photo.width, static_cast<int>(info.next_scanline), random);
    JSAMPROW pointer = row.data();
    jpeg_write_scanlines(&info, &pointer, 1);
  }
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
  return buffer;
}

}  // namespace

Folder::Folder() {
  const pb::StringPtr made(g_dir_make_tmp("photobrowser-bench-XXXXXX", nullptr));
  path_ = made ? made.get() : "";
  if (path_.empty()) std::exit(EXIT_FAILURE);
  g_setenv("XDG_CACHE_HOME", path("cache").c_str(), TRUE);
}

Folder::~Folder() { remove_folder(path_); }

gint64 write_photo(const std::string &path, const Photo &photo) {
  Buffer preview;
  if (photo.preview) preview = encode({.width = 160, .height = 120, .quality = 85}, nullptr);
  const Buffer buffer = encode(photo, photo.preview ? &preview : nullptr);
  g_file_set_contents(path.c_str(), reinterpret_cast<const gchar *>(buffer.bytes),
                      static_cast<gssize>(buffer.size), nullptr);
  std::free(buffer.bytes);
  std::free(preview.bytes);
  return static_cast<gint64>(buffer.size);
}

void copy_file(const std::string &from, const std::string &to) {
  gchar *bytes = nullptr;
  gsize size = 0;
  if (!g_file_get_contents(from.c_str(), &bytes, &size, nullptr)) std::exit(EXIT_FAILURE);
  const pb::StringPtr owner(bytes);
  g_file_set_contents(to.c_str(), bytes, static_cast<gssize>(size), nullptr);
}

namespace {

double milliseconds_of(clockid_t clock) {
  timespec used{};
  clock_gettime(clock, &used);
  return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

/// Children are noted with the thread that started them.
std::vector<pid_t> children() {
  std::vector<pid_t> found;
  GDir *threads = g_dir_open("/proc/self/task", 0, nullptr);
  if (threads == nullptr) return found;
  while (const gchar *thread = g_dir_read_name(threads)) {
    std::ifstream file(std::string("/proc/self/task/") + thread + "/children");
    for (pid_t child; file >> child;) found.push_back(child);
  }
  g_dir_close(threads);
  return found;
}

}  // namespace

double processor_ms() {
  // Decoders are replaced now and then: what the ended ones have used counts as well.
  rusage ended{};
  getrusage(RUSAGE_CHILDREN, &ended);
  const auto in_ms = [](const timeval &time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
  };
  double sum =
      milliseconds_of(CLOCK_PROCESS_CPUTIME_ID) + in_ms(ended.ru_utime) + in_ms(ended.ru_stime);
  for (const pid_t child : children()) {
    clockid_t clock;
    if (clock_getcpuclockid(child, &clock) == 0) sum += milliseconds_of(clock);
  }
  return sum;
}

double measure(const char *name, double seconds, const std::function<void()> &turn) {
  turn();  // warm
  const gint64 begin = g_get_monotonic_time();
  const auto end = begin + static_cast<gint64>(seconds * G_TIME_SPAN_SECOND);
  const double used_before = processor_ms();
  int turns = 0;
  gint64 now = begin;
  while (now < end) {
    turn();
    ++turns;
    now = g_get_monotonic_time();
  }
  const double used = (processor_ms() - used_before) / turns;
  const double rate = turns * 1e6 / static_cast<double>(now - begin);
  std::printf("%-48s %9.1f /s by the clock %9.4f ms %9.1f /s of a processor\n", name, rate, used,
              1000 / used);
  std::fflush(stdout);
  return used;
}

}  // namespace bench

/// Thumbnails a second, from each source, in this process, through a decoder process and through
/// the whole service.
///   bench-pictures [SECONDS]
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <sys/stat.h>
#include <thumbnail-manager.h>

#include <cstdio>
#include <cstdlib>

#include "pictures/header-reader.hpp"
#include "pictures/picture-file.hpp"
#include "subjects.hpp"
#include "thumbnail/disk.hpp"
#include "thumbnail/making.hpp"

namespace {

using namespace phone;
using bench::measure;

double seconds = 3;

void fail(const char *what) {
  std::fprintf(stderr, "%s\n", what);
  std::exit(EXIT_FAILURE);
}

pictures::Result decode(const std::string &path, int side, std::uint32_t flags) {
  pictures::Wish wish;
  wish.width = side;
  wish.height = side;
  wish.flags = flags;
  pictures::Result result = pictures::decode_picture(pictures::open_picture(path.c_str()), wish);
  if (!result.pixbuf) fail(pictures::sentence(result.problem));
  return result;
}

void measure_photo(const char *name, const std::string &path, std::uint32_t flags) {
  measure(name, seconds, [&] { decode(path, thumbnail::kSide, flags); });
}

void measure_stock(const char *name, const std::string &path) {
  measure(name, seconds, [&] {
    pb::ErrorPtr error;
    const auto pixbuf = pictures::PixbufRef::adopt(gdk_pixbuf_new_from_file_at_size(
        path.c_str(), thumbnail::kSide, thumbnail::kSide, pb::out(error)));
    if (!pixbuf) fail(error->message);
  });
}

void wait_for(const struct stat &info) {
  const gint64 deadline = g_get_monotonic_time() + 60 * G_TIME_SPAN_SECOND;
  while (!thumbnail::is_stored(info)) {
    if (g_get_monotonic_time() > deadline) fail("a thumbnail is not made");
    g_usleep(1000);
  }
}

/// Queue, decode, store, announce: everything but the drawing.
void measure_service(const char *name, const bench::Folder &folder, const std::string &photo,
                     int files) {
  std::vector<struct stat> infos;
  std::vector<std::string> paths;
  for (int i = 0; i < files; ++i) {
    paths.push_back(folder.path("service-" + std::to_string(files) + "-" + std::to_string(i)));
    bench::copy_file(photo, paths.back());
    lstat(paths.back().c_str(), &infos.emplace_back());
  }
  const gint64 begin = g_get_monotonic_time();
  const double used_before = bench::processor_ms();
  for (const std::string &path : paths) thumbnail::request(path);
  for (const struct stat &info : infos) wait_for(info);
  const double spent = static_cast<double>(g_get_monotonic_time() - begin) / G_TIME_SPAN_SECOND;
  const double used = (bench::processor_ms() - used_before) / files;
  std::printf("%-48s %9.1f /s by the clock %9.4f ms %9.1f /s of a processor\n", name, files / spent,
              used, 1000 / used);
}

void measure_ready(const std::string &path) {
  const auto ask = [&path] {
    GdkPixbuf *pixbuf = nullptr;
    if (fm_svc_thumb_mgr_get_thumbnail(1, 0, path.c_str(), FALSE, 0, &pixbuf) == 0) {
      fail("no thumbnail");
    }
    g_object_unref(pixbuf);
  };
  thumbnail::request(path);
  struct stat info;
  lstat(path.c_str(), &info);
  wait_for(info);
  measure("ready thumbnail, from the store", seconds, [&ask] {
    thumbnail::memory_cache().clear();
    ask();
  });
  measure("ready thumbnail, from memory", seconds, ask);
}

void measure_headers(const std::string &path) {
  measure("header of a photograph", seconds, [&path] {
    const pictures::Descriptor file(pictures::open_regular_file(path.c_str()));
    if (!pictures::read_header_of_file(file.get())) fail("no header");
  });
}

}  // namespace

int main(int argc, char **argv) {
  if (argc > 1) seconds = std::atof(argv[1]);
  const bench::Folder folder;
  const std::string plain = folder.path("plain.jpg");
  const std::string with_preview = folder.path("with-preview.jpg");
  const std::string progressive = folder.path("progressive.jpg");
  const std::string small = folder.path("small.jpg");
  const gint64 size = bench::write_photo(plain, {});
  bench::write_photo(with_preview, {.preview = true});
  bench::write_photo(progressive, {.progressive = true});
  bench::write_photo(small, {.width = 160, .height = 120});
  std::printf("photographs of 12 megapixels, %.1f MB\n", static_cast<double>(size) / 1e6);

  constexpr std::uint32_t kThumbnail = pictures::wire::kUpright | pictures::wire::kOpaque;
  measure_stock("12 MP, gdk-pixbuf at size", plain);
  measure_photo("12 MP, decoder process", plain, kThumbnail);
  measure_photo("12 MP with preview, decoder process", with_preview,
                kThumbnail | pictures::wire::kPreview);
  measure_stock("12 MP progressive, gdk-pixbuf at size", progressive);
  measure_photo("12 MP progressive, decoder process", progressive, kThumbnail);
  const double here = measure("160x120, gdk-pixbuf at size", seconds, [&small] {
    const auto pixbuf = pictures::PixbufRef::adopt(
        gdk_pixbuf_new_from_file_at_size(small.c_str(), 148, 148, nullptr));
    if (!pixbuf) fail("no picture");
  });
  const double there = measure("160x120, decoder process", seconds,
                               [&small] { decode(small, thumbnail::kSide, kThumbnail); });
  std::printf("a decoder process costs %.3f ms more than decoding here\n", there - here);
  measure("12 MP to 800x480 for the viewer, decoder process", seconds,
          [&plain] { decode(plain, 800, pictures::wire::kUpright); });
  measure_service("12 MP with preview, whole service", folder, with_preview, 300);
  measure_service("12 MP, whole service", folder, plain, 40);
  measure_ready(plain);
  measure_headers(with_preview);
  thumbnail_manager_shutdown();
  return 0;
}

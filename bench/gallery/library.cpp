/// Writes a folder of many pictures: bench-library FOLDER FILES [WIDTH HEIGHT]
/// Files of 64 different pictures, 1,000 a sub-folder, dates a minute apart.
#include <fcntl.h>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <glib/gstdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "glib-ptr.hpp"

namespace {

constexpr int kDistinct = 64;
constexpr int kFolderSize = 1000;
constexpr gint64 kNewest = 1767268800;

/// Noise over a gradient: as hard to decode as a photograph.
std::string picture(int number, int width, int height) {
  const auto pixbuf =
      pb::Ref<GdkPixbuf>::adopt(gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, width, height));
  guchar *pixels = gdk_pixbuf_get_pixels(pixbuf.get());
  guint32 noise = 12345u + static_cast<guint32>(number);
  for (int y = 0; y < height; ++y) {
    guchar *at = pixels + static_cast<std::ptrdiff_t>(y) * gdk_pixbuf_get_rowstride(pixbuf.get());
    for (int x = 0; x < width; ++x) {
      noise = noise * 1664525u + 1013904223u;
      const int grain = static_cast<int>(noise >> 28);
      *at++ = static_cast<guchar>((number * 37 + x * 128 / width + grain) & 0xff);
      *at++ = static_cast<guchar>((number * 91 + y * 128 / height + grain) & 0xff);
      *at++ = static_cast<guchar>((number * 53 + grain) & 0xff);
    }
  }
  gchar *raw = nullptr;
  gsize size = 0;
  if (!gdk_pixbuf_save_to_buffer(pixbuf.get(), &raw, &size, "jpeg", nullptr, "quality", "85",
                                 nullptr)) {
    std::exit(1);
  }
  const pb::StringPtr owner(raw);
  return {raw, size};
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 3 && argc != 5) {
    std::fprintf(stderr, "Usage: bench-library FOLDER FILES [WIDTH HEIGHT]\n");
    return 2;
  }
  const std::string root = argv[1];
  const int files = std::atoi(argv[2]);
  const int width = argc == 5 ? std::atoi(argv[3]) : 64;
  const int height = argc == 5 ? std::atoi(argv[4]) : 48;
  std::vector<std::string> pictures;
  pictures.reserve(kDistinct);
  for (int i = 0; i < kDistinct; ++i) pictures.push_back(picture(i, width, height));

  std::string folder;
  for (int i = 0; i < files; ++i) {
    if (i % kFolderSize == 0) {
      folder = root + "/folder" + std::to_string(i / kFolderSize);
      g_mkdir_with_parents(folder.c_str(), 0755);
    }
    const std::string path = folder + "/P" + std::to_string(i) + ".jpg";
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    const std::string &bytes = pictures[i % kDistinct];
    if (fd < 0 || write(fd, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
      std::perror(path.c_str());
      return 1;
    }
    const std::array<timespec, 2> times{{{kNewest - i * 60L, 0}, {kNewest - i * 60L, 0}}};
    futimens(fd, times.data());
    close(fd);
  }
  return 0;
}

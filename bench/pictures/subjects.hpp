/// The files that are measured with, and the measuring.
#pragma once

#include <glib.h>

#include <functional>
#include <string>

namespace bench {

/// A folder of its own, which becomes the cache folder of this process and goes with it.
class Folder {
 public:
  Folder();
  ~Folder();
  Folder(const Folder &) = delete;
  Folder &operator=(const Folder &) = delete;

  [[nodiscard]] std::string path(const std::string &name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

struct Photo {
  int width = 4000;
  int height = 3000;
  bool progressive = false;
  bool preview = false;  ///< a preview of 160 by 120 pixels in its EXIF block
  int quality = 92;
};

/// Writes a JPEG with the detail and the noise of a photograph. @return its size in bytes
gint64 write_photo(const std::string &path, const Photo &photo);

/// Repeats for about so long, and prints the rate and the best turn, which other load on the
/// machine disturbs least. @return the best turn's milliseconds
double measure(const char *name, double seconds, const std::function<void()> &turn);

}  // namespace bench

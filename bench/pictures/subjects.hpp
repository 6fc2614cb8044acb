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

/// Copies a file.
void copy_file(const std::string &from, const std::string &to);

/// What this process and the decoder processes it has started have used, milliseconds.
double processor_ms();

/// Repeats for about so long, and prints the rate by the clock and what a turn takes of a
/// processor, decoder processes included, which other load on the machine disturbs least.
/// @return milliseconds of a processor for one turn
double measure(const char *name, double seconds, const std::function<void()> &turn);

}  // namespace bench

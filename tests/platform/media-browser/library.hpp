/// A folder of pictures and its index, for tests of the whole service.
#pragma once

#include <media-browser.h>
#include <media-index.h>

#include <string>
#include <string_view>
#include <vector>

#include "support/glib-test.hpp"
#include "support/main-loop.hpp"
#include "support/temp-dir.hpp"

namespace test {

/// The beginning of a camera's JPEG: all that the index looks at.
/// @param taken "2024:05:17 18:30:01", or empty for no date
std::string camera_jpeg(const std::string &taken = "", const std::string &offset = "+00:00",
                        int orientation = 1);

/// Sets a file's time of change, in Unix seconds.
void set_mtime(const std::string &path, gint64 seconds);

using support::run_until;

class Library {
 public:
  /// Makes the folder "pictures" in a directory of its own.
  Library();
  ~Library();
  Library(const Library &) = delete;
  Library &operator=(const Library &) = delete;

  /// Full path of a name in the folder; nothing is made.
  [[nodiscard]] std::string path(std::string_view name) const;
  /// Writes a picture, its missing folders included, whose time of change is its date.
  /// @param date Unix seconds
  std::string add(std::string_view name, gint64 date = 1'700'000'000) const;
  std::string write(std::string_view name, std::string_view bytes) const;

  /// Starts the index of the folder and waits for the end of the scan.
  void start();
  /// Starts it and waits for nothing.
  void begin();
  void stop();
  /// Waits for the end of a scan of everything.
  void rescan();

  /// Paths of a list as the library reads it: count, then all rows. Relative to the folder.
  [[nodiscard]] std::vector<std::string> list(gint sort = 3, gint64 filter = 0) const;
  /// Runs the main loop until the list by name is this.
  [[nodiscard]] bool becomes(const std::vector<std::string> &names) const;
  [[nodiscard]] gint id_of(std::string_view name) const;
  static gint count(gint64 filter = 0);

  /// Albums as the library lists them: names.
  [[nodiscard]] static std::vector<std::string> albums(gint sort = 0);
  /// Local id of the album of a name; 0 when there is none.
  [[nodiscard]] static gint album_id(std::string_view name);
  [[nodiscard]] static std::vector<gint64> album_files(gint album, gint sort = 0, gint filter = 0);

  [[nodiscard]] static MediaIndexProgress progress();
  /// Changes that the listeners were told of since the last call.
  guint take_changes();

  /// The index files in the data home: the database itself first.
  [[nodiscard]] static std::vector<std::string> index_files();

 private:
  static void note(guint changes, gpointer self);

  support::TempDir dir_;
  guint listener_;
  guint changes_ = 0;
};

}  // namespace test

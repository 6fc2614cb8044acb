/// What screens ask of the program.
#pragma once

#include <glib.h>

#include <string>

namespace gallery {

class Navigator {
 public:
  virtual ~Navigator() = default;

  /// Opens the album of a row of the current list, which lists albums.
  virtual void open_album(int row) = 0;
  /// Opens the viewer on a row of the current list, which lists files.
  virtual void open_viewer(int row) = 0;
  /// Opens a page with all that is known of a file.
  virtual void open_details(const std::string &path) = 0;
  /// Goes back one screen; the caller is gone afterwards.
  virtual void back() = 0;
  /// Has the lists built again, but not more than once a second.
  virtual void refresh_soon() = 0;
  /// Moves a file to the trash and offers to take that back.
  /// @return false when the file stays where it is
  virtual bool trash(const std::string &path) = 0;
  virtual void set_full_screen(bool full) = 0;
  [[nodiscard]] virtual bool is_full_screen() const = 0;

  /// The folders that are looked through, in words.
  [[nodiscard]] virtual std::string places() const = 0;
  /// Why there can be nothing to see; "" while nothing is wrong.
  [[nodiscard]] virtual std::string trouble() const = 0;
};

}  // namespace gallery
